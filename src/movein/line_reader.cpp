#include "movein/line_reader.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/identity.h"
#include "core/values.h"
#include "movein/file_trouble.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr int kAnyWidth = 0;
constexpr int kKeyWidth = 50;

std::vector<std::string> ListOf(Connection& main, std::string_view list) {
  std::vector<std::string> entries;
  if (list.empty()) return entries;
  const auto dot = list.find('.');
  if (dot == std::string_view::npos) {
    for (std::size_t at = 0; at <= list.size();) {
      const auto bar = std::min(list.find('|', at), list.size());
      entries.emplace_back(list.substr(at, bar - at));
      at = bar + 1;
    }
    return entries;
  }
  for (Recordset row =
           main.Query(fmt::format("SELECT {} FROM {}", list.substr(dot + 1), list.substr(0, dot)));
       !row.Eof(); row.MoveNext()) {
    entries.push_back(NullToEmpty(row.Field(0)));
  }
  return entries;
}

// An entry of a list fits, in whatever form it is kept.
int WidthOf(const Recordset& shape, const TargetField& field) {
  if (*field.list != '\0') return kAnyWidth;
  if (!field.stored) return kKeyWidth;
  for (const Column& column : shape.columns()) {
    if (SameText(column.name, field.column)) return column.width;
  }
  return kAnyWidth;
}

// The words that spreadsheets have for the two.
std::string Gender(const std::string& cell) {
  const std::string word = Upper(cell);
  for (const char* male : {"M", "L", "LELAKI", "男"}) {
    if (word == male) return "MALE";
  }
  for (const char* female : {"F", "P", "W", "PEREMPUAN", "WANITA", "女"}) {
    if (word == female) return "FEMALE";
  }
  return cell;
}

// What a spreadsheet makes of a long number that it takes for one.
bool IsShortened(std::string_view cell) {
  const auto sign = cell.find("E+");
  return sign != std::string_view::npos && sign > 0 && IsNumeric(cell.substr(0, sign)) &&
         IsNumeric(cell.substr(sign + 2));
}

}  // namespace

std::string TextOf(const Texts& texts, std::string_view column) {
  const auto found = texts.find(column);
  return found == texts.end() ? std::string() : found->second;
}

Money AmountOf(const Texts& texts, std::string_view column) {
  const std::string text = TextOf(texts, column);
  return text.empty() ? Money() : Money::FromText(text);
}

LineReader::LineReader(Connection& main, const Mapping& mapping, std::vector<std::string> headings)
    : mapping_(mapping), columns_(headings.size()) {
  const Recordset shape =
      main.Query(fmt::format("SELECT * FROM {} WHERE 1=0", TableOf(mapping.kind)));
  for (const TargetField& target : TargetFields(mapping.kind)) {
    const FieldSource* const source = mapping.Find(target.column);
    if (source == nullptr || source->empty()) continue;
    Field field{&target, source, -1, WidthOf(shape, target), ListOf(main, target.list)};
    if (!source->column.empty()) {
      const auto found = std::find_if(headings.begin(), headings.end(), [&](const auto& heading) {
        return SameText(heading, source->column);
      });
      if (found == headings.end()) {
        throw FileTrouble(
            {fmt::format("{}: the file has no column \"{}\" for {}",
                         MoveKindCaption(mapping.kind).english, source->column,
                         target.caption.english),
             fmt::format("{}：文件没有“{}”栏（{}）", MoveKindCaption(mapping.kind).chinese,
                         source->column, target.caption.chinese)});
      }
      field.column = static_cast<int>(found - headings.begin());
    }
    fields_.push_back(std::move(field));
  }
}

Texts LineReader::Read(const CsvRecord& record, LineTroubles* troubles) const {
  Texts texts;
  const auto beyond = [](const std::string& cell) { return !TidyCell(cell).empty(); };
  if (record.cells.size() > columns_ &&
      std::any_of(record.cells.begin() + static_cast<std::ptrdiff_t>(columns_), record.cells.end(),
                  beyond)) {
    troubles->push_back({mapping_.kind,
                         record.line,
                         "",
                         "",
                         {fmt::format("{} cells under {} headings: does a cell hold the separator "
                                      "without quotes around it?",
                                      record.cells.size(), columns_),
                          fmt::format("{} 个单元格，{} 个栏名：是否有单元格含分隔符却没有引号？",
                                      record.cells.size(), columns_)},
                         true});
    return texts;
  }
  for (const Field& field : fields_) {
    std::string cell;
    if (field.column >= 0 && static_cast<std::size_t>(field.column) < record.cells.size()) {
      cell = TidyCell(record.cells[static_cast<std::size_t>(field.column)]);
    }
    LineTrouble trouble{mapping_.kind, record.line, field.target->column, cell, {}, true};
    if (const auto ours = field.source->values.find(Upper(cell));
        ours != field.source->values.end()) {
      cell = ours->second;
    }
    if (cell.empty()) cell = field.source->fixed;
    if (cell.empty()) continue;
    std::string text = Convert(field, cell, &trouble, troubles);
    if (!trouble.reason.english.empty()) {
      troubles->push_back(std::move(trouble));
    } else if (!text.empty()) {
      texts[field.target->column] = std::move(text);
    }
  }
  return texts;
}

