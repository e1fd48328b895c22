#include "customers/photo_server.h"

#include <fmt/format.h>

#include <filesystem>
#include <string>

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

// The program reads host, account and password from the script, so no list of processes shows them.
bool Run(Session& session, const Screen& screen, const char* script, std::string_view folder,
         std::string_view file, std::string_view act) {
  const Hourglass busy(screen.desk());
  const std::string path = ScriptPath(session, script);
  {
    std::ofstream out = OpenPrivate(path, std::ios::trunc);
    out << "url = "
        << Quoted(fmt::format("ftp://{}/VKTPIC/{}/{}", session.settings.ftpAcc, AddressPart(folder),
                              AddressPart(file)))
        << "\nuser = "
        << Quoted(
               fmt::format("{}:{}", Setting(session, "ftpUser"), Setting(session, "ftpPassword")))
        << "\nconnect-timeout = 10\nmax-time = 120\n"
        << act << '\n';
  }
  const bool done = RunProgram("curl", {"--config", path});
  CleanFtpScripts(session);
  return done;
}

}  // namespace

bool SendPhoto(Session& session, const Screen& screen, std::string_view folder,
               std::string_view file) {
  if (session.settings.ftpAcc.empty()) return true;
  const std::string act =
      fmt::format("ftp-create-dirs\nupload-file = {}", Quoted(KeptPath(session, folder, file)));
  if (Run(session, screen, kSendScript, folder, file, act)) return true;
  Tell(session, screen, MessageKind::critical,
       {fmt::format("fail to send photo to server,\n{} is kept on this PC only", file),
        fmt::format("无法把照片传到服务器，\n{} 只存在这台电脑上", file)});
  return false;
}

bool FetchPhoto(Session& session, const Screen& screen, std::string_view folder,
                std::string_view file) {
  const std::string kept = KeptPath(session, folder, file);
  if (session.settings.ftpAcc.empty() || std::filesystem::exists(kept)) return true;
  EnsurePhotoFolder(session, folder);
  // Under another name until it is whole: half a paper would never be asked for again.
  const std::string part = kept + ".part";
  std::error_code error;
  if (Run(session, screen, kFetchScript, folder, file, "output = " + Quoted(part))) {
    MakePrivate(part);
    std::filesystem::rename(part, kept, error);
    if (!error) return true;
  }
  std::filesystem::remove(part, error);
  Tell(session, screen, MessageKind::critical,
       {fmt::format("fail to get photo from server,\n{}", file),
        fmt::format("无法从服务器取得照片，\n{}", file)});
  return false;
}

void CleanFtpScripts(const Session& session) {
  std::error_code error;
  for (const char* script : {kFetchScript, kSendScript}) {
    std::filesystem::remove(ScriptPath(session, script), error);
  }
}

}  // namespace kaunter
