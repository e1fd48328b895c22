#include "platform/sql/data_source.h"

#include <fmt/format.h>

#include <charconv>
#include <memory>
#include <stdexcept>

#include "platform/sql/odbc/odbc_connection.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/text.h"

namespace kaunter {
namespace {

constexpr std::string_view kLogsSuffix = "-Logs";

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool EndsInLogs(std::string_view name) {
  return name.size() > kLogsSuffix.size() &&
         sql::LowerAscii(name.substr(name.size() - kLogsSuffix.size())) ==
             sql::LowerAscii(kLogsSuffix);
}

// "office.db" -> "office-Logs.db"; a name without an extension gets the suffix at its end.
std::string BesideForLogs(std::string_view target) {
  const std::size_t slash = target.find_last_of("/\\");
  const std::size_t begin = slash == std::string_view::npos ? 0 : slash + 1;
  const std::size_t dot = target.rfind('.');
  const std::size_t stem_end = dot == std::string_view::npos || dot <= begin ? target.size() : dot;
  if (EndsInLogs(target.substr(begin, stem_end - begin))) return std::string(target);
  return std::string(target.substr(0, stem_end)) + std::string(kLogsSuffix) +
         std::string(target.substr(stem_end));
}

// One value of a connection string, from `at` to the next semicolon.
std::string ReadValue(std::string_view text, std::size_t* at) {
  while (*at < text.size() && text[*at] == ' ') ++*at;
  const char open = *at < text.size() ? text[*at] : '\0';
  if (open != '"' && open != '{') {
    const std::size_t end = std::min(text.find(';', *at), text.size());
    const std::string_view value = Trimmed(text.substr(*at, end - *at));
    *at = end;
    return std::string(value);
  }
  const char close = open == '{' ? '}' : '"';
  const std::size_t start = *at;
  std::string value;
  for (++*at; *at < text.size(); ++*at) {
    if (text[*at] != close) {
      value += text[*at];
    } else if (*at + 1 < text.size() && text[*at + 1] == close) {
      value += text[++*at];  // a doubled mark stands for itself
    } else {
      ++*at;
      while (*at < text.size() && text[*at] == ' ') ++*at;
      if (*at < text.size() && text[*at] != ';') {
        throw std::invalid_argument(
            fmt::format("connection string: a semicolon is missing at character {}", *at + 1));
      }
      return value;
    }
  }
  throw std::invalid_argument(
      fmt::format("connection string: the value that begins at character {} has no closing {}",
                  start + 1, close));
}

// "Connect Timeout" of the connection text, in seconds.
int LoginSeconds(const ConnectionString& asked) {
  const std::string text = asked.Get("connect timeout");
  int seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  return error == std::errc() && end == text.data() + text.size() && seconds > 0
             ? seconds
             : sql::kLoginSeconds;
}

}  // namespace

ConnectionString ConnectionString::Parse(std::string_view text) {
  ConnectionString result;
  std::size_t at = 0;
  while (at < text.size()) {
    if (text[at] == ';' || text[at] == ' ') {
      ++at;
      continue;
    }
    const std::size_t equals = text.find_first_of("=;", at);
    if (equals == std::string_view::npos || text[equals] == ';' || equals == at) {
      throw std::invalid_argument(
          fmt::format("connection string: \"key=value\" is expected at character {}", at + 1));
    }
    const std::string key = sql::LowerAscii(Trimmed(text.substr(at, equals - at)));
    at = equals + 1;
    result.pairs_[key] = ReadValue(text, &at);
  }
  return result;
}

std::string ConnectionString::Get(std::string_view key) const {
  const auto found = pairs_.find(sql::LowerAscii(key));
  return found == pairs_.end() ? std::string() : found->second;
}

bool ConnectionString::Has(std::string_view key) const {
  return pairs_.contains(sql::LowerAscii(key));
}

void DataSources::Add(std::string_view name, DataSource source) {
  sources_[sql::LowerAscii(name)] = std::move(source);
}

std::optional<DataSource> DataSources::Find(std::string_view name) const {
  const auto found = sources_.find(sql::LowerAscii(name));
  if (found == sources_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::string> EmbeddedFile(std::string_view connection_string,
                                        const DataSources& sources) {
  const ConnectionString asked = ConnectionString::Parse(connection_string);
  const auto source = sources.Find(asked.Get("Data Source"));
  if (!source || source->kind != DataSource::Kind::kEmbedded) return std::nullopt;
  return EndsInLogs(asked.Get("Initial Catalog")) ? BesideForLogs(source->target) : source->target;
}

std::unique_ptr<Connection> OpenConnection(std::string_view name,
                                           std::string_view connection_string,
                                           const DataSources& sources, const Clock& clock) {
  ConnectionString asked;
  try {
    asked = ConnectionString::Parse(connection_string);
  } catch (const std::invalid_argument& error) {
    throw SqlError(4060, fmt::format("Cannot open {}: {}.", name, error.what()));
  }
  const std::optional<DataSource> source = sources.Find(asked.Get("Data Source"));
  if (source && source->kind == DataSource::Kind::kEmbedded) {
    const bool logs = EndsInLogs(asked.Get("Initial Catalog"));
    return OpenSqlite(name, logs ? BesideForLogs(source->target) : source->target,
                      /*create=*/false, clock);
  }
  std::string text;
  try {
    text = sql::OdbcString(asked, source ? source->target : "", sql::ReadOdbcInventory());
  } catch (const std::invalid_argument& error) {
    throw SqlError(4060, fmt::format("Cannot open {}: the local data source {}: {}.", name,
                                     asked.Get("Data Source"), error.what()));
  }
  return std::make_unique<sql::OdbcConnection>(std::string(name), text, clock, LoginSeconds(asked));
}

}  // namespace kaunter
