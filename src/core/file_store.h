// FileStore: the copies of photos and documents on the office's FTP server, where other PCs find
// what was kept on this one: VKTPIC/<customer or loan>/<file>.
//
// It works behind the windows, on threads of its own. What is to be sent is noted on the disk and
// stays noted until the server has all of it: a server that is away, a program that is closed and a
// PC that is switched off delay a copy and lose none.
#pragma once

#include <chrono>
#include <compare>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "platform/ftp_line.h"

namespace kaunter {

class Session;

// A code or a number as the name of a folder or file: those of older offices may hold what parts
// folders.
std::string StoredName(std::string_view code);
// Full path of a kept file; `folder` is the code that it belongs to.
std::string KeptPath(const Session& session, std::string_view folder, std::string_view file);

// The scripts of older versions hold the password of the server: none stays.
void CleanFtpScripts(const Session& session);

class FileStore {
 public:
  struct File {
    std::string folder, name;
    auto operator<=>(const File&) const = default;
  };
  // How the sending stands.
  struct Sending {
    int waiting = 0;   // files that the server does not have yet, with the one under way
    std::string name;  // of the one under way; "" when none is
    std::int64_t done = 0, total = 0;  // its bytes
    std::string trouble;               // why the last one did not arrive; "" when it did
  };

  FileStore(std::string photo_path, FtpServer server);
  // What is under way is given up; it is sent when the program runs again.
  ~FileStore();
  FileStore(const FileStore&) = delete;
  FileStore& operator=(const FileStore&) = delete;

  const std::string& photo_path() const { return photo_path_; }
  // From the next file on.
  void Use(FtpServer server);

  // Throws std::runtime_error when it cannot be noted.
  void Send(const File& file);
  // Everything that is noted.
  void SendAll();
  // The file under way, and those behind it, wait until somebody asks again.
  void StopSending();
  Sending sending() const;
  bool IsSending() const;
  // Why what somebody asked for did not arrive, once; "" otherwise.
  std::string TakeTrouble();

  // Nothing while it is under way, which it is from the first asking on. A person who waits for it
  // does not stand behind photos, nor is spared a server that was away a moment ago.
  std::optional<FtpResult> Fetch(const File& file, bool somebody_waits);
  void StopFetching();
  // Bytes of the file under way.
  std::pair<std::int64_t, std::int64_t> fetching() const;

 private:
  using Clock = std::chrono::steady_clock;
  using Marks = std::map<File, std::vector<std::string>>;  // with the notes that tell of it

  std::string Place(const File& file) const;
  Marks ReadMarks() const;
  // Of one direction: what asks for its end, and the bytes of the file under way.
  FtpWatch WatchOver(const bool& stop, std::int64_t& done, std::int64_t& total);
  void MakeFolders() const;
  void SendLoop();
  void SendRound(std::unique_lock<std::mutex>& lock);
  void FetchLoop();

  const std::string photo_path_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  FtpServer server_;
  bool ending_ = false;

  Sending sending_;
  bool send_asked_ = false, stop_sending_ = false, trouble_untold_ = false;
  bool by_itself_ = false;                  // nobody asked for the round that begins
  std::optional<Clock::time_point> again_;  // when the server is tried by itself

  std::deque<File> wanted_;
  struct Fetched {
    FtpResult result;
    Clock::time_point when;
  };
  std::map<File, Fetched> fetched_;
  bool stop_fetching_ = false;
  std::int64_t fetch_done_ = 0, fetch_total_ = 0;
  std::optional<FtpResult> away_;
  Clock::time_point away_until_;

  std::thread sender_, fetcher_;
};

// The office's store, one a process; null where the setting ftpAcc names no server: nothing leaves
// this PC then. The account is read anew. Throws SqlError.
FileStore* StoreOf(Session& session);
// The same where it is in use already, else null; no statement is sent.
FileStore* OpenStore(const Session& session);
// As the end of the program does.
void CloseStore();

}  // namespace kaunter
