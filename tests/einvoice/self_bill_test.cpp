// Self-billed invoices at the counter and at two of them, before a service that behaves and one
// that does not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "einvoice/self_bill_check.h"
#include "einvoice/self_bill_frm.h"
#include "tests/einvoice/invoice_office.h"

namespace kaunter {
namespace {

using testing::HasSubstr;

// Answers each question, and keeps what was asked and told in its order.
struct AnsweringDesk : SilentDesk {
  void Message(MessageKind, std::string_view, std::string_view text) override {
    said.append(text).append("|");
  }
  bool Ask(std::string_view, std::string_view text) override {
    said.append("?").append(text).append("|");
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    return agrees;
  }
  std::string Input(std::string_view, std::string_view, std::string_view) override { return input; }
  std::string said;
  std::string input;
  bool agrees = true;
  std::function<void()> meanwhile;  // while the next question stands
};

// A PC of the office: its own connection, its own screen.
class Counter {
 public:
  explicit Counter(InvoiceOffice& office, const char* user = "AMY") {
    session.AppPath = office.folder.path();
    session.CurrentUserID = user;
    session.CurrentCompCode = "HQ";
    session.CurrentLevel = 4;
    session.AllowEdit = session.AllowDelete = true;
    session.clock.Set({2024, 1, 31, 14, 5, 9});
    session.MainConn =
        OpenSqlite("MainConn", office.folder.File("office.db"), false, session.clock);
    Open();
  }
  void Open() {
    screen = std::make_unique<SelfBillFrm>(session, desk);
    screen->Load();
  }
  void Put(TextBox& box, const std::string& text) {
    box.Enter();
    ASSERT_TRUE(box.Type(text)) << box.name();
    screen->Guard([&] { box.Leave(); });
  }
  void Cell(int row, const char* column, const std::string& text) {
    ASSERT_TRUE(screen->vsd.Edit(row, screen->vsd.ColumnIndex(column), text)) << column;
  }
  // A document of one item.
  void Fill(const std::string& name = "Ahmad bin Ali") {
    SelfBillFrm& s = *screen;
    s.CompCode.Pick("HQ");
    s.SuppIDType.Pick("NRIC");
    const std::pair<TextBox*, const char*> boxes[] = {{&s.InvoiceNo, "A-77"},
                                                      {&s.SuppIDNo, "800101105533"},
                                                      {&s.SuppTin, "IG1"},
                                                      {&s.SuppMiscCode, "64921"},
                                                      {&s.SuppBankAcc, "112"},
                                                      {&s.SuppSST, "W10"},
                                                      {&s.SuppAdd, "7 Jalan\r\nTiga"},
                                                      {&s.SuppPostCode, "43000"},
                                                      {&s.SuppCity, "Kajang"},
                                                      {&s.SuppState, "10"},
                                                      {&s.SuppCountry, "MYS"},
                                                      {&s.SuppTel, "+6012-3456789"},
                                                      {&s.SuppEmail, "a@b.my"}};
    for (const auto& [box, text] : boxes) Put(*box, text);
    Put(s.SuppName, name);
    Cell(0, "Class Code", "016");
    Cell(0, "Description", "Repair");
    Cell(0, "Amount", "1,000.50");
  }
  std::string Press(Button& button) {
    desk.said.clear();
    screen->Guard([&] { button.Click(); });
    return desk.said;
  }
  std::string Save() { return Press(screen->SaveCmd); }
  std::string Load(const std::string& id) {
    desk.said.clear();
    Put(screen->SID, id);
    return desk.said;
  }

