// Requests to the e-invoicing service: a run of documents sent one after the other, beside a plain
// program that makes the same calls of libcurl on one line.
#include <curl/curl.h>
#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "core/session.h"
#include "einvoice/http_client.h"
#include "tests/einvoice/raw_server.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {
namespace {

constexpr int kDocuments = 200;
constexpr const char* kToken = "a-token-as-long-as-those-of-the-service-are-and-somewhat-longer";

std::vector<std::string> Bodies() {
  std::vector<std::string> bodies;
  for (int i = 0; i < kDocuments; ++i) {
    bodies.push_back(
        fmt::format("{{\"documents\":[{{\"document_number\":\"AB0001-001-{:03}\","
                    "\"description\":\"{}\"}}]}}",
                    i, std::string(1500, 'x')));
  }
  return bodies;
}

std::size_t Take(char*, std::size_t size, std::size_t count, void* taken) {
  *static_cast<std::size_t*>(taken) += size * count;
  return size * count;
}

// One handle for all of them, its options set once.
std::size_t SendPlainly(const std::string& url, const std::vector<std::string>& bodies) {
  std::size_t taken = 0;
  CURL* curl = curl_easy_init();
  curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
  headers = curl_slist_append(headers, fmt::format("Authorization: Bearer {}", kToken).c_str());
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, Take);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &taken);
  for (const std::string& body : bodies) {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.c_str());
    if (curl_easy_perform(curl) != CURLE_OK) throw std::runtime_error("no reply");
  }
  curl_slist_free_all(headers);
  curl_easy_cleanup(curl);
  return taken;
}

bool Run() {
  for (const char* name : {"http_proxy", "all_proxy"}) unsetenv(name);
  const std::string reply =
      Reply(R"({"data":[{"uuid":"ABCDEFGHIJKLMNOPQRSTUVWXYZ","status":"Submitted"}]})");
  RawServer server([&](int, const std::string&) { return reply; });
  const std::vector<std::string> bodies = Bodies();
  Session session;
  SilentDesk desk;
  std::size_t ours_took = 0;
  std::size_t theirs_took = 0;
  const bool good = Compare(
      {fmt::format("{} documents, one request each", kDocuments), 1.3, 30},
      [&] {
        HttpClient client(session, desk);
        for (const std::string& body : bodies) {
          ours_took += client.HttpSend("POST", server.Url(), body, kToken, "json").size();
        }
      },
      [&] { theirs_took += SendPlainly(server.Url(), bodies); });
  if (ours_took != theirs_took) throw std::runtime_error("the two sides took different replies");
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Run); }
