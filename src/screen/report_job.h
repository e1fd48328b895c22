// ReportJob: what a screen hands to the report engine to start a report.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kaunter {

class Connection;

enum class ReportDestination { preview, printer, pdf };

struct ReportJob {
  std::string ReportFileName;    // full path
  std::string SelectionFormula;  // "{SchMast2.LoanID}='LC-0001'"
  std::string ReportTitle;
  Connection* Connect = nullptr;               // the connection that the report reads
  std::map<int, std::string> ParameterFields;  // "<name>;<value>;True" by number
  ReportDestination Destination = ReportDestination::preview;
  std::string PrintedBy = {};  // who prints, for the foot; may be empty
  bool Chinese = false;        // the session's language, for a file that has texts in both
  std::string Company = {};    // above the title
  std::string Companies = {};  // whose rows may be printed, "'A','B'" as literals; "" for all
};

}  // namespace kaunter
