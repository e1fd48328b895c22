#include "upkeep/about.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "core/data_access.h"
#include "core/log_files.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/startup.h"
#include "core/values.h"
#include "platform/sql/engine_version.h"
#include "platform/sql/odbc/odbc_string.h"
#include "upkeep/office_place.h"

namespace kaunter {
namespace {

// A count reads no further: a table of a hundred million rows is no longer told to the row.
constexpr int kMostCounted = 100'000;
constexpr std::size_t kSlowTold = 20;

struct Counted {
  std::string_view table;
  Caption what;
};

const std::vector<Counted>& CountedTables() {
  static const std::vector<Counted> tables = {
      {"CompMast", {"Companies", "公司"}},      {"UserMast", {"Users", "用户"}},
      {"CustMast", {"Customers", "顾客"}},      {"LoanMast", {"Loans", "贷款"}},
      {"SchMast", {"Instalments", "分期"}},     {"PaymentMast", {"Payments", "付款"}},
      {"ChargeMast", {"Charges", "费用"}},      {"CashBook", {"Cash book lines", "现金簿"}},
      {"EInvMast", {"E-invoices", "电子发票"}}, {"AMLACopy", {"Watch list entries", "监察名单"}},
  };
  return tables;
}

// The folders of a person bear his name.
std::string WithoutHome(std::string path) {
  for (const char* variable : {"HOME", "USERPROFILE"}) {
    const char* home = std::getenv(variable);
    const std::string_view folder = home == nullptr ? "" : home;
    if (folder.size() > 1 && path.starts_with(folder)) return "~" + path.substr(folder.size());
  }
  return path;
}

Caption NotRead(const std::exception& error) {
  const auto* sql = dynamic_cast<const SqlError*>(&error);
  const int number = sql == nullptr ? 0 : sql->number();
  return {fmt::format("cannot be read (error {})", number),
          fmt::format("无法读取（错误 {}）", number)};
}

// With the thousands parted.
std::string Shown(std::int64_t number) {
  std::string digits = std::to_string(number);
  for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3) {
    digits.insert(static_cast<std::size_t>(at), ",");
  }
  return digits;
}

Caption RowsOf(Connection& main, std::string_view table) {
  try {
    if (!TableExists(main, table)) return "-";
    const std::string rows = ScalarQuery(
        main, fmt::format("SELECT COUNT(*) FROM (SELECT TOP {} 1 AS Found FROM {}) AS t",
                          kMostCounted + 1, table));
    const std::int64_t count = CLng(rows);
    if (count <= kMostCounted) return Shown(count);
    return {"more than " + Shown(kMostCounted), "超过 " + Shown(kMostCounted)};
  } catch (const SqlError& error) {
    return NotRead(error);
  }
}

Caption SettingOf(Connection& main, std::string_view key) {
  try {
    const std::string value = ReadSetting(main, key);
    return value.empty() ? Caption{"not known", "未知"} : Caption(value);
  } catch (const SqlError& error) {
    return NotRead(error);
  }
}

Caption RoomAt(const std::filesystem::path& folder) {
  constexpr double kGigabyte = 1024.0 * 1024.0 * 1024.0;
  std::error_code failed;
  const auto space = std::filesystem::space(folder, failed);
  if (failed) return {"not known", "未知"};
  const double left = static_cast<double>(space.available) / kGigabyte;
  const double all = static_cast<double>(space.capacity) / kGigabyte;
  return {fmt::format("{:.1f} GB of {:.1f} GB", left, all),
          fmt::format("{:.1f} GB（共 {:.1f} GB）", left, all)};
}

std::filesystem::path FolderOf(const std::string& file) {
  return std::filesystem::absolute(file).parent_path();
}

}  // namespace

AboutOffice TellAbout(Session& session, RowCounts counts) {
  Connection& main = session.Main();
  AboutOffice about;
  const auto tell = [&](Caption what, Caption is) {
    about.lines.push_back({std::move(what), std::move(is)});
  };
  tell({"Program", "程序"}, "Kaunter " + RunningVersion());
  tell({"Engine", "数据库引擎"}, main.EngineName() + " " + EngineVersion(main));
  const auto source = session.data_sources.Find(session.ConnDataSource);
  const auto file = EmbeddedOffice(session);
  const std::string place = file     ? WithoutHome(*file)
                            : source ? sql::OdbcSourceName(source->target)
                                     : "DSN=" + session.ConnDataSource;
  tell({"Office", "资料库"}, place);
  tell({"Newest patch", "最新补丁"}, SettingOf(main, "NewestPatch"));
  tell({"Last backup", "最近备份"}, SettingOf(main, "LastBackup"));
  tell({"Folder of logs and pictures", "日志与图片文件夹"}, WithoutHome(session.AppPath));
  tell({"Logs", "日志"}, WithoutHome(LogFolder(session).string()));
  if (file) {
    std::error_code failed;
    const auto size = std::filesystem::file_size(*file, failed);
    if (!failed)
      tell({"Size of the office", "资料库大小"},
           Shown(static_cast<std::int64_t>(size >> 20U)) + " MB");
    tell({"Disk left at the office", "资料库磁盘剩余"}, RoomAt(FolderOf(*file)));
  }
  tell({"Disk left at the logs", "日志磁盘剩余"}, RoomAt(LogFolder(session)));
  if (counts == RowCounts::told) {
    for (const Counted& counted : CountedTables()) tell(counted.what, RowsOf(main, counted.table));
  }
  about.slow = SlowStatementsOf(session, session.clock.Now());
  if (about.slow.size() > kSlowTold) about.slow.resize(kSlowTold);
  return about;
}

std::string AboutText(const AboutOffice& about, bool chinese) {
  std::string text;
  for (const AboutLine& line : about.lines) {
    text += fmt::format("{}: {}\n", line.what.In(chinese), line.is.In(chinese));
  }
  const Caption heading{"Slow statements today (times, longest ms, total ms)",
                        "今日较慢的语句（次数、最长毫秒、合计毫秒）"};
  text += fmt::format("\n{}\n", heading.In(chinese));
  for (const SlowStatement& slow : about.slow) {
    text += fmt::format("{}\t{}\t{}\t{}\n", slow.times, slow.longest, slow.total, slow.statement);
  }
  if (about.slow.empty()) text += Caption{"none", "没有"}.In(chinese) + "\n";
  return text;
}

}  // namespace kaunter
