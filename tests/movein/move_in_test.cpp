#include "movein/move_in.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <sstream>
#include <thread>

#include "collections/ledger_check.h"
#include "core/amounts.h"
#include "customers/customer_store.h"
#include "movein/file_trouble.h"
#include "tests/core/office.h"
#include "tests/movein/old_books.h"

namespace kaunter {
namespace {

bool AlwaysOn(const MoveProgress&) { return true; }

// An office that takes old books in.
struct NewOffice : Office {
  NewOffice() : Office(State::patched) {
    session.CurrentLevel = 4;
    session.AllowDisc = true;
    Run("INSERT INTO CustRaceMast (CustRaceID,CustRaceDesc) VALUES ('CHINESE','')");
    for (const char* code : {"MONTH", "WEEK"}) {
      if (Scalar(fmt::format("SELECT LoanTypeID FROM LoanTypeMast WHERE LoanTypeID='{}'", code))
              .empty()) {
        Run(fmt::format("INSERT INTO LoanTypeMast (LoanTypeID) VALUES ('{}')", code));
      }
    }
  }
  std::string Faults() {
    std::string text;
    const LedgerReport report =
        CheckCompany(session.Main(), "HQ", [](const LedgerProgress&) { return true; });
    for (const LedgerFault& fault : report.faults) {
      text += fmt::format("{} {}: {} for {}\n", fault.LoanID, fault.what.english, fault.stored,
                          fault.should_be);
    }
    return text;
  }
  std::int64_t SumInSen(const std::string& what) {
    return Sen(session.Main().Query("SELECT SUM(" + what + ")").Field(0)).ten_thousandths() / 100;
  }
  // All that was moved in, but for when.
  std::string Books() {
    std::string text;
    for (const char* sql :
         {"SELECT CustID,CustName,CustNIC,DOB,TotLoan,TotLoanBal FROM CustMast ORDER BY CustID",
          "SELECT LoanID,CustID,OldLoanCode,LoanAmt,LoanBal,TotPay,PayOutAmt,TotInt,"
          "TotCollectorAmt,NextDueDate,LoanGroupID FROM LoanMast ORDER BY LoanID",
          "SELECT * FROM SchMast ORDER BY LoanID,SchID",
          "SELECT PayID,ReceiptNo,PayDate,PayAmt,IntAmt,CapPay,IntPay,NewLoanBal,SchID,PayableAmt "
          "FROM PaymentMast ORDER BY PayID",
          "SELECT LoanID,ChargeAmt,PType FROM ChargeMast ORDER BY ChargeID",
          "SELECT LoanID,DrawDownAmt FROM DrawDownMast ORDER BY SID",
          "SELECT Kind,OldCode,NewID,FileLine,UserID FROM MoveInMast ORDER BY Kind,OldCode"}) {
      text += Lines(sql);
    }
    return text;
  }
};

std::string Told(const MoveReport& report) {
  std::string text;
  for (const LineTrouble& trouble : report.troubles) {
    text +=
        fmt::format("{} {} {} {}: {}\n", MoveKindName(trouble.kind), trouble.line, trouble.field,
                    trouble.refused ? "refused" : "note", trouble.reason.english);
  }
  return text;
}

void ExpectAll(const MoveReport& report, const OldBooks& books, int MoveCounts::*where) {
  EXPECT_TRUE(report.complete);
  EXPECT_EQ(report.Of(MoveKind::customers).*where, books.customers);
  EXPECT_EQ(report.Of(MoveKind::loans).*where, books.loans);
  EXPECT_EQ(report.Of(MoveKind::payments).*where, books.payments);
}

TEST(MoveIn, BooksInAnyHandwritingComeWholeAndOnce) {
  const Handwriting hands[] = {
      {},
      {';', ',', DayOrder::day_month_year, "UTF-8", "\xEF\xBB\xBF", "\n"},
      {'\t', '.', DayOrder::month_day_year, "UTF-16LE", "\xFF\xFE"},
      {',', '.', DayOrder::year_month_day, "GBK", "", "\r"},
      {';', '.', DayOrder::day_month_year, "WINDOWS-1252", "", "\r\n", false},
      {'|', '.', DayOrder::year_month_day, "UTF-16BE", "\xFE\xFF"}};
  unsigned seed = 1;
  for (const Handwriting& hand : hands) {
    SCOPED_TRACE(hand.encoding);
    NewOffice office;
    office.OpenAudit();
    const OldBooks books(office.folder.path(), 40, seed++, hand);
    const MoveInJob job = books.Job();
    const std::string before = office.Books();
    const MoveReport dry = MoveIn(office.session, job, false, AlwaysOn);
    EXPECT_EQ(Told(dry), "");
    ExpectAll(dry, books, &MoveCounts::good);
    EXPECT_EQ(office.Books(), before);
    ExpectAll(MoveIn(office.session, job, true, AlwaysOn), books, &MoveCounts::good);
    EXPECT_EQ(office.Faults(), "");
    EXPECT_EQ(office.SumInSen("LoanAmt) FROM LoanMast WHERE (1=1"), books.lent);
    EXPECT_EQ(office.SumInSen("DrawDownAmt) FROM DrawDownMast WHERE (1=1"), books.lent);
    EXPECT_EQ(office.SumInSen("InstalAmt) FROM PaymentMast WHERE (1=1"), books.paid);
    EXPECT_EQ(office.SumInSen("IntAmt) FROM PaymentMast WHERE (1=1"), books.late);
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast WHERE ReceiptNo LIKE 'OR%'"),
              std::to_string(books.payments));
    EXPECT_EQ(office.Scalar("SELECT CustName FROM CustMast WHERE CustID='HQ0001'"),
              hand.chinese ? "陈大文 \"Ah 1\" O'Hara" : "Ren\xC3\xA9 1, O'Hara");
    EXPECT_EQ(ScalarQuery(*office.session.LogsConn,
                          "SELECT COUNT(*) FROM TransLogs WHERE UserID='AMY' AND Type='Create'"),
              std::to_string(books.customers + books.loans + books.payments));
    const std::string moved = office.Books();
    ExpectAll(MoveIn(office.session, job, true, AlwaysOn), books, &MoveCounts::known);
    EXPECT_EQ(office.Books(), moved);
  }
}

// Wherever a run is cut, the next one brings what is missing and nothing twice.
TEST(MoveIn, ACutRunIsGoneOnWith) {
  NewOffice whole;
  const OldBooks books(whole.folder.path(), 25, 7);
  MoveIn(whole.session, books.Job(), true, AlwaysOn);
  std::mt19937 random(11);
  for (int round = 0; round < 8; ++round) {
    NewOffice office;
    // The office's own file is left to the child that is killed.
    office.session.MainConn.reset();
    const pid_t child = fork();
    if (child == 0) {
      office.Open();
      MoveIn(office.session, books.Job(), true, AlwaysOn);
      _exit(0);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % 500));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    office.Open();
    EXPECT_EQ(office.Faults(), "") << "at any moment the ledger is sound";
    office.FailAt(static_cast<int>(random() % 4000), Office::Failure::passes, [&] {
      try {
        MoveIn(office.session, books.Job(), true, AlwaysOn);
      } catch (const SqlError&) {
      }
    });
    EXPECT_EQ(office.Faults(), "");
    auto steps = static_cast<int>(random() % 40);
    const auto stops = [&steps](const MoveProgress&) { return --steps >= 0; };
    const bool complete = MoveIn(office.session, books.Job(), true, stops).complete;
    EXPECT_EQ(complete, steps >= 0);
    EXPECT_EQ(office.Faults(), "");
    EXPECT_TRUE(MoveIn(office.session, books.Job(), true, AlwaysOn).complete);
    // What the killed one had of the customers on this PC is gone.
    const std::string left = fmt::format("kaunter-movein-{}-", child);
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(left));
    }
    EXPECT_EQ(office.Books(), whole.Books());
  }
}

