#include "core/main_frm.h"

#include <fmt/format.h>

#include <set>
#include <utility>

#include "core/audit.h"
#include "core/central_database.h"
#include "core/company_access.h"
#include "core/einvoice_codes.h"
#include "core/file_store.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/report_path.h"
#include "core/session_report.h"
#include "core/shipped_codes.h"
#include "core/sign_in.h"
#include "core/startup.h"
#include "core/unsent_files.h"
#include "core/user_login.h"
#include "core/values.h"
#include "platform/sql/standby.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

// The vendor's address, of the build; this one has none.
constexpr std::string_view kWebSite;

std::vector<GridColumn> DueColumns() {
  return {
      {{"Loan ID", "贷款编号"}, Kind::text, 14},    {{"Due  Date", "到期日"}, Kind::date, 11},
      {{"Customer", "顾客"}, Kind::text, 26},       {{"Contact No", "联络号码"}, Kind::text, 14},
      {{"Total Due", "到期总额"}, Kind::money, 12}, {{"Status", "状态"}, Kind::text, 18}};
}

std::vector<GridColumn> StampColumns() {
  return {{{"Loan ID", "贷款编号"}, Kind::text, 14},
          {{"Loan Date", "贷款日期"}, Kind::date, 11},
          {{"Customer", "顾客"}, Kind::text, 26},
          {{"Status", "状态"}, Kind::text, 18}};
}

// Entries of the rights table with no work of their own behind them.
bool HasNothingToOpen(std::string_view name) {
  static constexpr std::string_view kNames[] = {
      "CustInq", "DQMnu", "KutuMastMnu", "KutuTransMnu", "RefererDetailMnu", "TestDocMnu"};
  for (std::string_view known : kNames) {
    if (name == known) return true;
  }
  return false;
}

// Nothing for a day that the daily batch takes.
Caption BatchDateRefusal(const std::string& text, const DateTime& today) {
  if (text == "today") return {};
  auto date = DateTime::FromDisplay(text);
  if (!date) date = DateTime::FromCanonical(text);
  if (!date || !date->IsMidnight()) {
    return {fmt::format("Daily Batch Date: \"{}\" is no date. Write it as dd-mm-yyyy, such as {}.",
                        text, Format(today, "dd-mm-yyyy")),
            fmt::format("批处理日期：“{}”不是日期。请写成 日-月-年，例如 {}。", text,
                        Format(today, "dd-mm-yyyy"))};
  }
  if (*date > today) {
    return {fmt::format("Daily Batch Date: {} lies in the future. Late interest is posted up to "
                        "today, {}, at most.",
                        text, Format(today, "dd-mm-yyyy")),
            fmt::format("批处理日期：{} 还没到。罚息最多计至今天 {}。", text,
                        Format(today, "dd-mm-yyyy"))};
  }
  return {};
}

}  // namespace

MainFrm::MainFrm(Session& session, Desk& desk, std::vector<MenuEntry> entries,
                 std::function<bool(std::string_view)> screen_exists)
    : SessionScreen("MainFrm", session.ProgramTitle, session, desk),
      LS1(*this, "LS1", {"Today's due", "今日到期"}, DueColumns()),
      LS2(*this, "LS2", {"Sijil Stamp no", "印花证书号码"}, StampColumns()),
      menu_(std::move(entries)),
      home_(*this, session, menu_),
      screen_exists_(std::move(screen_exists)) {
  LS1.onOpen = [this](int row, int) { OpenListedLoan(LS1.Cell(row, 0)); };
  LS2.onOpen = [this](int row, int) { OpenListedLoan(LS2.Cell(row, 0)); };
  home_.choose = [this](std::string_view entry) { ChooseMenu(entry); };
  home_.read_lists = [this] { RefreshMainLists(); };
  home_.open_loan = [this](const std::string& loan_id) {
    if (OpenLoan(this->session(), this->desk(), loan_id)) home_.Returned();
  };
  Label1.onClick = [this] { EditSlogan(); };
  EmptyKeyCmd.onClick = [this] { ShutBuiltInLogon(); };
  SendFilesCmd.onClick = [this] {
    if (FileStore* store = StoreOf(this->session())) store->SendAll();
  };
  for (MenuEntry& entry : menu_.entries()) {
    if (entry.action == MenuAction::screen) entry.enabled = screen_exists_(entry.target);
    if (entry.action == MenuAction::own && HasNothingToOpen(entry.name)) entry.enabled = false;
  }
  session.menu = &menu_;
  menu_.HideAll();
  for (Control* control : std::initializer_list<Control*>{
           &Label4, &Label5, &KeyNotice, &EmptyKeyCmd, &UnsentLBL, &SendFilesCmd}) {
    control->SetVisible(false);
  }
}

