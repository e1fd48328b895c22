#include "reporting/report_selection.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "core/values.h"
#include "reporting/report_criteria.h"
#include "reports/selection_formula.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

SelectionRequest Loans() {
  SelectionRequest request;
  request.file = "LoanMastList.rpt";
  request.DateField = "{LoanMast.TrxDate}";
  request.IDField = "{LoanMast.LoanID}";
  request.filters = {{"Company Code", "{LoanMast.CompCode}", {}},
                     {"Loan Type", "{LoanMast.LoanTypeID}", {}}};
  request.level = 4;
  request.CompanyRequired = true;
  return request;
}

TEST(BuildSelectionFormula, JoinsItsPiecesToTheBlank) {
  const std::string january =
      "{LoanMast.TrxDate} >= DateTime (2024, 1, 5, 00, 00, 00) AND "
      "{LoanMast.TrxDate} <= DateTime (2024, 1, 31, 23, 59, 59)";
  const std::string ids = "{LoanMast.LoanID} >= 'L1' and {LoanMast.LoanID} <= 'L9' ";
  const std::string two_companies = " ({LoanMast.CompCode} = 'A'  or {LoanMast.CompCode} = 'B' ) ";
  struct Case {
    std::vector<std::string> companies, types;
    const char *from, *to, *id_from, *id_to;
    std::string formula, title;
  };
  const Case cases[] = {
      {{}, {}, "05-01-2024", "31-01-2024", "", "", january, "From 05-01-2024 to 31-01-2024"},
      {{"A", "B"}, {}, "", "", "", "", two_companies, " (Company Code - A or B) "},
      {{"A", "B"},
       {"MONTH"},
       "05-01-2024",
       "31-01-2024",
       "L1",
       "L9",
       january + " and " + ids + " and " + two_companies + " and " +
           " ({LoanMast.LoanTypeID} = 'MONTH' ) ",
       "From 05-01-2024 to 31-01-2024, From L1 - L9,  (Company Code - A or B) ,  (Loan Type - "
       "MONTH) "},
      // One bound stands for both.
      {{},
       {},
       "",
       "",
       "L1",
       "",
       "{LoanMast.LoanID} >= 'L1' and {LoanMast.LoanID} <= 'L1' ",
       "From L1 - L1"},
      {{},
       {},
       "31-12-2023",
       "",
       "",
       "",
       "{LoanMast.TrxDate} >= DateTime (2023, 12, 31, 00, 00, 00) AND "
       "{LoanMast.TrxDate} <= DateTime (2023, 12, 31, 23, 59, 59)",
       "From 31-12-2023 to 31-12-2023"},
      // An upper bound of the numbers alone is none.
      {{}, {}, "05-01-2024", "31-01-2024", "", "L9", january, "From 05-01-2024 to 31-01-2024"},
  };
  for (const Case& c : cases) {
    SelectionRequest request = Loans();
    request.filters[0].values = c.companies;
    request.filters[1].values = c.types;
    request.DateFrom = c.from;
    request.DateTo = c.to;
    request.IDFrom = c.id_from;
    request.IDTo = c.id_to;
    const auto selection = BuildSelectionFormula(request);
    ASSERT_TRUE(selection);
    EXPECT_EQ(selection->formula, c.formula);
    EXPECT_EQ(selection->title, c.title);
  }
}

