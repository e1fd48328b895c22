#include "core/startup.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>

#include "core/connect_sequence.h"
#include "core/file_store.h"
#include "core/moved_office.h"
#include "core/new_office.h"
#include "core/schema_text.h"
#include "core/values.h"
#include "platform/installation.h"
#include "platform/regional.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

constexpr std::string_view kPasswordSuffix = "907$";

// What the step announces, one stroke of the bar each, and the table that must answer. Some are
// commands over other tables; the second cash book command reads the same table.
struct Announced {
  std::string_view name;
  std::string_view table;
};
constexpr Announced kTables[] = {
    {"AdvertiseMast", "AdvertiseMast"},
    {"AreaMast", "AreaMast"},
    {"ChqMast", "ChqMast"},
    {"CollectInfoMast", "CollectInfoMast"},
    {"CompanyProfile", "CompanyProfile"},
    {"CompMast", "CompMast"},
    {"CustMast", "CustMast"},
    {"CustRaceMast", "CustRaceMast"},
    {"LoanGroupMast", "LoanGroupMast"},
    {"LoanMast", "LoanMast"},
    {"LoanTypeMast", "LoanTypeMast"},
    {"Number", "NumberMast"},
    {"PaymentMast", "PaymentMast"},
    {"RefererMast", "RefererMast"},
    {"SalesmanMast", "SalesmanMast"},
    {"SchMast", "SchMast"},
    {"UserMast", "UserMast"},
    {"CustPop", "CustMast"},
    {"ICPop", "CustMast"},
    {"LoanPop", "LoanMast"},
    {"UserAccess", "UserAccess"},
    {"PaymentPop", "PaymentMast"},
    {"CollateralMast", "CollateralMast"},
    {"Systemast", "Systemast"},
    {"CashBook", "CashBook"},
    {"CashBook", "CashBook"},
    {"HisStatusMast", "HisStatusMast"},
    {"FollowUpMast", "FollowUpMast"},
    {"CompanyCategory", "CampanyCategory"},
    {"CashBookCat", "CashBookCat"},
    {"GoldTypeMast", "GoldTypeMast"},
    {"BankMast", "BankMast"},
    {"Power of Attorney", "OwnerMast"},
};
constexpr int kBarLength = 76;
const Caption kConnecting{"Connecting", "正在连接"};

// A new embedded file is made here and nowhere else, so that a mistyped name or a drive that is
// away never turns into an empty office.
void CreateMissingFile(const Session& session, const LocalSettings& local) {
  const auto source = session.data_sources.Find(session.ConnDataSource);
  if (!source || source->kind != DataSource::Kind::kEmbedded) return;
  if (!local.creatable.contains(Lower(session.ConnDataSource))) return;
  // Only the user's own folder is made too: a mistyped one is told by the open that follows.
  if (std::filesystem::path(source->target).parent_path() == UserDataFolder()) MakeUserDataFolder();
  MakeSqlite("MainConn", source->target, session.clock,
             [&](Connection& main) { CreateEmptyOffice(main, session.ConnAccount); });
}

// The tables of a server's database, or of a file that has none.
void FillNewOffice(Session& session) {
  if (!session.MayCreateTables) return;
  Connection& main = session.Main();
  if (IsEmptyDatabase(main)) CreateEmptyOffice(main, session.ConnAccount);
}

// Databases that other programs keep. Where none of these runs, in training or for a
// demonstration, an embedded file stands in for it.
struct StandIn {
  std::string_view source;
  std::string_view tables;  // name of the script
};
constexpr StandIn kStandIns[] = {{"AEDMTS", "accounting"},
                                 {"AMLA", "central"},
                                 {"MyKad64", "mykad"},
                                 {"photo", "mykad"},
                                 {"SMS", "sms"}};

// Runs each *.sql of the folder, in the order of their names.
void FillFrom(Connection& database, const std::string& folder) {
  std::set<std::filesystem::path> scripts;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".sql") scripts.insert(entry.path());
  }
  for (const std::filesystem::path& script : scripts) {
    std::ifstream stream(script, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    try {
      RunScript(database, text);
    } catch (const SqlError& failure) {
      throw std::runtime_error(fmt::format("{}: {}", script.string(), failure.what()));
    }
  }
}

void MakeStandIns(const Session& session, const LocalSettings& local) {
  for (const StandIn& stand_in : kStandIns) {
    const auto source = session.data_sources.Find(stand_in.source);
    if (!source || source->kind != DataSource::Kind::kEmbedded) continue;
    if (!local.creatable.contains(Lower(stand_in.source))) continue;
    MakeSqlite(stand_in.source, source->target, session.clock, [&](Connection& database) {
      Transaction transaction(database);
      RunScript(database, SchemaText(stand_in.tables));
      const auto folder = local.fill.find(Lower(stand_in.source));
      if (folder != local.fill.end()) FillFrom(database, folder->second);
      transaction.Commit();
    });
  }
}

void Announce(const Session& session, ProgressBar& bar, std::string_view heading,
              std::string_view step) {
  bar.SetText(fmt::format("{}\n{} {}", heading, session.In(kConnecting), step));
}

void OpenTables(Session& session, ProgressBar& bar, const std::string& heading) {
  for (const Announced& announced : kTables) {
    Announce(session, bar, heading, announced.name);
    // The table answers or the start ends here; no row is read, so the step does not grow with
    // history.
    session.Main().Query(fmt::format("SELECT * FROM {} WHERE 1=0", announced.table));
    bar.Step();
    if (announced.name == "CompanyProfile") {
      session.CompanyName = ScalarQuery(session.Main(), "SELECT CompanyName FROM CompanyProfile");
    }
  }
  Announce(session, bar, heading, session.In({"Link Database", "连接数据库"}));
  bar.Step();
}

