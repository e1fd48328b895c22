#include "compliance/npl_exportfrm.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "compliance/export_csv.h"
#include "core/boxes.h"
#include "core/central_database.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/places.h"
#include "core/secrets.h"
#include "core/statement_places.h"
#include "core/stoppable.h"
#include "core/values.h"
#include "platform/private_file.h"
#include "platform/sql/transaction.h"
#include "platform/sql/translator/lexer.h"
#include "platform/whole_file.h"
#include "reports/reading_statement.h"
#include "reports/workbook_desk.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kMayType = 2;   // Supervisor
constexpr int kMayWrite = 4;  // Admin
constexpr int kLongestName = 100;

constexpr std::string_view kFromDate = "@FromDate";
constexpr std::string_view kToDate = "@ToDate";
constexpr std::string_view kCompanies = "@gcc";
constexpr std::string_view kCompany = "@CompCode";

const Caption kSaveFailed{"an error occurred during saving data export data",
                          "储存资料输出时出现错误"};

// The users, the settings with the accounts of services, and a column with a secret: all columns of
// a table at once would bring it along, under any name. Of a statement without a fault.
bool NamesSecrets(std::string_view statement) {
  constexpr std::string_view kWhole[] = {"UserMast", "Systemast"};
  constexpr std::string_view kInPart[] = {"CompMast", "CustMast", "LoanMast"};
  const auto is_one_of = [](const auto& names, std::string_view text) {
    return std::ranges::any_of(names, [&](std::string_view name) { return SameText(name, text); });
  };
  bool in_part = false;
  bool all_columns = false;
  sql::Lexer lexer(statement);
  sql::Token before;
  sql::Token token = lexer.Next();
  while (token.kind != sql::TokenKind::kEnd) {
    const sql::Token next = lexer.Next();
    if (token.kind == sql::TokenKind::kName || token.kind == sql::TokenKind::kQuotedName) {
      if (is_one_of(kWhole, token.text) || IsSecretName(token.text)) return true;
      in_part = in_part || is_one_of(kInPart, token.text);
    }
    if (token.text == "*" && token.kind == sql::TokenKind::kSymbol && before.text != "(") {
      // Before a value it multiplies.
      all_columns = all_columns || next.kind == sql::TokenKind::kEnd || next.text == "," ||
                    next.text == ")" || next.keyword == sql::Keyword::kFrom;
    }
    before = token;
    token = next;
  }
  return in_part && all_columns;
}

// As a person reads it: every year, for a date of birth is one too.
std::string Shown(const Value& value) {
  if (const DateTime* date = value.AsDate()) {
    return Format(*date, date->IsMidnight() ? "dd-mm-yyyy" : "dd-mm-yyyy hh:nn:ss");
  }
  if (const Money* money = value.AsMoney()) {
    const std::string text = Format(*money, "#,##0.00");
    // A rate has more decimals than an amount.
    return Money::FromText(text) == *money ? text : value.ToText();
  }
  return value.ToText();
}

std::vector<std::string> ShownFields(const std::vector<Value>& row) {
  std::vector<std::string> fields;
  fields.reserve(row.size());
  for (const Value& value : row) fields.push_back(Shown(value));
  return fields;
}

std::string HeadingOf(const Recordset& rows, std::size_t column) {
  const std::string& name = rows.columns()[column].name;
  return name.empty() ? fmt::format("Column {}", column + 1) : name;
}

struct Kinds {
  Kind shown;
  CellKind written;
};

Kinds KindsOf(FieldType type) {
  switch (type) {
    case FieldType::kMoney:
      return {Kind::money, CellKind::money};
    case FieldType::kDouble:
      return {Kind::rate, CellKind::rate};
    case FieldType::kInteger:
      return {Kind::integer, CellKind::integer};
    case FieldType::kDate:
      return {Kind::date, CellKind::date};
    default:
      return {Kind::text, CellKind::text};
  }
}

}  // namespace

