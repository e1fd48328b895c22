// Short messages: what a text takes, whom it goes to, and a queue that two desktops fill.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "core/schema_text.h"
#include "links/sms_rows.h"
#include "links/sms_templatefrm.h"
#include "links/sms_text.h"
#include "links/smsfrm.h"
#include "screen/cancel_offer.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

std::string Times(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(SmsText, PlacesAndMessages) {
  const struct {
    std::string text;
    bool unicode;
    int places;
    int messages;
  } cases[] = {
      {"", false, 0, 0},
      {"a", false, 1, 1},
      {Times("a", 160), false, 160, 1},
      {Times("a", 161), false, 161, 2},
      {Times("a", 306), false, 306, 2},
      {Times("a", 307), false, 307, 3},
      {"@£Ωàü\r\n", false, 7, 1},
      {"€[]{}^\\~|", false, 18, 1},
      {Times("€", 80), false, 160, 1},
      // A part of 153 places holds 76 letters of two: the 153rd place stays empty.
      {Times("€", 152), false, 304, 2},
      {Times("€", 153), false, 306, 3},
      {Times("a", 152) + "€" + Times("a", 152), false, 306, 3},
      {"é", false, 1, 1},
      {"ê", true, 1, 1},
      {"`", true, 1, 1},
      {Times("陈", 70), true, 70, 1},
      {Times("陈", 71), true, 71, 2},
      {Times("陈", 134), true, 134, 2},
      {Times("陈", 135), true, 135, 3},
      {Times("a", 69) + "陈", true, 70, 1},
      // A picture takes two places and is never parted: 33 in a part of 67.
      {Times("😀", 35), true, 70, 1},
      {Times("😀", 66), true, 132, 2},
      {Times("😀", 67), true, 134, 3},
  };
  for (const auto& c : cases) {
    const SmsSize size = MeasureSms(c.text);
    EXPECT_EQ(size.unicode, c.unicode) << c.text;
    EXPECT_EQ(size.places, c.places) << c.text;
    EXPECT_EQ(size.messages, c.messages) << c.text;
  }
}

TEST(SmsText, PlaceholdersAreReplacedInTheirOrderAndOthersStay) {
  SmsValues values;
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = std::to_string(i);
  std::string all;
  for (const std::string_view one : kSmsPlaceholders) all += std::string(one) + " ";
  EXPECT_EQ(FillSms(all, values), "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 ");
  values[0] = "{Today} {Customer Name}";  // a later one in a value is replaced, the same one is not
  EXPECT_EQ(FillSms("{Customer Name}|{Foo}|{today}", values), "12 {Customer Name}|{Foo}|{today}");
  using Names = std::vector<std::string>;
  EXPECT_EQ(UnknownPlaceholders("{Foo} {Due Amt} {today} {Foo} {{Bar} { open"),
            (Names{"{Foo}", "{today}", "{Bar}"}));
  EXPECT_EQ(UnknownPlaceholders(all), Names{});
}

// A second reckoning of the periods: counted up, day by day or month by month.
TEST(SmsRows, InterestOfAFlexiLoanUpToADay) {
  const auto day = [](const char* text) { return DateTime::FromDisplay(text).value(); };
  const struct {
    const char* type;
    const char* next_due;
    const char* to;
    int periods;
  } cases[] = {
      {"MONTH", "15-01-2024", "14-02-2024", 1},  {"MONTH", "15-01-2024", "15-02-2024", 2},
      {"MONTH", "15-01-2024", "15-01-2025", 13}, {"MONTH", "31-01-2024", "29-02-2024", 1},
      {"MONTH", "29-01-2024", "29-02-2024", 2},  {"MONTH", "15-03-2024", "15-01-2024", 1},
      {"WEEK", "01-01-2024", "07-01-2024", 1},   {"WEEK", "01-01-2024", "08-01-2024", 2},
      {"WEEK", "08-01-2024", "01-01-2024", 0},   {"DAILY", "01-01-2024", "01-01-2024", 1},
      {"DAILY", "01-01-2024", "31-01-2024", 31}, {"14DAYS", "01-01-2024", "14-01-2024", 1},
      {"14DAYS", "01-01-2024", "29-01-2024", 3}, {"WEEK", "", "31-01-2024", 1},
      {"0DAYS", "01-01-2024", "31-01-2024", 1},  {"NIL", "01-01-2024", "31-01-2024", 1},
  };
  for (const auto& c : cases) {
    const DateTime due = *c.next_due == '\0' ? DateTime() : day(c.next_due);
    RunningInterest loan{.LoanTypeID = c.type,
                         .InsRate = Money::FromText("1.5"),
                         .LoanBal = Money::FromText("1000.10"),
                         .DueInt = Money::FromText("2.25"),
                         .next_due = *c.next_due == '\0' ? nullptr : &due};
    // 0.015 of 1,000.10 is 15.0015.
    const Money expected = c.periods * Money::FromText("15.0015") + Money::FromText("2.25");
    EXPECT_EQ(InterestUntil(loan, day(c.to)).ToText(), expected.ToText())
        << c.type << " " << c.next_due << " " << c.to;
  }
}

// --- the screens

struct StopBar : SilentBar, CancelOffer {
  explicit StopBar(int& left) : left_(left) {}
  void OfferCancel(std::string_view) override {}
  bool Cancelled() const override { return left_ >= 0 && left_-- == 0; }
  int& left_;
};

class SmsDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    return true;
  }
  bool AskBeforeLoss(std::string_view, std::string_view text) override {
    asked.emplace_back(text);
    return again;
  }
  std::string PickFile(std::string_view, std::string_view, std::string_view) override {
    return file;
  }
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<StopBar>(stop_after);
  }
  std::string Last() const { return messages.empty() ? "" : messages.back(); }
  std::vector<std::string> asked;
  std::string file;
  bool again = false;
  mutable int stop_after = -1;  // rows, then Stop is pressed
};

