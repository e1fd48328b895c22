#include "links/smsfrm.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/sms_database.h"
#include "core/telling.h"
#include "core/values.h"
#include "links/sms_columns.h"
#include "links/sms_text.h"
#include "screen/hourglass.h"

namespace kaunter {

using namespace sms;

namespace {

// A column of width 0 is there for scripts.
std::vector<GridColumn> MessageColumns(SmsType type) {
  const bool loan = type == SmsType::outstanding_due;
  const auto of_loan = [loan](int weight) { return loan ? weight : 0; };
  const bool birthdays = type == SmsType::full_settled || type == SmsType::other;
  return {{{"No", "序号"}, Kind::integer, 4},
          {{"Customer Code", "顾客编号"}, Kind::text, type == SmsType::text_file ? 0 : 9},
          {{"Company", "公司"}, Kind::text, 7},
          {{"Customer Name", "顾客姓名"}, Kind::text, 20},
          {{"HP", "手机"}, Kind::text, 12},
          {{"Loan ID", "贷款编号"}, Kind::text, of_loan(11)},
          {{"Status", "状态"}, Kind::text, 12},
          {{"Due Date", "到期日"}, Kind::date, of_loan(9)},
          {{"Due Amt", "到期额"}, Kind::money, of_loan(9)},
          {{"Content", "内容"}, Kind::text, 40},
          {{"Loan Amt", "贷款额"}, Kind::money, of_loan(9)},
          {{"Loan Date", "贷款日期"}, Kind::date, of_loan(9)},
          {{"Installment Amt", "分期额"}, Kind::money, of_loan(9)},
          {{"Loan Bal", "贷款结余"}, Kind::money, of_loan(9)},
          {{"DOB", "出生日期"}, Kind::text, birthdays ? 9 : 0},
          {{"Tel", "电话"}, Kind::text, 0},
          {{"HP", "公司手机"}, Kind::text, 0},
          {{"Area", "地区"}, Kind::text, 0},
          {{"Messages", "则数"}, Kind::integer, 6},
          {{"Remark", "备注"}, Kind::text, 22}};
}

std::vector<GridColumn> FailedColumns() {
  return {{{"No", "序号"}, Kind::integer, 4},     {{"Customer Code", "顾客编号"}, Kind::text, 9},
          {{"Company", "公司"}, Kind::text, 7},   {{"Customer Name", "顾客姓名"}, Kind::text, 20},
          {{"HP", "手机"}, Kind::text, 12},       {{"Loan ID", "贷款编号"}, Kind::text, 11},
          {{"Status", "状态"}, Kind::text, 8},    {{"Date Sent", "发送日期"}, Kind::text, 14},
          {{"Sent by", "发送者"}, Kind::text, 8}, {{"Content", "内容"}, Kind::text, 40},
          {{"ID", "编号"}, Kind::integer, 6}};
}

std::vector<std::string> Months() {
  std::vector<std::string> months{""};
  for (int month = 1; month <= 12; ++month) {
    months.push_back(Format(DateTime{.month = month}, "mmmm"));
  }
  return months;
}

}  // namespace

SMSfrm::SMSfrm(Session& session, Desk& desk)
    : SessionScreen("SMSfrm", {"SMS Master", "短讯"}, session, desk) {
  vsd.SetHasChecks(true);
  Preview.SetLocked(true);
  TextFileName.SetLocked(true);
  SMSCat.onPick = [this] { ChooseType(); };
  for (ComboBox* box :
       {&CompCode, &LoanStatus, &LoanType2, &CustStatus, &CustRace, &MMonth, &UserLevel}) {
    box->onPick = [this] { ForgetList(); };
  }
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
    box->onChange = [this] { ForgetList(); };
  }
  for (Option* option : {&Option1, &Option2}) option->onClick = [this] { ForgetList(); };
  Command4.onClick = [this] {
    const std::string file = this->desk().PickFile(
        this->session().In(Command4.caption()), "",
        this->session().In({"Text files (*.txt *.csv)", "文字档 (*.txt *.csv)"}));
    if (file.empty()) return;
    TextFileName.SetText(file);
    ForgetList();
  };
  OfferPicker(session, TID, "SMSMastPop", [this](const std::string& id) { LoadTemplate(id); });
  TID.onLeave = [this] { LeaveTemplate(); };
  SearchCmd1.onClick = [this] { TID.onSearch(); };
  SMSContent.onChange = [this] { ShowSize(); };
  SMSField.onPick = [this] {
    SMSContent.Insert(SMSField.text());
    SMSField.Clear();
  };
  vsd.onTick = [this](int) { ShowCount(); };
  CmdCheckAll.onClick = [this] { TickAll(true); };
  CmdUncheckAll.onClick = [this] { TickAll(false); };
  CmdPreview.onClick = [this] { PreviewFirst(); };
  CmdClear.onClick = [this] { Clear(); };
  SSCommand1.onClick = [this] { Process(); };
  SendCmd.onClick = [this] { Send(); };
}

