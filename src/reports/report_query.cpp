#include "reports/report_query.h"

#include <fmt/format.h>

#include <charconv>
#include <stdexcept>

#include "core/values.h"
#include "reports/reading_statement.h"
#include "reports/report_company.h"
#include "reports/selection_formula.h"

namespace kaunter {
namespace {

// A default may say "today".
std::optional<std::string> ValueOf(const ReportFile& file, const ReportParameters& parameters,
                                   const std::string& name, const DateTime& today) {
  const auto given = parameters.find(Lower(name));
  if (given != parameters.end()) return given->second;
  const auto usual = file.defaults.find(Lower(name));
  if (usual == file.defaults.end()) return std::nullopt;
  if (!SameText(usual->second, "today")) return usual->second;
  return fmt::format("date({},{},{})", today.year, today.month, today.day);
}

// "company LoanMast.CompCode" gives the column; "" for another place.
std::string ToldColumn(std::string_view place) {
  constexpr std::string_view kWord = "company ";
  return SameText(place.substr(0, kWord.size()), kWord) ? Trim(place.substr(kWord.size())) : "";
}

bool TellsCompany(std::string_view query) {
  for (auto open = query.find('{'); open != query.npos; open = query.find('{', open + 1)) {
    if (!ToldColumn(Trim(query.substr(open + 1, query.find('}', open) - open - 1))).empty()) {
      return true;
    }
  }
  return false;
}

class StatementWriter {
 public:
  StatementWriter(const ReportFile& file, std::string_view formula,
                  const ReportParameters& parameters, const DateTime& today,
                  const std::string& companies)
      : file_(file), parameters_(parameters), today_(today), companies_(companies) {
    told_company_ = TellsCompany(file.query);
    condition_ = FormulaToCondition(formula, file.aliases);
    if (condition_.empty()) condition_ = "1=1";
  }

  // In one pass: what stands within a value is no place.
  std::string Run() {
    const std::string& query = file_.query;
    std::string statement;
    for (std::size_t i = 0; i < query.size();) {
      const auto open = query.find('{', i);
      const auto close = open == std::string::npos ? open : query.find('}', open);
      if (open != std::string::npos && close == std::string::npos)
        Refuse("a { is not closed with }");
      statement.append(query, i, open == std::string::npos ? open : open - i);
      if (open == std::string::npos) break;
      const std::string place = Trim(query.substr(open + 1, close - open - 1));
      statement += SameText(place, "selection") ? Selection(statement) : Place(place);
      i = close + 1;
    }
    if (all_companies_ && !told_company_ && ReadsCompanies(statement)) {
      Refuse(
          "the query does not show whose rows it gives; a place {company Table.Column} tells it");
    }
    if (!file_.order.empty()) statement += " ORDER BY " + file_.order;
    // Quotes around a place would let a value out of them.
    if (const auto fault = FaultOfReading(statement)) Refuse(fault->what);
    return statement;
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw std::runtime_error(fmt::format("{}: {}.", file_.query_line.Told(), what));
  }

  // Beside the condition, and not within it: no text of the formula can undo the companies.
  std::string Selection(std::string_view before) {
    const std::string column = companies_.empty() || told_company_ ? "" : CompanyColumn(before);
    all_companies_ = all_companies_ || (column.empty() && !companies_.empty());
    return column.empty() ? "(" + condition_ + ")"
                          : fmt::format("(({}) AND {})", condition_, OfCompanies(column));
  }

  std::string OfCompanies(const std::string& column) const {
    return companies_.empty() ? "1=1" : fmt::format("{} IN ({})", column, companies_);
  }

  std::string Place(const std::string& place) const {
    if (const std::string column = ToldColumn(place); !column.empty()) return OfCompanies(column);
    if (place.empty() || place[0] != '?') {
      Refuse(
          fmt::format("the query has a place {{{}}}; it knows {{selection}}, {{?Parameter}} and "
                      "{{company Table.Column}} only",
                      place));
    }
    const auto colon = place.find(':');
    const std::string name = Trim(place.substr(1, colon == place.npos ? colon : colon - 1));
    const std::string kind = colon == place.npos ? "" : Trim(place.substr(colon + 1));
    const auto value = ValueOf(file_, parameters_, name, today_);
    if (!value) {
      Refuse(
          fmt::format("the query needs the parameter {}, which the screen does not hand over; a "
                      "line \"parameter {} ...\" gives its usual value",
                      name, name));
    }
    return Literal(name, kind, *value);
  }

  std::string Literal(const std::string& name, const std::string& kind,
                      const std::string& value) const {
    if (kind.empty() || kind == "date") {
      auto date = ParameterDate(value);
      if (!date && kind == "date") date = DateTime::FromDisplay(value);
      if (date) return SqlDate(*date);
      if (kind.empty()) return QuoteStr(value);
      if (Trim(value).empty()) return "NULL";
    } else if (kind == "text") {
      return QuoteStr(value);
    } else if (kind == "money") {
      try {
        return StripCommaOrZero(value);
      } catch (const std::exception&) {
        // Told below, with the parameter's name.
      }
    } else {
      Refuse(fmt::format("\"{}\" is no kind of a parameter (text, money, date)", kind));
    }
    Refuse(fmt::format("the parameter {} must be a {}, and it is \"{}\"", name,
                       kind == "money" ? "number" : "date", value));
  }

  const ReportFile& file_;
  const ReportParameters& parameters_;
  const DateTime& today_;
  std::string companies_;
  std::string condition_;
  bool told_company_ = false;   // the query has a place of its own for the companies
  bool all_companies_ = false;  // a condition that no company narrows
};

}  // namespace

std::string ReportStatement(const ReportFile& file, std::string_view formula,
                            const ReportParameters& parameters, const DateTime& today,
                            const std::string& companies) {
  return StatementWriter(file, formula, parameters, today, companies).Run();
}

ReportParameters ShownParameters(const ReportFile& file, const ReportParameters& parameters,
                                 const DateTime& today) {
  ReportParameters shown = parameters;
  for (const auto& [name, value] : file.defaults) {
    shown[name] = ValueOf(file, parameters, name, today).value_or("");
  }
  for (auto& [name, value] : shown) {
    if (const auto date = ParameterDate(value)) value = Format(*date, "dd-mm-yyyy");
  }
  return shown;
}

std::optional<DateTime> ParameterDate(std::string_view value) {
  const std::string text = Trim(value);
  const auto open = text.find('(');
  if (open == std::string::npos || text.back() != ')' ||
      !SameText(Trim(text.substr(0, open)), "date"))
    return std::nullopt;
  int parts[3] = {};
  std::size_t at = open + 1;
  for (int i = 0; i < 3; ++i) {
    const std::size_t end = text.find(i < 2 ? ',' : ')', at);
    if (end == std::string::npos) return std::nullopt;
    const std::string part = Trim(text.substr(at, end - at));
    const auto read = std::from_chars(part.data(), part.data() + part.size(), parts[i]);
    if (read.ec != std::errc() || read.ptr != part.data() + part.size()) return std::nullopt;
    at = end + 1;
  }
  const DateTime date{parts[0], parts[1], parts[2]};
  if (at != text.size() || !date.IsValid()) return std::nullopt;
  return date;
}

}  // namespace kaunter
