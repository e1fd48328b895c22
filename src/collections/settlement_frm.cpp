#include "collections/settlement_frm.h"

#include <fmt/format.h>

#include "collections/refusals.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/screen_rights.h"
#include "core/session_report.h"
#include "core/values.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

const Caption kReadFailed{"An error occur during reading the record"};

DateTime Date(const TextBox& box) { return *DateTime::FromDisplay(box.text()); }

}  // namespace

void Settlementfrm::Column::ClearFigures() {
  for (TextBox* box : {&NPayment, &EPayment, &OPayment, &SettledAmt}) box->Clear();
}

Settlementfrm::Settlementfrm(Session& session, Desk& desk)
    : SessionScreen("Settlementfrm", {"Settlement"}, session, desk) {
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) { LoadLoan(id); });
  LoanID.onLeave = [this] { LeaveLoanID(); };
  for (TextBox* box :
       {&OldLoanCode, &CustName, &DragLoan, &TrxDate, &LoanAmt, &LoanTerm, &InstallmentAmt,
        &InsRate, &LastPayment, &NextDueDate, &LoanBal, &OthBal, &TotalBal}) {
    box->SetLocked(true);
  }
  for (Column& column : columns) {
    for (TextBox* box :
         {&column.NPayment, &column.EPayment, &column.OPayment, &column.SettledAmt}) {
      box->SetLocked(true);
    }
    column.SettledDate.max_length = kDateLength;
    column.SettledDate.onLeave = [this, &column] { LeaveDate(column); };
  }
  Command4.onClick = [this] { Settle(); };
  CmdPrint.onClick = [this] { PrintLetter(); };
}

void Settlementfrm::Load() {
  OfferShortcut(session(), Command4, "PaymentFrm", "New Payment");
  if (!session().HandOverLoanID.empty()) LoadLoan(session().HandOverLoanID);
}

// --- the loan

void Settlementfrm::LeaveLoanID() {
  LoanID.SetText(Trim(LoanID.text()));
  if (SameText(LoanID.text(), owed_.LoanID)) return;
  if (LoanID.empty()) {
    ClearScreen();
  } else {
    LoadLoan(LoanID.text());
  }
}

void Settlementfrm::LoadLoan(std::string id) {
  ClearScreen();
  bool found = false;
  ReadOrTell(session(), *this, title().english, kReadFailed, [&] { found = FindLoan(id); });
  if (found) return;
  ClearScreen();
  LoanID.SetText(id);
}

bool Settlementfrm::FindLoan(const std::string& id) {
  const Recordset row = main().Query(
      "SELECT "
      "l.LoanID,c.CustName,l.DragLoan,l.LoanAmt,l.TrxDate,l.InsRate,l.LoanTerm,l.InstallmentAmt,"
      "l.LastPayment,l.OldLoanCode,l.LoanBal,l.TotCollectorAmt,l.TotInt,l.NextDueDate FROM "
      "LoanMast as l INNER JOIN CustMast as c on l.CustID=c.CustID WHERE l.LoanId=" +
      QuoteStr(id));
  // Another company's loan is nobody's business here.
  if (row.Eof() ||
      !MayUseCompany(session(), ScalarQuery(main(), "SELECT CompCode FROM LoanMast WHERE LoanID=" +
                                                        QuoteStr(id)))) {
    return Refuse(LoanID, LoanNotFound(id).english);
  }
  LoanID.SetMark(false);
  ShowLoan(row);
  return true;
}

void Settlementfrm::ShowLoan(const Recordset& row) {
  const auto money = [&row](const char* column) { return Sen(row.Field(column)); };
  owed_.LoanID = NullToEmpty(row.Field("LoanID"));
  owed_.personal = NullToEmpty(row.Field("DragLoan")) == "0";
  owed_.LoanBal = money("LoanBal");
  owed_.OthBal = money("TotCollectorAmt") + money("TotInt");

  LoanID.SetText(owed_.LoanID);
  OldLoanCode.SetText(NullToEmpty(row.Field("OldLoanCode")));
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  DragLoan.SetText(owed_.personal ? "Personal Loan" : "Flexi Loan");
  TrxDate.SetText(ShowDate(row.Field("TrxDate")));
  LoanAmt.SetText(ShowMoney(row.Field("LoanAmt")));
  LoanTerm.SetText(NullToEmpty(row.Field("LoanTerm")));
  InstallmentAmt.SetText(ShowMoney(row.Field("InstallmentAmt")));
  InsRate.SetText(Show2dp(row.Field("InsRate")));
  LastPayment.SetText(ShowMoney(row.Field("LastPayment")));
  NextDueDate.SetText(ShowDate(row.Field("NextDueDate")));
  LoanBal.SetText(ShowMoney(owed_.LoanBal));
  OthBal.SetText(ShowMoney(owed_.OthBal));
  TotalBal.SetText(ShowMoney(owed_.TotalBal()));
  const Caption extra = owed_.personal ? "Settlement Disc" : "Extra Payment";
  for (Column& column : columns) column.EPayment.SetCaption(extra);
  // Dates asked for before, for another loan, are asked for again.
  ComputeAll();
}

