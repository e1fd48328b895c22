#include "movein/move_in_writer.h"

#include <fmt/format.h>

#include <stdexcept>

#include "collections/ledger_loan.h"
#include "collections/receipt_number.h"
#include "core/audit.h"
#include "core/sequences.h"
#include "core/values.h"
#include "loans/drawdown_store.h"
#include "loans/loan_totals.h"
#include "loans/money_gate.h"
#include "loans/rebuild.h"
#include "loans/schedule_store.h"
#include "movein/loan_book.h"
#include "platform/sql/retry.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

void RebuildOrThrow(const Session& session, const std::string& loan_id) {
  const Rebuilt rebuilt = RebuildLoan(session.Main(), loan_id);
  if (rebuilt.done) return;
  if (rebuilt.error) std::rethrow_exception(rebuilt.error);
  throw std::runtime_error(session.In(LoanNotFound(loan_id)));
}

}  // namespace

RowInserter::RowInserter(Connection& main, std::string table)
    : main_(main), table_(std::move(table)) {
  const Recordset shape = main.Query(fmt::format("SELECT * FROM {} WHERE 1=0", table_));
  for (const Column& column : shape.columns()) types_[column.name] = column.type;
}

void RowInserter::Insert(const Texts& texts) {
  std::string names;
  std::string values;
  for (const auto& [column, text] : texts) {
    const auto type = types_.find(column);
    if (type == types_.end()) continue;
    const bool first = names.empty();
    names += (first ? "" : ",") + column;
    if (!first) values += ",";
    values += type->second == FieldType::kText   ? QuoteStr(text)
              : type->second == FieldType::kDate ? SqlDateTime(text)
                                                 : StripCommaOrZero(text);
  }
  main_.Execute(fmt::format("INSERT INTO {} ({}) VALUES ({})", table_, names, values));
}

MoveWriter::MoveWriter(Session& session, std::string company, MovedFrom from, Staging& staging)
    : session_(session),
      main_(session.Main()),
      company_(std::move(company)),
      from_(std::move(from)),
      staging_(staging),
      customers_(main_, "CustMast"),
      loans_(main_, "LoanMast"),
      now_(SqlDateTime(ServerTime(main_))) {}

bool MoveWriter::Write(CustomerPlan& plan) {
  try {
    Transaction transaction(main_);
    if (plan.cust_id.empty()) StoreCustomer(plan);
    for (LoanPlan& loan : plan.loans) {
      if (loan.loan_id.empty()) {
        StoreLoan(loan, plan.cust_id);
      } else if (!StillAsPlanned(loan)) {
        return false;
      }
      StorePayments(loan, plan.cust_id);
    }
    SumLoansOfCustomer(main_, plan.cust_id);
    transaction.Commit();
    return true;
  } catch (const SqlError& error) {
    if (error.number() == kDuplicateKeyNumber) return false;
    throw;
  }
}

// A payment at the counter, or a close, since the payments were measured.
bool MoveWriter::StillAsPlanned(const LoanPlan& loan) {
  LockLoan(main_, loan.loan_id);
  const auto stored = ReadLedgerLoan(main_, loan.loan_id);
  return stored && !stored->closed &&
         LoanBook(*stored).balance() == loan.payments.front().payment.OldLoanBal;
}

// First of all, so that two desktops that move the same file in meet here.
void MoveWriter::Remember(MoveKind kind, const std::string& key, const std::string& id,
                          const std::string& file, int line, bool again) {
  if (again) {
    main_.Execute(fmt::format("DELETE FROM MoveInMast WHERE Kind={} AND CompCode={} AND OldCode={}",
                              QuoteStr(MoveKindName(kind)), QuoteStr(company_), QuoteStr(key)));
  }
  main_.Execute(fmt::format(
      "INSERT INTO MoveInMast (Kind,CompCode,OldCode,NewID,FileName,FileLine,UserID,DateCreated) "
      "VALUES ({},{},{},{},{},{},{},{})",
      QuoteStr(MoveKindName(kind)), QuoteStr(company_), QuoteStr(key), QuoteStr(id), QuoteStr(file),
      line, QuoteStr(session_.CurrentUserID), now_));
}