MainFrm::~MainFrm() { session().menu = nullptr; }

const Caption& MainFrm::NotBuiltText() {
  static const Caption text{"This entry is not available yet.", "此功能尚未提供。"};
  return text;
}

void MainFrm::SetPanel(int number, std::string text) {
  panels_.at(static_cast<std::size_t>(number - 1)) = std::move(text);
  if (observer != nullptr) observer->TitleChanged();
}

void MainFrm::FillAtStart() {
  SetChinese(session().ChineseFlag);
  for (MenuEntry& entry : menu_.entries()) {
    // A report runs only where its file lies beside the program, in both languages.
    if (entry.action != MenuAction::direct_list && entry.action != MenuAction::report) continue;
    const std::string file = session().AppPath + "/" + entry.target;
    const bool is_there = ReportFileExists(file) &&
                          (!entry.chinese_report || ReportFileExists(ChineseReportName(file)));
    const bool has_screen = entry.action == MenuAction::direct_list || screen_exists_("ReportFrm");
    entry.enabled = is_there && has_screen;
  }
  long_date_ = Format(ServerTime(session().Main()), "long date");
  if (const auto& set = session().clock.Fixed()) {
    const std::string day = Format(*set, "dd-mm-yyyy");
    ClockLBL.SetCaption({"Today is taken to be " + day + ": the program was started for that day.",
                         "今天按 " + day + " 计：程序以此日期启动。"});
  }
  SetPanel(1, session().ProgramTitle);
  SetPanel(3, "Version " + RunningVersion());
  SetPanel(5, long_date_);
  ShowStatus();
  const std::string slogan =
      ScalarQuery(session().Main(), "SELECT [Value] FROM Systemast WHERE Param='TestMode'");
  if (!slogan.empty()) Label1.SetText(slogan);
}

void MainFrm::Tick() {
  SetPanel(5, long_date_);
  if (session().CurrentLevel >= 1) LookAfterFiles();
}

// What another day left unsent goes out once somebody is signed in.
void MainFrm::LookAfterFiles() {
  if (!std::exchange(files_begun_, true)) {
    if (FileStore* begun = StoreOf(session())) begun->SendAll();
  }
  const FileStore* store = OpenStore(session());
  if (store == nullptr) return;
  TellUnsent(session(), *this);
  const FileStore::Sending sending = store->sending();
  const bool stuck = sending.waiting > 0 && !store->IsSending();
  if (stuck) {
    const Caption told{
        fmt::format("{} photo(s) or document(s) of this PC are not on the server yet.",
                    sending.waiting),
        fmt::format("本机有 {} 个照片或文件尚未传到服务器。", sending.waiting)};
    if (UnsentLBL.caption().english != told.english) UnsentLBL.SetCaption(told);  // once a second
  }
  if (UnsentLBL.visible() == stuck) return;
  UnsentLBL.SetVisible(stuck);
  SendFilesCmd.SetVisible(stuck);
}

void MainFrm::ShowStatus() {
  SetPanel(2, session().CurrentLevel >= 1
                  ? fmt::format("{} ({}-{})", session().CurrentCompCode, session().CurrentLevel,
                                session().CurrentUserID)
                  : session().CurrentUserID);
  SetPanel(4, session().CurrentCompDesc);
}

void MainFrm::ApplyMenus() {
  // ApplyRights ran with the sign-in itself; here the signed-out state comes back.
  if (session().CurrentUserID.empty()) menu_.HideAll();
  const bool signed_in = !session().CurrentUserID.empty();
  Label4.SetVisible(signed_in);
  Label5.SetVisible(signed_in);
  const bool notice = session().CurrentLevel == 4 && BuiltInLogonIsOpen();
  KeyNotice.SetVisible(notice);
  EmptyKeyCmd.SetVisible(notice);
  if (observer != nullptr) observer->TitleChanged();
}

