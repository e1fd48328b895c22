// A process of its own whose files may not grow past `most`, as on a disk that fills.
#pragma once

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <functional>

namespace kaunter {

// What `act` returned, or 1 for what it threw; no database may be open in this process.
inline int OnAFullDisk(rlim_t most, const std::function<int()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{most, most};
    setrlimit(RLIMIT_FSIZE, &limit);
    try {
      _exit(act());
    } catch (const std::exception& error) {
      fmt::print(stderr, "{}\n", error.what());
      _exit(1);
    }
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace kaunter
