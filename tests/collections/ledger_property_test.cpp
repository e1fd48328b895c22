// Twenty thousand random loans in the database, paid, edited, deleted from and rebuilt: the
// identities of the ledger hold on every one, the check of the ledger finds nothing to say, and a
// second rebuild of each changes no row. The seed is printed; KAUNTER_SEED sets it, KAUNTER_LOANS
// the number of loans. Payments by way of the counter: counter_property_test.cpp.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "collections/ledger_check.h"
#include "loans/rebuild.h"
#include "tests/core/office.h"
#include "tests/loans/bare_ledger.h"
#include "tests/loans/stored_loan.h"

namespace kaunter {
namespace {

// Loans whose rows each rebuild cuts anew, which is wanted: extra capital has been paid, and the
// rows are not brought back to what they were before it.
constexpr const char* kCutAnew =
    "SELECT LoanID FROM LoanMast as l WHERE PayExtra > 0 AND (DragLoan <> '1' OR SpecialSch <> '1' "
    "AND (EXISTS (SELECT 1 FROM SchMast as s WHERE s.LoanID=l.LoanID AND InterestAmt <> 0 AND "
    "CapitalAmt = 0) OR EXISTS (SELECT 1 FROM SchMast2 as s WHERE s.LoanID=l.LoanID AND "
    "InterestAmt <> 0 AND CapitalAmt = 0)) OR (SELECT COUNT(*) FROM SchMast2 as s WHERE "
    "s.LoanID=l.LoanID) < (SELECT COUNT(*) FROM SchMast as s WHERE s.LoanID=l.LoanID))";

// A loan with a row that stands in one of the two files alone, "" for none.
std::string LoanThatDiffers(BareFile& after, const std::string& table) {
  const std::string rows = " SELECT * FROM main." + table + " ";
  const std::string rows_before = " SELECT * FROM before." + table + " ";
  return after.Rows("SELECT LoanID FROM (SELECT * FROM (" + rows + "EXCEPT" + rows_before +
                    ") UNION ALL SELECT * FROM (" + rows_before + "EXCEPT" + rows +
                    ")) WHERE LoanID NOT IN (" + kCutAnew + ") LIMIT 1");
}

class RandomOffice {
 public:
  explicit RandomOffice(std::uint64_t seed) : random_(seed) {}

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
    BareFile file(office_.folder.File("office.db"));
    AskIdentities(file, [](const char* what, std::int64_t, const std::string& broken) {
      EXPECT_EQ(broken, "") << what;
    });
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
      BareFile after(file);
      after.Rows("ATTACH '" + kept + "' AS before");
      for (const char* table : {"SchMast", "SchMast2", "PaymentMast", "ChargeMast", "LoanMast"}) {
        EXPECT_EQ(LoanThatDiffers(after, table), "") << table;
      }
      EXPECT_EQ(after.Rows(fmt::format("SELECT 1 WHERE (SELECT COUNT(*) FROM ({})) > {}", kCutAnew,
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
        "InstallmentAmt2,LoanStatus,SchChanged) VALUES ({},'C','HQ','{}','{}',{},{},{},'ACTIVE',"
        "'1')",  // its rows add up to what they like
        QuoteStr(id), loan.scheme, loan.special ? 1 : 0, Text(loan.amount),
        Money::FromTenThousandths(loan.rate4).ToText(), Text(loan.instalment)));
    StoreRows(main(), "SchMast", id, loan.rows);
    if (loan.scheme == "1") {
      StoreRows(main(), "SchMast2", id, loan.special ? loan.backup : loan.rows);
    }
    for (const model::Payment& payment : loan.payments) StorePayment(main(), id, payment);
    main().Execute(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('{0}B','{0}',915.34,"
        "'Batch'),('{0}X','{0}',900,'Batch Loan Interest'),('{0}N','{0}',-1.5,'Credit Note')",
        id));
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
        StorePayment(main(), id, more);
      }
    }
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
  std::vector<std::unique_ptr<RandomOffice>> all;
  std::vector<std::thread> threads;
  for (int i = 0; i < offices; ++i) {
    all.push_back(std::make_unique<RandomOffice>(seed + static_cast<std::uint64_t>(i)));
    threads.emplace_back([&office = *all.back(), loans_each] {
      office.AddLoans(loans_each);
      office.ExpectSound(loans_each);
      office.RebuildAllAgain();
      office.ExpectSound(loans_each);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kaunter
