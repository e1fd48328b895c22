#include "reports/report_texts.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "core/values.h"
#include "reports/amount_in_words.h"
#include "reports/report_file.h"

namespace kaunter {
namespace {

// "PayAmt:sum:words" in its parts: the name, then the forms in the order in which they are applied.
std::vector<std::string> Parts(std::string_view place) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= place.size();) {
    const std::size_t end = std::min(place.find(':', begin), place.size());
    parts.push_back(Trim(place.substr(begin, end - begin)));
    begin = end + 1;
  }
  return parts;
}

// A text that the form does not suit stays as it is: a parameter may carry anything.
std::string Formed(const std::string& text, const std::string& form) {
  if (form == "words") {
    const auto amount = Money::TryText(text);
    return amount ? AmountInWords(*amount) : text;
  }
  if (form == "long" && IsDate(text)) {
    const auto part = [&](std::size_t at, std::size_t size) { return CLng(text.substr(at, size)); };
    return Format(DateTime{part(6, 4), part(3, 2), part(0, 2)}, "d mmmm yyyy");
  }
  if (form == "upper") return Upper(text);
  return text;
}

// A dot between two pieces goes with the piece before or behind it.
std::string WithoutLooseDots(const std::string& text) {
  constexpr std::string_view kDot = "\u00b7";
  std::string tidy = Trim(text);
  while (tidy.starts_with(kDot)) tidy = Trim(tidy.substr(kDot.size()));
  while (tidy.ends_with(kDot)) tidy = Trim(tidy.substr(0, tidy.size() - kDot.size()));
  return tidy;
}

}  // namespace

std::size_t ReportTexts::ColumnOf(std::string_view name, const FileLine& line) const {
  const auto& columns = rows_.columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (SameText(columns[i].name, name)) return i;
  }
  throw std::runtime_error(fmt::format("{}: the query gives no column \"{}\".",
                                       line.number > 0 ? line.Told() : FileLine{path_}.Told(),
                                       name));
}

std::string ReportTexts::ValueText(const std::string& name, RowSpan span,
                                   const FileLine& line) const {
  if (!name.empty() && name[0] == '?') {
    const auto found = heading_.parameters.find(Lower(name.substr(1)));
    return found == heading_.parameters.end() ? std::string() : found->second;
  }
  if (name == "count") return std::to_string(span.count);
  if (name == "group") return "{group}";
  if (name == "copy") return copy;
  if (name == "today") return heading_.today;
  if (name == "printed") return heading_.printed_at;
  if (span.count == 0) return {};
  const Value& value = rows_.rows()[span.first][ColumnOf(name, line)];
  if (value.AsDate() != nullptr) return ShowDate(value);
  // A rate keeps the decimals past the second, an amount has none.
  const Money* amount = value.AsMoney();
  const bool whole_sen = amount != nullptr && Round2(*amount) == *amount;
  return whole_sen ? ShowMoney(value) : NullToEmpty(value);
}

Money ReportTexts::Sum(const std::string& name, RowSpan span, const FileLine& line) const {
  Money sum;
  const std::size_t column = ColumnOf(name, line);
  for (std::size_t row = 0; row < span.count; ++row) {
    sum += MoneyOf(rows_.rows()[span.first + row][column]);
  }
  return sum;
}

std::string ReportTexts::PlaceText(const std::string& place, RowSpan span,
                                   const FileLine& line) const {
  const std::vector<std::string> parts = Parts(place);
  const bool sum = parts.size() > 1 && parts[1] == "sum";
  const bool birth = parts.size() > 1 && parts[1] == "birth" && span.count > 0;
  std::string text = sum     ? ShowMoney(Value(Sum(parts[0], span, line)))
                     : birth ? ShowBirthDate(rows_.rows()[span.first][ColumnOf(parts[0], line)])
                             : ValueText(parts[0], span, line);
  for (std::size_t i = sum ? 2 : 1; i < parts.size(); ++i) text = Formed(text, parts[i]);
  return text;
}

