#include "core/first_start.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "core/local_settings_write.h"
#include "core/new_office.h"
#include "core/places.h"
#include "core/values.h"
#include "platform/installation.h"
#include "platform/sql/data_source.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kEmbeddedName = "Kaunter.db";
// The day up to which the demo office is played: what falls due then lies in its schedules.
constexpr const char* kDemoNow = "2024-01-31 09:30:00";
struct DemoPart {
  const char* source;
  const char* file;
};
constexpr DemoPart kDemoParts[] = {
    {"AMLA", "central.db"}, {"SMS", "sms.db"}, {"AEDMTS", "accounts.db"}, {"Demo", "office.db"}};

constexpr const char* kDemoPhotos = "Photo";  // where the office looks for them

fs::path ShippedDemo() { return fs::path(ThisInstallation().files) / "demo"; }

bool IsThere(const fs::path& path) {
  std::error_code unknown;
  return fs::exists(path, unknown);
}

[[noreturn]] void CannotWrite(const std::string& box, const std::string& folder) {
  throw FirstStartRefused(
      box,
      {fmt::format("You may not write in {}. Choose a folder of your own, or ask whoever looks "
                   "after this PC to let you write there.",
                   folder),
       fmt::format("您不能写入 {}。请选择您自己的文件夹，或请本机管理员给予写入权限。", folder)});
}

// A folder of the person's own is made, any other is there or is refused.
void NeedFolder(const std::string& box, const std::string& folder) {
  if (folder == UserDataFolder()) {
    try {
      MakeUserDataFolder();
    } catch (const fs::filesystem_error&) {
      CannotWrite(box, fs::path(folder).parent_path().string());
    }
  }
  if (!fs::path(folder).is_absolute() || !IsThere(folder)) {
    throw FirstStartRefused(
        box,
        {fmt::format("There is no folder \"{}\". Make it first, or choose another one.", folder),
         fmt::format("没有文件夹“{}”。请先建立，或选择别的文件夹。", folder)});
  }
  if (!MayWriteIn(folder)) CannotWrite(box, folder);
}

// What the settings cannot hold, and where they cannot be written, is told before anything is made.
void NeedSettings(const std::vector<SettingChange>& changes) {
  ChangedSettings("", changes, FirstSettingsFile());
  std::error_code failed;
  fs::create_directories(UserSettingsFolder(), failed);
  if (!MayWriteIn(UserSettingsFolder())) CannotWrite("", UserSettingsFolder());
}

bool IsOffice(Connection& connection) {
  for (const char* table : {"Systemast", "CompMast", "LoanMast"}) {
    if (!TableExists(connection, table)) return false;
  }
  return true;
}

Caption OtherTables(const std::string& place) {
  return {
      fmt::format("{} holds tables that are no office of Kaunter. Choose an office's database, or "
                  "an empty one.",
                  place),
      fmt::format("{} 里的表不是 Kaunter 的资料。请选择 Kaunter 的数据库，或空的数据库。", place)};
}

// --- servers

std::string TextOf(const ServerPlace& place) {
  std::string text = ServerText(place);
  if (!text.empty()) return text;
  const bool postgresql = place.kind == ServerKind::postgresql;
  const std::string kind = postgresql ? "PostgreSQL" : "SQL Server";
  const std::string package = postgresql ? "odbc-postgresql" : "tdsodbc";
  throw FirstStartRefused(
      "ServerType",
      {fmt::format("This PC has no ODBC driver for {}. Install one (on Debian the package "
                   "{}), then try again.",
                   kind, package),
       fmt::format("本机没有 {} 的 ODBC 驱动程序。请安装（Debian 为 {}），然后再试。", kind,
                   package)});
}

// What the words of a driver say about the boxes. They come in the order of the table: a server
// that does not know the database may speak of the account too.
struct Sign {
  std::vector<std::string_view> words;
  const char* box;
  Caption text;
};

