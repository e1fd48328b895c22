#include "bank/bank_layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/report_path.h"
#include "core/values.h"
#include "platform/installation.h"
#include "reports/report_encoding.h"
#include "reports/report_words.h"

namespace kaunter {
namespace {

constexpr const char* kLayouts = "BankLayouts.txt";
constexpr int kFarthest = 10000;  // no line of a bank is longer
constexpr std::size_t kAmountDigits = 13;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool AllDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, IsDigit);
}

class Parser {
 public:
  explicit Parser(std::string file) : file_(std::move(file)) {}

  std::vector<BankLayout> Run(std::string_view text) {
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
      ++number_;
      if (line.ends_with('\r')) line.pop_back();
      Read(line);
    }
    End();
    return std::move(layouts_);
  }

 private:
  [[noreturn]] void Refuse(int line, const std::string& why) const {
    throw BankLayoutFault(fmt::format("{}, line {}: {}", file_, line, why));
  }
  [[noreturn]] void Refuse(const std::string& why) const { Refuse(number_, why); }

  void Read(const std::string& line) {
    const std::string trimmed = Trim(line);
    if (trimmed.empty() || trimmed.starts_with('#')) return;
    try {
      words_ = ReportWords(line, false);
    } catch (const std::invalid_argument& fault) {
      Refuse(fault.what());
    }
    at_ = 0;
    const std::string first = Word();
    if (first == "layout") {
      End();
      Begin(Quoted("the name of the layout"));
    } else if (layouts_.empty()) {
      Refuse("a layout begins with: layout \"NAME\"");
    } else {
      Line(first);
    }
    if (at_ < words_.size()) Refuse(fmt::format("\"{}\" is too much", words_[at_].text));
  }

  void Begin(const std::string& name) {
    for (const BankLayout& layout : layouts_) {
      if (SameText(layout.name, name))
        Refuse(fmt::format("there is a layout \"{}\" already", name));
    }
    layouts_.emplace_back().name = name;
    began_ = number_;
  }

  // What a layout needs to be of use.
  void End() {
    if (layouts_.empty()) return;
    const BankLayout& layout = layouts_.back();
    const auto require = [&](bool there, const char* what) {
      if (!there)
        Refuse(began_, fmt::format("the layout \"{}\" has no line {}", layout.name, what));
    };
    require(layout.Find(BankPart::amount) != nullptr, "amount");
    require(layout.Find(BankPart::reference) != nullptr, "reference");
    const bool parts = layout.Find(BankPart::year) != nullptr &&
                       layout.Find(BankPart::month) != nullptr &&
                       layout.Find(BankPart::day) != nullptr;
    require(parts || layout.Find(BankPart::date) != nullptr, "date (or year, month and day)");
  }

  void Line(const std::string& word) {
    BankLayout& layout = layouts_.back();
    if (word == "fixed") {
      layout.delimiter = 0;
    } else if (word == "delimited") {
      layout.delimiter = Delimiter();
    } else if (word == "encoding") {
      layout.encoding = Encoding();
    } else if (word == "skip") {
      layout.skip = Number("how many lines");
    } else if (word == "only" || word == "not") {
      const BankPlace place = Place();
      layout.conditions.push_back({place, Quoted("the text that stands there"), word == "only"});
    } else if (word == "header") {
      layout.has_header = true;
      Field(Word(), true);
    } else {
      Field(word, false);
    }
  }

  void Field(const std::string& word, bool in_header) {
    static constexpr std::pair<std::string_view, BankPart> kParts[] = {
        {"year", BankPart::year},      {"month", BankPart::month},
        {"day", BankPart::day},        {"date", BankPart::date},
        {"amount", BankPart::amount},  {"reference", BankPart::reference},
        {"account", BankPart::account}};
    const auto* found = std::ranges::find(kParts, std::string_view(word),
                                          &std::pair<std::string_view, BankPart>::first);
    if (found == std::end(kParts)) {
      Refuse(
          fmt::format("\"{}\" is not known; a line begins with layout, fixed, delimited, "
                      "encoding, skip, header, year, month, day, date, amount, reference, "
                      "account, only or not",
                      word));
    }
    BankField field;
    field.part = found->second;
    field.in_header = in_header;
    if (layouts_.back().Find(field.part) != nullptr) {
      Refuse(fmt::format("\"{}\" is told a second time", word));
    }
    if (in_header && (field.part == BankPart::amount || field.part == BankPart::reference)) {
      Refuse(fmt::format("\"{}\" stands in each payment, not in the header", word));
    }
    field.place = Place();
    if (field.part == BankPart::date) field.pattern = Pattern();
    if (field.part == BankPart::amount) field.sen = IsSen();
    layouts_.back().fields.push_back(field);
  }

  // --- words

  std::string Word() {
    if (at_ == words_.size() || words_[at_].quoted) Refuse("a word is missing");
    return Lower(words_[at_++].text);
  }
  std::string Quoted(const char* what) {
    if (at_ == words_.size() || !words_[at_].quoted || words_[at_].text.empty()) {
      Refuse(fmt::format("{} is missing, in double quotes", what));
    }
    return words_[at_++].text;
  }
  int Number(const char* what) {
    const bool there = at_ < words_.size() && AllDigits(words_[at_].text) &&
                       words_[at_].text.size() < 6 && CLng(words_[at_].text) >= 1 &&
                       CLng(words_[at_].text) <= kFarthest;
    if (!there) Refuse(fmt::format("{} is missing: a number from 1 to {}", what, kFarthest));
    return CLng(words_[at_++].text);
  }
  BankPlace Place() {
    if (layouts_.back().delimiter != 0) return {Number("the number of the column"), 0};
    const int start = Number("the position at which it begins");
    return {start, Number("its length")};
  }
  char32_t Delimiter() {
    if (!layouts_.back().fields.empty() || !layouts_.back().conditions.empty()) {
      Refuse("\"delimited\" stands before the fields");
    }
    if (at_ < words_.size() && !words_[at_].quoted && Lower(words_[at_].text) == "tab") {
      ++at_;
      return U'\t';
    }
    const std::string sign = Quoted("the sign between the fields (or the word tab)");
    if (sign.size() != 1 || sign == "\"") Refuse("one sign of plain English parts the fields");
    return static_cast<char32_t>(static_cast<unsigned char>(sign[0]));
  }
  BankLayout::Encoding Encoding() {
    const std::string name = Word();
    if (name == "utf-8") return BankLayout::Encoding::utf8;
    if (name == "gbk") return BankLayout::Encoding::gbk;
    if (name == "bytes") return BankLayout::Encoding::bytes;
    Refuse(fmt::format("\"{}\" is no encoding; it is utf-8, gbk or bytes", name));
  }
  std::string Pattern() {
    const std::string pattern = Lower(Quoted("how the date is written, such as \"dd/mm/yyyy\""));
    const auto run = [&](char letter) {
      const auto first = pattern.find(letter);
      const auto last = pattern.rfind(letter);
      const auto count = static_cast<std::size_t>(std::ranges::count(pattern, letter));
      return first == std::string::npos || last - first + 1 != count ? 0 : count;
    };
    if (run('d') != 2 || run('m') != 2 || (run('y') != 4 && run('y') != 2)) {
      Refuse(fmt::format(
          "\"{}\" does not say how a date is written: it has dd, mm and yyyy (or yy)", pattern));
    }
    return pattern;
  }
  bool IsSen() {
    const std::string unit = Word();
    if (unit != "sen" && unit != "ringgit") {
      Refuse("an amount ends with sen (whole sen, no point) or ringgit (with a point)");
    }
    return unit == "sen";
  }

  std::string file_;
  int number_ = 0;
  int began_ = 0;
  std::vector<BankLayout> layouts_;
  std::vector<ReportWord> words_;
  std::size_t at_ = 0;
};

