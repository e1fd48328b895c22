// The submission screen against the stand-in of the service: what is sent, what is recorded, what
// is asked first, and runs of many documents with a fault at each of them.
#include "einvoice/einv_frm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "screen/cancel_offer.h"
#include "tests/einvoice/invoice_office.h"

namespace kaunter {
namespace {

using namespace einvoice_column;

constexpr const char* kStatement =
    "SELECT d.eInvID,d.SeqNo,d.TrxDate,d.CustID,'Name of '+d.CustID AS CustName,d.CompCode,"
    "d.LoanID,d.SchID,d.InvType,'06' AS TaxType,d.InvDesc,d.InvAmt,1 AS Qty,e.TIN AS tin,"
    "e.CustTypeID,e.CustType,e.CustName,e.Phone,e.Email,e.Address,e.Postcode,e.City,e.State,"
    "e.Country FROM Docs AS d LEFT JOIN ECustMast AS e ON e.CustID=d.CustID WHERE "
    "d.CompCode=@compcode AND d.TrxDate >= @FromDate AND d.TrxDate <= @ToDate ORDER BY d.eInvID,"
    "d.SeqNo";

class StoppingBar : public SilentBar, public CancelOffer {
 public:
  explicit StoppingBar(int after) : after_(after) {}
  void SetPosition(int position) override { at_ = position; }
  void OfferCancel(std::string_view) override {}
  bool Cancelled() const override { return after_ >= 0 && at_ >= after_; }

 private:
  int after_;
  int at_ = 0;
};

// Answers each question by what it holds; "no" to one that nobody expects.
class Clerk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    asked.push_back(std::string(text));
    for (const std::string& part : yes) {
      if (text.find(part) != text.npos) return true;
    }
    return false;
  }
  std::string Input(std::string_view, std::string_view, std::string_view) override { return input; }
  std::unique_ptr<ProgressBar> Progress(std::string_view) override {
    return std::make_unique<StoppingBar>(stop_after);
  }
  void Show(std::string_view screen) override { shown = screen; }
  bool CanShow(std::string_view) const override { return true; }
  std::string Said() {
    std::string said = messages.empty() ? "" : messages.back();
    messages.clear();
    return said.empty() ? said : said.substr(said.find(": ") + 2);
  }
  bool WasAsked(std::string_view part) {
    const bool was = std::ranges::any_of(
        asked, [&](const std::string& text) { return text.find(part) != text.npos; });
    asked.clear();
    return was;
  }
  std::vector<std::string> yes = {"Confirm to", "Comfirn to"};
  std::vector<std::string> asked;
  std::string input;
  std::string shown;
  int stop_after = -1;
};

struct Submitting : InvoiceOffice {
  explicit Submitting(int documents = 0) {
    for (const char* name : {"Individual", "Consolidated", "Cancel"}) {
      Run(fmt::format("INSERT INTO DataExport (SID,SQLStatement) VALUES ({},{})",
                      QuoteStr(std::string("VKT-") + name), QuoteStr(kStatement)));
    }
    Run("CREATE TABLE Docs (eInvID nvarchar(80), SeqNo int, TrxDate datetime, CustID nvarchar(50),"
        "CompCode nvarchar(50), LoanID nvarchar(50), SchID int, InvType nvarchar(50), InvDesc "
        "nvarchar(300), InvAmt decimal(18,2));"
        "INSERT INTO ECustMast (CustID,TIN,CustType,CustTypeID,CustName,Phone,Email,Address,"
        "Postcode,City,State,Country) VALUES ('C1','IG1','NRIC','800101105533','陈大文','+6012','',"
        "'7, Jalan Tiga','43000','Kajang','10','MYS')");
    for (int i = 1; i <= documents; ++i) Document(fmt::format("D{:04}", i), "C1", "10.00");
  }
  void Document(const std::string& id, const std::string& customer, const std::string& amount,
                const std::string& seq = "1") {
    Run(
        fmt::format("INSERT INTO Docs VALUES ({},{},'2024-01-05',{},'HQ','L1',3,'Interest',"
                    "'Interest 3',{})",
                    QuoteStr(id), seq, QuoteStr(customer), amount));
  }
  std::string Uuid(const std::string& id) {
    return Scalar("SELECT uuid FROM EInvMast WHERE eInvID=" + QuoteStr(id));
  }
  std::string Mark(const std::string& id) {
    return Scalar("SELECT State FROM EInvSending WHERE eInvID=" + QuoteStr(id));
  }
};

