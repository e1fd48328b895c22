#include "platform/sql/odbc/odbc_postgresql_error.h"

#include <fmt/format.h>

#include "platform/sql/odbc/odbc_error.h"

namespace kaunter::sql {
namespace {

// "ERROR: words; Error while executing the query [42703]" without what stands around the words.
std::string ServerWords(std::string_view text) {
  const std::size_t error = text.find("ERROR: ");
  if (error != std::string_view::npos) text.remove_prefix(error + 7);
  for (const std::string_view end : {"; Error while", ";Error while", " [", ";\n"}) {
    const std::size_t at = text.find(end);
    if (at != std::string_view::npos) text = text.substr(0, at);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == ';')) text.remove_suffix(1);
  return std::string(text);
}

// The name in quotes behind `before`: violates unique constraint "UserMast.UserName".
std::string NameBehind(std::string_view text, std::string_view before) {
  const std::size_t at = text.find(before);
  if (at == std::string_view::npos) return {};
  const std::size_t open = text.find('"', at + before.size());
  if (open == std::string_view::npos) return {};
  const std::size_t close = text.find('"', open + 1);
  if (close == std::string_view::npos) return {};
  return std::string(text.substr(open + 1, close - open - 1));
}

// An index of ours is named "table.index"; the server names what stands behind a key constraint.
SqlError DoubleKey(std::string_view words, const std::string& fails) {
  const std::string name = NameBehind(words, "unique constraint");
  const std::size_t dot = name.find('.');
  const std::size_t detail = words.find("Key (");
  const std::string key = detail == std::string_view::npos ? "" : std::string(words.substr(detail));
  if (dot != std::string::npos) {
    return {2601, fmt::format("Cannot insert duplicate key row in object '{}' with unique index "
                              "'{}'. {} {}",
                              name.substr(0, dot), name.substr(dot + 1), key, fails)};
  }
  const bool primary = name.ends_with("_pkey");
  const std::string table = primary ? name.substr(0, name.size() - 5) : name;
  return {2627, fmt::format("Violation of {} constraint. Cannot insert duplicate key in object "
                            "'{}'. {} {}",
                            primary ? "PRIMARY KEY" : "UNIQUE KEY", table, key, fails)};
}

SqlError FailedCheck(std::string_view words, const std::string& fails) {
  const std::string name = NameBehind(words, "check constraint");
  const std::size_t colon = name.find(':');
  if (colon == std::string::npos || colon == 0) {
    return {547, fmt::format("The statement conflicted with a constraint: {}. {}", words, fails)};
  }
  return {2628, fmt::format("String or binary data would be truncated in column '{}'. It takes {} "
                            "characters. {}",
                            name.substr(colon + 1), name.substr(0, colon), fails)};
}

}  // namespace

SqlError PostgresFailure(const SqlError& error, const std::string& source, std::string_view verb) {
  const std::string_view all = error.what();
  const std::string words = ServerWords(all);
  const std::string fails = verb.empty() ? "The statement fails." : fmt::format("{} fails.", verb);
  if (all.find("cached plan must not change result type") != std::string_view::npos ||
      all.find("[26000]") != std::string_view::npos) {
    return {kStalePlan, words};
  }
  switch (error.number()) {
    case 2627:
      return DoubleKey(words, fails);
    case 515:
      return {515, fmt::format("Cannot insert the value NULL into column '{}', table '{}'; column "
                               "does not allow nulls. {}",
                               NameBehind(words, "column"), NameBehind(words, "relation"), fails)};
    case 547:
      return FailedCheck(words, fails);
    case 512:
      return {
          512,
          "Subquery returned more than 1 value. This is not permitted when the subquery follows "
          "=, !=, <, <= , >, >= or when the subquery is used as an expression."};
    case 8134:
      return {8134, "Divide by zero error encountered."};
    case 8115:
      return {8115, fmt::format("Arithmetic overflow error: {}. {}", words, fails)};
    case 3623:
      return {3623, "An invalid floating point operation occurred."};
    case 1222:
      return {1222, fmt::format("Lock request time out period exceeded: another desktop is saving "
                                "to '{}'. Try again.",
                                source)};
    case 1205:
      return {1205,
              fmt::format("The transaction was chosen as the deadlock victim: another desktop "
                          "has saved to '{}' meanwhile. Try again.",
                          source)};
    case 1105:
      return {1105, fmt::format("There is no room left for the database '{}'. Free space on the "
                                "server's disk.",
                                source)};
    case kLostNumber:
    case 3930:
      return error;
    default:
      return {error.number(), words};
  }
}

}  // namespace kaunter::sql
