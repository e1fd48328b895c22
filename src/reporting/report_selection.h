// The selection formula and the title of a report, put together from what was chosen. The pieces
// are fixed to the blank: report files of offices rely on them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reporting/report_filter.h"

namespace kaunter {

struct SelectionRequest {
  std::string file;  // as the menu chose it
  std::string DateField;
  std::string IDField;
  std::string DateFrom;  // dd-mm-yyyy or ""
  std::string DateTo;
  std::string IDFrom;
  std::string IDTo;
  std::vector<StagedFilter> filters;  // in list order, those without a value too
  int level = 0;                      // of the signed-in user
  bool CompanyRequired = false;
};

struct Selection {
  std::string formula;
  std::string title;
};

// Nothing when a user below level 4 has chosen no company although one is required. A lower bound
// alone stands for both: IDTo and DateTo of the request are filled so.
std::optional<Selection> BuildSelectionFormula(SelectionRequest& request);

// Puts the condition behind the formula; alone it stands without its leading " and".
void AndAlso(std::string& formula, std::string_view condition);

// "date(2024,01,31)" of a dd-mm-yyyy text: a date as the parameters of a report take it.
std::string DateParameter(std::string_view display_date);
// "DateTime (2024, 1, 31, 00, 00, 00)", or the last second of that day.
std::string FormulaDate(std::string_view display_date, bool end_of_day);

}  // namespace kaunter
