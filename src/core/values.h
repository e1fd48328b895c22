// The small rules by which a database value becomes text and a text becomes a SQL literal, the
// roundings and the display formats. They stand here once; no screen rounds or formats by itself.
//
// Two roundings meet in this house: Round2, CLng and CInt take ties to even; the display formats
// take ties away from zero. A figure that passes through a display text takes that format's
// rounding.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;
class Desk;

// --- numbers
// Rounds half to even: scaled by 10^decimals in double, ties decided on that product, divided back.
double Round(double x, int decimals);
double Round2(double x);
Money Round2(Money x);
// To 32 and 16 bits, ties to even; throws std::overflow_error when it does not fit.
std::int32_t CLng(double x);
std::int16_t CInt(double x);
std::int32_t CLng(std::string_view text);
std::int16_t CInt(std::string_view text);
double Fix(double x);  // toward zero
double Int(double x);  // toward minus infinity
// The double of a display text (thousands commas allowed). Throws std::invalid_argument for letters
// or "".
double CDbl(std::string_view text);
double CDbl(Money x);
// True for a text that CDbl takes.
bool IsNumeric(std::string_view text);
// Shortest text of a double that reads back the same to 15 digits, as a loosely typed number shows
// itself
// ("150", "276.92", "-0.5", "1E+16" never below that size).
std::string NumberText(double x);
// "0", "0.00", "0000", "#,##0.00", "#,##0.0000", "0.##": half away from zero at the digits shown,
// decided on the 15 significant digits of a double and exactly for money.
std::string Format(double x, std::string_view pattern);
std::string Format(Money x, std::string_view pattern);
// "dd-mm-yyyy", "yyyy-mm-dd", "yyyy-mm-dd hh:nn:ss", "dd-MM-yyyy", "hhmm", "h:mm ampm", "hh:mm:ss
// AMPM", "long date", "dddd, mmmm dd, yyyy h:mm am/pm" and their parts.
std::string Format(const DateTime& when, std::string_view pattern);

// --- text to SQL
std::string EscapeQuotes(std::string_view text);
std::string QuoteStr(std::string_view text);
// "" gives "0" ("null"); else the text without commas. Throws std::invalid_argument for a text that
// is no plain number: it would become part of the statement.
std::string StripCommaOrZero(std::string_view text);
std::string StripCommaOrNull(std::string_view text);
// "" gives the word null; else the literal. Takes dd-mm-yyyy (with time) or a date. Throws
// std::invalid_argument for a text that is no date.
std::string SqlDate(std::string_view text);
std::string SqlDate(const DateTime& date);
std::string SqlDateTime(std::string_view text);
std::string SqlDateTime(const DateTime& date);

// --- database value to text
std::string NullToEmpty(const Value& value);
std::string ShowDate(const Value& value);  // years below 2000 are hidden
// As ShowDate, but hides only 1900: for dates of birth and of employment.
std::string ShowBirthDate(const Value& value);
std::string ShowDateTime(const Value& value);
std::string ShowMoney(const Value& value);
std::string Show2dp(const Value& value);
std::string Show4dp(const Value& value);
std::string ShowInt(const Value& value);
bool IsDate(std::string_view display_text);  // dd-mm-yyyy of the calendar

// --- data access
// First field of the first row as text; "" when there is none. Throws SqlError.
std::string ScalarQuery(const Connection& connection, std::string_view sql) = delete;
std::string ScalarQuery(Connection& connection, std::string_view sql);
// Runs the statement with the hourglass on; on an error shows "an error occur during process" under
// the title "Update1Feld" and gives false.
bool ExecSql(Session& session, Desk& desk, std::string_view sql);
// The server's clock: dd-mm-yyyy, or dd-mm-yyyy hh:nn:ss.
std::string ServerNow(Connection& connection, bool with_time);
DateTime ServerTime(Connection& connection);
bool TableExists(Connection& connection, std::string_view name);

// --- small text helpers
std::string ApplyCapLock(const Session& session, std::string_view text);
// February has 29 days in every year divisible by 4, centuries included, on purpose.
int DaysInMonth(int month, int year);
// Makes PhotoPath/name when it is missing. Throws std::filesystem::filesystem_error.
void EnsurePhotoFolder(const Session& session, std::string_view name);
std::string Upper(std::string_view text);
std::string Trim(std::string_view text);
bool SameText(std::string_view a, std::string_view b);  // without regard to (ASCII) case

}  // namespace kaunter