class Sms : public ::testing::Test {
 protected:
  Sms() : office(Office::State::patched), session(office.session) {
    session.CurrentLevel = 3;
    session.CurrentCompCode = "HQ";
    session.smsconn = OpenSqlite("smsconn", office.folder.File("sms.db"), true, session.clock);
    RunScript(*session.smsconn, SchemaText("sms"));
    office.Run(
        "UPDATE CompMast SET CompDesc='Head Office',Tel1='03-1',HP1='019-1' WHERE CompCode='HQ'");
    office.Run(
        "INSERT INTO SMSMast (TID,TName,SMSContent) VALUES ('S-0001','Due','{Customer Name} "
        "{LoanID} {Due Amt} {Company Name} {Month}/{Year} {Foo}')");
  }
  void Customer(const std::string& id, const std::string& hp, const std::string& more = "") {
    office.Run(
        "INSERT INTO CustMast (CustID,CustName,CompCode,CustStatus,CustHP1,TotLoan,"
        "TotLoanBal,DOB,CustRace) VALUES (" +
        QuoteStr(id) + ",'O''Neil " + id + "','HQ','ACTIVE'," + QuoteStr(hp) +
        ",1,0,'1980-05-07','CINA')" + more);
  }
  std::unique_ptr<SMSfrm> Open(SmsType type, Session& at, SmsDesk& desk) {
    auto screen = std::make_unique<SMSfrm>(at, desk);
    screen->Load();
    screen->SMSCat.PickIndex(static_cast<int>(type));
    if (type == SmsType::resend) return screen;
    screen->TID.Enter();
    screen->TID.Type("S-0001");
    screen->TID.Leave();
    return screen;
  }
  std::unique_ptr<SMSfrm> Open(SmsType type) { return Open(type, session, desk); }
  std::string Queue(const std::string& columns = "HP,SMSMsg,SMSStatus") {
    return LinesOf(session.smsconn->Query("SELECT " + columns + " FROM SMSList ORDER BY SMSID"),
                   "|");
  }
  std::string Grid(const SMSfrm& screen, std::initializer_list<const char*> columns) {
    std::string text;
    for (int row = 0; row < screen.vsd.RowCount(); ++row) {
      text += screen.vsd.Ticked(row) ? "x" : "-";
      for (const char* column : columns) {
        text += "|" + screen.vsd.Cell(row, screen.vsd.ColumnIndex(column));
      }
      text += "\n";
    }
    return text;
  }

