// The direct-debit file against a reader of its own, which knows nothing but the bank's table of
// fields; and the two screens.
#include "bank/direct_debit.h"

#include <gmock/gmock.h>

#include <fstream>
#include <random>
#include <sstream>

#include "bank/is_setup_frm.h"
#include "bank/si_process_frm.h"
#include "tests/loans/loan_office.h"

namespace kaunter {
namespace {

using ::testing::HasSubstr;

// What a bank does with the file: cuts each line by its table, and balances the footer.
struct BankReader {
  struct Part {
    const char* name;
    std::size_t length;
  };
  using Row = std::map<std::string, std::string>;

  static Row Cut(const std::string& line, const std::vector<Part>& table) {
    Row row;
    std::size_t at = 0;
    for (const Part& part : table) {
      row[part.name] = line.substr(at, part.length);
      at += part.length;
    }
    EXPECT_EQ(at, line.size());
    return row;
  }
  static std::string Left(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }

  void Read(const std::string& file) {
    std::vector<std::string> lines;
    std::istringstream stream(file);
    for (std::string line; std::getline(stream, line);) {
      ASSERT_TRUE(line.ends_with('\r'));
      line.pop_back();
      ASSERT_EQ(line.size(), 200u) << line;
      lines.push_back(line);
    }
    ASSERT_TRUE(file.ends_with("\r\n"));
    ASSERT_GE(lines.size(), 2u);
    header = Cut(lines.front(), {{"id", 2},
                                 {"version", 4},
                                 {"sender", 10},
                                 {"receiver", 10},
                                 {"made", 8},
                                 {"what", 20},
                                 {"day", 8},
                                 {"", 138}});
    footer = Cut(lines.back(), {{"id", 2},
                                {"version", 4},
                                {"sender", 10},
                                {"receiver", 10},
                                {"lines", 10},
                                {"sum", 20},
                                {"accounts", 15},
                                {"", 129}});
    long long sum = 0, accounts = 0;
    for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
      Row row = Cut(lines[i], {{"id", 2},
                               {"account", 20},
                               {"amount", 16},
                               {"name", 40},
                               {"transfer", 20},
                               {"hash", 15},
                               {"", 87}});
      const std::string account = Left(row["account"]);
      const long long tail =
          std::stoll(account.substr(account.size() - std::min<std::size_t>(account.size(), 4)));
      EXPECT_EQ(std::stoll(row["hash"]), std::stoll(row["amount"]) + tail);
      sum += std::stoll(row["amount"]);
      accounts += tail;
      rows.push_back(row);
    }
    EXPECT_EQ(std::stoull(footer["lines"]), lines.size());
    EXPECT_EQ(std::stoll(footer["sum"]), sum);
    EXPECT_EQ(std::stoll(footer["accounts"]), accounts);
  }
  Row header, footer;
  std::vector<Row> rows;
};

const DebitSetup kSetup = {"HH", "DD", "FF", "KAUNTER", "PBB", "12345"};
const DateTime kNow{2024, 1, 31, 14, 5, 9};

std::string File(const std::vector<Debit>& debits, const DebitSetup& setup = kSetup) {
  const auto file = DebitFile(setup, debits, kNow, {2024, 2, 5});
  if (const auto* why = std::get_if<Caption>(&file)) return why->english;
  return std::get<std::string>(file);
}

TEST(DirectDebitFile, IsWhatTheBanksReaderTakes) {
  std::mt19937 random(7);
  const auto up_to = [&](std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  };
  for (int time = 0; time < 300; ++time) {
    std::vector<Debit> debits;
    std::vector<long long> sen;
    for (std::size_t i = up_to(12); i > 0; --i) {
      std::string account = up_to(3) == 0 ? "" : "07-";
      for (std::size_t digits = 1 + up_to(9); digits > 0; --digits) {
        account += static_cast<char>('0' + up_to(9));
      }
      if (account.starts_with("07-") && account.size() < 7)
        account = "123456789012345" + account.substr(3);
      sen.push_back(static_cast<long long>(1 + up_to(99999999)));
      debits.push_back({"L", std::string(up_to(60), 'N') + "X", account,
                        std::string(up_to(20), 'T'),
                        ShowMoney(Money::FromTenThousandths(sen.back() * 100))});
    }
    BankReader bank;
    bank.Read(File(debits));
    ASSERT_EQ(bank.rows.size(), debits.size());
    for (std::size_t i = 0; i < debits.size(); ++i) {
      BankReader::Row row = bank.rows[i];
      EXPECT_EQ(row["id"], "DD");
      EXPECT_EQ(BankReader::Left(row["account"]), debits[i].BankAccNo);
      EXPECT_EQ(std::stoll(row["amount"]), sen[i]);
      EXPECT_EQ(BankReader::Left(row["name"]), debits[i].CustName.substr(0, 40));
      EXPECT_EQ(BankReader::Left(row["transfer"]), debits[i].BankTransferName);
    }
    ASSERT_FALSE(::testing::Test::HasFailure());
  }
}

TEST(DirectDebitFile, HeaderAndFooterOfAnEmptyRunToTheByte) {
  EXPECT_EQ(File({}), "HH0001KAUNTER   PBB       2024013112345DEBIT          20240205" +
                          std::string(138, ' ') + "\r\nFF0001KAUNTER   PBB       0000000002" +
                          std::string(35, '0') + std::string(129, ' ') + "\r\n");
  EXPECT_EQ(DebitFileName(kSetup, kNow), "12345PBB31012401.DIF");
}

TEST(DirectDebitFile, WhatDoesNotFitNamesItsLineAndField) {
  const Debit good{"L1", "Tan", "1234", "T", "1.00"};
  const auto with = [&](auto member, const char* text) {
    Debit debit = good;
    debit.LoanID = "L2";
    debit.*member = text;
    return File({good, debit});
  };
  const struct {
    std::string said;
    std::vector<const char*> parts;
  } cases[] = {
      {with(&Debit::BankAccNo, "123456789012345678901"), {"Line 3 (L2): BankAccNo", "21", "20"}},
      {with(&Debit::BankAccNo, ""), {"Line 3 (L2): BankAccNo is blank"}},
      {with(&Debit::BankAccNo, "12345678AB"), {"Line 3 (L2)", "does not end in a number"}},
      {with(&Debit::BankAccNo, "1234-5.6"), {"Line 3 (L2)", "does not end in a number"}},
      {with(&Debit::BankTransferName, "a name of more than 20 signs"), {"BankTransferName", "28"}},
      {with(&Debit::CustName, "陈亚九"), {"Line 3 (L2): CustName", "letter"}},
      {with(&Debit::CustName, "Tan\tAh Kow"), {"Line 3 (L2): CustName", "letter"}},
      {with(&Debit::Amt, "0.00"), {"Line 3 (L2): Amt"}},
      {File({}, {"H", "D", "F", "elevensigns", "B", "P"}), {"Line 1: DD-03", "11", "10"}},
      {File({}, {"H", "D", "F", "S", "R", "1234567890123456"}), {"Line 1: DD-05", "21", "20"}},
  };
  for (const auto& c : cases) {
    for (const char* part : c.parts) EXPECT_THAT(c.said, HasSubstr(part));
  }
}

class DirectDebitScreens : public ::testing::Test, protected LoanOffice {
 protected:
  struct FolderDesk : AgreeingDesk {
    std::string PickFolder(std::string_view, std::string_view) override { return folder; }
    void Open(std::string_view target) override { opened = target; }
    std::string folder, opened;
  };

