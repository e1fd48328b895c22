#include "tests/support/odbc_driver.h"
#include "tests/support/places.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

namespace kaunter::testing {
namespace fs = std::filesystem;

std::string OdbcDriverFile(const std::string& file, const std::string& package) {
  std::vector<fs::path> folders = {"/usr/lib64", "/usr/lib/odbc", "/usr/local/lib"};
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/usr/lib", error)) {
    folders.push_back(entry.path() / "odbc");  // /usr/lib/x86_64-linux-gnu/odbc
  }
  for (const fs::path& folder : folders) {
    if (fs::exists(folder / file, error)) return (folder / file).string();
  }
  throw std::runtime_error("The ODBC driver " + file + " is not installed (package " + package +
                           "). `script/setup test` installs it.");
}

std::string SqliteDriver() { return OdbcDriverFile("libsqlite3odbc.so", "libsqliteodbc"); }
std::string PostgresDriver() { return OdbcDriverFile("psqlodbcw.so", "odbc-postgresql"); }
std::string FreeTdsDriver() { return OdbcDriverFile("libtdsodbc.so", "tdsodbc"); }

std::string SqliteOdbcText(const std::string& file) {
  const std::string functions = test::BinaryDir() + "/bin/kaunter_sqlite.so";
  if (!fs::exists(functions)) {
    throw std::runtime_error(functions + " is not built: build the target kaunter_sqlite.");
  }
  return "Driver=" + SqliteDriver() + ";Database=" + file + ";LoadExt=" + functions;
}

}  // namespace kaunter::testing
