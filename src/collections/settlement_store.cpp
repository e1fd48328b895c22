#include "collections/settlement_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "collections/hold_loan.h"
#include "core/amounts.h"
#include "core/record.h"
#include "core/sequences.h"
#include "core/values.h"
#include "loans/money_gate.h"

namespace kaunter {
namespace {

// The schedule row that the settlement begins with, as a payment row tells it. Without an open row
// only the number stands: row 1 may be there, but nothing of it is settled.
struct FirstRow {
  std::string SchID = "1";
  std::string DueDate;
  Money PayableAmt;
  Money interest_open;
  Money capital_open;
};

std::vector<std::string> ReadSchIDs(Connection& main, const std::string& sql) {
  std::vector<std::string> ids;
  for (Recordset rows = main.Query(sql); !rows.Eof(); rows.MoveNext()) {
    ids.push_back(ShowInt(rows.Field("SchID")));
  }
  return ids;
}

FirstRow ReadFirstRow(Connection& main, const Settlement& settlement,
                      const std::vector<std::string>& open) {
  FirstRow first;
  if (open.empty()) return first;
  first.SchID = open.front();
  const Recordset row = main.Query(
      fmt::format("SELECT DueDate,PayableAmt,CapitalAmt,InterestAmt,CapitalPayment,InterestPayment "
                  "FROM SchMast WHERE SchID={} AND LoanID={}",
                  first.SchID, QuoteStr(settlement.LoanID)));
  if (row.Eof()) return first;
  first.DueDate = ShowDate(row.Field("DueDate"));
  first.PayableAmt = Sen(row.Field("PayableAmt"));
  first.interest_open = Sen(row.Field("InterestAmt")) - Sen(row.Field("InterestPayment"));
  first.capital_open = Sen(row.Field("CapitalAmt")) - Sen(row.Field("CapitalPayment"));
  return first;
}

void InsertRow(const Session& session, const Settlement& settlement, const FirstRow& first) {
  session.Main().Execute(fmt::format(
      "Insert into PaymentMast (PayID,LoanID,CustID,SchID,PayDate,CollectInfoID,PayAmt,IntAmt,"
      "ChargeAmt,DiscAmt,Bank,ChqNo,SalesmanID,SalesmanComm,LastDueDate,NextDueDate,PaymentStatus,"
      "PayableAmt,IntChargeAmt,DragInt,Memo1,Memo2,Memo3,OldLoanBal,NewLoanBal,CollectorAmt,"
      "DeletePayID,UserID,settlement,CompCode,TopUpAmt,BankOpenBal,WithdrawAmt,RepaymentAmt,"
      "BankinReturn,BankCloseBal) Values ({},{},{},{},{},'CASH',{},{},0,{},'CASH','','NIL',0,{},{},"
      "'ACTIVE',{},{},{},'','','',{},0,0,'',{},'1',{},0,0,0,0,0,0)",
      QuoteStr(settlement.PayID), QuoteStr(settlement.LoanID), QuoteStr(settlement.CustID),
      settlement.SchID, SqlDate(settlement.PayDate), settlement.LoanBal.ToText(),
      settlement.IntAmt.ToText(), settlement.DiscAmt.ToText(), SqlDate(first.DueDate),
      SqlDate(settlement.NextDueDate), first.PayableAmt.ToText(), first.interest_open.ToText(),
      first.capital_open.ToText(), settlement.LoanBal.ToText(), QuoteStr(session.CurrentUserID),
      QuoteStr(settlement.CompCode)));
}

// One row of the schedule, between what is read of it and what is written back.
struct ScheduleRow {
  Money paid;  // in full when the row is settled
  Money DragInt;
  Money IntChargeAmt;
  Money IntAmt;
  Money DragIntPaid;
};

// `amount` is the column that is read as paid: PayableAmt to settle the row, Payment to take back.
ScheduleRow ReadRow(Connection& main, const std::string& sch_id, const std::string& loan_id,
                    const char* amount) {
  const Recordset row = main.Query(fmt::format(
      "SELECT {},DragInt,IntChargeAmt,IntAmt,DragIntPaid FROM SchMast WHERE SchID={} AND LoanID={}",
      amount, sch_id, QuoteStr(loan_id)));
  if (row.Eof()) throw std::runtime_error(fmt::format("Schedule {} not found", sch_id));
  return {Sen(row.Field(0)), Sen(row.Field("DragInt")), Sen(row.Field("IntChargeAmt")),
          Sen(row.Field("IntAmt")), Sen(row.Field("DragIntPaid"))};
}

void WriteRow(Connection& main, const std::string& sch_id, const std::string& loan_id,
              const ScheduleRow& row) {
  ExecuteOnRow(
      main,
      fmt::format("UPDATE SchMast SET Payment={},DragInt={},IntChargeAmt={},IntAmt={},"
                  "DragIntPaid={} WHERE SchID={} AND LoanID={}",
                  row.paid.ToText(), row.DragInt.ToText(), row.IntChargeAmt.ToText(),
                  row.IntAmt.ToText(), row.DragIntPaid.ToText(), sch_id, QuoteStr(loan_id)),
      fmt::format("Schedule {}", sch_id));
}

// The loan's totals with the settlement added, or, with `sign` -1, taken off.
struct LoanTotals {
  Money TotPay;
  Money TotInt;
  Money TotCollectorAmt;
  Money TotCharge;
  Money TotDiscAmt;
};

LoanTotals MovedTotals(const Recordset& loan, const Settlement& settlement, int sign) {
  return {Sen(loan.Field("TotPay")) + sign * settlement.LoanBal,
          Sen(loan.Field("TotInt")) + sign * settlement.IntAmt, Sen(loan.Field("TotCollectorAmt")),
          Sen(loan.Field("TotCharge")), Sen(loan.Field("TotDiscAmt")) + sign * settlement.DiscAmt};
}

void WriteLoan(Connection& main, const Settlement& settlement, const LoanTotals& totals,
               Money balance, const std::string& last_payment, const std::string& last_date) {
  ExecuteOnRow(
      main,
      fmt::format(
          "UPDATE LoanMast SET TotPay={},TotInt={},TotCollectorAmt={},TotCharge={},TotDiscAmt={},"
          "LoanBal={},NextDueDate={},LastPaymentNo={},LastPaymentDate={} WHERE LoanID={}",
          totals.TotPay.ToText(), totals.TotInt.ToText(), totals.TotCollectorAmt.ToText(),
          totals.TotCharge.ToText(), totals.TotDiscAmt.ToText(), balance.ToText(),
          SqlDate(settlement.NextDueDate), QuoteStr(last_payment), SqlDate(last_date),
          QuoteStr(settlement.LoanID)),
      settlement.LoanID);
}

void MoveCustomerBalance(Connection& main, const std::string& cust_id, Money by) {
  const std::string id = QuoteStr(cust_id);
  const Money balance =
      Sen(ScalarQuery(main, "SELECT TotLoanBal FROM CustMast WHERE CustID=" + id));
  ExecuteOnRow(
      main,
      fmt::format("UPDATE CustMast SET TotLoanBal={} WHERE CustID={}", (balance + by).ToText(), id),
      cust_id);
}

// The counter of a loan's payments stands under the loan's number, in a column named CustID.
void LowerPaymentCounter(Connection& main, const std::string& loan_id) {
  const std::string id = QuoteStr(loan_id);
  const Recordset counter = main.Query("Select LoanNo from NumberMast where CustID=" + id);
  if (counter.Eof()) return;
  const int next = std::max(0, CLng(ShowInt(counter.Field(0))) - 1);
  main.Execute(fmt::format("Update NumberMast set LoanNo='{:03}' where CustID={}", next, id));
}

}  // namespace

void CreateSettlement(const Session& session, Settlement& settlement) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(settlement.LoanID);
  // Another desktop may have taken a payment while the question stood.
  HoldLoan(main, settlement.LoanID);
  const Recordset now = main.Query("SELECT LoanBal,NextDueDate FROM LoanMast WHERE LoanID=" + id);
  const Money balance = now.Eof() ? Money() : Sen(now.Field("LoanBal"));
  if (balance != settlement.LoanBal) {
    throw std::runtime_error(fmt::format("The balance of {} is {} now, please load the loan again",
                                         settlement.LoanID, ShowMoney(balance)));
  }
  if (const auto refusal = CheckRows(main, settlement.LoanID)) {
    throw std::runtime_error(session.In(refusal->text));
  }
  const std::vector<std::string> open =
      ReadSchIDs(main, fmt::format("SELECT SchID from SchMast WHERE LoanID={} and PayableAmt <> "
                                   "Payment ORDER BY SchID",
                                   id));
  const FirstRow first = ReadFirstRow(main, settlement, open);
  settlement.SchID = first.SchID;
  // With no open row it stays as it was: no rebuild would put it right afterwards.
  settlement.NextDueDate =
      open.empty() && !now.Eof() ? ShowDate(now.Field("NextDueDate")) : first.DueDate;
  settlement.PayID = NextPaymentNumber(main, settlement.LoanID);
  InsertRow(session, settlement, first);
  for (const std::string& sch_id : open) {
    ScheduleRow row = ReadRow(main, sch_id, settlement.LoanID, "PayableAmt");
    if (sch_id == first.SchID) {
      row.IntChargeAmt += settlement.IntAmt;
      row.IntAmt += settlement.IntAmt;
    }
    WriteRow(main, sch_id, settlement.LoanID, row);
  }
  const Recordset loan = main.Query(
      "SELECT TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt FROM LoanMast WHERE "
      "LoanID=" +
      id);
  WriteLoan(main, settlement, MovedTotals(loan, settlement, 1), Money(), settlement.PayID,
            settlement.PayDate);
  MoveCustomerBalance(main, settlement.CustID, -settlement.LoanBal);
}

