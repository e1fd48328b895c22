// The program itself reads a bank's file and is killed at any moment, and several read one file at
// once, under its own name and another; on a PostgreSQL server too, where script/with-postgresql
// has started one. Whatever happens each line pays once, and the ledger is sound in the end.
//
// KAUNTER_KILLS sets how often an office is made anew and its programs are killed.
#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

#include "collections/ledger_check.h"
#include "gmock/gmock.h"
#include "loans/rebuild.h"
#include "tests/loans/loan_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

constexpr int kLoans = 12;
constexpr int kLines = 60;

class ReaderProgramTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::copy_file(test::SourceDir() + "/reports/BankLayouts.txt",
                               folder.File("BankLayouts.txt"));
    std::string bytes;
    for (int i = 0; i < kLines; ++i) {
      std::string line(64, ' ');
      line.replace(10, 8, "20240131");
      line.replace(31, 11, fmt::format("{:011}", 1000 + i));
      line[42] = 'C';
      bytes += line + fmt::format("HQ0001-{:03}\n", 1 + i % kLoans);
    }
    for (const char* name : {"bank.txt", "renamed.txt"}) {
      std::ofstream(folder.File(name)) << bytes;
      std::ofstream(Script(name)) << fmt::format(
          "signin ADMIN zebrawindmill\nmenu PaymentReaderMnu\nset Bank PBB\nanswer {} yes\n"
          "click ReadCmd\nanswer yes\nclick SaveCmd\nshow TotalLBL\n",
          folder.File(name));
    }
    MakeOffice();
  }

  static void Fill(LoanOffice& made) {
    for (int i = 1; i <= kLoans; ++i) {
      made.MakeLoan(fmt::format("HQ0001-{:03}", i),
                    i % 3 == 0 ? LoanScheme::kFlexi : LoanScheme::kPersonal, "1200", "12");
    }
    made.office.Run(
        "UPDATE LoanMast SET PayOutAmt=1200,TotCollectorAmt=0,TotInt=0;INSERT INTO Systemast "
        "(Param,Value) VALUES ('PaymentReader','1');DELETE FROM Systemast WHERE Param='KEY';INSERT "
        "INTO Systemast (Param,Value) VALUES ('KEY','MainUser')");
    RebuildCustomer(made.main(), "HQ0001");
  }
  virtual void MakeOffice() {
    LoanOffice made;
    Fill(made);
    made.office.session.MainConn.reset();
    std::filesystem::copy_file(made.office.folder.File("office.db"), kept);
  }
  virtual void Fresh() {
    for (const char* tail : {"", "-wal", "-shm"}) std::filesystem::remove(file + tail);
    std::filesystem::copy_file(kept, file);
  }
  virtual std::vector<std::string> WhichOffice() { return {"--database", file}; }
  virtual std::unique_ptr<Connection> Connect() {
    return OpenSqlite("MainConn", file, false, clock);
  }

  std::string Script(const std::string& name) { return folder.File(name + ".play"); }

  pid_t Start(const std::string& name, const std::string& desk = "desk") {
    const pid_t child = fork();
    if (child == 0) {
      const std::string app = folder.File(desk);
      std::filesystem::create_directories(app);
      std::filesystem::copy_file(folder.File("BankLayouts.txt"), app + "/BankLayouts.txt",
                                 std::filesystem::copy_options::overwrite_existing);
      const int out = open((app + ".out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      dup2(out, 1);
      dup2(out, 2);
      std::vector<std::string> words = {test::BinaryDir() + "/bin/kaunter-play", "--app", app,
                                        "--now", "2024-01-31 14:05:09"};
      for (const std::string& word : WhichOffice()) words.push_back(word);
      words.push_back(Script(name));
      std::vector<char*> arguments;
      for (std::string& word : words) arguments.push_back(word.data());
      arguments.push_back(nullptr);
      execv(arguments[0], arguments.data());
      _exit(127);
    }
    return child;
  }
  // True when it was killed.
  static bool End(pid_t child, int kill_after = 0) {
    if (kill_after > 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(kill_after));
      kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status);
  }
  std::string Said(const std::string& desk = "desk") {
    std::ostringstream text;
    text << std::ifstream(folder.File(desk + ".out")).rdbuf();
    return std::move(text).str();
  }

  // What is stored at this moment; faults are added as failures.
  int Paid(bool in_the_end) {
    const auto main = Connect();
    const auto number = [&](const std::string& sql) { return CLng("0" + ScalarQuery(*main, sql)); };
    const int paid = number("SELECT COUNT(*) FROM PaymentMast");
    // A line and its payment come together, and no amount comes twice.
    EXPECT_EQ(number("SELECT COUNT(*) FROM PaymentReader WHERE Remarks='Payment Done'"), paid);
    EXPECT_EQ(number("SELECT COUNT(DISTINCT PayAmt) FROM PaymentMast"), paid);
    EXPECT_EQ(number("SELECT COUNT(DISTINCT ReceiptNo) FROM PaymentMast"), paid);
    EXPECT_EQ(number("SELECT COUNT(*) FROM PaymentReader as r INNER JOIN PaymentMast as p on "
                     "p.PayID=r.PayID"),
              paid);
    if (in_the_end) {
      EXPECT_EQ(paid, kLines) << Said();
      for (const LedgerFault& fault :
           CheckCompany(*main, "HQ", [](const auto&) { return true; }).faults) {
        ADD_FAILURE() << fault.LoanID << " " << fault.what.english << " " << fault.stored << " "
                      << fault.should_be;
      }
    }
    return paid;
  }

  int Rounds() {
    const char* told = std::getenv("KAUNTER_KILLS");
    return told == nullptr ? 4 : std::atoi(told);
  }
  int Between(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }

  void ExpectToBearKilling();
  void ExpectSeveralToBeAsOne();

  Clock clock;
  TempFolder folder;
  std::string file = folder.File("office.db");
  std::string kept = folder.File("kept.db");
  std::mt19937 random{std::random_device{}()};
};