std::vector<BankLayout> ReadFile(const std::filesystem::path& path, const std::string& shown) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {};
  std::ostringstream text;
  text << file.rdbuf();
  std::string layouts;
  try {
    layouts = Utf8Text(std::move(text).str(), shown);
  } catch (const std::runtime_error& encoding) {
    throw BankLayoutFault(encoding.what());
  }
  return ParseBankLayouts(layouts, shown);
}

}  // namespace

const BankField* BankLayout::Find(BankPart part) const {
  const auto found = std::ranges::find(fields, part, &BankField::part);
  return found == fields.end() ? nullptr : &*found;
}

std::vector<BankLayout> ParseBankLayouts(std::string_view text, const std::string& file) {
  return Parser(file).Run(text);
}

std::vector<BankLayout> ReadBankLayouts(const std::string& app_path) {
  const std::filesystem::path folder(app_path);
  std::vector<BankLayout> layouts = ReadFile(FileOf(app_path, kLayouts), kLayouts);
  for (BankLayout& own :
       ReadFile(folder / kOwnReports / kLayouts, std::string(kOwnReports) + "/" + kLayouts)) {
    const auto same = std::ranges::find_if(
        layouts, [&](const BankLayout& layout) { return SameText(layout.name, own.name); });
    if (same == layouts.end()) {
      layouts.push_back(std::move(own));
    } else {
      *same = std::move(own);
    }
  }
  return layouts;
}

std::optional<DateTime> BankDate(std::string_view text, std::string_view pattern) {
  if (text.size() != pattern.size()) return std::nullopt;
  int year = 0, month = 0, day = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    int* const number = pattern[i] == 'y'   ? &year
                        : pattern[i] == 'm' ? &month
                        : pattern[i] == 'd' ? &day
                                            : nullptr;
    if (number == nullptr && text[i] != pattern[i]) return std::nullopt;
    if (number == nullptr) continue;
    if (!IsDigit(text[i])) return std::nullopt;
    *number = *number * 10 + (text[i] - '0');
  }
  constexpr int kCentury = 2000;
  if (pattern.find("yyyy") == std::string_view::npos) year += kCentury;
  const DateTime date{year, month, day};
  // A box hides every earlier one.
  if (!date.IsValid() || year < kCentury) return std::nullopt;
  return date;
}

std::optional<Money> BankAmount(std::string_view text, bool sen) {
  if (sen) {
    if (!AllDigits(text) || text.size() > kAmountDigits) return std::nullopt;
    return Money::FromTenThousandths(std::stoll(std::string(text)) * 100);
  }
  const auto point = text.find('.');
  if (point != std::string_view::npos && text.size() - point > 3) return std::nullopt;
  if (text.empty() || text.size() > kAmountDigits + 5 || !IsDigit(text.front()))
    return std::nullopt;
  return Money::TryText(text);
}

}  // namespace kaunter
