#include "core/central_database.h"

#include <string_view>

#include "core/session.h"

namespace kaunter {
namespace {

constexpr std::string_view kSource = "AMLA";
constexpr std::string_view kConnection =
    "Provider=SQLOLEDB.1;Persist Security Info=True;Initial Catalog=AMLA;Data Source=AMLA;Connect "
    "Timeout=5";

}  // namespace

bool HasCentralDatabase(const Session& session) {
  return session.data_sources.Find(kSource).has_value();
}

std::unique_ptr<Connection> OpenCentralDatabase(const Session& session) {
  auto central = OpenConnection(kSource, kConnection, session.data_sources, session.clock);
  if (session.trace) central->SetTrace(session.trace);
  return central;
}

}  // namespace kaunter