bool MainFrm::BuiltInLogonIsOpen() {
  const std::string key = ScalarQuery(main(), "SELECT [Value] FROM Systemast WHERE Param='KEY'");
  return !key.empty() && key == session().ConnAccount;
}

void MainFrm::ShutBuiltInLogon() {
  const MenuEntry* users = menu_.Find("UserMnu");
  if (users == nullptr || !users->visible) {
    const std::string& user = session().CurrentUserID;
    session().MsgTitle = "User Management";
    Refuse(
        {fmt::format("Nobody could manage users any more, tick User Management for {} first", user),
         fmt::format("将没有人可管理用户，请先替 {} 勾选用户管理", user)});
    return;
  }
  if (!desk().AskBeforeLoss(
          session().ProgramTitle,
          session().In(
              {"Shut the built-in logon ADMIN ? Nobody can sign in with it any more, and no "
               "screen opens it again.",
               "关闭内置登录 ADMIN？之后无人可用它进入，也没有画面可再打开它。"}))) {
    return;
  }
  main().Execute("UPDATE Systemast SET [Value]='' WHERE Param='KEY'");
  KeyNotice.SetVisible(false);
  EmptyKeyCmd.SetVisible(false);
  if (observer != nullptr) observer->TitleChanged();
}

void MainFrm::SignIn() {
  session().MsgTitle = "User Login";
  SetPanel(1, session().MsgTitle);
  UserLogin dialog(session(), desk(), menu_);
  desk().ShowModal(dialog);
  SetPanel(1, session().ProgramTitle);
  ApplyMenus();
  ShowStatus();
  if (session().CurrentUserID.empty()) return;
  if (onSignedIn) onSignedIn();
  RefreshMainLists();
  home_.SignedIn();
  const MenuEntry* follow_up = menu_.Find("FolloUpMnu");
  if (session().FollowUpFlag && follow_up != nullptr && follow_up->visible && follow_up->enabled) {
    OpenScreen(*follow_up);
  }
}

void MainFrm::SignOut() {
  desk().Beep();
  if (!desk().Ask(session().MsgTitle,
                  session().In({"Are you sure want to Signout ?", "确定离开？"}))) {
    return;
  }
  session().MsgText = session().In(
      {fmt::format("User {} Successfull Sigout", session().CurrentUserID), "用户已离开？"});
  WriteLog(session(), LogLine(session(), " ****** User Logout ******"));
  desk().Message(MessageKind::information, session().MsgTitle, session().MsgText);
  // The rights and the home company stay in memory until the next sign-in clears them.
  session().CurrentUserID.clear();
  session().CurrentLevel = 0;
  session().CurrentCompDesc.clear();
  LS1.Clear();
  LS2.Clear();
  home_.SignedOut();
  ApplyMenus();
  SetPanel(2, "");
  SetPanel(4, "");
}

void MainFrm::Unload() {
  WriteLog(session(), LogLine(session(), "******** Exit ********"));
  WriteAudit(session(), "Log Out", "User", session().CurrentCompCode, session().CurrentCompCode,
             {});
}

bool MainFrm::ChooseMenu(std::string_view name) {
  const MenuEntry* entry = menu_.Find(name);
  if (entry == nullptr || entry->action == MenuAction::group || !entry->enabled ||
      !menu_.Reachable(*entry)) {
    return false;
  }
  // A handler may change the table (language, sign-out): it works on a copy of its entry.
  const MenuEntry chosen = *entry;
  return Guard([&] {
    switch (chosen.action) {
      case MenuAction::screen:
        OpenScreen(chosen);
        break;
      case MenuAction::report:
        ShowReportFromMenu(chosen.title, ReportName(chosen));
        break;
      case MenuAction::direct_list:
        RunDirectListing(chosen);
        break;
      default:
        RunOwn(chosen);
    }
  });
}

void MainFrm::OpenScreen(const MenuEntry& entry) {
  session().MsgTitle = entry.title;
  if (!entry.command.empty()) session().CallerTag = entry.command;
  SetPanel(1, session().MsgTitle);
  desk().Show(entry.target);
  session().CallerTag.clear();
  SetPanel(1, session().ProgramTitle);
  home_.Returned();
}

std::string MainFrm::ReportName(const MenuEntry& entry) const {
  return entry.chinese_report && session().ChineseFlag ? ChineseReportName(entry.target)
                                                       : entry.target;
}

