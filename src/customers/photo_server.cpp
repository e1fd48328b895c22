#include "customers/photo_server.h"

#include <fmt/format.h>

#include <filesystem>
#include <thread>
#include <utility>

#include "core/session.h"
#include "core/telling.h"
#include "core/unsent_files.h"
#include "platform/sql/waiting.h"
#include "screen/hourglass.h"
#include "screen/meanwhile.h"
#include "screen/screen.h"
#include "screen/wait_bar.h"

namespace kaunter {
namespace {

using End = FtpResult::End;

constexpr auto kBetweenLooks = std::chrono::milliseconds(10);
constexpr std::int64_t kKilobyte = 1024;

void WaitALittle() {
  ActWhileWaiting();
  std::this_thread::sleep_for(kBetweenLooks);
}

WaitBar BarFor(Session& session, const Screen& screen, std::string_view file) {
  return WaitBar(screen.desk(), screen.title().In(session.ChineseFlag), std::string(file),
                 session.In(kStop));
}

bool StopAsked(WaitBar& bar, std::pair<std::int64_t, std::int64_t> bytes) {
  return bar.StopAsked(static_cast<int>(bytes.first / kKilobyte),
                       static_cast<int>(bytes.second / kKilobyte));
}

FtpResult WaitFor(Session& session, const Screen& screen, FileStore& store,
                  const FileStore::File& file) {
  const Hourglass busy(screen.desk());
  WaitBar bar = BarFor(session, screen, file.name);
  while (true) {
    if (auto result = store.Fetch(file, true)) return *result;
    if (StopAsked(bar, store.fetching())) store.StopFetching();
    WaitALittle();
  }
}

bool IsHere(const Session& session, const FileStore::File& file) {
  std::error_code error;
  return std::filesystem::exists(KeptPath(session, file.folder, file.name), error);
}

void TellNotFetched(Session& session, const Screen& screen, std::string_view file,
                    const FtpResult& result) {
  if (result.end == End::stopped) return;
  const std::string why = result.cause.empty() ? "" : "\n\n" + result.cause;
  Tell(session, screen, MessageKind::critical,
       {fmt::format("fail to get photo from server,\n{}{}", file, why),
        fmt::format("无法从服务器取得照片，\n{}{}", file, why)});
}

}  // namespace

bool SendPhoto(Session& session, const Screen& screen, std::string_view folder,
               std::string_view file) {
  FileStore* store = StoreOf(session);
  if (store == nullptr) return true;
  try {
    store->Send({StoredName(folder), std::string(file)});
  } catch (const std::exception& failure) {
    TellNotSent(session, screen, file, failure.what());
    return false;
  }
  if (GoesOnMeanwhile(screen.desk())) return true;
  const Hourglass busy(screen.desk());
  WaitBar bar = BarFor(session, screen, file);
  while (store->IsSending()) {
    const FileStore::Sending sending = store->sending();
    if (StopAsked(bar, {sending.done, sending.total})) store->StopSending();
    WaitALittle();
  }
  return !TellUnsent(session, screen);
}

bool FetchPhoto(Session& session, const Screen& screen, std::string_view folder,
                std::string_view file) {
  const FileStore::File wanted{StoredName(folder), std::string(file)};
  FileStore* store = IsHere(session, wanted) ? nullptr : StoreOf(session);
  if (store == nullptr) return true;
  const FtpResult result = WaitFor(session, screen, *store, wanted);
  if (result.end == End::done) return true;
  TellNotFetched(session, screen, file, result);
  return false;
}

void ShownPhotos::Note(Session& session, const Screen& screen, const std::string& file,
                       const FtpResult& result) {
  if (result.end == End::done) return;
  away_ = result.end == End::away;
  if (!std::exchange(told_, true) || away_) TellNotFetched(session, screen, file, result);
}

std::string ShownPhotos::Path(Session& session, const Screen& screen, std::string_view folder,
                              std::string_view file) {
  const FileStore::File wanted{StoredName(folder), std::string(file)};
  const std::string path = KeptPath(session, folder, file);
  if (!IsPlainFileName(file)) return {};  // a stored text, and no way to other files
  if (away_ || IsHere(session, wanted)) return path;
  if (FileStore* store = StoreOf(session)) {
    std::optional<FtpResult> result = GoesOnMeanwhile(screen.desk())
                                          ? store->Fetch(wanted, false)
                                          : std::optional(WaitFor(session, screen, *store, wanted));
    if (result) {
      Note(session, screen, wanted.name, *result);
    } else {
      awaited_.insert(wanted);
    }
  }
  return path;
}

bool ShownPhotos::Tick(Session& session, const Screen& screen) {
  FileStore* store = awaited_.empty() ? nullptr : OpenStore(session);
  if (store == nullptr) return false;
  bool came = false;
  for (const FileStore::File& file : std::exchange(awaited_, {})) {
    const auto result = store->Fetch(file, false);
    if (!result) {
      awaited_.insert(file);
      continue;
    }
    came = came || result->end == End::done;
    if (!away_) Note(session, screen, file.name, *result);
  }
  return came;
}

}  // namespace kaunter
