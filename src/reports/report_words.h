// A line of a report file taken apart: words between blanks, texts in quotes, and for a text in two
// languages the one that the paper is printed in.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

// What is learnt of a file that is read to be checked, not printed.
struct ReportFindings {
  std::vector<std::string> faults;                     // of the lines, as a print would tell them
  std::map<std::string, std::set<std::string>> asked;  // values that "if" names, by parameter
};

// For whom a file is read: a caption in two languages gives one, and a line "if" asks a parameter.
struct ReportReading {
  bool chinese = false;
  std::map<std::string, std::string> parameters;  // by name in lower case
  ReportFindings* findings = nullptr;  // the reading goes on behind a line that is at fault
};

// A line of a report file: with "like" a report has lines of several files.
struct FileLine {
  std::string file;
  int number = 0;  // 0 for none

  std::string Told() const;  // "Report file LoanCalcList.rpt, line 3"
};

struct ReportWord {
  std::string text;
  bool quoted = false;
};

// "English" / "中文" is one text, the one of the language. What stands in round brackets is one
// word with its blanks. Throws std::invalid_argument when a text or a bracket is not closed.
std::vector<ReportWord> ReportWords(std::string_view line, bool chinese);

}  // namespace kaunter