  DirectDebitScreens() {
    MakeLoan("HQ0001-001", LoanScheme::kPersonal, "1200", "12");
    office.Run(
        "UPDATE CustMast SET BankAccNo=' 1234567890 ',BankTransferName='TAN AK';UPDATE SchMast SET "
        "PayableAmt=500 WHERE SchID=1;UPDATE SchMast SET PayableAmt=300 WHERE SchID=2");
    away.folder = office.folder.path();
  }
  void SaveSetup() {
    ISSetupfrm setup(office.session, away);
    setup.Load();
    TextBox* const boxes[] = {&setup.HeaderID, &setup.DetailID,   &setup.FooterID,
                              &setup.SenderID, &setup.ReceiverID, &setup.PayeeCode};
    for (std::size_t i = 0; i < kSetup.size(); ++i) {
      setup.SaveCmd.Click();
      EXPECT_THAT(Last(), HasSubstr(" is required, please check !"));
      Put(*boxes[i], kSetup[i]);
    }
    setup.SaveCmd.Click();
    EXPECT_EQ(Last(), "Direct Debit Setting saved");
  }
  // Without the title.
  std::string Last() { return away.messages.back().substr(away.messages.back().find(": ") + 2); }
  std::string Path() { return office.folder.File("12345PBB31012401.DIF"); }
  bool There(const std::string& path) { return std::filesystem::exists(path); }

