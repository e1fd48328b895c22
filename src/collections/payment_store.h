// One payment on its way into the database and out again. Nothing here applies it to the schedule:
// the caller commits and then rebuilds the loan (loans/rebuild_and_tell.h).
//
// The three writes run inside the caller's transaction.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// A row of PaymentMast under the names of its columns. Dates are texts as boxes show them
// (dd-mm-yyyy, "" for none), amounts money, TopTerm a count of instalments.
struct Payment {
  std::string PayID;  // given by CreatePayment
  std::string LoanID;
  std::string CustID;
  std::string CompCode;
  std::string SchID = "1";  // first open row at entry; the replay does not use it
  std::string PayDate;
  std::string CollectInfoID = "CASH";
  Money TopUpAmt;
  Money PayAmt;     // money towards the loan
  Money InstalAmt;  // part of PayAmt that pays schedule rows
  Money PayExtra;   // part of PayAmt that is extra capital (flexi)
  Money IntAmt;     // late interest paid
  Money ChargeAmt;  // deposit refunded
  Money DiscAmt;    // discount given
  Money CollectorAmt;
  std::string Bank = "CASH";
  std::string ChqNo;
  std::string SalesmanID = "NIL";
  Money SalesmanComm;
  std::string LastDueDate;
  std::string NextDueDate;
  std::string PaymentStatus = "ACTIVE";
  Money PayableAmt;
  Money IntChargeAmt;
  Money DragInt;
  std::string Memo1;
  std::string Memo2;
  std::string Memo3;
  Money Memo5;  // calculated late interest
  Money OldLoanBal;
  Money NewLoanBal;
  std::string WithdrawDate;
  std::optional<Money> BankOpenBal;
  std::optional<Money> WithdrawAmt;
  std::optional<Money> RepaymentAmt;
  std::optional<Money> BankinReturn;
  std::optional<Money> BankCloseBal;
  int TopTerm = 0;
  Money TopAmt;
  std::string ReceiptNo;  // "" lets CreatePayment draw one
  std::string LampiranStatus;
  std::string AMLACode;  // written only while the money-laundering module is on
  std::string AMLADesc;
  std::string AMLAID;

  bool operator==(const Payment&) const = default;
};

// Draws PayID and, when ReceiptNo is blank, the receipt number; inserts the row, ties the cheque to
// it, writes the audit row. The payment is left as it was when it throws, so that the next attempt
// draws anew. Throws ReceiptConflict, SqlError ("<LoanID> not found" when the loan is gone).
void CreatePayment(Session& session, Payment& payment);

// The payment's values in the order in which the audit takes them.
std::vector<Value> AuditValues(const Payment& payment);

// Rewrites the row of PayID; SalesmanComm, RepaymentAmt, UserID and DateCreated keep what they
// hold. A blank ReceiptNo is kept blank. `before` are the audit's old values. Throws
// ReceiptConflict, SqlError ("<PayID> not found" when another desktop has deleted it).
void UpdatePayment(Session& session, const Payment& payment, const std::vector<Value>& before);

// Deletes the row, frees its cheque, takes its amounts back from loan, row, customer and salesman
// (whose commission comes off twice), removes top-up rows, and writes the audit row. `stored` is
// the payment as it was loaded. Throws SqlError.
void DeletePayment(Session& session, const Payment& stored);

// The payment in a row of PaymentMast.
Payment PaymentIn(const Recordset& row);

// The payment as it is stored; none: no such row. Throws SqlError.
std::optional<Payment> ReadPayment(Connection& main, std::string_view pay_id);

}  // namespace kaunter
