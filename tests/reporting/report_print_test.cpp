#include <map>

#include "core/log.h"
#include "tests/reporting/report_counter.h"

namespace kaunter {
namespace {

std::string January(const std::string& field) {
  return field + " >= DateTime (2024, 1, 1, 00, 00, 00) AND " + field +
         " <= DateTime (2024, 1, 31, 23, 59, 59)";
}

TEST(ReportPrint, TheOptionBoxesChooseTheForm) {
  struct Case {
    const char* file;
    std::string ticked;  // numbers of the boxes that a person turns
    const char *form, *chinese;
  };
  const Case cases[] = {
      {"LoanMastList.rpt", "", "LoanMastList.rpt", "LoanMastList.rpt"},
      {"LoanMastList.rpt", "1", "LoanMastList.rpt", "LoanMastList.rpt"},
      {"LoanMastList.rpt", "2", "LoanMastList3.rpt", "LoanMastList3.rpt"},
      {"LoanMastList.rpt", "12", "LoanMastList3.rpt", "LoanMastList3.rpt"},
      // Of the two endings for a summary by term the last one wins.
      {"LoanMastList2.rpt", "1", "LoanMastList2.rpt", "LoanMastList2.rpt"},
      {"LoanMastList2.rpt", "2", "LoanMastList2S.rpt", "LoanMastList2S.rpt"},
      {"LoanMastList2C.rpt", "2", "LoanMastList2CS.rpt", "LoanMastList2CS.rpt"},
      {"LoanSchList.rpt", "1", "LoanSchList2.rpt", "LoanSchList2.rpt"},
      {"LoanSchListC.rpt", "1", "LoanSchListC2.rpt", "LoanSchListC2.rpt"},
      {"LoanSchListC.rpt", "2", "LoanSchListC.rpt", "LoanSchListC.rpt"},
      {"PaymentList3.rpt", "2", "PaymentList3S.rpt", "PaymentList3S.rpt"},
      {"PaymentList3C.rpt", "2", "PaymentList3CS.rpt", "PaymentList3CS.rpt"},
      {"Outstanding2.rpt", "2", "Outstanding2S.rpt", "Outstanding2S.rpt"},
      {"Outstanding2C.rpt", "2", "Outstanding2CS.rpt", "Outstanding2CS.rpt"},
      {"PaymentList.rpt", "1", "PaymentList.rpt", "PaymentList.rpt"},
      // These are named by the language in force; landscape is one file for both.
      {"AccountReport.rpt", "", "AccountReport.rpt", "AccountReportC.rpt"},
      {"AccountReport.rpt", "1", "AccountReport2.rpt", "AccountReport2C.rpt"},
      {"AccountReport.rpt", "2", "AccountReport3.rpt", "AccountReport3.rpt"},
      {"AccountReport.rpt", "12", "AccountReport2.rpt", "AccountReport2C.rpt"},
      {"LejarAkuan.rpt", "", "LejarAkuan.rpt", "LejarAkuan.rpt"},
      {"LejarAkuan.rpt", "1", "LejarAkuan60.rpt", "LejarAkuan60.rpt"},
      {"LejarAkuan.rpt", "2", "LejarAkuan.rpt", "LejarAkuan.rpt"},
      {"LejarAkuan.rpt", "12", "LejarAkuan60.rpt", "LejarAkuan60.rpt"},
      {"RekodTrans.rpt", "34", "RekodTrans.rpt", "RekodTrans.rpt"},
      {"RekodTrans.rpt", "2", "RekodTrans2.rpt", "RekodTrans2.rpt"},
      {"DueDate.rpt", "", "DueDate.rpt", "DueDate.rpt"},
  };
  ReportCounter counter;
  for (const bool chinese : {false, true}) {
    counter.office.session.ChineseFlag = chinese;
    for (const Case& c : cases) {
      ReportFrm& frm = counter.OpenJanuary(c.file);
      CheckBox* boxes[] = {&frm.Check1, &frm.Check2, &frm.Check3, &frm.Check4};
      for (char number : c.ticked) {
        CheckBox* box = boxes[number - '1'];
        if (box->Editable()) box->Tick(!box->checked());
      }
      EXPECT_EQ(ReportCounter::FileOf(counter.Print()), chinese ? c.chinese : c.form)
          << c.file << " " << c.ticked;
    }
  }
}

TEST(ReportPrint, OptionsThatChangeTheFormula) {
  ReportCounter counter;
  ReportFrm& ledger = counter.OpenJanuary("LejarAkuan.rpt");
  ledger.Check2.Tick(true);
  EXPECT_EQ(counter.Print()->SelectionFormula,
            January("{LoanMast.LastPaymentDate}") +
                " and  ({LoanMast.CompCode} = 'HQ' )  and {LoanMast.LoanBal} <=0 ");
  ReportFrm& payments = counter.OpenJanuary("PaymentList.rpt");
  payments.Check1.Tick(true);
  const ReportJob* job = counter.Print();
  EXPECT_EQ(job->SelectionFormula,
            January("{PaymentMast.PayDate}") +
                " and  ({PaymentMast.CompCode} = 'HQ' )  and {PaymentMast.NewLoanBal} <= 0 ");
  EXPECT_EQ(job->ReportTitle, "From 01-01-2024 to 31-01-2024,  (Company Code - HQ)  (Settlement)");
  ReportFrm& loans = counter.OpenJanuary("LoanCollateralC.rpt");
  loans.Check1.Tick(true);
  EXPECT_EQ(counter.Print()->SelectionFormula,
            January("{LoanMast.TrxDate}") +
                " and  ({LoanMast.CompCode} = 'HQ' )  and {LoanMast.LoanBal} > 0");
}

TEST(ReportPrint, ParametersByFile) {
  using Fields = std::map<int, std::string>;
  struct Case {
    const char* file;
    std::string ticked;
    Fields fields;
  };
  const Case cases[] = {
      {"PaymentList.rpt", "", {{0, "RptID;True;True"}}},
      {"DueDate.rpt", "", {{0, "RptID;True;True"}, {1, "ToDay;date(2024,01,31);True"}}},
      {"DueDate3C.rpt", "", {{0, "RptID;True;True"}, {1, "ToDay;date(2024,01,31);True"}}},
      {"DueDate4.rpt", "", {{0, "RptID;True;True"}}},
      {"AgingMonth.rpt", "", {{0, "RptID;True;True"}, {1, "ToDay;date(2024,01,31);True"}}},
      {"LoanMastList.rpt", "", {{0, "RptID;True;True"}, {1, ""}}},
      {"LoanMastList.rpt", "2", {{0, "RptID;True;True"}, {1, "ToDate;date(2024,01,31);True"}}},
      {"RekodTrans.rpt",
       "",
       {{0, "RptID;0;True"},
        {1, "ToDay;date(2024,01,31);True"},
        {2, "LastBal;0;True"},
        {3, "SchInt;1;True"}}},
      {"RekodTrans.rpt",
       "34",
       {{0, "RptID;1;True"},
        {1, "ToDay;date(2024,01,31);True"},
        {2, "LastBal;1;True"},
        {3, "SchInt;1;True"}}},
      {"ARInvoice.rpt", "", {{0, "RptID;Invoice;True"}}},
      {"LejarAkuan.rpt", "", {{0, "RptID;B1;True"}}},
      {"Payment Receipt.rpt", "", {{0, "RptID;0;True"}}},
      {"LoanExceedThreshold.rpt", "", {{0, "RptID;True;True"}, {1, "Threshold;25000.00;True"}}},
      {"PaymentExceedThreshold.rpt", "", {{0, "RptID;True;True"}, {1, "Threshold;3000.50;True"}}},
      {"SummaryPnL.rpt",
       "",
       {{0, "RptID;True;True"},
        {1, "Todate;31-01-2024;True"},
        {2, "YearEnd;31-12-2024;True"},
        {3, "Fromdate;01-01-2024;True"}}},
      {"StatementList.rpt", "", {{0, "RptID;True;True"}}},
  };
  ReportCounter counter;
  Session& session = counter.office.session;
  session.Special = true;
  session.settings.SchInt = "1";
  session.settings.LampiranA = "B1";
  session.settings.AMLA = true;
  session.aml.AMLALoan = Money::FromInteger(1);  // left behind by another company's screen
  counter.office.Run(
      "UPDATE CompMast SET AMLA='1',AMLALoan=25000,AMLAPayment=3000.5 WHERE CompCode='HQ'");
  for (const Case& c : cases) {
    ReportFrm& frm = counter.OpenJanuary(c.file);
    CheckBox* boxes[] = {&frm.Check1, &frm.Check2, &frm.Check3, &frm.Check4};
    for (char number : c.ticked) boxes[number - '1']->Tick(true);
    const ReportJob* job = counter.Print();
    ASSERT_NE(job, nullptr) << c.file << ": " << counter.Refusal();
    EXPECT_EQ(job->ParameterFields, c.fields) << c.file << " " << c.ticked;
  }
}

TEST(ReportPrint, TheReceiptFollowsTheSettings) {
  struct Case {
    const char *old_receipt, *own_form, *file, *parameter;
  };
  const Case cases[] = {
      {"", "", "Payment Receipt.rpt", "RptID;0;True"},
      {"True", "", "Payment Receipt Old.rpt", "RptID;1;True"},
      {"0", "", "Payment Receipt Old.rpt", "RptID;0;True"},
      {"", "Our Receipt.rpt", "Our Receipt.rpt", "RptID;0;True"},
      // The office's own form takes the place of the plain receipt alone.
      {"1", "Our Receipt.rpt", "Payment Receipt Old.rpt", "RptID;1;True"},
  };
  ReportCounter counter;
  for (const Case& c : cases) {
    counter.office.session.settings.OldReceipt = c.old_receipt;
    counter.office.Run(
        "DELETE Systemast WHERE Param='OR'; INSERT INTO Systemast (Param,[Value]) "
        "VALUES ('OR'," +
        QuoteStr(c.own_form) + ")");
    counter.OpenJanuary("Payment Receipt.rpt");
    const ReportJob* job = counter.Print();
    EXPECT_EQ(ReportCounter::FileOf(job), c.file);
    EXPECT_EQ(job->ParameterFields.at(0), c.parameter) << c.file;
  }
}

TEST(ReportPrint, AnAgreementIsChosenByTheLoan) {
  ReportCounter counter;
  ReportFrm& frm = counter.OpenJanuary("Agree1.rpt");
  EXPECT_EQ(counter.Print(), nullptr);
  EXPECT_EQ(counter.Refusal(), "Paper: Code From is require");
  EXPECT_EQ(counter.desk.kinds.back(), MessageKind::plain);
  frm.IDFrom.SetText("L2");
  EXPECT_EQ(ReportCounter::FileOf(counter.Print()), "AgreeJ.rpt");
  EXPECT_EQ(frm.IDTo.text(), "L2");
  frm.IDFrom.SetText("L1");
  frm.IDTo.SetText("L1");
  EXPECT_EQ(ReportCounter::FileOf(counter.Print()), "AgreeK.rpt");
}

TEST(ReportPrint, WhatIsMissingIsToldInTheFixedOrder) {
  struct Case {
    const char *file, *from, *to;
    bool company;
    const char* refusal;
    const char* id_to = "";
  };
  const char* no_from = "Paper: Date From is required";
  const char* no_to = "Paper: Date To is required";
  const char* no_company = "Paper: Company code is require";
  const char* check_company = "Paper: Company Code is require, please check";
  const Case cases[] = {
      {"LoanMastList.rpt", "", "", false, no_from},
      {"LoanMastList.rpt", "01-01-2024", "", false, no_to},
      {"LoanMastList.rpt", "01-01-2024", "31-01-2024", false, no_company},
      {"LoanMastList.rpt", "2024", "31-01-2024", true, "Paper: Invalid Date"},
      {"LoanMastList.rpt", "01-01-2024", "31-01-2024", true, ""},
      {"LoanMastList.rpt", "01-01-2024", "31-01-2024", false,
       "Paper: ID To: ' { and } cannot stand in a number. Type it as its record has it.",
       "ZZ{.CompCode}"},
      // Only the two plain names go without a first date.
      {"DueDate.rpt", "", "31-01-2024", true, ""},
      {"DueDate3.rpt", "", "31-01-2024", true, ""},
      {"DueDate.rpt", "", "", true, no_to},
      {"DueDateC.rpt", "", "31-01-2024", true, no_from},
      {"DueDate3C.rpt", "", "31-01-2024", true, no_from},
      {"StatementList.rpt", "01-01-2024", "31-01-2024", false, check_company},
      {"SummaryBS.rpt", "01-01-2024", "", false, no_to},
      {"AccountReportC.rpt", "01-01-2024", "31-01-2024", false, check_company},
      {"RekodTrans.rpt", "01-01-2024", "31-01-2024", false, no_company},
      {"YearlyLoan.rpt", "01-01-2024", "31-01-2024", false, check_company},
      {"LateInterest.rpt", "01-01-2024", "31-01-2024", true, no_company},
      {"CBBalance.rpt", "01-01-2024", "31-01-2024", false, ""},
      {"DailyCollection.rpt", "01-01-2024", "31-01-2024", true, ""},
  };
  ReportCounter counter;
  counter.office.session.CurrentLevel = 3;
  for (const Case& c : cases) {
    ReportFrm& frm = counter.Open(c.file);
    frm.DateFrom.SetText(c.from);
    frm.DateTo.SetText(c.to);
    frm.IDFrom.SetText(c.id_to[0] == '\0' ? "" : "A");
    frm.IDTo.SetText(c.id_to);
    if (c.company) counter.Choose(0, 0);
    counter.Print();
    EXPECT_EQ(counter.Refusal(), c.refusal) << c.file << " " << c.from << " " << c.to;
    if (*c.refusal != '\0') {
      EXPECT_EQ(counter.desk.kinds.back(), MessageKind::critical);
    }
  }
}

TEST(ReportPrint, WhatStagingTellsStandsBetweenTheChecks) {
  using Told = std::vector<std::string>;
  ReportCounter counter;
  const std::vector<MessageKind> information = {MessageKind::information};
  for (const auto& [file, text] :
       {std::pair{"AccountReport.rpt", "Paper: Process Complete"},
        std::pair{"StatementList.rpt", "Paper: Process complete, Press OK to continue"},
        std::pair{"SummaryBS.rpt", "Paper: Process complete, Press OK to continue"}}) {
    counter.OpenJanuary(file);
    ASSERT_NE(counter.Print(), nullptr) << file;
    EXPECT_EQ(counter.desk.messages, Told{text}) << file;
    EXPECT_EQ(counter.desk.kinds, information) << file;
  }
  // A bank in the list shown passes the first check; the company is missed when all is worked out.
  counter.office.session.CurrentLevel = 3;
  counter.office.Run("INSERT INTO BankMast (BankCode) VALUES ('MBB')");
  ReportFrm& frm = counter.Open("AccountReport.rpt");
  frm.DateFrom.SetText("01-01-2024");
  frm.DateTo.SetText("31-01-2024");
  counter.Choose(1, 0);
  EXPECT_EQ(counter.Print(), nullptr);
  EXPECT_EQ(counter.desk.messages,
            (Told{"Paper: Process Complete", "Paper: Company code is require"}));
}

TEST(ReportPrint, ADueDateReportWithoutAFirstDateIsAsAtItsLast) {
  ReportCounter counter;
  ReportFrm& frm = counter.Open("DueDate.rpt");
  frm.DateTo.SetText("29-02-2024");
  const ReportJob* job = counter.Print();
  EXPECT_EQ(job->SelectionFormula, "{LoanMast.NextDueDate} <= DateTime (2024, 2, 29, 23, 59, 59)");
  EXPECT_EQ(job->ReportTitle, "As at 29-02-2024");
}

TEST(ReportPrint, FiguresThatCannotBeWorkedOutStopThePrint) {
  for (const char* file : {"DailyCollection.rpt", "RekodTrans.rpt", "StatementList.rpt",
                           "SummaryPnL.rpt", "AccountReport.rpt"}) {
    ReportCounter counter;
    counter.OpenJanuary(file);
    counter.office.session.Main().SetFaultHook([](std::string_view sql) {
      if (sql.starts_with("INSERT")) throw SqlError(1105, "the disk is full");
    });
    EXPECT_EQ(counter.Print(), nullptr) << file;
    counter.office.session.Main().SetFaultHook({});
    EXPECT_EQ(counter.desk.messages.size(), 1U) << file;
    EXPECT_FALSE(counter.office.session.Main().InTransaction()) << file;
    for (const std::string& line : counter.office.Log()) {
      EXPECT_EQ(line.find("Report Printed"), std::string::npos) << line;
    }
    EXPECT_NE(counter.Print(), nullptr) << file << " prints once the disk has room again";
  }
}

TEST(ReportPrint, APrintIsLoggedUnderItsTitleAndTheScreenStays) {
  ReportCounter counter;
  ReportFrm& frm = counter.OpenJanuary("PaymentList.rpt");
  counter.Print();
  counter.Print();
  EXPECT_FALSE(frm.closed());
  const auto log = counter.office.Log();
  ASSERT_EQ(log.size(), 2U);
  EXPECT_EQ(log[0], "[31-01-2024 02:05:09 PM] [AMY] Paper - Report Printed");
}

TEST(ReportPrint, WithoutTheAuditOrTheSmsDatabaseTheReportSaysSo) {
  ReportCounter counter;
  for (const auto& [file, word] :
       {std::pair{"AuditLogs.rpt", "audit"}, std::pair{"SMSHPList.rpt", "SMS"}}) {
    counter.OpenJanuary(file);
    EXPECT_EQ(counter.Print(), nullptr);
    EXPECT_NE(counter.Refusal().find(word), std::string::npos) << counter.Refusal();
  }
}

TEST(ReportPrint, TheCustomersPhotoIsLaidForOneCustomerAndClearedForAll) {
  ReportCounter counter;
  Session& session = counter.office.session;
  session.PhotoPath = counter.office.folder.File("Photo");
  const std::filesystem::path place = session.AppPath + "/Image/b1.bmp";
  std::filesystem::create_directories(session.PhotoPath + "/C1");
  std::ofstream(session.PhotoPath + "/C1/face.jpg") << "a face";
  counter.office.Run("UPDATE CustMast SET Pic1='face.jpg' WHERE CustID='C1'");
  ReportFrm& frm = counter.OpenJanuary("CustMastList.rpt");
  frm.Check1.Tick(true);
  EXPECT_EQ(counter.Print(), nullptr);
  EXPECT_EQ(counter.Refusal(), "Paper: From ID is required");
  frm.IDFrom.SetText("C1");
  EXPECT_NE(counter.Print(), nullptr);
  EXPECT_EQ(frm.IDTo.text(), "C1");
  std::string laid;
  std::getline(std::ifstream(place), laid);
  EXPECT_EQ(laid, "a face");
  frm.Check1.Tick(false);
  EXPECT_NE(counter.Print(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(place));
}

}  // namespace
}  // namespace kaunter
