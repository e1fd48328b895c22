// Twenty thousand random loans in the database, paid, edited, deleted from and rebuilt, some
// hundred of them by way of the payment store: the identities of the ledger hold on every one, the
// check of the ledger finds nothing to say, and a second rebuild of each changes no row. The seed
// is printed; KAUNTER_SEED sets it, KAUNTER_LOANS the number of loans.
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "collections/ledger_check.h"
#include "collections/payment_store.h"
#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/rebuild.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/sqlite/sqlite_functions.h"
#include "platform/sql/transaction.h"
#include "tests/core/office.h"
#include "tests/loans/random_loans.h"

namespace kaunter {
namespace {

// What must hold, asked of the database in a second way.
constexpr const char* kBroken[] = {
    "SELECT LoanID FROM SchMast WHERE Payment <> CapitalPayment + InterestPayment",
    "SELECT LoanID FROM SchMast WHERE Payment > PayableAmt AND Payment > 0",
    "SELECT LoanID FROM SchMast WHERE CapitalPayment > 0 AND InterestPayment <> InterestAmt",
    "SELECT LoanID FROM SchMast WHERE PayableAmt <> CapitalAmt + InterestAmt",
    "SELECT LoanID FROM LoanMast WHERE TotPay <> (SELECT CASE WHEN SUM(InstalAmt) is null then 0 "
    "else SUM(InstalAmt) END FROM PaymentMast WHERE PaymentMast.LoanID=LoanMast.LoanID)",
    "SELECT LoanID FROM LoanMast WHERE LastPaymentNo <> (SELECT CASE WHEN MAX(PayID) is null then "
    "'' else MAX(PayID) END FROM PaymentMast WHERE PaymentMast.LoanID=LoanMast.LoanID)",
    "SELECT LoanID FROM LoanMast WHERE LastPaymentNo <> '' AND LoanBal <> (SELECT NewLoanBal FROM "
    "PaymentMast WHERE PayID=LoanMast.LastPaymentNo)",
    "SELECT PayID FROM PaymentMast WHERE PayExtra=0 AND TopAmt*TopTerm=0 AND NewLoanBal <> "
    "OldLoanBal-InstalAmt AND LoanID IN (SELECT LoanID FROM LoanMast WHERE DragLoan='0')",
    "SELECT LoanID FROM LoanMast WHERE TotCollectorAmt <> 15.34",
    "SELECT LoanID FROM LoanMast WHERE TotInt <> -1.5 - (SELECT CASE WHEN SUM(IntAmt) is null then "
    "0 else SUM(IntAmt) END FROM PaymentMast WHERE PaymentMast.LoanID=LoanMast.LoanID AND IntAmt > "
    "0)",
    "SELECT LoanID FROM LoanMast WHERE NextDueDate <> (SELECT MIN(DueDate) FROM SchMast WHERE "
    "SchMast.LoanID=LoanMast.LoanID AND Payment < PayableAmt)",
};

// Loans whose rows each rebuild cuts anew, which is wanted: extra capital has been paid, and the
// rows are not brought back to what they were before it.
constexpr const char* kCutAnew =
    "SELECT LoanID FROM LoanMast as l WHERE PayExtra > 0 AND (DragLoan <> '1' OR SpecialSch <> '1' "
    "AND (EXISTS (SELECT 1 FROM SchMast as s WHERE s.LoanID=l.LoanID AND InterestAmt <> 0 AND "
    "CapitalAmt = 0) OR EXISTS (SELECT 1 FROM SchMast2 as s WHERE s.LoanID=l.LoanID AND "
    "InterestAmt <> 0 AND CapitalAmt = 0)) OR (SELECT COUNT(*) FROM SchMast2 as s WHERE "
    "s.LoanID=l.LoanID) < (SELECT COUNT(*) FROM SchMast as s WHERE s.LoanID=l.LoanID))";

// Two database files, row by row, on the bare engine.
class TwoFiles {
 public:
  TwoFiles(const std::string& before, const std::string& after) {
    sqlite3_open(after.c_str(), &db_);
    sql::RegisterSqliteFunctions(db_, clock_);
    First("ATTACH '" + before + "' AS before");
  }
  ~TwoFiles() { sqlite3_close_v2(db_); }
  TwoFiles(const TwoFiles&) = delete;
  TwoFiles& operator=(const TwoFiles&) = delete;