struct Screen1 {
  explicit Screen1(Submitting& office) : Screen1(office.session) {}
  explicit Screen1(Session& session) : frm(session, desk) {
    frm.Load();
    frm.DateFrom.SetText("01-01-2024");
    frm.DateTo.SetText("31-01-2024");
  }
  // Lists and ticks all.
  Screen1& List() {
    frm.CmdClear.Click();
    frm.SaveCmd.Click();
    frm.C3.Tick(true);
    return *this;
  }
  std::string Send() {
    desk.messages.clear();
    EXPECT_TRUE(frm.Guard([&] { frm.CmdPrint.Click(); }));
    return desk.Said();
  }
  std::string Poll() {
    desk.messages.clear();
    EXPECT_TRUE(frm.Guard([&] { frm.CmdStatus.Click(); }));
    return desk.Said();
  }
  // "Unsent 3, Unknown 1": the filters that have rows.
  std::string Counts() {
    std::string counts;
    for (std::size_t i = 1; i < frm.StateFilter.items().size(); ++i) {
      const std::string& item = frm.StateFilter.items()[i];
      if (item.ends_with("(0)")) continue;
      counts += (counts.empty() ? "" : ", ") + item;
    }
    return counts;
  }
  Clerk desk;
  EInvFrm frm;
};

TEST(EInvFrm, WhatIsListedAndWhatIsKnownOfIt) {
  Submitting office;
  office.Document("A1", "C1", "1234.50");
  office.Document("B1", "C9", "0");
  office.Document("PAY2", "C1", "-12.50");
  office.Document("CHG2", "C1", "-1");
  office.Document("X0", "C1", "5");
  office.Run(
      "INSERT INTO PaymentMast (PayID,OldPayID) VALUES ('PAY2','PAY1');"
      "INSERT INTO ChargeMast (ChargeID,OldChargeID) VALUES ('CHG2','CHG1');"
      "INSERT INTO EInvMast (eInvID,SeqNo,uuid,LHDNStatus) VALUES ('PAY1',1,'U-PAY1',''),"
      "('X0',1,'U-X0','Valid')");
  Screen1 s(office);
  EXPECT_EQ(s.desk.messages.size(), 0u);
  s.frm.DateTo.Clear();
  s.frm.SaveCmd.Click();
  EXPECT_EQ(s.desk.Said(), "To Date required");
  s.frm.DateTo.SetText("31-01-2024");
  s.List();
  EXPECT_EQ(s.desk.asked.back(), "Confirm to retrieve Invoice from 01-01-2024 to 31-01-2024 ?");
  EXPECT_FALSE(s.frm.SendType.enabled() || s.frm.SubmitMethod.enabled());
  EXPECT_TRUE(s.frm.CmdPrint.enabled());
  ASSERT_EQ(s.frm.vsd.RowCount(), 5);
  const auto row = [&](int at) {
    std::string text;
    for (int column = 0; column <= kMsg; ++column) text += s.frm.vsd.Cell(at, column) + "|";
    return text;
  };
  EXPECT_EQ(row(0),
            "1|A1|1|05-01-2024|C1|Name of C1|HQ|L1|3|Interest|06|Interest 3|1,234.50|1||IG1|"
            "800101105533|NRIC|陈大文|+6012||7, Jalan Tiga|43000|Kajang|10|MYS||||||");
  EXPECT_TRUE(
      row(1).starts_with("2|B1|1|05-01-2024|C9|Name of C9|HQ|L1|3|Interest|06|Interest 3|"
                         "0.00|1||||||"));
  EXPECT_TRUE(row(2).ends_with("||CHG1|||") && row(3).ends_with("||PAY1|U-PAY1||")) << row(3);
  EXPECT_TRUE(row(4).ends_with("|Valid|U-X0||||"));
  EXPECT_EQ(s.frm.vsd.Tone(4), RowTone::warn);
  EXPECT_EQ(s.frm.vsd.Tone(0), RowTone::plain);
  EXPECT_TRUE(s.frm.vsd.Ticked(0) && !s.frm.vsd.Ticked(4));
  EXPECT_EQ(s.Counts(), "Unsent (4), Valid (1)");
  const std::string log = office.LogText();
  EXPECT_NE(log.find("d.CompCode='HQ' AND d.TrxDate >= '2024-01-01' AND d.TrxDate <= "
                     "'2024-01-31' ORDER BY d.eInvID,d.SeqNo - 5\n"),
            log.npos);
  // A filter shows its rows, and what it hides is not sent.
  s.frm.StateFilter.PickIndex(3);
  ASSERT_EQ(s.frm.vsd.RowCount(), 1);
  EXPECT_EQ(s.Send(), "Submission completed");
  EXPECT_EQ(office.service.Received().size(), 1u);  // the token

  const struct {
    int row, column;
    const char* screen;
  } opened[] = {{0, kCustName, "NewCustFrm"},
                {0, kLoanID, "NewLoanFrm"},
                {3, kID, "PaymentFrm"},
                {2, kAmount, "Invoicefrm"},
                {1, kID, ""}};
  s.frm.StateFilter.PickIndex(0);
  for (const auto& one : opened) {
    s.desk.shown.clear();
    s.frm.vsd.Open(one.row, one.column);
    EXPECT_EQ(s.desk.shown, one.screen);
  }
}

