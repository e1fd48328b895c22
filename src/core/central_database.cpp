#include "core/central_database.h"

#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "core/session.h"
#include "platform/sql/within.h"

namespace kaunter {
namespace {

constexpr std::string_view kSource = "AMLA";
constexpr std::string_view kConnection =
    "Provider=SQLOLEDB.1;Persist Security Info=True;Initial Catalog=AMLA;Data Source=AMLA;Connect "
    "Timeout=5";

// What the other thread uses; it may outlive the session.
struct Line {
  DataSources sources;
  Clock clock;
  std::mutex mutex;
  std::vector<std::string> traced;  // the session's sink belongs to the thread that asks
};

class TraceOnward {
 public:
  TraceOnward(const Session& session, Line& line) : session_(session), line_(line) {}
  ~TraceOnward() {
    if (!session_.trace) return;
    const std::lock_guard lock(line_.mutex);
    for (const std::string& sql : line_.traced) session_.trace(kSource, sql);
  }
  TraceOnward(const TraceOnward&) = delete;
  TraceOnward& operator=(const TraceOnward&) = delete;

 private:
  const Session& session_;
  Line& line_;
};

}  // namespace

bool HasCentralDatabase(const Session& session) {
  return session.data_sources.Find(kSource).has_value();
}

void AskCentralDatabase(const Session& session, std::chrono::milliseconds limit,
                        std::function<void(Connection& central)> work) {
  const auto line = std::make_shared<Line>();
  line->sources = session.data_sources;
  line->clock = session.clock;
  const TraceOnward onward(session, *line);
  Within(limit, [line, work = std::move(work)] {
    const auto central = OpenConnection(kSource, kConnection, line->sources, line->clock);
    central->SetTrace([&line](std::string_view, std::string_view sql) {
      const std::lock_guard lock(line->mutex);
      line->traced.emplace_back(sql);
    });
    work(*central);
  });
}

std::vector<Recordset> ReadCentralDatabase(const Session& session,
                                           std::vector<std::string> statements,
                                           std::chrono::milliseconds limit) {
  // Nobody looks at it before the work has ended.
  const auto read = std::make_shared<std::vector<Recordset>>();
  AskCentralDatabase(session, limit, [read, asked = std::move(statements)](Connection& central) {
    for (const std::string& statement : asked) read->push_back(central.Query(statement));
  });
  return std::move(*read);
}

}  // namespace kaunter