void SMSfrm::Load() {
  SMSCat.SetItems({session().In({"Outstanding Due", "到期未付"}),
                   session().In({"Full Settled Loan", "已还清贷款"}),
                   session().In({"Other SMS", "其他短讯"}), session().In({"Staff", "职员"}),
                   session().In({"Text File", "文字档"}), session().In({"Resend", "重发"})});
  FillCompanies(CompCode, session());
  FillItems(LoanStatus, main(), "SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID");
  OfferNothing(LoanStatus);
  CustStatus.SetItems({"", "ACTIVE", "BAD DEBT", "BLACKLIST", "REJECT", "KIV", "AMLA"});
  FillItems(CustRace, main(), "SELECT CustRaceID FROM CustRaceMast ORDER BY CustRaceID");
  OfferNothing(CustRace);
  MMonth.SetItems(Months());
  UserLevel.SetItems({"", "Clerk", "Supervisor", "Manager", "Admin"});
  FillItems(SMSField, main(), "SELECT FieldID FROM SMSField");
  TID.max_length = kKeyLength;
  SMSContent.max_length =
      main().Query("SELECT SMSContent FROM SMSMast WHERE 1=0").columns()[0].width;
  SMSCat.SetIndex(0);
  Clear();
}

// --- what the boxes are for

SmsType SMSfrm::Type() const { return static_cast<SmsType>(SMSCat.index()); }

void SMSfrm::ChooseType() {
  const SmsType type = Type();
  const bool due = type == SmsType::outstanding_due;
  const bool dated =
      due || type == SmsType::full_settled || type == SmsType::other || type == SmsType::staff;
  DateFrom.SetCaption(due ? Caption{"Due Date From", "到期日由"}
                          : Caption{"Register Date From", "登记日由"});
  DateTo.SetCaption(due ? Caption{"Due Date To", "到期日至"}
                        : Caption{"Register Date To", "登记日至"});
  const struct {
    Control& control;
    bool shown;
  } controls[] = {{DateFrom, dated},
                  {DateTo, dated},
                  {LoanStatus, due},
                  {LoanType2, due},
                  {Option1, due},
                  {Option2, due},
                  {CustStatus, type == SmsType::other},
                  {CustRace, type == SmsType::other},
                  {MMonth, type == SmsType::other},
                  {UserLevel, type == SmsType::staff},
                  {TextFileName, type == SmsType::text_file},
                  {Command4, type == SmsType::text_file},
                  {TID, !IsResend()},
                  {SearchCmd1, !IsResend()},
                  {SMSContent, !IsResend()},
                  {SMSField, !IsResend()},
                  {CountLBL, !IsResend()},
                  {UnknownLBL, !IsResend()},
                  {CmdPreview, !IsResend()}};
  for (const auto& one : controls) one.control.SetVisible(one.shown);
  ForgetList();
  vsd.SetColumns(IsResend() ? FailedColumns() : MessageColumns(type));
}

// Another choice: what is listed belongs to the one before.
void SMSfrm::ForgetList() {
  vsd.Clear();
  sample_.reset();
  ResultLBL.SetText({});
  ShowPreview();
}

void SMSfrm::Clear() {
  for (TextBox* box : {&DateFrom, &DateTo, &TID, &SMSContent, &TextFileName}) {
    box->Clear();
    box->SetMark(false);
  }
  for (ComboBox* box : {&LoanStatus, &LoanType2, &CustStatus, &CustRace, &MMonth, &UserLevel}) {
    box->Clear();
  }
  ChooseHome(session(), CompCode);
  Option1.SetChosen(true);
  chosen_template_.clear();
  ChooseType();
  ShowSize();
}

// --- the text

void SMSfrm::LeaveTemplate() {
  const std::string id = Trim(TID.text());
  TID.SetText(id);
  TID.SetMark(false);
  if (SameText(id, chosen_template_)) return;
  if (!id.empty()) return LoadTemplate(id);
  chosen_template_.clear();
}

