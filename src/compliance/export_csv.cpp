#include "compliance/export_csv.h"

#include <string_view>

namespace kaunter {
namespace {

// "\r\n" is one line end.
std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

std::string Field(std::string_view text, bool quote) {
  const std::string line = OneLine(text);
  const bool quoted = quote || line.find('"') != std::string::npos;
  std::string field = quoted ? "\"" : "";
  for (const char c : line) {
    if (c == ',' && !quote) continue;
    if (c == '"') field += c;
    field += c;
  }
  if (quoted) field += '"';
  return field;
}

}  // namespace

std::string ExportLine(const std::vector<std::string>& fields, bool quote) {
  std::string line;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) line += ',';
    line += Field(fields[i], quote);
  }
  return line;
}

}  // namespace kaunter