  Session session;
  AnsweringDesk desk;
  std::unique_ptr<SelfBillFrm> screen;
};

const std::string kAsked = "?Confirm to save and submit ? |";
const std::string kSent = kAsked + "Record Saved and Submited Successfully|";
const std::string kFailed = kAsked + "Record Saved and Submited Failed, Please Save Again|";

struct Sent {
  int count = 0;
  std::string uuid;  // what the service answered last
};
Sent Submissions(InvoiceOffice& office) {
  Sent sent;
  for (const Asked& one : office.service.Received()) {
    if (one.path != "/selfbill") continue;
    ++sent.count;
    if (!one.uuid.empty()) sent.uuid = one.uuid;
  }
  return sent;
}

void Forget(InvoiceOffice& office) {
  office.Run(
      "DELETE FROM SelfBillMast; DELETE FROM SelfBillTrans; DELETE FROM EInvSending; DELETE FROM "
      "NumberMast");
  office.service.Forget();
}

// Row k leaves check k and every later one unmet.
TEST(SelfBill, WhatIsRequiredIsAskedInItsOrder) {
  InvoiceOffice office;
  Counter counter(office);
  SelfBillFrm& s = *counter.screen;
  s.SelfBillTaxCat.Clear();
  s.TrxDate.Clear();
  const std::pair<const char*, std::function<void()>> steps[] = {
      {"Date required", [&] { counter.Put(s.TrxDate, "31-01-2024"); }},
      {"Company Code required", [&] { s.CompCode.Pick("HQ"); }},
      {"Company Name reqired", [&] { counter.Put(s.SuppName, "Ahmad"); }},
      {"ID Type reqired", [&] { s.SuppIDType.Pick("BRN"); }},
      {"ID No reqired", [&] { counter.Put(s.SuppIDNo, "1"); }},
      {"Tin No reqired", [&] { counter.Put(s.SuppTin, "C1"); }},
      {"Misc Code reqired", [&] { counter.Put(s.SuppMiscCode, "64921"); }},
      {"Address reqired", [&] { counter.Put(s.SuppAdd, "7 Jalan"); }},
      {"Post Code reqired", [&] { counter.Put(s.SuppPostCode, "43000"); }},
      {"City reqired", [&] { counter.Put(s.SuppCity, "Kajang"); }},
      {"State Code reqired", [&] { counter.Put(s.SuppState, "10"); }},
      {"Country Code reqired", [&] { counter.Put(s.SuppCountry, "MYS"); }},
      {"Phone reqired", [&] { counter.Put(s.SuppTel, "+6012"); }},
      {"Tax Code reqired", [&] { s.SelfBillTaxCat.Pick("06"); }},
      {"Item Description required", [&] { counter.Cell(0, "Class Code", "016"); }},
      {"Item No 1  reqired",
       [&] {
         counter.Cell(0, "Description", "Repair");
         counter.Cell(1, "Description", "Paint");
       }},
      {"Item No 2  reqired", [&] { counter.Cell(1, "Class Code", "004"); }},
  };
  for (const auto& [refusal, mend] : steps) {
    EXPECT_EQ(counter.Save(), std::string(refusal) + "|");
    mend();
  }
  EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SelfBillMast"), "0");
  EXPECT_EQ(counter.Save(), kSent);
}

TEST(SelfBill, CellsThatAreNoFigureGoBackToWhatALineBeginsWith) {
  InvoiceOffice office;
  Counter counter(office);
  Grid& items = counter.screen->vsd;
  counter.Cell(0, "Description", "Repair");
  EXPECT_EQ(items.Row(0),
            (std::vector<std::string>{"1", "", "Repair", "1", "0.00", "06", "0.00", "0.00"}));
  EXPECT_EQ(items.RowCount(), 2);
  const std::array<const char*, 4> cases[] = {
      {"Qty", "3", "3", ""},
      {"Qty", "0", "1", "Invalid Qty|"},
      {"Qty", "1.5", "1", "Invalid Qty|"},
      {"Qty", "-2", "1", "Invalid Qty|"},
      {"Qty", "", "1", "Invalid Qty|"},
      {"Qty", "12345678901", "1", "Invalid Qty|"},
      {"Qty", "007", "7", ""},
      {"Amount", "1234.5", "1,234.50", ""},
      {"Amount", "12x", "0.00", "Invalid Amount|"},
      {"Amount", "99999999999", "0.00", "Invalid Amount|"},
      {"Amount", "-3", "-3.00", ""},
      {"Tax %", "six", "0.00", "Invalid Amount|"},
      {"Tax Amount", ".125", "0.13", ""},
      {"Tax Amount", "", "0.00", "Invalid Amount|"},
  };
  for (const auto& [column, typed, shown, said] : cases) {
    counter.desk.said.clear();
    counter.Cell(0, column, typed);
    EXPECT_EQ(items.Cell(0, items.ColumnIndex(column)), shown) << column << typed;
    EXPECT_EQ(counter.desk.said, said) << column << typed;
  }
  // Sums are those of the cells, to the sen.
  counter.Cell(0, "Amount", "0.10");
  counter.Cell(1, "Amount", "0.2");
  counter.Cell(1, "Tax Amount", "7.01");
  EXPECT_EQ(counter.screen->SelfBillAmt.text(), "0.30");
  EXPECT_EQ(counter.screen->SelfBillTaxAmt.text(), "7.01");
  items.Select(1);
  counter.desk.said.clear();
  items.Key("Delete");
  EXPECT_EQ(counter.desk.said, "?Confirm to delete cheque 2 ?|");
  EXPECT_EQ(counter.screen->SelfBillAmt.text(), "0.10");
}

TEST(SelfBill, CapitalsAreNotForAddressesOfMail) {
  InvoiceOffice office;
  Counter counter(office);
  counter.session.settings.CapLock = true;
  counter.Open();
  counter.Fill();
  EXPECT_EQ(counter.screen->SuppName.text() + counter.screen->SuppEmail.text() +
                counter.screen->vsd.Cell(0, 2),
            "AHMAD BIN ALIa@b.myREPAIR");
}

TEST(SelfBill, TheDocumentToTheByte) {
  InvoiceOffice office;
  Counter counter(office);
  counter.Fill();
  counter.Cell(0, "Qty", "2");
  counter.Cell(0, "Tax %", "6");
  counter.Cell(0, "Tax Amount", "60.03");
  counter.Cell(1, "Class Code", "004");
  counter.Cell(1, "Description", "Paint");
  counter.Cell(1, "Amount", "20");
  EXPECT_EQ(counter.Save(), kSent);
  const Asked sent = office.service.Received().back();
  EXPECT_EQ(sent.method + sent.path, "POST/selfbill");
  EXPECT_EQ(sent.about, "SB0001");
  std::string body;
  for (const char* part :
       {R"({"documents":[{"document_number":"SB0001","document_currency": "MYR","supplier": {)",
        R"("tin":"IG1","identity_number":"800101105533","identity_type":"NRIC",)",
        R"("msic_code":"64921","bank_account":"112","sst":"W10",)",
        R"("registration_name":"Ahmad bin Ali","telephone":"+60123456789","email":"a@b.my",)",
        R"("address": {"postal_code":"43000","city":"Kajang","state_code":"10",)",
        R"("country_code":"MYS","addresses": ["7 Jalan Tiga"]}},"customer": {)",
        R"("tin":"C1234567890","identity_number":"200801012344","identity_type":"BRN",)",
        R"("msic_code":"64921","business_activity":"Money lending","bank_account": "",)",
        R"("sst": "","registration_name":"Kaunter Credit Sdn Bhd",)",
        R"("telephone":"+60311112222","email":"hq@office.example","address": {)",
        R"("postal_code":"50000","city":"Kuala Lumpur","state_code":"14",)",
        R"("country_code":"MYS","addresses": ["1 Jalan Satu Taman Dua"]}},"tax": {)",
        R"("tax_amount":60.03,"category":"06"},"total_tax_exclusive":1020.5,)",
        R"("total_tax_inclusive":1080.53,"total_payable":1080.53,"items": [{"id":"1",)",
        R"("quantity":2,"total_amount_excluding_tax":1000.5,"classification_code":"016",)",
        R"("description":"Repair","unit_price":1000.5,"tax": {"tax_amount":60.03,)",
        R"("percent":6,"category":"06"}},{"id":"2","quantity":1,)",
        R"("total_amount_excluding_tax":20,"classification_code":"004",)",
        R"("description":"Paint","unit_price":20,"tax": {"tax_amount":0,"percent":0,)",
        R"("category":"06"}}]}]})"}) {
    body += part;
  }
  EXPECT_EQ(office.service.Body(sent.number), body);
  // A company that calls itself a supplier keeps its name.
  EXPECT_THAT(SelfBillBody({}, R"("supplier": {"registration_name":"a supplier"},)"),
              HasSubstr(R"("customer": {"registration_name":"a supplier"},)"));
}

TEST(SelfBill, WhatIsStoredIsReadAndASentOneIsNotSentAgain) {
  InvoiceOffice office;
  office.OpenAudit();
  Counter counter(office);
  counter.session.settings.TransLogs = true;
  counter.session.LogsConn =
      OpenSqlite("LogsConn", office.folder.File("logs.db"), false, counter.session.clock);
  counter.Fill();
  EXPECT_EQ(counter.Save(), kSent);
  const std::string uuid = office.service.Received().back().uuid;
  SelfBillFrm& s = *counter.screen;
  EXPECT_EQ(s.uuid.text(), uuid);
  EXPECT_EQ(s.UserLBL.Text(), "User ID : AMY Submited at 31-01-2024 2:05 PM");
  EXPECT_FALSE(s.Result.visible());
  EXPECT_EQ(
      office.Lines("SELECT SID,InvoiceNo,TrxDate,CompCode,SuppAdd,SuppTel,SelfBillAmt,"
                   "SelfBillTaxAmt,SelfBillTaxCat,uuid,UserID FROM SelfBillMast",
                   ";"),
      "SB0001;A-77;2024-01-31;HQ;7 Jalan\r\nTiga;+60123456789;1000.5;0;06;" + uuid + ";AMY;\n");
  counter.Cell(1, "Description", "Paint");
  counter.Cell(1, "Class Code", "004");
  counter.Cell(1, "Amount", "5");
  EXPECT_THAT(counter.Save(), HasSubstr("SB0001 saved. It was submitted before"));
  EXPECT_EQ(Submissions(office).count, 1);
  EXPECT_EQ(office.Lines("SELECT * FROM SelfBillTrans ORDER BY SeqNo", ";"),
            "SB0001;1;1;1000.5;0;0;06;016;Repair;\n"
            "SB0001;2;1;5;0;0;06;004;Paint;\n");
  EXPECT_EQ(counter.Press(s.CmdStatus), "Status Submitted|");
  EXPECT_EQ(counter.Press(s.CmdStatus), "Status Valid|");
  office.service.Plan(R"({"faults":[{"path":"/cancel","kind":"500"}]})");
  EXPECT_THAT(counter.Press(s.SSCommand4),
              HasSubstr("whether SB0001 is cancelled is not known. Get its status"));
  EXPECT_EQ(counter.Press(s.SSCommand4),
            "?Confirm to Cancel Selfbill SB0001 ?|Selfbill Cancelled|");
  // The service has cancelled it; the record hears of it by the status.
  EXPECT_EQ(office.Scalar("SELECT SelfBillStatus FROM SelfBillMast"), "Valid");
  EXPECT_EQ(counter.Press(s.CmdStatus), "Status Cancelled|");
  counter.desk.said.clear();
  EXPECT_TRUE(s.RequestClose());
  EXPECT_EQ(counter.desk.said, "");
  EXPECT_EQ(counter.Load("SB0009"), "Record not found|");
  counter.Open();
  EXPECT_EQ(counter.Load("SB0001"), "");
  EXPECT_EQ(counter.screen->SelfBillAmt.text(), "1,005.50");
  EXPECT_EQ(counter.screen->SelfBillStatus.text(), "Cancelled");
  EXPECT_EQ(
      LinesOf(office.session.LogsConn->Query("SELECT Type,Module,Remarks FROM TransLogs"), ";"),
      "Create;Self-Bill;Date /31-01-2024, Supplier /Ahmad bin Ali, Amt 0.00/1,000.50, Tax "
      "0.00/0.00, uuid /;\n"
      "Modify;Self-Bill;Date 31-01-2024/31-01-2024, Supplier Ahmad bin Ali/Ahmad bin Ali, "
      "Amt 1,000.50/1,005.50, Tax 0.00/0.00, uuid " +
          uuid + "/" + uuid +
          ";\n"
          "Cancel;Self-Bill;Date /31-01-2024, Supplier /Ahmad bin Ali, Amt 0.00/1,005.50, "
          "Tax 0.00/0.00, uuid /" +
          uuid + ";\n");
}

// One fault at the submission; then the document is saved again at another PC, and the service
// behaves.
TEST(SelfBill, NothingIsSentTwiceUnasked) {
  const struct {
    const char* kind;
    const char* said;  // by the first save
    bool sent;         // the uuid came
    bool unknown;      // the second save asks first
  } cases[] = {
      {"blank", "Successfully", true, false},
      {"slow", "Successfully", true, false},
      {"401", "Successfully", true, false},     // with another token
      {"broken", "Successfully", true, false},  // the uuid is dug out of it
      {"message", "Please Save Again", false, false},
      {"500", "Please Save Again", false, true},
      {"empty", "Please Save Again", false, true},
      {"cut", "an error occur during submission", false, true},
      {"drop", "an error occur during submission", false, true},
      {"drop-taken", "an error occur during submission", false, true},
  };
  InvoiceOffice office;
  for (const auto& c : cases) {
    Forget(office);
    Counter counter(office);
    counter.Fill();
    office.service.Plan(
        fmt::format(R"({{"faults":[{{"path":"/selfbill","kind":"{}","seconds":0.1}}]}})", c.kind));
    EXPECT_THAT(counter.Save(), HasSubstr(c.said)) << c.kind;
    EXPECT_EQ(office.Scalar("SELECT COUNT(*) FROM SelfBillMast"), "1");
    EXPECT_EQ(counter.screen->uuid.empty(), !c.sent) << c.kind;
    EXPECT_EQ(counter.screen->Result.visible(), !c.sent) << c.kind;
    const int before = Submissions(office).count;
    Counter other(office, "BOB");
    // Sending again what is stored is no change of it.
    other.session.AllowEdit = false;
    other.Load("SB0001");
    if (c.sent) {
      EXPECT_THAT(other.Save(), HasSubstr("not sent again")) << c.kind;
      EXPECT_EQ(Submissions(office).count, before) << c.kind;
    } else if (c.unknown) {
      // Yes to the save, no to the second question.
      other.desk.meanwhile = [&] { other.desk.meanwhile = [&] { other.desk.agrees = false; }; };
      EXPECT_THAT(other.Save(), HasSubstr("was sent on 31-01-2024 14:05:09 by AMY")) << c.kind;
      EXPECT_EQ(Submissions(office).count, before) << c.kind;
      other.desk.agrees = true;
      EXPECT_THAT(other.Save(), HasSubstr("Send it again ?|Record Saved and Submited Succ"));
      EXPECT_EQ(Submissions(office).count, before + 1) << c.kind;
    } else {
      EXPECT_EQ(other.Save(), kSent) << c.kind;
    }
    const std::string uuid = office.Scalar("SELECT uuid FROM SelfBillMast");
    EXPECT_EQ(uuid.size(), 26u) << c.kind;
    EXPECT_TRUE(c.sent || uuid == Submissions(office).uuid) << c.kind;
  }
}

// Each statement of a save fails in turn; the next save asks before it sends what may be there, and
// is told no.
TEST(SelfBill, WhatWasAnsweredIsRecordedByThisSaveOrTheNext) {
  InvoiceOffice office;
  bool hit = true;
  int answered = 0;
  for (int at = 1; hit; ++at) {
    Forget(office);
    Counter counter(office);
    counter.Fill();
    int count = 0;
    hit = false;
    counter.session.Main().SetFaultHook([&](std::string_view) {
      if (++count != at) return;
      hit = true;
      throw SqlError(1105, "the disk is full");
    });
    counter.Save();
    const int sent = Submissions(office).count;
    EXPECT_LE(sent, 1) << at;
    if (office.Scalar("SELECT COUNT(*) FROM SelfBillMast") == "0") {
      EXPECT_EQ(sent, 0) << at;
      continue;
    }
    Counter next(office);
    next.Load("SB0001");
    next.desk.meanwhile = [&] { next.desk.meanwhile = [&] { next.desk.agrees = false; }; };
    next.Save();
    const Sent all = Submissions(office);
    EXPECT_LE(all.count, 1) << at;
    if (sent == 1) {
      ++answered;
      EXPECT_EQ(office.Scalar("SELECT uuid FROM SelfBillMast"), all.uuid) << at;
    }
  }
  EXPECT_GT(answered, 5);
}

// A no to the second try says nothing about the first.
TEST(SelfBill, WhatIsNotKnownStaysSoUntilItIsSent) {
  InvoiceOffice office;
  for (const char* second : {"message", "drop", "401"}) {
    Forget(office);
    Counter counter(office);
    counter.Fill();
    office.service.Plan(fmt::format(R"({{"faults":[{{"path":"/selfbill","kind":"drop-taken"}},
        {{"path":"/selfbill","kind":"{}","after":1,"times":2}}]}})",
                                    second));
    EXPECT_THAT(counter.Save(), HasSubstr("an error occur during submission"));
    counter.Save();  // yes to both questions
    EXPECT_TRUE(counter.screen->uuid.empty()) << second;
    office.service.Plan("{}");
    EXPECT_THAT(counter.Save(), HasSubstr("Send it again ?|Record Saved and Submited Succ"))
        << second;
  }
}