void ReaderProgramTest::ExpectToBearKilling() {
  Fresh();
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_FALSE(End(Start("bank.txt")));
  const int life = static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                        std::chrono::steady_clock::now() - begin)
                                        .count());
  ASSERT_THAT(Said(), ::testing::HasSubstr("Process completed"));
  ASSERT_EQ(Paid(true), kLines);
  int killed = 0, part_way = 0;
  for (int round = 0; round < Rounds(); ++round) {
    Fresh();
    for (int i = 0; i < 3; ++i) {
      if (End(Start("bank.txt"), Between(life / 4, life))) ++killed;
      const int paid = Paid(false);
      if (paid > 0 && paid < kLines) ++part_way;
    }
    End(Start("bank.txt"));
    ASSERT_EQ(Paid(true), kLines);
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
  std::cout << Rounds() << " offices, " << killed << " programs killed, found part way " << part_way
            << " times\n";
  EXPECT_GT(killed, 0);
}

void ReaderProgramTest::ExpectSeveralToBeAsOne() {
  int killed = 0, of_others = 0;
  for (int round = 0; round < Rounds(); ++round) {
    Fresh();
    // Two read the file, a third one a copy of another name; one of them is killed.
    const pid_t desks[] = {Start("bank.txt", "one"), Start("bank.txt", "two"),
                           Start("renamed.txt", "three")};
    if (End(desks[round % 2], Between(200, 700))) ++killed;
    End(desks[1 - round % 2]);
    End(desks[2]);
    Paid(false);
    End(Start("bank.txt", "one"));
    // What the copy has taken first is left to it.
    const auto main = Connect();
    const int by_copy =
        CLng("0" + ScalarQuery(*main,
                               "SELECT COUNT(*) FROM PaymentReader WHERE RefNo LIKE 'renamed%' AND "
                               "Remarks='Payment Done'"));
    if (by_copy > 0 && by_copy < kLines) ++of_others;
    ASSERT_EQ(Paid(true), kLines) << Said("one") << Said("two") << Said("three");
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
  std::cout << Rounds() << " offices, " << killed << " programs killed, both names took lines "
            << of_others << " times\n";
}

TEST_F(ReaderProgramTest, IsKilledAndRunAgain) { ExpectToBearKilling(); }
TEST_F(ReaderProgramTest, SeveralAtOnceAreAsOne) { ExpectSeveralToBeAsOne(); }

class PostgresqlReaderTest : public ReaderProgramTest {
 protected:
  void SetUp() override {
    const char* server = std::getenv("KAUNTER_POSTGRESQL");
    if (server == nullptr) GTEST_SKIP() << "no PostgreSQL server to play on";
    odbc = server;
    std::ofstream(folder.File("settings.ini"))
        << "ConnDataSource = Office\nShortDate = dd-MM-yyyy\n[Office]\nodbc = " << odbc
        << ";Database=bank_reader\n";
    ReaderProgramTest::SetUp();
  }
  static void Make(const std::string& name, const std::string& like) {
    ASSERT_EQ(std::system(("dropdb --if-exists --force " + name + " 2>/dev/null && createdb -T " +
                           like + " -E UTF8 " + name)
                              .c_str()),
              0);
  }
  void MakeOffice() override {
    Make("bank_kept", "template0");
    LoanOffice made;
    made.office.session.MainConn =
        OpenOdbc("MainConn", odbc + ";Database=bank_kept", made.office.session.clock);
    CreateEmptyOffice(made.main());
    made.office.Connect();
    made.Begin();
    Fill(made);
  }
  void Fresh() override { Make("bank_reader", "bank_kept"); }
  std::vector<std::string> WhichOffice() override {
    return {"--settings", folder.File("settings.ini")};
  }
  std::unique_ptr<Connection> Connect() override {
    return OpenOdbc("MainConn", odbc + ";Database=bank_reader", clock);
  }
  std::string odbc;
};

TEST_F(PostgresqlReaderTest, IsKilledAndRunAgain) { ExpectToBearKilling(); }
TEST_F(PostgresqlReaderTest, SeveralAtOnceAreAsOne) { ExpectSeveralToBeAsOne(); }

}  // namespace
}  // namespace kaunter
