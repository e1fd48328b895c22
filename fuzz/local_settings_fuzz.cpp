// Any bytes as the local settings file: read, or refused with file and line.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "core/local_settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto settings =
        kaunter::LocalSettings::Parse({reinterpret_cast<const char*>(data), size}, "settings.ini");
    settings.sources.Find(settings.ConnDataSource);
  } catch (const std::runtime_error& error) {
    if (std::string_view(error.what()).find("settings.ini, line ") == std::string_view::npos) {
      std::fprintf(stderr, "%s\n", error.what());
      std::abort();
    }
  }
  return 0;
}