// Both begin at once: one of them is told at the first record that the other has taken.
TEST(MoveIn, TwoDesktopsBringTheSameFilesOnce) {
  NewOffice whole;
  const OldBooks books(whole.folder.path(), 25, 7);
  MoveIn(whole.session, books.Job(), true, AlwaysOn);
  NewOffice office;
  office.session.MainConn.reset();
  const auto move = [&] {
    office.Open();
    try {
      MoveIn(office.session, books.Job(), true, AlwaysOn);
      return 0;
    } catch (const std::runtime_error& refused) {
      return std::string_view(refused.what()).starts_with("Another desktop") ? 1 : 2;
    }
  };
  const pid_t other = fork();
  if (other == 0) _exit(move());
  const int mine = move();
  int status = 0;
  waitpid(other, &status, 0);
  EXPECT_LE(mine + WEXITSTATUS(status), 1);
  EXPECT_EQ(office.Faults(), "");
  EXPECT_EQ(office.Books(), whole.Books());
}

// A file that stands in the folder of the office.
MoveInSource SourceOf(const NewOffice& office, MoveKind kind, const std::string& text) {
  const std::string path = office.folder.File(std::string(MoveKindName(kind)) + ".csv");
  std::ofstream(path, std::ios::binary) << text;
  return {path, GuessMapping(kind, LookAt(path, Encoding::automatic, 0, 0).headings)};
}

