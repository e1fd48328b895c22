// The listings of codes, customers, loans and cheques: each file's rows and sums against plain
// statements.
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

TEST(LoanReports, CodesAsTheMenuStartsThem) {
  struct Case {
    const char *file, *table;
    std::vector<ReportSum> sums;
  };
  for (const Case& c : std::vector<Case>{
           {"AdvertisementList.rpt", "AdvertiseMast", {{"Used", "5"}}},
           {"AreaCodeList.rpt", "AreaMast", {{"Used", "SELECT COUNT(*) FROM CustMast"}}},
           {"BankCode.rpt", "BankMast", {{"Used", "4"}}},
           {"CompanyCategoryList.rpt", "CampanyCategory", {{"Used", "3"}}},
           {"CompCodeList.rpt", "CompMast", {{"Used", "SELECT COUNT(*) FROM LoanMast"}}},
           {"CollectInfoList.rpt", "CollectInfoMast", {{"Used", "6"}}},
           {"LoanGroupList.rpt", "LoanGroupMast", {{"Used", "5"}}},
           {"LoanTypeList.rpt", "LoanTypeMast", {{"Used", "5"}}},
           // The salesman of L4 has left, and L5 has none.
           {"SalesmanList.rpt",
            "SalesmanMast",
            {{"Used", "3"}, {"TotAccComm", "395.50"}, {"CommLeft", "295.50"}}},
       }) {
    ExpectAll({Row(c.file, c.sums, fmt::format("SELECT COUNT(*) FROM {}", c.table), "", {})});
  }
}

