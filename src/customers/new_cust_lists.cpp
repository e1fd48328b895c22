// The lists of the customer screen: referrers, check list, loans with their sums, the credit bar,
// and what brings rows into them.
#include <fmt/format.h>

#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/telling.h"
#include "core/values.h"
#include "customers/credit_limit.h"
#include "customers/customer_store.h"
#include "customers/new_cust_frm.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

std::string TextOf(const Grid& grid) {
  std::string text;
  for (int row = 0; row < grid.RowCount(); ++row) {
    for (const std::string& cell : grid.Row(row)) text += cell + "\x1f";
    text += "\x1e";
  }
  return text;
}

}  // namespace

std::string NewCustFrm::Lists() const {
  return TextOf(RefLV) + TextOf(DocDG) + TextOf(CheckListDG);
}

void NewCustFrm::LoadLists(const std::string& id) {
  LoadReferrers(id);
  LoadDocuments(id);
  LoadCheckList(id);
  LoadLoans(id);
  LoadApplications(id);
  ShowCredit(id);
  ShowPhoto(id);
  ShowGlance();
  remembered_lists_ = Lists();
}

void NewCustFrm::ShowGlance() {
  Glance.SetVisible(!loaded_id_.empty());
  if (loaded_id_.empty()) return;
  const std::string ic = !CustNIC.empty()   ? CustNIC.text()
                         : !CustOIC.empty() ? CustOIC.text()
                                            : CustOthIC.text();
  GlanceLBL.SetText(fmt::format("{}\n{}   {}   {} {}   {} {}", CustName.text(), ic,
                                CustStatus.text(), session().In({"Loans", "贷款"}),
                                LoanDG.RowCount(), session().In({"Balance", "结余"}),
                                SumLoanBal.text()));
  const bool limited = !CreditLimitType.empty() && CreditLimit.text() != "0.00";
  CreditBar.SetVisible(limited);
  Photo.SetVisible(!Photo.Text().empty());
}

void NewCustFrm::LoadReferrers(const std::string& id) {
  RefLV.Clear();
  EditReferrer(-1);
  if (id.empty()) return;
  Recordset rows = main().Query(fmt::format(
      "Select * from RefererMast where CustID = {} order by RefererName", QuoteStr(id)));
  for (; !rows.Eof(); rows.MoveNext()) {
    std::vector<std::string> cells;
    for (const char* column :
         {"RefererName", "RefererNIC", "RefererOIC", "RefererRelationship", "RefererComp",
          "RefererCompBiz", "RefererCompPos", "RefererCompIncome", "RefererCompAdd1",
          "RefererCompAdd2", "RefererCompAdd3", "RefererCompTel1", "RefererCompFax1", "RefererHP1",
          "Refereremail"}) {
      const Value& value = rows.Field(column);
      cells.push_back(std::string_view(column) == "RefererCompIncome" ? ShowMoney(value)
                                                                      : NullToEmpty(value));
    }
    RefLV.AddRow(std::move(cells));
  }
}

// In the order of the grid's columns.
std::vector<TextBox*> NewCustFrm::ReferrerBoxes() {
  return {&RefererName,     &RefererNIC,      &RefererOIC,      &RefererRelationship,
          &RefererComp,     &RefererCompBiz,  &RefererCompPos,  &RefererCompIncome,
          &RefererCompAdd1, &RefererCompAdd2, &RefererCompAdd3, &RefererCompTel1,
          &RefererCompFax1, &RefererHP1,      &Refereremail};
}

bool NewCustFrm::AddReferrer() {
  if (RefererName.empty())
    return Refuse(RefererName, {"Referrer Name is require", "请输入介绍人姓名"});
  if (!RefererCompIncome.empty() && !IsNumeric(RefererCompIncome.text())) {
    return Refuse(RefererCompIncome, {"Invalid amount, please check", "数额不正确，请检查"});
  }
  if (RefererCompIncome.empty()) RefererCompIncome.SetText("0.00");
  std::vector<std::string> cells;
  for (const TextBox* box : ReferrerBoxes()) cells.push_back(box->text());
  if (referrer_row_ >= 0 && referrer_row_ < RefLV.RowCount()) {
    for (std::size_t i = 0; i < cells.size(); ++i)
      RefLV.SetCell(referrer_row_, static_cast<int>(i), cells[i]);
  } else {
    RefLV.AddRow(std::move(cells));
  }
  EditReferrer(-1);
  return true;
}