// Ali's loans, each of 1,200 at 12 per cent over twelve months, and their payments.
MoveInJob JobOf(const NewOffice& office, const std::string& loans, const std::string& payments) {
  MoveInJob job;
  job.company = "HQ";
  job.sources[0] =
      SourceOf(office, MoveKind::customers, "Code,Name,NRIC,Race\nA1,Ali,800101-10-5001,CHINESE\n");
  std::string lines = "Loan No,Code,Loan Date,Amount,Rate,Term,Status\n";
  std::istringstream names(loans);
  for (std::string name, status; names >> name >> status;) {
    lines += fmt::format("{},A1,01/01/2023,1200,12,12,{}\n", name, status);
  }
  job.sources[1] = SourceOf(office, MoveKind::loans, lines);
  job.sources[2] = SourceOf(office, MoveKind::payments, "Loan No,Receipt,Date,Amount\n" + payments);
  return job;
}

TEST(MoveIn, EachRefusedLineIsListedWithItsReason) {
  NewOffice office;
  office.Run(
      "INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC,CustStatus) VALUES "
      "('HQ0900','HQ','Lim','700101-10-5001','BLACKLIST');"
      "INSERT INTO NumberMast VALUES ('HQ0900','000','000');"
      "INSERT INTO PaymentMast (PayID,CompCode,ReceiptNo) VALUES ('X','HQ','OR9')");
  MoveInJob job;
  job.company = "HQ";
  job.sources[0] = SourceOf(office, MoveKind::customers,
                            "Code,Name,NRIC,Old IC,Race,Gender,Income,DOB\n"
                            "A1,Ali,800101-10-5001,,CHINESE,,,\n"            // 2: sex by the number
                            "A2,,800101-10-5003,,CHINESE,,,\n"               // 3: no name
                            "A3,Abu,801301-10-5001,,CHINESE,,,\n"            // 4: month 13
                            "A4,Ah,A1234567,,CHINESE,F,,\n"                  // 5: an old number
                            "A5,Chong,10101105001,,CHINESE,,,\n"             // 6: a lost nought
                            "A6,Devi,8.0010E+11,,INDIAN,X,abc,31/02/1980\n"  // 7: five faults
                            "A1,Ali,800101-10-5001,,CHINESE,,,\n"            // 8: told again
                            "A1,Alibaba,,,CHINESE,,,\n"                      // 9: told otherwise
                            "\n"
                            ",Nobody,,,CHINESE,M,,\n"                     // 11: no code
                            "A7,Lim,700101-10-5001,,CHINESE,,,\n"         // 12: another's number
                            "A8,Eng,810101-10-5001,,CHINESE,,,,,extra\n"  // 13: a cell too many
                            "A9,Foo\x1F\x1E ,820101-10-5001,,CHINESE,,,\n");
  job.sources[1] =
      SourceOf(office, MoveKind::loans,
               "Loan No,Code,Loan Date,Amount,Rate,Term,Balance,Loan Type,First Due,Scheme\n"
               "L1,A1,01/01/2023,1200,12,12,1144.50,,,\n"
               "L2,A2,01/01/2023,1000,12,12,,,,\n"             // 3: its customer stays behind
               "L3,A4,,1000,12,12,,,,\n"                       // 4: no date, and so no due date
               "L4,A4,01/01/2023,1000,12,0,,,,\n"              // 5: no term
               "L5,A4,01/01/2023,\"1,00\",12,6,,,,\n"          // 6: no amount
               "L1,A4,01/01/2023,1000,12,6,,,,\n"              // 7: L1 again
               "L6,700101-10-5001,01/01/2023,1000,12,6,,,,\n"  // 8: by his number
               "L7,Z9,01/01/2023,1000,12,6,,,,\n"              // 9: nobody
               "L8,,01/01/2023,1000,12,6,,,,\n"                // 10: of nobody
               "L9,A9,01/01/2023,1000,12,6,,QUARTER,,\n"       // 11: no way to repay
               "L10,A9,01/01/2023,1000,12,6,999,,,Flexi Loan\n");
  job.sources[2] = SourceOf(office, MoveKind::payments,
                            "Loan No,Receipt,Date,Amount,Late,Extra\n"
                            "L1,OR1,05/02/2023,100,,\n"
                            "L1,OR2,05/03/2023,100,,\n"
                            "L6,OR3,05/02/2023,\"1,200.00\",,\n"  // 4: above the balance
                            "L6,OR4,05/03/2023,10,,\n"            // waits with the loan
                            "L10,OR1,05/02/2023,100,,\n"          // 6: the receipt of line 2
                            "L10,OR9,05/02/2023,100,,\n"          // 7: a receipt of the office
                            "L10,OR5,31/12/2022,100,,\n"          // 8: before the loan
                            "L10,OR6,05/02/2023,(50.00),,\n"      // 9: less than nothing
                            "L10,OR7,05/02/2023,,,\n"             // 10: nothing
                            "L10,,,50,,\n"                        // 11: no day
                            "L99,OR8,05/02/2023,50,,\n"           // 12: no loan
                            ",OR10,05/02/2023,50,,\n"             // 13: of no loan
                            "L2,OR11,05/02/2023,50,,\n");
  const MoveReport report = MoveIn(office.session, job, false, AlwaysOn);
  std::vector<std::string> told;
  for (const LineTrouble& t : report.troubles) {
    told.push_back(
        fmt::format("{} {} {}{}", MoveKindName(t.kind), t.line, t.field, t.refused ? "" : " note"));
  }
  EXPECT_THAT(
      told,
      ::testing::UnorderedElementsAre(
          "customers 3 CustName", "customers 4 CustNIC", "customers 5 CustNIC note",
          "customers 6 CustNIC note", "customers 7 CustNIC", "customers 7 CustRace",
          "customers 7 CustGender", "customers 7 CustCompIncome", "customers 7 DOB",
          "customers 9 TheirCode note", "customers 11 TheirCode", "customers 12 CustNIC note",
          "customers 13 ", "loans 2 Balance note", "loans 3 Customer", "loans 4 NextDueDate",
          "loans 5 LoanTerm", "loans 6 LoanAmt", "loans 7 OldLoanCode", "loans 8 ", "loans 9 ",
          "loans 10 Customer", "loans 11 LoanTypeID", "loans 12 ", "payments 4 PayAmt",
          "payments 6 ReceiptNo", "payments 7 ReceiptNo", "payments 8 PayDate", "payments 9 TotPay",
          "payments 10 TotPay", "payments 11 PayDate", "payments 12 ", "payments 13 Loan"))
      << Told(report);
  const auto counted = [&](MoveKind kind) {
    const MoveCounts& c = report.Of(kind);
    return fmt::format("{} lines: {} known, {} refused, {} waiting, {} good", c.lines, c.known,
                       c.refused, c.waiting, c.good);
  };
  EXPECT_EQ(counted(MoveKind::customers), "12 lines: 2 known, 5 refused, 0 waiting, 5 good");
  EXPECT_EQ(counted(MoveKind::loans), "11 lines: 0 known, 7 refused, 3 waiting, 1 good");
  EXPECT_EQ(counted(MoveKind::payments), "13 lines: 0 known, 9 refused, 2 waiting, 2 good");
  // What is good moves; what was mended comes with the next run.
  MoveIn(office.session, job, true, AlwaysOn);
  EXPECT_EQ(office.Faults(), "");
  EXPECT_EQ(office.Scalar("SELECT CustGender FROM CustMast WHERE CustName='Ali'"), "MALE");
  office.session.settings.CapLock = true;
  job.sources[2] = SourceOf(office, MoveKind::payments,
                            "Loan No,Receipt,Date,Amount\nL1,OR2,05/03/2023,100\n"
                            "L1,OR12,05/04/2023,112\nL6,OR3,05/02/2023,200\n");
  const MoveReport again = MoveIn(office.session, job, true, AlwaysOn);
  EXPECT_EQ(again.Of(MoveKind::payments).known, 1);
  EXPECT_EQ(again.Of(MoveKind::payments).good, 2);
  EXPECT_EQ(again.Of(MoveKind::loans).good, 2);
  EXPECT_EQ(office.Faults(), "");
  EXPECT_EQ(office.Lines("SELECT OldLoanCode,LoanBal FROM LoanMast ORDER BY OldLoanCode"),
            "L1 1032 \nL10 1000 \nL6 860 \n");
  // A customer who was deleted comes again with all; a payment that was deleted stays deleted.
  const std::string ali = office.Scalar("SELECT CustID FROM CustMast WHERE CustName='Ali'");
  DeleteCustomer(office.session.Main(), ali);
  job.sources[2] = SourceOf(office, MoveKind::payments,
                            "Loan No,Receipt,Date,Amount\nL1,OR1,05/02/2023,100\n"
                            "L6,OR3,05/02/2023,200\n");
  office.Run("DELETE FROM PaymentMast WHERE ReceiptNo='OR3'");
  const MoveReport third = MoveIn(office.session, job, true, AlwaysOn);
  EXPECT_EQ(third.Of(MoveKind::customers).good, 1);
  EXPECT_EQ(third.Of(MoveKind::payments).good, 1);
  EXPECT_EQ(office.Scalar("SELECT CustName FROM CustMast WHERE CustNIC='800101-10-5001'"), "ALI");
  EXPECT_EQ(office.Lines("SELECT LoanBal FROM LoanMast WHERE OldLoanCode='L1'"), "1244 \n");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast WHERE ReceiptNo='OR3'"), "0");
}