void MainFrm::ShowReportFromMenu(std::string_view title, std::string_view file) {
  session().MsgTitle = title;
  session().ReportFile = file;
  SetPanel(1, session().MsgTitle);
  desk().Show("ReportFrm");
  SetPanel(1, session().ProgramTitle);
}

void MainFrm::RunDirectListing(const MenuEntry& entry) {
  session().MsgTitle = entry.title;
  SetPanel(1, session().CurrentUserID);
  ReportJob job = SessionReport(session(), ReportName(entry));
  job.ReportTitle = session().CurrentCompDesc;
  desk().Print(job);
  SetPanel(1, session().ProgramTitle);
}

void MainFrm::RunOwn(const MenuEntry& entry) {
  if (!entry.title.empty()) session().MsgTitle = entry.title;
  if (entry.name == "UserLoginMnu") {
    SignIn();
  } else if (entry.name == "UserLogoutMnu") {
    SignOut();
  } else if (entry.name == "ExitMnu" || entry.name == "Exits2Mnu") {
    Close();
  } else if (entry.name == "ChineseLan") {
    SwitchLanguage();
  } else if (entry.name == "WebSiteMnu") {
    OpenAddress(std::string(kWebSite), {"This program was built without the address of a web site, "
                                        "so nothing opens.",
                                        "此程序没有内置网站地址，因此无法打开。"});
  } else if (entry.name == "SoftwareUpdateMnu") {
    OpenAddress(
        ScalarQuery(session().Main(), "SELECT [Value] as url FROM Systemast WHERE PARAM='URL'"),
        {"This office has no address for updates, so nothing opens. It is kept in the setting URL.",
         "本公司没有软件更新的地址，因此无法打开。地址存于设定 URL。"});
  } else if (entry.name == "DailyBatchMnu") {
    StartDailyBatch();
  } else if (entry.name == "AccLinkMnu") {
    if (!desk().Ask(session().ProgramTitle,
                    session().In({"Turn off AutoCount links ?", "关闭会计连接？"}))) {
      return;
    }
    session().settings.LinkAcc.clear();
    menu_.HideLink();
    if (observer != nullptr) observer->TitleChanged();
  } else if (entry.name == "UpdateEInvSettingMnu") {
    if (!Confirm({"Confirm to Update eInvoicing Setting ?", "确定更新电子发票设定？"})) return;
    if (RefreshEInvoiceCodeTables(session(), desk(), {})) {
      Tell(MessageKind::information, {"eInvoicing Setting updated", "电子发票设定已更新"});
    } else if (!HasCentralDatabase(session())) {
      const bool filled = FillEmptyCodeTables(session().Main());
      Tell(MessageKind::information,
           {fmt::format("No central data source is set up on this PC, so {}. Its name in the local "
                        "settings is [AMLA].",
                        filled ? "only empty lists of codes were filled with those of this program"
                               : "nothing was changed"),
            fmt::format("此电脑未设中央数据源，因此{}。它在本机设定中的名称是 [AMLA]。",
                        filled ? "只以本程序所附的代码填入空表" : "没有更改")});
    }
  }
}

void MainFrm::OpenAddress(const std::string& address, const Caption& why_not) {
  if (Trim(address).empty()) {
    Tell(MessageKind::information, why_not);
  } else {
    desk().Open(address);
  }
}

// The program refuses the same dates, but nobody sees what it says: it runs without a window.
void MainFrm::StartDailyBatch() {
  const std::string title = "Manual Daily Batch Process";
  std::string date;
  for (;;) {
    date = desk().Input(
        title, session().In({"Please input Daily Batch Date", "请输入每日批处理日期"}), date);
    if (Trim(date).empty()) return;
    const Caption refusal = BatchDateRefusal(date, ServerTime(main()));
    if (refusal.english.empty()) break;
    desk().Message(MessageKind::critical, title, session().In(refusal));
  }
  const std::string program = DailyBatchProgram(session());
  if (desk().Start(program, {date})) return;
  desk().Message(MessageKind::critical, title,
                 session().In({fmt::format("{} could not be started.", program),
                               fmt::format("无法启动 {}。", program)}));
}

