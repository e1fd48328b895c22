// The data file of the earlier edition. It is a Jet file of our own making (jet_file.h).
#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "collections/ledger_check.h"
#include "core/sequences.h"
#include "movein/access_db.h"
#include "movein/file_trouble.h"
#include "tests/core/office.h"
#include "tests/movein/jet_file.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

constexpr auto kText = JetType::text;
constexpr auto kMoney = JetType::money;
constexpr auto kDay = JetType::date;

JetCell Sen(std::int64_t sen) { return JetCell::Money(sen * 100); }

// Flat loans of 12 per cent over ten months, some of them paid in part.
class OldEdition {
 public:
  explicit OldEdition(int loans, bool counters = true) : counters_(counters) {
    file.AddTable("Systemast", {{"Param"}, {"Value"}});
    file.AddRow("Systemast", {JetCell::Text("VER"), JetCell::Text("3")});
    file.AddTable("CompMast", {{"CompCode"}, {"CompDesc"}, {"Colour"}});
    file.AddRow("CompMast",
                {JetCell::Text("HQ"), JetCell::Text("Lama Kredit 旧"), JetCell::Text("red")});
    file.AddTable("CashBookCat", {{"CatCode"}, {"CatDesc"}});
    file.AddRow("CashBookCat", {JetCell::Text("RENT"), JetCell::Text("Rent")});
    file.AddTable("CustRaceMast", {{"CustRaceID"}, {"CustRaceDesc"}});
    file.AddRow("CustRaceMast", {JetCell::Text("MELAYU"), JetCell::Text("Another word")});
    file.AddTable("CustMast", {{"CustID"},
                               {"CompCode"},
                               {"CustName"},
                               {"CustNIC"},
                               {"CustAdd1"},
                               {"CustCompIncome", kMoney},
                               {"DOB", kDay}});
    file.AddTable("NumberMast", {{"CustID"}, {"LoanNo"}, {"PaymentNo"}});
    file.AddTable("LoanMast", {{"LoanID"},
                               {"CustID"},
                               {"CompCode"},
                               {"TrxDate", kDay},
                               {"LoanAmt", kMoney},
                               {"InsRate", JetType::real},
                               {"LoanTerm"},
                               {"LoanTerm2"},
                               {"LoanTypeID"},
                               {"FirstPayment", kMoney},
                               {"InstallmentAmt", kMoney},
                               {"LastPayment", kMoney},
                               {"NextDueDate", kDay},
                               {"LoanType"},
                               {"OfferDays", JetType::integer},
                               {"Memo1", JetType::memo}});
    file.AddTable("SchMast", {{"SchID", JetType::integer},
                              {"LoanID"},
                              {"CustID"},
                              {"DueDate", kDay},
                              {"PayableAmt", kMoney},
                              {"CapitalAmt", kMoney},
                              {"InterestAmt", kMoney},
                              {"LoanBal", kMoney}});
    file.AddTable("PaymentMast", {{"PayID"},
                                  {"LoanID"},
                                  {"CustID"},
                                  {"SchID"},
                                  {"CompCode"},
                                  {"PayDate", kDay},
                                  {"PayAmt", kMoney},
                                  {"ReceiptNo"}});
    file.AddTable("PersonalExp",
                  {{"TrxID", JetType::integer}, {"CompCode"}, {"TrxDesc"}, {"DebitAmt", kMoney}});
    file.AddRow("PersonalExp",
                {JetCell::Integer(7), JetCell::Text("HQ"), JetCell::Text("Tea"), Sen(350)});
    Counter("HQ", "0001");
    for (int i = 1; i <= loans; ++i) AddLoan(i);
  }
  void AddCustomer(const std::string& id, const std::string& name) {
    file.AddRow("CustMast",
                {JetCell::Text(id), JetCell::Text("HQ"), JetCell::Text(name),
                 JetCell::Text("800101-10-5001"), JetCell(), JetCell(), JetCell::Day(29221)});
  }

  JetFile file;
  int payments = 0;

