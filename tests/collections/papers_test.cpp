// The papers that come with the program, printed from stored rows: receipts, reminders, invoices,
// the settlement letter. What they say is worked out by hand from the rows below.
#include <gtest/gtest.h>

#include "reports/run_report.h"
#include "screen/report_job.h"
#include "tests/loans/loan_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

class PapersTest : public ::testing::Test, protected LoanOffice {
 protected:
  PapersTest() {
    office.Run(
        "UPDATE CompMast SET CompDesc='O''Brien & Co',CompNo='2004-A',Tel1='03-55',"
        "Address='No. 1' + char(13) + char(10) + 'Ipoh' WHERE CompCode='HQ';"
        "UPDATE CustMast SET CustNIC='800101-14-5533',CustAdd1='12 Jalan Raja',CustCity='Ipoh';"
        "INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('HQ0002','HQ','Lim')");
    for (const auto& [loan, customer] : {std::pair{"L1", "HQ0001"}, std::pair{"L2", "HQ0002"}}) {
      office.Run(fmt::format(
          "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanBal,NextDueDate,"
          "TotCollectorAmt,TotInt,OldLoanCode) VALUES ('{0}','{1}','HQ','2023-10-31',1200,224,"
          "'2023-12-31',12.5,-2.5,'');"
          "INSERT INTO SchMast (LoanID,SchID,CustID,DueDate,PayableAmt,Payment) VALUES "
          "('{0}',1,'{1}','2023-11-30',112,112),('{0}',2,'{1}','2023-12-31',112,12),"
          "('{0}',3,'{1}','2024-01-30',112,0),('{0}',4,'{1}','2024-01-31',112,0)",
          loan, customer));
    }
  }

  void Pay(const std::string& id, const std::string& status, const std::string& amounts) {
    office.Run(fmt::format(
        "INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PaymentStatus,"
        "CollectInfoID,Bank,ChqNo,UserID,NewLoanBal,NextDueDate,PayAmt,PayExtra,IntAmt,ChargeAmt,"
        "CollectorAmt,DiscAmt) VALUES ('{}','L1','HQ0001','HQ','2024-01-31','{}','CASH','CASH','',"
        "'AMY',212,'2024-01-31',{})",
        id, status, amounts));
  }

  void Charge(const std::string& id, const std::string& type, const std::string& amount) {
    office.Run(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,ChargeAmt,"
        "ChargeDesc,PType) VALUES ('{}','2024-01-15','L1','HQ0001','HQ','2024-01-15',{},"
        "'For {}','{}')",
        id, amount, type, type));
  }

  // A page a text, each text of it before a bar.
  std::vector<std::string> Print(const std::string& file, const std::string& formula,
                                 const std::vector<std::string>& parameters = {}) {
    ReportJob job;
    job.ReportFileName = std::string(test::SourceDir() + "/reports/") + file;
    job.SelectionFormula = formula;
    job.Connect = &main();
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      job.ParameterFields[static_cast<int>(i)] = parameters[i];
    }
    std::vector<std::string> pages;
    const ReportDocument document = RunWholeReport(job).document;
    for (const ReportPage& page : document.pages) {
      pages.emplace_back();
      for (const PageText& text : page.texts) pages.back() += text.text + "|";
    }
    return pages;
  }

  static void ExpectAll(const std::string& page, std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      EXPECT_NE(page.find(text), std::string::npos) << text << "\n" << page;
    }
  }
  static void ExpectNone(const std::string& page, std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      EXPECT_EQ(page.find(text), std::string::npos) << text << "\n" << page;
    }
  }
};

