// Reports that one query cannot give: running balances, opening balances, totals of several tables.
// Their rows are worked out here and written to the scratch table MasterReport, under the name of
// this PC and of the report file; the report reads only those.
//
// Each computation replaces the rows of its PC and report as a whole: a failure rolls back, is
// logged and told, and gives false, and no report may run then. Messages and log lines carry the
// session's MsgTitle, the title of the report in work.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/staged_rows.h"
#include "reporting/report_filter.h"

namespace kaunter {

class Connection;
class Desk;
class Session;

struct StagedRun {
  std::string report_name;  // the file as the menu chose it: "StatementList.rpt"
  std::string pcname;
  std::string date_from;  // dd-mm-yyyy or ""
  std::string date_to;
  std::string id_from;  // a range of loans, for the statement of account
  std::string id_to;
  std::vector<StagedFilter> filters;
};

// What a summary prints above its rows.
struct SummaryHead {
  std::string to_date;   // the parameter field at position 1: "Todate;31-01-2024;True"
  std::string year_end;  // and at position 2: "YearEnd;31-12-2024;True"
  std::string title;
};

// Loans made and payments taken in the period. A user with the Special flag sees the second amounts
// of the loans.
bool StageDailyCollection(Session& session, Desk& desk, const StagedRun& run);
// Loans made in the period with what was paid on them up to its end. Demands a company; says
// "Process Complete" by itself.
bool StageRekodTrans(Session& session, Desk& desk, const StagedRun& run);
// Per loan an opening row, into which everything before DateFrom is added, and a row for each item
// since. The cut-off is DateTo, or the server's today when it is empty.
bool StageStatement(Session& session, Desk& desk, const StagedRun& run);
// Per loan the interest, charges and capital of the period, of its year and up to DateTo.
bool StageSummary(Session& session, Desk& desk, const StagedRun& run, SummaryHead& head);
// The money movements of the period and an opening line per company.
bool StageAccountReport(Session& session, Desk& desk, const StagedRun& run);

}  // namespace kaunter
