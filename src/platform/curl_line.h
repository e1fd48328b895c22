// CurlLine: one line to a server, as libcurl keeps it. It stays open between two transfers for as
// long as the server lets it.
#pragma once

#include <curl/curl.h>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace kaunter {

class CurlLine {
 public:
  CurlLine();
  ~CurlLine();
  CurlLine(const CurlLine&) = delete;
  CurlLine& operator=(const CurlLine&) = delete;

  // Forgets what was set for the transfer before; the open line stays.
  void Begin();
  template <typename T>
  void Set(CURLoption option, T value) {
    const CURLcode code = curl_easy_setopt(easy_, option, value);
    if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
  }

  // Transfers what has been set, acting meanwhile as behind a long statement
  // (platform/sql/waiting.h). Nothing when it was given up; the line is closed then.
  std::optional<CURLcode> Run(const std::function<bool()>& stop_asked);

  // What the library says of the transfer that Run ended with this code.
  std::string Cause(CURLcode code) const;
  // Status or reply code that came last, 0 for none.
  int Status() const;
  CURL* easy() const { return easy_; }

 private:
  CURL* easy_ = nullptr;
  CURLM* multi_ = nullptr;
  char error_[CURL_ERROR_SIZE] = {};
};

}  // namespace kaunter