TEST_F(PapersTest, AReceiptAddsUpAndLeavesOutWhatIsNot) {
  Pay("L1-001", "ACTIVE", "1000,0,12.50,0,10,5");
  // As the settlement writes it: no split of the payment, nulls where nothing is known.
  Pay("L1-002", "VOID", "200,NULL,NULL,NULL,NULL,NULL");
  for (const char* file : {"Payment Receipt.rpt", "Payment Receipt Old.rpt"}) {
    const auto pages = Print(file, "{PaymentMast.LoanID}='L1'", {"RptID;0;True"});
    ASSERT_EQ(pages.size(), 2u);
    // 1000 + 12.50 + 10 - 5
    ExpectAll(pages[0],
              {"O'Brien & Co|Registration No. 2004-A|No. 1|Ipoh|Tel. 03-55|", "Tan 'Ah' Kow|",
               "RM 1,017.50|Instalment|1,000.00|Late interest|12.50|", "Collector's fee|10.00|",
               "Discount|-5.00|", "|CASH|", "RM 212.00|", "Received by AMY|"});
    ExpectNone(pages[0], {"Extra capital", "Other charges", "VOID", "Remarks", "()", "CASH ·"});
    ExpectAll(pages[1], {"THIS PAYMENT IS VOID|", "RINGGIT MALAYSIA TWO HUNDRED ONLY|",
                         "RM 200.00|Instalment|200.00|Received|RM 200.00|"});
    const bool twice = pages[0].find("Office copy|") != std::string::npos;
    EXPECT_EQ(twice, std::string(file).find("Old") != std::string::npos);
  }
}

// Of 31-01-2024: 100 of December and all of 30-01 are late, the row of today is next.
TEST_F(PapersTest, WhatAReceiptSaysOfTheLoan) {
  Pay("L1-001", "ACTIVE", "112,0,0,0,0,0");
  Pay("L1-002", "ACTIVE", "112,0,0,0,0,0");
  office.Run(
      "UPDATE PaymentMast SET TopAmt=0,TopTerm=0,IntPay=0,CapPay=0;"
      "UPDATE LoanMast SET LastPaymentNo='L1-002',DragLoan='0',TotInt=-12.5 WHERE LoanID='L1';"
      "INSERT INTO UserMast (UserID,UserName,UserLevel) VALUES ('AMY','Amy Lim','1')");
  const struct {
    const char* change;
    std::vector<const char*> says;
    std::vector<const char*> not_said;
    const char* payment = "L1-002";
  } kCases[] = {
      {"",
       {"Received by Amy Lim|", "|RM 212.00, since 31-12-2023|", "|Next due|31-01-2024|"},
       {"AMY", "Paid in full", "Late interest owed", "Topped up", "of it capital"}},
      // An older receipt tells nothing of today.
      {"", {"|RM 212.00|"}, {"overdue", "Next due"}, "L1-001"},
      {"UPDATE PaymentMast SET NextDueDate='2024-02-29'", {"|Next due|29-02-2024|"}, {}, "L1-001"},
      {"UPDATE SchMast SET Payment=PayableAmt WHERE SchID < 4", {"|Next due|31-01"}, {"overdue"}},
      // No more than is owed, on a flexi loan with the interest of its rows.
      {"UPDATE LoanMast SET LoanBal=150", {"|RM 150.00, since"}, {}},
      {"UPDATE LoanMast SET LoanBal=150,DragLoan='1'; UPDATE SchMast SET InterestAmt=7 WHERE "
       "SchID=3",
       {"|RM 157.00, since"},
       {}},
      {"UPDATE LoanMast SET TotInt=0", {"|Late interest owed|RM 12.50|"}, {}},
      // Settled: nothing is due, and it is paid in full when no late interest is left.
      {"UPDATE LoanMast SET LoanBal=0; UPDATE PaymentMast SET NewLoanBal=0",
       {"|RM 0.00 · Paid in full|"},
       {"Next due", "overdue"}},
      {"UPDATE LoanMast SET LoanBal=0,TotInt=-10; UPDATE PaymentMast SET NewLoanBal=0",
       {"|Late interest owed|RM 2.50|"},
       {"Paid in full", "Next due"}},
      {"UPDATE PaymentMast SET TopAmt=50,TopTerm=3,IntPay=12,CapPay=100",
       {"|RM 150.00, 3 instalment(s) of RM 50.00|", "of it capital|100.00|of it interest|12.00|"},
       {}},
      {"DELETE FROM UserMast", {"Received by AMY|"}, {}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.change);
    main().BeginTrans();
    if (*c.change != 0) office.Run(c.change);
    const auto pages =
        Print("Payment Receipt.rpt", fmt::format("{{PaymentMast.PayID}}='{}'", c.payment));
    main().RollbackTrans();
    for (const char* text : c.says) ExpectAll(pages.at(0), {text});
    for (const char* text : c.not_said) ExpectNone(pages.at(0), {text});
  }
}

