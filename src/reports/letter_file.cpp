#include "reports/letter_file.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

#include "core/values.h"
#include "reports/report_texts.h"

namespace kaunter {
namespace {

struct Shape {
  std::string_view word;
  LetterKind kind;
  std::size_t least_texts;
  std::size_t most_texts;
  std::size_t numbers;
  std::string_view options;  // the words that may stand behind it
};

constexpr Shape kShapes[] = {
    {"head", LetterKind::head, 1, 8, 0, "left center logo"},
    {"heading", LetterKind::heading, 1, 1, 0, "size left center right"},
    {"text", LetterKind::text, 1, 1, 0, "size bold quiet left center right"},
    {"lines", LetterKind::lines, 1, 10, 0, "size bold quiet left center right"},
    {"space", LetterKind::space, 0, 0, 1, ""},
    {"rule", LetterKind::rule, 0, 0, 0, ""},
    {"cut", LetterKind::cut, 0, 0, 0, ""},
    {"picture", LetterKind::picture, 1, 1, 2, "left center right"},
    {"qr", LetterKind::qr, 1, 1, 1, "left center right"},
    {"pair", LetterKind::pair, 2, 4, 0, "bold"},
    {"amount", LetterKind::amount, 2, 2, 0, "bold always"},
    {"box", LetterKind::box, 2, 2, 0, "size"},
    {"items", LetterKind::items, 0, 0, 0, ""},
    {"sign", LetterKind::sign, 1, 4, 0, ""},
    {"labels", LetterKind::labels, 0, 0, 1, ""},
    {"together", LetterKind::together, 0, 0, 0, ""},
    {"columns", LetterKind::columns, 0, 0, 2, ""},
    {"beside", LetterKind::beside, 0, 0, 0, ""},
    {"across", LetterKind::across, 0, 0, 0, ""},
    {"page", LetterKind::page, 0, 0, 0, ""},
};

[[noreturn]] void Refuse(const std::string& what) { throw std::invalid_argument(what); }

double Number(const std::string& word, const std::string& behind) {
  if (!IsNumeric(word) || CDbl(word) <= 0) {
    Refuse(fmt::format("\"{}\" needs a number above 0 behind it", behind));
  }
  return CDbl(word);
}

bool Allowed(const Shape& shape, std::string_view option) {
  const std::string among = fmt::format(" {} ", shape.options);
  return among.find(fmt::format(" {} ", option)) != std::string::npos;
}

void CheckText(const std::string& text) {
  const std::string fault = PlaceFault(text);
  if (!fault.empty()) Refuse(fault);
}

LetterItem ItemOf(const Shape& shape, const std::vector<ReportWord>& words) {
  LetterItem item{shape.kind, {}, {}, {}};
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string& word = words[i].text;
    if (words[i].quoted) {
      CheckText(word);
      item.texts.push_back(word);
    } else if (item.numbers.size() < shape.numbers) {
      item.numbers.push_back(Number(word, words[0].text));
    } else if (!Allowed(shape, word)) {
      Refuse(fmt::format("\"{}\" is not known behind {}{}{}", word, shape.word,
                         shape.options.empty() ? "" : "; it may be ", shape.options));
    } else if (word == "size") {
      item.size = Number(i + 1 < words.size() ? words[i + 1].text : "", "size");
      ++i;
    } else if (word == "bold") {
      item.bold = true;
    } else if (word == "quiet") {
      item.quiet = true;
    } else if (word == "logo") {
      item.logo = true;
    } else if (word == "always") {
      item.always = true;
    } else {
      item.align = word == "right"    ? TextAlign::right
                   : word == "center" ? TextAlign::center
                                      : TextAlign::left;
    }
  }
  if (item.texts.size() < shape.least_texts || item.texts.size() > shape.most_texts) {
    Refuse(shape.most_texts == 0 ? fmt::format("\"{}\" takes no text", shape.word)
           : shape.least_texts == shape.most_texts
               ? fmt::format("\"{}\" takes {} text(s) in quotes", shape.word, shape.least_texts)
               : fmt::format("\"{}\" takes {} to {} texts in quotes", shape.word, shape.least_texts,
                             shape.most_texts));
  }
  if (item.numbers.size() < shape.numbers) {
    Refuse(fmt::format("\"{}\" needs {} number(s) behind it", shape.word, shape.numbers));
  }
  if (shape.kind == LetterKind::pair && item.texts.size() == 3) {
    Refuse("\"pair\" takes a label and a text, or two of each");
  }
  return item;
}

}  // namespace

