// A manager of one company, who may do anything below level 4, walks through the whole program and
// looks for another company's rows: each screen in each of its modes, each key typed, each list,
// picker, button and row, all papers and the home page. Whatever belongs to the other company
// begins with ZZ, and its amounts end in .77.
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <filesystem>
#include <set>

#include "app/catalogue.h"
#include "app/menu_table.h"
#include "core/main_frm.h"
#include "core/picker.h"
#include "core/pickers.h"
#include "core/popup_frm.h"
#include "core/schema_text.h"
#include "reporting/report_frm.h"
#include "reports/run_report.h"
#include "tests/core/office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

// {0} begins every name and number, {1} is the company, {2} ends every amount.
const char* const kRecords[] = {
    "CustMast (CustID,CompCode,CustName,CustNIC,CustStatus,TrxDate,DateCreated,CustAdd1,CustHP1,"
    "OldCode,AreaCode,CustRace,TotLoan,TotLoanBal,TotLoanAmt2,TotTopUpAmt) VALUES ('{0}C1','{1}',"
    "'{0} Name','{0}NIC','ACTIVE','2024-01-02','2024-01-02','{0} Street','{0}HP','{0}OLD','A','R',"
    "1{2},1{2},1{2},0)",
    "RefererMast (CustID,RefererName) VALUES ('{0}C1','{0} Referer')",
    "DocumentMast (CustID,DocNo,CompCode,DocDesc) VALUES ('{0}C1','1','{1}','{0} Paper')",
    "NumberMast VALUES ('{0}C1','000','000')",
    "LoanMast (LoanID,CustID,CompCode,TrxDate,DateCreated,LoanAmt,LoanAmt2,PayOutAmt,TotLoanInt,"
    "LoanBal,InsRate,LoanTerm,LoanTerm2,LoanTerm3,LoanTypeID,LoanType,DragLoan,InstallmentAmt,"
    "FirstPayment,LastPayment,NextDueDate,NextCall,LoanGroupID,LoanStatus,OldLoanCode,AgreementNo,"
    "GuarantorName,GuarantorNIC,UserID,TotPay,TotInt,TotDiscAmt,TotCharge,TotCollectorAmt,"
    "LastPaymentDate,SalesmanID,Bank,CollateralID) VALUES ('{0}L1','{0}C1','{1}','2024-01-03',"
    "'2024-01-03',600{2},600{2},600{2},0,600{2},12,'2','0','2','MONTH','Unsecured','0',300{2},"
    "300{2},300{2},'2024-01-10','2024-01-20','{0} Group','ACTIVE','{0}OLDL','','{0} Guarantor',"
    "'{0}GNIC','AMY',100{2},0,0,0,0,'2024-01-12','SAM','MBB','CAR')",
    "LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanBal,LoanTerm,LoanStatus,DragLoan) VALUES "
    "('{0}L9','{0}C1','{1}','2024-01-04',9{2},9{2},'2','ACTIVE','0')",
    "LoanMast (LoanID,CustID,CompCode,TrxDate,LoanBal,LoanGroupID) VALUES ('{0}L8','{0}C1','{1}',"
    "'2019-05-04',9{2},'DALAM TINDAKAN MAHKAMAH')",
    "SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal,Payment,"
    "CapitalPayment,InterestPayment,IntAmt,LateInt) VALUES (1,'{0}L1','{0}C1','2024-01-10',"
    "300{2},300{2},0,300{2},0,0,0,5{2},5{2})",
    "SchMast2 (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal) VALUES "
    "(1,'{0}L1','{0}C1','2024-01-10',300{2},300{2},0,300{2})",
    "PaymentList (LoanID,SeqNo,DueDate,PayDate,PayAmt,PayID) VALUES ('{0}L1',1,'2024-01-10',"
    "'2024-01-31',300{2},'')",
    "PaymentMast (PayID,LoanID,CustID,SchID,CompCode,PayDate,DateCreated,CollectInfoID,PayAmt,"
    "InstalAmt,PayExtra,IntAmt,ChargeAmt,CollectorAmt,DiscAmt,TopUpAmt,IntPay,CapPay,Bank,ChqNo,"
    "ReceiptNo,OldLoanBal,NewLoanBal,PaymentStatus,Settlement,UserID,Memo1,NextDueDate) VALUES "
    "('{0}P1','{0}L1','{0}C1',1,'{1}','2024-01-12','2024-01-12','CASH',100{2},100{2},0,0,0,0,0,0,"
    "0,100{2},'MBB','{0}CHQ','{0}R1',600{2},500{2},'ACTIVE','1','AMY','{0} memo','2024-01-10')",
    "ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,ChargeAmt,LateAmt,LateInt,"
    "ChargeDesc,UserID,DateCreated,PType,BatchDate) VALUES ('{0}I1','2024-01-12','{0}L1','{0}C1',"
    "'{1}','2024-01-10',5{2},300{2},5{2},'{0} Charge','AMY','2024-01-12','Batch','2024-01-12')",
    "ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,ChargeAmt,ChargeDesc,UserID,"
    "DateCreated,PType) VALUES ('{0}I2','2024-01-13','{0}L1','{0}C1','{1}','2024-01-13',5{2},"
    "'{0} Charge','AMY','2024-01-12','Invoice')",
    "DrawDownMast (SID,LoanID,CustID,TrxDate,CompCode,DrawDownAmt,Bank,ChqNo,UserID,Payee) VALUES "
    "('{0}D1','{0}L1','{0}C1','2024-01-03','{1}',600{2},'MBB','{0}CHQ','AMY','{0} Payee')",
    "AppMast (AppID,CompCode,LoanID,CustID,TrxDate,NextDueDate,LoanAmt2,LoanAmt,InsRate,LoanTerm,"
    "DragLoan,LoanTypeID,AppStatus,AppStatus2,ApprovedUser,ApprovedUser2) VALUES ('{0}A1','{1}','',"
    "'{0}C1','2024-01-02','2024-02-10',600{2},600{2},12,'2','0','MONTH','Approved','Approved',"
    "'BOSS','BOSS')",
    "AppMastLink (AppID,CustID,AppType) VALUES ('{0}A1','{0}C1','Applicant')",
    "ChqMast (LoanID,SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt) VALUES ('{0}L1',1,'{0}CHQ','2024-01-10',"
    "'MBB',300{2})",
    "FollowUpMast (HisDate,HisTime,LoanID,HisStatus,HisRemarks,NextCall,UserID,DateCreated) VALUES "
    "('2024-01-12','10:30','{0}L1','CALL','{0} remark','2024-01-20','AMY','2024-01-12')",
    "PersonalExp (CompCode,UserID,TrxDate,CreatedDate,TrxDesc,DebitAmt,CreditAmt,CBCat,Bank) "
    "VALUES "
    "('{1}','AMY','2024-01-05','2024-01-05','{0} Rent',0,50{2},'','MBB')",
    "CashBook "
    "(CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CBType,CatCode) "
    "VALUES ('{1}','2024-01-05','Cash In','{0} Opening','',50{2},50{2},0,'M','')",
    "SupplierMast (SuppID,CompCode,SuppName,TrxDate) VALUES ('{0}S1','{1}','{0} Supplier',"
    "'2024-01-05')",
    "SupplierTrans (TransID,SuppID,LoanID,CustID,CompCode,TrxDate,TransDesc,TransType,TransAmt) "
    "VALUES ('{0}T1','{0}S1','{0}L1','{0}C1','{1}','2024-01-05','{0} Goods','Invoice',50{2})",
    "EInvMast (SeqNo,eInvID,CustID,CompCode,TrxDate,InvDesc,InvAmt) VALUES "
    "(1,'{0}E1','{0}C1','{1}',"
    "'2024-01-05','{0} Invoice',50{2})",
    "SelfBillMast (SID,InvoiceNo,CompCode,TrxDate,SuppName,SelfBillAmt) VALUES ('{0}B1','{0}B1',"
    "'{1}','2024-01-05','{0} Supplier',50{2})",
    "GoldTransMast (LoanID,CustID,CompCode,TrxDate,PayAmt) VALUES ('{0}G1','{0}C1','{1}',"
    "'2024-01-05',50{2})",
    "LoanCollateral (LoanID,SeqNo,CustID,CompCode,GoldID,GoldDesc,Weight,LoanAmt,SoldAmt,SoldDate) "
    "VALUES ('{0}G1',1,'{0}C1','{1}','NIL','{0} Ring',1{2},50{2},60{2},'2024-01-06')",
    "AMLATrans (TrxID,TrxDate,Name1,NRIC,CustID,TransAmt,CompCode) VALUES ('{0}S1','2024-01-12',"
    "'{0} Name','{0}NIC','{0}C1',100{2},'{1}')",
};
const char* const kKeys[] = {"C1",  "L1",  "L9",   "P1", "I2",   "D1", "A1",
                             "NIC", "OLD", "OLDL", "R1", "GNIC", "G1", "S1"};

