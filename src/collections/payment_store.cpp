#include "collections/payment_store.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <stdexcept>
#include <utility>

#include "collections/receipt_number.h"
#include "collections/reverse_payment.h"
#include "core/amounts.h"
#include "core/audit.h"
#include "core/record.h"
#include "core/sequences.h"
#include "core/session.h"
#include "core/values.h"
#include "loans/money_gate.h"

namespace kaunter {
namespace {

constexpr int kRowNotFound = 50000;

enum class Written { always, once };  // once: when the row is made, and never changed

struct Cell {
  std::string_view name;
  std::string literal;
  Written written = Written::always;
};

std::string Literal(Money amount) { return amount.ToText(); }
std::string Literal(const std::optional<Money>& amount) {
  return amount ? amount->ToText() : StripCommaOrNull("");
}

// The row as it is written; `deleted_mark` tells a changed row ("0") from a new one ("").
std::vector<Cell> Columns(const Session& session, const Payment& p, std::string_view deleted_mark) {
  std::vector<Cell> columns = {
      {"LoanID", QuoteStr(p.LoanID)},
      {"CustID", QuoteStr(p.CustID)},
      {"SchID", StripCommaOrZero(p.SchID)},
      {"PayDate", SqlDate(p.PayDate)},
      {"CollectInfoID", QuoteStr(p.CollectInfoID)},
      {"TopUpAmt", Literal(p.TopUpAmt)},
      {"PayAmt", Literal(p.PayAmt)},
      {"IntAmt", Literal(p.IntAmt)},
      {"ChargeAmt", Literal(p.ChargeAmt)},
      {"DiscAmt", Literal(p.DiscAmt)},
      {"Bank", QuoteStr(p.Bank)},
      {"ChqNo", QuoteStr(p.ChqNo)},
      {"SalesmanID", QuoteStr(p.SalesmanID)},
      {"SalesmanComm", Literal(p.SalesmanComm), Written::once},
      {"LastDueDate", SqlDate(p.LastDueDate)},
      {"NextDueDate", SqlDate(p.NextDueDate)},
      {"PaymentStatus", QuoteStr(p.PaymentStatus)},
      {"PayableAmt", Literal(p.PayableAmt)},
      {"IntChargeAmt", Literal(p.IntChargeAmt)},
      {"DragInt", Literal(p.DragInt)},
      {"Memo1", QuoteStr(p.Memo1)},
      {"Memo2", QuoteStr(p.Memo2)},
      {"Memo3", QuoteStr(p.Memo3)},
      {"Memo5", Literal(p.Memo5)},
      {"OldLoanBal", Literal(p.OldLoanBal)},
      {"NewLoanBal", Literal(p.NewLoanBal)},
      {"CollectorAmt", Literal(p.CollectorAmt)},
      {"DeletePayID", QuoteStr(deleted_mark)},
      {"UserID", QuoteStr(session.CurrentUserID), Written::once},
      {"settlement", QuoteStr("0")},
      {"CompCode", QuoteStr(p.CompCode)},
      {"WithdrawDate", SqlDate(p.WithdrawDate)},
      {"BankOpenBal", Literal(p.BankOpenBal)},
      {"WithdrawAmt", Literal(p.WithdrawAmt)},
      {"RepaymentAmt", Literal(p.RepaymentAmt), Written::once},
      {"BankinReturn", Literal(p.BankinReturn)},
      {"BankCloseBal", Literal(p.BankCloseBal)},
      {"TopTerm", std::to_string(p.TopTerm)},
      {"TopAmt", Literal(p.TopAmt)},
      {"DateCreated", SqlDateTime(ServerTime(session.Main())), Written::once},
      {"InstalAmt", Literal(p.InstalAmt)},
      {"PayExtra", Literal(p.PayExtra)},
      {"ReceiptNo", QuoteStr(p.ReceiptNo)},
      {"LampiranStatus", QuoteStr(p.LampiranStatus)},
  };
  if (session.settings.AMLA) {
    columns.push_back({"AMLACode", QuoteStr(p.AMLACode)});
    columns.push_back({"AMLADesc", QuoteStr(p.AMLADesc)});
    columns.push_back({"AMLAID", QuoteStr(p.AMLAID)});
  }
  return columns;
}

void Insert(const Session& session, const Payment& payment) {
  std::string names = "PayID";
  std::string values = QuoteStr(payment.PayID);
  for (const Cell& column : Columns(session, payment, "")) {
    names += fmt::format(",{}", column.name);
    values += "," + column.literal;
  }
  session.Main().Execute(fmt::format("Insert into PaymentMast ({}) values ({})", names, values));
}

void Update(const Session& session, const Payment& payment) {
  std::vector<std::string> assignments;
  for (const Cell& column : Columns(session, payment, "0")) {
    if (column.written == Written::once) continue;
    assignments.push_back(fmt::format("{}={}", column.name, column.literal));
  }
  ExecuteOnRow(session.Main(),
               fmt::format("Update PaymentMast set {} where PayID={}", fmt::join(assignments, ","),
                           QuoteStr(payment.PayID)),
               payment.PayID);
}

// The cheque that pays is tied to the payment; one that paid it before is free again.
void TieCheque(Connection& main, const Payment& payment) {
  main.Execute(
      fmt::format("UPDATE ChqMast SET PayID='',PayDate=null WHERE PayID={0};Update ChqMast set "
                  "PayID={0},PayDate={1} WHERE LoanID={2} AND ChqNo={3}",
                  QuoteStr(payment.PayID), SqlDate(payment.PayDate), QuoteStr(payment.LoanID),
                  QuoteStr(payment.ChqNo)));
}

// A typed number; a blank one is none.
void RefuseTakenReceipt(Connection& main, const Payment& payment) {
  if (payment.ReceiptNo.empty()) return;
  if (ReceiptTaken(main, payment.CompCode, payment.PayID, payment.ReceiptNo)) {
    throw ReceiptConflict(payment.ReceiptNo);
  }
}

void RequireLoan(const Session& session, const std::string& loan_id) {
  if (session.Main().Query("SELECT LoanID FROM LoanMast WHERE LoanID=" + QuoteStr(loan_id)).Eof()) {
    throw SqlError(kRowNotFound, fmt::format("{} not found", loan_id));
  }
  // It would reach no row, and the balance would fall below nothing.
  if (const auto refusal = CheckRows(session.Main(), loan_id)) {
    throw std::runtime_error(session.In(refusal->text));
  }
}

std::optional<Money> AmountOrNone(const Recordset& row, std::string_view column) {
  if (row.Field(column).IsNull()) return std::nullopt;
  return Sen(row, column);
}

// "" where the row lacks the column: an office never patched for the money-laundering module.
std::string TextOrNone(const Recordset& row, std::string_view column) {
  for (const Column& known : row.columns()) {
    if (SameText(known.name, column)) return NullToEmpty(row.Field(column));
  }
  return "";
}

}  // namespace

std::vector<Value> AuditValues(const Payment& payment) {
  return {Value(payment.PayAmt), Value(payment.CollectorAmt), Value(payment.IntAmt),
          Value(payment.DiscAmt), Value(payment.PayDate)};
}

void CreatePayment(Session& session, Payment& payment) {
  Connection& main = session.Main();
  RequireLoan(session, payment.LoanID);
  Payment made = payment;
  made.PayID = NextPaymentNumber(main, made.LoanID);
  RefuseTakenReceipt(main, made);
  if (made.ReceiptNo.empty()) {
    made.ReceiptNo = NextReceiptNo(session, made.CompCode, made.PayDate);
  }
  Insert(session, made);
  WriteAudit(session, "Create", "Payment", made.CompCode, made.PayID, {});
  TieCheque(main, made);
  payment = std::move(made);
}

void UpdatePayment(Session& session, const Payment& payment, const std::vector<Value>& before) {
  Connection& main = session.Main();
  RefuseTakenReceipt(main, payment);
  Update(session, payment);
  WriteAudit(session, "Modify", "Payment", payment.CompCode, payment.PayID, before);
  TieCheque(main, payment);
}

void DeletePayment(Session& session, const Payment& stored) {
  Connection& main = session.Main();
  ExecuteOnRow(main, "DELETE FROM PaymentMast WHERE PayID=" + QuoteStr(stored.PayID), stored.PayID);
  main.Execute(fmt::format("UPDATE ChqMast SET PayID='',PayDate=null WHERE LoanID={} AND ChqNo={}",
                           QuoteStr(stored.LoanID), QuoteStr(stored.ChqNo)));
  TakeBackCommission(main, stored);
  ReversePayment(main, stored);
  WriteAudit(session, "Delete", "Payment", stored.CompCode, stored.PayID, AuditValues(stored));
}

Payment PaymentIn(const Recordset& row) {
  const auto text = [&row](std::string_view column) { return NullToEmpty(row.Field(column)); };
  const auto date = [&row](std::string_view column) { return ShowDate(row.Field(column)); };
  return Payment{
      .PayID = text("PayID"),
      .LoanID = text("LoanID"),
      .CustID = text("CustID"),
      .CompCode = text("CompCode"),
      .SchID = text("SchID"),
      .PayDate = date("PayDate"),
      .CollectInfoID = text("CollectInfoID"),
      .TopUpAmt = Sen(row, "TopUpAmt"),
      .PayAmt = Sen(row, "PayAmt"),
      .InstalAmt = Sen(row, "InstalAmt"),
      .PayExtra = Sen(row, "PayExtra"),
      .IntAmt = Sen(row, "IntAmt"),
      .ChargeAmt = Sen(row, "ChargeAmt"),
      .DiscAmt = Sen(row, "DiscAmt"),
      .CollectorAmt = Sen(row, "CollectorAmt"),
      .Bank = text("Bank"),
      .ChqNo = text("ChqNo"),
      .SalesmanID = text("SalesmanID"),
      .SalesmanComm = Sen(row, "SalesmanComm"),
      .LastDueDate = date("LastDueDate"),
      .NextDueDate = date("NextDueDate"),
      .PaymentStatus = text("PaymentStatus"),
      .PayableAmt = Sen(row, "PayableAmt"),
      .IntChargeAmt = Sen(row, "IntChargeAmt"),
      .DragInt = Sen(row, "DragInt"),
      .Memo1 = text("Memo1"),
      .Memo2 = text("Memo2"),
      .Memo3 = text("Memo3"),
      .Memo5 = Sen(row, "Memo5"),
      .OldLoanBal = Sen(row, "OldLoanBal"),
      .NewLoanBal = Sen(row, "NewLoanBal"),
      .WithdrawDate = date("WithdrawDate"),
      .BankOpenBal = AmountOrNone(row, "BankOpenBal"),
      .WithdrawAmt = AmountOrNone(row, "WithdrawAmt"),
      .RepaymentAmt = AmountOrNone(row, "RepaymentAmt"),
      .BankinReturn = AmountOrNone(row, "BankinReturn"),
      .BankCloseBal = AmountOrNone(row, "BankCloseBal"),
      .TopTerm = CLng(ShowInt(row.Field("TopTerm"))),
      .TopAmt = Sen(row, "TopAmt"),
      .ReceiptNo = text("ReceiptNo"),
      .LampiranStatus = text("LampiranStatus"),
      .AMLACode = TextOrNone(row, "AMLACode"),
      .AMLADesc = TextOrNone(row, "AMLADesc"),
      .AMLAID = TextOrNone(row, "AMLAID"),
  };
}

std::optional<Payment> ReadPayment(Connection& main, std::string_view pay_id) {
  const Recordset row = main.Query("SELECT * FROM PaymentMast WHERE PayID=" + QuoteStr(pay_id));
  if (row.Eof()) return std::nullopt;
  return PaymentIn(row);
}

}  // namespace kaunter
