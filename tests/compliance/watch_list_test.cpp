// The copy of the watch list: how it is taken, when it serves at the counter, what all customers
// screened against it give, and the decisions.
#include "compliance/watch_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "compliance/aml.h"
#include "compliance/screening.h"
#include "compliance/watch_list_frm.h"
#include "core/schema_text.h"
#include "reports/run_report.h"
#include "screen/cancel_offer.h"
#include "screen/report_job.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

class Officer : public SilentDesk {
 public:
  struct Bar : SilentBar, CancelOffer {
    explicit Bar(bool stops) : stops(stops) {}
    void OfferCancel(std::string_view) override {}
    bool Cancelled() const override { return stops; }
    bool stops;
  };
  bool Ask(std::string_view, std::string_view text) override {
    asked.push_back(std::string(text));
    return refused.empty() || text.find(refused) == text.npos;
  }
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<Bar>(stops);
  }
  void Print(const ReportJob& job) override { printed.push_back(job); }
  std::string Said() { return messages.empty() ? "" : messages.back(); }

  bool stops = false;
  std::vector<std::string> asked;
  std::string refused;
  std::vector<ReportJob> printed;
};

class WatchList : public ::testing::Test {
 protected:
  WatchList() : office(Office::State::patched), session(office.session) {
    session.settings.AMLA = true;
    session.CurrentLevel = 4;
    session.CurrentCompCode = "HQ";
    office.Run(
        "UPDATE CompMast SET AMLA='1',AMLACheckIC='1' WHERE CompCode='HQ';"
        "INSERT INTO CompMast (CompCode) VALUES ('KL');"
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustNIC,CustOIC,CustOthIC,CustStatus) "
        "VALUES ('C1','HQ','Mohd Ali bin Abu','700101-10-1111','','','ACTIVE'),"
        "('C2','HQ',N'O''Brien 陳亞九','','A1234567','','ACTIVE'),"
        "('C3','KL','Abu Mohd Ali','800131105555','','','ACTIVE'),"
        "('C4','HQ','Tan Ah Kow','','','K 777-888','ACTIVE'),"
        "('C5','HQ',NULL,NULL,NULL,NULL,NULL)");
    file = office.folder.File("central.db");
    central = OpenSqlite("AMLA", file, true, session.clock);
    RunScript(*central, SchemaText("central"));
    central->Execute(
        "INSERT INTO AMLAMast (RefNo,Name,NRIC,PassportNo,OtherInformation) VALUES "
        "('UN-1','MUHAMMAD ALI BIN ABU','700101-10-1111','','Order ''7'''),"
        "('UN-2',N'陈亚九','','A1234567',NULL),('UN-3','SOMEBODY ELSE','800131-10-5555','',''),"
        "('UN-3','SOMEBODY ELSE','800131-10-5555','',''),(NULL,'IVAN','','K777888','')");
    Reach(file);
    std::filesystem::create_symlink(test::SourceDir() + "/reports/WatchListHits.rpt",
                                    office.folder.File("WatchListHits.rpt"));
    session.status = [this](std::string_view text) { status = text; };
    LoadAMLSettings(session, "HQ");
  }
  void Reach(const std::string& path) {
    session.data_sources.Add("AMLA", {DataSource::Kind::kEmbedded, path});
  }
  std::unique_ptr<WatchListFrm> Open() {
    auto screen = std::make_unique<WatchListFrm>(session, desk);
    screen->Load();
    return screen;
  }
  // As a face does it.
  void Click(WatchListFrm& screen, Button& button) {
    desk.messages.clear();
    screen.Guard([&] { button.Click(); });
  }
  std::unique_ptr<WatchListFrm> Screened() {
    auto screen = Open();
    if (!CopyInUse(session.Main())) Click(*screen, screen->CopyCmd);
    Click(*screen, screen->ScreenCmd);
    EXPECT_TRUE(desk.messages.empty()) << desk.Said();
    return screen;
  }
  static std::string Rows(const WatchListFrm& screen) {
    std::string rows;
    for (int row = 0; row < screen.HitDG.RowCount(); ++row) {
      for (const char* column : {"Kind", "Customer", "Ref No", "Decision"}) {
        rows += screen.HitDG.Cell(row, screen.HitDG.ColumnIndex(column)) + "|";
      }
    }
    return rows;
  }
  void Decide(WatchListFrm& screen, int row, bool hit, const std::string& remark = "seen") {
    screen.HitDG.Select(row);
    screen.Remark.SetText(remark);
    Click(screen, hit ? screen.HitCmd : screen.NoHitCmd);
  }
  std::string Kept() {
    return office.Lines("SELECT CustID,SeqNo,Decision FROM AMLADecision ORDER BY CustID,SeqNo");
  }

  Office office;
  Session& session;
  Officer desk;
  std::string file;
  std::unique_ptr<Connection> central;
  std::string status;
};