 private:
  void Counter(const std::string& key, const std::string& number) {
    file.AddRow("NumberMast", {JetCell::Text(key), JetCell::Text(number), JetCell::Text("0")});
  }
  void AddLoan(int number) {
    const std::string customer = fmt::format("HQ{:05}", number);
    const std::string loan = customer + "-001";
    AddCustomer(customer, fmt::format("O'Hara {} 陈", number));
    if (counters_) Counter(customer, "002");
    Counter(loan, "001");
    const int amount = 1000 + 100 * (number % 20);  // ringgit
    const std::int64_t instalment = amount * 11;    // sen
    file.AddRow("LoanMast",
                {JetCell::Text(loan), JetCell::Text(customer), JetCell::Text("HQ"),
                 JetCell::Day(45000), Sen(amount * 100), JetCell::Real(12), JetCell::Text("10"),
                 JetCell::Text("0"), JetCell::Text("MONTH"), Sen(instalment), Sen(instalment),
                 Sen(instalment), JetCell::Day(45030), JetCell::Text("Unsecured"),
                 JetCell::Integer(3), JetCell::Text("from the old book")});
    for (int row = 1; row <= 10; ++row) {
      file.AddRow("SchMast", {JetCell::Integer(row), JetCell::Text(loan), JetCell::Text(customer),
                              JetCell::Day(45000 + 30 * row), Sen(instalment), Sen(amount * 10),
                              Sen(amount), Sen(10 * instalment)});
    }
    for (int i = 1; i <= number % 6; ++i) {
      ++payments;
      file.AddRow("PaymentMast",
                  {JetCell::Text(fmt::format("{}-{:03}", loan, i)), JetCell::Text(loan),
                   JetCell::Text(customer), JetCell::Text(std::to_string(i)), JetCell::Text("HQ"),
                   JetCell::Day(45000 + 30 * i), Sen(instalment),
                   JetCell::Text(fmt::format("R{:06}", payments))});
    }
  }

  bool counters_;
};

struct TypingDesk : SilentDesk {
  bool Ask(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    return true;
  }
  std::string Input(std::string_view, std::string_view text, std::string_view) override {
    asked.emplace_back(text);
    return typed;
  }
  std::string PickFolder(std::string_view, std::string_view) override { return folder; }
  std::vector<std::string> asked;
  std::string typed;
  std::string folder;
};

// As another desktop finds it: whoever finds the file without a lock takes its log away.
bool IsLockedByThisProcess(const std::string& file) {
  const pid_t other = fork();
  if (other == 0) {
    struct flock any {};
    any.l_type = F_WRLCK;
    _exit(fcntl(open(file.c_str(), O_RDWR), F_GETLK, &any) == 0 && any.l_type != F_UNLCK ? 0 : 1);
  }
  int status = 0;
  waitpid(other, &status, 0);
  return status == 0;
}

class Conversion : public ::testing::Test {
 protected:
  Conversion() : office(Office::State::patched) {
    office.session.CurrentLevel = 4;
    office.session.CurrentCompCode = "HQ";
    office.Run("INSERT INTO UserMast (UserID,CompCode) VALUES ('AMY','HQ'),('BEN','HQ')");
    screen = std::make_unique<AccessDB>(office.session, desk);
    screen->Load();
    desk.folder = office.folder.path();
  }
  void Save(OldEdition& old) { old.file.Save(path); }
  void Give(const std::string& company) {
    screen->CompCode.SetText(company);
    screen->FileName.SetText(path);
  }
  std::string Listed() {
    std::string text;
    for (int row = 0; row < screen->DG.RowCount(); ++row) {
      for (const std::string& cell : screen->DG.Row(row)) text += cell + "|";
      text += "\n";
    }
    return text;
  }
  std::string last() const { return desk.messages.empty() ? "" : desk.messages.back(); }
  std::string Faults(const std::string& company) {
    std::string text;
    for (const LedgerFault& fault :
         CheckCompany(office.session.Main(), company, [](const LedgerProgress&) {
           return true;
         }).faults) {
      text += fmt::format("{} {}: {} for {}\n", fault.LoanID, fault.what.english, fault.stored,
                          fault.should_be);
    }
    return text;
  }

  Office office;
  TypingDesk desk;
  std::unique_ptr<AccessDB> screen;
  std::string path = office.folder.File("old data.mdb");
};