const std::vector<Sign>& Signs() {
  static const std::vector<Sign> signs = {
      {{"cannot open database"},
       "DatabaseName",
       {"The server knows no database of this name, or does not let this user into it.",
        "服务器没有此名称的数据库，或不让此用户进入。"}},
      {{"database \"", "does not exist"},
       "DatabaseName",
       {"The server knows no database of this name.", "服务器没有此名称的数据库。"}},
      {{"permission denied for database"},
       "DatabaseName",
       {"This user may not use this database.", "此用户不能使用此数据库。"}},
      {{"pg_hba.conf"},
       "Server",
       {"The server runs, but does not let this PC in with this user and database, or not without "
        "encryption. Ask whoever looks after the server (pg_hba.conf).",
        "服务器在运行，但不让本机以此用户和数据库连接，或要求加密。请询问服务器管理员"
        "（pg_hba.conf）。"}},
      {{"password authentication failed"},
       "Password",
       {"The server does not take this user and password.", "服务器不接受此用户和密码。"}},
      {{"no password supplied"},
       "Password",
       {"The server asks for a password.", "服务器要求输入密码。"}},
      {{"login failed"},
       "Password",
       {"The server does not take this user and password.", "服务器不接受此用户和密码。"}},
      {{"role \"", "does not exist"},
       "UserID",
       {"The server knows no user of this name.", "服务器没有此用户。"}},
      {{"ssl"},
       "Encrypted",
       {"The server and this PC do not agree about encryption.", "服务器与本机的加密设置不一致。"}},
      {{"could not translate host name"},
       "Server",
       {"There is no machine of this name in the network.", "网络上没有此名称的机器。"}},
  };
  return signs;
}

// The driver's own words: what stands around them speaks of settings that are not written yet.
std::string WordsOf(const SqlError& failure) {
  std::string words = failure.what();
  if (const auto begin = words.find("): "); begin != words.npos) words.erase(0, begin + 3);
  return words.substr(0, words.find(". Check the data source"));
}

[[noreturn]] void TellWhy(const SqlError& failure) {
  const std::string told = Lower(WordsOf(failure));
  const Sign* found = nullptr;
  for (const Sign& sign : Signs()) {
    bool all = true;
    for (const std::string_view word : sign.words) all = all && told.find(word) != told.npos;
    if (all && found == nullptr) found = &sign;
  }
  const Caption why =
      found != nullptr
          ? found->text
          : Caption{
                "The server does not answer. Is its address right, does it run, and is this PC in "
                "the network?",
                "服务器没有回应。地址是否正确？服务器是否在运行？本机是否已连上网络？"};
  throw FirstStartRefused(found != nullptr ? found->box : "Server",
                          {fmt::format("{}\n\n{}", why.english, WordsOf(failure)),
                           fmt::format("{}\n\n{}", why.chinese, WordsOf(failure))});
}

void NeedBoxes(const ServerPlace& place) {
  const auto need = [](const std::string& value, const char* box, const Caption& text) {
    if (value.empty()) throw FirstStartRefused(box, text);
  };
  need(place.server, "Server", {"Please enter the server's address", "请输入服务器地址"});
  need(place.database, "DatabaseName",
       {"Please enter the name of the database", "请输入数据库名称"});
  need(place.user, "UserID", {"Please enter the user of the database", "请输入数据库用户"});
  const std::string port = PortOf(place.server);
  if (port.find_first_not_of("0123456789") != std::string::npos) {
    throw FirstStartRefused("Server",
                            {"Behind the colon stands the port, a number: office-server:5432",
                             "冒号后是端口号，例如 office-server:5432"});
  }
}

std::unique_ptr<Connection> OpenServer(const ServerPlace& place, const Clock& clock) {
  NeedBoxes(place);
  const std::string text = TextOf(place);
  try {
    return OpenOdbc("MainConn", text, clock);
  } catch (const SqlError& failure) {
    TellWhy(failure);
  }
}