NPLExportfrm::NPLExportfrm(Session& session, Desk& desk)
    : SessionScreen("NPLExportfrm", {"Data Exporter", "资料输出"}, session, desk),
      record_("DataExport", "SID") {
  SQLID.max_length = kLongestName;
  record_.AddValue("SID", [this] { return QuoteStr(SQLID.text()); }).InsertOnly();
  record_.Add(SQLStatement).Add(FromDate).Add(ToDate).Add(ExportHeader);
  SQLID.onPick = [this] { ChooseName(); };
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  Command4.onClick = [this] { GetTemplate(); };
  Command1.onClick = [this] { KeepStatement(); };
  Command2.onClick = [this] { DeleteStatement(); };
  SSCommand1.onClick = [this] { ExportCsv(); };
  CmdExcel.onClick = [this] { ExportExcel(); };
  SaveCmd.onClick = [this] { Process(); };
}

void NPLExportfrm::Load() {
  record_.TakeWidths(main());
  FillNames();
  FillCompanies(CompCode, session());
  OfferNothing(CompCode);  // all that the person may see
  ShowRights();
  record_.Remember();
}

bool NPLExportfrm::RequestClose() { return MayDiscard(record_.Changed()); }

void NPLExportfrm::ShowRights() {
  const bool may_type = session().CurrentLevel >= kMayType;
  const std::vector<Control*> typing = {&SQLStatement, &FromDate, &ToDate};
  for (Control* control : typing) control->SetLocked(!may_type);
  for (Button* button : {&Command1, &Command2}) {
    button->SetEnabled(may_type);
    if (!may_type) button->tip = {"For a supervisor or above", "主管或以上才能使用"};
  }
  CmdExcel.SetVisible(dynamic_cast<WorkbookDesk*>(&desk()) != nullptr);
}

// --- statements that are kept

void NPLExportfrm::FillNames() {
  FillItems(SQLID, main(), "SELECT SID FROM DataExport ORDER BY SID");
}

// A name that is not among those kept is that of a new one, for the statement that stands there.
void NPLExportfrm::ChooseName() {
  if (SQLID.index() < 0) return;
  if (!MayLeaveRecord(record_.Changed())) {
    SQLID.SetText(chosen_);
    return;
  }
  const Recordset row =
      main().Query("SELECT * FROM DataExport WHERE SID=" + QuoteStr(SQLID.text()));
  ForgetStatement();
  if (!row.Eof()) record_.Load(row);
  chosen_ = row.Eof() ? std::string() : SQLID.text();
  kept_ = SQLStatement.text();
  record_.Remember();
}

void NPLExportfrm::ForgetStatement() {
  record_.Clear();
  Quote.SetChecked(false);
  central_ = false;
  chosen_.clear();
  kept_.clear();
  ForgetResult();
}

// The rows of one statement would be written under the name of another.
void NPLExportfrm::ForgetResult() {
  result_ = {};
  DG.Clear();
  ResultLBL.tip = {};
  ResultLBL.SetText({});
}

void NPLExportfrm::KeepStatement() {
  SQLID.SetText(Trim(SQLID.text()));
  if (SQLID.empty()) {
    Refuse(SQLID, {"Data export name required", "请输入输出名称"});
    return;
  }
  if (Trim(SQLStatement.text()).empty()) {
    Refuse(SQLStatement, {"SQL statement required", "请输入 SQL 语句"});
    return;
  }
  // What others run must not do more than its writer may.
  if (!MayRun(SQLStatement.text())) return;
  if (!Confirm({"Confirm to save Data Export Statement ?", "确定储存输出语句？"})) return;
  const std::string name = SQLID.text();
  if (!Attempt("Data Export " + name, kSaveFailed, [&] {
        if (main().Query("SELECT SID FROM DataExport WHERE SID=" + QuoteStr(name)).Eof()) {
          main().Execute(record_.InsertStatement());
        } else {
          ExecuteOnRow(main(), record_.UpdateStatement(name), name);
        }
      })) {
    return;
  }
  chosen_ = name;
  kept_ = SQLStatement.text();
  record_.Remember();
  FillNames();
  SQLID.SetText(name);
  WriteLog(session(), LogLine(session(), fmt::format("Data Export {} saved: {}", name, kept_)));
  Tell(MessageKind::information, {"Data Export saved", "输出语句已储存"});
}

