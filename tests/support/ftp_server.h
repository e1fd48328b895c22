// A real FTP server on loopback (ftp_server.py), with the faults that a test chooses.
#pragma once

#include <fmt/format.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>

#include "tests/support/script_beside.h"

namespace kaunter::test {

inline std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A certificate that the server made for itself, with its key.
inline std::string SelfMadeCertificate(const std::string& folder) {
  const std::string path = folder + "/certificate.pem";
  const std::string command = fmt::format(
      "openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj /CN=store.example "
      "-keyout {0}.key -out {0}.crt 2>/dev/null && cat {0}.key {0}.crt > {0}",
      path);
  if (std::system(command.c_str()) != 0) throw std::runtime_error("no certificate");
  return path;
}

class FtpServerBeside {
 public:
  static constexpr const char* kUser = "me";
  static constexpr const char* kPassword = "p:a\"s's 1";

  explicit FtpServerBeside(const std::string& root, const std::string& certificate = {})
      : root_(root),
        script_("tests/support/ftp_server.py", certificate.empty()
                                                   ? std::vector<std::string>{root}
                                                   : std::vector<std::string>{root, certificate}) {}

  std::string host() const { return fmt::format("127.0.0.1:{}", script_.port()); }
  // As ftp_server.py tells them.
  void Fault(const std::string& fault) {
    script_.Tell(fault);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  // Every file there, by its way below the root.
  std::set<std::string> Files() const {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_)) {
      if (entry.is_regular_file()) files.insert(entry.path().string().substr(root_.size() + 1));
    }
    return files;
  }
  std::string Bytes(const std::string& file) const { return ReadAll(root_ + "/" + file); }
  std::string Commands() const { return ReadAll(root_ + ".log"); }

 private:
  std::string root_;
  ScriptBeside script_;
};

}  // namespace kaunter::test
