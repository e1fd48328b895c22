// Rows of expectations about report files, and the conditions that their tests share.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/reporting/report_office.h"

namespace kaunter::report_rows {

using Rows = std::vector<ReportExpectation>;

inline const std::vector<std::string> kPlain = {"RptID;False;True"};
inline const std::vector<std::string> kSpecial = {"RptID;True;True"};

inline StagedFilter Picked(const char* field, std::vector<std::string> values) {
  return {"List", field, std::move(values)};
}

inline void ExpectAll(const Rows& rows) {
  ReportOffice office;
  ReportCheck check(office);
  for (const ReportExpectation& row : rows) check.Expect(row);
}

// The lists of criteria that all loan listings share, each with a value of L2.
inline std::vector<StagedFilter> EveryLoanList() {
  return {Picked("{LoanMast.CompCode}", {"HQ", "KL"}),
          Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
          Picked("{LoanMast.AdvertiseID}", {"NIL"}),
          Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
          Picked("{CustMast.CompCatCode}", {"FACT"}),
          Picked("{LoanMast.CollateralID}", {"CAR"}),
          Picked("{LoanMast.LoanType}", {"Secured"}),
          Picked("{LoanMast.UserID}", {"BOB"}),
          Picked("{LoanMast.Bank}", {"CIMB"}),
          Picked("{CustMast.AreaCode}", {"PERSONAL"}),
          Picked("{LoanMast.SalesmanID}", {"SUE"})};
}

}  // namespace kaunter::report_rows