void NPLExportfrm::DeleteStatement() {
  const std::string name = Trim(SQLID.text());
  if (name.empty()) {
    Refuse(SQLID, {"Data export name required", "请输入输出名称"});
    return;
  }
  if (!ConfirmLoss({"Confirm to delete ?", "确定删除？"})) return;
  if (!AttemptOnRecord("Data Export " + name, kSaveFailed, [&] {
        ExecuteOnRow(main(), "DELETE DataExport WHERE SID=" + QuoteStr(name), name);
      })) {
    return;
  }
  ForgetStatement();
  record_.Remember();
  FillNames();
  SQLID.Clear();
  WriteLog(session(), LogLine(session(), fmt::format("Data Export {} deleted", name)));
  Tell(MessageKind::information, {"Data Export deleted", "输出语句已删除"});
}

void NPLExportfrm::GetTemplate() {
  if (!Confirm({"Confirm to get Ideal KPKT Upload Template ?", "确定取得 Ideal KPKT 上载范本？"}) ||
      !MayLeaveRecord(record_.Changed())) {
    return;
  }
  Recordset row;
  try {
    const Hourglass busy(desk());
    const std::string key = ScalarQuery(main(), "SELECT Value FROM Systemast WHERE PARAM='IDEAL'");
    row = ReadCentralDatabase(session(), {"SELECT * FROM DataExport WHERE SID=" + QuoteStr(key)})
              .front();
    if (row.Eof()) throw RowNotFound(key);
  } catch (const std::exception& failure) {
    LogRollback(session(), "IDEAL Upload", failure);
    Tell(MessageKind::critical,
         {"an error occur during retrieve IDEAL Upload detail", "取得 IDEAL 上载资料时出现错误"});
    return;
  }
  ForgetStatement();
  record_.Load(row);
  Quote.SetChecked(NullToEmpty(row.Field("Quote")) == "1");
  SQLID.SetText("IDEAL UPLOAD");
  kept_ = SQLStatement.text();
  central_ = true;
  record_.Remember();
}

// --- running one

bool NPLExportfrm::Uses(std::string_view place) const {
  return FindPlace(SQLStatement.text(), place) != std::string_view::npos;
}

bool NPLExportfrm::RequireDates() {
  const struct {
    TextBox& box;
    const CheckBox& asks;
    std::string_view place;
  } dates[] = {{DateFrom, FromDate, kFromDate}, {DateTo, ToDate, kToDate}};
  for (const auto& date : dates) {
    if (!date.asks.checked() && !Uses(date.place)) continue;
    if (!RequireDate(session(), date.box, {"Date is required", "请输入日期"})) return false;
  }
  return !Uses(kFromDate) || !Uses(kToDate) || CheckDateOrder(session(), DateFrom, DateTo);
}

bool NPLExportfrm::MayRun(const std::string& statement) {
  if (session().CurrentLevel >= kMayWrite) return true;
  if (FaultOfReading(statement)) {
    return Refuse(SQLStatement,
                  {"Below an administrator a statement only reads: one that begins with SELECT or "
                   "WITH and has no word in it that writes",
                   "管理员以下的语句只可读取：须以 SELECT 或 WITH 开始，且不含写入的字"});
  }
  // An administrator may have kept one for others.
  if (SQLStatement.text() != kept_ && NamesSecrets(statement)) {
    return Refuse(SQLStatement,
                  {"Below an administrator the users (UserMast), the settings (Systemast) and "
                   "columns with secrets (client ids, passwords, PINs) are not read; of CompMast, "
                   "CustMast and LoanMast name each column",
                   "管理员以下不可读取用户（UserMast）、设定（Systemast）及机密栏位（client "
                   "id、密码、PIN）；CompMast、CustMast、LoanMast 须逐一写明栏位"});
  }
  return true;
}