TEST_F(Conversion, ACompanyComesUnderItsNewCodeAndIsRebuilt) {
  OldEdition old(40, /*counters=*/false);
  Save(old);
  Give("LK");
  screen->CmdDry.Click();
  EXPECT_THAT(last(), HasSubstr("Dry run completed"));
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "0");
  screen->SSCommand1.Click();
  EXPECT_THAT(last(), HasSubstr("Process completed")) << Listed();
  EXPECT_EQ(office.Lines("SELECT CompDesc,(SELECT COUNT(*) FROM CustMast WHERE CompCode='LK'),"
                         "(SELECT COUNT(*) FROM LoanMast WHERE CompCode='LK'),"
                         "(SELECT COUNT(*) FROM PaymentMast WHERE CompCode='LK'),"
                         "(SELECT COUNT(*) FROM SchMast),(SELECT COUNT(*) FROM DrawDownMast) FROM "
                         "CompMast WHERE CompCode='LK'"),
            fmt::format("Lama Kredit 旧 40 40 {} 400 40 \n", old.payments));
  EXPECT_EQ(Faults("LK"), "");
  // 1,500.00 at 12 per cent over ten months is 1,650.00 in instalments of 165.00; five are paid.
  EXPECT_EQ(
      office.Lines("SELECT LoanBal,TotPay,PayOutAmt,LoanPurpose,DragLoan,OfferDays,Memo1 FROM "
                   "LoanMast WHERE LoanID='HQ00005-001'"),
      "825 825 1500 FLAT 0 3 from the old book \n");
  EXPECT_EQ(office.Lines("SELECT CustName,TotLoan,TotLoanBal,CustStatus,DOB FROM CustMast WHERE "
                         "CustID='HQ00005'"),
            "O'Hara 5 陈 1500 825 ACTIVE 1980-01-01 \n");
  EXPECT_EQ(office.Scalar("SELECT LoanNo FROM NumberMast WHERE CustID='LK'"), "0001");
  // His next loan, though the file has no counter of his.
  EXPECT_EQ(NextLoanNumber(office.session.Main(), "HQ00005"), "HQ00005-002");
  EXPECT_EQ(office.Lines("SELECT CompCode FROM UserMast ORDER BY UserID"), "LK \nHQ \n");
  EXPECT_EQ(office.Scalar("SELECT CustRaceDesc FROM CustRaceMast WHERE CustRaceID='MELAYU'"),
            "MELAYU");
  EXPECT_EQ(office.Lines("SELECT CompCode,TrxDesc,DebitAmt FROM PersonalExp"), "LK Tea 3.5 \n");
  // The keys are there now: under another code nothing is stored.
  Give("XX");
  screen->SSCommand1.Click();
  EXPECT_THAT(last(), HasSubstr("Keys of the file exist"));
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CompMast WHERE CompCode='XX'"), "0");
  // A code in use is refused before the file is looked at.
  screen->FileName.SetText("no such file");
  screen->CompCode.SetText("LK");
  screen->SSCommand1.Click();
  EXPECT_THAT(last(), HasSubstr("Company Code LK existed, please use other"));
}

TEST_F(Conversion, WhatDoesNotFitIsListedAndLeftOut) {
  OldEdition old(3);
  old.file.AddRow("Systemast", {JetCell::Text("SOD"), JetCell::Text("1")});
  old.AddCustomer("HQ00001", "twice");
  old.AddCustomer("HQ00009", std::string(301, 'x'));
  old.file.AddRow("PaymentMast",
                  {JetCell::Text("P1"), JetCell::Text("gone"), JetCell(), JetCell::Text("one"),
                   JetCell(), JetCell(), JetCell(), JetCell()});
  Save(old);
  Give("LK");
  screen->CmdDry.Click();
  const std::string listed = Listed();
  EXPECT_THAT(listed, HasSubstr("CustMast|4|HQ00001|||the same key stands in an earlier row|"));
  EXPECT_THAT(listed, HasSubstr("CustMast|5|HQ00009|CustName|xxx"));
  EXPECT_THAT(listed, HasSubstr("PaymentMast|7|P1|SchID|one|is no number that fits|"));
  EXPECT_THAT(listed, HasSubstr("RefererMast|||||the file has no such table|"));
  EXPECT_EQ(screen->CountDG.Cell(2, 5), "Colour");
  screen->CmdExport.Click();
  EXPECT_TRUE(std::filesystem::exists(office.folder.File("Conversion-20240131-140509.csv")));
  screen->SSCommand1.Click();
  EXPECT_EQ(desk.asked.back(), "3 rows do not fit and will be left out: see the list. Go on ?");
  EXPECT_EQ(office.Lines("SELECT CustID,CustName FROM CustMast WHERE CustID='HQ00001'"),
            "HQ00001 O'Hara 1 陈 \n");
  EXPECT_EQ(office.Scalar("SELECT LoanPurpose FROM LoanMast WHERE LoanID='HQ00001-001'"),
            "REDUCING");
}