void NewCustFrm::EditReferrer(int row) {
  referrer_row_ = row;
  int column = 0;
  for (TextBox* box : ReferrerBoxes()) {
    box->SetText(row < 0 ? std::string() : RefLV.Cell(row, column));
    box->SetMark(false);
    ++column;
  }
}

void NewCustFrm::LoadCheckList(const std::string& id) {
  Recordset rows;
  if (!id.empty()) {
    rows =
        main().Query(fmt::format("SELECT CheckListDesc,Detail,Checked,Remarks,Detail FROM "
                                 "CheckListTrans WHERE CheckListType = 'CL' AND "
                                 "CustID={} ORDER BY CheckListSeq",
                                 QuoteStr(id)));
  }
  if (rows.Eof()) {
    rows = main().Query(
        "SELECT CheckListDesc,'' as [Detail],'2' as [Checked],'' as [Remarks] FROM CheckListMast "
        "WHERE "
        "CheckListType = 'CL' ORDER BY CheckListSeq");
  }
  FillGrid(CheckListDG, std::move(rows));
}

void NewCustFrm::LoadLoans(const std::string& id) {
  LoanDG.Clear();
  for (TextBox* box : {&SumProfit, &SumLoanAmt, &SumLoanBal, &SumPayOutAmt, &SumTopUpAmt}) {
    box->SetText("0.00");
    box->SetLocked(true);
  }
  if (id.empty()) return;
  Recordset rows = main().Query(fmt::format(
      "Select CompCode,LoanID,OldLoanCode,LoanTerm,firstpayment,TrxDate,LoanAmt as "
      "[LoanAmt3],PayOutAmt as "
      "[PayOutAmt3],TotPay,LoanBal,LoanTerm,FirstPayment,LoanGroupID,TotInt,TotCollectorAmt,"
      "LoanStatus,"
      "(TotPay+PayExtra)-TotDiscAmt as TotPay2 from LoanMast where CustID = {}{}{} order by LoanID",
      QuoteStr(id), AndCompany(session(), "CompCode"),
      OpenLoansChk.checked() ? " AND LoanBal <> 0" : ""));
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::string term = NullToEmpty(rows.Field("LoanTerm"));
    const std::string pay = ShowMoney(rows.Field("firstpayment"));
    const bool open = ShowMoney(rows.Field("LoanBal")) != "0.00";
    LoanDG.AddRow({NullToEmpty(rows.Field("LoanID")), NullToEmpty(rows.Field("OldLoanCode")),
                   ShowDate(rows.Field("TrxDate")), ShowMoney(rows.Field("LoanAmt3")), term,
                   ShowMoney(rows.Field("PayOutAmt3")), term + " X " + pay, pay,
                   NullToEmpty(rows.Field("LoanGroupID")), ShowMoney(rows.Field("TotInt")),
                   ShowMoney(rows.Field("TotCollectorAmt")), ShowMoney(rows.Field("TotPay2")),
                   ShowMoney(rows.Field("LoanBal")), NullToEmpty(rows.Field("LoanStatus"))},
                  open ? RowTone::plain : RowTone::quiet);
  }
  const Recordset sums = main().Query(fmt::format(
      "SELECT "
      "SUM(((TotPay+PayExtra+TotInt+TotCharge+TotCollectorAmt)-TotDiscAmt)-PayOutAmt),SUM(LoanAmt),"
      "SUM(LoanBal),SUM(PayOutAmt),sum(TopUpAmt) FROM LoanMast WHERE CustID={}",
      QuoteStr(id)));
  std::size_t field = 0;
  for (TextBox* box : {&SumProfit, &SumLoanAmt, &SumLoanBal, &SumPayOutAmt, &SumTopUpAmt}) {
    box->SetText(ShowMoney(sums.Field(field++)));
  }
}

void NewCustFrm::ShowCredit(const std::string& id) {
  try {
    const Money limit = Money::TryText(CreditLimit.text()).value_or(Money());
    const struct CreditBar bar = MeasureCredit(main(), id, limit, CreditLimitType.text());
    const bool over = bar.used > bar.limit;
    this->CreditBar.Set(
        {{{"Used", "已用"}, bar.share_used, over ? Bar::Part::Tone::bad : Bar::Part::Tone::warn},
         {{"Available", "可用"}, 1 - bar.share_used, Bar::Part::Tone::good}},
        bar.label);
    this->CreditBar.tip = bar.tip;
  } catch (const std::exception& failure) {
    desk().Message(
        MessageKind::critical, "Credit Limit",
        session().In(Failed("an error occur during checking credit limit", failure, kNotRead)));
  }
}

