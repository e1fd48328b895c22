#include "core/trace.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "core/secrets.h"
#include "platform/clock.h"
#include "platform/rolling_file.h"

namespace kaunter {
namespace {

// A line like the others: the tab parts a connection from its statement.
constexpr std::string_view kFirstWords = "#\tKaunter trace";
constexpr std::uintmax_t kLargest = 256UL << 20U;
constexpr int kFullOnesKept = 2;

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '\t':
        line += "\\t";
        break;
      case '\r':
        line += "\\r";
        break;
      case '\n':
        line += "\\n";
        break;
      case '\\':
        line += "\\\\";
        break;
      default:
        line += c;
    }
  }
  return line;
}

// A name that was mistyped must not cost the file that it names.
void RefuseOtherFiles(const std::string& path) {
  std::error_code none;
  if (!std::filesystem::is_regular_file(path, none)) return;
  std::ifstream file(path, std::ios::binary);
  std::string beginning(kFirstWords.size(), '\0');
  file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  if (file.gcount() == 0 && file.eof()) return;
  if (file.gcount() == static_cast<std::streamsize>(beginning.size()) && beginning == kFirstWords) {
    return;
  }
  throw std::runtime_error(
      fmt::format("{} is no trace of Kaunter: it was left as it is. Name another file for the "
                  "trace.",
                  path));
}

}  // namespace

Connection::TraceSink OpenTrace(const std::string& path) {
  RefuseOtherFiles(path);
  auto file = std::make_shared<RollingFile>(path, kLargest, kFullOnesKept,
                                            fmt::format("{}, goes on\n", kFirstWords));
  file->Add(fmt::format("{}, opened {}\n", kFirstWords, Clock().Now().ToCanonical()));
  return [file](std::string_view connection, std::string_view sql) {
    try {
      file->Add(fmt::format("{}\t{}\n", connection, OneLine(WithoutSecrets(sql))));
    } catch (const std::runtime_error&) {
      // The office's work does not end with the room for its trace.
    }
  };
}

}  // namespace kaunter
