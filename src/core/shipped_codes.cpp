#include "core/shipped_codes.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/data_access.h"
#include "core/einvoice_codes.h"
#include "core/schema_text.h"
#include "core/sql_literals.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr std::size_t kRowsAtOnce = 100;

// A line is a code, a blank and its name.
std::vector<std::string> Rows(std::string_view text) {
  std::vector<std::string> rows;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) continue;
    rows.push_back(
        fmt::format("({},{})", QuoteStr(line.substr(0, blank)), QuoteStr(line.substr(blank + 1))));
  }
  return rows;
}

void Fill(Connection& main, const EInvoiceCodes& table) {
  const std::vector<std::string> rows = Rows(SchemaText(table.table));
  for (std::size_t at = 0; at < rows.size(); at += kRowsAtOnce) {
    const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end =
        rows.begin() + static_cast<std::ptrdiff_t>(std::min(rows.size(), at + kRowsAtOnce));
    main.Execute(fmt::format("INSERT INTO {} ({},{}) VALUES {}", table.table, table.code,
                             table.name, fmt::join(begin, end, ",")));
  }
}

}  // namespace

bool FillEmptyCodeTables(Connection& main) {
  bool filled = false;
  Transaction transaction(main);
  for (const EInvoiceCodes& table : kCodeTables) {
    if (!TableExists(main, table.table) ||
        ScalarQuery(main, fmt::format("SELECT COUNT(*) FROM {}", table.table)) != "0") {
      continue;
    }
    Fill(main, table);
    filled = true;
  }
  transaction.Commit();
  return filled;
}

}  // namespace kaunter
