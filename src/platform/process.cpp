#include "platform/process.h"

#include <csignal>
#include <filesystem>
#include <system_error>

namespace kaunter {

void OutliveFailedWrites() {
#ifndef _WIN32
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

std::string ProgramFolder(const char* argv0) {
  std::error_code error;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(argv0);
  return program.parent_path().string();
}

}  // namespace kaunter