TEST(BuildSelectionFormula, DueDateReportsTakeEachBoundByItself) {
  const std::string lower = "{LoanMast.TrxDate} >= DateTime (2024, 1, 5, 00, 00, 00)";
  const std::string upper = "{LoanMast.TrxDate} <= DateTime (2024, 1, 31, 23, 59, 59)";
  for (const char* file : {"DueDate.rpt", "DueDateC.rpt", "DueDate3.rpt", "duedate3c.rpt"}) {
    SelectionRequest request = Loans();
    request.file = file;
    request.DateTo = "31-01-2024";
    EXPECT_EQ(BuildSelectionFormula(request)->formula, upper) << file;
    EXPECT_EQ(BuildSelectionFormula(request)->title, "As at 31-01-2024") << file;
    request.DateFrom = "05-01-2024";
    EXPECT_EQ(BuildSelectionFormula(request)->formula, lower + " AND " + upper) << file;
    request.DateTo.clear();
    EXPECT_EQ(BuildSelectionFormula(request)->formula, lower) << file;
    EXPECT_EQ(BuildSelectionFormula(request)->title, "From 05-01-2024") << file;
  }
  SelectionRequest listing = Loans();
  listing.file = "DueDate2.rpt";
  listing.DateFrom = "05-01-2024";
  EXPECT_EQ(BuildSelectionFormula(listing)->title, "From 05-01-2024 to 05-01-2024");
}

TEST(BuildSelectionFormula, BelowLevelFourACompanyIsDemanded) {
  SelectionRequest request = Loans();
  request.DateFrom = request.DateTo = "31-01-2024";
  EXPECT_TRUE(BuildSelectionFormula(request));
  request.level = 3;
  EXPECT_FALSE(BuildSelectionFormula(request));
  request.filters[1].values = {"MONTH"};
  EXPECT_FALSE(BuildSelectionFormula(request)) << "another list is no company";
  for (const char* field : {"{LoanMast.CompCode}", "{MasterReport.s10}", "{TransLogs.ConmpCode}"}) {
    request.filters[0] = {"Company Code", field, {"A"}};
    EXPECT_TRUE(BuildSelectionFormula(request)) << field;
  }
  request.filters.clear();
  request.CompanyRequired = false;
  EXPECT_TRUE(BuildSelectionFormula(request));
}

TEST(BuildSelectionFormula, AnApostropheGoesInUnchangedAndTheEngineRefusesToGuess) {
  SelectionRequest request = Loans();
  request.filters[0].values = {"D'OR"};
  const auto selection = BuildSelectionFormula(request);
  EXPECT_EQ(selection->formula, " ({LoanMast.CompCode} = 'D'OR' ) ");
  EXPECT_THROW(FormulaToCondition(selection->formula), std::runtime_error);
}

// --- the criteria table

// The columns of all tables that reports read, "table.column" in lower case.
std::set<std::string> SchemaFields() {
  std::set<std::string> fields;
  Office office(Office::State::patched);
  for (const auto& [table, columns] : office.Shape()) {
    for (const std::string& column : columns) fields.insert(Lower(table + "." + column));
  }
  // These two lie in databases of their own.
  for (const auto& [table, columns] : std::map<std::string, std::vector<const char*>>{
           {"translogs", {"trxdate", "conmpcode", "userid", "type", "module"}},
           {"smslist", {"datesent", "custid", "compcode", "userid", "smsstatus"}}}) {
    for (const char* column : columns) fields.insert(table + "." + column);
  }
  return fields;
}

std::string Bare(const std::string& field) {
  return field.empty() ? field : Lower(field.substr(1, field.size() - 2));
}

