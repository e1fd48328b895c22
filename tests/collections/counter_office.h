// The office of the random histories at the payment counter: a customer with two loans, made anew
// for each history, and the comparison of every stored row with the second model.
#pragma once

#include <sqlite3.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "core/password_screens.h"
#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/rebuild.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/transaction.h"
#include "tests/collections/counter_boxes.h"
#include "tests/core/office.h"
#include "tests/loans/random_loans.h"

namespace kaunter {

using counter::Answers;
using counter::Iso;
using counter::Loan;
using counter::Paid;
using model::Day;
using model::Sen;

class HistoryDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    if (text.find("Continue make payment") != std::string_view::npos) return answers.holiday;
    const bool to_store = text.starts_with("Confirm to ") || text.starts_with("confirm to ");
    return !to_store || answers.confirm;
  }
  void Message(MessageKind, std::string_view, std::string_view text) override {
    if (!text.starts_with("Payment already made on the month")) messages.emplace_back(text);
  }
  void ShowModal(Screen& screen) override {
    if (dynamic_cast<frmUserSignIn*>(&screen) != nullptr) session->OverrideOK = answers.manager;
  }
  Session* session = nullptr;
  Answers answers;
  std::vector<std::string> asked;
};

// The database file on the bare engine.
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

  // Rows a line, fields by a bar; fractions in whole sen where `sen`.
  std::string Rows(const char* sql, const std::string& key = {}, bool sen = true) {
    sqlite3_stmt*& statement = statements_[sql];
    if (statement == nullptr &&
        sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sqlite3_errmsg(db_) << " " << sql;
      return {};
    }
    if (sqlite3_bind_parameter_count(statement) > 0) {
      sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    }
    std::string text;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        if (sen && sqlite3_column_name(statement, i)[0] == '$') {
          text += std::to_string(std::llround(sqlite3_column_double(statement, i) * 100));
        } else if (const auto* field = sqlite3_column_text(statement, i); field != nullptr) {
          text += reinterpret_cast<const char*>(field);
        }
        text += "|";
      }
      text += "\n";
    }
    sqlite3_reset(statement);
    return text;
  }
  std::string Everything() {
    std::string all;
    for (const char* table :
         {"SELECT * FROM PaymentMast", "SELECT * FROM SchMast", "SELECT * FROM LoanMast",
          "SELECT * FROM ChargeMast ORDER BY ChargeID", "SELECT * FROM CustMast",
          "SELECT * FROM NumberMast", "SELECT * FROM ChqMast", "SELECT * FROM SchMast2"}) {
      all += Rows(table, {}, false) + "\n";
    }
    return all;
  }

 private:
  Clock clock_;
  sqlite3* db_ = nullptr;
  std::unordered_map<const char*, sqlite3_stmt*> statements_;
};

