// A payment at a desktop whose connection to the server is cut: at each statement of the save in
// turn, and while the counter was deserted. On a PostgreSQL server, where script/with-postgresql
// has started one.
#include <cstdlib>

#include "collections/ledger_check.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/odbc/odbc_session.h"
#include "tests/collections/payment_counter.h"

namespace kaunter {
namespace {

class PostgresqlCut : public PaymentCounter {
 protected:
  void SetUp() override {
    const char* server = std::getenv("KAUNTER_POSTGRESQL");
    if (server == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
    ASSERT_EQ(std::system("dropdb --if-exists --force cut_connection 2>/dev/null && "
                          "createdb -T template0 -E UTF8 cut_connection"),
              0);
    odbc = std::string(server) + ";Database=cut_connection";
    office.session.MainConn = OpenOdbc("MainConn", odbc, office.session.clock);
    CreateEmptyOffice(main());
    office.Connect();
    Begin();
    Lend();
  }

  // Ends all connections to the database but its own, and waits until they are gone.
  void Cut() {
    sql::OdbcSession knife("Knife", odbc);
    const std::string others =
        " FROM pg_stat_activity WHERE datname=current_database() AND pid<>pg_backend_pid()";
    knife.Run("SELECT pg_terminate_backend(pid)" + others, true);
    while (knife.Run("SELECT count(*)" + others, true).rows->Field(0) != Value(0)) {
    }
  }

  // Saves with the connection cut before statement `at`; true when there is such a statement.
  bool SaveCutAt(PaymentFrm& screen, int at) {
    int count = 0;
    main().SetFaultHook([&](std::string_view statement) {
      if (!statement.starts_with("ROLLBACK") && ++count == at) Cut();
    });
    Save(screen);
    main().SetFaultHook({});
    return count >= at;
  }

  std::string Faults() {
    std::string faults;
    for (const LedgerFault& fault : CheckLoan(main(), kFlexi)) {
      faults += fmt::format("{}: {} for {}\n", fault.what.english, fault.stored, fault.should_be);
    }
    return faults;
  }
  std::string odbc;
};

TEST_F(PostgresqlCut, AtAnyStatementOfASaveLosesNothingAndDoublesNothing) {
  int stored_unseen = 0;
  int refused = 0;
  bool reached = true;
  for (int at = 1; reached; ++at) {
    auto screen = New(kFlexi);
    Put(screen->PayDate, "31-01-2024");
    Put(screen->TotPay, "1.07");
    screen->Memo1.SetText("typed");
    reached = SaveCutAt(*screen, at);
    SCOPED_TRACE(fmt::format("at statement {}: {}", at, Said()));
    ASSERT_FALSE(main().InTransaction());
    const bool told = Said().find("lost") != std::string::npos ||
                      Said().find("error occur during rebuild") != std::string::npos;
    EXPECT_EQ(told, reached);
    if (screen->SaveCmd.enabled()) {
      // Nothing was stored and nothing typed is gone: the next press saves.
      ++refused;
      ASSERT_EQ(Scalar("SELECT COUNT(*) FROM PaymentMast"), "0");
      EXPECT_EQ(screen->TotPay.text(), "1.07");
      EXPECT_EQ(screen->Memo1.text(), "typed");
      Save(*screen);
      EXPECT_NE(LastMessage().find("Saved"), std::string::npos) << Said();
    } else if (reached) {
      ++stored_unseen;
    }
    EXPECT_EQ(Lines("SELECT LoanID,PayAmt,Memo1 FROM PaymentMast"), kFlexi + " 1.07 typed\n");
    RebuildAndTell(office.session, counter, kFlexi, "HQ0001");
    ASSERT_EQ(Faults(), "");
    // Gone again, as a rebuild takes the longer the more payments there are.
    main().Execute("DELETE FROM PaymentMast");
    RebuildAndTell(office.session, counter, kFlexi, "HQ0001");
  }
  EXPECT_GE(refused, 12);
  EXPECT_GT(stored_unseen, 20);
}

}  // namespace
}  // namespace kaunter