// What the portal shows is recorded without another sending, if it is this document's.
TEST(SelfBill, APersonTellsTheUuidOfWhatTheServiceHas) {
  InvoiceOffice office;
  Counter counter(office);
  counter.Fill();
  counter.Save();
  const std::string first = Submissions(office).uuid;
  counter.Open();
  counter.Fill("Siti");
  office.service.Plan(R"({"faults":[{"path":"/selfbill","kind":"empty"}]})");
  EXPECT_EQ(counter.Save(), kFailed);
  // The service's own number of it: it gives the same one to whoever asks again.
  office.service.Plan(R"({"twice":"same"})");
  InvoiceService portal(office.session, office.desk);
  portal.LoadSupplier("HQ");
  const std::string sent = office.service.Body(office.service.Received().back().number - 1);
  const std::string given = UuidOf(portal.Send("POST", office.service.Url("/selfbill"), sent));
  ASSERT_EQ(given.size(), 26u);
  const int before = Submissions(office).count;
  const auto tell = [&](const std::string& uuid) {
    counter.desk.input = uuid;
    counter.desk.meanwhile = [&] { counter.desk.meanwhile = [&] { counter.desk.agrees = false; }; };
    const std::string said = counter.Save();
    counter.desk.agrees = true;
    return said;
  };
  EXPECT_THAT(tell("NOSUCH"), HasSubstr("The service knows no document NOSUCH"));
  EXPECT_THAT(tell(first), HasSubstr(first + " is the uuid of SB0001"));
  EXPECT_EQ(office.Scalar("SELECT uuid FROM SelfBillMast WHERE SID='SB0002'"), "");
  EXPECT_THAT(tell(given), HasSubstr("Successfully\nThe tax authority has it as it was sent on "
                                     "31-01-2024 14:05:09."));
  EXPECT_EQ(office.Scalar("SELECT uuid FROM SelfBillMast WHERE SID='SB0002'"), given);
  EXPECT_EQ(office.Scalar("SELECT State FROM EInvSending WHERE eInvID='SB0002'"), "recorded");
  EXPECT_EQ(Submissions(office).count, before);
}

