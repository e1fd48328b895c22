#include "core/card_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "core/identity.h"
#include "core/report_path.h"
#include "core/texts.h"
#include "platform/installation.h"
#include "platform/text_encoding.h"

namespace kaunter {
namespace {

constexpr const char* kLinesFile = "MyKadLines.txt";

constexpr std::pair<std::string_view, CardField> kNames[] = {
    {"Name", CardField::name},
    {"NewIC", CardField::new_ic},
    {"OldIC", CardField::old_ic},
    {"Gender", CardField::gender},
    {"Race", CardField::race},
    {"BirthDate", CardField::birth_date},
    {"Add1", CardField::add1},
    {"Add2", CardField::add2},
    {"Add3", CardField::add3},
    {"Postcode", CardField::postcode},
    {"City", CardField::city},
    {"State", CardField::state},
    {"Religion", CardField::religion},
    {"Citizenship", CardField::citizenship},
    {"-", CardField::none},
};
constexpr std::size_t kShippedLines = 13;

CardTrouble Unreadable(const Caption& why) {
  return {{"MyKad Reader", "身份证读卡器"},
          {"an error occur reading MyKad detail file\n" + why.english,
           "读取身份证资料文件时发生错误\n" + why.chinese}};
}

std::vector<CardField> FieldsOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  std::vector<CardField> fields;
  int number = 0;
  for (const std::string& line : CardLines(bytes.str())) {
    ++number;
    const std::string name = Trim(line);
    if (name.empty() || name[0] == '#') continue;
    const auto known = std::ranges::find_if(
        kNames, [&](const auto& entry) { return SameText(entry.first, name); });
    if (known == std::end(kNames)) {
      throw Unreadable(
          {fmt::format("{}, line {}: \"{}\" is nothing that a card has", kLinesFile, number, name),
           fmt::format("{} 第 {} 行：身份证没有“{}”这一项", kLinesFile, number, name)});
    }
    fields.push_back(known->second);
  }
  if (std::ranges::count(fields, CardField::new_ic) == 1) return fields;
  throw Unreadable({fmt::format("{} must name NewIC, once", kLinesFile),
                    fmt::format("{} 必须有 NewIC，而且只有一次", kLinesFile)});
}

}  // namespace

std::string CardGender(std::string_view text) {
  const std::string word = Upper(Trim(text));
  for (const char* male : {"MALE", "LELAKI", "L", "M"}) {
    if (word == male) return "MALE";
  }
  for (const char* female : {"FEMALE", "PEREMPUAN", "P", "F"}) {
    if (word == female) return "FEMALE";
  }
  return {};
}

void CardValues::Tidy() {
  for (std::string& text : texts_) {
    for (char& c : text) {
      if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
    }
    text = Trim(text);
  }
  std::string digits = (*this)[CardField::new_ic];
  std::erase_if(digits, [](char c) { return c == '-' || c == ' '; });
  const std::string masked = MaskNewIc(digits);
  if (IsNewIc(masked)) (*this)[CardField::new_ic] = masked;
  (*this)[CardField::gender] = CardGender((*this)[CardField::gender]);
}

bool CardValues::empty() const {
  return (*this)[CardField::name].empty() && (*this)[CardField::new_ic].empty();
}

std::vector<CardField> MyKadLines(const std::string& app_path) {
  std::error_code none;
  for (const std::filesystem::path path :
       {(std::filesystem::path(app_path) / kOwnReports / kLinesFile).string(),
        FileOf(app_path, kLinesFile)}) {
    if (std::filesystem::is_regular_file(path, none)) return FieldsOf(path);
  }
  std::vector<CardField> shipped;
  for (const auto& [name, field] : kNames) {
    if (shipped.size() < kShippedLines) shipped.push_back(field);
  }
  return shipped;
}

std::vector<std::string> CardLines(const std::string& bytes) {
  const std::string text = TextOfBytes(bytes).value_or("");
  std::vector<std::string> lines;
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      line += text[i];
      continue;
    }
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    lines.push_back(std::exchange(line, {}));
  }
  if (!line.empty()) lines.push_back(line);
  return lines;
}

CardValues CardValuesOf(const std::string& bytes, const std::vector<CardField>& lines) {
  const std::vector<std::string> written = CardLines(bytes);
  if (written.size() < lines.size()) {
    throw Unreadable({fmt::format("It has {} lines of {}.", written.size(), lines.size()),
                      fmt::format("只有 {} 行，应有 {} 行。", written.size(), lines.size())});
  }
  CardValues values;
  for (std::size_t i = 0; i < lines.size(); ++i) values[lines[i]] = written[i];
  values.Tidy();
  const std::string& ic = values[CardField::new_ic];
  if (values.empty() || IsNewIc(ic)) return values;
  // In another order than the table's, a name would be stored as an address.
  throw Unreadable(
      {fmt::format("\"{}\" is no identity number: does {} tell the order of its lines?", ic,
                   kLinesFile),
       fmt::format("“{}”不是身份证号码：{} 的行序对吗？", ic, kLinesFile)});
}

}  // namespace kaunter