void SMSfrm::LoadTemplate(const std::string& id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "SMS Template " + id,
                  {"an error occur during reading SMS Template", "阅读短讯范本时出现错误"}, [&] {
                    row = main().Query("SELECT TID,TName,SMSContent FROM SMSMast WHERE TID=" +
                                       QuoteStr(id));
                  })) {
    return;
  }
  if (row.Eof()) {
    RefuseCode(TID, SmsTemplateNotFound(id));
    return;
  }
  chosen_template_ = NullToEmpty(row.Field("TID"));
  TID.SetText(chosen_template_);
  SMSContent.SetText(NullToEmpty(row.Field("SMSContent")));
  ShowSize();
}

// Counted as the first one gets it, once it is known who that is.
void SMSfrm::ShowSize() {
  const std::string& text = SMSContent.text();
  CountLBL.SetText(session().In(ShowSmsSize(MeasureSms(sample_ ? FillSms(text, *sample_) : text))));
  UnknownLBL.SetText(session().In(ShowUnknown(text)));
  ShowPreview();
}

void SMSfrm::ShowPreview() { Preview.SetText(sample_ ? FillSms(SMSContent.text(), *sample_) : ""); }

// --- the list

bool SMSfrm::CheckTemplate() {
  if (TID.empty()) return Refuse(TID, {"SMS Template is required", "请选择短讯范本"});
  // A number that was refused when it was left is no template.
  if (!SameText(TID.text(), chosen_template_)) {
    return Refuse(TID, SmsTemplateNotFound(TID.text()));
  }
  if (Trim(SMSContent.text()).empty()) {
    return Refuse(SMSContent, {"SMS Contents is required", "请输入短讯内容"});
  }
  return true;
}

bool SMSfrm::Check() {
  if (DateTo.visible()) {
    if (Type() == SmsType::outstanding_due && Trim(DateTo.text()).empty()) {
      return Refuse(DateTo, {"Date To required", "请输入截止日期"});
    }
    if (!CheckDateBox(session(), DateFrom) || !CheckDateBox(session(), DateTo) ||
        !CheckDateOrder(session(), DateFrom, DateTo)) {
      return false;
    }
  }
  if (!IsResend() && !CheckTemplate()) return false;
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is required", "请选择公司"});
  if (Type() == SmsType::text_file && TextFileName.empty()) {
    return Refuse(Command4, {"Text File is required", "请选择文字档"});
  }
  return true;
}

SmsChoice SMSfrm::Choice() const {
  // What the type does not ask for may still stand in a box that is hidden.
  const auto shown = [](const Control& control) {
    return control.visible() ? control.Text() : std::string();
  };
  SmsChoice choice;
  choice.type = Type();
  choice.CompCode = CompCode.text();
  choice.DateFrom = shown(DateFrom);
  choice.DateTo = shown(DateTo);
  choice.LoanStatus = shown(LoanStatus);
  choice.LoanType2 = shown(LoanType2);
  choice.CustStatus = shown(CustStatus);
  choice.CustRace = shown(CustRace);
  choice.MMonth = shown(MMonth);
  choice.UserLevel = shown(UserLevel);
  choice.TextFileName = shown(TextFileName);
  choice.all_interest = Option2.chosen();
  return choice;
}

bool SMSfrm::Read(std::vector<Reader>& readers) {
  const bool file = Type() == SmsType::text_file;
  try {
    const Hourglass busy(desk());
    const std::string company = ScalarQuery(
        main(), "SELECT CompDesc FROM CompMast WHERE CompCode=" + QuoteStr(CompCode.text()));
    const std::string& user = session().CurrentUserID;
    std::string staff =
        ScalarQuery(main(), "SELECT UserName FROM UserMast WHERE UserID=" + QuoteStr(user));
    if (staff.empty()) staff = user;
    const DateTime now = ServerTime(main());
    for (SmsRow& row : ReadSmsRows(main(), Choice())) {
      SmsValues values = ValuesOf(row, company, now, staff);
      readers.push_back({std::move(row), std::move(values)});
    }
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), "SMS", failure);
    Tell(MessageKind::critical,
         FailedOrRefused(
             file ? Caption{"an error occur during reading text file", "阅读文字档时发生错误"}
                  : Caption{"an error occur during process", "处理时发生错误"},
             failure));
    return false;
  }
}

void SMSfrm::PreviewFirst() {
  if (!Check()) return;
  std::vector<Reader> readers;
  if (!Read(readers)) return;
  if (readers.empty()) {
    Tell(MessageKind::information, {"Nobody is found by this choice", "没有符合条件的记录"});
    return;
  }
  sample_ = readers.front().values;
  ShowSize();
}