TEST_F(WatchList, ACopyIsTakenWholeAndTheOneBeforeServesUntilThen) {
  auto screen = Open();
  Click(*screen, screen->ScreenCmd);
  EXPECT_EQ(desk.Said(), "Watch List Screening: There is no copy yet: take one first");
  screen->Guard([&] { screen->UseCopy.Tick(true); });
  EXPECT_FALSE(screen->UseCopy.checked());
  Click(*screen, screen->CopyCmd);
  EXPECT_EQ(desk.Said(), "Watch List Screening: The watch list is copied: 4 entries");
  EXPECT_EQ(screen->CopyLBL.Text(), "Copy of 31-01-2024 14:05:09 by AMY: 4 entries");
  const auto first = *CopyInUse(session.Main());
  EXPECT_EQ(office.Scalar("SELECT OtherInformation FROM AMLACopy WHERE RefNo='UN-1'"), "Order '7'");

  // Each way in which the next one does not come about.
  std::string long_name;
  for (int i = 0; i < 100; ++i) long_name += "陈'\"";
  central->Execute("INSERT INTO AMLAMast (RefNo,Name) VALUES ('UN-9',N" + QuoteStr(long_name) +
                   ")");
  const auto stays = [&](const char* told) {
    Click(*screen, screen->CopyCmd);
    EXPECT_NE(desk.Said().find(told), std::string::npos) << desk.Said();
    EXPECT_EQ(CopyInUse(session.Main())->CopyID, first.CopyID);
    EXPECT_EQ(ReadCopy(session, first).size(), 4u);
  };
  desk.stops = true;
  stays("Stopped. The copy stays as it was");
  desk.stops = false;
  Reach(office.folder.File("gone.db"));
  stays("an error occur during copying the watch list");
  const std::string other = office.folder.File("other.db");
  OpenSqlite("AMLA", other, true, session.clock)->Execute("CREATE TABLE T (A int)");
  Reach(other);
  stays("an error occur during copying the watch list");
  OpenSqlite("AMLA", other, false, session.clock)
      ->Execute(
          "CREATE TABLE AMLAMast (RefNo nvarchar(50),Name nvarchar(300),NRIC nvarchar(50),"
          "PassportNo nvarchar(50),OtherInformation nvarchar(max))");
  stays("The central list has no entry; the copy stays as it was");
  OpenSqlite("AMLA", other, false, session.clock)
      ->Execute("INSERT INTO AMLAMast (Name) VALUES ('A'),('B'),('C')");
  desk.refused = "The central list has 3 entries, the copy in use 4";
  stays("Stopped. The copy stays as it was");
  Reach(file);
  // Until the copy is finished: what fails behind that leaves only rows that the next one takes.
  for (int at = 1;; ++at) {
    if (!office.FailAt(at, Office::Failure::stays, [&] { Click(*screen, screen->CopyCmd); })) {
      break;
    }
    const auto in_use = *CopyInUse(session.Main());
    EXPECT_EQ(ReadCopy(session, in_use).size(), in_use.CopyID == first.CopyID ? 4u : 5u) << at;
  }
  const auto entries = ReadCopy(session, *CopyInUse(session.Main()));
  EXPECT_TRUE(std::ranges::any_of(
      entries, [&](const WatchEntry& entry) { return entry.Name == long_name; }));
  // What nobody finished goes a day later; the last two that were finished stay.
  session.clock.Set({2024, 2, 3, 9, 0, 0});
  Click(*screen, screen->CopyCmd);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM AMLACopyHead"), "2");
  EXPECT_EQ(office.Scalar("SELECT COUNT(DISTINCT CopyID) FROM AMLACopy"), "2");
  session.clock.Set({2024, 4, 3, 9, 0, 0});
  EXPECT_NE(Open()->CopyLBL.Text().find("more than 30 days old"), std::string::npos);
  // Rows that somebody took away are not passed over.
  office.Run("DELETE FROM AMLACopy WHERE RefNo='UN-2'");
  screen = Open();
  Click(*screen, screen->ScreenCmd);
  EXPECT_NE(desk.Said().find("has 4 of its 5 entries: take it again"), std::string::npos);
}

