#include "platform/curl_line.h"

#include <new>

#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

constexpr int kBetweenLooks = 20;  // milliseconds

void StartLibrary() {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (started != CURLE_OK) throw std::runtime_error(curl_easy_strerror(started));
}

void Check(CURLMcode code) {
  if (code != CURLM_OK) throw std::runtime_error(curl_multi_strerror(code));
}

struct Removed {
  CURLM* multi;
  CURL* easy;
  ~Removed() { curl_multi_remove_handle(multi, easy); }
};

}  // namespace

CurlLine::CurlLine() {
  StartLibrary();
  easy_ = curl_easy_init();
  multi_ = curl_multi_init();
  if (easy_ == nullptr || multi_ == nullptr) throw std::bad_alloc();
}

CurlLine::~CurlLine() {
  curl_easy_cleanup(easy_);
  curl_multi_cleanup(multi_);
}

void CurlLine::Begin() {
  curl_easy_reset(easy_);
  Set(CURLOPT_NOSIGNAL, 1L);
  Set(CURLOPT_QUICK_EXIT, 1L);  // a name that nobody resolves holds up nobody who gives up
  Set(CURLOPT_ERRORBUFFER, error_);
  error_[0] = '\0';
}

std::optional<CURLcode> CurlLine::Run(const std::function<bool()>& stop_asked) {
  Check(curl_multi_add_handle(multi_, easy_));
  const Removed removed{multi_, easy_};
  for (int running = 1;;) {
    Check(curl_multi_perform(multi_, &running));
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
      if (message->msg == CURLMSG_DONE) return message->data.result;
    }
    if (running == 0) return CURLE_RECV_ERROR;
    Check(curl_multi_poll(multi_, nullptr, 0, kBetweenLooks, nullptr));
    ActWhileWaiting();
    if (stop_asked()) return std::nullopt;
  }
}

std::string CurlLine::Cause(CURLcode code) const {
  return error_[0] != '\0' ? error_ : curl_easy_strerror(code);
}

int CurlLine::Status() const {
  long status = 0;
  curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
  return static_cast<int>(status);
}

}  // namespace kaunter