TEST_F(Conversion, ClearDataAsksForTheNumberOfLoansAndKeepsACopy) {
  office.Run(
      "INSERT INTO LoanMast (LoanID,CompCode) VALUES ('A','HQ'),('B','HQ');"
      "INSERT INTO SupplierMast (SuppID) VALUES ('S1');"
      "INSERT INTO MoveInMast (Kind,CompCode,OldCode,NewID) VALUES ('loans','HQ','1',"
      "'HQ00001-001');"
      "INSERT INTO PaymentReader (RefNo,Remarks,PayID) VALUES ('a-001','Payment Done','A-001')");
  OldEdition old(2);
  Save(old);
  Give("HQ");
  office.OpenAudit();
  screen->ClearData.SetChecked(true);
  desk.typed = "3";
  screen->SSCommand1.Click();
  EXPECT_THAT(last(), HasSubstr("nothing was cleared"));
  EXPECT_EQ(screen->title().english, "DB Conversion");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM LoanMast"), "2");
  desk.typed = "2";
  screen->SSCommand1.Click();
  EXPECT_THAT(last(), HasSubstr("Process completed"));
  EXPECT_EQ(office.Lines("SELECT LoanID FROM LoanMast ORDER BY LoanID"),
            "HQ00001-001 \nHQ00002-001 \n");
  for (const char* table : {"SupplierMast", "MoveInMast", "PaymentReader"}) {
    EXPECT_EQ(office.Scalar(std::string("SELECT COUNT(*) FROM ") + table), "0") << table;
  }
  const auto kept = OpenSqlite("Kept", office.folder.File("office.db.before-20240131-140509"),
                               false, office.session.clock);
  EXPECT_EQ(LinesOf(kept->Query("SELECT LoanID FROM LoanMast ORDER BY LoanID")), "A \nB \n");
  EXPECT_EQ(ScalarQuery(*office.session.LogsConn,
                        "SELECT COUNT(*) FROM TransLogs WHERE Module='DB Conversion'"),
            "2");
  EXPECT_TRUE(IsLockedByThisProcess(office.folder.File("office.db")));
  // Expenses alone, once more.
  screen->ExpOpt.SetChecked(true);
  screen->ClearData.SetChecked(false);
  screen->CompCode.SetText("NEW");
  screen->SSCommand1.Click();
  EXPECT_EQ(office.Lines("SELECT CompCode,TrxDesc FROM PersonalExp ORDER BY CompCode"),
            "HQ Tea \nNEW Tea \n");
}

TEST_F(Conversion, AFileThatIsNoneIsTold) {
  OldEdition old(300);
  Save(old);
  const auto size = std::filesystem::file_size(path);
  const auto told = [this] {
    Give("LK");
    screen->SSCommand1.Click();
    return last();
  };
  {
    // A map of pages that lies nowhere: the driver breaks down on it.
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(5 * 4096 + 55);
    file.put('\x94');
  }
  EXPECT_THAT(told(), HasSubstr("is damaged: the driver breaks down on it"));
  Save(old);
  std::filesystem::resize_file(path, size / 2);  // the catalogue was written last
  EXPECT_THAT(told(), HasSubstr("is damaged: its list of tables cannot be read"));
  std::ofstream(path) << "a text";
  EXPECT_THAT(told(), HasSubstr("is no data file of the earlier edition"));
  std::filesystem::remove(path);
  EXPECT_THAT(told(), HasSubstr("cannot be read: is it there"));
  JetFile other;
  other.AddTable("CompMast", {{"CompCode"}});
  other.Save(path);
  EXPECT_THAT(told(), HasSubstr("has no table CustMast"));
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CompMast WHERE CompCode='LK'"), "0");
}

// So that nobody wonders where the file of the demo comes from, nor how to change it.
TEST_F(Conversion, TheDemoFileIsMadeHere) {
  OldEdition old(12);
  Save(old);
  const auto bytes = [](const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  };
  const std::string made = test::BinaryDir() + "/old-edition.mdb";
  std::filesystem::copy_file(path, made, std::filesystem::copy_options::overwrite_existing);
  EXPECT_TRUE(bytes(path) == bytes(test::SourceDir() + "/demo/old-books/old-edition.mdb"))
      << "copy " << made << " to demo/old-books";
}

// Not with the others: minutes.
TEST_F(Conversion, DISABLED_Growth) {
  for (const int loans : {2000, 20000}) {
    OldEdition old(loans);
    Save(old);
    const auto begun = std::clock();
    Give(fmt::format("L{}", loans));
    screen->SSCommand1.Click();
    ASSERT_THAT(last(), HasSubstr("Process completed"));
    fmt::print("{} loans, {} payments, a file of {} KB: {:.1f} s\n", loans, old.payments,
               std::filesystem::file_size(path) / 1024,
               static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC);
    EXPECT_EQ(Faults(fmt::format("L{}", loans)), "");
    office.Run(
        "DELETE FROM CustMast;DELETE FROM LoanMast;DELETE FROM SchMast;DELETE FROM "
        "PaymentMast;DELETE FROM NumberMast");
  }
}

}  // namespace
}  // namespace kaunter
