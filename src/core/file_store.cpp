#include "core/file_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "core/session.h"
#include "core/texts.h"
#include "core/values.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using End = FtpResult::End;

constexpr const char* kRoot = "VKTPIC";
constexpr auto kTryAgain = std::chrono::minutes(5);
constexpr auto kLetBe = std::chrono::minutes(1);  // a server that did not answer
constexpr auto kFresh = std::chrono::seconds(2);

std::unique_ptr<FileStore>& TheStore() {
  static std::unique_ptr<FileStore> store;
  return store;
}

}  // namespace

std::string StoredName(std::string_view code) {
  std::string name(code);
  std::replace_if(
      name.begin(), name.end(),
      [](char c) {
        return c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < ' ' ||
               c == 0x7F;
      },
      '-');
  return name == "." || name == ".." ? std::string(name.size(), '-') : name;
}

std::string KeptPath(const Session& session, std::string_view folder, std::string_view file) {
  return fmt::format("{}/{}/{}", session.PhotoPath, StoredName(folder), file);
}

void CleanFtpScripts(const Session& session) {
  std::error_code error;
  for (const char* script : {"ftpscript", "ftpscript2"}) {
    fs::remove(fmt::format("{}/{}", session.AppPath, script), error);
  }
}

FileStore::FileStore(std::string photo_path, FtpServer server)
    : photo_path_(std::move(photo_path)), server_(std::move(server)) {
  MakeFolders();
  ClearForgottenParts(photo_path_ + "/.incoming");
  sending_.waiting = static_cast<int>(ReadMarks().size());
  sender_ = std::thread([this] { SendLoop(); });
  fetcher_ = std::thread([this] { FetchLoop(); });
}

// Somebody may have taken them away since. Where they cannot be made, who needs them tells.
void FileStore::MakeFolders() const {
  std::error_code failed;
  for (const char* folder : {".unsent", ".incoming"}) {
    fs::create_directories(fs::path(photo_path_) / folder, failed);
  }
}

FileStore::~FileStore() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_all();
  sender_.join();
  fetcher_.join();
}

void FileStore::Use(FtpServer server) {
  const std::lock_guard lock(mutex_);
  server_ = std::move(server);
}

std::string FileStore::Place(const File& file) const {
  return fmt::format("{}/{}/{}", photo_path_, file.folder, file.name);
}

FtpWatch FileStore::WatchOver(const bool& stop, std::int64_t& done, std::int64_t& total) {
  FtpWatch watch;
  watch.stop_asked = [this, &stop] {
    const std::lock_guard look(mutex_);
    return stop || ending_;
  };
  watch.moved = [this, &done, &total](std::int64_t so_far, std::int64_t all) {
    const std::lock_guard look(mutex_);
    done = so_far;
    total = all;
  };
  return watch;
}

// --- sending

// Each asking has a note of its own: one that comes while the file is under way may be for other
// bytes, and stays.
void FileStore::Send(const File& file) {
  if (!IsPlainFileName(file.folder) || !IsPlainFileName(file.name)) {
    throw std::runtime_error(fmt::format("\"{}\" cannot be the name of a file", file.name));
  }
  MakeFolders();
  WriteWholeFile(fmt::format("{}/.unsent/{}", photo_path_, FreeFileName() + ".note"),
                 [&](std::ostream& out) { out << file.folder << '\n'
                                              << file.name << '\n'; });
  const int waiting = static_cast<int>(ReadMarks().size());
  {
    const std::lock_guard lock(mutex_);
    sending_.waiting = waiting;
    send_asked_ = true;
  }
  wake_.notify_all();
}

void FileStore::SendAll() {
  {
    const std::lock_guard lock(mutex_);
    send_asked_ = true;
  }
  wake_.notify_all();
}

void FileStore::StopSending() {
  const std::lock_guard lock(mutex_);
  stop_sending_ = true;
  send_asked_ = false;
}

FileStore::Sending FileStore::sending() const {
  const std::lock_guard lock(mutex_);
  return sending_;
}

bool FileStore::IsSending() const {
  const std::lock_guard lock(mutex_);
  return send_asked_ || !sending_.name.empty();
}

std::string FileStore::TakeTrouble() {
  const std::lock_guard lock(mutex_);
  return std::exchange(trouble_untold_, false) ? sending_.trouble : std::string();
}

FileStore::Marks FileStore::ReadMarks() const {
  Marks marks;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(photo_path_ + "/.unsent", error)) {
    if (entry.path().extension() != ".note") continue;
    std::ifstream note(entry.path());
    File file;
    if (std::getline(note, file.folder) && std::getline(note, file.name)) {
      marks[file].push_back(entry.path().string());
    }
  }
  return marks;
}

void FileStore::SendLoop() {
  std::unique_lock lock(mutex_);
  while (!ending_) {
    const auto asked = [this] { return ending_ || send_asked_; };
    if (again_) {
      by_itself_ = !wake_.wait_until(lock, *again_, asked);
    } else {
      wake_.wait(lock, asked);
    }
    if (!ending_) SendRound(lock);
  }
}