// What is told of a person, whatever the company: who stands behind an identity number, and what a
// customer of ours owes in all.
bool IsOfThePerson(std::string_view where) {
  return where == "frmNIC.CustName" || where == "NewCustFrm.GlanceLBL" ||
         where.starts_with("NewCustFrm.Sum");
}

struct Walk : SilentDesk {
  Walk() {
    Session& session = office.session;
    session.CurrentUserID = "AMY";
    session.CurrentLevel = 3;
    session.CurrentCompCode = "HQ";
    session.AllowEdit = session.AllowDelete = session.AllowDisc = true;
    office.Run("INSERT INTO CompMast (CompCode,CompDesc,SerialReceiptNo) VALUES ('KL','KL','0')");
    office.Run(
        "INSERT INTO UserMast (UserID,UserName,UserLevel,CompCode,AllowEdit,AllowDelete) "
        "VALUES ('AMY','Amy','3','HQ',1,1)");
    for (const char* record : kRecords) {
      office.Run("INSERT INTO " + fmt::format(fmt::runtime(record), "AA", "HQ", "0"));
      office.Run("INSERT INTO " + fmt::format(fmt::runtime(record), "ZZ", "KL", "7.77"));
    }
    // A customer of ours borrowed from the other company as well.
    office.Run(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanAmt2,PayOutAmt,"
        "LoanBal,LoanTerm,LoanStatus,LoanGroupID,NextDueDate,DragLoan,GuarantorNIC) VALUES "
        "('ZZL2','AAC1','KL','2024-01-04',907.77,907.77,907.77,907.77,'2','ACTIVE','ZZ Group',"
        "'2024-01-10','0','AANIC')");
    office.Run(
        "INSERT INTO DataExport (SID,SQLStatement) VALUES ('Loans','SELECT l.LoanID,l.LoanAmt FROM "
        "LoanMast as l WHERE 1=1 @gcc'),('VKT-Individual','SELECT d.eInvID,d.SeqNo,d.TrxDate,"
        "d.CustID,c.CustName,d.CompCode,d.LoanID,d.SchID,d.InvType,d.InvTaxCode AS TaxType,"
        "d.InvDesc,d.InvAmt,1 AS Qty,e.tin,e.CustTypeID,e.CustType,e.Phone,e.Email,e.Address,"
        "e.Postcode,e.City,e.State,e.Country FROM EInvMast AS d LEFT JOIN CustMast AS c ON "
        "c.CustID=d.CustID LEFT JOIN ECustMast AS e ON e.CustID=d.CustID WHERE "
        "d.CompCode=@CompCode');"
        "INSERT INTO ECustMast (CustID,TIN) VALUES ('HQ','C1'),('KL','C2')");
    office.Run(
        "INSERT INTO SMSMast (TID,TName,SMSContent) VALUES ('AAT1','Due','{Customer Name} {Loan "
        "Amt}')");
    session.smsconn = OpenSqlite("smsconn", office.folder.File("sms.db"), true, session.clock);
    RunScript(*session.smsconn, SchemaText("sms"));
    session.AED = OpenSqlite("AED", office.folder.File("aed.db"), true, session.clock);
    RunScript(*session.AED, SchemaText("accounting"));
    for (const auto& [mark, company] : {std::pair{"AA", "HQ"}, {"ZZ", "KL"}}) {
      session.smsconn->Execute(
          fmt::format("INSERT INTO SMSList (CustName,CompCode,HP,SMSMsg,SMSStatus,DateSent) VALUES "
                      "({0},{1},'60121','text','FAIL','2024-01-12')",
                      QuoteStr(mark), QuoteStr(company)));
    }
    office.Run(
        "INSERT INTO AMLACopyHead (CopyID,CopyDate,Entries,Finished) VALUES (1,'2024-01-30',2,'1');"
        "INSERT INTO AMLACopy (CopyID,EntryNo,Name) VALUES (1,1,'AA Name'),(1,2,'ZZ Name')");
    for (const auto& file : std::filesystem::directory_iterator(test::SourceDir() + "/reports")) {
      std::filesystem::create_symlink(file.path(),
                                      office.folder.File(file.path().filename().string()));
    }
  }