void DeleteSettlement(const Session& session, const Settlement& settlement) {
  Connection& main = session.Main();
  const std::string id = QuoteStr(settlement.LoanID);
  // Blank where no row was open, and none then took the forfeit deposit.
  const bool row_was_open = !ScalarQuery(main, "SELECT LastDueDate FROM PaymentMast WHERE PayID=" +
                                                   QuoteStr(settlement.PayID))
                                 .empty();
  ExecuteOnRow(main, "DELETE FROM PaymentMast WHERE PayID=" + QuoteStr(settlement.PayID),
               settlement.PayID);
  LowerPaymentCounter(main, settlement.LoanID);
  // What was settled comes off from the last row backwards, so that the first one keeps the part
  // that was paid before. The rebuild has the last word on Payment, not on the other columns.
  Money rest = settlement.LoanBal;
  for (const std::string& sch_id : ReadSchIDs(
           main, fmt::format("SELECT SchID from SchMast WHERE LoanID={} and SchID>={} ORDER BY "
                             "SchID DESC",
                             id, settlement.SchID))) {
    ScheduleRow row = ReadRow(main, sch_id, settlement.LoanID, "Payment");
    const Money back = std::min(row.paid, rest);
    row.paid -= back;
    rest -= back;
    if (row_was_open && sch_id == settlement.SchID) {
      row.IntChargeAmt -= settlement.IntAmt;
      row.IntAmt -= settlement.IntAmt;
    }
    WriteRow(main, sch_id, settlement.LoanID, row);
  }
  const Recordset loan = main.Query(
      "SELECT TotPay,TotInt,TotCollectorAmt,TotCharge,TotDiscAmt,LoanBal FROM LoanMast "
      "WHERE LoanID=" +
      id);
  if (loan.Eof()) throw std::runtime_error(settlement.LoanID + " not found");
  const Recordset last = main.Query(
      "SELECT TOP 1 PayID,PayDate FROM PaymentMast WHERE LoanID=" + id + " ORDER BY PayID DESC");
  WriteLoan(main, settlement, MovedTotals(loan, settlement, -1),
            Sen(loan.Field("LoanBal")) + settlement.LoanBal,
            last.Eof() ? "" : NullToEmpty(last.Field("PayID")),
            last.Eof() ? "" : ShowDate(last.Field("PayDate")));
  MoveCustomerBalance(main, settlement.CustID, settlement.LoanBal);
}

}  // namespace kaunter
