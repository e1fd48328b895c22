// The accounting link on a real bridge database.
#include "links/accounting_link.h"

#include <gtest/gtest.h>

#include "core/schema_text.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

class AccountingLink : public ::testing::Test {
 protected:
  AccountingLink() : office(Office::State::patched), session(office.session), desk(office.desk) {
    session.settings.LinkAcc = "1";
    session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
    RunScript(*session.AED, SchemaText("accounting"));
  }

  // All rows of a table, fields parted by "|".
  std::vector<std::string> Rows(const std::string& table) {
    std::vector<std::string> rows;
    const Recordset all = session.AED->Query("SELECT * FROM " + table);
    for (const auto& row : all.rows()) {
      std::string line;
      for (const Value& value : row) line += (line.empty() ? "" : "|") + value.ToText();
      rows.push_back(line);
    }
    return rows;
  }
  using Lines = std::vector<std::string>;

  Office office;
  Session& session;
  SilentDesk& desk;
};

const LinkedParty kParty = {.AccNo = "AB0012",
                            .CompanyName = "O'Brien 陈",
                            .Desc2 = "d2",
                            .IC = "ic",
                            .Address1 = "a1",
                            .Address2 = "a2",
                            .Address3 = "a3",
                            .Address4 = "a4",
                            .Phone1 = "p1",
                            .Phone2 = "p2",
                            .Fax1 = "f1",
                            .EmailAddress = "e"};
const std::string kPartyRow = "AB0012|O'Brien 陈|d2|ic|a1|a2|a3|a4|p1|p2|f1|e";

Money Rm(const char* text) { return Money::FromText(text); }

TEST_F(AccountingLink, EachFieldReachesItsColumnAndASecondSendReplacesTheFirst) {
  for (int round = 1; round <= 2; ++round) {
    EXPECT_TRUE(LinkDebtor(session, desk, kParty));
    EXPECT_TRUE(LinkCreditor(session, desk, kParty));
    for (const auto& note : {&LinkARCN, &LinkAPCN}) {
      EXPECT_TRUE(note(session, desk,
                       {.DocNo = "D1",
                        .DocDate = "05-02-2024",
                        .Party = "P",
                        .Description = "text",
                        .AccNo = "500",
                        .ProjNo = "J",
                        .Amount = Rm("-20.05")}));
    }
    for (const auto& payment : {&LinkARPayment, &LinkAPPayment}) {
      EXPECT_TRUE(payment(session, desk,
                          {.DocNo = "D1",
                           .DocDate = "05-02-2024",
                           .Party = "P",
                           .Description = "text",
                           .PaymentMethod = "CASH",
                           .ChequeNo = "Q7",
                           .PaymentAmount = Rm("1,983.33")}));
    }
  }
  EXPECT_EQ(Rows("TM_Debtor"), Lines{kPartyRow});
  EXPECT_EQ(Rows("TM_Creditor"), Lines{kPartyRow});
  EXPECT_EQ(Rows("TM_ARCN"), Lines{"D1|2024-02-05|P|text|500|J|-20.05"});
  EXPECT_EQ(Rows("TM_APCN"), Lines{"D1|2024-02-05|P|text|500|J|-20.05"});
  EXPECT_EQ(Rows("TM_ARPayment"), Lines{"D1|2024-02-05|P|text|CASH|Q7|1983.33"});
  EXPECT_EQ(Rows("TM_APPayment"), Lines{"D1|2024-02-05|P|text|CASH|Q7|1983.33"});
  EXPECT_TRUE(desk.messages.empty());
}

TEST_F(AccountingLink, AnInvoiceSentTwiceHasOneHeadAndFreshLines) {
  const struct {
    bool (*head)(Session&, Desk&, const LinkedInvoice&);
    bool (*line)(Session&, Desk&, const LinkedInvoiceLine&);
    std::string table;
  } sides[] = {{&LinkARInvoice, &LinkARInvoiceLine, "TM_ARInvoice"},
               {&LinkAPInvoice, &LinkAPInvoiceLine, "TM_APInvoice"}};
  for (const auto& side : sides) {
    const auto send = [&](const char* doc, const char* total, const char* fee) {
      EXPECT_TRUE(
          side.head(session, desk,
                    {.DocNo = doc, .DocDate = "31-01-2024", .Party = "P", .Total = Rm(total)}));
      EXPECT_TRUE(
          side.line(session, desk,
                    {.DocNo = doc, .AccountNo = "500", .Description = "Loan", .Amount = Rm("0")}));
      EXPECT_TRUE(
          side.line(session, desk,
                    {.DocNo = doc, .AccountNo = "501", .Description = "Fee", .Amount = Rm(fee)}));
    };
    send("OTHER", "1", "1");
    send("L1", "350", "350");
    send("L1", "300", "300");
    EXPECT_EQ(Rows(side.table), (Lines{"OTHER|2024-01-31|P|1", "L1|2024-01-31|P|300"}));
    EXPECT_EQ(Rows(side.table + "DTL"),
              (Lines{"OTHER|500|Loan|0", "OTHER|501|Fee|1", "L1|500|Loan|0", "L1|501|Fee|300"}));
  }
}