TEST(SelfBill, TwoDesktopsOnOneDocument) {
  InvoiceOffice office;
  office.service.Plan(R"({"faults":[{"path":"/selfbill","kind":"message"}]})");
  Counter amy(office);
  amy.Fill();
  EXPECT_EQ(amy.Save(), kFailed);
  EXPECT_THAT(amy.screen->Result.text(), HasSubstr("cannot take it now"));
  Counter bob(office, "BOB");
  bob.Load("SB0001");
  // Bob saves and sends while Amy reads the question.
  amy.desk.meanwhile = [&] { EXPECT_EQ(bob.Save(), kSent); };
  EXPECT_THAT(amy.Save(), HasSubstr("was changed on another desktop"));
  EXPECT_EQ(Submissions(office).count, 2);
  // A status that the other one asks for does not hide what he has changed.
  amy.Open();
  amy.Load("SB0001");
  bob.Put(bob.screen->SuppCity, "Bangi");
  EXPECT_THAT(bob.Save(), HasSubstr("not sent again"));
  amy.Press(amy.screen->CmdStatus);
  amy.Put(amy.screen->SuppName, "Another");
  EXPECT_THAT(amy.Save(), HasSubstr("was changed on another desktop"));
  EXPECT_EQ(office.Scalar("SELECT SuppCity FROM SelfBillMast"), "Bangi");
}

