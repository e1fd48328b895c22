#include "core/unsent_files.h"

#include <fmt/format.h>

#include "core/file_store.h"
#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "screen/screen.h"

namespace kaunter {

void TellNotSent(Session& session, const Screen& screen, std::string_view file,
                 std::string_view why) {
  WriteLog(session, LogLine(session, fmt::format("{} was not sent to the server: {}", file, why)));
  Tell(
      session, screen, MessageKind::critical,
      {fmt::format("fail to send photo to server,\nkept on this PC only: {}\n\n{}\n\nIt is sent "
                   "by itself once the server takes it.",
                   file, why),
       fmt::format("无法把照片传到服务器，\n只存在这台电脑上：{}\n\n{}\n\n服务器恢复后会自动传送。",
                   file, why)});
}

bool TellUnsent(Session& session, const Screen& screen) {
  FileStore* store = OpenStore(session);
  if (store == nullptr) return false;
  const std::string why = store->TakeTrouble();
  if (why.empty()) return false;
  const FileStore::Sending sending = store->sending();
  TellNotSent(session, screen,
              session.In({fmt::format("{} photo(s) or document(s)", sending.waiting),
                          fmt::format("{} 个照片或文件", sending.waiting)}),
              why);
  return true;
}

}  // namespace kaunter
