#include "movein/legacy_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "core/texts.h"
#include "movein/file_trouble.h"
#include "platform/process.h"
#include "platform/sql/odbc/odbc_string.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

#ifdef _WIN32
constexpr const char* kDriver = "Microsoft Access Driver (*.mdb, *.accdb)";
constexpr const char* kDriverPackage = "Microsoft Access Database Engine (64 bit)";
#else
constexpr const char* kDriver = "MDBTools";
constexpr const char* kDriverPackage = "odbc-mdbtools";
#endif

void RequireJet(const std::string& path) {
  std::error_code none;
  std::ifstream in;
  if (std::filesystem::is_regular_file(path, none)) in.open(path, std::ios::binary);
  if (!in.is_open()) {
    throw FileTrouble(
        {fmt::format("The file {} cannot be read: is it there, and may you read it?", path),
         fmt::format("无法读取文件 {}：文件是否存在，您是否有权读取？", path)});
  }
  constexpr std::string_view kNames[] = {"Standard Jet DB", "Standard ACE DB"};
  char head[19] = {};
  in.read(head, sizeof head);
  const std::string_view name(head + 4, 15);
  if (in.gcount() == sizeof head &&
      std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames)) {
    return;
  }
  throw FileTrouble(
      {fmt::format("{} is no data file of the earlier edition (no Jet database)", path),
       fmt::format("{} 不是旧版的资料文件（不是 Jet 数据库）", path)});
}

std::string OdbcTextOf(const std::string& path) {
  return fmt::format("Driver={};DBQ={}", kDriver, sql::OdbcValue(path));
}

// Reads all there is, with a sign of life now and then.
void ReadThrough(const std::string& path, const std::function<bool()>& alive) {
  constexpr int kAlive = 200;
  try {
    OdbcSource source(OdbcTextOf(path));
    int rows = 0;
    for (const std::string& table : source.Tables()) {
      source.Read(
          table, [](const auto&) { return true; },
          [&](const auto&) { return ++rows % kAlive != 0 || alive(); });
    }
  } catch (const std::exception&) {
    // Told where it is read in earnest.
  }
}

// A damaged page may break the driver down, or lead it round in circles, and the whole program with
// it. So another process reads the file first.
bool DriverBears(const std::string& path) {
  return Survives([&path](const auto& alive) { ReadThrough(path, alive); },
                  std::chrono::seconds(30), ActWhileWaiting);
}

}  // namespace

std::unique_ptr<OdbcSource> OpenLegacyFile(const std::string& path) {
  RequireJet(path);
  if (!DriverBears(path)) {
    throw FileTrouble(
        {fmt::format("{} is damaged: the driver breaks down on it. Have it repaired "
                     "by the program that made it, or take an older copy",
                     path),
         fmt::format("{} 已损坏：驱动程序读取时中断。请用原程序修复，或用较早的副本", path)});
  }
  std::unique_ptr<OdbcSource> source;
  std::vector<std::string> tables;
  try {
    source = std::make_unique<OdbcSource>(OdbcTextOf(path));
    tables = source->Tables();
  } catch (const SqlError& error) {
    const std::string_view words = error.what();
    const bool no_driver = words.find("open lib") != std::string_view::npos ||
                           words.find("no default driver") != std::string_view::npos;
    throw FileTrouble(
        no_driver
            ? Caption{fmt::format("The driver for old data files is not installed on this PC: "
                                  "install the package {}. ({})",
                                  kDriverPackage, error.what()),
                      fmt::format("此电脑没有安装旧资料文件的驱动程序：请安装 {}。({})",
                                  kDriverPackage, error.what())}
            : Caption{fmt::format("{} cannot be opened: {}", path, error.what()),
                      fmt::format("无法打开 {}：{}", path, error.what())});
  }
  if (tables.empty()) {
    throw FileTrouble(
        {fmt::format("{} is damaged: its list of tables cannot be read. Have it "
                     "repaired by the program that made it, or take an older copy",
                     path),
         fmt::format("{} 已损坏：无法读取其表格目录。请用原程序修复，或用较早的副本", path)});
  }
  for (const LegacyTable& table : LegacyTables()) {
    const bool there = std::any_of(tables.begin(), tables.end(), [&table](const auto& name) {
      return SameText(name, table.name);
    });
    if (there || !table.needed) continue;
    throw FileTrouble({fmt::format("{} has no table {}: is it the right file, or is it damaged?",
                                   path, table.name),
                       fmt::format("{} 没有表格 {}：文件是否正确，或已损坏？", path, table.name)});
  }
  return source;
}

const std::vector<LegacyTable>& LegacyTables() {
  using enum LegacyKeys;
  static const std::vector<LegacyTable> tables = {
      {"CashBookCat", codes, {"CatCode"}},
      {"CollectInfoMast", codes, {"CollectInfoID"}},
      {"CompMast", keys, {"CompCode"}, true},
      {"CustMast", keys, {"CustID"}, true},
      {"CustRaceMast", codes, {"CustRaceID"}},
      {"LoanGroupMast", codes, {"LoanGroupID"}},
      {"LoanMast", keys, {"LoanID"}, true},
      {"LoanTypeMast", codes, {"LoanTypeID"}},
      {"NumberMast", keys, {"CustID"}},
      {"PaymentMast", keys, {"PayID"}, true},
      {"PersonalExp", rows, {}},
      {"RefererMast", rows, {}},
      {"SchMast", keys, {"LoanID", "SchID"}, true},
      {"AdvertiseMast", codes, {"AdvertiseID"}},
  };
  return tables;
}

const std::vector<const char*>& ClearedTables() {
  static const std::vector<const char*> tables = {
      "CashBookCat",   "CollectInfoMast", "CompMast",      "CustMast",       "CustRaceMast",
      "LoanGroupMast", "LoanMast",        "LoanTypeMast",  "NumberMast",     "PaymentMast",
      "PersonalExp",   "RefererMast",     "SchMast",       "AdvertiseMast",  "AppHist",
      "AppMast",       "AppMastLink",     "ChargeMast",    "CheckListTrans", "ChqMast",
      "DocumentMast",  "DrawDownMast",    "FollowUpMast",  "LoanCollateral", "MasterReport",
      "MonthlyMast",   "MRTAMast",        "OwnerMast",     "PaymentList",    "SchMast2",
      "SupplierMast",  "SupplierTrans",   "YearlyLoanMast"};
  return tables;
}

}  // namespace kaunter