ServerHolds WhatItHolds(Connection& main, const ServerPlace& place) {
  if (IsOffice(main)) return ServerHolds::office;
  if (IsEmptyDatabase(main)) return ServerHolds::nothing;
  throw FirstStartRefused("DatabaseName", OtherTables(place.database));
}

}  // namespace

bool IsFirstStart() { return !IsThere(SettingsFile()) && !IsThere(OfficeFileIn(UserDataFolder())); }

std::string FirstSettingsFile() { return UserSettingsFolder() + "/settings.ini"; }

bool DemoIsShipped() {
  return !ThisInstallation().files.empty() && IsThere(ShippedDemo() / "office.db");
}

std::string DemoFolder() { return UserDataFolder() + "/demo"; }

bool DemoIsThere() { return IsThere(fs::path(DemoFolder()) / "settings.ini"); }

std::string TakeDemo(bool anew) {
  NeedFolder("", UserDataFolder());
  const fs::path folder = DemoFolder();
  const std::string settings = (folder / "settings.ini").string();
  if (DemoIsThere() && !anew) return settings;
  fs::remove_all(folder);
  fs::create_directory(folder);
  std::vector<SettingChange> changes = {{"", "ConnDataSource", "Demo"},
                                        {"", "ConnLinkAcc", "1"},
                                        {"", "ShortDate", "dd-MM-yyyy"},
                                        {"", "DataFolder", folder.string()},
                                        {"", "Now", kDemoNow}};
  for (const DemoPart& part : kDemoParts) {
    CopyWholeFile((ShippedDemo() / part.file).string(), (folder / part.file).string(),
                  FileReach::kOwner);
    changes.push_back({part.source, "file", (folder / part.file).string()});
  }
  fs::copy(ShippedDemo() / kDemoPhotos, folder / kDemoPhotos, fs::copy_options::recursive);
  ChangeSettingsFile(settings, changes);
  return settings;
}

std::string NewOfficeFolder() { return UserDataFolder(); }

std::string OfficeFileIn(const std::string& folder) {
  return (fs::path(folder) / kEmbeddedName).string();
}

bool HoldsOffice(const std::string& folder) {
  std::error_code unknown;
  const auto size = fs::file_size(OfficeFileIn(folder), unknown);
  return !unknown && size > 0;
}

void TakeOfficeIn(const std::string& folder, const Clock& clock) {
  NeedFolder("Folder", folder);
  const std::string file = OfficeFileIn(folder);
  const LocalSettings defaults;
  std::vector<SettingChange> changes = {{"", "ConnDataSource", defaults.ConnDataSource},
                                        {defaults.ConnDataSource, "file", file}};
  if (folder != UserDataFolder()) changes.push_back({"", "DataFolder", folder});
  NeedSettings(changes);
  if (HoldsOffice(folder)) {
    if (!IsOffice(*OpenSqlite("MainConn", file, false, clock))) {
      throw FirstStartRefused("Folder", OtherTables(file));
    }
  } else {
    MakeSqlite("MainConn", file, clock,
               [&](Connection& main) { CreateEmptyOffice(main, defaults.ConnAccount); });
  }
  ChangeSettingsFile(FirstSettingsFile(), changes);
}

ServerHolds TryServer(const ServerPlace& place, const Clock& clock) {
  return WhatItHolds(*OpenServer(place, clock), place);
}

void TakeServer(const ServerPlace& place, const Clock& clock) {
  const LocalSettings defaults;
  const auto main = OpenServer(place, clock);
  const std::vector<SettingChange> changes = {{"", "ConnDataSource", "Office"},
                                              {"", "ConnDatabase", place.database},
                                              {"Office", "odbc", TextOf(place)}};
  NeedSettings(changes);
  if (WhatItHolds(*main, place) == ServerHolds::nothing) {
    CreateEmptyOffice(*main, defaults.ConnAccount);
  }
  ChangeSettingsFile(FirstSettingsFile(), changes);
}

}  // namespace kaunter
