// One side of a move: the databases that a data source of the settings leads to.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/moved_office.h"
#include "platform/sql/whole_database.h"
#include "upkeep/office_move.h"

namespace kaunter {

struct MoveDatabase {
  std::unique_ptr<Connection> connection;  // null where there is no such database
  std::unique_ptr<sql::WholeDatabase> whole;
  std::vector<sql::WholeTable> tables;  // without the mark

  MoveDatabase() = default;
  explicit MoveDatabase(std::unique_ptr<Connection> opened);
  bool exists() const { return connection != nullptr; }
  void ReadTables();
  std::optional<MoveMark> Mark() const { return ReadMoveMark(*connection); }
  // Throws SqlError.
  void LockOut() { whole->LockOut(); }
  void Commit() { connection->CommitTrans(); }
  void GiveUp() noexcept;
  void Seal(const MoveMark& mark);
  // Takes the seal off, where there is one.
  void Reopen();
};

class MoveEnd {
 public:
  MoveEnd(const MoveRequest& request, std::string source, std::string database);

  const std::string& place() const { return place_; }
  const std::string& source() const { return source_; }
  MoveDatabase main;
  MoveDatabase logs;

  void OpenMain();
  // The audit database where there is one; `needed`: it must be there.
  void OpenLogs(bool needed);
  // A file that is missing, or empty, is made with the mark of a copy; made() tells.
  void MakeFiles(const MoveMark& mark, bool with_logs);
  void RemoveMadeFiles();
  std::optional<std::string> File(bool logs) const;

 private:
  std::string Text(bool logs) const;
  std::unique_ptr<Connection> Open(std::string_view name, bool logs) const;

  const MoveRequest& request_;
  std::string source_;
  std::string database_;
  std::string place_;
  std::vector<std::string> made_;
};

}  // namespace kaunter
