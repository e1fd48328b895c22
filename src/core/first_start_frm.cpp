#include "core/first_start_frm.h"

#include <fmt/format.h>

#include "core/first_start.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

const std::vector<std::string> kServerTypes = {"PostgreSQL", "SQL Server"};

const Caption kDemoNeeds{
    "Three made-up companies with their loans and payments, to try everything on. It is a copy of "
    "your own and opens on its own day, 31-01-2024. Sign in as BOSS, AMINAH or MEILING; the "
    "password "
    "is demo1234. The next start asks again.",
    "三家虚构的公司及其贷款和付款，可随意试用。这是您自己的副本，并以它自己的日期 31-01-2024 打开。"
    "请以 BOSS、AMINAH 或 MEILING 进入，密码为 demo1234。下次启动会再询问。"};
const Caption kDemoIsAway{"No demo office came with this copy of the program.",
                          "此程序没有附带示范办公室。"};
const Caption kNewNeeds{
    "For an office with one PC. It needs nothing but a folder on a disk of this PC; a network "
    "folder "
    "is refused. People who share this PC share the office when each chooses the same folder. It "
    "can "
    "move to a server later.",
    "适合只有一台电脑的办公室。只需要本机磁盘上的一个文件夹，不可用网络文件夹。共用本机的人选择"
    "同一个文件夹，就共用同一个办公室。以后可迁移到服务器。"};
const Caption kJoinNeeds{
    "For an office with several PCs. Whoever looks after the server knows its address, the "
    "database "
    "and its user. They are tested before they are kept.",
    "适合有多台电脑的办公室。服务器管理员知道地址、数据库及其用户。测试成功后才会储存。"};

}  // namespace

FirstStartFrm::FirstStartFrm(Session& session, Desk& desk)
    : SessionScreen("FirstStartFrm", {"Welcome to Kaunter", "欢迎使用 Kaunter"}, session, desk) {
  for (Option* road : {&DemoOpt, &NewOpt, &JoinOpt}) road->onClick = [this] { ShowRoad(); };
  Folder.picker = "folder";
  Folder.onSearch = [this] {
    const std::string chosen =
        this->desk().PickFolder(Folder.caption().In(chinese()), Folder.text());
    if (!chosen.empty()) Folder.SetText(chosen);
    ShowRoad();
  };
  Folder.onLeave = [this] {
    Folder.SetText(Trim(Folder.text()));
    ShowRoad();
  };
  for (TextBox* box : {&Server, &DatabaseName, &UserID}) {
    box->onLeave = [box] { box->SetText(Trim(box->text())); };
  }
  ServerType.SetItems(kServerTypes);
  ServerType.SetIndex(0);
  Encrypted.SetChecked(true);
  LanguageCmd.onClick = [this] {
    this->session().ChineseFlag = !this->session().ChineseFlag;
    SetChinese(this->session().ChineseFlag);
    ShowRoad();
  };
  TestCmd.onClick = [this] { Test(); };
  OKCmd.onClick = [this] { Go(); };
}

void FirstStartFrm::Load() {
  session().MsgTitle = title().In(chinese());
  Folder.SetText(NewOfficeFolder());
  DemoOpt.SetEnabled(DemoIsShipped());
  if (!DemoIsShipped()) DemoOpt.tip = kDemoIsAway;
  (DemoIsShipped() ? DemoOpt : NewOpt).SetChosen(true);
  ShowRoad();
}

void FirstStartFrm::ShowRoad() {
  session().MsgTitle = title().In(chinese());
  const bool join = JoinOpt.chosen();
  Anew.SetVisible(DemoOpt.chosen() && DemoIsThere());
  Folder.SetVisible(NewOpt.chosen());
  for (Control* control : std::initializer_list<Control*>{
           &ServerType, &Server, &DatabaseName, &UserID, &Password, &Encrypted, &TestCmd}) {
    control->SetVisible(join);
  }
  const Caption& needs = DemoOpt.chosen() ? kDemoNeeds : join ? kJoinNeeds : kNewNeeds;
  NeedsLBL.SetText(session().In(needs));
  const std::string settings = FirstSettingsFile();
  const Caption place =
      DemoOpt.chosen() ? Caption{fmt::format("Its copy lies in {}.", DemoFolder()),
                                 fmt::format("副本存放于 {}。", DemoFolder())}
      : join
          ? Caption{fmt::format("The data lie on the server. The settings with the password are "
                                "written to {}, which you alone can read; logs and pictures of "
                                "this PC lie in {}.",
                                settings, NewOfficeFolder()),
                    fmt::format("资料存放于服务器。含密码的设置写入 {}，只有您能读取；本机的日志与"
                                "图片存放于 {}。",
                                settings, NewOfficeFolder())}
          : Caption{fmt::format("The data will lie in {}, the settings in {}.",
                                OfficeFileIn(Folder.text()), settings),
                    fmt::format("资料将存放于 {}，设置写入 {}。", OfficeFileIn(Folder.text()),
                                settings)};
  PlaceLBL.SetText(session().In(place));
}

