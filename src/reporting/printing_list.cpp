#include "reporting/printing_list.h"

#include <fstream>
#include <optional>

#include "core/values.h"
#include "reporting/report_criteria.h"

namespace kaunter {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The fields of a line; nothing when a quote is not closed.
std::optional<std::vector<std::string>> FieldsOf(std::string_view line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  if (quoted) return std::nullopt;
  for (std::string& field : fields) field = Trim(field);
  return fields;
}

}  // namespace

PrintingList ReadPrintingList(const std::string& path) {
  PrintingList list;
  std::ifstream file(path);
  if (!file) return list;
  for (std::string line; std::getline(file, line);) {
    if (list.documents.empty() && line.starts_with(kByteOrderMark)) {
      line.erase(0, kByteOrderMark.size());
    }
    if (line.ends_with('\r')) line.pop_back();
    const auto fields = FieldsOf(line);
    if (fields && fields->front().empty()) break;
    if (!fields || fields->size() != 3 || list.documents.size() == kLongestPrintingList) {
      return list;
    }
    list.documents.push_back({fields->at(0), fields->at(1), fields->at(2)});
  }
  list.complete = !file.bad();
  return list;
}

std::vector<ListedDocument> DocumentsFor(const std::vector<ListedDocument>& documents,
                                         std::string_view loan_type, bool aml_on) {
  std::vector<ListedDocument> offered;
  for (std::size_t row = 0; row < documents.size(); ++row) {
    if (row == 1 && !SameText(loan_type, "Unsecured")) continue;
    if (row == 2 && !SameText(loan_type, "Secured")) continue;
    if (!aml_on && IsOneOf(documents[row].file, {"CDD.rpt", "CDD2.rpt"})) continue;
    offered.push_back(documents[row]);
  }
  return offered;
}

}  // namespace kaunter
