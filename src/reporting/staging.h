// What the computations of the staged reports share: one transaction under the wait cursor, the
// literals of a row, and rows sent together.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/sql/connection.h"
#include "reporting/staged_reports.h"

namespace kaunter {

// Runs the computation in one transaction of the main connection, the old rows of the run dropped
// first. A failure rolls back, goes to `log`, is told as `text` and gives false.
using FailureLog = std::function<void(const Session& session, const std::exception& failure)>;
bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& work, const FailureLog& log);
// The same with the log line that every failed save has.
bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& work);
// The same for a computation of many rows: what it reads is read in a transaction of its own, so
// that it fits together, and composed in none, so that the others write meanwhile.
bool Stage(Session& session, Desk& desk, const StagedRun& run, std::string_view text,
           const std::function<void(Connection& main)>& read, const std::function<void()>& compose,
           const std::function<void(Connection& main)>& write);

// A date that the computation cannot do without. Throws std::invalid_argument that names it.
DateTime NeededDate(std::string_view text, std::string_view name);

// The date of a field; nothing for Null.
std::optional<DateTime> DateOf(const Value& field);

// Literals of a row: an amount is the shown text without its commas, Null is 0; Null is no date.
std::string AmountLiteral(const Value& amount);
std::string DateLiteral(const Value& date);
std::string TextLiteral(const Value& text);

// " WHERE pcname=<pc> AND reportname=<file> AND recordID=<id>".
std::string OfRow(const StagedRun& run, std::string_view record_id);

}  // namespace kaunter
