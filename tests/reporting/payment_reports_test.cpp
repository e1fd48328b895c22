// The listings of payments and charges, the late invoice and the due diligence form of a payment:
// each file's rows and sums against plain statements and figures by hand.
#include <gtest/gtest.h>

#include "tests/reporting/report_rows.h"

namespace kaunter {
namespace {

using namespace report_rows;

// The lists of the payment reports, each with a value of the payments of L2.
std::vector<StagedFilter> EveryPaymentList(bool customer_type = true) {
  std::vector<StagedFilter> lists = {
      Picked("{PaymentMast.CompCode}", {"HQ"}),          Picked("{CustMast.CompCatCode}", {"FACT"}),
      Picked("{PaymentMast.CollectInfoID}", {"CHEQUE"}), Picked("{LoanMast.LoanType}", {"Secured"}),
      Picked("{PaymentMast.UserID}", {"AMY"}),           Picked("{PaymentMast.Bank}", {"MBB"}),
      Picked("{LoanMast.SalesmanID}", {"SUE"})};
  if (customer_type) lists.push_back(Picked("{CustMast.AreaCode}", {"PERSONAL"}));
  return lists;
}

std::string Paid(const char* from, const char* to, std::vector<StagedFilter> lists = {}) {
  return FormulaOf("{PaymentMast.PayDate}", from, to, std::move(lists), "PaymentList.rpt");
}

TEST(PaymentReports, PaymentsOneALine) {
  Rows rows;
  for (const auto& [file, twin] : {std::pair{"PaymentList.rpt", ""},
                                   {"PaymentList2.rpt", ""},
                                   {"PaymentList3.rpt", ""},
                                   {"PaymentList3S.rpt", "PaymentList3CS.rpt"},
                                   {"PaymentCreatedDate.rpt", ""}}) {
    // 1,966.67 + 15 + 5 - 1.50; 900 + 20; 660; 660 - 5; 1,400 + 100.25 + 30; the returned 900.
    rows.push_back({.file = file,
                    .formula = "",
                    .parameters = kPlain,
                    .sums = {{"Received", "SELECT 1985.17 + 920 + 660 + 655 + 1530.25 + 900"},
                             {"DiscAmt", "SELECT SUM(DiscAmt) FROM PaymentMast"},
                             {"Charges", "SELECT 5 + 20 + 30"}},
                    .count = "SELECT COUNT(*) FROM PaymentMast",
                    .twin = twin});
    rows.push_back({.file = file,
                    .formula = Paid("01-01-2023", "30-01-2024", EveryPaymentList()),
                    .parameters = kSpecial,
                    .sums = {{"Received", "SELECT 920"}},
                    .count = "SELECT 1",
                    .twin = twin});
  }
  ExpectAll(rows);
}

TEST(PaymentReports, WhatEachPaymentListAdds) {
  ExpectAll({
      {.file = "PaymentList.rpt",
       .formula = Paid("01-02-2023", "31-01-2024") + " and {PaymentMast.NewLoanBal} <= 0 ",
       .parameters = kPlain,
       .sums = {{"PayAmt", "SELECT 660"}, {"Received", "SELECT 655"}},
       .count = "SELECT 1"},
      {.file = "PaymentList2.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"CapPay", "SELECT SUM(PayAmt) - SUM(IntPay) FROM PaymentMast"},
                {"IntPay", "SELECT 300 + 900 + 60 + 60 + 120 + 900"}},
       .count = ""},
      // P4, paid on the 15th, was entered on the day after.
      {.file = "PaymentCreatedDate.rpt",
       .formula = FormulaOf("{PaymentMast.DateCreated}", "16-02-2023", "16-02-2023",
                            {Picked("{PaymentMast.CompCode}", {"KL"})}),
       .parameters = kPlain,
       .sums = {{"Received", "SELECT 655"}},
       .count = "SELECT 1"},
      {.file = "PaymentCreatedDate.rpt",
       .formula = FormulaOf("{PaymentMast.DateCreated}", "15-01-2024", "15-01-2024",
                            EveryPaymentList(false)),
       .parameters = kPlain,
       .sums = {{"Received", "SELECT 920"}},
       .count = "SELECT 1"},
      // Exactly at the threshold is not above it.
      {.file = "PaymentExceedThreshold.rpt",
       .formula = "",
       .parameters = {"RptID;False;True", "Threshold;920.00;True"},
       .sums = {{"Excess", "SELECT 1065.17 + 610.25"}},
       .count = "SELECT 2"},
      {.file = "PaymentExceedThreshold.rpt",
       .formula = Paid("01-01-2023", "31-01-2024", EveryPaymentList()) +
                  " and {PaymentMast.AMLACode} <> '' ",
       .parameters = {"RptID;False;True", "Threshold;919.99;True"},
       .sums = {{"Received", "SELECT 920"}, {"Excess", "SELECT 0.01"}},
       .count = "SELECT 1"},
      {.file = "CDD2.rpt",
       .formula = "{PaymentMast.PayID} = 'P2'",
       .parameters = {"RptID;;True"},
       .sums = {{"Received", "SELECT 920"}, {"LoanAmt", "SELECT 60000"}},
       .count = "SELECT 1"},
      {.file = "CDD2.rpt",
       .formula = Paid("01-01-2023", "30-01-2024", EveryPaymentList()),
       .parameters = kSpecial,
       .sums = {{"NewLoanBal", "SELECT 60000"}},
       .count = "SELECT 1"},
      // From the printing desk: one form for each payment of the loan.
      {.file = "CDD2.rpt",
       .formula = "{LoanMast.LoanID} = 'L3'",
       .parameters = {},
       .sums = {{"Received", "SELECT 1315"}},
       .count = "SELECT 2"},
      {.file = "CDD2.rpt",
       .formula = "",
       .parameters = {},
       .sums = {},
       .count = "SELECT COUNT(*) FROM PaymentMast"},
  });
}

// A payment whose loan is gone from the books still stands in every list.
TEST(PaymentReports, PaymentWithoutItsLoan) {
  ReportOffice office;
  ReportCheck check(office);
  office.Run("DELETE FROM LoanMast WHERE LoanID='L3'");
  for (const char* file : {"PaymentList.rpt", "PaymentList2.rpt", "PaymentCreatedDate.rpt"}) {
    check.Expect({.file = file,
                  .formula = "",
                  .parameters = kPlain,
                  .sums = {{"Received", "SELECT 6650.42"}},
                  .count = "SELECT 6"});
  }
}

TEST(PaymentReports, Charges) {
  std::vector<StagedFilter> lists = EveryLoanList();
  lists.push_back(Picked("{ChargeMast.PType}", {"Credit Note", "Payment"}));
  ExpectAll({
      {.file = "ChargeList.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Charged", "SELECT SUM(ChargeAmt) FROM ChargeMast WHERE ChargeAmt > 0"},
                {"TakenOff", "SELECT 10 + 20"}},
       .count = "SELECT COUNT(*) FROM ChargeMast"},
      {.file = "ChargeList.rpt",
       .formula = FormulaOf("{ChargeMast.TrxDate}", "01-01-2024", "20-01-2024", lists),
       .parameters = kPlain,
       .sums = {{"Charged", "SELECT 0"}, {"TakenOff", "SELECT 10"}},
       .count = "SELECT 1"},
      // L3's interest past its term does not count.
      {.file = "LateInterest.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Late", "SELECT 25"},
                {"Other", "SELECT 35.50"},
                {"Credit", "SELECT 10"},
                {"Paid", "SELECT 20"},
                {"OpenAmt",
                 "SELECT SUM(ChargeAmt) FROM ChargeMast WHERE PType <> 'Batch Loan Interest'"}},
       .count = "SELECT 2"},
      {.file = "LateInterest.rpt",
       .formula = FormulaOf("{LoanMast.TrxDate}", "15-12-2023", "31-12-2023"),
       .parameters = kPlain,
       .sums = {{"OpenAmt", "SELECT 5.50"}},
       .count = "SELECT 1"},
  });
}