// Two desktops that copy at once disturb neither each other nor what is in use.
TEST_F(WatchList, TwoCopiesAtOnceAreBothWhole) {
  const auto entries = FetchWatchList(session);
  Session other;
  other.CurrentUserID = "BEN";
  other.clock = session.clock;
  other.MainConn = OpenSqlite("MainConn", office.folder.File("office.db"), false, other.clock);
  bool inner = false;
  EXPECT_TRUE(StoreCopy(session, entries, [&](int) {
    inner = StoreCopy(other, entries, [](int) { return true; });
    EXPECT_EQ(CopyInUse(session.Main())->UserID, "BEN");
    return true;
  }));
  EXPECT_TRUE(inner);
  EXPECT_EQ(ReadCopy(session, *CopyInUse(session.Main())).size(), entries.size());
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM AMLACopy"), "8");
  // Rows that went while it was written: it is not used.
  const std::vector<WatchEntry> many(600, {"UN", "NAME", "", "", ""});
  EXPECT_THROW(StoreCopy(session, many,
                         [&](int done) {
                           if (done > 0) office.Run("DELETE FROM AMLACopy WHERE CopyID=3");
                           return true;
                         }),
               std::runtime_error);
  EXPECT_EQ(CopyInUse(session.Main())->CopyID, 2);
}

TEST_F(WatchList, TheCopyServesOnlyWhileTheLineIsDownAndWhereItIsSwitchedOn) {
  auto screen = Open();
  Click(*screen, screen->CopyCmd);
  central->Execute("DELETE FROM AMLAMast WHERE RefNo='UN-1'");
  const auto look = [&] { return ScreenIdentity(session, desk, {.ic = "700101-10-1111"}).found; };
  EXPECT_EQ(look(), Screening::clear);  // the list itself is asked
  Reach(office.folder.File("gone.db"));
  EXPECT_EQ(look(), Screening::away);
  screen->Guard([&] { screen->UseCopy.Tick(true); });
  EXPECT_TRUE(Open()->UseCopy.checked());
  EXPECT_EQ(look(), Screening::hit);
  EXPECT_EQ(desk.Said(),
            "AML/CFT Screening: AML/CFT detected on IC: 700101-10-1111\n\nRef. No.: UN-1\n\nName: "
            "MUHAMMAD ALI BIN ABU\n\nOrder '7'\n\nFrom the office's copy of the list, taken "
            "31-01-2024 14:05:09. The central database is away.");
  EXPECT_EQ(status,
            "AML/CFT screening by the copy of 31-01-2024 14:05:09: the central database is away");
  EXPECT_NE(office.Log().back().find("700101-10-1111 by the copy of 31-01-2024 14:05:09: "),
            std::string::npos);
  EXPECT_EQ(ScreenIdentity(session, desk, {.ic = "", .passport1 = "a1234567"}).found,
            Screening::hit);
  EXPECT_EQ(ScreenIdentity(session, desk, {.ic = "A1234567"}).found, Screening::clear);
  // Nor does a copy that cannot be read stop the counter.
  session.Main().SetFaultHook([](std::string_view) { throw SqlError(1105, "full"); });
  EXPECT_EQ(look(), Screening::away);
  session.Main().SetFaultHook({});
  screen->Guard([&] { screen->UseCopy.Tick(false); });
  EXPECT_EQ(look(), Screening::away);
}

TEST_F(WatchList, AllCustomersOfTheOwnCompaniesAreScreened) {
  auto screen = Screened();
  EXPECT_EQ(Rows(*screen),
            "Number|C1|UN-1|Not decided|Number|C2|UN-2|Not decided|Similar|C3|UN-1|Not decided|"
            "Similar|C3|UN-3|Not decided|Similar|C4||Not decided|");
  const auto because = [&](int row) { return screen->HitDG.Cell(row, 6); };
  EXPECT_EQ(because(0), "same new IC; same name, spelled otherwise; MOHD = MUHAMMAD");
  EXPECT_EQ(because(1), "old IC is a listed passport; same name");
  EXPECT_EQ(because(2),
            "same words in another order; MOHD = MUHAMMAD; not counted: BIN; but another IC");
  EXPECT_EQ(because(3), "number written otherwise, or of another kind: 800131105555");
  EXPECT_EQ(because(4), "number written otherwise, or of another kind: K 777-888");
  EXPECT_EQ(screen->RunLBL.Text(), "5 customers screened: 5 hits, 5 not decided");
  // The status of nobody has changed, and the run is kept.
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CustMast WHERE CustStatus='AMLA'"), "0");
  EXPECT_EQ(office.Lines("SELECT Customers,Hits,Undecided,UserID FROM AMLARun"), "5 5 5 AMY \n");
  EXPECT_EQ(Open()->RunLBL.Text(),
            "Last screened 31-01-2024 14:05:09 by AMY against the copy of 31-01-2024: 5 customers, "
            "5 hits, 5 not decided then");
  session.CurrentLevel = 3;
  EXPECT_EQ(Rows(*Screened()).find("C3"), std::string::npos);
  // Stopped: nothing is listed as if it were all.
  desk.stops = true;
  screen = Open();
  Click(*screen, screen->ScreenCmd);
  EXPECT_NE(desk.Said().find("Stopped. Not all customers are screened"), std::string::npos);
  EXPECT_EQ(screen->HitDG.RowCount(), 0);
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM AMLARun"), "2");
}