std::string NPLExportfrm::Filled() const {
  const std::string literals = CompanyLiterals(session());
  const std::string companies =
      !CompCode.empty()  ? fmt::format(" and l.CompCode={} ", QuoteStr(CompCode.text()))
      : literals.empty() ? std::string()
                         : fmt::format(" and l.CompCode in ({}) ", literals);
  const auto day = [](const TextBox& box) {
    const auto date = DateTime::FromDisplay(box.text());
    return QuoteStr(date ? Format(*date, "yyyy-mm-dd") : "");
  };
  std::vector<std::pair<std::string_view, std::string>> places = {
      {kFromDate, day(DateFrom)}, {kToDate, day(DateTo)}, {kCompanies, companies}};
  if (central_) places.emplace_back(kCompany, QuoteStr(CompCode.text()));
  return WithPlacesFilled(SQLStatement.text(), places);
}

void NPLExportfrm::Process() {
  if (Trim(SQLStatement.text()).empty()) {
    Refuse(SQLStatement, {"SQL Statement required", "请输入 SQL 语句"});
    return;
  }
  if (session().CurrentLevel < kMayType && SQLStatement.text() != kept_) {
    Refuse(SQLStatement, {"Please choose a statement that is kept", "请选择已储存的语句"});
    return;
  }
  if (!RequireDates()) return;
  if (central_ && CompCode.empty() && Uses(kCompany)) {
    Refuse(CompCode, {"Company Code is required", "请选择公司"});
    return;
  }
  const std::string statement = Filled();
  if (!MayRun(statement)) return;
  if (!Confirm({"Confirm to Perform SQL Statement ?", "确定执行 SQL 语句？"})) return;
  ForgetResult();
  const bool reads = !FaultOfReading(statement);
  try {
    if (!Run(statement, reads)) {
      ResultLBL.SetText(session().In({"Stopped, nothing was changed", "已停止，没有更改任何资料"}));
      return;
    }
  } catch (const std::exception& failure) {
    LogRollback(session(), "Data Export " + SQLID.text(), failure);
    ResultLBL.tip = {failure.what(), failure.what()};  // the line may be too short for all of it
    ResultLBL.SetText(failure.what());
    Refuse(SQLStatement, {"SQL Statement error", "SQL 语句错误"});
    return;
  }
  SQLStatement.SetMark(false);
  ShowResult();
  WriteLog(session(), LogLine(session(), fmt::format("Data Export {} processed, {} row(s): {}",
                                                     SQLID.text(), result_.RowCount(), statement)));
  Tell(MessageKind::information, {"Process completed", "执行完毕"});
}

bool NPLExportfrm::Run(const std::string& statement, bool reads) {
  return RunStoppable(session(), desk(), title().In(chinese()),
                      {"The statement is running ...", "正在执行语句..."}, [&](const GoOn&) {
                        if (reads) {
                          result_ = main().QueryOnly(statement);
                          return;
                        }
                        // Half of it would be worse than none.
                        Transaction transaction(main());
                        result_ = main().Query(statement);
                        transaction.Commit();
                      });
}

void NPLExportfrm::ShowResult() {
  constexpr int kColumnWeight = 12;
  std::vector<GridColumn> columns;
  for (std::size_t i = 0; i < result_.columns().size(); ++i) {
    const std::string heading = HeadingOf(result_, i);
    columns.push_back(
        {{heading, heading}, KindsOf(result_.columns()[i].type).shown, kColumnWeight});
  }
  if (columns.empty()) columns.push_back({{"Result", "结果"}});
  DG.SetColumns(std::move(columns));
  std::vector<std::vector<std::string>> rows;
  rows.reserve(result_.RowCount());
  for (const auto& row : result_.rows()) rows.push_back(ShownFields(row));
  DG.SetRows(std::move(rows));
  ResultLBL.SetText(session().In(
      {fmt::format("{} row(s)", result_.RowCount()), fmt::format("{} 行", result_.RowCount())}));
}