TEST(EInvFrm, EachDocumentGoesToItsAddressAndIsRecorded) {
  Submitting office;
  office.Document("A'1", "C1", "1000.50");
  office.Document("B1", "C9", "0");
  office.Document("B2", "C9", "-3");
  office.Document("D1", "C1", "10");
  office.Document("D1", "C1", "11", "2");  // the record keeps one row, with the last uuid
  Screen1 s(office);
  s.List().frm.vsd.Tick(0, false);
  EXPECT_EQ(s.Send(), "Submission completed");
  EXPECT_FALSE(s.frm.CmdPrint.enabled());
  s.List();
  s.Send();
  const auto received = office.service.Received();
  std::string asked;
  std::set<std::string> bearers;
  for (const Asked& one : received) {
    asked += one.method + " " + one.path + " " + one.about + "\n";
    if (!one.bearer.empty()) bearers.insert(one.bearer);
  }
  EXPECT_EQ(asked,
            "POST /token \nPOST /consolidated B1\nPOST /creditnote B2\nPOST /invoice D1\n"
            "POST /invoice D1\nPOST /invoice A'1\n");
  EXPECT_EQ(bearers.size(), 1u);  // got once
  EXPECT_EQ(office.Lines("SELECT eInvID,SeqNo,TrxDate,CustID,CompCode,LoanID,SchID,InvType,"
                         "InvTaxCode,InvDesc,InvAmt,InvQty,InvStatus,tin FROM EInvMast ORDER BY "
                         "eInvID",
                         "|"),
            "A'1|1|2024-01-05|C1|HQ|L1|3|Interest|06|Interest 3|1000.5|1|1|IG1|\n"
            "B1|1|2024-01-05|C9|HQ|L1|3|Interest|06|Interest 3|0|1|1||\n"
            "B2|1|2024-01-05|C9|HQ|L1|3|Interest|06|Interest 3|-3|1|1||\n"
            "D1|1|2024-01-05|C1|HQ|L1|3|Interest|06|Interest 3|10|1|1|IG1|\n");
  EXPECT_EQ(office.Uuid("D1"), received[4].uuid);
  EXPECT_EQ(s.frm.vsd.Tone(0), RowTone::warn);
  EXPECT_EQ(s.frm.vsd.Cell(0, kUuid), received[5].uuid);
  EXPECT_NE(s.frm.vsd.Cell(0, kMsg).find(received[5].uuid), std::string::npos);
  EXPECT_EQ(s.frm.Msg.text(), s.frm.vsd.Cell(0, kMsg));

  // The status: "Submitted" first, then "Valid", which is not asked again.
  EXPECT_EQ(s.Poll(), "Get Status Complated");
  EXPECT_EQ(s.frm.vsd.Cell(0, kStatus), "Submitted");
  s.Poll();
  EXPECT_EQ(s.Counts(), "Valid (5)");
  const std::size_t before = office.service.Received().size();
  s.Poll();
  EXPECT_EQ(office.service.Received().size(), before);
  EXPECT_EQ(office.Scalar("SELECT LHDNStatus FROM EInvMast WHERE eInvID='B1'"), "Valid");
  EXPECT_NE(office.Scalar("SELECT LHDNQR FROM EInvMast WHERE eInvID='B1'").find(office.Uuid("B1")),
            std::string::npos);

  // Sent again when the person says so, and only then.
  s.frm.vsd.Tick(0, true);
  s.frm.CmdPrint.SetEnabled(true);
  EXPECT_EQ(s.Send(), "Submission completed");
  EXPECT_TRUE(s.desk.WasAsked("were sent before and have a uuid: A'1"));
  EXPECT_EQ(office.service.Received().size(), before);
  s.frm.CmdPrint.SetEnabled(true);
  s.desk.yes.push_back("were sent before");
  s.Send();
  EXPECT_EQ(office.service.Received().size(), before + 1);
  EXPECT_EQ(office.Uuid("A'1"), office.service.Received().back().uuid);
  // The status was that of the one before.
  EXPECT_EQ(s.Counts(), "Sent (1), Valid (4)");
  EXPECT_EQ(office.Lines("SELECT LHDNStatus,LHDNQR FROM EInvMast WHERE eInvID='A''1'", "|"),
            "||\n");
  s.Poll();
  s.Poll();

  // And cancelled.
  s.frm.CmdClear.Click();
  s.frm.SendType.Pick("Cancel");
  EXPECT_EQ(s.frm.vsd.RowCount(), 0);
  s.List();
  EXPECT_FALSE(s.frm.vsd.Ticked(0));
  s.frm.vsd.Tick(1, true);
  const std::size_t sent_before = office.service.Received().size();
  office.session.AllowDelete = false;
  s.Send();
  EXPECT_EQ(office.service.Received().size(), sent_before);
  office.session.AllowDelete = true;
  s.Send();
  const Asked last = office.service.Received().back();
  EXPECT_EQ(last.method + last.path, "PUT/cancel/" + office.Uuid("B1"));
  EXPECT_EQ(office.service.Body(last.number), R"({"reason": "Invoice Cancel"})");
  EXPECT_EQ(office.Scalar("SELECT Canceluuid FROM EInvMast WHERE eInvID='B1'"), last.uuid);
  EXPECT_EQ(s.Counts(), "Valid (4), Cancelled (1)");
}