// Two desktops save and send the same few documents for a day, the service fails now and then, and
// nobody agrees to send again what may be there.
TEST(SelfBill, ADayAtTwoDesktopsSendsEachDocumentOnce) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto up_to = [&random](int n) { return std::uniform_int_distribution<int>(0, n)(random); };
  const std::vector<std::string> not_taken = {"message", "500", "drop"};
  const char* kinds[] = {"message", "500", "drop", "cut", "drop-taken", "empty", "401", "blank"};
  InvoiceOffice office;
  Counter amy(office), bob(office, "BOB");
  for (int step = 0; step < 120; ++step) {
    Counter& at = up_to(1) == 0 ? amy : bob;
    Counter& other = &at == &amy ? bob : amy;
    office.service.Plan(
        up_to(2) > 0
            ? "{}"
            : fmt::format(R"({{"faults":[{{"path":"/selfbill","kind":"{}"}}]}})", kinds[up_to(7)]));
    if (up_to(3) == 0 || at.screen->SID.empty()) {
      at.Open();
      if (up_to(2) == 0) {
        at.Fill();
      } else {
        at.Load(fmt::format("SB{:04}", up_to(5) + 1));
      }
    }
    if (at.screen->SID.empty() && at.screen->SuppName.empty()) continue;
    if (up_to(2) == 0) at.Put(at.screen->SuppName, fmt::format("Name {}", step));
    at.desk.said.clear();
    at.desk.agrees = true;
    const bool meets = up_to(3) == 0 && !other.screen->SuppName.empty();
    at.desk.meanwhile = [&] {
      if (meets) {
        other.desk.agrees = true;
        other.desk.meanwhile = [&] { other.desk.meanwhile = [&] { other.desk.agrees = false; }; };
        other.Save();
        other.desk.meanwhile = nullptr;
      }
      at.desk.meanwhile = [&] { at.desk.agrees = false; };
    };
    at.Save();
    at.desk.meanwhile = nullptr;
    if (at.desk.said.find("was changed on another desktop") != std::string::npos) at.Open();
  }
  std::map<std::string, int> taken;
  std::map<std::string, std::string> answered;
  for (const Asked& one : office.service.Received()) {
    if (one.path != "/selfbill" || one.fault == "401") continue;
    if (std::ranges::find(not_taken, one.fault) == not_taken.end()) ++taken[one.about];
    if (!one.uuid.empty()) answered[one.about] = one.uuid;
  }
  EXPECT_FALSE(answered.empty());
  for (const auto& [number, times] : taken) EXPECT_EQ(times, 1) << number;
  for (Recordset rows = office.session.Main().Query("SELECT SID,uuid FROM SelfBillMast");
       !rows.Eof(); rows.MoveNext()) {
    EXPECT_EQ(rows.Field(1).ToText(), answered[rows.Field(0).ToText()]);
  }
}

