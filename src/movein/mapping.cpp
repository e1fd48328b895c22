#include "movein/mapping.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "core/texts.h"
#include "movein/file_trouble.h"

namespace kaunter {
namespace {

// Small letters and digits, and what is not ASCII.
std::string Plain(std::string_view heading) {
  std::string plain;
  for (const char sign : Lower(heading)) {
    const auto byte = static_cast<unsigned char>(sign);
    if (byte >= 0x80 || (sign >= 'a' && sign <= 'z') || (sign >= '0' && sign <= '9')) {
      plain.push_back(sign);
    }
  }
  return plain;
}

bool Means(std::string_view guesses, const std::string& heading) {
  std::istringstream words{std::string(guesses)};
  for (std::string word; words >> word;) {
    if (word == heading) return true;
  }
  return false;
}

struct Separator {
  std::string_view name;
  char sign;
};
constexpr Separator kSeparators[] = {
    {"auto", 0}, {"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}, {"bar", '|'}};

[[noreturn]] void Refuse(int line, std::string_view text) {
  throw FileTrouble({fmt::format("The mapping file, line {}: \"{}\" is not understood", line, text),
                     fmt::format("对照文件第 {} 行：“{}”无法识别", line, text)});
}

// "CustName = Nama" into its two sides.
std::pair<std::string, std::string> Sides(int line, std::string_view text) {
  const auto sign = text.find('=');
  if (sign == std::string_view::npos) Refuse(line, text);
  return {Trim(text.substr(0, sign)), Trim(text.substr(sign + 1))};
}

class MappingLines {
 public:
  Mapping Read(std::string_view text) {
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
      ++number_;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (number_ == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
      line = Trim(line);
      if (!line.empty() && line.front() != '#') Take(line);
    }
    return std::move(mapping_);
  }

 private:
  void Take(const std::string& line) {
    const auto blank = line.find(' ');
    const std::string word = Lower(line.substr(0, blank));
    const std::string rest = blank == std::string::npos ? "" : Trim(line.substr(blank));
    if (word == "kind") {
      TakeKind(rest);
    } else if (word == "dates") {
      const auto order = DayOrderNamed(rest);
      if (!order) Refuse(number_, line);
      mapping_.days = *order;
    } else if (word == "decimal") {
      if (rest != "." && rest != ",") Refuse(number_, line);
      mapping_.decimal = rest.front();
    } else if (word == "encoding") {
      const auto encoding = EncodingNamed(rest);
      if (!encoding) Refuse(number_, line);
      mapping_.encoding = *encoding;
    } else if (word == "separator") {
      const auto separator = SeparatorNamed(rest);
      if (!separator) Refuse(number_, line);
      mapping_.separator = *separator;
    } else if (word == "column" || word == "fixed") {
      const auto [field, value] = Sides(number_, rest);
      FieldSource& source = Source(field);
      (word == "column" ? source.column : source.fixed) = value;
    } else if (word == "value") {
      TakeValue(rest);
    } else {
      Refuse(number_, line);
    }
  }
  void TakeKind(const std::string& name) {
    for (const MoveKind kind : kMoveKinds) {
      if (!SameText(MoveKindName(kind), name)) continue;
      mapping_.kind = kind;
      return;
    }
    Refuse(number_, name);
  }
  void TakeValue(const std::string& rest) {
    const auto blank = rest.find(' ');
    if (blank == std::string::npos) Refuse(number_, rest);
    // Theirs may hold any sign; ours is an entry of a list.
    const auto sign = rest.rfind('=');
    if (sign == std::string::npos || sign < blank) Refuse(number_, rest);
    const std::string theirs = Trim(std::string_view(rest).substr(blank, sign - blank));
    Source(rest.substr(0, blank)).values[Upper(theirs)] = Trim(rest.substr(sign + 1));
  }
  FieldSource& Source(const std::string& column) {
    const TargetField* const field = FindTarget(mapping_.kind, column);
    if (field == nullptr) Refuse(number_, column);
    return mapping_.fields[field->column];
  }

  Mapping mapping_;
  int number_ = 0;
};

}  // namespace

std::string_view SeparatorName(char separator) {
  for (const Separator& known : kSeparators) {
    if (known.sign == separator) return known.name;
  }
  return kSeparators[0].name;
}

std::optional<char> SeparatorNamed(std::string_view name) {
  for (const Separator& known : kSeparators) {
    if (SameText(known.name, name)) return known.sign;
  }
  return std::nullopt;
}

const FieldSource* Mapping::Find(std::string_view column) const {
  const auto found = fields.find(std::string(column));
  return found == fields.end() ? nullptr : &found->second;
}

const TargetField* Mapping::Missing() const {
  static const std::array<std::vector<const char*>, 3> needed = {
      {{"CustName", "CustRace"},
       {"OldLoanCode", "Customer", "TrxDate", "LoanAmt", "InsRate", "LoanTerm"},
       {"Loan", "PayDate"}}};
  for (const char* column : needed[static_cast<std::size_t>(kind)]) {
    if (Find(column) == nullptr) return FindTarget(kind, column);
  }
  return nullptr;
}

Mapping GuessMapping(MoveKind kind, const std::vector<std::string>& headings) {
  Mapping mapping;
  mapping.kind = kind;
  std::set<std::string> taken;
  for (const TargetField& field : TargetFields(kind)) {
    FieldSource source;
    for (const std::string& heading : headings) {
      const std::string plain = Plain(heading);
      const bool fits = plain == Plain(field.caption.english) || plain == Lower(field.column) ||
                        heading == field.caption.chinese || Means(field.guesses, plain);
      if (!fits || !taken.insert(heading).second) continue;
      source.column = heading;
      break;
    }
    source.fixed = field.usual;
    if (!source.empty()) mapping.fields[field.column] = std::move(source);
  }
  return mapping;
}

std::vector<std::string> NamedHeadings(const std::vector<std::string>& cells) {
  std::vector<std::string> headings;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    std::string name = TidyCell(cells[i]);
    std::replace(name.begin(), name.end(), '\n', ' ');
    if (name.empty()) name = fmt::format("Column {}", i + 1);
    const std::string plain = name;
    for (int again = 2; std::find(headings.begin(), headings.end(), name) != headings.end();
         ++again) {
      name = fmt::format("{} ({})", plain, again);
    }
    headings.push_back(std::move(name));
  }
  return headings;
}

std::string MappingText(const Mapping& mapping) {
  std::string text =
      fmt::format("kind {}\ndates {}\ndecimal {}\nencoding {}\nseparator {}\n",
                  MoveKindName(mapping.kind), DayOrderName(mapping.days), mapping.decimal,
                  EncodingName(mapping.encoding), SeparatorName(mapping.separator));
  for (const TargetField& field : TargetFields(mapping.kind)) {
    const FieldSource* const source = mapping.Find(field.column);
    if (source == nullptr) continue;
    if (!source->column.empty()) {
      text += fmt::format("column {} = {}\n", field.column, source->column);
    }
    if (!source->fixed.empty()) text += fmt::format("fixed {} = {}\n", field.column, source->fixed);
    for (const auto& [theirs, ours] : source->values) {
      text += fmt::format("value {} {} = {}\n", field.column, theirs, ours);
    }
  }
  return text;
}

Mapping ParseMapping(std::string_view text) { return MappingLines().Read(text); }

}  // namespace kaunter
