#include "core/trace.h"

#include <fmt/format.h>

#include <fstream>
#include <memory>
#include <stdexcept>

namespace kaunter {
namespace {

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

}  // namespace

Connection::TraceSink OpenTrace(const std::string& path) {
  auto file = std::make_shared<std::ofstream>(path, std::ios::binary | std::ios::trunc);
  if (!*file) throw std::runtime_error(fmt::format("The trace file {} cannot be written.", path));
  return [file](std::string_view connection, std::string_view sql) {
    *file << connection << '\t' << OneLine(sql) << '\n' << std::flush;
  };
}

}  // namespace kaunter