  Office office;
  Session& session;
  SmsDesk desk;
};

TEST_F(Sms, LoansThatAreDueByTypeAndWithTheirNumbers) {
  Customer("A1", "012-345 6789");
  Customer("A2", "none");
  Customer("A3", "");
  for (const auto& [loan, customer, flexi] : TextRows<3>{{"A1-001", "A1", "0"},
                                                         {"A1-002", "A1", "1"},
                                                         {"A2-001", "A2", "0"},
                                                         {"A3-001", "A3", "0"}}) {
    office.Run(std::string("INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,LoanBal,InsRate,"
                           "LoanTypeID,NextDueDate,LoanGroupID,LoanType,LoanAmt,TrxDate,"
                           "InstallmentAmt) VALUES ('") +
               loan + "','" + customer + "','HQ','" + flexi +
               "',1000,2,'MONTH','2024-01-10','SEMASA','Unsecured',2000,'2023-12-01',100)");
    for (const char* due : {"2024-01-10", "2024-02-10"}) {
      office.Run(std::string("INSERT INTO SchMast (LoanID,SchID,CustID,DueDate,PayableAmt,Payment,"
                             "DragInt,DragIntPaid) VALUES ('") +
                 loan + "'," + (due[6] == '1' ? "1" : "2") + ",'" + customer + "','" + due +
                 "',110,10,3,1)");
    }
  }
  const auto screen = Open(SmsType::outstanding_due);
  screen->SSCommand1.Click();
  EXPECT_EQ(desk.Last(), "SMS Master: Date To required");
  screen->DateTo.Type("29-02-2024");
  screen->SSCommand1.Click();
  EXPECT_EQ(desk.Last(), "SMS Master: Process completed");
  EXPECT_EQ(Grid(*screen, {"Loan ID", "HP", "Due Amt", "Due Date", "Remark"}),
            "x|A1-001|60123456789|200.00|10-01-2024|\n"
            "x|A1-002|60123456789|1,000.00|10-01-2024|\n"
            "-|A2-001||200.00|10-01-2024|none is no mobile number\n");
  EXPECT_EQ(screen->vsd.Cell(0, screen->vsd.ColumnIndex("Content")),
            "O'Neil A1 A1-001 200.00 Head Office 1/2024 {Foo}");
  EXPECT_EQ(screen->UnknownLBL.Text(), "{Foo} is not known and stays as it is");
  // Of the flexi loan two months run, 20 each, and 2 x 2 are due besides.
  screen->Option2.Choose();
  EXPECT_EQ(screen->vsd.RowCount(), 0);
  screen->DateFrom.Type("01-02-2024");
  screen->SSCommand1.Click();
  EXPECT_EQ(Grid(*screen, {"Due Amt"}), "x|100.00\nx|42.00\n-|100.00\n");
  for (const auto& [kind, rows] : {std::pair{"Secured", 0}, {"Unsecured", 0}, {"", 3}}) {
    screen->LoanType2.Pick(kind);  // by words that no loan of the loan screen has
    screen->SSCommand1.Click();
    EXPECT_EQ(screen->vsd.RowCount(), rows) << kind;
  }
}