std::string LineReader::Convert(const Field& field, const std::string& cell, LineTrouble* trouble,
                                LineTroubles* troubles) const {
  constexpr int kSen = 2;
  constexpr int kRatePlaces = 4;
  switch (field.target->kind) {
    case TargetKind::day: {
      const auto day = ReadDay(cell, mapping_.days);
      if (const auto* date = std::get_if<DateTime>(&day)) return Format(*date, "dd-mm-yyyy");
      trouble->reason = std::get<Caption>(day);
      return {};
    }
    case TargetKind::money:
    case TargetKind::rate:
    case TargetKind::whole: {
      const int places = field.target->kind == TargetKind::money  ? kSen
                         : field.target->kind == TargetKind::rate ? kRatePlaces
                                                                  : 0;
      const auto amount = ReadAmount(cell, mapping_.decimal, places);
      if (const auto* money = std::get_if<Money>(&amount)) return money->ToText();
      trouble->reason = std::get<Caption>(amount);
      return {};
    }
    case TargetKind::text:
    case TargetKind::new_ic:
      break;
  }
  if (IsShortened(cell)) {
    trouble->reason = {
        fmt::format("\"{}\": the spreadsheet has shortened this number. Make the column a text "
                    "there and save it again",
                    cell),
        fmt::format("“{}”：电子表格缩短了这个号码。请把该栏设为文字再储存", cell)};
    return {};
  }
  const std::string text = field.target->kind == TargetKind::new_ic
                               ? ConvertIc(cell, *trouble, troubles)
                               : Chosen(field, cell, &trouble->reason);
  if (field.width > 0 && CharacterCount(text) > static_cast<std::size_t>(field.width)) {
    trouble->reason = {fmt::format("is longer than {} letters", field.width),
                       fmt::format("多于 {} 个字", field.width)};
    return {};
  }
  return text;
}

// A number that a spreadsheet took for one has lost the noughts in front.
std::string LineReader::ConvertIc(const std::string& cell, const LineTrouble& where,
                                  LineTroubles* troubles) const {
  std::string digits;
  for (const char sign : cell) {
    if (sign == '-' || sign == ' ') continue;
    if (sign < '0' || sign > '9') return cell;
    digits.push_back(sign);
  }
  constexpr std::size_t kDigits = 12;
  const bool dashed = digits.size() != cell.size();
  if (!dashed && digits.size() >= 10 && digits.size() < kDigits) {
    const std::string whole = std::string(kDigits - digits.size(), '0') + digits;
    if (BirthDateOfIc(MaskNewIc(whole))) {
      LineTrouble note = where;
      note.refused = false;
      note.reason = {fmt::format("is taken as {}: noughts in front were lost", MaskNewIc(whole)),
                     fmt::format("当作 {}：前面的 0 已丢失", MaskNewIc(whole))};
      troubles->push_back(std::move(note));
      return MaskNewIc(whole);
    }
  }
  return digits.size() == kDigits ? MaskNewIc(digits) : cell;
}

// Of a list the entry as the list has it.
std::string LineReader::Chosen(const Field& field, std::string cell, Caption* reason) const {
  if (SameText(field.target->column, "CustGender")) cell = Gender(cell);
  if (std::string_view(field.target->list).empty()) return cell;
  for (const std::string& entry : field.list) {
    if (SameText(entry, cell)) return entry;
  }
  const bool table = std::string_view(field.target->list).find('.') != std::string_view::npos;
  *reason =
      table ? Caption{fmt::format("\"{}\" is not in the list: add it to the list in Setup, or say "
                                  "in the mapping what it is",
                                  cell),
                      fmt::format("“{}”不在列表中：请先在设定中加入，或在对照中说明", cell)}
            : Caption{fmt::format("\"{}\" is none of {}", cell, field.target->list),
                      fmt::format("“{}”不是 {} 之一", cell, field.target->list)};
  return {};
}

}  // namespace kaunter