// What each kind of fault leaves: whether the service took the document, what the office knows,
// and what becomes of the run.
struct FaultCase {
  const char* kind;
  bool taken;
  const char* mark;   // of the document struck
  const char* state;  // at the next listing
  bool ends;          // the run
};
const FaultCase kFaults[] = {
    {"blank", true, "recorded", "Sent", false},   {"slow", true, "recorded", "Sent", false},
    {"broken", true, "recorded", "Sent", false},  // a uuid is a uuid
    {"short", true, "sending", "Unknown", false}, {"empty", true, "sending", "Unknown", false},
    {"500", false, "sending", "Unknown", false},  {"message", false, "refused", "Refused", false},
    {"cut", true, "sending", "Unknown", true},    {"drop-taken", true, "sending", "Unknown", true},
    {"drop", false, "sending", "Unknown", true},
};

// A fault at every request of 200 in turn, each run from where the one before ended. Afterwards:
// nothing is recorded that was not answered, nothing answered that is not recorded or marked, and
// nothing went out twice.
TEST(EInvFrm, AFaultAtEveryDocumentLosesNothingAndSendsNothingTwice) {
  constexpr int kDocuments = 200;
  Submitting office(kDocuments);
  std::string plan;
  std::map<std::string, FaultCase> struck;
  for (int i = 0; i < kDocuments; ++i) {
    const FaultCase& fault = kFaults[static_cast<std::size_t>(i) % std::size(kFaults)];
    plan += fmt::format(R"({}{{"path":"/invoice","after":{},"kind":"{}","seconds":0.01}})",
                        i == 0 ? "" : ",", i, fault.kind);
    struck[fmt::format("D{:04}", i + 1)] = fault;
  }
  office.service.Plan(R"({"faults":[)" + plan + "]}");
  Screen1 s(office);
  s.List();
  int runs = 1;
  for (; s.Send() != "Submission completed"; ++runs) {
    ASSERT_LT(runs, kDocuments);
    EXPECT_TRUE(s.frm.CmdPrint.enabled());  // those that were not sent are still ticked
    for (int row = 0; row < kDocuments; ++row) {
      // What was refused may be mended and sent again: not in this run.
      if (s.frm.vsd.Tone(row) == RowTone::info) s.frm.vsd.Tick(row, false);
    }
  }
  EXPECT_EQ(runs, kDocuments / 10 * 3 + 1);

  std::map<std::string, std::vector<Asked>> sent;
  for (const Asked& one : office.service.Received()) {
    if (one.path == "/invoice") sent[one.about].push_back(one);
  }
  ASSERT_EQ(sent.size(), static_cast<std::size_t>(kDocuments));
  s.List();
  for (int row = 0; row < kDocuments; ++row) {
    const std::string id = s.frm.vsd.Cell(row, kID);
    const FaultCase& fault = struck[id];
    ASSERT_EQ(sent[id].size(), 1u) << id << fault.kind;
    EXPECT_EQ(sent[id].front().fault, fault.kind);
    EXPECT_EQ(sent[id].front().taken, fault.taken) << id << fault.kind;
    EXPECT_EQ(office.Mark(id), fault.mark) << id << fault.kind;
    const bool recorded = std::string(fault.mark) == "recorded";
    EXPECT_EQ(office.Uuid(id), recorded ? sent[id].front().uuid : "") << id << fault.kind;
    EXPECT_EQ(s.frm.vsd.Cell(row, kColumns), fault.state) << id << fault.kind;
  }
  // What is not known goes out again only when the person says so.
  const std::size_t before = office.service.Received().size();
  for (int row = 0; row < kDocuments; ++row) {
    if (s.frm.vsd.Cell(row, kColumns) == "Refused") s.frm.vsd.Tick(row, false);
  }
  office.service.Plan("{}");
  s.Send();
  EXPECT_TRUE(s.desk.WasAsked("not known whether the service took them"));
  EXPECT_EQ(office.service.Received().size(), before);
}