TEST(PaymentReports, LateInterestOfTermEndAndWaived) {
  ReportOffice office;
  ReportCheck check(office);
  office.AddCharge("T1", "L4", "2024-01-03", "Batch Term End Interest", "12.34");
  office.AddCharge("W1", "L4", "2024-01-02", "Batch", "0");
  check.Expect({.file = "LateInterest.rpt",
                .formula = "{LoanMast.LoanID} = 'L4'",
                .parameters = kPlain,
                .sums = {{"Late", "SELECT 12.34"}, {"OpenAmt", "SELECT 12.34"}},
                .count = "SELECT 1"});
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
  check.Expect({.file = "LateInvoice.rpt",
                .formula = "{ChargeMast.LoanID}='L1' AND {ChargeMast.TrxDate} >= DateTime "
                           "(2024, 01, 01, 00, 00, 00) and {ChargeMast.TrxDate} <= DateTime "
                           "(2024, 01, 31, 23, 59, 59)",
                .parameters = {"TrxDate;date(2024,01,31);True", "InvNo;-;True"},
                .sums = {{"Amount", "SELECT 25 + 1.10 + 0.25"}, {"LateDays", "SELECT 3"}},
                .count = "SELECT 2"});
  check.Expect({.file = "LateInvoice.rpt",
                .formula = "{ChargeMast.LoanID}='L3'",
                .parameters = {"TrxDate;date(2024,01,31);True", "InvNo;-;True"},
                .sums = {},
                .count = "SELECT 0"});
}

}  // namespace
}  // namespace kaunter