void Settlementfrm::ClearScreen() {
  owed_ = {};
  for (TextBox* box :
       {&LoanID, &OldLoanCode, &CustName, &DragLoan, &TrxDate, &LoanAmt, &LoanTerm, &InstallmentAmt,
        &InsRate, &LastPayment, &NextDueDate, &LoanBal, &OthBal, &TotalBal}) {
    box->Clear();
  }
  for (Column& column : columns) column.ClearFigures();
}

// --- the dates

void Settlementfrm::LeaveDate(Column& left) {
  left.SettledDate.SetText(Trim(left.SettledDate.text()));
  // Figures of another date never stand beside the one that is typed.
  left.ClearFigures();
  if (left.SettledDate.empty()) return;
  if (!IsDate(left.SettledDate.text())) {
    Refuse(left.SettledDate, {"Invalid Redemption Date"});
    return;
  }
  if (&left == &columns[0]) {
    for (int months : {1, 2}) {
      TextBox& later = columns[static_cast<std::size_t>(months)].SettledDate;
      if (later.empty()) later.SetText(ShowDate(Date(left.SettledDate).AddMonths(months)));
    }
  }
  CheckDate(left, true);
  ComputeAll();
}

bool Settlementfrm::CheckDate(Column& column, bool tell) {
  if (!IsDate(column.SettledDate.text())) return false;
  if (IsDate(NextDueDate.text()) && Date(column.SettledDate) < Date(NextDueDate)) {
    if (tell) Refuse(column.SettledDate, {"Redemption date cannot less than Next Due Date"});
    return false;
  }
  column.SettledDate.SetMark(false);
  return true;
}

void Settlementfrm::ComputeAll() {
  if (owed_.LoanID.empty()) return;
  for (Column& column : columns) {
    if (!CheckDate(column, false)) continue;
    const QuoteColumn quote = QuoteOn(main(), owed_, column.SettledDate.text());
    column.NPayment.SetText(ShowMoney(quote.NPayment));
    column.EPayment.SetText(ShowMoney(quote.EPayment));
    column.OPayment.SetText(ShowMoney(quote.OPayment));
    column.SettledAmt.SetText(ShowMoney(quote.SettledAmt));
  }
}

// --- what becomes of the quotation

void Settlementfrm::Settle() {
  const Column& first = columns[0];
  if (first.SettledDate.empty()) {
    Refuse(columns[0].SettledDate, {"Settlement date is required"});
    return;
  }
  if (first.SettledAmt.empty()) {
    Refuse(columns[0].SettledDate, {"Settlement Amount is required"});
    return;
  }
  if (!Confirm({"Confirm to settlement ?"})) return;
  session().HandOverQuote = {
      .DragLoan = owed_.personal ? "0" : "1",
      .SettledDate = first.SettledDate.text(),
      .PayAmt = ShowMoney(Sen(first.SettledAmt.text()) - Sen(first.OPayment.text())),
      .NPayment = first.NPayment.text(),
      .EPayment = first.EPayment.text(),
      .OPayment = first.OPayment.text(),
      .ChargeAmt = "0"};
  const std::string id = owed_.LoanID;
  OpenFor(session(), desk(), "PaymentFrm", "New Payment", id);
  session().HandOverQuote = {};
  // What was paid there is owed no longer.
  LoadLoan(id);
}

void Settlementfrm::PrintLetter() {
  if (owed_.LoanID.empty()) {
    Refuse(LoanID, {"Loan ID is required"});
    return;
  }
  if (!Confirm({"Confirm to print settlement letter ?"})) return;
  ReportJob job = SessionReport(session(), "SettlementLetter.rpt");
  job.SelectionFormula = "{LoanMast.LoanID}=" + QuoteStr(owed_.LoanID);
  int field = 0;
  job.ParameterFields[field++] = "RptID;N;True";
  std::string ending;
  for (const Column& column : columns) {
    job.ParameterFields[field++] =
        fmt::format("SettleAmt{};{};True", ending, column.SettledAmt.text());
    // A date that was refused has no amount, and no place in a letter.
    job.ParameterFields[field++] = fmt::format(
        "SettleDate{};{};True", ending, column.SettledAmt.empty() ? "" : column.SettledDate.text());
    ending = ending.empty() ? "2" : "3";
  }
  desk().Print(job);
}

}  // namespace kaunter
