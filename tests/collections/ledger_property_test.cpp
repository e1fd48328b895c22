// Twenty thousand random loans in the database, paid, edited, deleted from and rebuilt: the
// identities of the ledger hold on every one, and the check of the ledger finds nothing to say. The
// seed is printed; KAUNTER_SEED sets it, KAUNTER_LOANS the number of loans.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "collections/ledger_check.h"
#include "core/values.h"
#include "gtest/gtest.h"
#include "loans/rebuild.h"
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
    for (const char* broken : kBroken) {
      const Recordset rows = main().Query(broken);
      EXPECT_TRUE(rows.Eof()) << rows.Field(0).ToText() << ": " << broken;
    }
  }

  // Of the loans without extra capital.
  void ExpectRebuildChangesNothing(int every) {
    const Recordset loans = main().Query("SELECT LoanID FROM LoanMast WHERE PayExtra=0");
    main().BeginTrans();
    for (std::size_t i = 0; i < loans.RowCount(); i += static_cast<std::size_t>(every)) {
      const std::string id = loans.rows()[i][0].ToText();
      const std::string before = Stored(id);
      Rebuild(id);
      ASSERT_EQ(Stored(id), before) << id;
    }
    main().CommitTrans();
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
    StoreRows("SchMast2", id, loan.special ? loan.backup : loan.rows);
    for (const model::Payment& payment : loan.payments) StorePayment(id, payment);
    main().Execute(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,LoanID,ChargeAmt,PType) VALUES ('{0}B','{0}',15.34,"
        "'Batch'),('{0}X','{0}',900,'Batch Loan Interest'),('{0}N','{0}',-1.5,'Credit Note')",
        id));
  }

  void StoreRows(const char* table, const std::string& id, const std::vector<model::Row>& rows) {
    std::string values;
    for (const model::Row& row : rows) {
      values +=
          fmt::format("{}({},{},{},{},{},{})", values.empty() ? "" : ",", row.id, QuoteStr(id),
                      Text(row.due), Text(row.payable), Text(row.capital), Text(row.interest));
    }
    if (values.empty()) return;
    main().Execute(
        fmt::format("INSERT INTO {} (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
                    "VALUES {}",
                    table, values));
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

  std::string Stored(const std::string& id) {
    std::string text;
    for (const char* sql :
         {"SELECT SchID,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,InterestPayment,"
          "LoanBal,PayExtra FROM SchMast WHERE LoanID={} ORDER BY SchID",
          "SELECT PayID,OldLoanBal,NewLoanBal,IntPay,CapPay FROM PaymentMast WHERE LoanID={} ORDER "
          "BY PayID",
          "SELECT ChargeID,ChargeAmt,PType FROM ChargeMast WHERE LoanID={} ORDER BY ChargeID",
          "SELECT TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,LoanBal,NextDueDate,PayExtra,"
          "LastPaymentDate,LastPaymentNo,TotLoanInt FROM LoanMast WHERE LoanID={}"}) {
      const Recordset rows = main().Query(fmt::format(fmt::runtime(sql), QuoteStr(id)));
      for (const auto& row : rows.rows()) {
        for (const Value& field : row) text += field.ToText() + " ";
      }
      text += "\n";
    }
    return text;
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
      office.ExpectRebuildChangesNothing(20);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace kaunter