// Closed in the old books, with a payment and without one.
TEST(MoveIn, AClosedLoanOwesNothingAndKeepsItsClosingBalance) {
  NewOffice office;
  const MoveInJob job = JobOf(office, "L1 CLOSED L2 CLOSED L3 ACTIVE", "L2,OR1,05/02/2023,344\n");
  EXPECT_EQ(MoveIn(office.session, job, true, AlwaysOn).Of(MoveKind::loans).good, 3);
  EXPECT_EQ(office.Lines("SELECT OldLoanCode,LoanBal,CloseBal FROM LoanMast ORDER BY OldLoanCode"),
            "L1 0 1344 \nL2 0 1000 \nL3 1344 0 \n");
  EXPECT_EQ(office.Scalar("SELECT TotLoanBal FROM CustMast WHERE CustName='Ali'"), "1344");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SchMast WHERE DueDate is null"), "0");
  EXPECT_EQ(office.Faults(), "");
}

// A payment at the counter between the measuring of a loan's payments and their storing.
TEST(MoveIn, APaymentAtTheCounterMeanwhileStopsThoseOfTheLoan) {
  NewOffice office;
  MoveIn(office.session, JobOf(office, "L1 ACTIVE", ""), true, AlwaysOn);
  const MoveInJob job = JobOf(office, "L1 ACTIVE", "L1,OR1,05/02/2023,1300\n");
  const auto counter =
      OpenSqlite("Counter", office.folder.File("office.db"), false, office.session.clock);
  bool paid = false;
  office.session.Main().SetFaultHook([&](std::string_view sql) {
    if (paid || sql != "BEGIN TRANSACTION") return;
    paid = true;
    counter->Execute(
        "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt,InstalAmt,PaymentStatus) "
        "SELECT LoanID+'-001',LoanID,'HQ','2023-02-01',100,100,'ACTIVE' FROM LoanMast");
  });
  EXPECT_THROW(MoveIn(office.session, job, true, AlwaysOn), std::runtime_error);
  office.session.Main().SetFaultHook({});
  EXPECT_TRUE(paid);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM PaymentMast"), "1");
  EXPECT_EQ(MoveIn(office.session, job, true, AlwaysOn).Of(MoveKind::payments).refused, 1);
}