void NewCustFrm::Import() {
  if (CompCode.empty()) {
    Refuse(CompCode, {"Company code is require", "请选择公司"});
    return;
  }
  try {
    const std::string code = Pick(session(), desk(), "LinkDB");
    if (code.empty()) return;
    auto linked =
        OpenConnection("LinkDB", session().LinkDBString, session().data_sources, session().clock);
    const auto values = ReadLinkedCustomer(*linked, code);
    const struct {
      const char* column;
      const char* refusal;
    } keys[] = {{"CustNIC", "Customer New IC exist, no double import allow"},
                {"CustOIC", "Customer Old IC exist, no double import allow"},
                {"CustOthIC", "Customer Other IC exist, no double import allow"}};
    for (const auto& key : keys) {
      const auto value = values.find(key.column);
      if (value == values.end() || value->second.empty()) continue;
      const std::string same = ScalarQuery(
          main(),
          fmt::format("SELECT CustID FROM CustMast WHERE {0}={1} and {0} <> '' and CompCode={2}",
                      key.column, QuoteStr(value->second), QuoteStr(CompCode.text())));
      if (!same.empty()) {
        Refuse(key.refusal);
        return;
      }
    }
    for (const auto& [column, text] : values) {
      Control* control = Find(column);
      if (control == nullptr) continue;
      if (control->type() == ControlType::combo_box) {
        static_cast<ComboBox*>(control)->SetText(text);
      } else if (control->type() == ControlType::text_box) {
        static_cast<TextBox*>(control)->SetText(text);
      }
    }
    LeaveNewIc(CustNIC, DOB);
    Tell(MessageKind::information, {"Data import successfully", "资料已输入"});
  } catch (const std::exception& failure) {
    LogRollback(session(), "Import", failure);
    Tell(MessageKind::critical,
         Failed({"an error occur during import data", "输入资料时发生错误"}, failure, kNotRead));
  }
}

// Those that are still in use; a star marks one that is not.
void NewCustFrm::LoadApplications(const std::string& id) {
  AppDG.Clear();
  if (id.empty()) return;
  FillGrid(AppDG,
           main().Query(fmt::format(
               "SELECT a.AppID,a.TrxDate,a.LoanAmt,a.AppStatus,a.AppStatus2,l.AppType,"
               "l.Relationship FROM AppMast as a INNER JOIN AppMastLink as l on a.AppID=l.AppID "
               "WHERE l.CustID={} AND a.AppID not like '%*'{}",
               QuoteStr(id), AndCompany(session(), "a.CompCode"))));
}

// A link lets the customer's loan take the application over.
bool NewCustFrm::CheckApplication() {
  AppID.SetText(Upper(Trim(AppID.text())));
  if (loaded_id_.empty() || AppID.empty()) {
    return Refuse(AppID, {"Application and saved customer are required", "请先选择申请并储存顾客"});
  }
  const std::string& id = AppID.text();
  const Recordset row =
      main().Query("SELECT CompCode,LoanID FROM AppMast WHERE AppID=" + QuoteStr(id));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(AppID,
                  {fmt::format("Application {} not found", id), fmt::format("找不到申请 {}", id)});
  }
  const std::string loan = NullToEmpty(row.Field("LoanID"));
  if (!loan.empty()) {
    return Refuse(AppID, {fmt::format("Application {} is taken up by loan {}", id, loan),
                          fmt::format("申请 {} 已成为贷款 {}", id, loan)});
  }
  AppID.SetMark(false);
  if (!AppType.empty()) return true;
  return Refuse(AppType, {"Application Role is required", "请选择申请角色"});
}

void NewCustFrm::LinkApplication() {
  if (!CheckApplication()) return;
  const std::string app = QuoteStr(AppID.text());
  const std::string id = QuoteStr(loaded_id_);
  const bool done = Attempt(
      "Link Application", {"an error occur during update application", "更新申请时发生错误"}, [&] {
        main().Execute(
            fmt::format("DELETE FROM AppMastLink WHERE AppID={} AND CustID={}", app, id));
        main().Execute(fmt::format(
            "Insert INTO AppMastLink (AppID,CustID,AppType,Relationship) VALUES ({},{},{},{})", app,
            id, QuoteStr(AppType.text()), QuoteStr(Relationship.text())));
      });
  if (!done) return;
  LoadApplications(loaded_id_);
  Tell(MessageKind::information, {"Update done", "已更新"});
}

}  // namespace kaunter