  // --- looking

  void Look(std::string_view where, std::string text) {
    const auto without = [&text](const std::string& part) {
      for (std::size_t at; !part.empty() && (at = text.find(part)) != std::string::npos;) {
        text.erase(at, part.size());
      }
    };
    without(folder_name);  // by chance it has a mark in it
    if (text.find("AA") != std::string::npos) ++own[std::string(where.substr(0, where.find('.')))];
    without(typed);
    if (text.find("ZZ") == std::string::npos && !text.ends_with(".77")) return;
    if (!IsOfThePerson(where)) leaks.emplace(fmt::format("{} shows {}", where, text), act);
  }

  void Look(Screen& screen) {
    for (Control* control : screen.controls()) {
      const std::string where = screen.name() + "." + control->name();
      Look(where, control->Text());
      if (const auto* grid = dynamic_cast<const Grid*>(control)) {
        for (int row = 0; row < grid->RowCount(); ++row) {
          for (const std::string& cell : grid->Row(row)) Look(where, cell);
        }
      } else if (const auto* box = dynamic_cast<const ComboBox*>(control)) {
        for (const std::string& item : box->items()) Look(where + " list", item);
      }
    }
    for (const std::string& message : messages) Look(screen.name() + " message", message);
    messages.clear();
  }

  bool Ask(std::string_view, std::string_view text) override {
    messages.emplace_back(text);
    return yes;
  }
  bool CanShow(std::string_view name) const override { return ScreenExists(name); }
  // A picker gives its first row; what another screen shows is looked at.
  void Show(std::string_view name) override {
    if (auto screen = MakeScreen(name, office.session, *this)) ShowModal(*screen);
  }
  void ShowModal(Screen& screen) override {
    if (depth > 2) return;
    ++depth;
    screen.Guard([&] { screen.Load(); });
    Look(screen);
    if (auto* popup = dynamic_cast<PopupFrm*>(&screen)) {
      for (const char* search : {"Z", ""}) {
        popup->SearchString.Type(search);
        popup->SearchCmd.Click();
        Look(screen);
      }
      popup->DG.Select(0);
      popup->SaveCmd.Click();
    }
    --depth;
  }
  void Print(const ReportJob& job) override {
    const std::string paper = std::filesystem::path(job.ReportFileName).filename().string();
    for (const std::string& formula : {job.SelectionFormula, std::string()}) {
      ReportJob any = job;
      any.SelectionFormula = formula;
      const ReportRun run = RunWholeReport(any);
      for (const auto& row : run.rows.rows()) {
        for (const Value& value : row) Look(paper, value.ToText());
      }
    }
  }