TEST_F(AccountingLink, ADescriptionIsCutAtFiftyCharactersNotBytes) {
  std::string long_name;
  for (int i = 0; i < 60; ++i) long_name += "陈";
  LinkARInvoiceLine(session, desk,
                    {.DocNo = "1", .AccountNo = "", .Description = long_name, .Amount = {}});
  LinkARInvoiceLine(
      session, desk,
      {.DocNo = "2", .AccountNo = "", .Description = std::string(50, 'x') + "y", .Amount = {}});
  LinkARInvoiceLine(
      session, desk,
      {.DocNo = "3", .AccountNo = "", .Description = std::string(49, 'x') + "'", .Amount = {}});
  EXPECT_EQ(Rows("TM_ARInvoiceDTL"),
            (Lines{"1||" + long_name.substr(0, 150) + "|0", "2||" + std::string(50, 'x') + "|0",
                   "3||" + std::string(49, 'x') + "'|0"}));
}

TEST_F(AccountingLink, WithTheLinkOffNoStatementReachesTheBridge) {
  session.AED->SetFaultHook([](std::string_view sql) { FAIL() << sql; });
  for (const char* off : {"", "0"}) {
    session.settings.LinkAcc = off;
    EXPECT_TRUE(LinkDebtor(session, desk, kParty));
    EXPECT_TRUE(LinkARInvoiceLine(session, desk, {}));
  }
  EXPECT_TRUE(desk.messages.empty());
}

// The bridge keeps what it had, and the business's own transaction is none of the link's.
TEST_F(AccountingLink, AFailureIsToldUnderItsTitleAndUndoesNothingElse) {
  ASSERT_TRUE(LinkDebtor(session, desk, kParty));
  office.Run("INSERT INTO CustMast (CustID) VALUES ('AB0012')");
  LinkedParty changed = kParty;
  changed.CompanyName = "New name";
  for (const char* failing : {"BEGIN", "DELETE", "INSERT", "COMMIT"}) {
    desk.messages.clear();
    session.Main().BeginTrans();
    office.Run("UPDATE CustMast SET CustName='kept' WHERE CustID='AB0012'");
    session.AED->SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with(failing)) throw SqlError(1105, "the bridge is full");
    });
    EXPECT_FALSE(LinkDebtor(session, desk, changed)) << failing;
    session.AED->SetFaultHook(nullptr);
    EXPECT_TRUE(session.Main().InTransaction()) << failing;
    session.Main().CommitTrans();
    EXPECT_EQ(desk.messages,
              Lines{"Create / Edit Debtor: an error occur on linkage to accounting "
                    "system\nthe bridge is full\nWhat was saved here stays saved, the "
                    "accounting system lacks it. Mend the cause, then save it once "
                    "more."})
        << failing;
    EXPECT_EQ(Rows("TM_Debtor"), Lines{kPartyRow}) << failing;
    EXPECT_NE(office.Log().back().find("Create / Edit Debtor AB0012 - error Rollback 1105"),
              std::string::npos);
  }
  EXPECT_TRUE(LinkDebtor(session, desk, changed));
  EXPECT_NE(Rows("TM_Debtor")[0].find("New name"), std::string::npos);
}

TEST_F(AccountingLink, EveryOperationHasItsTitle) {
  session.AED.reset();  // the bridge was never reached
  const LinkedInvoice invoice;
  const LinkedInvoiceLine line;
  const LinkedCreditNote note;
  const LinkedPayment payment;
  EXPECT_FALSE(LinkARInvoice(session, desk, invoice));
  EXPECT_FALSE(LinkARInvoiceLine(session, desk, line));
  EXPECT_FALSE(LinkARCN(session, desk, note));
  EXPECT_FALSE(LinkARPayment(session, desk, payment));
  EXPECT_FALSE(LinkCreditor(session, desk, kParty));
  EXPECT_FALSE(LinkAPInvoice(session, desk, invoice));
  EXPECT_FALSE(LinkAPInvoiceLine(session, desk, line));
  EXPECT_FALSE(LinkAPCN(session, desk, note));
  EXPECT_FALSE(LinkAPPayment(session, desk, payment));
  Lines titles;
  for (const std::string& message : desk.messages)
    titles.push_back(message.substr(0, message.find(':')));
  EXPECT_EQ(titles, (Lines{"Debtor Invoice", "Debtor Invoice", "Debtor Credit Note",
                           "Debtor Payment", "Creditor Profile", "Creditor Invoice",
                           "Creditor Invoice Detail", "Debtor Credit Note", "Debtor Payment"}));
}

TEST_F(AccountingLink, AccountsAreCompleteWhenNoneOfTheKindsIsBlank) {
  Connection& main = session.Main();
  EXPECT_FALSE(LinkAccSetupDone(main, {"HP", "TL"}));
  office.Run("UPDATE LinkAccMast SET LinkAccCode='500-1' WHERE LinkID='HP'");
  EXPECT_FALSE(LinkAccSetupDone(main, {"HP", "TL"}));
  EXPECT_TRUE(LinkAccSetupDone(main, {"HP"}));
  office.Run("UPDATE LinkAccMast SET LinkAccCode='500-2' WHERE LinkID='TL'");
  EXPECT_TRUE(LinkAccSetupDone(main, {"HP", "TL"}));
  EXPECT_EQ(LinkAccount(main, "TL"), "500-2");
  EXPECT_EQ(LinkAccount(main, "PD"), "");
  EXPECT_EQ(LinkAccount(main, "nothing"), "");
}

}  // namespace
}  // namespace kaunter