std::string ReportTexts::FillPlaces(std::string_view text, RowSpan span, const FileLine& line,
                                    bool& empty_place) const {
  std::string filled;
  for (std::size_t i = 0; i < text.size();) {
    const auto open = text.find('{', i);
    const auto close = open == std::string_view::npos ? open : text.find('}', open);
    if (close == std::string_view::npos) return filled.append(text.substr(i));
    const std::string value =
        PlaceText(std::string(text.substr(open + 1, close - open - 1)), span, line);
    empty_place = empty_place || Trim(value).empty();
    filled.append(text.substr(i, open - i)).append(value);
    i = close + 1;
  }
  return filled;
}

std::string ReportTexts::Fill(std::string_view text, RowSpan span, const FileLine& line) const {
  bool empty_place = false;
  return FillPlaces(text, span, line, empty_place);
}

std::string ReportTexts::FillLetter(std::string_view text, RowSpan span,
                                    const FileLine& line) const {
  std::string filled;
  while (!text.empty()) {
    const std::size_t open = std::min(text.find('['), text.size());
    filled += Fill(text.substr(0, open), span, line);
    if (open == text.size()) break;
    const std::size_t close = std::min(text.find(']', open), text.size());
    bool empty_place = false;
    const std::string piece =
        FillPlaces(text.substr(open + 1, close - open - 1), span, line, empty_place);
    if (!empty_place) filled += piece;
    text.remove_prefix(std::min(close + 1, text.size()));
  }
  return WithoutLooseDots(filled);
}

CompanyPictures ReportTexts::PicturesOf(const std::string& company) const {
  const auto found = heading_.pictures.find(company);
  return found == heading_.pictures.end() ? CompanyPictures{} : found->second;
}

std::string PlaceFault(std::string_view text) {
  static constexpr std::string_view kForms[] = {"words", "long", "upper", "birth"};
  bool in_brackets = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '[') {
      if (in_brackets) return "a [ stands within [ ]";
      in_brackets = true;
    } else if (text[i] == ']') {
      if (!in_brackets) return "a ] stands without its [";
      in_brackets = false;
    } else if (text[i] == '}') {
      return "a } stands without its {";
    } else if (text[i] == '{') {
      const std::size_t close = text.find('}', i);
      if (close == std::string_view::npos) return "a { is not closed with }";
      const std::vector<std::string> parts = Parts(text.substr(i + 1, close - i - 1));
      if (parts[0].empty()) return "a place { } has no name";
      for (std::size_t form = 1; form < parts.size(); ++form) {
        const bool known =
            std::find(std::begin(kForms), std::end(kForms), parts[form]) != std::end(kForms) ||
            (form == 1 && parts[form] == "sum");
        if (!known) {
          return fmt::format("\"{}\" is no form of a place (sum, words, long, upper, birth)",
                             parts[form]);
        }
      }
      i = close;
    }
  }
  return in_brackets ? "a [ is not closed with ]" : "";
}

Money MoneyOf(const Value& value) {
  if (const Money* money = value.AsMoney()) return *money;
  if (const std::int64_t* integer = value.AsInteger()) return Money::FromInteger(*integer);
  if (const double* number = value.AsDouble()) return Money::FromDouble(*number);
  return {};
}

std::string ShowCell(const Value& value, CellKind kind) {
  if (value.IsNull()) return {};
  switch (kind) {
    case CellKind::integer:
      return ShowInt(value);
    case CellKind::money:
      return ShowMoney(value);
    case CellKind::rate: {
      // Most rates have no more than two decimals; the others show all four.
      const Money rate = MoneyOf(value);
      return Round2(rate) == rate ? ShowMoney(value) : Show4dp(value);
    }
    case CellKind::date:
      return ShowDate(value);
    case CellKind::text:
      return NullToEmpty(value);
  }
  return {};
}

}  // namespace kaunter
