// A payment created, changed or deleted whole or not at all: the database fails at each statement
// in turn, and the machine loses power at each write. The rebuild behind the commit may be missing
// afterwards; run again, it gives what an undisturbed one gives.
#include <set>

#include "loans/rebuild.h"
#include "tests/collections/payment_office.h"
#include "tests/support/pulled_plug.h"

namespace kaunter {
namespace {

enum class Act { create, change, remove };

class PaymentFaults : public PaymentTest, public ::testing::WithParamInterface<Act> {
 protected:
  PaymentFaults() {
    MakeLoan(kLoan, LoanScheme::kFlexi, "3000", "4");
    office.Run(
        "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,PayID) VALUES ('HQ0001-001',1,'C1',112,'');"
        "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqAmt,PayID) VALUES ('HQ0001-001',2,'C2',112,'');"
        "INSERT INTO SchMast (LoanID,SchID,DueDate,PayableAmt) VALUES "
        "('HQ0001-001',5,'2024-05-31',20)");
    Store(Of("112.30"));
    if (GetParam() != Act::create) stored_ = Store(Busy());
  }

  // A payment that touches all that one can.
  static Payment Busy() {
    Payment payment = Of("400.55", "15-02-2024");
    payment.InstalAmt = Rm("300.55");
    payment.PayExtra = Rm("100");
    payment.IntAmt = Rm("12.34");
    payment.DiscAmt = Rm("1.11");
    payment.ChqNo = "C1";
    payment.SalesmanID = "SAM";
    payment.SalesmanComm = Rm("2.5");
    payment.SchID = "4";  // its top-up: rows 4 and 5
    payment.TopTerm = 2;
    payment.TopAmt = Rm("20");
    return payment;
  }

  void Write() {
    Payment payment = stored_;
    switch (GetParam()) {
      case Act::create:
        payment = Busy();
        CreatePayment(office.session, payment);
        break;
      case Act::change:
        payment.PayAmt = payment.InstalAmt = Rm("250");
        payment.PayExtra = Money();
        payment.ChqNo = "C2";
        UpdatePayment(office.session, payment, AuditValues(stored_));
        break;
      case Act::remove:
        DeletePayment(office.session, stored_);
        break;
    }
  }
  // As a screen does it: what was stored is replayed, what was not is told.
  void WriteAndRebuild() {
    told.clear();
    Tried([this] { Write(); });
    if (told.empty()) Rebuild();
  }

  void ExpectEachNumberOnce() {
    const Recordset rows = main().Query("SELECT PayID,ReceiptNo FROM PaymentMast");
    std::set<std::string> numbers;
    for (const auto& row : rows.rows()) {
      for (const Value& number : row) {
        EXPECT_TRUE(numbers.insert(number.ToText()).second) << number.ToText();
      }
    }
  }

  Payment stored_;
};

TEST_P(PaymentFaults, AFailureAtAnyStatementLeavesEverythingAsItWas) {
  const int statements = FailEverywhere([this] { Tried([this] { Write(); }); });
  EXPECT_GE(statements, GetParam() == Act::change ? 6 : 12);
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), GetParam() == Act::remove ? "1" : "2");
  ExpectEachNumberOnce();
}

TEST_P(PaymentFaults, ARebuildStoppedAtAnyStatementAndRunAgainGivesTheSame) {
  Whole([this] { Write(); });
  const std::string file = office.folder.File("office.db");
  office.session.MainConn.reset();
  std::filesystem::copy_file(file, file + ".kept");
  std::string whole;
  int stopped = 0;
  for (int at = 1000; at > 0; at = at == 1000 ? 1 : at + 1) {
    office.session.MainConn.reset();
    std::filesystem::copy_file(file + ".kept", file,
                               std::filesystem::copy_options::overwrite_existing);
    office.Open();
    office.session.settings.TransLogs = false;
    desk.messages.clear();
    const bool reached = FailAt(at, [this] { Rebuild(); });
    if (at == 1000) {
      whole = Stored();
      ASSERT_TRUE(desk.messages.empty());
      continue;
    }
    EXPECT_EQ(desk.messages.empty(), !reached) << at;
    ASSERT_FALSE(main().InTransaction());
    if (!reached) break;
    ++stopped;
    Rebuild();
    ASSERT_EQ(Stored(), whole) << "stopped at statement " << at;
  }
  EXPECT_GT(stopped, 30);
}

TEST_P(PaymentFaults, APulledPlugAtAnyWriteLeavesBeforeAfterOrStoredAndNotYetReplayed) {
  const std::string file = office.folder.File("office.db");
  const std::string kept = file + ".kept";
  const auto reopen = [this] {
    office.Open();
    office.session.settings.TransLogs = false;
  };
  office.session.MainConn.reset();
  std::filesystem::copy_file(file, kept);
  reopen();

  // The lawful states, from an undisturbed run.
  const std::string before = Stored();
  Whole([this] { Write(); });
  const std::string not_replayed = Stored();
  ASSERT_TRUE(RebuildLoan(main(), kLoan).done);
  const std::string loan_replayed = Stored();  // and its customer not yet
  ASSERT_TRUE(RebuildCustomer(main(), "HQ0001").done);
  const std::string after = Stored();
  ASSERT_EQ((std::set{before, not_replayed, loan_replayed, after}.size()), 4u);

  int replayed_behind = 0;
  test::DieEverywhere({.file = file,
                       .fresh =
                           [&] {
                             office.session.MainConn.reset();
                             for (const char* tail : {"", "-wal", "-shm"})
                               std::filesystem::remove(file + tail);
                             std::filesystem::copy_file(kept, file);
                           },
                       .save =
                           [&] {
                             reopen();
                             WriteAndRebuild();
                             if (!told.empty()) throw std::runtime_error(told);
                           },
                       .state =
                           [&] {
                             reopen();
                             const std::string found = Stored();
                             if (found == before || found == after) return found;
                             if (found != not_replayed && found != loan_replayed) return found;
                             ++replayed_behind;
                             Rebuild();
                             return Stored();
                           },
                       .before = before,
                       .after = after,
                       .seeds = GetParam() == Act::create ? 2u : 1u,
                       .then =
                           [&] {
                             Store(Of("5", "16-02-2024"));
                             ExpectEachNumberOnce();
                             office.session.MainConn.reset();
                           }});
  EXPECT_GT(replayed_behind, 0);
  reopen();
}

INSTANTIATE_TEST_SUITE_P(Of, PaymentFaults,
                         ::testing::Values(Act::create, Act::change, Act::remove),
                         [](const auto& act) {
                           return act.param == Act::create   ? "ANewPayment"
                                  : act.param == Act::change ? "AChange"
                                                             : "ADelete";
                         });

}  // namespace
}  // namespace kaunter