void MainFrm::SwitchLanguage() {
  session().ChineseFlag = !session().ChineseFlag;
  SetChinese(session().ChineseFlag);
  home_.ShowAll();
}

void MainFrm::EditSlogan() {
  if (session().CurrentLevel < 3) return;
  if (!desk().Ask(session().ProgramTitle, session().In({"Update Slogan ? ", "更新标语？"}))) return;
  const std::string slogan =
      desk().Input(session().In({"Slogan", "标语"}), session().In({"Your new slogan", "新的标语"}));
  if (slogan.empty()) return;
  Label1.SetText(slogan);
  const std::string value = QuoteStr(slogan);
  const auto kept =
      main().Execute(fmt::format("UPDATE Systemast SET [Value]={} WHERE Param='TestMode'", value));
  // A new office has no slogan yet, so no row of it.
  if (kept == 0) {
    main().Execute(
        fmt::format("INSERT INTO Systemast (Param,Value) VALUES ('TestMode',{})", value));
  }
}

void MainFrm::OpenListedLoan(const std::string& loan_id) {
  if (!OpenLoan(session(), desk(), loan_id)) return;
  RefreshMainLists();
  home_.Returned(HomeFigures::Lists::fresh);
}

void MainFrm::RefreshMainLists() {
  StandbyLBL.SetCaption(
      StandbyIsMissing(session().Main())
          ? Caption{"One of the two servers is away: what is saved now stands on one machine "
                    "alone. "
                    "Tell who looks after them.",
                    "两台服务器中有一台不在：现在储存的内容只在一台机器上。请通知管理员。"}
          : Caption{});
  const std::string company = AndCompany(session(), "l.CompCode");
  const std::string today = SqlDate(ServerNow(session().Main(), false));
  FillGrid(
      LS1,
      session().Main().Query(fmt::format(
          "SELECT a.LoanID,a.nextduedate,a.custname,a.custhp1,sum(a.TotDue) as "
          "TotDue,a.LoanGroupID "
          "FROM ("
          "SELECT l.LoanID,l.NextDueDate,c.CustName,c.CustHP1,0 as TotDue,l.LoanGroupID FROM "
          "LoanMast "
          "as l "
          "INNER JOIN CustMast as c on l.CustID=c.CustID {2} AND l.NextDueDate<={1} AND l.LoanBal "
          "> 0 "
          "union select l.loanid,l.NextDueDate,c.CustName,c.CustHP1,sum(payableamt-payment) as "
          "[TotDue],l.LoanGroupID from schmast as s inner join Loanmast as l on s.loanid=l.loanid "
          "inner join "
          "custmast as c on l.custid=c.custid where s.DueDate<={1} and s.payableamt-s.payment > "
          "0 and {3}<={1}{0} "
          "group by "
          "l.Loanid,l.NextDueDate,c.CustName,c.CustHP1,l.LoanGroupID) as a group by "
          "a.LoanID,a.nextduedate,a.custname,a.custhp1,a.LoanGroupID",
          company, today, CompanyFilter(session(), "l.CompCode"), OpenDay(kOpenInstalments, "s"))));
  FillGrid(
      LS2,
      session().Main().Query(fmt::format(
          "SELECT l.LoanID,l.TrxDate,c.CustName,LoanGroupID FROM LoanMast as l INNER JOIN CustMast "
          "as c on l.CustID=c.CustID {} AND l.AgreementNo='' order by l.TrxDate",
          CompanyFilter(session(), "l.CompCode"))));
  QuietClosedLoans(company, today);
}

// A loan may be paid off with instalments left open. It is listed, and owes nothing.
void MainFrm::QuietClosedLoans(const std::string& company, const std::string& today) {
  Recordset closed = main().Query(fmt::format(
      "SELECT DISTINCT l.LoanID FROM SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID "
      "WHERE s.DueDate<={1} AND s.PayableAmt-s.Payment>0 AND {2}<={1} AND l.LoanBal<=0{0}",
      company, today, OpenDay(kOpenInstalments, "s")));
  std::set<std::string> loans;
  for (; !closed.Eof(); closed.MoveNext()) loans.insert(NullToEmpty(closed.Field(0)));
  for (int row = 0; row < LS1.RowCount(); ++row) {
    if (loans.contains(LS1.Cell(row, 0))) LS1.SetTone(row, RowTone::quiet);
  }
}

}  // namespace kaunter