  // The first field of the first row, "" for none.
  std::string First(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(db_);
    std::string text;
    if (sqlite3_step(statement) == SQLITE_ROW) {
      text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    }
    sqlite3_finalize(statement);
    return text;
  }

  // A loan with a row that stands in one of the two alone.
  std::string LoanThatDiffers(const std::string& table) {
    const std::string rows = " SELECT * FROM main." + table + " ";
    const std::string rows_before = " SELECT * FROM before." + table + " ";
    return First("SELECT LoanID FROM (SELECT * FROM (" + rows + "EXCEPT" + rows_before +
                 ") UNION ALL SELECT * FROM (" + rows_before + "EXCEPT" + rows +
                 ")) WHERE LoanID NOT IN (" + kCutAnew + ") LIMIT 1");
  }

 private:
  Clock clock_;
  sqlite3* db_ = nullptr;
};

class RandomOffice {
 public:
  explicit RandomOffice(std::uint64_t seed) : random_(seed) {
    office_.Run(
        "INSERT INTO CustMast (CustID,CompCode,TotLoanBal,TotTopUpAmt) VALUES ('C','HQ',0,0)");
  }

  void AddLoans(int count) {
    const LoanSizes sizes{.rows = 4, .long_rows = 16, .payments = 4};
    main().BeginTrans();
    for (int i = 0; i < count; ++i) {
      const std::string id = fmt::format("L{:05}", i);
      const model::StoredLoan loan = DrawLoan(random_, id, sizes);
      Store(id, loan);
      ASSERT_TRUE(Rebuild(id));
      if (random_.OneIn(3) && !loan.payments.empty()) {
        Change(id, loan);
        ASSERT_TRUE(Rebuild(id));
      }
    }
    main().CommitTrans();
  }

  void ExpectSound(int loans) {
    const LedgerReport report =
        CheckCompany(main(), "HQ", [](const LedgerProgress&) { return true; });
    EXPECT_EQ(report.loans, loans);
    for (std::size_t i = 0; i < report.faults.size() && i < 5; ++i) {
      const LedgerFault& fault = report.faults[i];
      ADD_FAILURE() << fault.LoanID << " " << fault.what.english << " " << fault.stored << " for "
                    << fault.should_be;
    }
    for (const char* broken : kBroken) {
      const Recordset rows = main().Query(broken);
      EXPECT_TRUE(rows.Eof()) << rows.Field(0).ToText() << ": " << broken;
    }
  }

  // Histories as the counter makes them: each payment is saved, edited or deleted in a transaction
  // of its own and the loan rebuilt behind it.
  void AddLoansAtTheCounter(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string id = fmt::format("S{:05}", i);
      model::StoredLoan loan = DrawLoan(random_, id, {.rows = 4, .long_rows = 16, .payments = 5});
      const std::vector<model::Payment> payments = std::move(loan.payments);
      loan.payments.clear();
      AtTheCounter(id, [&] {
        Store(id, loan);
        office_.Run(fmt::format("Insert into NumberMast values ({},'001','000')", QuoteStr(id)));
      });
      for (const model::Payment& drawn : payments) {
        Payment payment = CounterPayment(id, drawn);
        AtTheCounter(id, [&] { CreatePayment(office_.session, payment); });
        if (random_.OneIn(3)) EditAtTheCounter(id, payment.PayID, loan);
        if (random_.OneIn(5)) {
          AtTheCounter(id, [&] {
            DeletePayment(office_.session, ReadPayment(main(), payment.PayID).value());
          });
        }
      }
    }
  }

