#include "core/companion.h"

#include <cstdlib>
#include <filesystem>

namespace kaunter {
namespace {

constexpr const char* kApp = "KAUNTER_APP";
constexpr const char* kDatabase = "KAUNTER_DATABASE";
constexpr const char* kSettings = "KAUNTER_SETTINGS";
constexpr const char* kNow = "KAUNTER_NOW";

void Put(const char* name, const std::string& value) {
#ifdef _WIN32
  _putenv_s(name, value.c_str());  // an empty value takes the name out
#else
  if (value.empty()) {
    unsetenv(name);
  } else {
    setenv(name, value.c_str(), 1);
  }
#endif
}

std::string Get(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string Whole(const std::string& path) {
  return path.empty() ? path : std::filesystem::absolute(path).string();
}

}  // namespace

void HandOn(const CompanionOptions& options) {
  Put(kApp, Whole(options.app));
  Put(kDatabase, Whole(options.database));
  Put(kSettings, Whole(options.settings));
  Put(kNow, options.now);
}

CompanionOptions HandedOn() {
  return {
      .app = Get(kApp), .database = Get(kDatabase), .settings = Get(kSettings), .now = Get(kNow)};
}

}  // namespace kaunter
