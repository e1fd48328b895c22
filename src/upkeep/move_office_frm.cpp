#include "upkeep/move_office_frm.h"

#include <fmt/format.h>

#include <chrono>
#include <filesystem>

#include "core/companion.h"
#include "core/log.h"
#include "core/menu.h"
#include "core/places.h"
#include "core/values.h"
#include "platform/sql/server_source.h"
#include "screen/caption_error.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"
#include "upkeep/move_end.h"
#include "upkeep/office_copy.h"

namespace kaunter {
namespace {

constexpr int kLevel = 4;
const Caption kNewServer{"a PostgreSQL server", "PostgreSQL 服务器"};
const Caption kNewFile{"a new file on this PC", "本机的新文件"};

std::string SettingsInUse() {
  const std::string named = HandedOn().settings;
  return named.empty() ? SettingsFile() : named;
}

Caption Told(const OfficeMoveProgress& progress, double seconds) {
  if (progress.phase == MovePhase::ledger) {
    return {fmt::format("Verifying the ledger of {}", progress.what),
            fmt::format("核对 {} 的账目", progress.what)};
  }
  const bool copy = progress.phase == MovePhase::copy;
  const double rate = seconds > 0 ? static_cast<double>(progress.done) / seconds : 0;
  return {fmt::format("{} {}: {} of {} rows, {:.0f} a second", copy ? "Copying" : "Comparing",
                      progress.what, progress.done, progress.total, rate),
          fmt::format("{} {}：{} / {} 行，每秒 {:.0f} 行", copy ? "复制" : "比较", progress.what,
                      progress.done, progress.total, rate)};
}

}  // namespace

MoveOfficeFrm::MoveOfficeFrm(Session& session, Desk& desk)
    : SessionScreen("MoveOfficeFrm", {"Move the Office", "搬移公司资料库"}, session, desk) {
  Target.onPick = [this] { ShowRoad(); };
  FileCmd.onClick = [this] {
    const std::string picked =
        this->desk().PickFolder(title().In(chinese()), PickStart(this->session()));
    if (!picked.empty()) FileName.SetText(picked + "/Kaunter.db");
  };
  LookCmd.onClick = [this] { Look(); };
  MoveCmd.onClick = [this] { Move(); };
}

void MoveOfficeFrm::Load() {
  Encrypted.SetChecked(true);
  MoveCmd.SetEnabled(false);
  const bool by_command_line = !HandedOn().database.empty();
  if (session().CurrentLevel < kLevel || by_command_line) {
    for (Control* control : controls()) {
      if (control != &CancelCmd) control->SetEnabled(false);
    }
    if (by_command_line) {
      Refuse({"This program was started for one file. Start it by its settings to move the office",
              "本程序是为单一文件启动的。请按设定启动后再搬移公司"});
    } else {
      Refuse({fmt::format("User {} Level not allow to move the office", session().CurrentUserID),
              fmt::format("用户 {} 的级别不可搬移公司", session().CurrentUserID)});
    }
    return;
  }
  MoveRequest here;
  here.local = LocalSettings::Read(HandedOn().settings);
  const std::string place =
      MoveEnd(here, here.local.ConnDataSource, here.local.ConnDatabase).place();
  HereLBL.SetText(session().In(
      {fmt::format("This office is in {}", place), fmt::format("此公司在 {}", place)}));
  known_ = TargetsOf(here.local, SettingsInUse());
  std::vector<std::string> items = known_;
  items.push_back(session().In(kNewServer));
  items.push_back(session().In(kNewFile));
  Target.SetItems(items);
  ShowRoad();
}

MoveOfficeFrm::Road MoveOfficeFrm::road() const {
  const int behind = Target.index() - static_cast<int>(known_.size());
  return behind == 0 ? Road::server : behind == 1 ? Road::file : Road::known;
}

void MoveOfficeFrm::ShowRoad() {
  const bool server = road() == Road::server;
  for (Control* control :
       std::initializer_list<Control*>{&Server, &DatabaseName, &UserID, &Password, &Encrypted}) {
    control->SetEnabled(server);
  }
  FileName.SetEnabled(road() == Road::file);
  FileCmd.SetEnabled(road() == Road::file);
  MoveCmd.SetEnabled(false);
  DG.Clear();
  ResultLBL.SetText("");
}

std::string MoveOfficeFrm::NewName(const LocalSettings& local, const std::string& wish) const {
  std::string name = wish;
  for (int number = 2; local.sources.Find(name); ++number) name = fmt::format("{}{}", wish, number);
  return name;
}

std::optional<MoveRequest> MoveOfficeFrm::Request() {
  const auto refuse = [this](Control& box, const Caption& text) {
    Refuse(box, text);
    return std::nullopt;
  };
  if (Target.empty()) return refuse(Target, {"Choose where the office goes", "请选择搬移到哪里"});
  MoveRequest request;
  request.settings_file = SettingsInUse();
  request.local = LocalSettings::Read(HandedOn().settings);
  request.clock = session().clock;
  request.user = session().CurrentUserID;
  request.write_source = road() != Road::known;
  if (road() == Road::known) {
    request.to = Target.text();
  } else if (road() == Road::file) {
    if (FileName.empty()) return refuse(FileName, {"New File is required", "请输入新文件"});
    if (!std::filesystem::path(FileName.text()).is_absolute()) {
      return refuse(FileName, {"New File needs its whole path", "新文件须为完整路径"});
    }
    request.to = NewName(request.local, "File");
    request.local.sources.Add(request.to, {DataSource::Kind::kEmbedded, FileName.text()});
  } else {
    for (TextBox* box : {&Server, &DatabaseName, &UserID}) {
      if (!Trim(box->text()).empty()) continue;
      return refuse(*box, {fmt::format("{} is required", PlainCaption(box->caption(), false)),
                           fmt::format("请输入{}", PlainCaption(box->caption(), true))});
    }
    const std::string text =
        ServerText({ServerKind::postgresql, Trim(Server.text()), Trim(DatabaseName.text()),
                    Trim(UserID.text()), Password.text(), Encrypted.checked()});
    if (text.empty()) {
      return refuse(Target, {"This PC has no ODBC driver for PostgreSQL; install odbc-postgresql",
                             "本机没有 PostgreSQL 的 ODBC 驱动程序，请安装 odbc-postgresql"});
    }
    request.to = NewName(request.local, "Server");
    request.local.sources.Add(request.to, {DataSource::Kind::kOdbc, text});
  }
  return request;
}

bool MoveOfficeFrm::Try(const std::function<void()>& work) {
  const Caption stays{"Nothing was moved, the office is where it was.", "没有搬移，公司仍在原处。"};
  try {
    work();
    return true;
  } catch (const CaptionError& why) {
    Log(why.what());
    Refuse({fmt::format("{}\n{}", why.text.english, stays.english),
            fmt::format("{}\n{}", why.text.chinese, stays.chinese)});
  } catch (const CopyStopped&) {
    Log("stopped");
    ResultLBL.SetText(session().In(stays));
    Tell(MessageKind::information, stays);
  } catch (const SqlError& error) {
    Log(error.what());
    Refuse({fmt::format("{}\n{}", error.what(), stays.english),
            fmt::format("{}\n{}", error.what(), stays.chinese)});
  }
  return false;
}

void MoveOfficeFrm::Look() {
  MoveCmd.SetEnabled(false);
  DG.Clear();
  const auto request = Request();
  if (!request) return;
  Try([&] {
    const Hourglass busy(desk());
    ShowLook(LookAtMove(*request));
    MoveCmd.SetEnabled(true);
  });
}

void MoveOfficeFrm::ShowLook(const MoveLook& look) {
  const bool chinese = session().ChineseFlag;
  std::vector<std::vector<std::string>> rows{
      {chinese ? "现在的地方" : "Now in", look.from},
      {chinese ? "搬移至" : "Moves to", look.to},
      {chinese ? "数据表" : "Tables", std::to_string(look.tables)},
      {chinese ? "行" : "Rows", std::to_string(look.rows)},
      {chinese ? "审计记录" : "Audit records",
       look.logs ? (chinese ? "一起搬移" : "move too") : (chinese ? "没有" : "none")}};
  for (const std::string& thing : look.behind) {
    rows.push_back({chinese ? "不搬移" : "Stays behind", thing});
  }
  if (look.only_finish) {
    rows.push_back({chinese ? "上次的搬移" : "An earlier move",
                    chinese ? "只剩最后一步" : "was cut near its end: only the rest is done"});
  }
  DG.SetRows(std::move(rows));
}

void MoveOfficeFrm::Move() {
  const auto request = Request();
  if (!request) return;
  if (!ConfirmLoss({"Nobody can save until the office has moved; reading goes on. Move it ?",
                    "搬移期间谁都不能储存，但可以查看。确定搬移？"}) ||
      !ConfirmLoss({fmt::format("Afterwards nothing is saved here any more, and each other PC of "
                                "the office is refused until its settings lead to {}. Are you "
                                "sure ?",
                                request->to),
                    fmt::format("之后此处不再储存，其他电脑在设定改为 {} 之前都无法使用。确定吗？",
                                request->to)})) {
    return;
  }
  Log(fmt::format("to {}", request->to));
  MoveDone done;
  const bool moved = Try([&] {
    StopBar bar(*this);
    auto begun = std::chrono::steady_clock::now();
    MovePhase phase = MovePhase::copy;
    done = MoveOffice(*request, [&](const OfficeMoveProgress& progress) {
      const auto now = std::chrono::steady_clock::now();
      if (progress.phase != phase) begun = now;
      phase = progress.phase;
      const double seconds = std::chrono::duration<double>(now - begun).count();
      return bar.GoOn(progress.done, progress.total, session().In(Told(progress, seconds)));
    });
  });
  MoveCmd.SetEnabled(false);
  if (!moved) return;
  const Caption told{
      fmt::format("The office is in {} now: {} rows moved and compared in {:.0f} seconds, {} loans "
                  "verified. Close this program and start it again; change the settings of the "
                  "other PCs.",
                  done.look.to, done.look.rows, done.seconds, done.ledger.loans),
      fmt::format("公司现已在 {}：{:.0f} 秒内搬移并比较 {} 行，核对 {} "
                  "笔贷款。请关闭本程序重新启动，并更改其他电脑的设定。",
                  done.look.to, done.seconds, done.look.rows, done.ledger.loans)};
  Log(told.english);
  LookCmd.SetEnabled(false);
  ResultLBL.SetText(session().In(told));
  Tell(MessageKind::information, told);
}

void MoveOfficeFrm::Log(const std::string& text) const {
  WriteLog(session(), LogLine(session(), "Move the Office - " + text));
}

}  // namespace kaunter