TEST_F(WatchList, ADecisionIsKeptWithBothSidesAndAskedAgainOnlyAfterAChange) {
  office.OpenAudit();
  auto screen = Screened();
  Decide(*screen, 0, false, "  ");
  EXPECT_EQ(desk.Said(), "Watch List Screening: Remark is required: why it is another person");
  EXPECT_EQ(screen->focus(), &screen->Remark);
  const std::string remark = "born 1971, 陈's \"file\"";
  Decide(*screen, 0, false, remark);
  EXPECT_EQ(desk.asked.back(), "Is Mohd Ali bin Abu another person than MUHAMMAD ALI BIN ABU ?");
  EXPECT_EQ(office.Lines("SELECT CustID,SeqNo,CompCode,CustName,CustNIC,RefNo,ListName,ListNRIC,"
                         "ListOther,Decision,Remark,UserID,DateCreated FROM AMLADecision",
                         "|"),
            "C1|1|HQ|Mohd Ali bin Abu|700101-10-1111|UN-1|MUHAMMAD ALI BIN ABU|700101-10-1111|"
            "Order '7'|NO HIT|" +
                remark + "|AMY|2024-01-31 14:05:09|\n");
  EXPECT_EQ(Rows(*screen).find("C1"), std::string::npos);
  Decide(*screen, 0, true, "");
  EXPECT_EQ(office.Scalar("SELECT CustStatus FROM CustMast WHERE CustID='C2'"), "AMLA");
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM CustMast WHERE CustStatus='AMLA'"), "1");
  EXPECT_EQ(LinesOf(session.LogsConn->Query(
                "SELECT Type,Module,TrxID FROM TransLogs ORDER BY Module,TrxID")),
            "Modify Customer C2 \nCreate Watch List C1 \nCreate Watch List C2 \n");

  // One side changes and changes back.
  const struct {
    const char* change;
    const char* back;
    bool central;
  } kChanges[] = {
      {"UPDATE CustMast SET CustName='Mohd. Ali bin Abu' WHERE CustID='C1'",
       "UPDATE CustMast SET CustName='Mohd Ali bin Abu' WHERE CustID='C1'", false},
      {"UPDATE CustMast SET CustOthIC='X1' WHERE CustID='C1'",
       "UPDATE CustMast SET CustOthIC='' WHERE CustID='C1'", false},
      {"UPDATE AMLAMast SET OtherInformation='New' WHERE RefNo='UN-1'",
       "UPDATE AMLAMast SET OtherInformation='Order ''7''' WHERE RefNo='UN-1'", true},
      {"UPDATE AMLAMast SET RefNo='UN-1B' WHERE RefNo='UN-1'",
       "UPDATE AMLAMast SET RefNo='UN-1' WHERE RefNo='UN-1B'", true},
      {"UPDATE CustMast SET CustAdd1='elsewhere' WHERE CustID='C1'", "",
       false},  // counts for nothing
  };
  const auto decision_on_c1 = [&] {
    Click(*screen, screen->CopyCmd);
    Click(*screen, screen->ScreenCmd);
    screen->Show.SetIndex(2);
    screen->Show.onPick();
    return screen->HitDG.Cell(0, 7);
  };
  for (const auto& c : kChanges) {
    const auto run = [&](const char* sql) {
      if (*sql != '\0') (c.central ? *central : session.Main()).Execute(sql);
    };
    run(c.change);
    EXPECT_EQ(decision_on_c1(), *c.back == '\0' ? "No hit" : "Changed since: no hit") << c.change;
    run(c.back);
    EXPECT_EQ(decision_on_c1(), "No hit") << c.back;
  }
  // Somebody thinks better of it: a row more, and it is the newest that counts.
  Decide(*screen, 0, true, "");
  EXPECT_EQ(Kept(), "C1 1 NO HIT \nC1 2 HIT \nC2 1 HIT \n");
  EXPECT_EQ(decision_on_c1(), "Hit");
  Click(*screen, screen->PrintCmd);
  ASSERT_EQ(desk.printed.size(), 1u);
  EXPECT_EQ(desk.printed[0].ReportFileName, session.AppPath + "/" + "WatchListHits.rpt");
  const ReportRun paper = RunWholeReport(desk.printed[0]);
  std::string listed;
  for (const auto& row : paper.rows.rows()) {
    for (const int column : {4, 3, 7, 11, 12}) {
      listed += row[static_cast<std::size_t>(column)].ToText() + "|";
    }
  }
  EXPECT_EQ(listed,
            "Number|C1|UN-1|Hit|AMY|Number|C2|UN-2|Hit|AMY|Similar|C3|UN-1|Not decided||"
            "Similar|C3|UN-3|Not decided||Similar|C4||Not decided||");
  screen->Close();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM MasterReport"), "0");
}

