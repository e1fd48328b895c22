// HttpSend: a request to the e-invoicing service, and its reply.
//
// The request goes out once and is never repeated by itself: a document that is sent twice is a
// dispute. Redirects are not followed. While it is under way the windows stay painted and take no
// input but that of a bar, which comes when it takes long and offers to give up.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace kaunter {

class Desk;
class Session;

// A request that has no reply. Its words, in the language in force, tell the host, the cause and
// whether the service may have taken what was sent; never what was sent.
class HttpFailure : public std::runtime_error {
 public:
  HttpFailure(const std::string& words, bool maybe_taken, bool given_up)
      : std::runtime_error(words), maybe_taken_(maybe_taken), given_up_(given_up) {}
  // Some of the request left this PC: the service may have taken it.
  bool maybe_taken() const { return maybe_taken_; }
  // By the person.
  bool given_up() const { return given_up_; }

 private:
  bool maybe_taken_;
  bool given_up_;
};

// One conversation: its requests share a line for as long as the service keeps it open.
class HttpClient {
 public:
  HttpClient(Session& session, Desk& desk);
  ~HttpClient();
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;

  // Of a run that shows a bar of its own: asked again and again while a request is under way, true
  // gives it up. Empty: each request that takes long has a bar for itself.
  void WaitWith(std::function<bool()> stop_asked) { stop_asked_ = std::move(stop_asked); }

  // The text of the reply, whatever the HTTP status. `content_type` is "json", "form", or anything
  // else for none; a token goes out as "Bearer". Throws HttpFailure.
  std::string HttpSend(std::string_view method, std::string_view url, std::string_view body,
                       std::string_view token, std::string_view content_type);
  // The HTTP status of the reply that came last. What was done is judged by the text alone; this
  // tells only whether the token was taken.
  int status() const;

 private:
  class Line;  // the library's side

  Session& session_;
  Desk& desk_;
  std::function<bool()> stop_asked_;
  std::unique_ptr<Line> line_;
};

}  // namespace kaunter
