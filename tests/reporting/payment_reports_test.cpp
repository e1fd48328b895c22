// The listings of payments and charges, the late invoice and the due diligence form of a payment:
// each file's rows and sums against plain statements and figures by hand.
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"

namespace kaunter {
namespace {

// The lists that all payment reports have, each with a value of the payments of L2.
const std::string kEveryPaymentList =
    "PaymentMast.CompCode=HQ; CustMast.CompCatCode=FACT; PaymentMast.CollectInfoID=CHEQUE; "
    "LoanMast.LoanType=Secured; PaymentMast.UserID=AMY; PaymentMast.Bank=MBB; "
    "LoanMast.SalesmanID=SUE";

std::string Paid(const char* from, const char* to, const std::string& lists = {}) {
  return FormulaOf("{PaymentMast.PayDate}", from, to, lists, "PaymentList.rpt");
}

TEST(PaymentReports, PaymentsOneALine) {
  Rows rows;
  for (const auto& [file, twin] : {std::pair{"PaymentList.rpt", ""},
                                   {"PaymentList2.rpt", ""},
                                   {"PaymentList3.rpt", ""},
                                   {"PaymentList3S.rpt", "PaymentList3CS.rpt"},
                                   {"PaymentCreatedDate.rpt", ""}}) {
    // 1,966.67 + 15 + 5 - 1.50; 900 + 20; 660; 660 - 5; 1,400 + 100.25 + 30; the returned 900.
    rows.push_back(Row(file,
                       {{"Received", "1985.17 + 920 + 660 + 655 + 1530.25 + 900"},
                        {"DiscAmt", "SELECT SUM(DiscAmt) FROM PaymentMast"},
                        {"Charges", "5 + 20 + 30"}},
                       "SELECT COUNT(*) FROM PaymentMast", "", kPlain, twin));
    rows.push_back(
        Row(file, {{"Received", "920"}}, "1",
            Paid("01-01-2023", "30-01-2024", kEveryPaymentList + "; CustMast.AreaCode=PERSONAL"),
            kSpecial, twin));
  }
  ExpectAll(rows);
}

TEST(PaymentReports, WhatEachPaymentListAdds) {
  ExpectAll({
      Row("PaymentList.rpt", {{"PayAmt", "660"}, {"Received", "655"}}, "1",
          Paid("01-02-2023", "31-01-2024") + " and {PaymentMast.NewLoanBal} <= 0 "),
      Row("PaymentList2.rpt", {{"CapPay", "SELECT SUM(PayAmt) - SUM(IntPay) FROM PaymentMast"},
                               {"IntPay", "300 + 900 + 60 + 60 + 120 + 900"}}),
      // P4, paid on the 15th, was entered on the day after.
      Row("PaymentCreatedDate.rpt", {{"Received", "655"}}, "1",
          FormulaOf("{PaymentMast.DateCreated}", "16-02-2023", "16-02-2023",
                    "PaymentMast.CompCode=KL")),
      Row("PaymentCreatedDate.rpt", {{"Received", "920"}}, "1",
          FormulaOf("{PaymentMast.DateCreated}", "15-01-2024", "15-01-2024", kEveryPaymentList)),
      // Exactly at the threshold is not above it.
      Row("PaymentExceedThreshold.rpt", {{"Excess", "1065.17 + 610.25"}}, "2", "",
          {"RptID;False;True", "Threshold;920.00;True"}),
      Row("PaymentExceedThreshold.rpt", {{"Received", "920"}, {"Excess", "0.01"}}, "1",
          Paid("01-01-2023", "31-01-2024", kEveryPaymentList + "; CustMast.AreaCode=PERSONAL") +
              " and {PaymentMast.AMLACode} <> '' ",
          {"RptID;False;True", "Threshold;919.99;True"}),
      Row("CDD2.rpt", {{"Received", "920"}, {"LoanAmt", "60000"}}, "1",
          "{PaymentMast.PayID} = 'P2'", {"RptID;;True"}),
      Row("CDD2.rpt", {{"NewLoanBal", "60000"}}, "1",
          Paid("01-01-2023", "30-01-2024", kEveryPaymentList + "; CustMast.AreaCode=PERSONAL"),
          kSpecial),
      // From the printing desk: one form for each payment of the loan.
      Row("CDD2.rpt", {{"Received", "1315"}}, "2", "{LoanMast.LoanID} = 'L3'", {}),
      Row("CDD2.rpt", {}, "SELECT COUNT(*) FROM PaymentMast", "", {}),
  });
}

// A payment whose loan is gone from the books still stands in every list.
TEST(PaymentReports, PaymentWithoutItsLoan) {
  ReportOffice office;
  ReportCheck check(office);
  office.Run("DELETE FROM LoanMast WHERE LoanID='L3'");
  for (const char* file : {"PaymentList.rpt", "PaymentList2.rpt", "PaymentCreatedDate.rpt"}) {
    check.Expect(Row(file, {{"Received", "6650.42"}}, "6"));
  }
}

TEST(PaymentReports, Charges) {
  ExpectAll({
      Row("ChargeList.rpt",
          {{"Charged", "SELECT SUM(ChargeAmt) FROM ChargeMast WHERE ChargeAmt > 0"},
           {"TakenOff", "10 + 20"}},
          "SELECT COUNT(*) FROM ChargeMast"),
      Row("ChargeList.rpt", {{"Charged", "0"}, {"TakenOff", "10"}}, "1",
          FormulaOf("{ChargeMast.TrxDate}", "01-01-2024", "20-01-2024",
                    kEveryLoanList + "; ChargeMast.PType=Credit Note|Payment")),
      // L3's interest past its term does not count.
      Row("LateInterest.rpt",
          {{"Late", "25"},
           {"Other", "35.50"},
           {"Credit", "10"},
           {"Paid", "20"},
           {"OpenAmt",
            "SELECT SUM(ChargeAmt) FROM ChargeMast WHERE PType <> 'Batch Loan Interest'"}},
          "2"),
      Row("LateInterest.rpt", {{"OpenAmt", "5.50"}}, "1",
          FormulaOf("{LoanMast.TrxDate}", "15-12-2023", "31-12-2023")),
  });
}

TEST(PaymentReports, LateInterestOfTermEndAndWaived) {
  ReportOffice office;
  ReportCheck check(office);
  office.AddCharge("T1", "L4", "2024-01-03", "Batch Term End Interest", "12.34");
  office.AddCharge("W1", "L4", "2024-01-02", "Batch", "0");
  check.Expect(Row("LateInterest.rpt", {{"Late", "12.34"}, {"OpenAmt", "12.34"}}, "1",
                   "{LoanMast.LoanID} = 'L4'"));
}

// As the printing desk asks for it: one month up to a day, a line for each late instalment.
TEST(PaymentReports, LateInvoice) {
  ReportOffice office;
  ReportCheck check(office);
  office.AddCharge("J1", "L1", "2024-01-11", "Batch", "1.10", "", "2024-01-05");
  office.AddCharge("J2", "L1", "2024-01-31", "Batch", "0.25", "", "2023-12-05");
  office.AddCharge("J3", "L1", "2024-01-12", "Batch", "0", "", "2023-11-05");  // waived
  office.AddCharge("J4", "L1", "2023-12-31", "Batch", "9", "", "2023-12-05");  // another month
  office.AddCharge("J5", "L1", "2024-01-12", "Invoice", "50", "",
                   "2024-01-12");  // no late interest
  office.AddCharge("J6", "L2", "2024-01-12", "Batch", "7", "", "2024-01-05");
  check.Expect(Row("LateInvoice.rpt", {{"Amount", "25 + 1.10 + 0.25"}, {"LateDays", "3"}}, "2",
                   "{ChargeMast.LoanID}='L1' AND {ChargeMast.TrxDate} >= DateTime "
                   "(2024, 01, 01, 00, 00, 00) and {ChargeMast.TrxDate} <= DateTime "
                   "(2024, 01, 31, 23, 59, 59)",
                   {"TrxDate;date(2024,01,31);True", "InvNo;-;True"}));
  check.Expect(Row("LateInvoice.rpt", {}, "0", "{ChargeMast.LoanID}='L3'",
                   {"TrxDate;date(2024,01,31);True", "InvNo;-;True"}));
}

}  // namespace
}  // namespace kaunter