// Numbers of the office's own form, beside lines without one: what is drawn is none of theirs.
TEST(MoveIn, ADrawnReceiptIsNoneThatALaterLineBringsAlong) {
  NewOffice office;
  MoveInJob job;
  job.company = "HQ";
  job.sources[0] = SourceOf(office, MoveKind::customers,
                            "Code,Name,NRIC,Race\nA1,Ali,800101-10-5001,CHINESE\n"
                            "A2,Abu,810101-10-5001,CHINESE\n");
  job.sources[1] = SourceOf(office, MoveKind::loans,
                            "Loan No,Code,Loan Date,Amount,Rate,Term\n"
                            "L1,A1,01/01/2023,1200,12,12\nL2,A2,01/01/2023,1200,12,12\n");
  job.sources[2] = SourceOf(office, MoveKind::payments,
                            "Loan No,Receipt,Date,Amount\n"
                            "L1,,05/02/2023,10\nL1,202302-0001,06/02/2023,11\n"
                            "L2,202302-0002,07/02/2023,12\nL2,,08/02/2023,13\n");
  EXPECT_EQ(MoveIn(office.session, job, false, AlwaysOn).Of(MoveKind::payments).good, 4);
  EXPECT_EQ(MoveIn(office.session, job, true, AlwaysOn).Of(MoveKind::payments).good, 4);
  EXPECT_EQ(office.Lines("SELECT PayAmt,ReceiptNo FROM PaymentMast ORDER BY PayAmt"),
            "10 202302-0003 \n11 202302-0001 \n12 202302-0002 \n13 202302-0004 \n");
}

// Not with the others: minutes. Tells the seconds of a dry run, a move and a check of the ledger.
TEST(MoveIn, DISABLED_Growth) {
  for (const int loans : {2000, 20000}) {
    NewOffice office;
    const OldBooks books(office.folder.path(), loans, 3);
    auto seconds = [begun = std::clock()]() mutable {  // of this process
      const auto now = std::clock();
      return static_cast<double>(now - std::exchange(begun, now)) / CLOCKS_PER_SEC;
    };
    const MoveReport dry = MoveIn(office.session, books.Job(), false, AlwaysOn);
    const double dry_seconds = seconds();
    ExpectAll(MoveIn(office.session, books.Job(), true, AlwaysOn), books, &MoveCounts::good);
    const double moved_seconds = seconds();
    EXPECT_EQ(office.Faults(), "");
    fmt::print("{} loans, {} payments: dry run {:.1f} s, move {:.1f} s, check {:.1f} s, {} told\n",
               books.loans, books.payments, dry_seconds, moved_seconds, seconds(),
               dry.troubles.size());
  }
}

}  // namespace
}  // namespace kaunter
