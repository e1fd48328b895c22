#include "loans/schedule_store.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/values.h"
#include "loans/money_gate.h"

namespace kaunter {
namespace {

void InsertRow(Connection& connection, const LoanKey& key, const ScheduleRow& row,
               const std::string& loan_bal) {
  const std::string due_date = SqlDate(row.DueDate);
  connection.Execute(fmt::format(
      "Insert into SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,"
      "IntChargeAmt,IntAmt,Payment,CapitalPayment,InterestPayment,DragInt,DragIntPaid,LateInt,"
      "LoanBal,PayExtra,IntDate,FIntAmt) Values "
      "({},{},{},{},{},{},{},0,0,0,0,0,0,0,0,{},0,{},{})",
      row.SchID, QuoteStr(key.LoanID), QuoteStr(key.CustID), due_date, row.PayableAmt.ToText(),
      row.CapitalAmt.ToText(), row.InterestAmt, loan_bal, due_date, NumberText(row.FIntAmt)));
}

// As the loan screen shows them. What was paid is replayed afterwards, from the whole capital.
LoanTerms StoredTerms(const Recordset& row) {
  const auto text = [&row](std::string_view column) { return NullToEmpty(row.Field(column)); };
  const DateTime* const next_due = row.Field("NextDueDate").AsDate();
  LoanTerms terms = TermsByColumn(text);
  terms.DragLoan = text("DragLoan") == "1" ? LoanScheme::kFlexi : LoanScheme::kPersonal;
  if (next_due != nullptr) terms.NextDueDate = *next_due;
  if (!text("LastPaymentNo").empty()) terms.LoanBal = terms.LoanAmt;
  return terms;
}

Money SumOfCapital(const std::vector<EditedLine>& lines) {
  Money sum;
  for (const EditedLine& line : lines) sum += Money::FromText(StripCommaOrZero(line.CapitalAmt));
  return sum;
}

}  // namespace

void RefillPaymentList(Connection& connection, std::string_view loan_id) {
  const std::string id = QuoteStr(loan_id);
  connection.Execute("DELETE FROM PaymentList WHERE LoanID=" + id);
  connection.Execute(
      "INSERT INTO PaymentList (LoanID,SeqNo,DueDate,PayDate,PayAmt,PayID,DateCreated,UserID) "
      "SELECT LoanID,SchID,DueDate,duedate,payableamt,'',null,'' from schmast where loanid=" +
      id);
}

void ClearSchedule(Connection& connection, std::string_view loan_id) {
  connection.Execute("Delete From SchMast where LoanID=" + QuoteStr(loan_id));
}

Schedule GenerateSchedule(Connection& connection, const LoanKey& key, const LoanTerms& terms,
                          bool special) {
  if (special) {
    CopySchedule(connection, key.LoanID, /*update_rows=*/false, /*to_backup=*/false);
    return {};
  }
  Schedule schedule = ComputeSchedule(terms);
  const std::string loan_id = QuoteStr(key.LoanID);
  const std::string loan_bal = StripCommaOrZero(terms.LoanBal);
  for (const ScheduleRow& row : schedule.rows) {
    // The last row of a flexi loan tells the loan's last payment before it is stored itself.
    if (schedule.LastPayment && &row == &schedule.rows.back()) {
      connection.Execute(fmt::format("UPDATE LoanMast SET LastPayment={} WHERE LoanID={}",
                                     *schedule.LastPayment, loan_id));
    }
    InsertRow(connection, key, row, loan_bal);
  }
  connection.Execute(fmt::format("UPDATE LoanMast SET TotLoanInt={} WHERE LoanID={}",
                                 schedule.TotLoanInt.ToText(), loan_id));
  connection.Execute(fmt::format("UPDATE LoanMast SET OrgDueDate={} WHERE LoanID={}",
                                 SqlDate(terms.NextDueDate), loan_id));
  CopySchedule(connection, key.LoanID, /*update_rows=*/false, /*to_backup=*/true);
  RefillPaymentList(connection, key.LoanID);
  return schedule;
}

void RegenerateSchedule(Connection& connection, std::string_view loan_id) {
  LockLoan(connection, loan_id);
  const Recordset row =
      connection.Query("SELECT * FROM LoanMast WHERE LoanID=" + QuoteStr(loan_id));
  if (row.Eof() || Sen(row, "PayOutAmt") > Money()) return;
  ClearSchedule(connection, loan_id);
  GenerateSchedule(connection, {std::string(loan_id), NullToEmpty(row.Field("CustID"))},
                   StoredTerms(row), NullToEmpty(row.Field("SpecialSch")) == "1");
}

void CopySchedule(Connection& connection, std::string_view loan_id, bool update_rows,
                  bool to_backup) {
  const std::string id = QuoteStr(loan_id);
  if (to_backup) {
    connection.Execute("DELETE FROM SchMast2 WHERE LoanID=" + id +
                       ";INSERT INTO SchMast2 SELECT SchID,LoanID,CustID,DueDate,PayableAmt,"
                       "CapitalAmt,InterestAmt,LoanBal,FIntAmt FROM Schmast where LoanID=" +
                       id);
  } else if (update_rows) {
    connection.Execute(
        "UPDATE SchMast SET Schmast.PayableAmt=Schmast2.PayableAmt,Schmast.CapitalAmt=SchMast2."
        "CapitalAmt,SchMast.InterestAmt=SchMast2.InterestAmt,SchMast.LoanBal=SchMast2.LoanBal,"
        "SchMast.FIntAmt=SchMast2.FIntAmt FROM SchMast INNER JOIN SchMast2 ON "
        "SchMast.LoanID=SchMast2.LoanID and SchMast.SchID=SchMast2.SchID WHERE SchMast.LoanID=" +
        id);
  } else {
    connection.Execute(
        "INSERT INTO SchMast SELECT SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,"
        "0,0,0,0,0,0,0,0,LoanBal,0,DueDate,FIntAmt FROM Schmast2 where LoanID=" +
        id);
  }
}

std::optional<Refusal> CheckBackup(Connection& connection, std::string_view loan_id) {
  const std::string rows =
      ScalarQuery(connection, "SELECT COUNT(*) FROM SchMast2 WHERE LoanID=" + QuoteStr(loan_id));
  if (rows != "0") return std::nullopt;
  return Refusal{"SpecialSch",
                 {"Special Schedule has no rows, Please check", "特别还款表没有任何期数，请检查"}};
}

std::optional<Refusal> EditPayable(EditedLine* line, std::string_view payable) {
  const std::optional<Money> amount = Money::TryText(payable);
  // The grid's own word for it, misspelt as every office knows it.
  if (!amount) return Refusal{"vsd3", {"Invlid amount", "金额无效"}};
  line->PayableAmt = ShowMoney(*amount);
  line->CapitalAmt = ShowMoney(*amount - Money::FromText(StripCommaOrZero(line->InterestAmt)));
  return std::nullopt;
}

std::optional<Refusal> CheckScheduleCapital(const std::vector<EditedLine>& lines,
                                            std::string_view loan_amt) {
  const Money sum = SumOfCapital(lines);
  const Money amount = Money::FromText(StripCommaOrZero(loan_amt));
  if (sum == amount) return std::nullopt;
  const std::string shown_sum = ShowMoney(sum);
  const std::string shown_amount = ShowMoney(amount);
  return Refusal{"vsd3",
                 {fmt::format("Total capital payable {} not tally with loan amount {}", shown_sum,
                              shown_amount),
                  fmt::format("应还本金总额 {} 与贷款金额 {} 不符", shown_sum, shown_amount)}};
}

void ApplyEditedSchedule(Connection& connection, std::string_view loan_id,
                         const std::vector<EditedLine>& lines) {
  for (const EditedLine& line : lines) {
    connection.Execute(
        fmt::format("UPDATE SchMast SET PayableAmt={},CapitalAmt= {} WHERE LoanID={} and SchID={}",
                    StripCommaOrZero(line.PayableAmt), StripCommaOrZero(line.CapitalAmt),
                    QuoteStr(loan_id), StripCommaOrZero(line.SchID)));
  }
  // The rows as the parties agreed on them: what a rebuild makes of them later is no agreement.
  CopySchedule(connection, loan_id, /*update_rows=*/false, /*to_backup=*/true);
}

void StoreCalculation(Connection& connection, std::string_view loan_id, const Schedule& schedule,
                      std::string_view loan_bal) {
  DeleteCalculation(connection, loan_id);
  for (const ScheduleRow& row : schedule.rows) {
    connection.Execute(fmt::format(
        "Insert into SchMast2 (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,"
        "LoanBal) Values ({},{},'',{},{},{},{},{})",
        row.SchID, QuoteStr(loan_id), SqlDate(row.DueDate), row.PayableAmt.ToText(),
        row.CapitalAmt.ToText(), row.InterestAmt, StripCommaOrZero(loan_bal)));
  }
}

void DeleteCalculation(Connection& connection, std::string_view loan_id) {
  connection.Execute("DELETE FROM SchMast2 WHERE LoanID=" + QuoteStr(loan_id));
}

}  // namespace kaunter