void SMSfrm::Process() {
  if (!Check() || !Confirm({"Conform to process ?", "确定处理？"})) return;
  ForgetList();
  if (IsResend() ? !FillFailed() : !FillMessages()) return;
  processed_text_ = SMSContent.text();
  ShowSize();
  ShowCount();
  Tell(MessageKind::information, {"Process completed", "处理完毕"});
}

// Who has no number that can be sent to, and who gets the same text twice, is told in the row.
bool SMSfrm::FillMessages() {
  std::vector<Reader> readers;
  if (!Read(readers)) return false;
  std::map<std::pair<std::string, std::string>, int> first;
  std::vector<std::vector<std::string>> rows;
  for (const auto& [row, values] : readers) {
    const int number = static_cast<int>(rows.size()) + 1;
    const std::string text = FillSms(SMSContent.text(), values);
    Caption remark;
    if (row.HP.empty()) {
      remark = row.given.empty()
                   ? Caption{"No mobile number", "没有手机号码"}
                   : Caption{row.given + " is no mobile number", row.given + " 不是手机号码"};
    } else if (const auto [same, is_new] = first.try_emplace({row.HP, text}, number); !is_new) {
      remark = {fmt::format("Same text as No {}", same->second),
                fmt::format("与第 {} 则相同", same->second)};
    }
    rows.push_back({std::to_string(number),
                    row.CustID,
                    row.CompCode,
                    row.CustName,
                    row.HP,
                    row.LoanID,
                    row.Status,
                    row.DueDate,
                    row.DueAmt,
                    text,
                    row.LoanAmt,
                    row.LoanDate,
                    row.InstallmentAmt,
                    row.LoanBal,
                    row.DOB,
                    row.Tel,
                    row.CompHP,
                    row.Area,
                    std::to_string(MeasureSms(text).messages),
                    session().In(remark)});
  }
  vsd.SetRows(std::move(rows));
  if (!readers.empty()) sample_ = readers.front().values;
  TickAll(true);
  return true;
}

bool SMSfrm::FillFailed() {
  try {
    const Hourglass busy(desk());
    std::vector<std::vector<std::string>> rows;
    for (Recordset one = SmsDatabase(session()).Query(
             "SELECT l.SMSID,l.CustID,l.CustName,l.LoanID,l.CompCode,l.HP,l.SMSMsg,l.SMSStatus,"
             "l.UserID,l.DateSent FROM SMSList as l WHERE l.SMSStatus='FAIL'  AND l.CompCode=" +
             QuoteStr(CompCode.text()));
         !one.Eof(); one.MoveNext()) {
      const auto text = [&one](const char* column) { return NullToEmpty(one.Field(column)); };
      rows.push_back({std::to_string(rows.size() + 1), text("CustID"), text("CompCode"),
                      text("CustName"), text("HP"), text("LoanID"), text("SMSStatus"),
                      ShowDateTime(one.Field("DateSent")), text("UserID"), text("SMSMsg"),
                      text("SMSID")});
    }
    vsd.SetRows(std::move(rows));
  } catch (const std::exception& failure) {
    LogRollback(session(), "SMS", failure);
    Tell(MessageKind::critical, {fmt::format("an error occur during process\n{}", failure.what()),
                                 fmt::format("处理时发生错误\n{}", failure.what())});
    return false;
  }
  TickAll(true);
  return true;
}

// A row without a number is never ticked by the whole.
void SMSfrm::TickAll(bool on) {
  for (int row = 0; row < vsd.RowCount(); ++row) {
    vsd.SetTicked(row, on && !vsd.Cell(row, kHP).empty());
  }
  ShowCount();
}

void SMSfrm::ShowCount() {
  int messages = 0;
  const std::vector<int> ticked = TickedRows();
  for (const int row : ticked) {
    messages += IsResend() ? MeasureSms(vsd.Cell(row, kFailedContent)).messages
                           : CLng(vsd.Cell(row, kMessages));
  }
  ResultLBL.SetText(session().In(
      {fmt::format("{} rows, {} ticked, {} messages to be paid", vsd.RowCount(), ticked.size(),
                   messages),
       fmt::format("{} 行，已选 {}，收费 {} 则", vsd.RowCount(), ticked.size(), messages)}));
}

std::vector<int> SMSfrm::TickedRows() const {
  std::vector<int> rows;
  for (int row = 0; row < vsd.RowCount(); ++row) {
    if (vsd.Ticked(row)) rows.push_back(row);
  }
  return rows;
}

}  // namespace kaunter