  // --- acting

  template <typename Do>
  void Act(Screen& screen, std::string what, const Do& act_now) {
    act = std::move(what);
    screen.Guard(act_now);
    Look(screen);
  }

  std::unique_ptr<Screen> Open(const MenuEntry& entry) {
    office.session.CallerTag = entry.command;
    office.session.MsgTitle = entry.title;
    office.session.settings.LinkAcc = entry.target == "LinkResendfrm" ? "1" : "";
    auto screen = MakeScreen(entry.target, office.session, *this);
    Act(*screen, "opened", [&] { screen->Load(); });
    return screen;
  }

  void TypeKey(Screen& screen, TextBox& box, const std::string& key) {
    if (!box.Editable() || box.kind() != Kind::text) return;
    typed = key;
    Act(screen, "typed " + key + " in " + box.name(), [&] {
      box.Enter();
      box.Type(key);
      box.Leave();
    });
  }

  void TypeKeys(Screen& screen, const std::string& mark) {
    for (Control* control : screen.controls()) {
      auto* box = dynamic_cast<TextBox*>(control);
      if (box == nullptr) continue;
      for (const char* key : kKeys) {
        TypeKey(screen, *box, mark + key);
        if (screen.closed()) return;
      }
      TypeKey(screen, *box, "");
    }
    typed.clear();
  }