void MoveWriter::StoreCustomer(CustomerPlan& plan) {
  const std::string& prefix = session_.settings.CompCode2;
  plan.cust_id = NextCustomerNumber(main_, prefix.empty() ? company_ : prefix);
  Remember(MoveKind::customers, plan.key, plan.cust_id, from_.customers, plan.line, plan.again);
  Texts& texts = plan.texts;
  texts["CustID"] = plan.cust_id;
  texts["UserID"] = session_.CurrentUserID;
  texts["DateCreated"] = ServerNow(main_, true);
  customers_.Insert(texts);
  WriteAudit(session_, "Create", "Customer", company_, plan.cust_id, {});
}

void MoveWriter::StoreLoan(LoanPlan& loan, const std::string& cust_id) {
  Texts& texts = loan.texts;
  loan.loan_id = NextLoanNumber(main_, cust_id);
  Remember(MoveKind::loans, loan.key, loan.loan_id, from_.loans, loan.line, loan.again);
  const std::string payee =
      ScalarQuery(main_, "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(cust_id));
  texts["LoanID"] = loan.loan_id;
  texts["CustID"] = cust_id;
  texts["UserID"] = session_.CurrentUserID;
  texts["DateCreated"] = ServerNow(main_, true);
  texts["SpecialSch"] = texts["SchChanged"] = "0";
  texts["DragLoan"] = std::to_string(static_cast<int>(loan.terms.DragLoan));
  if (session_.settings.AMLA) {
    for (const char* column : {"AMLACode", "AMLADesc", "AMLAID"}) texts.try_emplace(column, "");
  } else {
    texts.erase("AMLACode");
  }
  loans_.Insert(texts);
  LoanFigures figures;
  figures.LoanAmt = AmountOf(texts, "LoanAmt");
  figures.LoanAmt2 = AmountOf(texts, "LoanAmt2");
  figures.TopUpAmt = AmountOf(texts, "TopUpAmt");
  figures.SalesmanComm = AmountOf(texts, "SalesmanComm");
  figures.SalesmanID = TextOf(texts, "SalesmanID");
  AddLoanTotals(main_, cust_id, figures);
  GenerateSchedule(main_, {loan.loan_id, cust_id}, loan.terms, false);
  // The money went out on the day of the loan.
  AddOldRelease(main_,
                {loan.loan_id, cust_id, company_, SqlDate(TextOf(texts, "TrxDate")),
                 AmountOf(texts, "LoanAmt"), payee, TextOf(texts, "Bank")},
                session_.CurrentUserID, now_);
  WriteAudit(session_, "Create", "Loan", company_, loan.loan_id, {});
}

// What was paid was charged: the old books hold no more of it.
void MoveWriter::ChargeLateInterest(const Payment& payment) {
  const std::string number =
      NextSeries(main_, "INV", company_, false, [this](const std::string& drawn) {
        return !main_.Query("SELECT ChargeID FROM ChargeMast WHERE ChargeID=" + QuoteStr(drawn))
                    .Eof();
      });
  const std::string day = SqlDate(payment.PayDate);
  const std::string amount = payment.IntAmt.ToText();
  main_.Execute(fmt::format(
      "INSERT INTO ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,LateAmt,LateInt,"
      "ChargeAmt,ChargeDesc,UserID,DateCreated,PType) VALUES ({},{},{},{},{},{},{},0,{},'Late "
      "interest charged before moving in',{},{},'Invoice')",
      QuoteStr(number), day, QuoteStr(payment.LoanID), QuoteStr(payment.CustID),
      QuoteStr(payment.CompCode), day, amount, amount, QuoteStr(session_.CurrentUserID), now_));
}

// None that a later line of the files brings along.
std::string MoveWriter::DrawReceipt(const Payment& payment) {
  std::string number;
  do {
    number = NextReceiptNo(session_, payment.CompCode, payment.PayDate);
  } while (staging_.HasReceipt(number));
  return number;
}

void MoveWriter::StorePayments(LoanPlan& loan, const std::string& cust_id) {
  for (PaymentPlan& plan : loan.payments) {
    Payment& payment = plan.payment;
    payment.LoanID = loan.loan_id;
    payment.CustID = cust_id;
    if (payment.IntAmt > Money()) ChargeLateInterest(payment);
    if (payment.ReceiptNo.empty()) payment.ReceiptNo = DrawReceipt(payment);
    CreatePayment(session_, payment);
    Remember(MoveKind::payments, plan.key, payment.PayID, from_.payments, plan.line, loan.again);
  }
  // The balance of a closed loan is its closing balance, paid or not.
  if (!loan.payments.empty() || SameText(TextOf(loan.texts, "LoanStatus"), "CLOSED")) {
    RebuildOrThrow(session_, loan.loan_id);
  }
}

}  // namespace kaunter