TEST(SelfBill, WhatTheServiceWouldRefuseIsListed) {
  InvoiceOffice office;
  SelfBill good{.SID = "SB0001",
                .SuppTin = "IG1",
                .SuppIDNo = "8",
                .SuppIDType = "NRIC",
                .SuppMiscCode = "64921",
                .SuppBankAcc = "",
                .SuppSST = "",
                .SuppName = "Ahmad",
                .SuppTel = "+6012",
                .SuppEmail = "",
                .SuppAdd = "7\r\nJalan",
                .SuppPostCode = "43000",
                .SuppCity = "Kajang",
                .SuppState = "10",
                .SuppCountry = "MYS",
                .SelfBillTaxCat = "06",
                .SelfBillAmt = Money::FromText("100"),
                .SelfBillTaxAmt = Money::FromText("6"),
                .items = {{"016", "Repair", "1", Money::FromText("100"), "06", Money::FromText("6"),
                           Money::FromText("6")}}};
  const auto told = [&office](const SelfBill& bill, const char* company = "HQ") {
    std::string all;
    const DocumentCheck check(office.session.Main());
    for (const SelfBillRemark& remark :
         CheckSelfBill(office.session.Main(), check, bill, company)) {
      all += remark.field.english + " " + remark.what.english.substr(0, 14) + "|";
    }
    return all;
  };
  EXPECT_EQ(told(good), "");
  EXPECT_EQ(told(good, ""), "company is missing|");
  office.Run("UPDATE ECustMast SET Phone='03' WHERE CustID='HQ'");
  EXPECT_EQ(told(good), "HQ: phone must begin wit|");
  office.Run("UPDATE ECustMast SET Phone='+603' WHERE CustID='HQ'");
  const std::pair<std::function<void(SelfBill&)>, const char*> cases[] = {
      {[](SelfBill& b) { b.SuppTin = ""; }, "TIN is missing|"},
      {[](SelfBill& b) { b.SuppName = "Ali \"Boy\""; }, "name has a sign tha|"},
      {[](SelfBill& b) { b.SuppAdd = "7\\8"; }, "address has a sign tha|"},
      {[](SelfBill& b) { b.SuppState = "99"; }, "state 99 is not in t|"},
      {[](SelfBill& b) { b.SuppTel = "03"; }, "phone must begin wit|"},
      {[](SelfBill& b) { b.SuppEmail = "x"; }, "e-mail has no @|"},
      {[](SelfBill& b) { b.SelfBillAmt = Money(); }, "total amount is not above 0|"},
      {[](SelfBill& b) { b.items[0].SelfBillDesc = "a\tb"; },
       "item 1: description has a sign tha|"},
      {[](SelfBill& b) { b.items[0].SelfBillClassCode = "9"; },
       "item 1: class code 9 is not in th|"},
      {[](SelfBill& b) { b.items[0].SelfBillQty = "2"; }, "item 1: quantity is not 1: the |"},
      {[](SelfBill& b) { b.items[0].SelfBillTaxAmt = Money(); },
       "item 1: tax amount is not 6.00 % |"},
      {[](SelfBill& b) { b.items.clear(); }, "item is missing|"},
  };
  for (const auto& [spoil, wanted] : cases) {
    SelfBill bill = good;
    spoil(bill);
    EXPECT_EQ(told(bill), wanted);
  }
}

}  // namespace
}  // namespace kaunter
