#include "movein/trouble_list.h"

#include <fmt/format.h>

#include <filesystem>

#include "compliance/export_csv.h"
#include "core/log.h"
#include "core/places.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/whole_file.h"
#include "reports/report_csv.h"

namespace kaunter {

void ExportTroubles(Session& session, const Screen& screen, std::string_view name,
                    const std::vector<std::vector<std::string>>& rows) {
  const std::string folder =
      screen.desk().PickFolder(session.In({"Select a folder", "请选择文件夹"}), PickStart(session));
  if (folder.empty()) return;
  const std::string path =
      (std::filesystem::path(folder) /
       fmt::format("{}-{}.csv", name, Format(session.clock.Now(), "yyyymmdd-hhnnss")))
          .string();
  try {
    WriteWholeFile(path, [&rows](std::ostream& out) {
      out << "\xEF\xBB\xBF";
      for (std::vector<std::string> row : rows) {
        for (std::string& cell : row) cell = Harmless(cell);
        out << ExportLine(row, true) << "\r\n";
      }
    });
  } catch (const std::exception& failure) {
    LogRollback(session, path, failure);
    Tell(session, screen, MessageKind::critical, {failure.what(), failure.what()});
    return;
  }
  Tell(session, screen, MessageKind::information,
       {fmt::format("The list stands in {}", path), fmt::format("列表已写入 {}", path)});
}

}  // namespace kaunter
