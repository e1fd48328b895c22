// A line of somebody's file as the texts of our boxes, by the mapping of the file.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "movein/csv_reader.h"
#include "movein/mapping.h"
#include "platform/sql/connection.h"

namespace kaunter {

// What is said of a line: why it is refused, or what to look at.
struct LineTrouble {
  MoveKind kind = MoveKind::customers;
  int line = 0;
  std::string field;  // our column, "" for the line as a whole
  std::string value;  // as it stands in the file
  Caption reason;
  bool refused = true;
};
using LineTroubles = std::vector<LineTrouble>;

// By column, as boxes hold them: days dd-mm-yyyy, amounts plain. Blank fields are absent.
using Texts = std::map<std::string, std::string, std::less<>>;
std::string TextOf(const Texts& texts, std::string_view column);
// 0 for a blank one.
Money AmountOf(const Texts& texts, std::string_view column);

class LineReader {
 public:
  // Lists and widths are the office's own. Throws SqlError; FileTrouble for a column that the file
  // does not have.
  LineReader(Connection& main, const Mapping& mapping, std::vector<std::string> headings);

  // All that is wrong with the cells is told, not the first alone.
  Texts Read(const CsvRecord& record, LineTroubles* troubles) const;

 private:
  struct Field {
    const TargetField* target;
    const FieldSource* source;
    int column = -1;  // of the file
    int width = 0;    // 0: any
    std::vector<std::string> list;
  };
  std::string Convert(const Field& field, const std::string& cell, LineTrouble* trouble,
                      LineTroubles* troubles) const;
  std::string ConvertIc(const std::string& cell, const LineTrouble& where,
                        LineTroubles* troubles) const;
  std::string Chosen(const Field& field, std::string cell, Caption* reason) const;

  const Mapping& mapping_;
  std::size_t columns_;
  std::vector<Field> fields_;
};

}  // namespace kaunter