TEST_F(Sms, CustomersStaffAndAFileOfNumbers) {
  Customer("A1", "0121");
  Customer("A2", "0122");
  office.Run("UPDATE CustMast SET CustStatus='KIV',TotLoanBal=1 WHERE CustID='A2'");
  for (const char* loan : {"1", "2"}) {
    office.Run(std::string("INSERT INTO LoanMast (LoanID,CustID,CompCode) VALUES ('A1-") + loan +
               "','A1','HQ')");
  }
  office.Run(
      "INSERT INTO UserMast (UserID,UserName,UserLevel,UserHP1,CompCode) VALUES "
      "('U1','Amy','Clerk','0123','HQ')");
  std::ofstream(office.folder.File("list.txt"))
      << "\xEF\xBB\xBF"
         "016-1,Lim 陈\r\n\r\n 016-2 ; Ali\n0163\nnobody\n";
  std::ofstream(office.folder.File("old.txt")) << "0161,\xB3\xC2\n";
  desk.file = office.folder.File("list.txt");
  const auto rows = [&](SmsType type, const std::function<void(SMSfrm&)>& choose) {
    const auto screen = Open(type);
    choose(*screen);
    screen->SSCommand1.Click();
    return Grid(*screen, {"Customer Code", "Customer Name", "HP", "DOB"});
  };
  EXPECT_EQ(rows(SmsType::full_settled, [](SMSfrm&) {}),
            "x|A1|O'Neil A1|60121|7 May\nx|A1|O'Neil A1|60121|7 May\n");
  EXPECT_EQ(rows(SmsType::other, [](SMSfrm& s) { s.CustStatus.Pick("KIV"); }),
            "x|A2|O'Neil A2|60122|7 May\n");
  EXPECT_EQ(rows(SmsType::other, [](SMSfrm& s) { s.MMonth.Pick("June"); }), "");
  EXPECT_EQ(rows(SmsType::staff, [](SMSfrm& s) { s.UserLevel.Pick("Clerk"); }),
            "x|U1|Amy|60123|\n");
  EXPECT_EQ(rows(SmsType::text_file, [](SMSfrm& s) { s.Command4.Click(); }),
            "x||Lim 陈|60161|\nx||Ali|60162|\nx|||60163|\n-||||\n");
  desk.file = office.folder.File("old.txt");
  rows(SmsType::text_file, [](SMSfrm& s) { s.Command4.Click(); });
  EXPECT_TRUE(desk.Last().starts_with("SMS Master: an error occur during reading text file\n"));
}

TEST_F(Sms, NothingGoesTwiceUnasked) {
  for (int i = 1; i <= 4; ++i) Customer("A" + std::to_string(i), "012" + std::to_string(i));
  Customer("A5", "");
  const auto screen = Open(SmsType::other);
  screen->SendCmd.Click();
  EXPECT_TRUE(desk.Last().starts_with("SMS Master: The list is empty"));
  screen->SSCommand1.Click();
  screen->vsd.SetTicked(3, false);
  screen->vsd.SetTicked(4, true);  // without a number: never queued
  desk.stop_after = 2;
  screen->SendCmd.Click();
  EXPECT_EQ(desk.Last(), "SMS Master: Stopped: 2 of 3 queued, the others are still ticked");
  EXPECT_EQ(Queue("HP"), "60121|\n60122|\n");
  desk.stop_after = -1;
  screen->SendCmd.Click();  // what is left
  EXPECT_EQ(desk.Last(), "SMS Master: SMS sent");
  EXPECT_EQ(Queue("HP"), "60121|\n60122|\n60123|\n");
  // All of them ticked once more: asked, and no sends the new one alone.
  screen->CmdCheckAll.Click();
  screen->SendCmd.Click();
  EXPECT_TRUE(desk.asked.back().starts_with("3 of these 4 messages")) << desk.asked.back();
  EXPECT_EQ(Queue("HP"), "60121|\n60122|\n60123|\n60124|\n");
  desk.again = true;
  screen->CmdCheckAll.Click();
  screen->SendCmd.Click();
  EXPECT_EQ(session.smsconn->Query("SELECT SMSID FROM SMSList").RowCount(), 8U);
  // A changed text belongs to no list that was made before.
  screen->SMSContent.Type("Other");
  screen->CmdCheckAll.Click();
  screen->SendCmd.Click();
  EXPECT_TRUE(desk.Last().starts_with("SMS Master: The text was changed"));
  session.clock.Set({2024, 2, 1, 8, 0, 0});
  screen->SSCommand1.Click();
  desk.asked.clear();
  screen->SendCmd.Click();
  EXPECT_EQ(desk.asked.size(), 1U);  // another text, on another day
}

