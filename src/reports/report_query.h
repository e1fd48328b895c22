// The statement of a report: its query with the condition of the print and the parameters in their
// places.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "reports/report_file.h"

namespace kaunter {

// By name in lower case, as the screen hands them over.
using ReportParameters = std::map<std::string, std::string>;

// {selection} becomes the condition, {?Name} a literal: text in quotes, or a date when the value is
// one, "date(2024,1,31)". {?Name:money}, {?Name:date} and {?Name:text} say what it must be. The
// value "today" of a default is the day of the print. `companies`, "'A','B'" as literals, narrows
// the rows to theirs, "" to none: {company Table.Column} is that condition, and a query without
// such a place has it beside each {selection}. Throws std::runtime_error that names file, place and
// what is wrong.
std::string ReportStatement(const ReportFile& file, std::string_view formula,
                            const ReportParameters& parameters, const DateTime& today,
                            const std::string& companies = {});

// The parameters with the file's defaults where the screen gave none, dates as papers show them.
ReportParameters ShownParameters(const ReportFile& file, const ReportParameters& parameters,
                                 const DateTime& today);

// "date(2024,1,31)" as a date; nothing for any other text.
std::optional<DateTime> ParameterDate(std::string_view value);

}  // namespace kaunter
