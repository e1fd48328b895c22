// FtpLine: files to an FTP server and back. A file stands under its name whole or not at all: it
// goes there, and comes from there, under another name and is then renamed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/curl_line.h"

namespace kaunter {

struct FtpServer {
  std::string host;  // its name or number, ":port" behind it where it is not 21
  std::string user;
  std::string password;
  // Without it the line is encrypted when the server offers that. This keeps out who only listens:
  // somebody who sits in the line takes the offer away, so no certificate is asked for then.
  bool must_encrypt = false;
  // SHA-256 of the server's public key in base64: a certificate that the server made for itself is
  // known by it. Empty: the certificate must be one that this PC trusts.
  std::string key;
};

struct FtpResult {
  enum class End {
    done,
    absent,   // the server has no such file
    refused,  // this file, or its name
    away,     // the server as a whole: no answer, no room, no right
    stopped   // by the person
  };
  End end = End::done;
  std::string cause;  // in the words of the library; never holds an account
};

struct FtpWatch {
  std::function<bool()> stop_asked = [] { return false; };
  std::function<void(std::int64_t done, std::int64_t total)> moved = [](auto, auto) {};
};

// Can stand for a folder or a file on any server and on this PC, and is no way out of a folder.
bool IsPlainFileName(std::string_view name);

class FtpLine {
 public:
  explicit FtpLine(FtpServer server) : server_(std::move(server)) {}

  // Makes the folders that are missing and takes the place of a file that is there.
  FtpResult Send(const std::vector<std::string>& folders, const std::string& name,
                 const std::string& source, const FtpWatch& watch);
  // `place` is written whole or not at all; `beside` is a name on the same disk that is free.
  FtpResult Fetch(const std::vector<std::string>& folders, const std::string& name,
                  const std::string& place, const std::string& beside, const FtpWatch& watch);

 private:
  void Prepare(const std::vector<std::string>& folders, std::string_view name,
               const FtpWatch& watch);
  FtpResult Act(const std::vector<std::string>& folders, const std::vector<std::string>& commands,
                long seconds, const FtpWatch& watch);
  FtpResult Run(const FtpWatch& watch);
  FtpResult CheckSent(const std::vector<std::string>& folders, const std::string& part,
                      std::int64_t size, const FtpWatch& watch);
  FtpResult GiveName(const std::vector<std::string>& folders, const std::string& part,
                     const std::string& name, const FtpWatch& watch);

  FtpServer server_;
  CurlLine line_;
};

}  // namespace kaunter