// What must hold, asked of the rows alone; the answer is a loan or a payment that breaks it.
inline constexpr const char* kBroken[] = {
    "SELECT LoanID,SchID FROM SchMast WHERE ROUND(Payment-CapitalPayment-InterestPayment,2) <> 0",
    "SELECT LoanID,SchID FROM SchMast WHERE Payment > PayableAmt AND Payment > 0",
    "SELECT LoanID,SchID FROM SchMast WHERE CapitalPayment > 0 AND InterestPayment <> InterestAmt",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotPay - (SELECT TOTAL(InstalAmt) FROM "
    "PaymentMast AS p WHERE p.LoanID=l.LoanID),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE LoanBal <> (SELECT NewLoanBal FROM PaymentMast AS p "
    "WHERE p.LoanID=l.LoanID ORDER BY PayID DESC LIMIT 1)",
    "SELECT PayID FROM PaymentMast WHERE PayExtra <= 0 AND TopAmt*TopTerm=0 AND "
    "ROUND(OldLoanBal-InstalAmt-NewLoanBal,2) <> 0 AND LoanID IN (SELECT LoanID FROM LoanMast "
    "WHERE DragLoan='0')",
    "SELECT LoanID FROM LoanMast AS l WHERE DragLoan='0' AND NOT EXISTS (SELECT 1 FROM PaymentMast "
    "AS p WHERE p.LoanID=l.LoanID) AND ROUND(LoanBal - (SELECT TOTAL(PayableAmt) FROM SchMast AS s "
    "WHERE s.LoanID=l.LoanID),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotCollectorAmt - (SELECT TOTAL(ChargeAmt) FROM "
    "ChargeMast AS c WHERE c.LoanID=l.LoanID AND ChargeAmt > 0 AND PType <> 'Batch Loan "
    "Interest'),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE ROUND(TotInt - (SELECT TOTAL(ChargeAmt) FROM "
    "ChargeMast AS c WHERE c.LoanID=l.LoanID AND ChargeAmt < 0 AND PType <> 'Batch Loan "
    "Interest'),2) <> 0",
    "SELECT LoanID FROM LoanMast AS l WHERE NextDueDate <> (SELECT DueDate FROM SchMast AS s WHERE "
    "s.LoanID=l.LoanID AND Payment < PayableAmt ORDER BY DueDate LIMIT 1)",
    "SELECT CustID FROM CustMast AS c WHERE ROUND(TotLoanBal - (SELECT TOTAL(LoanBal) FROM "
    "LoanMast AS l WHERE l.CustID=c.CustID),2) <> 0",
    "SELECT ReceiptNo FROM PaymentMast WHERE ReceiptNo <> '' GROUP BY ReceiptNo HAVING COUNT(*) > "
    "1",
    "SELECT ChqNo FROM PaymentMast AS p WHERE EXISTS (SELECT 1 FROM ChqMast AS c WHERE "
    "c.LoanID=p.LoanID AND c.ChqNo=p.ChqNo AND c.PayID <> p.PayID)",
    "SELECT ChqNo FROM ChqMast AS c WHERE PayID <> '' AND NOT EXISTS (SELECT 1 FROM PaymentMast AS "
    "p WHERE p.PayID=c.PayID AND p.ChqNo=c.ChqNo)",
};

class CounterOffice {
 protected:
  CounterOffice() : bare_(office_.folder.File("office.db")) {
    desk_.session = &office_.session;
    office_.session.CurrentLevel = 4;
    office_.session.CurrentCompCode = "HQ";
    office_.session.settings.TransLogs = false;
  }

  Connection& main() { return office_.session.Main(); }
  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return random_.Between(least, std::max(least, most));
  }
  bool OneIn(int n) { return random_.OneIn(n); }

  std::string Trail() const {
    std::string all = fmt::format("KAUNTER_HISTORY={}\n", number_);
    for (const std::string& step : steps_) all += "  " + step + "\n";
    return all;
  }
  void Note(std::string step) { steps_.push_back(std::move(step)); }
  void Fault(const std::string& what) {
    if (held_) ADD_FAILURE() << Trail() << what;
    held_ = false;
  }
  void Same(const std::string& what, const std::string& is, const std::string& should_be) {
    if (is == should_be) return;
    // The first line that differs.
    std::size_t at = 0;
    while (at < is.size() && at < should_be.size() && is[at] == should_be[at]) ++at;
    const auto line = [&at](const std::string& text) {
      const std::size_t begin = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
      const std::size_t first = begin == std::string::npos ? 0 : begin + 1;
      return text.substr(first, text.find('\n', at) - first);
    };
    Fault(fmt::format("{}:\n  {}\nshould be:\n  {}", what, line(is), line(should_be)));
  }

  // --- a customer with two loans

  void MakeCustomer() {
    company_ = {};
    company_.receipts = static_cast<counter::Company::Receipts>(Between(0, 2));
    company_.check_holiday = OneIn(2);
    office_.session.settings.CheckHoliday = company_.check_holiday;
    office_.session.settings.ORYYMMDD = company_.receipts == counter::Company::Receipts::dated;
    main().BeginTrans();
    for (const char* table : {"PaymentMast", "SchMast", "SchMast2", "LoanMast", "ChargeMast",
                              "NumberMast", "ChqMast", "CustMast", "HolidayMast"}) {
      main().Execute(fmt::format("DELETE FROM {}", table));
    }
    main().Execute(fmt::format("UPDATE CompMast SET SerialReceiptNo='{}'",
                               company_.receipts == counter::Company::Receipts::serial ? 1 : 0));
    main().Execute(
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotTopUpAmt) "
        "VALUES ('C','HQ','Tan','ACTIVE',0,0,0)");
    for (const char* id : {"C-001", "C-002"}) MakeLoan(id);
    company_.holiday = model::PlusDays(company_.loans[0].lent, static_cast<int>(Between(20, 90)));
    main().Execute(
        fmt::format("INSERT INTO HolidayMast (HolidayDate,HolidayName) VALUES ('{}','Raya')",
                    Iso(company_.holiday)));
    for (Loan& loan : company_.loans) {
      RebuildLoan(main(), loan.id);
      loan.Rebuild();
    }
    main().CommitTrans();
    RebuildCustomer(main(), "C");
  }

  void MakeLoan(const std::string& id) {
    Loan loan;
    loan.id = id;
    const char* const types[] = {"MONTH", "MONTH", "WEEK", "DAILY", "14DAYS"};
    loan.type = types[Between(0, 4)];
    loan.ledger = DrawLoan(random_, id, {.rows = 5, .long_rows = 12, .payments = 0});
    model::StoredLoan& ledger = loan.ledger;
    const Day first = ledger.rows.front().due;
    for (std::size_t i = 0; loan.type != "MONTH" && i < ledger.rows.size(); ++i) {
      const int step = loan.type == "WEEK" ? 7 : loan.type == "DAILY" ? 1 : 14;
      ledger.rows[i].due = model::PlusDays(first, static_cast<int>(i) * step);
    }
    // As it is generated; a special one has figures of its own.
    if (ledger.backup.empty()) ledger.backup = ledger.rows;
    loan.lent =
        first.month == 1 ? Day{first.year - 1, 12, 20} : Day{first.year, first.month - 1, 20};
    loan.deposit = OneIn(2) ? 0 : Between(1, 500) * 100;
    loan.drawn = OneIn(15) ? 0 : ledger.amount;
    if (OneIn(4)) loan.group = "PINJAMAN TIDAK BERBAYAR";
    main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,SpecialSch,LoanAmt,LoanAmt2,InsRate,"
        "InstallmentAmt2,LoanStatus,LoanGroupID,LoanTypeID,TrxDate,NextDueDate,PayOutAmt,"
        "DepositAmt2,TopUpAmt,LoanBal) VALUES ('{}','C','HQ','{}','{}',{},{},{},{},'ACTIVE','{}',"
        "'{}','{}','1999-01-01',{},{},0,0)",
        id, ledger.scheme, ledger.special ? 1 : 0, Text(ledger.amount), Text(ledger.amount),
        Money::FromTenThousandths(ledger.rate4).ToText(), Text(ledger.instalment), loan.group,
        loan.type, Iso(loan.lent), Text(loan.drawn), Text(loan.deposit)));
    StoreRows("SchMast", id, ledger.rows);
    StoreRows("SchMast2", id, ledger.backup);
    if (OneIn(2)) {
      loan.counted = true;
      main().Execute(fmt::format("Insert into NumberMast values ('{}','001','001')", id));
    }
    for (int i = 1; i <= static_cast<int>(Between(0, 2)); ++i) {
      counter::Cheque cheque{i, fmt::format("CHQ{}", i), "MBB", "", Between(1, ledger.amount), {}};
      loan.cheques.push_back(cheque);
      main().Execute(
          fmt::format("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqBank,ChqAmt,PayID) VALUES "
                      "('{}',{},'{}','MBB',{},'')",
                      id, i, cheque.no, Text(cheque.amount)));
    }
    company_.loans.push_back(loan);
    if (OneIn(2)) PostCharges(company_.loans.back());
  }

  void StoreRows(const char* table, const std::string& id, const std::vector<model::Row>& rows) {
    for (const model::Row& row : rows) {
      main().Execute(fmt::format(
          "INSERT INTO {} (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt) VALUES "
          "({},'{}',{},{},{},{})",
          table, row.id, id, Text(row.due), Text(row.payable), Text(row.capital),
          Text(row.interest)));
    }
  }

  void PostCharges(Loan& loan) {
    static constexpr const char* kTypes[] = {"Batch",   "Batch",       "Batch",
                                             "Invoice", "Credit Note", "Batch Loan Interest"};
    for (int i = static_cast<int>(Between(1, 3)); i > 0; --i) {
      counter::Charge charge;
      charge.id = fmt::format("{}-B{}", loan.id, ++serial_);
      charge.date = AnyDay(loan);
      charge.type = kTypes[Between(0, 5)];
      charge.amount = Between(1, 5000) * (charge.type == "Credit Note" ? -1 : 1);
      loan.charges.push_back(charge);
      main().Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,DueDate,ChargeAmt,"
          "OrgAmt,PType) VALUES ('{}','{}','C','HQ','{}','{}',{},0,'{}')",
          charge.id, loan.id, Iso(charge.date), Iso(charge.date), Text(charge.amount),
          charge.type));
      Note(fmt::format("{} is charged {} on {} ({})", loan.id, counter::Shown(charge.amount),
                       Iso(charge.date), charge.type));
    }
  }

  Day AnyDay(const Loan& loan) {
    const int span =
        31 + static_cast<int>(loan.ledger.rows.size()) * (loan.type == "MONTH" ? 31 : 8);
    return model::PlusDays(loan.lent, static_cast<int>(Between(0, span)));
  }

  // --- what is stored, and what should be

  static bool AllPaid(const Loan& loan) {
    return std::none_of(loan.ledger.rows.begin(), loan.ledger.rows.end(),
                        [](const model::Row& row) { return row.open(); });
  }

  // What a payment taken back must leave as it was.
  std::string StateOf(const Loan& loan, bool with_payments) {
    std::string all;
    for (const char* sql :
         {"SELECT SchID,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,"
          "LoanBal,PayExtra FROM SchMast WHERE LoanID=? ORDER BY SchID",
          "SELECT LoanBal,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,PayExtra,NextDueDate,"
          "LastPaymentDate,LastPaymentNo,TotLoanInt,LoanGroupID FROM LoanMast WHERE LoanID=?",
          "SELECT ChargeID,ChargeAmt,OrgAmt FROM ChargeMast WHERE LoanID=? ORDER BY ChargeID",
          "SELECT ChqNo,PayID FROM ChqMast WHERE LoanID=? ORDER BY SeqNo",
          "SELECT PayID,PayAmt,InstalAmt,PayExtra,IntAmt,OldLoanBal,NewLoanBal,IntPay,CapPay,"
          "ReceiptNo,PayDate FROM PaymentMast WHERE LoanID=? ORDER BY PayID"}) {
      all += bare_.Rows(sql, loan.id, false);
    }
    if (with_payments) all += bare_.Rows("SELECT TotLoan,TotLoanBal FROM CustMast", {}, false);
    return all;
  }

  // With `touched`, that loan alone is rebuilt once more.
  void Compare(const char* when, const Loan* touched = nullptr) {
    for (const Loan& loan : company_.loans) CompareLoan(when, loan);
    CompareCompany(when);
    for (const char* broken : kBroken) {
      Same(fmt::format("{}: {}", when, broken), bare_.Rows(broken), "");
    }
    if (held_) RebuildAgain(when, touched);
  }

  void RebuildAgain(const char* when, const Loan* touched) {
    const std::string before = bare_.Everything();
    {
      Transaction transaction(main());
      for (const Loan& loan : company_.loans) {
        if (touched != nullptr && touched != &loan) continue;
        if (!loan.CutAnew()) RebuildLoan(main(), loan.id);
      }
      transaction.Commit();
    }
    RebuildCustomer(main(), "C");
    Same(fmt::format("{}: a second rebuild", when), bare_.Everything(), before);
  }

  void CompareLoan(const std::string& when, const Loan& loan) {
    const model::StoredLoan& ledger = loan.ledger;
    std::string rows;
    Sen interest = 0;
    std::vector<model::Row> by_number = ledger.rows;
    std::sort(by_number.begin(), by_number.end(),
              [](const model::Row& a, const model::Row& b) { return a.id < b.id; });
    for (const model::Row& row : by_number) {
      const auto found = loan.reversed.find(row.id);
      const counter::Reversed off =
          found == loan.reversed.end() ? counter::Reversed{} : found->second;
      interest += row.interest;
      rows += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|\n", row.id, Iso(row.due),
                          row.payable, row.capital, row.interest, row.paid, row.capital_paid,
                          row.interest_paid, row.balance, row.extra, off.interest, off.capital,
                          off.collector, off.late);
    }
    Same(when + " rows of " + loan.id,
         bare_.Rows("SELECT SchID,DueDate,PayableAmt \"$1\",CapitalAmt \"$2\",InterestAmt \"$3\","
                    "Payment \"$4\",CapitalPayment \"$5\",InterestPayment \"$6\",LoanBal \"$7\","
                    "PayExtra \"$8\",IntChargeAmt \"$9\",DragInt \"$a\",DragIntPaid \"$b\",IntAmt "
                    "\"$c\" FROM SchMast WHERE LoanID=? ORDER BY SchID",
                    loan.id),
         rows);
    const Paid* last = loan.paid.empty() ? nullptr : &loan.paid.back();
    Same(when + " " + loan.id,
         bare_.Rows("SELECT LoanBal \"$1\",TotPay \"$2\",TotInt \"$3\",TotCharge \"$4\","
                    "TotCollectorAmt \"$5\",TotDiscAmt \"$6\",PayExtra \"$7\",TopUpAmt \"$8\","
                    "TotLoanInt \"$9\",NextDueDate,LastPaymentDate,LastPaymentNo,LoanGroupID,"
                    "LoanStatus FROM LoanMast WHERE LoanID=?",
                    loan.id),
         fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|ACTIVE|\n", ledger.balance,
                     ledger.total_paid, loan.credited, ledger.total_charge, loan.charged,
                     ledger.total_discount, ledger.total_extra, loan.topup, interest,
                     Iso(ledger.next_due), last ? Iso(last->date) : "", last ? last->id : "",
                     loan.group));
    ComparePayments(when, loan);
    CompareCharges(when, loan);
  }

  void ComparePayments(const std::string& when, const Loan& loan) {
    std::string all;
    for (const Paid& p : loan.paid) {
      all += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", p.id, p.row, Iso(p.date),
                         p.pay, p.instalment, p.extra, p.late, p.charge, p.discount, p.collector,
                         p.calculated, p.top, p.top_term, p.topup);
      all += fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", p.receipt, p.cheque, p.bank,
                         p.collect, p.group, p.payable, p.interest_open, p.capital_open,
                         Iso(p.last_due), Iso(p.next_due), p.commission);
      all += fmt::format("{}|{}|{}|{}|{}|0|ACTIVE|C|HQ|\n", p.old_balance, p.new_balance,
                         p.interest_part, p.capital_part, p.changed ? "0" : "");
    }
    Same(when + " payments of " + loan.id,
         bare_.Rows("SELECT PayID,SchID,PayDate,PayAmt \"$1\",InstalAmt \"$2\",PayExtra \"$3\","
                    "IntAmt \"$4\",ChargeAmt \"$5\",DiscAmt \"$6\",CollectorAmt \"$7\",Memo5 "
                    "\"$8\",TopAmt \"$9\",TopTerm,TopUpAmt \"$a\",ReceiptNo,ChqNo,Bank,"
                    "CollectInfoID,LampiranStatus,PayableAmt \"$b\",IntChargeAmt \"$c\",DragInt "
                    "\"$d\",LastDueDate,NextDueDate,SalesmanComm \"$e\",OldLoanBal \"$f\","
                    "NewLoanBal \"$g\",IntPay \"$h\",CapPay \"$i\",DeletePayID,settlement,"
                    "PaymentStatus,CustID,CompCode FROM PaymentMast WHERE LoanID=? ORDER BY PayID",
                    loan.id),
         all);
  }

  void CompareCharges(const std::string& when, const Loan& loan) {
    std::vector<counter::Charge> sorted = loan.charges;
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.id < b.id; });
    std::string all;
    for (const counter::Charge& one : sorted) {
      all += fmt::format("{}|{}|{}|{}|{}|\n", one.id, Iso(one.date), one.amount, one.original,
                         one.type);
    }
    Same(when + " charges of " + loan.id,
         bare_.Rows("SELECT ChargeID,TrxDate,ChargeAmt \"$1\",OrgAmt \"$2\",PType FROM ChargeMast "
                    "WHERE LoanID=? ORDER BY ChargeID",
                    loan.id),
         all);
    all.clear();
    for (const counter::Cheque& one : loan.cheques) {
      all +=
          fmt::format("{}|{}|{}|\n", one.no, one.pay_id, one.pay_id.empty() ? "" : Iso(one.date));
    }
    Same(when + " cheques of " + loan.id,
         bare_.Rows("SELECT ChqNo,PayID,PayDate FROM ChqMast WHERE LoanID=? ORDER BY SeqNo",
                    loan.id),
         all);
  }

  void CompareCompany(const std::string& when) {
    Sen lent = 0, balance = 0, topup = 0;
    std::map<std::string, std::string> numbers;
    for (const Loan& loan : company_.loans) {
      lent += loan.ledger.amount;
      balance += loan.ledger.balance;
      topup += loan.topup;
      if (loan.counted) numbers[loan.id] = fmt::format("{:03}", loan.next);
    }
    for (const auto& [key, at] : company_.counters) numbers[key] = std::to_string(at);
    Same(when + " customer",
         bare_.Rows("SELECT TotLoan \"$1\",TotLoanBal \"$2\",TotTopUpAmt \"$3\" FROM CustMast"),
         fmt::format("{}|{}|{}|\n", lent, balance, topup));
    std::string all;
    for (const auto& [key, at] : numbers) all += key + "|" + at + "|\n";
    Same(when + " counters", bare_.Rows("SELECT CustID,LoanNo FROM NumberMast ORDER BY CustID"),
         all);
  }

  Office office_{Office::State::patched};
  HistoryDesk desk_;
  BareFile bare_;
  Random random_{0};
  counter::Company company_;
  std::vector<std::string> steps_;
  std::uint64_t number_ = 0;
  int serial_ = 0;
  bool held_ = true;
};

}  // namespace kaunter
