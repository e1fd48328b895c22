#include "upkeep/restore.h"

#include <fmt/format.h>

#include <sstream>

#include "platform/sql/engine_version.h"
#include "screen/caption_error.h"
#include "upkeep/move_end.h"
#include "upkeep/office_place.h"
#include "upkeep/postgresql_place.h"

namespace kaunter {
namespace {

// Field by field: 1.10 is newer than 1.9.
std::vector<int> Fields(const std::string& version) {
  std::vector<int> fields;
  std::istringstream stream(version);
  for (std::string field; std::getline(stream, field, '.');) {
    fields.push_back(static_cast<int>(std::strtol(field.c_str(), nullptr, 10)));
  }
  return fields;
}

void CheckVersion(const BackupRecord& record) {
  const std::vector<int> own = {KAUNTER_VERSION_MAJOR, KAUNTER_VERSION_MINOR,
                                KAUNTER_VERSION_REVISION};
  if (Fields(record.program) <= own) return;
  throw CaptionError(
      {fmt::format("The backup was made by a newer Kaunter ({}): install that one "
                   "first.",
                   record.program),
       fmt::format("备份由较新版本的 Kaunter（{}）制作：请先安装该版本。", record.program)});
}

}  // namespace

bool OfficeRestore::Compare(Connection& office, Connection& earlier, const UpkeepGoOn& go_on) {
  view_.moved = ReadMoveMark(office);
  const auto loss = WhatIsLost(office, earlier, [&](std::int64_t done) {
    return go_on({{"Comparing with the office", "正在与现有公司资料比较"}, done});
  });
  if (!loss) return false;
  view_.loss = *loss;
  view_.related = AreOneOffice(office, earlier);
  return true;
}

bool OfficeRestore::IsAsTold(Connection& office, Connection& earlier) const {
  return ReadMoveMark(office).has_value() == view_.moved.has_value() &&
         WhatIsLost(office, earlier, [](std::int64_t) { return true; }) == view_.loss;
}

void OfficeRestore::RefuseChanged() {
  throw CaptionError(
      {"Something was saved in the office while you looked: look again at what will "
       "be lost. Nothing was restored.",
       "您查看期间有资料存入：请重新查看会失去什么。没有恢复任何资料。"});
}

void OfficeRestore::RefuseOpenDesk() {
  throw CaptionError(
      {"Kaunter is open on this office: close it at every desk, and try again. "
       "Nothing was restored.",
       "仍有电脑开着此公司：请全部关闭后再试。没有恢复任何资料。"});
}

void OfficeRestore::KeepTrail(std::unique_ptr<Connection> trail) {
  MoveDatabase database(std::move(trail));
  database.Reopen();
}

std::unique_ptr<OfficeRestore> PrepareRestore(Session& session, const std::string& folder,
                                              const UpkeepGoOn& go_on) {
  BackupRecord record = ReadBackupRecord(folder);
  CheckVersion(record);
  CheckBackupFiles(record);
  const bool embedded = EmbeddedOffice(session).has_value();
  if (record.engine != (embedded ? kEmbeddedEngine : kPostgresqlEngine)) {
    throw CaptionError(
        {fmt::format("The backup is of an office on {}, and the settings of this PC lead to "
                     "another kind of database.",
                     record.engine),
         fmt::format("备份来自 {} 上的公司，而此电脑的设定指向另一种数据库。", record.engine)});
  }
  auto restore = embedded ? EmbeddedRestoreOf(session, std::move(record))
                          : PostgresqlRestoreOf(session, std::move(record));
  if (!restore->Prepare(go_on)) return nullptr;
  return restore;
}

}  // namespace kaunter
