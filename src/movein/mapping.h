// Whose column is what: how the lines of a spreadsheet become our records. Kept as a text file that
// an office reads, mends and uses again.
//
//   kind customers
//   dates dd-mm-yyyy
//   decimal .
//   separator ;
//   encoding utf-8
//   column CustName = Nama Pelanggan
//   fixed CustRace = MELAYU
//   value CustGender L = MALE
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "movein/cell_values.h"
#include "movein/target_fields.h"
#include "movein/text_source.h"

namespace kaunter {

// Where a field comes from: a column of theirs, or one value for all lines. Both: the value stands
// in where a cell is blank.
struct FieldSource {
  std::string column;
  std::string fixed;
  std::map<std::string, std::string> values;  // theirs, in capitals, to ours

  bool empty() const { return column.empty() && fixed.empty(); }
};

struct Mapping {
  MoveKind kind = MoveKind::customers;
  DayOrder days = DayOrder::day_month_year;
  char decimal = '.';
  char separator = 0;  // 0: found by itself
  Encoding encoding = Encoding::automatic;
  std::map<std::string, FieldSource> fields;  // by our column; a field without a source is absent

  const FieldSource* Find(std::string_view column) const;
  // A field without which no line can come; null when none is missing.
  const TargetField* Missing() const;
};

// "auto", "comma" and so on, as mapping files and the screen name what stands between cells.
std::string_view SeparatorName(char separator);
std::optional<char> SeparatorNamed(std::string_view name);

// Of a new file: each field takes the heading that means it, else what is usual.
Mapping GuessMapping(MoveKind kind, const std::vector<std::string>& headings);

// The headings of a file as a mapping names them: tidy, never blank, each once ("Name (2)").
std::vector<std::string> NamedHeadings(const std::vector<std::string>& cells);

std::string MappingText(const Mapping& mapping);
// Throws FileTrouble that names the line.
Mapping ParseMapping(std::string_view text);

}  // namespace kaunter
