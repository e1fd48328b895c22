// Rows for a list, and what stands on its pages.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "reports/report_file.h"
#include "reports/report_layout.h"

namespace kaunter {

struct ListRow {
  std::string company;
  std::string area;
  std::string loan;
  DateTime day;
  std::string paid;
  std::string lent = "0";
};

// What an act is refused with; "" when it is not.
template <typename Act>
std::string FaultOf(const Act& act) {
  try {
    act();
    return {};
  } catch (const std::runtime_error& fault) {
    return fault.what();
  }
}

// Each of these is refused with a text that holds what stands behind it.
using Faults = std::vector<std::pair<std::string, std::string>>;
template <typename Act>
void ExpectFaults(const Faults& faults, const Act& act) {
  for (const auto& [text, told] : faults) {
    const std::string fault = FaultOf([&] { act(text); });
    EXPECT_TRUE(!fault.empty() && fault.find(told) != std::string::npos) << text << ": " << fault;
  }
}

inline Recordset RowsOf(const std::vector<ListRow>& list) {
  std::vector<std::vector<Value>> rows;
  for (const ListRow& row : list) {
    rows.push_back({Value(row.company), Value(row.area), Value(row.loan), Value(row.day),
                    Value(Money::FromText(row.paid)), Value(Money::FromText(row.lent))});
  }
  return Recordset({{"Company", FieldType::kText},
                    {"Area", FieldType::kText},
                    {"Loan", FieldType::kText},
                    {"Day", FieldType::kDate},
                    {"Paid", FieldType::kMoney, 0, 2},
                    {"Lent", FieldType::kMoney, 0, 2}},
                   std::move(rows));
}

inline ReportFile ListFile(const std::string& lines, bool chinese = false) {
  ReportReading reading;
  reading.chinese = chinese;
  return ReportFile::Parse("query\nSELECT * FROM t WHERE {selection}\nend\n" + lines, "list.rpt",
                           reading);
}

// The texts of a page from top to bottom and left to right, a line of the paper a line.
inline std::vector<std::string> LinesOf(const ReportPage& page) {
  std::vector<PageText> texts = page.texts;
  std::stable_sort(texts.begin(), texts.end(), [](const PageText& a, const PageText& b) {
    return a.y != b.y ? a.y < b.y : a.x < b.x;
  });
  std::vector<std::string> lines;
  double y = -1;
  for (const PageText& text : texts) {
    if (text.y == y) {
      lines.back() += "|" + text.text;
    } else {
      lines.push_back(text.text);
    }
    y = text.y;
  }
  return lines;
}

inline std::vector<std::string> LinesOf(const ReportDocument& document) {
  std::vector<std::string> all;
  for (const ReportPage& page : document.pages) {
    for (std::string& line : LinesOf(page)) all.push_back(std::move(line));
  }
  return all;
}

}  // namespace kaunter