TEST(EInvFrm, WhatAnotherDesktopHasSentSinceItWasListedIsNotSent) {
  Submitting office(3);
  Session second;
  second.AppPath = office.session.AppPath;
  second.clock.Set({2024, 1, 31, 14, 6, 0});
  second.CurrentUserID = "BOB";
  second.CurrentCompCode = "HQ";
  second.CurrentLevel = 4;
  second.MainConn = OpenSqlite("MainConn", office.folder.File("office.db"), false, second.clock);
  Screen1 ours(office), theirs(second);
  ours.List();
  theirs.List().Send();
  const std::size_t before = office.service.Received().size();
  EXPECT_EQ(ours.Send(), "Submission completed");
  EXPECT_EQ(office.service.Received().size(), before);
  EXPECT_EQ(ours.Counts(), "Sent (3)");
  for (int row = 0; row < 3; ++row) {
    EXPECT_TRUE(ours.frm.vsd.Cell(row, kMsg).starts_with("Not sent: BOB ("));
    EXPECT_EQ(ours.frm.vsd.Cell(row, kUuid), office.Uuid(ours.frm.vsd.Cell(row, kID)));
    EXPECT_FALSE(ours.frm.vsd.Ticked(row));
  }
}

TEST(EInvFrm, ATokenThatExpiresEndsTheRunOrIsRenewedWhenThePersonSaysSo) {
  Submitting office(5);
  office.service.Plan(R"({"token_lives":2})");
  Screen1 s(office);
  const auto sent = [&] { return office.Scalar("SELECT COUNT(*) FROM EInvMast"); };
  s.List();
  EXPECT_TRUE(s.Send().starts_with("Stopped."));
  EXPECT_TRUE(s.desk.WasAsked("does not take the token"));
  EXPECT_EQ(sent(), "2");
  EXPECT_EQ(s.frm.vsd.Tone(2), RowTone::info);  // refused, and the run went no further
  EXPECT_EQ(s.frm.vsd.Cell(2, kMsg), R"({"message":"The token has expired"})");
  EXPECT_EQ(s.frm.vsd.Tone(3), RowTone::plain);
  EXPECT_TRUE(s.frm.vsd.Ticked(2) && s.frm.vsd.Ticked(4) && !s.frm.vsd.Ticked(1));
  EXPECT_EQ(s.Counts(), "Unsent (3), Sent (2)");
  s.desk.yes.push_back("Get a new one");
  EXPECT_EQ(s.Send(), "Submission completed");
  EXPECT_EQ(sent(), "5");
  EXPECT_EQ(s.Poll(), "Get Status Complated");  // five questions, and tokens for them
  EXPECT_EQ(s.frm.vsd.Cell(4, kStatus), "Submitted");
  // A service that refuses the new token too is asked for no third one.
  office.service.Plan(R"({"faults":[{"path":"/status","times":0,"kind":"401"}]})");
  EXPECT_EQ(s.Poll(), "The service refuses the new token too.");
}

TEST(EInvFrm, StopLeavesWhatWasNotSentTicked) {
  Submitting office(6);
  Screen1 s(office);
  s.List();
  s.desk.stop_after = 2;  // pressed while the third is on its way
  EXPECT_TRUE(s.Send().starts_with("Stopped."));
  EXPECT_EQ(s.Counts(), "Unsent (3), Sent (3)");
  EXPECT_TRUE(s.frm.vsd.Ticked(3) && !s.frm.vsd.Ticked(2) && s.frm.CmdPrint.enabled());
  s.desk.stop_after = 1;
  s.Poll();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM EInvMast WHERE LHDNStatus <> ''"), "2");
}

// The service answers after the person gave up: it has the document, and the office knows that it
// does not know.
TEST(EInvFrm, WhatWasGivenUpCountsAsUnknown) {
  Submitting office(2);
  office.service.Plan(R"({"faults":[{"path":"/invoice","kind":"slow","seconds":1}]})");
  Screen1 s(office);
  s.frm.patience = std::chrono::milliseconds(50);
  s.List();
  s.desk.stop_after = 0;
  const std::string said = s.Send();
  EXPECT_NE(said.find("may have taken"), std::string::npos) << said;
  EXPECT_EQ(s.Counts(), "Unsent (1), Unknown (1)");
  EXPECT_TRUE(!s.frm.vsd.Ticked(0) && s.frm.vsd.Ticked(1));
  EXPECT_TRUE(office.service.Received().back().taken);
  s.List();
  EXPECT_EQ(s.Counts(), "Unsent (1), Unknown (1)");
  s.desk.stop_after = -1;
  s.Send();
  EXPECT_TRUE(s.desk.WasAsked("not known whether the service took them: D0001"));
  EXPECT_EQ(s.Counts(), "Sent (1), Unknown (1)");
}

