// The criteria table: what ReportFrm offers for each report file before it is printed.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

// Where the values of a filter list come from: the companies a person may use, a column of a table,
// or fixed words.
struct FilterSource {
  bool companies = false;
  std::string table = {};
  std::string column = {};
  std::vector<std::string> words = {};
};

struct ReportFilter {
  Caption label;      // the English one goes into the title of the paper
  std::string field;  // "{LoanMast.CompCode}"
  FilterSource source;
};

enum class IdBoxes {
  range,      // a range of the picker's keys
  no_picker,  // a range typed by hand
  hidden,
  unused,     // shown greyed: the report does not look at them
  free_text,  // two texts for the report itself
};

enum class BoxEffect {
  works,
  none,   // shown greyed: the report knows no other form
  fixed,  // shown greyed with its initial value: the report has this form alone
};

// One of Check1 to Check4.
struct OptionBox {
  int number = 1;
  Caption caption;
  bool initial = false;
  BoxEffect effect = BoxEffect::works;
};

struct ReportCriteria {
  std::vector<std::string> files = {};  // as the menu chooses them
  std::string picker = {};              // "" for none
  std::string DateField = {};
  std::string IDField = {};
  IdBoxes ids = IdBoxes::range;
  std::vector<ReportFilter> filters = {};
  bool CompanyRequired = true;  // below level 4 a company must be chosen
};

const std::vector<ReportCriteria>& AllReportCriteria();
// Without regard to case. A file that is not in the table gets dates alone and no demand for a
// company.
const ReportCriteria& CriteriaOf(std::string_view file);
// The option boxes of a file, each number once.
std::vector<OptionBox> OptionBoxesOf(std::string_view file);

// The file is one of these, without regard to case.
bool IsOneOf(std::string_view file, std::initializer_list<std::string_view> files);

}  // namespace kaunter
