#include "platform/sql/odbc/odbc_error.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kaunter::sql {
namespace {

struct StateNumber {
  std::string_view state;
  int number;
};

constexpr StateNumber kStates[] = {
    {"21000", 512},   // a subquery gives more than one row
    {"22001", 2628},  // text longer than its column
    {"22003", 8115},  // number out of range
    {"22007", 241},   // text that is no date
    {"22008", 242},   // a day outside the calendar
    {"22012", 8134},  // division by zero
    {"2201F", 3623},  // root of a negative number, and the like
    {"2201E", 3623},  //
    {"22018", 245},   // text that is no number
    {"22P02", 245},   //
    {"23502", 515},   // null in a column that takes none
    {"23503", 547},   // foreign key
    {"23505", 2627},  // a key twice
    {"23514", 547},   // check
    {"28000", kLoginRefusedNumber},
    {"28P01", kLoginRefusedNumber},
    {"3D000", kCannotOpenNumber},
    {"40001", 1205},  // deadlock, or a serialisation that must be tried again
    {"40P01", 1205},  //
    {"42601", 102},   // syntax
    {"42701", 2705},  // column named twice
    {"42702", 209},   // ambiguous column
    {"42703", 207},   // unknown column
    {"42803", 8120},  // column outside GROUP BY
    {"42P01", 208},   // unknown table
    {"42P07", 2714},  // object is there already
    {"42S01", 2714},  //
    {"42S02", 208},   //
    {"42S21", 2705},  //
    {"42S22", 207},   //
    {"53100", 1105},  // disk full
    {"55P03", 1222},  // lock not to be had in time
    {"25006", 3906},  // read-only
};

// Texts that only stand beside an error: "the statement has been terminated", "changed database
// context", "changed language".
bool IsCompanion(int native) { return native == 3621 || native == 5701 || native == 5703; }

// "K0245": raised by a function of our own for the server's error 245. 0 for any other state.
int RaisedNumber(const std::string& state) {
  if (state.size() != 5 || state[0] != 'K') return 0;
  int number = 0;
  for (const char c : state.substr(1)) {
    if (c < '0' || c > '9') return 0;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

SqlError ToSqlError(const std::vector<OdbcDiagnostic>& records, bool server_numbers) {
  int number = 0;
  for (const OdbcDiagnostic& record : records) {
    if (IsCompanion(record.native) || number != 0) continue;
    const auto* known = std::find_if(std::begin(kStates), std::end(kStates),
                                     [&](const auto& row) { return row.state == record.state; });
    if (const int raised = RaisedNumber(record.state)) {
      number = raised;
      continue;
    }
    const bool trust_native = server_numbers && record.native != 0;
    number = trust_native || known == std::end(kStates) ? record.native : known->number;
  }
  return SqlError(number, JoinDiagnostics(records));
}

bool TellsLost(const std::vector<OdbcDiagnostic>& records) {
  return std::any_of(records.begin(), records.end(), [](const OdbcDiagnostic& record) {
    // Class 08 is a connection failure; class 57P a server that shuts down or was killed.
    return record.state.starts_with("08") || record.state.starts_with("57P");
  });
}

bool EndsTransaction(int number) {
  // Deadlock, snapshot conflict, uncommittable, failed conversions of date, text and number.
  constexpr int kEnding[] = {1205, 3960, 3930, 241, 242, 245, 8114};
  return std::find(std::begin(kEnding), std::end(kEnding), number) != std::end(kEnding);
}

}  // namespace kaunter::sql