// The answer came and could not be recorded.
TEST(EInvFrm, WhatWasAnsweredAndNotRecordedIsKeptAndRecordedLater) {
  Submitting office(3);
  Screen1 s(office);
  s.List();
  for (const char* fails : {"INSERT INTO EInvMast", "COMMIT", "INSERT INTO EInvMast"}) {
    bool struck = false;
    office.session.Main().SetFaultHook([&](std::string_view sql) {
      if (sql.starts_with(fails) && !std::exchange(struck, true)) {
        throw SqlError(1105, "the disk is full");
      }
    });
    EXPECT_TRUE(s.Send().starts_with("an error occur during exporting eInvoicing")) << fails;
    office.session.Main().SetFaultHook({});
  }
  // Each run went on behind the document of the one before.
  ASSERT_EQ(office.service.Received().size(), 4u);
  s.List();
  EXPECT_EQ(s.Counts(), "Unknown (3)");
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(s.frm.vsd.Cell(row, kUuid),
              office.service.Received()[static_cast<std::size_t>(row) + 1].uuid);
  }
  s.Poll();
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM EInvMast WHERE LHDNStatus='Submitted'"), "3");
  EXPECT_EQ(s.Counts(), "Sent (3)");

  // The same of one that was valid and is sent again: it is not taken for valid.
  s.Poll();
  s.frm.vsd.Tick(0, true);
  s.frm.CmdPrint.SetEnabled(true);
  s.desk.yes.push_back("were sent before");
  office.session.Main().SetFaultHook([&](std::string_view sql) {
    if (sql.starts_with("Update EInvMast set uuid")) throw SqlError(1105, "the disk is full");
  });
  s.Send();
  office.session.Main().SetFaultHook({});
  const std::string again = office.service.Received().back().uuid;
  s.List();
  EXPECT_EQ(s.Counts(), "Valid (2), Unknown (1)");
  EXPECT_NE(office.Uuid("D0001"), again);
  s.Poll();
  EXPECT_EQ(office.Uuid("D0001"), again);
  EXPECT_EQ(s.Counts(), "Sent (1), Valid (2)");
}

// What is longer than its column stops nothing behind it.
TEST(EInvFrm, ATextThatDoesNotFitIsToldAndTheOthersAreAskedFor) {
  struct Case {
    const char* plan;
    const char* told;    // of the first of two; "" when all is kept
    const char* stored;  // documents with a status
  };
  const std::string long_status = R"({"statuses":[")" + std::string(60, 's') + R"("]})";
  for (const Case& c :
       {Case{R"({"url_times":30})", "", "2"}, Case{R"({"url_times":40})", "LHDNQR", "2"},
        Case{long_status.c_str(), "LHDNStatus", "0"}}) {
    Submitting office(2);
    Screen1 s(office);
    s.List().Send();
    office.service.Plan(c.plan);
    s.desk.messages.clear();
    s.frm.CmdStatus.Click();
    EXPECT_NE(s.desk.messages.back().find("Get Status Complated"), std::string::npos) << c.plan;
    EXPECT_NE(s.frm.vsd.Cell(0, kMsg).find(c.told), std::string::npos) << c.plan;
    EXPECT_EQ(s.desk.messages.size(), *c.told == '\0' ? 1u : 2u) << c.plan;
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM EInvMast WHERE LHDNStatus<>''"), c.stored)
        << c.plan;
    EXPECT_EQ(office.service.Received().size(), 5u);  // token, two documents, two questions
  }
  // A document that cannot be recorded does not keep the one behind it from its status.
  Submitting office(1);
  office.Document("E1", "C1", "5.00");
  office.Run("UPDATE Docs SET InvDesc=" + QuoteStr(std::string(250, 'd')) +
             " WHERE eInvID='D0001'");
  Screen1 s(office);
  s.List();
  EXPECT_TRUE(s.Send().starts_with("an error occur during exporting eInvoicing"));
  s.List().Send();
  EXPECT_EQ(s.Poll(), "Get Status Complated");
  EXPECT_EQ(s.Counts(), "Sent (1), Unknown (1)");
  EXPECT_EQ(office.Scalar("SELECT LHDNStatus FROM EInvMast WHERE eInvID='E1'"), "Submitted");
}