// Two desktops that process the same list and send in turns, a row now here, now there.
TEST_F(Sms, TwoDesktopsQueueEachMessageOnce) {
  std::set<std::string> expected;
  for (int i = 10; i < 40; ++i) {
    Customer("A" + std::to_string(i), "0" + std::to_string(i));
    expected.insert("60" + std::to_string(i));
  }
  const auto other = OpenSqlite("smsconn", office.folder.File("sms.db"), false, session.clock);
  std::mt19937 random(11);
  for (int round = 0; round < 20; ++round) {
    session.smsconn->Execute("DELETE FROM SMSList");
    SmsQueue queues[] = {{*session.smsconn, "31-01-2024"}, {*other, "31-01-2024"}};
    std::vector<std::string> left[] = {{expected.begin(), expected.end()},
                                       {expected.begin(), expected.end()}};
    std::size_t taken = 0;
    while (!left[0].empty() || !left[1].empty()) {
      const std::size_t at = left[0].empty() || (!left[1].empty() && random() % 2 == 0) ? 1 : 0;
      const std::size_t pick = random() % left[at].size();
      QueuedSms sms;
      sms.HP = left[at][pick];
      sms.SMSMsg = "it's due";
      sms.DateCreated = "31-01-2024 10:00:00";
      taken += queues[at].Add(sms) ? 1 : 0;
      left[at].erase(left[at].begin() + static_cast<std::ptrdiff_t>(pick));
    }
    EXPECT_EQ(taken, expected.size());
    EXPECT_EQ(session.smsconn->Query("SELECT DISTINCT HP FROM SMSList").RowCount(), taken);
  }
}

TEST_F(Sms, AQueueThatFailsKeepsWhatItHasAndTheTicksOfTheRest) {
  for (int i = 1; i <= 3; ++i) Customer("A" + std::to_string(i), "012" + std::to_string(i));
  for (int at = 1; at < 30; ++at) {
    session.smsconn->Execute("DELETE FROM SMSList");
    const auto screen = Open(SmsType::other);
    screen->SSCommand1.Click();
    int count = 0;
    session.smsconn->SetFaultHook([&](std::string_view) {
      if (++count == at) throw SqlError(10054, "the line is cut");
    });
    screen->SendCmd.Click();
    session.smsconn->SetFaultHook({});
    const std::size_t queued = session.smsconn->Query("SELECT SMSID FROM SMSList").RowCount();
    if (count < at) {
      EXPECT_EQ(queued, 3U);
      EXPECT_GT(at, 12);
      return;
    }
    EXPECT_TRUE(desk.Last().starts_with("SMS Master: an error occur during sending SMS\nthe line"));
    std::size_t ticked = 0;
    for (int row = 0; row < 3; ++row) ticked += screen->vsd.Ticked(row) ? 1 : 0;
    EXPECT_EQ(queued + ticked, 3U) << at;
    screen->SendCmd.Click();
    EXPECT_EQ(session.smsconn->Query("SELECT SMSID FROM SMSList").RowCount(), 3U) << at;
  }
  FAIL() << "the send has no end";
}

TEST_F(Sms, WithoutADatabaseATableOrRoomNothingIsMarked) {
  Customer("A1", "0121");
  const auto screen = Open(SmsType::other);
  screen->SMSContent.SetText(Times("{Customer Name}", 120));  // 1,800 characters, then 1,080
  screen->SSCommand1.Click();
  screen->SendCmd.Click();
  EXPECT_TRUE(desk.Last().starts_with("SMS Master: The text for O'Neil A1 has 1080 characters"));
  screen->SMSContent.SetText("'; DROP TABLE SMSList --");
  screen->SSCommand1.Click();
  screen->SendCmd.Click();
  EXPECT_EQ(Queue(), "60121|'; DROP TABLE SMSList --|READY|\n");
  screen->SMSContent.SetText("你好");
  screen->SSCommand1.Click();
  session.smsconn->Execute("DROP TABLE SMSList");
  screen->SendCmd.Click();
  EXPECT_TRUE(desk.Last().starts_with("SMS Master: an error occur during sending SMS\n"));
  session.smsconn.reset();
  session.settings.SMSServer = "nowhere";
  screen->SendCmd.Click();
  EXPECT_NE(desk.Last().find("see the setting SMSServer"), std::string::npos) << desk.Last();
  EXPECT_TRUE(screen->vsd.Ticked(0));
}

