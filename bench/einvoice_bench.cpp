// The e-invoicing service: a run of documents sent one after the other, beside a plain program that
// makes the same calls of libcurl on one line. First the requests alone, to a server that answers
// at once; then a whole submission, with what is logged and recorded before and behind each
// request, to the stand-in of the service.
#include <curl/curl.h>
#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "core/session.h"
#include "core/values.h"
#include "einvoice/http_client.h"
#include "einvoice/submission.h"
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

// A plain program's line: one handle, its options set once.
class PlainLine {
 public:
  explicit PlainLine(const std::string& url, const std::string& token) {
    headers_ = curl_slist_append(headers_, "Content-Type: application/json");
    if (!token.empty()) {
      headers_ =
          curl_slist_append(headers_, fmt::format("Authorization: Bearer {}", token).c_str());
    }
    curl_easy_setopt(curl_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, Take);
    curl_easy_setopt(curl_, CURLOPT_WRITEDATA, &taken);
  }
  ~PlainLine() {
    curl_slist_free_all(headers_);
    curl_easy_cleanup(curl_);
  }
  PlainLine(const PlainLine&) = delete;
  PlainLine& operator=(const PlainLine&) = delete;

  void Post(const std::string& body) {
    curl_easy_setopt(curl_, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
    curl_easy_setopt(curl_, CURLOPT_POSTFIELDS, body.c_str());
    if (curl_easy_perform(curl_) != CURLE_OK) throw std::runtime_error("no reply");
  }
  std::size_t taken = 0;

 private:
  CURL* curl_ = curl_easy_init();
  curl_slist* headers_ = nullptr;
};

bool RequestsAlone(const RawServer& server) {
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
      [&] {
        PlainLine line(server.Url(), kToken);
        for (const std::string& body : bodies) line.Post(body);
        theirs_took += line.taken;
      });
  if (ours_took != theirs_took) throw std::runtime_error("the two sides took different replies");
  return good;
}

constexpr int kRecorded = 50;  // documents of a run that is recorded

struct SendingOffice : LargeOffice {
  SendingOffice(int number, const RawServer& server) : LargeOffice(100 + number, 100) {
    session.Main().Execute("INSERT INTO Systemast (Param,Value) VALUES ('GetEInvAPIConsolidated'," +
                           QuoteStr(server.Url()) + ")");
    addresses.Read(session);
  }
  static InvoiceLine Document(int run, int number) {
    using namespace einvoice_column;
    InvoiceLine line;
    line.cells[kID] = fmt::format("P{:03}-{:03}", run, number);
    line.cells[kSeqNo] = line.cells[kQty] = "1";
    line.cells[kDate] = "31-01-2024";
    line.cells[kTaxCode] = "06";
    line.cells[kDescription] = "Interest " + std::string(150, 'x');
    line.cells[kAmount] = "12.34";
    line.ticked = true;
    return line;
  }
  void Send(int run) {
    Submission submission(session, service, addresses, SendMode::submit, kSupplier);
    for (int i = 0; i < kRecorded; ++i) {
      InvoiceLine line = Document(run, i);
      if (submission.Send(line) != Submission::Outcome::recorded) {
        throw std::runtime_error("not recorded");
      }
    }
  }
  static constexpr const char* kSupplier = "\"supplier\": {\"tin\":\"C1\"},";
  ServiceAddresses addresses;
  InvoiceService service{session, desk};
};

bool WholeSubmission(const RawServer& server) {
  Measure measure{fmt::format("{} documents submitted and recorded", kRecorded), 2.0, 8};
  // What each run sends, in the engine's words.
  std::vector<std::vector<std::string>> words;
  {
    SendingOffice recorded(0, server);
    const SendingOffice played(1, server);
    for (int run = 0; run <= measure.runs; ++run) {
      std::vector<std::string> sent;
      recorded.session.Main().SetTrace(
          [&](std::string_view, std::string_view sql) { sent.emplace_back(sql); });
      recorded.Send(run);
      recorded.session.Main().SetTrace({});
      words.push_back(InPlainWords(sent, played.file()));
    }
  }
  fmt::print("a document takes {} statements\n", words[0].size() / kRecorded);
  SendingOffice ours(2, server);
  const SendingOffice theirs(3, server);
  Plain plain(theirs.file());
  int our_run = 0;
  int their_run = 0;
  std::vector<sql::SqliteStatement> prepared;
  measure.prepare = [&] {
    const auto run = static_cast<std::size_t>(their_run);
    if (run < words.size()) prepared = plain.Prepare(words[run]);
  };
  return Compare(
      measure, [&] { ours.Send(our_run++); },
      [&] {
        PlainLine line(server.Url(), {});
        const std::size_t each = prepared.size() / kRecorded;
        for (int i = 0; i < kRecorded; ++i) {
          line.Post(
              SubmitBody(SendingOffice::Document(their_run, i).cells, SendingOffice::kSupplier));
          for (std::size_t k = 0; k < each; ++k) {
            plain.Query(prepared[static_cast<std::size_t>(i) * each + k].get());
          }
        }
        ++their_run;
      });
}

bool Run() {
  for (const char* name : {"http_proxy", "all_proxy"}) unsetenv(name);
  const std::string reply =
      Reply(R"({"data":[{"uuid":"ABCDEFGHIJKLMNOPQRSTUVWXYZ","status":"Submitted"}]})");
  RawServer server([&](int, const std::string&) { return reply; });
  const bool alone = RequestsAlone(server);
  return WholeSubmission(server) && alone;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Run); }