  // The own loan or customer, and dates that leave nothing out.
  void FillOwn(Screen& screen) {
    const std::pair<const char*, const char*> own_keys[] = {
        {"CustID", "AAC1"},  {"LoanID", "AAL9"},   {"LoanID", "AAL1"},
        {"PayID", "AAP1"},   {"AppID", "AAA1"},    {"SID", "AAD1"},
        {"CustIC", "AANIC"}, {"ChargeID", "AAI2"}, {"TID", "AAT1"}};
    for (const auto& [name, key] : own_keys) {
      if (auto* box = dynamic_cast<TextBox*>(screen.Find(name))) TypeKey(screen, *box, key);
    }
    for (const char* name : {"DateFrom", "CalSearchFr"}) {
      if (auto* box = dynamic_cast<TextBox*>(screen.Find(name))) box->SetText("01-01-2000");
    }
    for (const char* name : {"DateTo", "CalSearchTo"}) {
      if (auto* box = dynamic_cast<TextBox*>(screen.Find(name))) box->SetText("31-01-2024");
    }
    typed.clear();
    if (auto* kept = dynamic_cast<ComboBox*>(screen.Find("SQLID"))) {  // before it is deleted
      Act(screen, "ran " + kept->name(), [&] {
        kept->PickIndex(0);
        dynamic_cast<Button&>(*screen.Find("SaveCmd")).Click();
      });
    }
  }

  void UseAll(Screen& screen) {
    const auto controls = screen.controls();
    for (Control* control : controls) {
      if (screen.closed()) return;
      const std::string name = control->name();
      if (auto* box = dynamic_cast<TextBox*>(control); box != nullptr && box->onSearch) {
        Act(screen, "searched at " + name, [&] { box->onSearch(); });
      } else if (auto* grid = dynamic_cast<Grid*>(control)) {
        for (int row = 0; row < std::min(3, grid->RowCount()); ++row) {
          Act(screen, "opened a row of " + name, [&] { grid->Open(row, 0); });
        }
      } else if (auto* button = dynamic_cast<Button*>(control)) {
        Act(screen, "pressed " + name, [&] { button->Click(); });
      }
    }
    for (Control* control : controls) {
      auto* list = dynamic_cast<ComboBox*>(control);
      if (list == nullptr || !list->Active() || screen.closed()) continue;
      for (int item = 0; item < std::min(8, static_cast<int>(list->items().size())); ++item) {
        Act(screen, "picked in " + list->name(), [&] { list->PickIndex(item); });
      }
    }
  }

  void GoThrough(const MenuEntry& entry) {
    Session& session = office.session;
    TypeKeys(*Open(entry), "ZZ");
    // As somebody who came by way of another company's record would find the screen.
    for (std::string* hand_over : {&session.HandOverLoanID, &session.HandOverCustID}) {
      *hand_over = typed = hand_over == &session.HandOverLoanID ? "ZZL1" : "ZZC1";
      Open(entry);
      hand_over->clear();
      typed.clear();
    }
    for (const bool agrees : {false, true}) {
      yes = agrees;
      (yes ? session.HandOverCustID : session.HandOverLoanID) = yes ? "AAC1" : "AAL1";
      auto screen = Open(entry);
      FillOwn(*screen);
      UseAll(*screen);
      session.HandOverLoanID = session.HandOverCustID = "";
    }
  }

  // With whatever company the lists offer.
  void PrintAll(const MenuEntry& entry) {
    office.session.MsgTitle = entry.title;
    office.session.ReportFile = entry.target;
    ReportFrm screen(office.session, *this);
    Act(screen, "opened", [&] { screen.Load(); });
    screen.DateFrom.SetText("01-01-2000");
    screen.DateTo.SetText("31-01-2024");
    for (const bool chosen : {false, true}) {
      if (chosen) screen.InAll.Click();
      Act(screen, "printed " + entry.target, [&] { screen.SaveCmd.Click(); });
    }
  }

  Office office{Office::State::patched};
  const std::string folder_name = std::filesystem::path(office.folder.path()).filename().string();
  std::map<std::string, std::string> leaks;  // with the act that showed it first
  std::string act;
  std::string typed;
  bool yes = false;
  std::map<std::string, int> own;  // by screen or paper, how often it showed what it should
  int depth = 0;
};