bool FirstStartFrm::Try(const std::function<void()>& road) {
  try {
    Hourglass hourglass(desk());
    road();
    return true;
  } catch (const FirstStartRefused& refused) {
    desk().Hourglass(false);
    Control* box = refused.box.empty() ? nullptr : Find(refused.box);
    return box != nullptr ? Refuse(*box, refused.text) : Refuse(refused.text);
  } catch (const std::exception& failure) {
    return Refuse(
        {fmt::format("{}\n\nNothing was changed in the settings of this PC.", failure.what()),
         fmt::format("{}\n\n本机的设置没有更改。", failure.what())});
  }
}

ServerPlace FirstStartFrm::Place() const {
  return {.kind = ServerType.index() == 1 ? ServerKind::sql_server : ServerKind::postgresql,
          .server = Server.text(),
          .database = DatabaseName.text(),
          .user = UserID.text(),
          .password = Password.text(),
          .encrypted = Encrypted.checked()};
}

void FirstStartFrm::Test() {
  ServerHolds holds{};
  if (!Try([&] { holds = TryServer(Place(), session().clock); })) return;
  Tell(MessageKind::information,
       holds == ServerHolds::office
           ? Caption{"The office is there and answers.", "已连接到办公室。"}
           : Caption{"The database answers. It is empty: with Open a new office is made in it.",
                     "数据库有回应，里面是空的：按“打开”会在其中建立新办公室。"});
}

void FirstStartFrm::Go() {
  if (DemoOpt.chosen()) return GoToDemo();
  if (NewOpt.chosen()) return GoToFolder();
  GoToServer();
}

void FirstStartFrm::GoToDemo() {
  if (Anew.checked() && Anew.visible() &&
      !ConfirmLoss({"What was tried on the demo office so far is lost. Begin it anew ?",
                    "示范办公室至今的内容将会消失。确定重新开始？"})) {
    return;
  }
  done_ = Try([this] { settings_ = TakeDemo(Anew.checked()); });
  if (done_) Close();
}

void FirstStartFrm::GoToFolder() {
  const std::string file = OfficeFileIn(Folder.text());
  const bool was_there = HoldsOffice(Folder.text());
  if (was_there && !Confirm({fmt::format("There is an office already, {}. Open that one ?", file),
                             fmt::format("{} 已有办公室。打开它？", file)})) {
    return;
  }
  done_ = Try([this] { TakeOfficeIn(Folder.text(), session().clock); });
  if (!done_) return;
  if (!was_there) TellHowToSignIn();
  Close();
}

void FirstStartFrm::GoToServer() {
  ServerHolds holds{};
  if (!Try([&] { holds = TryServer(Place(), session().clock); })) return;
  const bool make = holds == ServerHolds::nothing;
  if (make &&
      !Confirm(
          {fmt::format("The database {} is empty. Make a new office in it ?", DatabaseName.text()),
           fmt::format("数据库 {} 是空的。在其中建立新办公室？", DatabaseName.text())})) {
    return;
  }
  done_ = Try([this] { TakeServer(Place(), session().clock); });
  if (!done_) return;
  if (make) TellHowToSignIn();
  Close();
}

void FirstStartFrm::TellHowToSignIn() {
  Tell(MessageKind::information,
       {"The office is made. Sign in as ADMIN with the password zebrawindmill, enter the company "
        "and "
        "the first user, and then shut this logon on the home page.",
        "办公室已建立。请以 ADMIN 及密码 zebrawindmill 进入，输入公司和第一位用户，然后在首页关闭此"
        "登录。"});
}

}  // namespace kaunter
