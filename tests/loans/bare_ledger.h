// A ledger asked by way of the bare engine: its rows as text, and what must hold of them.
#pragma once

#include <fmt/format.h>
#include <sqlite3.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "gtest/gtest.h"
#include "platform/clock.h"
#include "platform/sql/sqlite/sqlite_functions.h"

namespace kaunter {

class BareFile {
 public:
  explicit BareFile(const std::string& file) {
    sqlite3_open(file.c_str(), &db_);
    sql::RegisterSqliteFunctions(db_, clock_);
  }
  ~BareFile() {
    for (const auto& [sql, statement] : statements_) sqlite3_finalize(statement);
    sqlite3_close_v2(db_);
  }
  BareFile(const BareFile&) = delete;
  BareFile& operator=(const BareFile&) = delete;

  // Rows a line, fields by a bar; what a decimal column holds in whole sen, where it is that.
  std::string Rows(const std::string& sql, const std::string& key = {}) {
    sqlite3_stmt*& statement = statements_[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sqlite3_errmsg(db_) << " " << sql;
      return {};
    }
    if (sqlite3_bind_parameter_count(statement) > 0) {
      sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    }
    std::string text;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) text += Field(statement, i) + "|";
      text += "\n";
    }
    sqlite3_reset(statement);
    return text;
  }

 private:
  static std::string Field(sqlite3_stmt* statement, int i) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
    if (text == nullptr) return {};
    const char* declared = sqlite3_column_decltype(statement, i);
    if (declared != nullptr && std::string_view(declared).starts_with("decimal")) {
      const double sen = sqlite3_column_double(statement, i) * 100;
      if (std::fabs(sen - std::round(sen)) < 1e-3) return std::to_string(std::llround(sen));
    }
    return text;
  }

  Clock clock_;
  sqlite3* db_ = nullptr;
  std::unordered_map<std::string, sqlite3_stmt*> statements_;
};

// What must hold, asked of the rows alone: of which rows, and when it does not.
struct Identity {
  const char* told;
  const char* key;
  const char* rows;
  const char* broken;
};
inline constexpr Identity kIdentities[] = {
    {"a row is paid in interest and capital", "LoanID", "SchMast",
     "ROUND(Payment-CapitalPayment-InterestPayment,2) <> 0"},
    {"no row is paid above what it asks", "LoanID", "SchMast WHERE Payment > 0",
     "Payment > PayableAmt"},
    {"interest is paid before capital", "LoanID", "SchMast WHERE CapitalPayment > 0",
     "InterestPayment <> InterestAmt"},
    {"a row asks for capital and interest", "LoanID", "SchMast",
     "ROUND(PayableAmt-CapitalAmt-InterestAmt,2) <> 0"},
    {"TotPay is the instalments", "LoanID", "LoanMast AS l",
     "ROUND(TotPay-(SELECT TOTAL(InstalAmt) FROM PaymentMast AS p WHERE p.LoanID=l.LoanID),2) <> "
     "0"},
    {"the last payment is the last", "LoanID", "LoanMast AS l",
     "LastPaymentNo <> (SELECT IFNULL(MAX(PayID),'') FROM PaymentMast AS p WHERE "
     "p.LoanID=l.LoanID)"},
    {"a loan's balance is its last payment's", "LoanID", "LoanMast WHERE LastPaymentNo <> ''",
     "LoanBal <> (SELECT NewLoanBal FROM PaymentMast WHERE PayID=LastPaymentNo)"},
    {"an instalment lowers a personal loan's balance", "LoanID",
     "PaymentMast WHERE PayExtra <= 0 AND TopAmt*TopTerm=0 AND LoanID IN (SELECT LoanID FROM "
     "LoanMast WHERE DragLoan='0')",
     "ROUND(OldLoanBal-InstalAmt-NewLoanBal,2) <> 0"},
    {"an unpaid personal loan's balance is its rows", "LoanID",
     "LoanMast AS l WHERE DragLoan='0' AND LastPaymentNo=''",
     "ROUND(LoanBal-(SELECT TOTAL(PayableAmt) FROM SchMast AS s WHERE s.LoanID=l.LoanID),2) <> 0"},
    {"TotCollectorAmt is the charges", "LoanID", "LoanMast AS l",
     "ROUND(TotCollectorAmt-(SELECT TOTAL(ChargeAmt) FROM ChargeMast AS c WHERE c.LoanID=l.LoanID "
     "AND ChargeAmt > 0 AND PType <> 'Batch Loan Interest'),2) <> 0"},
    {"TotInt is what was paid of them", "LoanID", "LoanMast AS l",
     "ROUND(TotInt-(SELECT TOTAL(ChargeAmt) FROM ChargeMast AS c WHERE c.LoanID=l.LoanID AND "
     "ChargeAmt < 0 AND PType <> 'Batch Loan Interest'),2) <> 0"},
    {"late interest that was paid is a charge paid", "LoanID", "PaymentMast AS p WHERE IntAmt > 0",
     "ROUND(IntAmt+(SELECT TOTAL(ChargeAmt) FROM ChargeMast AS c WHERE c.LoanID=p.LoanID AND "
     "ChargeID=PayID AND PType='Payment'),2) <> 0"},
    {"next due is the first open row", "LoanID",
     "LoanMast AS l WHERE EXISTS (SELECT 1 FROM SchMast AS s WHERE s.LoanID=l.LoanID AND Payment < "
     "PayableAmt)",
     "NextDueDate <> (SELECT MIN(DueDate) FROM SchMast AS s WHERE s.LoanID=l.LoanID AND Payment < "
     "PayableAmt)"},
    {"a customer's balance is his loans'", "CustID", "CustMast AS c",
     "ROUND(TotLoanBal-(SELECT TOTAL(LoanBal) FROM LoanMast AS l WHERE l.CustID=c.CustID),2) <> 0"},
    {"a receipt number is given once", "PayID", "PaymentMast AS p WHERE ReceiptNo <> ''",
     "EXISTS (SELECT 1 FROM PaymentMast AS q WHERE q.ReceiptNo=p.ReceiptNo AND q.PayID <> "
     "p.PayID)"},
    {"a cheque in use is its payment's", "p.PayID",
     "PaymentMast AS p JOIN ChqMast AS c USING (LoanID,ChqNo)", "c.PayID <> p.PayID"},
    {"a cheque's payment tells its number", "LoanID", "ChqMast AS c WHERE PayID <> ''",
     "NOT EXISTS (SELECT 1 FROM PaymentMast AS p WHERE p.PayID=c.PayID AND p.ChqNo=c.ChqNo)"},
};

// Asks them all: `tell` takes each with the number of rows that it was asked of and the first that
// breaks it, "" for none.
inline void AskIdentities(BareFile& file, const auto& tell) {
  for (const Identity& one : kIdentities) {
    const std::string answer = file.Rows(fmt::format(
        "SELECT COUNT(*),MIN(CASE WHEN {} THEN {} END) FROM {}", one.broken, one.key, one.rows));
    const std::size_t bar = answer.find('|');
    tell(one.told, std::stoll(answer), answer.substr(bar + 1, answer.size() - bar - 3));
  }
}

}  // namespace kaunter