TEST_F(PapersTest, AReminderListsWhatIsOverdueToday) {
  office.Run("UPDATE LoanMast SET NextDueDate='2024-01-31'");  // due today is not overdue
  for (const char* file : {"Reminder.rpt", "Reminder2.rpt"}) {
    const auto pages = Print(file, "{LoanMast.LoanID}='L1' or {LoanMast.LoanID}='L2'");
    ASSERT_EQ(pages.size(), 2u);
    // 100 and 112, due before 31-01-2024, and 10.00 of late interest.
    ExpectAll(pages[0], {"Tan 'Ah' Kow|12 Jalan Raja|Ipoh|",
                         "2|31-12-2023|112.00|12.00|100.00|3|30-01-2024|112.00|0.00|112.00|"
                         "2 instalment(s)|224.00|12.00|212.00|",
                         "|212.00|", "|10.00|", "RM 222.00|"});
    ExpectNone(pages[0], {"4|31-01-2024", "1|30-11-2023", "Covered"});
    ExpectAll(pages[1], {"Lim|"});
    ExpectNone(pages[1], {"Tan"});
  }
}

// Who owes nothing that is overdue is not dunned; nobody is asked for more than the balance, and
// the second letter speaks of a first one only where there is one that asked for these rows.
TEST_F(PapersTest, WhatAReminderMaySay) {
  const struct {
    const char* change;
    const char* file;
    std::vector<const char*> says;
    std::vector<const char*> not_said;
  } kCases[] = {
      {"UPDATE SchMast SET Payment=PayableAmt", "Reminder.rpt", {"still owed"}, {"Tan"}},
      // Settled, though rows stand open behind extra capital.
      {"UPDATE LoanMast SET LoanBal=0", "Reminder2.rpt", {"still owed"}, {"Tan"}},
      {"UPDATE SchMast SET DueDate='2024-01-31'", "Reminder2.rpt", {"still owed"}, {"Tan"}},
      // 212.00 is open, 150.00 is owed.
      {"UPDATE LoanMast SET LoanBal=150,DragLoan='0'",
       "Reminder.rpt",
       {"Covered by capital paid beyond them|-62.00|", "RM 160.00|"},
       {}},
      // A flexi loan owes the interest of its rows beside its balance of capital.
      {"UPDATE LoanMast SET LoanBal=150,DragLoan='1'; UPDATE SchMast SET InterestAmt=10 WHERE "
       "SchID IN (2,3); UPDATE SchMast SET InterestPayment=4 WHERE SchID=2",
       "Reminder.rpt",
       {"Covered by capital paid beyond them|-46.00|", "RM 176.00|"},
       {}},
      {"UPDATE LoanMast SET ReminderDate=NULL", "Reminder2.rpt", {"DO NOT SEND: no first"}, {}},
      // Of arrears that were paid since.
      {"UPDATE LoanMast SET ReminderDate='2023-12-15'",
       "Reminder2.rpt",
       {"DO NOT SEND: no first"},
       {"15-12-2023"}},
      {"UPDATE LoanMast SET ReminderDate='2024-01-16'",
       "Reminder2.rpt",
       {"In spite of our reminder of 16 January 2024"},
       {"DO NOT SEND"}},
      {"UPDATE LoanMast SET ReminderDate='2024-01-17'",
       "Reminder2.rpt",
       {"DO NOT SEND: the first", "31-01-2024.|"},
       {"no first reminder"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.change);
    main().BeginTrans();
    office.Run(c.change);
    const auto pages = Print(c.file, "{LoanMast.LoanID}='L1'");
    main().RollbackTrans();
    ASSERT_EQ(pages.size(), 1u);
    for (const char* text : c.says) ExpectAll(pages[0], {text});
    for (const char* text : c.not_said) ExpectNone(pages[0], {text});
  }
}

TEST_F(PapersTest, ASettlementIsQuotedForTheDatesAskedFor) {
  const auto pages = Print(
      "SettlementLetter.rpt", "{LoanMast.LoanID}='L2'",
      {"RptID;N;True", "SettleAmt;1,250.05;True", "SettleDate;05-02-2024;True", "SettleAmt2;;True",
       "SettleDate2;;True", "SettleAmt3;999.00;True", "SettleDate3;29-02-2024;True"});
  ASSERT_EQ(pages.size(), 1u);
  ExpectAll(
      pages[0],
      {"Payment on 5 February 2024|RM 1,250.05|",
       "RINGGIT MALAYSIA ONE THOUSAND TWO HUNDRED FIFTY AND SEN FIVE ONLY|"
       "Payment on 29 February 2024|RM 999.00|RINGGIT MALAYSIA NINE HUNDRED NINETY NINE ONLY|",
       "Lim|"});
}

TEST_F(PapersTest, InvoicesAndCreditNotesShowTheirOwnCharges) {
  Charge("INV0001", "Invoice", "80");
  Charge("L1-2-B20240115", "Batch", "0.34");
  Charge("L1-T20240120", "Batch Term End Interest", "1.64");
  Charge("L1-X", "Batch Loan Interest", "7");  // counts in no total of the loan
  Charge("L1-2-B20240116", "Batch", "0");      // set back after a payment of that day
  Charge("CN0001", "Credit Note", "-30");
  Charge("L1-001", "Payment", "-12.50");
  const auto print = [&](const char* formula, const char* covered) {
    office.Run(fmt::format("UPDATE LoanMast SET TotInt={} WHERE LoanID='L1'", covered));
    return Print("ARInvoice.rpt", formula, {"RptID;Invoice;True"});
  };
  // 42.50 of the 80 are covered.
  auto pages = print("{ChargeMast.ChargeID} = 'INV0001'", "-42.5");
  ASSERT_EQ(pages.size(), 1u);
  ExpectAll(pages[0],
            {"INVOICE|Invoice No.|INV0001|", "INV0001|For Invoice|80.00|42.50|37.50|Total|",
             "RM 37.50|", "RINGGIT MALAYSIA THIRTY SEVEN AND SEN FIFTY ONLY|"});
  // All that is charged to the loan on one paper; what it paid or was relieved of is no invoice.
  pages = print("{ChargeMast.CompCode}='HQ'", "-42.5");
  ASSERT_EQ(pages.size(), 1u);
  ExpectAll(pages[0], {"|L1/20240115|", "Total|81.98|42.50|39.48|"});
  EXPECT_EQ(pages[0].find("|0.00|0.00|"), std::string::npos) << pages[0];
  // Late interest that is paid is not asked for again: the 0.34 are, and 0.64 of the 1.64.
  pages = print("{ChargeMast.PType} <> 'Invoice'", "-81.34");
  ExpectAll(pages[0], {"|L1-T20240120|For Batch Term End|Interest|1.64|1.00|0.64|Total|",
                       "SEN SIXTY FOUR ONLY"});
  ExpectNone(pages[0], {"L1-2-B20240115"});
  const auto late = [&] {
    return Print("LateInvoice.rpt", "{ChargeMast.LoanID}='L1'", {"TrxDate;date(2024,1,31);True"});
  };
  ExpectAll(late()[0], {"|L1/202401|", "|1.64|1.00|0.64|Total|"});
  pages = print("{ChargeMast.PType} <> 'Invoice'", "-81.98");
  ExpectAll(pages[0], {"there is no invoice"});
  ExpectAll(late()[0], {"there is no invoice"});
  pages = Print("ARCreditNote.rpt", "{ChargeMast.ChargeID} = 'CN0001'", {"RptID;Credit Note;True"});
  ExpectAll(pages.at(0),
            {"CREDIT NOTE|", "CN0001|For Credit Note|30.00|Total|30.00|", "RM 30.00|"});
}

}  // namespace
}  // namespace kaunter
