// The yearly loan return (YearlyLoan.rpt): 36 figures of the row YearlyLoanMast and six that go
// along as parameters. One table says of each what it counts; the figure and the list of the loans
// behind it are both asked from that entry, so that they cannot differ.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "compliance/returns.h"
#include "core/stoppable.h"

namespace kaunter {

class Desk;

enum class FigureKind {
  amount,     // the loans' amounts, with or without interest
  interest,   // the loans' interest
  count,      // their number
  collected,  // what was paid in the period
};

struct YearlyFigure {
  std::string_view place;  // "field01", "2Biv"; "" for the loans that no figure of its group takes
  Caption name;
  FigureKind kind;
  // What a loan must meet besides company and period; {size} is the loan's size.
  std::string condition = {};
  std::string_view because = {};  // the column that decides
  bool earlier = false;           // payments of loans made before the period
  bool without_customer = false;  // a loan whose customer is gone is counted as well
};

// In the order of the computation.
const std::vector<YearlyFigure>& YearlyFigures();

struct YearlyRequest {
  ReturnPeriod period;
  bool with_interest = true;        // amounts with the loans' interest
  bool size_with_interest = false;  // so the sizes: the setting 2E
};

// What gives the loans behind the figure.
std::string LoansStatement(const YearlyFigure& figure, const YearlyRequest& request);

// The figures as the return shows them, with those that nothing of the return takes when
// `left_over`. Nothing when it was stopped. Throws SqlError.
std::vector<ReturnLine> CountYearly(Connection& main, const YearlyRequest& request, bool left_over,
                                    const GoOn& go_on);

// Counts, stores the one row of YearlyLoanMast and sets the parameters of the report from number 1
// on; `amount` and `security` are what the person adds. Told in the end; false when it failed or
// was stopped, and the row is then as it was.
bool MakeYearlyReturn(Session& session, Desk& desk, const YearlyRequest& request,
                      const std::string& amount, const std::string& security,
                      std::map<int, std::string>& parameters);

// The selection formula that takes this return's row, and not one that another PC made meanwhile.
std::string YearlyFormula(const YearlyRequest& request);

}  // namespace kaunter