TEST_F(Sms, WhatFailedGoesAgainOnce) {
  for (const auto& [hp, status, company] : TextRows<3>{
           {"1", "FAIL", "HQ"}, {"2", "DONE", "HQ"}, {"3", "FAIL", "HQ"}, {"4", "FAIL", "ZZ"}}) {
    session.smsconn->Execute(
        std::string("INSERT INTO SMSList (HP,SMSMsg,SMSStatus,CompCode) VALUES ('") + hp +
        "','text','" + status + "','" + company + "')");
  }
  const auto screen = Open(SmsType::resend);
  screen->SSCommand1.Click();
  EXPECT_EQ(Grid(*screen, {"HP", "Content", "ID"}), "x|1|text|1\nx|3|text|3\n");
  // Another desktop was quicker, and the gateway has sent it since.
  session.smsconn->Execute("UPDATE SMSList SET SMSStatus='DONE' WHERE SMSID=1");
  screen->SendCmd.Click();
  EXPECT_EQ(desk.Last(), "SMS Master: SMS resent");
  EXPECT_EQ(Queue("HP,SMSStatus"), "1|DONE|\n2|DONE|\n3|READY|\n4|FAIL|\n");
}

TEST_F(Sms, ATemplateIsKeptChangedAndDeletedAndNotOverAnothersChange) {
  SMSTemplatefrm screen(session, desk);
  screen.Load();
  const auto type = [](TextBox& box, const std::string& text) {
    box.Enter();
    box.Type(text);
    box.Leave();
  };
  type(screen.TID, "S-9");
  EXPECT_EQ(desk.Last(), "SMS Template: SMS Template ID S-9 not found");
  screen.CmdClear.Click();
  screen.SaveCmd.Click();
  EXPECT_EQ(desk.Last(), "SMS Template: SMS Template Name is required");
  type(screen.TName, "Hari's");
  screen.SaveCmd.Click();
  EXPECT_EQ(desk.Last(), "SMS Template: SMS Contents is required");
  EXPECT_FALSE(screen.SMSContent.Type(Times("x", 2000)));  // more than the column holds
  screen.SMSContent.Type("Dear ");
  screen.SMSField.Pick("{Customer Name}");
  EXPECT_EQ(screen.SMSContent.text(), "Dear {Customer Name}");
  screen.SaveCmd.Click();
  EXPECT_EQ(desk.Last(), "SMS Template: Template Hari's, saved");
  EXPECT_EQ(screen.TID.text(), "S-0002");  // S-0001 was there before the series
  const std::string row = "SELECT TName,SMSContent,UserID,TrxDate FROM SMSMast WHERE TID='S-0002'";
  EXPECT_EQ(office.Lines(row, "|"), "Hari's|Dear {Customer Name}|AMY|2024-01-31|\n");
  office.Run("UPDATE SMSMast SET TName='Theirs' WHERE TID='S-0002'");
  type(screen.TName, "Mine");
  screen.SaveCmd.Click();
  EXPECT_TRUE(desk.Last().starts_with("SMS Template: S-0002 was changed on another desktop"));
  desk.again = true;
  screen.CmdDelete.Click();
  EXPECT_EQ(office.Lines(row, "|"), "Theirs|Dear {Customer Name}|AMY|2024-01-31|\n");
  screen.CmdClear.Click();
  type(screen.TID, "S-0002");
  screen.CmdDelete.Click();
  EXPECT_EQ(desk.Last(), "SMS Template: SMS S-0002 Template deleted");
  EXPECT_EQ(office.Lines(row), "");
}

}  // namespace
}  // namespace kaunter
