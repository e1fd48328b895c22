#include "customers/photo_server.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "core/data_access.h"
#include "core/session.h"
#include "core/sql_literals.h"
#include "core/telling.h"
#include "core/texts.h"
#include "customers/document_store.h"
#include "platform/private_file.h"
#include "platform/process.h"
#include "screen/hourglass.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr const char* kFetchScript = "ftpscript";
constexpr const char* kSendScript = "ftpscript2";

std::string ScriptPath(const Session& session, const char* script) {
  return fmt::format("{}/{}", session.AppPath, script);
}

std::string Setting(const Session& session, const char* key) {
  return ScalarQuery(session.Main(),
                     fmt::format("SELECT [Value] FROM Systemast WHERE Param={}", QuoteStr(key)));
}

// A value of the script, in its quotes.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    if (c != '\n' && c != '\r') quoted += c;
  }
  return quoted + '"';
}

// Numbers of documents hold a "#", which ends an address.
std::string AddressPart(std::string_view text) {
  std::string part;
  for (const char c : text) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '-' || c == '_' || c == '.';
    part += plain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return part;
}

// Ends of the program with which a server answers that it has no such folder or file.
constexpr int kNoFolder = 9;
constexpr int kNotSent = 19;
constexpr int kNoFile = 78;

bool Answered(int end) { return end == 0 || end == kNoFolder || end == kNotSent || end == kNoFile; }

// A stored name is a text that somebody typed. What a server holds must not come to lie beside the
// program, where a file is a report or a setting.
bool LeavesPhotoFolder(std::string_view folder, std::string_view file) {
  const std::filesystem::path way = fmt::format("{}/{}", folder, file);
  return std::find(way.begin(), way.end(), "..") != way.end();
}

// The program reads host, account and password from the script, so no list of processes shows them.
// It takes no brackets for a choice of files, and no settings of the person's own.
// Gives what it ended with, 0 when all is well.
int Run(Session& session, const Screen& screen, const char* script, std::string_view folder,
        std::string_view file, std::string_view act) {
  const Hourglass busy(screen.desk());
  const std::string user =
      fmt::format("{}:{}", Setting(session, "ftpUser"), Setting(session, "ftpPassword"));
  const std::string path = ScriptPath(session, script);
  // One that was left lying may be somebody else's to read, or tell of another file.
  CleanFtpScripts(session);
  if (!MakePrivateFile(path)) return kNoProgram;
  std::ofstream out(path);
  out << "url = "
      << Quoted(fmt::format("ftp://{}/VKTPIC/{}/{}", session.settings.ftpAcc, AddressPart(folder),
                            AddressPart(file)))
      << "\nuser = " << Quoted(user) << "\nconnect-timeout = 10\nmax-time = 120\n"
      << act << '\n';
  out.close();
  const int end = out ? RunProgram("curl", {"-q", "--globoff", "--config", path}) : kNoProgram;
  CleanFtpScripts(session);
  return end;
}

int Fetch(Session& session, const Screen& screen, std::string_view folder, std::string_view file) {
  const std::string kept = KeptPath(session, folder, file);
  std::error_code error;
  if (session.settings.ftpAcc.empty() || std::filesystem::exists(kept, error)) return 0;
  if (LeavesPhotoFolder(folder, file)) return kNoFile;
  try {
    EnsurePhotoFolder(session, folder);
  } catch (const std::filesystem::filesystem_error&) {
    return kNoProgram;  // a record is shown without its photo
  }
  // Under another name until it is whole: half a paper would never be asked for again.
  const std::string part = kept + ".part";
  OpenPrivate(part, std::ios::trunc);
  const int end = Run(session, screen, kFetchScript, folder, file, "output = " + Quoted(part));
  if (end == 0 && std::filesystem::file_size(part, error) > 0) {
    std::filesystem::rename(part, kept, error);
    if (!error) return 0;
  }
  std::filesystem::remove(part, error);
  return end == 0 ? kNoFile : end;
}

void TellNotFetched(Session& session, const Screen& screen, std::string_view file) {
  Tell(session, screen, MessageKind::critical,
       {fmt::format("fail to get photo from server,\n{}", file),
        fmt::format("无法从服务器取得照片，\n{}", file)});
}

}  // namespace

bool SendPhoto(Session& session, const Screen& screen, std::string_view folder,
               std::string_view file) {
  if (session.settings.ftpAcc.empty()) return true;
  const std::string act =
      fmt::format("ftp-create-dirs\nupload-file = {}", Quoted(KeptPath(session, folder, file)));
  if (Run(session, screen, kSendScript, folder, file, act) == 0) return true;
  Tell(session, screen, MessageKind::critical,
       {fmt::format("fail to send photo to server,\n{} is kept on this PC only", file),
        fmt::format("无法把照片传到服务器，\n{} 只存在这台电脑上", file)});
  return false;
}

bool FetchPhoto(Session& session, const Screen& screen, std::string_view folder,
                std::string_view file) {
  if (Fetch(session, screen, folder, file) == 0) return true;
  TellNotFetched(session, screen, file);
  return false;
}

std::string ShownPhotos::Path(Session& session, const Screen& screen, std::string_view folder,
                              std::string_view file) {
  if (!away_) {
    const int end = Fetch(session, screen, folder, file);
    away_ = !Answered(end);
    if (end != 0 && (!std::exchange(told_, true) || away_)) TellNotFetched(session, screen, file);
  }
  return KeptPath(session, folder, file);
}

void CleanFtpScripts(const Session& session) {
  std::error_code error;
  for (const char* script : {kFetchScript, kSendScript}) {
    std::filesystem::remove(ScriptPath(session, script), error);
  }
}

}  // namespace kaunter