bool LetterParser::Take(const std::vector<ReportWord>& words, const FileLine& line) {
  if (TakeSetting(words, line) || TakeCondition(words, line)) return true;
  for (const Shape& shape : kShapes) {
    if (words[0].text != shape.word) continue;
    LetterItem item = ItemOf(shape, words);
    item.line = line;
    DropInherited();
    CheckOrder(item);
    letter_.items.push_back(std::move(item));
    return true;
  }
  return false;
}

bool LetterParser::TakeSetting(const std::vector<ReportWord>& words, const FileLine& line) {
  const std::string& key = words[0].text;
  if (key != "letter" && key != "margin" && key != "copies" && key != "foot" && key != "more") {
    return false;
  }
  if (words.size() < 2) Refuse(fmt::format("\"{}\" needs a word behind it", key));
  if (key == "letter") {
    letter_.key = words[1].text;
  } else if (key == "margin") {
    letter_.margin = Number(words[1].text, key);
    if (letter_.margin > 40) Refuse("the margin is at most 40 mm");
  } else if (key == "foot") {
    CheckText(words[1].text);
    letter_.foot = words[1].text;
    letter_.foot_line = line;
  } else if (key == "copies") {
    letter_.copies.clear();
    for (std::size_t i = 1; i < words.size(); ++i) letter_.copies.push_back(words[i].text);
  } else {
    TakeMore(words);
  }
  return true;
}

// "when Column" and "unless Column", up to "done".
bool LetterParser::TakeCondition(const std::vector<ReportWord>& words, const FileLine& line) {
  const std::string& key = words[0].text;
  const bool ends = key == "done";
  if (key != "when" && key != "unless" && !ends) return false;
  if (words.size() != (ends ? 1 : 2)) {
    Refuse(ends ? "\"done\" stands alone" : fmt::format("\"{}\" takes a column", key));
  }
  DropInherited();
  if (ends != conditional_) {
    Refuse(ends ? "\"done\" stands without \"when\" or \"unless\" before it"
                : fmt::format("\"{}\" stands within another: put \"done\" before", key));
  }
  if (open_ != LetterKind::across) {
    Refuse(fmt::format("\"{}\" does not go into what stands together: put \"across\" before", key));
  }
  conditional_ = !ends;
  LetterItem item{ends            ? LetterKind::done
                  : key == "when" ? LetterKind::when
                                  : LetterKind::unless,
                  line,
                  {},
                  {}};
  if (!ends) item.texts.push_back("{" + words[1].text + "}");
  letter_.items.push_back(std::move(item));
  return true;
}

void LetterParser::DropInherited() {
  if (inherited_) letter_.items.clear();
  inherited_ = false;
}

// A long paragraph goes on in the next line of the file.
void LetterParser::TakeMore(const std::vector<ReportWord>& words) {
  if (inherited_ || letter_.items.empty() || letter_.items.back().kind != LetterKind::text) {
    Refuse("\"more\" goes on with the \"text\" above it, and there is none");
  }
  CheckText(words[1].text);
  letter_.items.back().texts[0] += " " + words[1].text;
}

void LetterParser::CheckOrder(const LetterItem& item) {
  switch (item.kind) {
    case LetterKind::together:
    case LetterKind::columns:
      if (open_ != LetterKind::across) {
        Refuse("\"columns\" and \"together\" do not go into each other: put \"across\" before");
      }
      break;
    case LetterKind::beside:
      if (open_ != LetterKind::columns) Refuse("\"beside\" stands without \"columns\" before it");
      break;
    case LetterKind::across:
      if (open_ != LetterKind::beside && open_ != LetterKind::together) {
        Refuse("\"across\" stands without \"beside\" or \"together\" before it");
      }
      break;
    case LetterKind::items:
    case LetterKind::page:
    case LetterKind::cut:
      if (open_ != LetterKind::across) {
        Refuse(
            "a table, a cut and a new page do not go into what stays together: put \"across\" "
            "before");
      }
      return;
    default:
      return;
  }
  open_ = item.kind;
}

LetterFile LetterParser::Finish(bool has_columns) {
  if (open_ != LetterKind::across)
    Refuse("\"columns\" or \"together\" is not closed with \"across\"");
  if (conditional_) Refuse("\"when\" or \"unless\" is not closed with \"done\"");
  bool has_items = false;
  for (const LetterItem& item : letter_.items) {
    has_items = has_items || item.kind == LetterKind::items;
  }
  if (has_items && !has_columns)
    Refuse("\"items\" needs a line \"column\" for each of its columns");
  if (!has_items && has_columns) Refuse("a line \"items\" must say where the table stands");
  if (letter_.items.empty()) Refuse("the letter has no text");
  return std::move(letter_);
}

std::string LetterWords() {
  std::string words = "letter, margin, copies, foot, more, when, unless, done";
  for (const Shape& shape : kShapes) words += fmt::format(", {}", shape.word);
  return words;
}

}  // namespace kaunter
