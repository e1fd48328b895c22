#include "core/trace.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "core/secrets.h"
#include "platform/clock.h"
#include "platform/private_file.h"

namespace kaunter {
namespace {

// A line like the others: the tab parts a connection from its statement.
constexpr std::string_view kFirstWords = "#\tKaunter trace";

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
  auto file = std::make_shared<std::ofstream>(OpenPrivate(path, std::ios::binary | std::ios::app));
  if (!*file) throw std::runtime_error(fmt::format("The trace file {} cannot be written.", path));
  *file << kFirstWords << ", opened " << Clock().Now().ToCanonical() << '\n' << std::flush;
  return [file](std::string_view connection, std::string_view sql) {
    *file << connection << '\t' << OneLine(WithoutSecrets(sql)) << '\n' << std::flush;
  };
}

}  // namespace kaunter