// --- the files

// "" when there is nothing to write, or the person went back.
std::string NPLExportfrm::ChosenFile(const Caption& question, const char* extension) {
  if (result_.columns().empty()) {
    Refuse(SaveCmd, {"Please process a statement first", "请先执行语句"});
    return {};
  }
  if (!Confirm(question)) return {};
  const std::string folder =
      desk().PickFolder(session().In({"Select a folder", "请选择文件夹"}), PickStart(session()));
  if (folder.empty()) return {};
  const std::string name = SQLID.empty() ? "Data Export" : FileNameOf(SQLID.text());
  return (std::filesystem::path(folder) /
          fmt::format("{}-{}.{}", name, Format(session().clock.Now(), "hhnnss"), extension))
      .string();
}

void NPLExportfrm::Offer(const std::string& file, const Caption& text) {
  WriteLog(session(), LogLine(session(), fmt::format("Data Export {} written to {}, {} row(s)",
                                                     SQLID.text(), file, result_.RowCount())));
  const std::string folder = std::filesystem::path(file).parent_path().string();
  if (Confirm({fmt::format("{}, Open folder on {} ?", text.english, folder),
               fmt::format("{}，要打开文件夹 {} 吗？", text.chinese, folder)})) {
    desk().Open(folder);
  }
}

void NPLExportfrm::WriteLines(std::ostream& out) const {
  const Hourglass busy(desk());
  const auto line = [&](const std::vector<std::string>& fields) {
    out << ExportLine(fields, Quote.checked()) << "\r\n";
  };
  std::vector<std::string> names;
  for (std::size_t i = 0; i < result_.columns().size(); ++i) {
    names.push_back(HeadingOf(result_, i));
  }
  if (ExportHeader.checked()) line(names);
  for (const auto& row : result_.rows()) line(ShownFields(row));
}

void NPLExportfrm::ExportCsv() {
  const std::string own_title = session().MsgTitle;
  if (central_) session().MsgTitle = "Ideal KPKT";
  const std::string file =
      ChosenFile({"Confirm to export cvs file ?", "确定输出 CSV 文件？"}, "csv");
  try {
    if (!file.empty()) {
      WriteWholeFile(file, [this](std::ostream& out) { WriteLines(out); });
      Offer(file, {"Agent activities csv file generated", "CSV 文件已产生"});
    }
  } catch (const std::exception& failure) {
    LogRollback(session(), "Data Export " + SQLID.text(), failure);
    Refuse({failure.what(), failure.what()});
  }
  session().MsgTitle = own_title;
}

void NPLExportfrm::ExportExcel() {
  const std::string file =
      ChosenFile({"Confirm to export Excel file ?", "确定输出 Excel 文件？"}, "xlsx");
  auto* writer = dynamic_cast<WorkbookDesk*>(&desk());
  if (file.empty() || writer == nullptr) return;
  ReportRows rows;
  rows.title = SQLID.empty() ? "Data Export" : SQLID.text();
  for (std::size_t i = 0; i < result_.columns().size(); ++i) {
    rows.columns.push_back({HeadingOf(result_, i), KindsOf(result_.columns()[i].type).written});
  }
  rows.rows = result_.rows();
  // A date of a workbook is a day, and none before 1900.
  for (auto& row : rows.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const DateTime* date = row[i].AsDate();
      if (date == nullptr || (date->IsMidnight() && date->year >= 1900)) continue;
      row[i] = Shown(row[i]);
      rows.columns[i].kind = CellKind::text;
    }
  }
  try {
    const Hourglass busy(desk());
    writer->WriteWorkbook(rows, file);
  } catch (const std::exception& failure) {
    LogRollback(session(), "Data Export " + SQLID.text(), failure);
    Refuse({failure.what(), failure.what()});
    return;
  }
  Offer(file, {"Excel file generated", "Excel 文件已产生"});
}

}  // namespace kaunter
