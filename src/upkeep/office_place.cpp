#include "upkeep/office_place.h"

#include <filesystem>

#include "core/local_settings.h"
#include "core/startup.h"
#include "platform/installation.h"
#include "platform/sql/data_source.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> FileOf(const Session& session, const std::string& catalog) {
  return EmbeddedFile(OfficeConnectionString(session, catalog), session.data_sources);
}

}  // namespace

std::optional<std::string> EmbeddedOffice(const Session& session) {
  return FileOf(session, session.ConnDatabase);
}

std::optional<std::string> EmbeddedTrail(const Session& session) {
  return FileOf(session, session.ConnDatabase + "-Logs");
}

std::string OfficeSource(const Session& session) {
  const auto file = EmbeddedOffice(session);
  if (file) return fs::absolute(*file).lexically_normal().string();
  return session.ConnDataSource + "/" + session.ConnDatabase;
}

std::string OfficeShortName(const Session& session) {
  const auto file = EmbeddedOffice(session);
  return FileNameOf(file ? fs::path(*file).stem().string() : session.ConnDatabase);
}

std::string BackupFolderOf(const Session& session) {
  if (!session.BackupFolder.empty()) return session.BackupFolder;
  const auto file = EmbeddedOffice(session);
  if (!file) return UserDataFolder() + "/Backup";
  return (fs::absolute(*file).parent_path() / "Backup").lexically_normal().string();
}

}  // namespace kaunter