void ExpectNoLeak(const Walk& walk, const MenuEntry& entry) {
  for (const auto& [leak, act] : walk.leaks) {
    ADD_FAILURE() << entry.name << " " << entry.target << ": " << leak << " (" << act << ")";
  }
}

// Screens of the office itself: codes, settings, users, a calculation, a run over all loans; a list
// that shows what its caller selects; one for level 4 alone. A bank's file is of all companies.
const std::set<std::string> kWithoutRecords = {
    "AboutFrm",     "AccessDB",          "AMLADescFrm",   "BackupFrm",         "MoveOfficeFrm",
    "BatchListfrm", "ChangePasswordfrm", "CompCodeFrm",   "CompProfileFrm",    "HolidayFrm",
    "ISSetupfrm",   "SIProcessfrm",      "LateIntfrm",    "LinkAccSetupfrm",   "LinkDBfrm",
    "LoanCalcfrm",  "MoveInFrm",         "OwnReportsFrm", "RecalcCashBookFrm", "RecalcReceiptNo",
    "ReceiptNoFrm", "SetupFrm",          "UserFrm",       "VerifyLedgerFrm"};

TEST(OtherCompany, NoScreenShowsItsRows) {
  std::vector<MenuEntry> entries = MenuTable();
  for (const std::string& name : ScreenNames()) {  // those that no menu entry opens
    MenuEntry& entry = entries.emplace_back();
    entry.action = MenuAction::screen;
    entry.name = entry.title = entry.target = name;
  }
  std::map<std::string, int> own;
  std::set<std::string> walked;
  for (const MenuEntry& entry : entries) {
    if (entry.action != MenuAction::screen || !ScreenExists(entry.target)) continue;
    if (entry.name == entry.target && walked.contains(entry.target)) continue;
    if (entry.target == "PopupFrm" || entry.target == "ReportFrm") continue;
    if (entry.target == "PhotoBrowseFrm") continue;  // folders of the PC, whatever their names
    walked.insert(entry.target);
    Walk walk;
    walk.GoThrough(entry);
    ExpectNoLeak(walk, entry);
    for (const auto& [name, count] : walk.own) own[name] += count;
  }
  for (const std::string& name : walked) {
    EXPECT_TRUE(own[name] > 0 || kWithoutRecords.contains(name)) << name << " showed nothing";
  }
}

TEST(OtherCompany, NoPickerShowsItsRows) {
  Walk walk;
  for (const Picker& picker : AllPickers()) {
    // The first two find a person in the other office's database, and in the whole of this one.
    if (picker.linked || picker.name == "ICPop") continue;
    walk.own.clear();
    walk.act = picker.name;
    Pick(walk.office.session, walk, picker.name, "", picker.name == "SchPop" ? "AAL1" : "");
    EXPECT_TRUE(walk.own["PopupFrm"] > 0 || picker.company.empty()) << picker.name;
  }
  ExpectNoLeak(walk, {});
}

TEST(OtherCompany, NoPaperShowsItsRows) {
  Walk walk;
  for (const MenuEntry& entry : MenuTable()) {
    if (entry.action == MenuAction::report) walk.PrintAll(entry);
  }
  ExpectNoLeak(walk, {});
  EXPECT_GT(walk.own.size(), 40u);
}

TEST(OtherCompany, TheHomePageShowsNothingOfIt) {
  Walk walk;
  MainFrm home(walk.office.session, walk, MenuTable(), ScreenExists);
  home.FillAtStart();
  for (MenuEntry& entry : home.menu().entries()) entry.visible = true;
  walk.Act(home, "signed in", [&] {
    home.RefreshMainLists();
    home.home().SignedIn();
    home.home().Refresh();
  });
  for (const Grid* grid : {&home.LS1, &home.LS2, &home.home().OverdueDG}) {
    EXPECT_GE(grid->RowCount(), 1) << grid->name();
  }
  walk.UseAll(home);
  for (const MenuEntry& entry : home.menu().entries()) {
    if (entry.action != MenuAction::direct_list) continue;
    walk.Act(home, entry.name, [&] { EXPECT_TRUE(home.ChooseMenu(entry.name)) << entry.name; });
  }
  ExpectNoLeak(walk, {});
}

}  // namespace
}  // namespace kaunter
