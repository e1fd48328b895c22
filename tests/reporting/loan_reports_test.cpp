// The listings of codes, customers, loans and cheques: each file's rows and sums against plain
// statements.
#include <gtest/gtest.h>

#include "tests/reporting/report_office.h"

namespace kaunter {
namespace {

TEST(LoanReports, CalculationOfOneLoan) {
  ReportOffice office;
  ReportCheck check(office);
  check.Expect({.file = "LoanCalcList.rpt",
                .formula = "{SchMast2.LoanID}='L1'",
                .parameters = {},
                .sums = {{"PayableAmt", "SELECT 5900.00"},
                         {"InterestAmt", "SELECT TotLoanInt FROM LoanMast WHERE LoanID='L1'"}},
                .count = "SELECT 3",
                .twin = "-"});
}

}  // namespace
}  // namespace kaunter
