// A payment at a desktop whose connection to the server is cut at each statement of the save in
// turn: the clerk hears nothing of it. On a PostgreSQL server, where script/with-postgresql has
// started one.
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

TEST_F(PostgresqlCut, AtAnyStatementOfASaveCostsNothingAndDoublesNothing) {
  int cuts = 0;
  for (bool reached = true; reached; ++cuts) {
    auto screen = New(kFlexi);
    Put(screen->PayDate, "31-01-2024");
    Put(screen->TotPay, "1.07");
    screen->Memo1.SetText("typed");
    reached = SaveCutAt(*screen, cuts + 1);
    SCOPED_TRACE(fmt::format("at statement {}: {}", cuts + 1, Said()));
    ASSERT_FALSE(main().InTransaction());
    EXPECT_FALSE(screen->SaveCmd.enabled());
    ASSERT_EQ(counter.messages.size(), 1U);
    EXPECT_NE(LastMessage().find("Saved"), std::string::npos);
    EXPECT_EQ(Lines("SELECT LoanID,PayAmt,Memo1 FROM PaymentMast"), kFlexi + " 1.07 typed\n");
    ASSERT_EQ(Faults(), "");
    // Gone again, as a rebuild takes the longer the more payments there are.
    main().Execute("DELETE FROM PaymentMast");
    RebuildAndTell(office.session, counter, kFlexi, "HQ0001");
  }
  EXPECT_GT(cuts, 30);
}

}  // namespace
}  // namespace kaunter