  void RebuildAllAgain() {
    const std::string file = office_.folder.File("office.db");
    const std::string kept = office_.folder.File("before.db");
    office_.session.MainConn.reset();  // the file is whole
    std::filesystem::copy_file(file, kept);
    office_.Open();
    const Recordset loans = main().Query("SELECT LoanID FROM LoanMast");
    main().BeginTrans();
    for (const auto& row : loans.rows()) ASSERT_TRUE(Rebuild(row[0].ToText()));
    main().CommitTrans();
    office_.session.MainConn.reset();
    {
      TwoFiles files(kept, file);
      for (const char* table : {"SchMast", "SchMast2", "PaymentMast", "ChargeMast", "LoanMast"}) {
        EXPECT_EQ(files.LoanThatDiffers(table), "") << table;
      }
      EXPECT_EQ(files.First(fmt::format("SELECT 1 WHERE (SELECT COUNT(*) FROM ({})) > {}", kCutAnew,
                                        loans.RowCount() / 3)),
                "");
    }
    office_.Open();
  }

 private:
  Connection& main() { return office_.session.Main(); }

  bool Rebuild(const std::string& id) {
    const Rebuilt rebuilt = RebuildLoan(main(), id);
    EXPECT_EQ(rebuilt.failure.english, "");
    return rebuilt.done;
  }