void FileStore::SendRound(std::unique_lock<std::mutex>& lock) {
  const bool by_itself = std::exchange(by_itself_, false);
  stop_sending_ = false;
  again_.reset();
  sending_.name = "...";  // until it is known which comes first
  send_asked_ = false;
  FtpLine line(server_);
  const FtpWatch watch = WatchOver(stop_sending_, sending_.done, sending_.total);
  lock.unlock();
  Marks marks = ReadMarks();
  std::error_code error;
  for (bool go_on = true; go_on && !marks.empty();) {
    const auto mark = marks.begin();
    const File file = mark->first;
    lock.lock();
    sending_ = {static_cast<int>(marks.size()), file.name, 0, 0, sending_.trouble};
    lock.unlock();
    FtpResult sent;
    // A document that was taken away again before it went.
    if (fs::exists(Place(file), error) || error) {
      try {
        sent = line.Send({kRoot, file.folder}, file.name, Place(file), watch);
      } catch (const std::exception& failure) {
        sent = {End::away, failure.what()};
      }
    }
    if (sent.end == End::done) {
      for (const std::string& note : mark->second) fs::remove(note, error);
    }
    marks.erase(mark);
    lock.lock();
    if (sent.end == End::done) {
      sending_.trouble.clear();
    } else if (sent.end != End::stopped) {
      sending_.trouble = sent.cause;
      trouble_untold_ |= !by_itself;
      again_ = Clock::now() + kTryAgain;
    }
    go_on = sent.end == End::done || sent.end == End::refused;
    lock.unlock();
  }
  const int left = static_cast<int>(ReadMarks().size());
  lock.lock();
  sending_.waiting = left;
  sending_.name.clear();
}

// --- fetching

std::optional<FtpResult> FileStore::Fetch(const File& file, bool somebody_waits) {
  if (!IsPlainFileName(file.folder) || !IsPlainFileName(file.name)) {
    return FtpResult{End::refused, fmt::format("\"{}\" cannot be the name of a file", file.name)};
  }
  const std::lock_guard lock(mutex_);
  if (const auto known = fetched_.extract(file)) {
    // Nobody may have come for it: what was so a while ago is looked for anew.
    if (Clock::now() - known.mapped().when <
        (somebody_waits ? Clock::duration(kFresh) : Clock::duration(kLetBe))) {
      return known.mapped().result;
    }
  }
  const auto queued = std::find(wanted_.begin(), wanted_.end(), file);
  if (somebody_waits) {
    if (queued == wanted_.begin() && !wanted_.empty()) return std::nullopt;
    if (queued != wanted_.end()) wanted_.erase(queued);
    // The one in front is under way.
    wanted_.insert(wanted_.begin() + (wanted_.empty() ? 0 : 1), file);
    away_.reset();
  } else if (away_ && Clock::now() < away_until_) {
    return away_;
  } else if (queued == wanted_.end()) {
    wanted_.push_back(file);
  }
  wake_.notify_all();
  return std::nullopt;
}

void FileStore::StopFetching() {
  const std::lock_guard lock(mutex_);
  stop_fetching_ = true;
}

std::pair<std::int64_t, std::int64_t> FileStore::fetching() const {
  const std::lock_guard lock(mutex_);
  return {fetch_done_, fetch_total_};
}

void FileStore::FetchLoop() {
  const FtpWatch watch = WatchOver(stop_fetching_, fetch_done_, fetch_total_);
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return ending_ || !wanted_.empty(); });
    if (ending_) return;
    const File file = wanted_.front();
    FtpLine line(server_);
    fetch_done_ = fetch_total_ = 0;
    stop_fetching_ = false;
    lock.unlock();
    FtpResult got;
    try {
      std::error_code error;
      if (!fs::exists(Place(file), error)) {
        fs::create_directories(fs::path(photo_path_) / file.folder);
        got = line.Fetch({kRoot, file.folder}, file.name, Place(file),
                         fmt::format("{}/.incoming/{}", photo_path_, FreeFileName()), watch);
      }
    } catch (const std::exception& failure) {
      got = {End::refused, failure.what()};
    }
    lock.lock();
    fetched_[file] = {got, Clock::now()};
    wanted_.pop_front();
    if (got.end != End::away) continue;
    // The others would wait as long for the same answer.
    away_ = got;
    away_until_ = Clock::now() + kLetBe;
    for (const File& other : wanted_) fetched_[other] = {got, Clock::now()};
    wanted_.clear();
  }
}

FileStore* StoreOf(Session& session) {
  if (session.settings.ftpAcc.empty()) return nullptr;
  std::map<std::string, std::string> account;
  for (Recordset rows = session.Main().Query("SELECT Param,[Value] FROM Systemast WHERE Param IN "
                                             "('ftpUser','ftpPassword','ftpTLS','ftpKey')");
       !rows.Eof(); rows.MoveNext()) {
    account.emplace(Lower(NullToEmpty(rows.Field("Param"))), NullToEmpty(rows.Field("Value")));
  }
  FtpServer server{session.settings.ftpAcc, account["ftpuser"], account["ftppassword"],
                   account["ftptls"] == "1", account["ftpkey"]};
  if (FileStore* open = OpenStore(session)) {
    open->Use(std::move(server));
  } else {
    TheStore() = std::make_unique<FileStore>(session.PhotoPath, std::move(server));
  }
  return TheStore().get();
}

FileStore* OpenStore(const Session& session) {
  FileStore* store = TheStore().get();
  return store != nullptr && store->photo_path() == session.PhotoPath ? store : nullptr;
}

void CloseStore() { TheStore().reset(); }

}  // namespace kaunter