TEST(LoanReports, Customers) {
  ExpectAll({
      Row("CustMastList.rpt",
          {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast"},
           {"LoanBal", "SELECT SUM(LoanBal) FROM LoanMast"},
           {"Loans", "5"}},
          "SELECT COUNT(*) FROM CustMast"),
      Row("CustMastList.rpt", {{"LoanAmt", "SELECT SUM(LoanAmt2) FROM LoanMast"}}, "4", "",
          kSpecial),
      // A customer with two loans stands there once, with both.
      Row("CustMastList.rpt",
          {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast WHERE CustID IN ('C2','C3')"}}, "2",
          FormulaOf("{CustMast.TrxDate}", "01-05-2023", "31-12-2023",
                    "CustMast.CompCode=HQ|KL; CustMast.CompCatCode=FACT; "
                    "LoanMast.SalesmanID=SAM|GONE|SUE")),
      Row("RefererList.rpt",
          {{"RefererCompIncome", "SELECT SUM(RefererCompIncome) FROM RefererMast"}},
          "SELECT COUNT(*) FROM RefererMast"),
      Row("RefererList.rpt", {{"RefererCompIncome", "9800"}}, "1",
          FormulaOf("{CustMast.TrxDate}", "31-12-2023", "31-12-2023",
                    "CustMast.CustRace=LAIN-LAIN; CustMast.AreaCode=COMPANY; "
                    "CustMast.CustStatus=BAD DEBT; LoanMast.SalesmanID=SAM")),
      // A customer without one gets a line with a dash.
      Row("RefererList2.rpt", {}, "3 + 2"),
      Row("RefererList2.rpt", {}, "SELECT COUNT(*) FROM RefererMast WHERE CustID='C1'",
          "{CustMast.CustID} = 'C1'"),
      Row("MyKadList.rpt", {}, "1", "{CustMast.CustID} = 'C2'", {}, "-"),
  });
}

const std::string kTwoYears = "TrxDate >= '2023-01-01' AND TrxDate < '2024-01-31'";
std::string TwoYears(const std::string& lists = {}) {
  return FormulaOf("{LoanMast.TrxDate}", "01-01-2023", "30-01-2024", lists);
}

// All loans; those of a time; the one that every list finds; and what a special user sees.
Rows OfLoans(const std::string& file, const std::string& twin,
             const std::string& amount = "LoanAmt", const std::string& balance = "LoanBal") {
  return {Row(file,
              {{amount, "SELECT SUM(LoanAmt) FROM LoanMast"},
               {balance, "SELECT SUM(LoanBal) FROM LoanMast"}},
              "SELECT COUNT(*) FROM LoanMast", "", kPlain, twin),
          Row(file, {{amount, "65000"}, {balance, "63933.33"}},
              "SELECT COUNT(*) FROM LoanMast WHERE LoanBal > 0 AND " + kTwoYears,
              TwoYears() + " and {LoanMast.LoanBal} > 0", kPlain, twin),
          Row(file, {{amount, "SELECT LoanAmt FROM LoanMast WHERE LoanID='L2'"}}, "1",
              TwoYears(kEveryLoanList), kPlain, twin),
          Row(file, {{amount, "SELECT SUM(LoanAmt2) FROM LoanMast"}},
              "SELECT COUNT(*) FROM LoanMast", "", kSpecial, twin)};
}

TEST(LoanReports, LoansOneALine) {
  ExpectAll(OfLoans("LoanMastList.rpt", ""));
  ExpectAll(OfLoans("LoanMastList2.rpt", ""));
  ExpectAll(OfLoans("LoanMastList2S.rpt", "LoanMastList2CS.rpt"));
  ExpectAll(OfLoans("CustLoanList.rpt", ""));
  ExpectAll(OfLoans("CustLoanMastList.rpt", ""));
  ExpectAll(OfLoans("LoanCreatedDate.rpt", ""));
  ExpectAll(
      {Row("LoanMastList.rpt", {{"InsRate", "90"}, {"Paid", "SELECT SUM(PayAmt) FROM PaymentMast"}},
           "", "", kSpecial),
       Row("CustLoanMastList.rpt", {{"LoanBal", "SELECT LoanBal FROM LoanMast WHERE LoanID='L1'"}},
           "1",
           FormulaOf("{CustMast.TrxDate}", "01-01-2023", "10-01-2023", "CustMast.CustRace=CINA")),
       // The day of entry counts to its last second.
       Row("LoanCreatedDate.rpt", {{"LoanAmt", "65000"}}, "2",
           FormulaOf("{LoanMast.DateCreated}", "06-11-2023", "15-12-2023"))});
}

// 3,933.33 is what L1 owes today; on 04-12-2023 nothing had been paid.
TEST(LoanReports, LoansAsAtADay) {
  ExpectAll({Row("LoanMastList3.rpt",
                 {{"BalThen", "5900.00 + 0 + 7400"},
                  {"PaidThen", "1260.00 + 1400 + 60"},
                  {"LoanAmt", "5000 + 1200 + 8000"}},
                 "3", "", {"RptID;False;True", "ToDate;date(2023,12,04);True"}),
             Row("LoanMastList3.rpt", {{"BalThen", "660 + 7400"}, {"PaidThen", "660 + 1400"}}, "2",
                 "", {"RptID;False;True", "ToDate;date(2023,02,14);True"}),
             // Without a day it is today's.
             Row("LoanMastList3.rpt",
                 {{"BalThen", "SELECT SUM(LoanBal) FROM LoanMast"},
                  {"PaidThen", "SELECT SUM(PayAmt) FROM PaymentMast"}},
                 "5")});
}

TEST(LoanReports, LoansOfAKind) {
  ExpectAll({
      Row("BadDebtListing.rpt", {{"LoanBal", "7400"}, {"LateAmt", "310.25"}}, "1"),
      Row("BadDebtListing.rpt", {}, "0",
          TwoYears("LoanMast.CompCode=KL; CustMast.CustStatus=BAD DEBT")),
      Row("LoanCollateral.rpt", {{"Memo4", "45000"}, {"LoanBal", "67400"}},
          "SELECT COUNT(*) FROM LoanMast WHERE LoanID IN ('L2','L4')"),
      Row("LoanCollateral.rpt", {{"LoanAmt", "60000"}}, "1",
          TwoYears(kEveryLoanList) + " and {LoanMast.LoanBal} > 0", kSpecial),
      // Both guarantors of L2, the one of L4.
      Row("LoanGuarantorList.rpt", {{"Place", "1 + 2 + 1"}}, "3"),
      Row("LoanGuarantorList.rpt", {}, "2", TwoYears(kEveryLoanList)),
      Row("LoanExceedThreshold.rpt",
          {{"LoanAmt", "SELECT SUM(LoanAmt) FROM LoanMast WHERE LoanID IN ('L2','L4')"},
           {"Excess", "55000 + 3000"}},
          "2", "", {"RptID;False;True", "Threshold;5000.00;True"}),
      Row("LoanExceedThreshold.rpt", {{"Excess", "55000.01"}}, "1",
          TwoYears(kEveryLoanList) + " and {LoanMast.AMLACode} <> '' ",
          {"RptID;True;True", "Threshold;4999.99;True"}),
      // L4's salesman is known by his code alone.
      Row("LoanCommList.rpt", {{"SalesmanComm", "SELECT SUM(SalesmanComm) FROM LoanMast"}},
          "SELECT COUNT(*) FROM LoanMast WHERE SalesmanID <> ''"),
      Row("LoanCommList.rpt", {{"SalesmanComm", "170.50"}}, "3",
          TwoYears("LoanMast.SalesmanID=SAM|SUE")),
  });
}

TEST(LoanReports, InterestThatDoesNotMatch) {
  ReportOffice office;
  ReportCheck check(office);
  // L2's schedule bears 2,700 of its 3,600; L4's 800 and L5's 300 match.
  const ReportExpectation all = Row("Loan Interest Report.rpt", {{"Difference", "900"}}, "1");
  check.Expect(all);
  office.Run("UPDATE SchMast SET InterestAmt=InterestAmt+300 WHERE LoanID='L2'");
  office.Run("UPDATE LoanMast SET TotLoanInt=119.99 WHERE LoanID='L3'");
  check.Expect(Row(all.file, {{"Difference", "-0.01"}}, "1", TwoYears("LoanMast.CompCode=KL")));
}

TEST(LoanReports, RowsOfALoan) {
  Rows rows;
  for (const auto& [file, twin] :
       {std::pair{"LoanSchList.rpt", ""}, std::pair{"LoanSchList2.rpt", "LoanSchListC2.rpt"}}) {
    rows.push_back(Row(file,
                       {{"PayableAmt", "SELECT SUM(CapitalAmt+InterestAmt) FROM SchMast"},
                        {"Payment", "SELECT SUM(CapitalPayment+InterestPayment) FROM SchMast"}},
                       "SELECT COUNT(*) FROM SchMast", "", kPlain, twin));
    rows.push_back(Row(file, {{"PayableAmt", "62700"}, {"Payment", "900"}}, "3",
                       TwoYears(kEveryLoanList), kSpecial, twin));
  }
  rows.push_back(Row("LoanSchList2.rpt",
                     {{"CapitalLeft", "SELECT SUM(CapitalAmt)-SUM(CapitalPayment) FROM SchMast"},
                      {"InterestLeft",
                       "SELECT SUM(InterestAmt)-SUM(InterestPayment) FROM "
                       "SchMast"}},
                     "", "", kPlain, "LoanSchListC2.rpt"));
  // L5 has no payment and its own line.
  rows.push_back(Row("LoanPaymentList.rpt",
                     {{"PayAmt", "SELECT SUM(PayAmt) FROM PaymentMast"},
                      {"Received",
                       "SELECT SUM(PayAmt)+SUM(IntAmt)+SUM(ChargeAmt)+SUM(CollectorAmt)-"
                       "SUM(DiscAmt) FROM PaymentMast"}},
                     "SELECT COUNT(*) + 1 FROM PaymentMast"));
  rows.push_back(
      Row("LoanPaymentList.rpt", {{"Received", "1315"}}, "2",
          TwoYears("LoanMast.CompCode=KL; CustMast.CompCatCode=FACT; CustMast.AreaCode=COMPANY")));
  for (const char* file : {"ChqMastList.rpt", "LoanChqMastList.rpt"}) {
    rows.push_back(
        Row(file, {{"ChqAmt", "SELECT SUM(ChqAmt) FROM ChqMast"}}, "SELECT COUNT(*) FROM ChqMast"));
    rows.push_back(Row(file, {{"ChqAmt", "SELECT ChqAmt FROM ChqMast WHERE ChqNo='123457'"}}, "1",
                       FormulaOf("{Chqmast.ChqDate}", "31-01-2024", "29-02-2024",
                                 "LoanMast.CompCode=HQ; CustMast.CompCatCode=FACT")));
  }
  ExpectAll(rows);
}

TEST(LoanReports, PapersOfOneLoan) {
  Rows rows;
  for (const char* file : {"CDD.rpt", "filecovercagaran.rpt", "FilecoverJadualBayaranAkaun.rpt"}) {
    const bool of_schedule = std::string(file).starts_with("FilecoverJadual");
    rows.push_back(
        Row(file, {}, of_schedule ? "3" : "1", "{LoanMast.LoanID} = 'L2'", {"RptID;;True"}, "-"));
    rows.push_back(Row(file, {}, of_schedule ? "3" : "1", TwoYears(kEveryLoanList), kSpecial, "-"));
    rows.push_back(Row(
        file, {}, of_schedule ? "SELECT COUNT(*) FROM SchMast" : "SELECT COUNT(*) FROM LoanMast",
        "", {}, "-"));
  }
  ExpectAll(rows);
}

struct SuspicionOffice : ReportOffice {
  SuspicionOffice() {
    Rows("AMLATrans (TrxID,TrxDate,Name1,Add1,TransAmt,SuspiciousWork,CrimeDesc,CompCode)",
         {"'STR0001','2024-01-31','Tan','12, Jalan Dua',26000.50,'Cash','He would not say','HQ'",
          "'STR0002','2024-01-31',N'陈美玲','',100,'','','KL'"});
  }
};

TEST(LoanReports, SuspiciousTransactions) {
  ExpectAll<SuspicionOffice>(
      {Row("STR-BNM.rpt", {{"TransAmt", "26100.50"}}, "2", "", {"RptID;Aisyah; Ali;True"}, "-"),
       Row("STR-BNM.rpt", {{"TransAmt", "100"}}, "1", "{AMLATrans.TrxID}='STR0002'",
           {"RptID;;True"}, "-")});
}

TEST(LoanReports, AChequeThatAPaymentTookIsNotNew) {
  ReportOffice office;
  office.main().Execute(
      "UPDATE ChqMast SET ChqStatus='NEW' WHERE ChqNo='123456' OR ChqNo='123458'");
  ReportJob job;
  job.Connect = &office.main();
  for (const char* file : {"ChqMastList.rpt", "LoanChqMastList.rpt"}) {
    job.ReportFileName = std::string(test::SourceDir() + "/reports/") + file;
    std::string statuses;
    for (const auto& page : RunWholeReport(job).document.pages) {
      for (const auto& text : page.texts) {
        if (text.text == "USED" || text.text == "NEW" || text.text == "RETURN") {
          statuses += text.text + " ";
        }
      }
    }
    EXPECT_EQ(statuses, "USED RETURN NEW ") << file;
  }
}

TEST(LoanReports, AuditFromItsOwnDatabase) {
  ReportOffice office;
  ReportCheck check(office);
  check.Over(office.logs());
  check.Expect(Row("AuditLogs.rpt", {}, "SELECT COUNT(*) FROM TransLogs"));
  check.Expect(Row("AuditLogs.rpt", {}, "1",
                   FormulaOf("{TransLogs.TrxDate}", "30-01-2024", "30-01-2024",
                             "TransLogs.ConmpCode=KL|HQ; TransLogs.UserID=BOB; "
                             "TransLogs.Type=Delete; TransLogs.Module=Payment")));
}

TEST(LoanReports, ShortMessagesFromTheirOwnDatabase) {
  ReportOffice office;
  ReportCheck check(office);
  check.Over(office.sms());
  const std::string all = "SELECT COUNT(*) FROM SMSList";
  const std::string day =
      FormulaOf("{SMSList.DateSent}", "30-01-2024", "30-01-2024", "SMSList.CompCode=HQ");
  for (const char* file : {"SMSCompList.rpt", "SMSHPList.rpt"}) {
    check.Expect(Row(file, {}, all));
    check.Expect(Row(file, {}, "2", day));
  }
  // A line a company and day.
  check.Expect(Row("SMSCompListS.rpt", {}, "1", day));
  check.Expect(Row("SMSCompListS.rpt",
                   {{"Messages", all},
                    {"Done", all + " WHERE SMSStatus IN ('DONE','READ')"},
                    {"Failed", all + " WHERE SMSStatus='FAIL'"}},
                   "3"));
}

}  // namespace
}  // namespace kaunter