  void Store(const std::string& id, const model::StoredLoan& loan) {
    main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,SpecialSch,LoanAmt,InsRate,"
        "InstallmentAmt2,LoanStatus) VALUES ({},'C','HQ','{}','{}',{},{},{},'ACTIVE')",
        QuoteStr(id), loan.scheme, loan.special ? 1 : 0, Text(loan.amount),
        Money::FromTenThousandths(loan.rate4).ToText(), Text(loan.instalment)));
    StoreRows("SchMast", id, loan.rows);
    if (loan.scheme == "1") StoreRows("SchMast2", id, loan.special ? loan.backup : loan.rows);
    for (const model::Payment& payment : loan.payments) StorePayment(id, payment);
    main().Execute(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('{0}B','{0}',15.34,"
        "'Batch'),('{0}X','{0}',900,'Batch Loan Interest'),('{0}N','{0}',-1.5,'Credit Note')",
        id));
  }

  // In statements of 8, 4, 2 and 1 rows, which are always the same ones.
  void StoreRows(const char* table, const std::string& id, const std::vector<model::Row>& rows) {
    std::size_t at_once = 8;
    for (std::size_t first = 0; first < rows.size(); first += at_once) {
      while (first + at_once > rows.size()) at_once /= 2;
      std::string values;
      for (std::size_t i = first; i < first + at_once; ++i) {
        const model::Row& row = rows[i];
        values +=
            fmt::format("{}({},{},{},{},{},{})", values.empty() ? "" : ",", row.id, QuoteStr(id),
                        Text(row.due), Text(row.payable), Text(row.capital), Text(row.interest));
      }
      main().Execute(
          fmt::format("INSERT INTO {} (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
                      "VALUES {}",
                      table, values));
    }
  }

  void StorePayment(const std::string& id, const model::Payment& p) {
    main().Execute(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,PayDate,PayAmt,InstalAmt,PayExtra,IntAmt,ChargeAmt,"
        "CollectorAmt,DiscAmt,Memo5,TopAmt,TopTerm) VALUES "
        "({},{},{},{},{},{},{},{},{},{},{},{},{})",
        QuoteStr(p.id), QuoteStr(id), Text(p.date), Text(p.instalment + p.extra),
        Text(p.instalment), Text(p.extra), Text(p.late), Text(p.charge), Text(p.collector),
        Text(p.discount), Text(p.calculated), Text(p.top), p.top_term));
  }

  // One payment is edited, deleted, or one more is taken.
  void Change(const std::string& id, const model::StoredLoan& loan) {
    const auto last = static_cast<std::int64_t>(loan.payments.size()) - 1;
    const std::string pay_id =
        QuoteStr(loan.payments[static_cast<std::size_t>(random_.Between(0, last))].id);
    switch (random_.Between(0, 2)) {
      case 0:
        main().Execute("DELETE FROM PaymentMast WHERE PayID=" + pay_id);
        break;
      case 1:
        main().Execute(fmt::format(
            "UPDATE PaymentMast SET InstalAmt={},PayExtra={},IntAmt={},DiscAmt={} WHERE PayID={}",
            Text(random_.Between(0, loan.amount)),
            Text(random_.OneIn(3) ? random_.Between(0, loan.amount / 3) : 0),
            Text(random_.Between(-100, 900)), Text(random_.Between(0, 500)), pay_id));
        break;
      default: {
        model::Payment more = DrawPayment(random_, loan, id, loan.rows.front().due, 0);
        more.id += "A";  // before all others
        StorePayment(id, more);
      }
    }
  }

  void AtTheCounter(const std::string& id, const std::function<void()>& write) {
    Transaction transaction(main());
    write();
    transaction.Commit();
    RebuildAndTell(office_.session, office_.desk, id, "C");
  }

  static Money Rm(model::Sen sen) { return Money::FromTenThousandths(sen * 100); }

  static Payment CounterPayment(const std::string& id, const model::Payment& drawn) {
    Payment payment;
    payment.LoanID = id;
    payment.CustID = "C";
    payment.CompCode = "HQ";
    payment.PayDate =
        fmt::format("{:02}-{:02}-{:04}", drawn.date.day, drawn.date.month, drawn.date.year);
    payment.PayAmt = Rm(drawn.instalment + drawn.extra);
    payment.InstalAmt = Rm(drawn.instalment);
    payment.PayExtra = Rm(drawn.extra);
    payment.IntAmt = Rm(drawn.late);
    payment.ChargeAmt = Rm(drawn.charge);
    payment.CollectorAmt = Rm(drawn.collector);
    payment.DiscAmt = Rm(drawn.discount);
    payment.Memo5 = Rm(drawn.calculated);
    payment.TopAmt = Rm(drawn.top);
    payment.TopTerm = drawn.top_term;
    return payment;
  }

  void EditAtTheCounter(const std::string& id, const std::string& pay_id,
                        const model::StoredLoan& loan) {
    const Payment stored = ReadPayment(main(), pay_id).value();
    Payment edited = stored;
    edited.InstalAmt = Rm(random_.Between(0, loan.amount));
    edited.PayAmt = edited.InstalAmt + edited.PayExtra;
    edited.IntAmt = Rm(random_.Between(-100, 900));
    AtTheCounter(id, [&] { UpdatePayment(office_.session, edited, AuditValues(stored)); });
  }

  Office office_{Office::State::patched};
  Random random_;
};

TEST(LedgerPropertyTest, RandomHistoriesKeepTheIdentities) {
  const std::uint64_t seed = FromEnvironment(
      "KAUNTER_SEED",
      static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()));
  const int loans = static_cast<int>(FromEnvironment("KAUNTER_LOANS", 20'000));
  std::cout << "KAUNTER_SEED=" << seed << "\n";
  // An office a core, side by side.
  const int offices = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 8);
  const int loans_each = loans / offices + 1;
  const int counter_loans_each = loans_each / 60 + 1;
  std::vector<std::unique_ptr<RandomOffice>> all;
  std::vector<std::thread> threads;
  for (int i = 0; i < offices; ++i) {
    all.push_back(std::make_unique<RandomOffice>(seed + static_cast<std::uint64_t>(i)));
    threads.emplace_back([&office = *all.back(), loans_each, counter_loans_each] {
      office.AddLoans(loans_each);
      office.AddLoansAtTheCounter(counter_loans_each);
      office.ExpectSound(loans_each + counter_loans_each);
      office.RebuildAllAgain();
      office.ExpectSound(loans_each + counter_loans_each);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kaunter
