#include "compliance/export_csv.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "platform/private_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

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

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error(fmt::format(
      "{} cannot be written: {}. Is the folder there, and is there room on the disk?", path, why));
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

void WriteWholeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
  const std::string beside = path + ".part";
  try {
    errno = 0;
    std::ofstream file = OpenPrivate(beside, std::ios::binary | std::ios::trunc);
    if (file.is_open()) write(file);
    file.close();
    if (!file) Refuse(path, errno == 0 ? "not all of it was taken" : strerror(errno));
    SyncFile(beside);
    fs::rename(beside, path);
  } catch (const fs::filesystem_error& failure) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    Refuse(path, failure.code().message());
  } catch (...) {
    std::error_code ignored;
    fs::remove(beside, ignored);
    throw;
  }
}

std::string FileNameOf(const std::string& name) {
  std::string file = name;
  for (char& c : file) {
    const bool refused = static_cast<unsigned char>(c) < ' ' ||
                         std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    if (refused) c = '_';
  }
  return file;
}

}  // namespace kaunter