TEST(EInvFrm, APersonSettlesWhatIsNotKnown) {
  Submitting office(3);
  Screen1 s(office);
  office.service.Plan(R"({"faults":[{"path":"/invoice","times":0,"kind":"empty"}]})");
  s.List().Send();
  s.List();
  ASSERT_EQ(s.Counts(), "Unknown (3)");
  EXPECT_EQ(s.frm.vsd.Tone(0), RowTone::bad);
  const auto settle = [&](int row, const std::string& uuid) {
    s.frm.vsd.Select(row);
    s.desk.input = uuid;
    s.desk.messages.clear();
    s.frm.CmdSettle.Click();
    return s.desk.Said();
  };
  EXPECT_EQ(settle(0, "NOSUCH"), "The service knows no document NOSUCH");
  office.service.Plan(R"({"twice":"same","faults":[{"path":"/status","kind":"cut"}]})");
  EXPECT_TRUE(settle(0, "X").starts_with("an error occur during Get Status"));
  EXPECT_EQ(s.Counts(), "Unknown (3)");
  // The service's own pages show what it gave.
  InvoiceService portal(office.session, office.desk);
  const std::string supplier = portal.LoadSupplier("HQ");
  const auto given_to = [&](int row) {
    return UuidOf(portal.Send("POST", office.service.Url("/invoice"),
                              SubmitBody(s.frm.vsd.Row(row), supplier)));
  };
  const std::string given = given_to(0), of_a_bill = given_to(1);
  EXPECT_EQ(settle(0, given), "");
  EXPECT_EQ(office.Uuid("D0001"), given);
  EXPECT_NE(office.LogText().find("D0001 settled by hand: recorded as " + given),
            std::string::npos);
  EXPECT_EQ(settle(1, given), given + " is the uuid of D0001");
  office.Run("INSERT INTO SelfBillMast (SID,uuid) VALUES ('SB0001'," + QuoteStr(of_a_bill) + ")");
  EXPECT_EQ(settle(1, of_a_bill), of_a_bill + " is the uuid of SB0001");
  // The second is certainly not there: it counts as unsent once the person has said so twice.
  settle(1, "");
  EXPECT_EQ(s.Counts(), "Sent (1), Unknown (2)");
  s.desk.yes.push_back("certainly not with the service");
  settle(1, "");
  EXPECT_EQ(s.Counts(), "Unsent (1), Sent (1), Unknown (1)");
  // The third is just being sent by another desktop: nobody settles or sends it now.
  office.Run(
      "UPDATE EInvSending SET Reply='',SentAt='2024-01-31 14:04:30',UserID='BOB' WHERE "
      "eInvID='D0003'");
  EXPECT_TRUE(settle(2, "U").starts_with("It is being sent this moment"));
  for (const int row : {1, 2}) s.frm.vsd.Tick(row, true);
  s.desk.yes.push_back("again");
  s.desk.messages.clear();
  const std::size_t before = office.service.Received().size();
  s.frm.CmdPrint.Click();
  EXPECT_NE(s.desk.messages.front().find("Being sent this moment and left out: D0003"),
            std::string::npos);
  EXPECT_EQ(office.service.Received().size(), before + 1);
  EXPECT_EQ(s.Counts(), "Sent (2), Unknown (1)");
  // Its sender died: what is sent again now is sent knowingly.
  office.session.clock.Set({2024, 1, 31, 14, 20, 0});
  s.frm.vsd.Tick(2, true);
  s.frm.CmdPrint.SetEnabled(true);
  s.Send();
  EXPECT_EQ(s.Counts(), "Sent (3)");
}

// The service knows the uuid of a document whether it is cancelled or not.
TEST(EInvFrm, ACancellationIsSettledBySayingSoOnlyWhereTheServiceShowsIt) {
  for (const bool taken : {true, false}) {
    Submitting office(1);
    Screen1 s(office);
    s.List().Send();
    s.frm.CmdClear.Click();
    s.frm.SendType.Pick("Cancel");
    s.List();
    s.frm.vsd.Tick(0, true);
    office.service.Plan(taken ? R"({"faults":[{"path":"/cancel","kind":"empty"}]})"
                              : R"({"faults":[{"path":"/cancel","kind":"500"}]})");
    s.Send();
    ASSERT_EQ(s.Counts(), "Unknown (1)");
    s.frm.vsd.Select(0);
    s.desk.input = office.Uuid("D0001");
    s.frm.CmdSettle.Click();
    EXPECT_EQ(s.Counts(), taken ? "Cancelled (1)" : "Unknown (1)");
    EXPECT_EQ(office.Scalar("SELECT isnull(Canceluuid,'') FROM EInvMast"),
              taken ? office.Uuid("D0001") : "");
  }
}

TEST(EInvFrm, WithoutIdentityTokenOrStatementItSaysWhatIsMissing) {
  Submitting office(1);
  Screen1 s(office);
  office.Run("UPDATE CompMast SET ClientID='' WHERE CompCode='HQ'");
  s.frm.CompCode.onPick();
  EXPECT_EQ(s.frm.TokenLBL.Text(), "No token: company HQ has no Client ID");
  EXPECT_TRUE(s.frm.SaveCmd.enabled());
  s.List();
  s.Send();  // goes out all the same, and the service refuses it
  EXPECT_EQ(office.service.Received().back().bearer, "");
  EXPECT_EQ(s.frm.vsd.Tone(0), RowTone::info);

  // Where nothing has left, nothing is unknown, and the tick stays.
  office.Run("UPDATE Systemast SET Value='http://127.0.0.1:1/x' WHERE Param='GetEInvAPIInv'");
  s.frm.Load();
  s.frm.DateFrom.SetText("01-01-2024");
  s.frm.DateTo.SetText("31-01-2024");
  s.List();
  const std::string away = s.Send();
  EXPECT_NE(away.find("Nothing was sent"), away.npos) << away;
  EXPECT_EQ(s.Counts(), "Unsent (1)");
  EXPECT_TRUE(s.frm.vsd.Ticked(0));

  const struct {
    const char* statement;
    const char* said;
  } statements[] = {{"", "There is no statement VKT-Individual"},
                    {"DELETE FROM EInvMast", "does more than read"},
                    {"SELECT 1 AS eInvID", "gives no column SeqNo"},
                    {"SELECT nothing FROM nowhere", ""}};
  for (const auto& one : statements) {
    office.Run(fmt::format("UPDATE DataExport SET SQLStatement={}", QuoteStr(one.statement)));
    s.desk.messages.clear();
    s.List();
    const std::string said = s.desk.Said();
    EXPECT_TRUE(said.starts_with("an error occur during process einvoicing") &&
                said.find(one.said) != said.npos)
        << said;
    EXPECT_FALSE(s.frm.CmdPrint.enabled());
    EXPECT_EQ(s.frm.vsd.RowCount(), 0);
  }
  office.Run("DELETE FROM ECustMast WHERE CustID='HQ'");
  s.frm.CompCode.onPick();
  EXPECT_EQ(s.desk.Said(), "Company E-Invoicing not found, cannot process submition");
  EXPECT_FALSE(s.frm.SaveCmd.enabled() || s.frm.CmdPrint.enabled());
}

