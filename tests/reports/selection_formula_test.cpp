#include "reports/selection_formula.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/reports/list_rows.h"

namespace kaunter {
namespace {

TEST(SelectionFormula, BecomesTheConditionOfTheQuery) {
  const struct {
    std::string formula;
    std::string condition;
  } cases[] = {
      {"", ""},
      {"  ", ""},
      {"{SchMast2.LoanID}='LC-0001'", "SchMast2.LoanID='LC-0001'"},
      // As the report screen writes it: blanks around everything, one bracket a list.
      {" ({LoanMast.CompCode} = 'A'  or {LoanMast.CompCode} = 'B' ) ",
       "(LoanMast.CompCode='A' OR LoanMast.CompCode='B')"},
      {"{LoanMast.TrxDate} >= DateTime (2024, 1, 31, 00, 00, 00) AND {LoanMast.TrxDate} <= "
       "DateTime (2024, "
       "2, 1, 23, 59, 59)",
       "LoanMast.TrxDate>='2024-01-31 00:00:00' AND LoanMast.TrxDate<='2024-02-01 23:59:59'"},
      {"{LoanMast.LoanBal} <=0  and {LoanMast.AMLACode} <> '' ",
       "LoanMast.LoanBal<=0 AND LoanMast.AMLACode<>''"},
      {"{MasterReport.pcname}='PC''1' And {MasterReport.ReportName} = \"a'b\"",
       "MasterReport.pcname='PC''1' AND MasterReport.ReportName='a''b'"},
      {"not ({A.B} = -1.50)", "NOT ((A.B=-1.50))"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormulaToCondition(c.formula), c.condition) << c.formula;
}

TEST(SelectionFormula, RefusesWhatItCannotReadAndShowsThePlace) {
  ExpectFaults(
      {
          {"{LoanMast.CompCode} = 'O'Brien'", "position 26"},  // a quote left alone
          {"{LoanMast.CompCode} = 'A", "the end of a text"},
          {"{LoanMast.CompCode}", "a comparison"},
          {"{LoanMast} = 1", "a field {Table.Column}"},
          {"{LoanMast.A;DROP TABLE x} = 1", "a field {Table.Column}"},
          {"{A.B} = 1 or", "a field or a value"},
          {"({A.B} = 1", "a closing bracket"},
          {"{A.B} = Date(2024,2,30)", "a date of the calendar"},
          {"{A.B} = Date(2024,2)", "a date"},
          {std::string(5000, '('), "fewer brackets"},
          {"{A.B} = Date(2024,1,31,0,0,0)", "a date"},
          {"{A.B} = DateTime(2024,1,31,10)", "a date"},
          {"{A.B} = DateTime(2024,1,31,0,0,0,0)", "a date"},
          {"{A.B} = DateTime(2024,1,31,24,0,0)", "a date of the calendar"},
          {"{1.5} = 1.5", "a field {Table.Column}"},  // two numbers, always true
          {"{A.B} = 1 and 2 = 2", "a comparison with a field"},
          {"{A.B} = 1 or {A.B} = 2 and {A.C} = 3", "brackets around an"},
          {"{A.B} = 1.2.3", "a number"},
          {"{A.B} == 1", "a field or a value"},
          {"{A.B} like 'x%'", "a comparison"},
          {"{A.B} = GetDate()", "a field or a value"},
          {"{A.B} = 1; DROP TABLE x", "the end of the formula"},
          {"{A.B} = 1 -- x", "the end of the formula"},
      },
      [](const std::string& formula) { FormulaToCondition(formula); });
  std::string nots;
  for (int i = 0; i < 100'000; ++i) nots += "not ";
  EXPECT_THROW(FormulaToCondition(nots), std::runtime_error);
}

}  // namespace
}  // namespace kaunter