TEST_F(WatchList, TwoDesktopsThatDecideAtOnceAreToldApart) {
  auto mine = Screened();
  auto theirs = Screened();
  Decide(*mine, 2, false);  // C3 and UN-1
  session.CurrentUserID = "BEN";
  Decide(*theirs, 2, true);
  EXPECT_NE(desk.Said().find("C3: AMY has decided no hit on 31-01-2024 14:05:09 meanwhile"),
            std::string::npos)
      << desk.Said();
  EXPECT_EQ(theirs->Remark.text(), "seen");
  EXPECT_EQ(Kept(), "C3 1 NO HIT \n");
  EXPECT_EQ(office.Scalar("SELECT CustStatus FROM CustMast WHERE CustID='C3'"), "ACTIVE");
  Decide(*theirs, 3, false);  // the same customer, another entry
  EXPECT_EQ(Kept(), "C3 1 NO HIT \nC3 2 NO HIT \n");
  // Several at once: both entries of one customer too; one that another decided stops them all.
  office.Run("DELETE FROM AMLADecision");
  mine = Screened();
  theirs = Screened();
  for (int row = 0; row < 5; ++row) mine->HitDG.Tick(row, true);
  Decide(*theirs, 4, false);
  Decide(*mine, 0, false);
  EXPECT_NE(desk.Said().find("C4: BEN has decided"), std::string::npos) << desk.Said();
  EXPECT_EQ(Kept(), "C4 1 NO HIT \n");
  mine->HitDG.Tick(4, false);
  Decide(*mine, 0, false);
  EXPECT_EQ(Kept(), "C1 1 NO HIT \nC2 1 NO HIT \nC3 1 NO HIT \nC3 2 NO HIT \nC4 1 NO HIT \n");
  // Both at the very same moment: the key lets one pass.
  office.Run("DELETE FROM AMLADecision");
  mine = Screened();
  session.Main().SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("INSERT INTO AMLADecision")) throw SqlError(2627, "PK_AMLADecision");
  });
  Decide(*mine, 0, false);
  session.Main().SetFaultHook({});
  EXPECT_NE(desk.Said().find("C1: another desktop decides about this customer at this moment"),
            std::string::npos)
      << desk.Said();
  Decide(*mine, 0, false);
  EXPECT_EQ(Kept(), "C1 1 NO HIT \n");
  // A customer who is gone gets no status.
  office.Run("DELETE FROM AMLADecision");
  mine = Screened();
  office.Run("DELETE FROM CustMast WHERE CustID='C1'");
  Decide(*mine, 0, true);
  EXPECT_NE(desk.Said().find("C1 is not there any more"), std::string::npos) << desk.Said();
  EXPECT_EQ(Kept(), "");
}

TEST_F(WatchList, ADecisionThatFailsAtAnyStatementLeavesNothing) {
  auto screen = Screened();
  for (int at = 1;; ++at) {
    const bool hit = office.FailAt(at, Office::Failure::passes, [&] { Decide(*screen, 0, true); });
    const bool kept = !Kept().empty();
    EXPECT_EQ(kept, office.Scalar("SELECT CustStatus FROM CustMast WHERE CustID='C1'") == "AMLA");
    EXPECT_EQ(kept, office.committed) << at;
    if (!hit) break;
    if (!kept) {
      EXPECT_EQ(screen->Remark.text(), "seen") << at;
      continue;
    }
    office.Run("DELETE FROM AMLADecision; UPDATE CustMast SET CustStatus='ACTIVE'");
    screen = Screened();
  }
}

}  // namespace
}  // namespace kaunter
