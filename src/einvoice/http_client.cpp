#include "einvoice/http_client.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "core/log.h"
#include "core/session.h"
#include "core/texts.h"
#include "einvoice/web_address.h"
#include "platform/curl_line.h"
#include "platform/sql/text.h"
#include "screen/hourglass.h"
#include "screen/wait_bar.h"

namespace kaunter {
namespace {

constexpr long kConnectSeconds = 15;
constexpr long kAllSeconds = 60;
constexpr long kIdleSeconds = 20;  // a line that lay idle longer is not used again
constexpr std::size_t kLongestReply = 4UL << 20U;

// What becomes of one request.
struct Transfer {
  bool begun = false;  // a line was there for it to leave on
  std::string reply;
};

// A request goes out once: the library would send it anew on a fresh line when an old one turns out
// to be closed, though the service may have taken it there.
int BeginOnce(void* transfer, char*, char*, int, int) {
  return std::exchange(static_cast<Transfer*>(transfer)->begun, true) ? CURL_PREREQFUNC_ABORT
                                                                      : CURL_PREREQFUNC_OK;
}

std::size_t TakeReply(char* from, std::size_t size, std::size_t count, void* transfer) {
  std::string& reply = static_cast<Transfer*>(transfer)->reply;
  if (reply.size() + size * count > kLongestReply) return CURL_WRITEFUNC_ERROR;
  reply.append(from, size * count);
  return size * count;
}

// A line end in a token would begin a header of its own.
std::string WithoutControls(std::string_view text) {
  std::string clean(text);
  std::erase_if(clean, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; });
  return clean;
}

class HeaderList {
 public:
  ~HeaderList() { curl_slist_free_all(list_); }
  HeaderList() = default;
  HeaderList(const HeaderList&) = delete;
  HeaderList& operator=(const HeaderList&) = delete;
  void Add(const std::string& header) {
    curl_slist* longer = curl_slist_append(list_, header.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    list_ = longer;
  }
  curl_slist* get() const { return list_; }

 private:
  curl_slist* list_ = nullptr;
};

// Text as the house holds it: UTF-8 without a mark at its front.
std::string HouseText(std::string reply) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (reply.starts_with(kMark)) reply.erase(0, kMark.size());
  return sql::Encode(sql::Decode(reply));
}

}  // namespace

class HttpClient::Line : public CurlLine {
 public:
  void Prepare(std::string_view method, const std::string& url, std::string_view body,
               const HeaderList& headers, Transfer& transfer) {
    Begin();
    Set(CURLOPT_URL, url.c_str());
    Set(CURLOPT_PROTOCOLS_STR, "http,https");
    Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    Set(CURLOPT_FOLLOWLOCATION, 0L);
    Set(CURLOPT_SSL_VERIFYPEER, 1L);
    Set(CURLOPT_SSL_VERIFYHOST, 2L);
    Set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    Set(CURLOPT_TIMEOUT, kAllSeconds);
    Set(CURLOPT_MAXAGE_CONN, kIdleSeconds);
    Set(CURLOPT_USERAGENT, "Kaunter");
    Set(CURLOPT_HTTPHEADER, headers.get());
    Set(CURLOPT_WRITEFUNCTION, TakeReply);
    Set(CURLOPT_WRITEDATA, &transfer);
    Set(CURLOPT_PREREQFUNCTION, BeginOnce);
    Set(CURLOPT_PREREQDATA, &transfer);
    if (method != "GET") {
      Set(CURLOPT_POSTFIELDS, body.empty() ? "" : body.data());
      Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    }
    const std::string verb(method);
    Set(CURLOPT_CUSTOMREQUEST, verb.c_str());
  }

  std::string WhyNot(CURLcode code) const {
    if (code == CURLE_ABORTED_BY_CALLBACK) return "the line was closed";  // by BeginOnce
    return Cause(code);
  }
  std::string RedirectedTo() const {
    const char* url = nullptr;
    curl_easy_getinfo(easy(), CURLINFO_REDIRECT_URL, &url);
    return url == nullptr ? std::string() : url;
  }
};

HttpClient::HttpClient(Session& session, Desk& desk) : session_(session), desk_(desk) {}

HttpClient::~HttpClient() = default;

int HttpClient::status() const { return line_ ? line_->Status() : 0; }

std::string HttpClient::HttpSend(std::string_view method, std::string_view url,
                                 std::string_view body, std::string_view token,
                                 std::string_view content_type) {
  const std::string host = HostOf(url);
  if (host.empty()) {
    throw HttpFailure(
        session_.In({"The address of the e-invoicing service is no http or https address. Please "
                     "look at the e-invoicing settings.",
                     "电子发票服务的地址不是 http 或 https 地址，请检查电子发票设定。"}),
        false, false);
  }
  std::optional<Hourglass> busy;
  if (!stop_asked_) busy.emplace(desk_);  // a run has its own
  if (!line_) line_ = std::make_unique<Line>();
  HeaderList headers;
  headers.Add("Expect:");  // the body goes at once
  headers.Add(content_type == "json"   ? "Content-Type: application/json"
              : content_type == "form" ? "Content-Type: application/x-www-form-urlencoded"
                                       : "Content-Type:");  // none
  if (!token.empty()) headers.Add("Authorization: Bearer " + WithoutControls(token));
  Transfer transfer;
  const std::string verb = Upper(method);
  const std::string address = SendableAddress(url);
  line_->Prepare(verb, address, body, headers, transfer);

  WaitBar bar(desk_, session_.In({"E-Invoicing", "电子发票"}),
              session_.In({fmt::format("{} has not answered yet ...", host),
                           fmt::format("{} 尚未回复...", host)}),
              session_.In(kStop));
  const std::optional<CURLcode> end =
      line_->Run(stop_asked_ ? stop_asked_ : [&bar] { return bar.StopAsked(); });

  if (end == CURLE_OK) {
    if (const std::string other = HostOf(line_->RedirectedTo()); !other.empty()) {
      WriteLog(session_, LogLine(session_, fmt::format("E-Invoicing - {} names {} as its new "
                                                       "address; that was not followed",
                                                       host, other)));
    }
    return HouseText(std::move(transfer.reply));
  }
  const bool maybe_taken = transfer.begun;
  const std::string cause = end ? line_->WhyNot(*end) : session_.In({"given up", "已停止等待"});
  throw HttpFailure(
      session_.In(
          maybe_taken
              ? Caption{fmt::format("No whole reply came from {} ({}). It may have taken "
                                    "what was sent.",
                                    host, cause),
                        fmt::format("没有收到 {} 的完整回复（{}）。对方可能已收到所发送的资料。",
                                    host, cause)}
              : Caption{fmt::format("{} cannot be reached ({}). Nothing was sent.", host, cause),
                        fmt::format("无法连接 {}（{}）。没有发送任何资料。", host, cause)}),
      maybe_taken, !end);
}

}  // namespace kaunter