  FolderDesk away;
};

TEST_F(DirectDebitScreens, TheLargestOpenInstalmentOfEachLoanGoesIntoTheFile) {
  SIProcessfrm screen(office.session, away);
  screen.Load();
  screen.SaveCmd.Click();
  EXPECT_EQ(Last(), "Process Date is require");
  screen.SSCommand1.Click();
  EXPECT_THAT(Last(), HasSubstr("list first"));
  Put(screen.ToDate, "29-02-2024");
  screen.SaveCmd.Click();
  EXPECT_EQ(Last(), "Process completed");
  ASSERT_EQ(screen.vsd.RowCount(), 1);
  EXPECT_EQ(screen.vsd.Row(0),
            (std::vector<std::string>{"HQ0001-001", "29-02-2024", "Tan 'Ah' Kow", "1234567890",
                                      "TAN AK", "", "", "500.00"}));
  screen.SSCommand1.Click();
  EXPECT_EQ(Last(), "Debit Date is required");
  Put(screen.PDate, "05-02-2024");
  screen.SSCommand1.Click();
  EXPECT_EQ(Last(), "Fail to get Direct Debit setting record");
  SaveSetup();
  screen.CmdCheckAll.Click();
  screen.SSCommand1.Click();
  EXPECT_EQ(Last(), "Output file at " + Path());
  EXPECT_EQ(away.opened, office.folder.path());
  std::stringstream bytes;
  bytes << std::ifstream(Path(), std::ios::binary).rdbuf();
  BankReader bank;
  bank.Read(bytes.str());
  ASSERT_EQ(bank.rows.size(), 1u);
  EXPECT_EQ(bank.rows[0]["amount"], "0000000000050000");
  EXPECT_EQ(bank.header["day"], "20240205");
}

TEST_F(DirectDebitScreens, AFailedExportLeavesWhatWasThereBefore) {
  SaveSetup();
  SIProcessfrm screen(office.session, away);
  screen.Load();
  Put(screen.ToDate, "31-01-2024");
  Put(screen.PDate, "05-02-2024");
  office.Run("UPDATE CustMast SET BankAccNo='12345678AB'");
  screen.SaveCmd.Click();
  EXPECT_EQ(screen.vsd.Tone(0), RowTone::warn);
  screen.CmdCheckAll.Click();
  EXPECT_FALSE(screen.vsd.Ticked(0));
  screen.vsd.Tick(0, true);
  screen.SSCommand1.Click();
  EXPECT_THAT(Last(), HasSubstr("an error occur during process direc debit\nLine 2 (HQ0001-001)"));
  EXPECT_FALSE(There(Path()));
  std::ofstream(Path()) << "yesterday's";
  away.folder += "/no such folder";
  screen.CmdUncheckAll.Click();
  screen.SSCommand1.Click();
  EXPECT_THAT(Last(), HasSubstr("cannot be written"));
  EXPECT_EQ(std::filesystem::file_size(Path()), 11u);
}

}  // namespace
}  // namespace kaunter
