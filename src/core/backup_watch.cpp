#include "core/backup_watch.h"

#include <fmt/format.h>

#include "core/session.h"
#include "core/values.h"
#include "platform/sql/engine_version.h"

namespace kaunter {
namespace {

constexpr long long kHour = 3600;
constexpr long long kOld = 25 * kHour;

}  // namespace

Caption BackupNotice(const Session& session, const BackupWatch& watch, const DateTime& now) {
  const std::string engine = session.Main().EngineName();
  if (!watch.OfficeKind.empty() || watch.BackupByOthers == "1" ||
      (engine != kEmbeddedEngine && engine != kPostgresqlEngine)) {
    return {};
  }
  const auto last = DateTime::FromCanonical(watch.LastBackup);
  if (!last) return {"No backup of this office has been made yet.", "此公司尚未备份。"};
  const std::string shown = Format(*last, "dd-MM-yyyy hh:nn");
  if (*last > now.AddSeconds(kHour)) {
    return {fmt::format("The last backup is dated {}: after today.", shown),
            fmt::format("最后备份的日期是 {}，在今天之后。", shown)};
  }
  if (*last >= now.AddSeconds(-kOld)) return {};
  return {fmt::format("The last good backup is of {}.", shown),
          fmt::format("最后一次完好的备份是 {}。", shown)};
}

}  // namespace kaunter