TEST(ReportCriteria, EveryFieldExistsAndEveryFormulaOfTheTableIsRead) {
  const std::set<std::string> schema = SchemaFields();
  std::set<std::string> files;
  for (const ReportCriteria& row : AllReportCriteria()) {
    SelectionRequest request;
    request.file = row.files.front();
    request.DateField = row.DateField;
    request.IDField = row.IDField;
    request.DateFrom = "01-01-2024";
    request.DateTo = "31-01-2024";
    request.IDFrom = "X1";
    request.level = 3;
    request.CompanyRequired = row.CompanyRequired;
    for (const std::string& file : row.files) {
      EXPECT_TRUE(files.insert(Lower(file)).second) << file << " stands in two rows";
    }
    EXPECT_TRUE(schema.contains(Bare(row.DateField))) << row.DateField;
    if (!row.IDField.empty()) {
      EXPECT_TRUE(schema.contains(Bare(row.IDField))) << row.IDField;
    }
    for (const ReportFilter& filter : row.filters) {
      EXPECT_TRUE(schema.contains(Bare(filter.field))) << filter.field;
      const FilterSource& source = filter.source;
      EXPECT_EQ(source.companies + !source.table.empty() + !source.words.empty(), 1)
          << filter.label.english;
      if (!source.table.empty()) {
        EXPECT_TRUE(schema.contains(Lower(source.table + "." + source.column))) << source.table;
      }
      request.filters.push_back({filter.label.english, filter.field, {"A", "B"}});
    }
    const auto selection = BuildSelectionFormula(request);
    // LateInterest has no company to choose, so below level 4 it is always refused.
    EXPECT_EQ(selection.has_value(), !row.filters.empty()) << request.file;
    if (!selection) continue;
    EXPECT_NO_THROW(FormulaToCondition(selection->formula)) << selection->formula;
    EXPECT_TRUE(selection->formula.starts_with(row.DateField + " >= ")) << selection->formula;
    EXPECT_TRUE(selection->title.starts_with("From 01-01-2024 to 31-01-2024, "));
  }
  EXPECT_EQ(files.size(), 94U);
}

TEST(ReportCriteria, TheOptionBoxesOfEachFile) {
  // "number caption" and +/- for on and off; ~ behind it stands for a box that is greyed.
  const std::map<std::string, std::string> told = {
      {"CustMastListC.rpt", "1 With Photo-"},
      {"CustLoanList.rpt", "1 Hide Settled Loan+"},
      {"BadDebtListing.rpt", "1 Hide Settled Loan+~"},
      {"LoanCreatedDateC.rpt", "1 Hide Settled Loan+~"},
      {"LoanMastList.rpt", "1 Hide Settled Loan-|2 As at-"},
      {"LoanMastListC.rpt", "1 Hide Settled Loan-"},
      {"LoanMastList2C.rpt", "1 Hide Settled Loan-|2 Summary-"},
      {"LoanGuarantorList.rpt", "1 Hide Settled Loan-~"},
      {"AgingMonth.rpt", "1 Hide Settled Loan-~"},
      {"Loan Interest Report.rpt", ""},
      {"LoanSchListC.rpt", "1 Capital && Interest-|2 Summary-~"},
      {"LoanExceedThreshold.rpt", "1 With Reason only+"},
      {"PaymentList.rpt", "1 Settlement-"},
      {"PaymentListC.rpt", ""},
      {"Outstanding2.rpt", "2 Summary-"},
      {"AccountReportC.rpt", "1 No Opening-|2 Landscape-"},
      {"LejarAkuan.rpt", "1 60 Columns-|2 Settlement-"},
      {"RekodTrans.rpt",
       "1 Without Interest+~|2 Page Break by Month-|3 Last Balance-|4 With Loan ID-"},
      {"Agree1.rpt", "1 60 Columns-~"},
      {"SMSCompList.rpt", "1 Summary-"},
      {"ChargeList.rpt", ""},
      {"CBBalance.rpt", ""},
  };
  for (const auto& [file, expected] : told) {
    std::string boxes;
    for (const OptionBox& box : OptionBoxesOf(file)) {
      boxes += (boxes.empty() ? "" : "|") + std::to_string(box.number) + " " + box.caption.english +
               (box.initial ? "+" : "-") + (box.effect == BoxEffect::works ? "" : "~");
    }
    EXPECT_EQ(boxes, expected) << file;
  }
}

TEST(ReportCriteria, DatesOfParametersAndFormulas) {
  EXPECT_EQ(DateParameter("05-01-2024"), "date(2024,01,05)");
  EXPECT_EQ(FormulaDate("05-01-2024", false), "DateTime (2024, 1, 5, 00, 00, 00)");
  EXPECT_THROW(FormulaDate("31-02-2024", false), std::invalid_argument);
}

}  // namespace
}  // namespace kaunter