// What the service would refuse, a line a fault.
TEST(EInvFrm, TheCheckListNamesWhatTheServiceWouldRefuse) {
  Submitting office;
  const struct {
    const char* change;
    const char* fault;  // "" for a document that is in order
  } cases[] = {
      {"SELECT 1", ""},
      {"UPDATE ECustMast SET Phone='0123'", "phone must begin with +6"},
      {"UPDATE ECustMast SET Phone=''", "phone is missing"},
      {"UPDATE ECustMast SET Email='nobody'", "e-mail has no @"},
      {"UPDATE ECustMast SET State='99'", "state 99 is not in the table"},
      {"UPDATE ECustMast SET Country='MY'", "country MY is not in the table"},
      {"UPDATE ECustMast SET CustType='IC'", "identity type must be NRIC, PASSPORT or BRN"},
      {"UPDATE ECustMast SET CustName='Tan \"Ah\" Kow'", "name has a sign"},
      {"UPDATE ECustMast SET Address='7\r\nJalan'", "address has a sign"},
      {"UPDATE ECustMast SET City='a\\b'", "city has a sign"},
      {"UPDATE ECustMast SET Postcode=NULL", "postcode is missing"},
      {"DELETE FROM eTax;INSERT INTO eTax VALUES ('01','')", "tax code 06 is not in the table"},
      {"DELETE FROM eClass WHERE ClassCode='016'", "classification code 016 is not in the table"},
      {"DELETE FROM eTax", ""},  // a table without rows is not asked
      {"UPDATE Docs SET InvAmt=-1", "column 27, which a credit note gives as its reference number"},
      {"UPDATE Docs SET InvAmt=-1", "the document that it takes back has no uuid"},
      {"UPDATE Docs SET InvAmt=0", "amount is 0"},
      {"UPDATE Docs SET InvDesc='123456789-123456789-123456789-123456789-123456789-123456789-"
       "123456789-123456789-123456789-123456789-123456789-123456789-123456789-123456789-123456789-"
       "123456789-123456789-123456789-123456789-123456789-1'",
       "column 11 has more than 200 characters"},
      {"UPDATE Docs SET eInvID='123456789-123456789-123456789-123456789-123456789-1'",
       "column 1 has more than 50 characters"},
      {"UPDATE Docs SET InvDesc=''", "description is missing"},
      {"INSERT INTO Docs SELECT eInvID,2,TrxDate,CustID,CompCode,LoanID,SchID,InvType,InvDesc,"
       "InvAmt FROM Docs",
       "the number stands in more than one row"},
      {"INSERT INTO CompMast (CompCode) VALUES ('KL');UPDATE DataExport SET SQLStatement="
       "replace(SQLStatement,'d.CompCode,','''KL'' AS CompCode,')",
       "it is a document of company KL"},
  };
  office.Document("D1", "C1", "10");
  const std::string before = office.folder.File("before.db");
  const auto copy = [&](const std::string& from, const std::string& to) {
    office.session.MainConn.reset();
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    office.Open();
  };
  copy(office.folder.File("office.db"), before);
  for (const auto& one : cases) {
    copy(before, office.folder.File("office.db"));
    office.Run(one.change);
    Screen1 s(office);
    s.List();
    ASSERT_GT(s.frm.vsd.RowCount(), 0) << one.change;
    const std::string faults = s.frm.vsd.Cell(0, kColumns + 1);
    EXPECT_NE(faults.find(one.fault), std::string::npos) << one.change << ": " << faults;
    EXPECT_EQ(faults.empty(), *one.fault == '\0') << one.change << ": " << faults;
    EXPECT_TRUE(s.frm.CmdPrint.enabled());  // shown, and stops nobody
  }
  // But the last one would go out in the wrong name.
  Screen1 s(office);
  s.List().frm.CmdPrint.Click();
  EXPECT_NE(s.desk.messages.front().find("of another company and left out: D1"), std::string::npos);
  for (const Asked& one : office.service.Received()) EXPECT_EQ(one.path, "/token");
}

}  // namespace
}  // namespace kaunter