int StoredVersion(const std::string& stored, std::string_view running) {
  try {
    return VersionNumber(stored);
  } catch (const std::exception&) {
    throw StartRefused("Version Checking",
                       fmt::format("The setting VERSION of this office is \"{}\", which is no "
                                   "version. Write it like {}, or empty it.",
                                   stored, running));
  }
}

void FindPhotoFolder(Session& session) {
  session.PhotoPath = session.AppPath + "/Photo";
  std::error_code failed;  // a picture that cannot be kept there is told when it comes
  std::filesystem::create_directories(session.PhotoPath, failed);
  CleanFtpScripts(session);
}

}  // namespace

void ApplyLocalSettings(Session& session, const LocalSettings& local) {
  session.ConnAccount = local.ConnAccount;
  session.ConnDataSource = local.ConnDataSource;
  session.ConnDatabase = local.ConnDatabase.empty() ? local.ConnDataSource : local.ConnDatabase;
  session.ConnLinkAcc = local.ConnLinkAcc;
  session.MyKadReaderFolder = local.MyKadReader;
  session.Camera = local.Camera;
  session.BackupFolder = local.BackupFolder;
  session.data_sources = local.sources;
  session.MayCreateTables = local.creatable.contains(Lower(session.ConnDataSource));
}

void CheckDateFormat(const std::string& short_date) {
  if (DayOfTestDate(short_date) == 2) {
    throw StartRefused("Verify Date Setting", "Invalid PC date format, please set to dd-MM-yyyy");
  }
}

std::string DatabasePassword(std::string_view account) {
  return account == "MainUser" ? fmt::format("VKT{}", kPasswordSuffix) : std::string();
}

std::string OfficeConnectionString(const Session& session, std::string_view catalog) {
  return OfficeConnectionString(session.ConnAccount, session.ConnDatabase, session.ConnDataSource,
                                catalog);
}

std::string OfficeConnectionString(std::string_view account, std::string_view user,
                                   std::string_view source, std::string_view catalog) {
  return fmt::format(
      "Provider=MSDASQL.1;Password={};Persist Security Info=True;User ID={};Data Source={};Initial "
      "Catalog={}",
      DatabasePassword(account), user, source, catalog);
}

void OpenMainConnection(Session& session, const LocalSettings& local) {
  CreateMissingFile(session, local);
  session.MainConn =
      OpenConnection("MainConn", OfficeConnectionString(session, session.ConnDatabase),
                     session.data_sources, session.clock);
  if (session.trace) session.MainConn->SetTrace(session.trace);
  RefuseMovedOffice(session.Main());
  FillNewOffice(session);
  MakeStandIns(session, local);
}

void Connect(Session& session, Desk& desk) {
  session.MyKad64String =
      ScalarQuery(session.Main(), "SELECT [Value] FROM Systemast WHERE Param='MyKadDatabase'");
  session.MyKadPath =
      ScalarQuery(session.Main(), "SELECT [Value] FROM Systemast WHERE Param='MyKadPath'");
  CheckVersion(session, desk, RunningVersion());
  desk.Hourglass(true);
  struct PointerBack {
    Desk& desk;
    ~PointerBack() { desk.Hourglass(false); }
  } pointer_back{desk};
  auto bar = desk.Progress(session.In(kConnecting));
  bar->SetRange(kBarLength);
  const std::string heading =
      fmt::format("MSSQL 2008 Express Database\n{}",
                  Format(ServerTime(session.Main()), "dddd, mmmm dd, yyyy h:mm am/pm"));
  OpenTables(session, *bar, heading);
  FindPhotoFolder(session);
  RunConnectSequence(session, desk, [&](std::string_view step) {
    Announce(session, *bar, heading, step);
    bar->Step();
  });
  bar->SetPosition(kBarLength);
}

std::string RunningVersion() {
  return fmt::format("{}.{}.{}", KAUNTER_VERSION_MAJOR, KAUNTER_VERSION_MINOR,
                     KAUNTER_VERSION_REVISION);
}

int VersionNumber(std::string_view dotted) {
  std::string digits;
  for (char c : dotted) {
    if (c != '.') digits += c;
  }
  return CLng(std::string_view(digits));
}

bool IsInstalledCopy(const std::string& app_path) {
  if (app_path.size() > 1 && app_path[1] == ':') return app_path[0] == 'C';
  const std::filesystem::path folder(app_path);
  return !std::filesystem::exists(folder / "CMakeCache.txt") &&
         !std::filesystem::exists(folder.parent_path() / "CMakeCache.txt");
}

void CheckVersion(Session& session, Desk& desk, std::string_view running) {
  const auto refuse = [&](const std::string& text) {
    desk.Message(MessageKind::information, "Version Checking", text);
    const std::string address =
        ScalarQuery(session.Main(), "SELECT Value FROM Systemast WHERE Param='URL'");
    if (!address.empty()) desk.Open(address);
    throw StartRefused("Version Checking", "");
  };
  const std::string stored =
      ScalarQuery(session.Main(), "SELECT Value FROM Systemast WHERE Param='VERSION'");
  const bool named = !std::all_of(stored.begin(), stored.end(), [](char c) { return c == '.'; });
  if (named && VersionNumber(running) < StoredVersion(stored, running)) {
    refuse(
        fmt::format("New version {} available for download, Please download update now", stored));
  }
  if (const auto too_old = TooOldFor(session.Main())) refuse(session.In(*too_old));
  if (named && IsInstalledCopy(session.AppPath)) {
    session.Main().Execute(
        fmt::format("UPDATE Systemast SET [Value]={} WHERE Param='VERSION'", QuoteStr(running)));
  }
}

}  // namespace kaunter
