#include "core/moved_office.h"

#include <fmt/format.h>

#include "core/data_access.h"
#include "core/sql_literals.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kCannotOpen = 4060;
constexpr std::string_view kCopy = "copy";
constexpr std::string_view kMoved = "moved";

}  // namespace

std::optional<MoveMark> ReadMoveMark(Connection& connection) {
  if (!TableExists(connection, kMoveTable)) return std::nullopt;
  const Recordset row =
      connection.Query(fmt::format("SELECT MoveID,State,MovedAt,Place,UserID FROM {}", kMoveTable));
  if (row.Eof()) return std::nullopt;
  MoveMark mark;
  mark.id = NullToEmpty(row.Field("MoveID"));
  mark.state =
      NullToEmpty(row.Field("State")) == kMoved ? MoveMark::State::moved : MoveMark::State::copy;
  if (const DateTime* at = row.Field("MovedAt").AsDate()) mark.at = *at;
  mark.place = NullToEmpty(row.Field("Place"));
  mark.user = NullToEmpty(row.Field("UserID"));
  return mark;
}

void WriteMoveMark(Connection& connection, const MoveMark& mark) {
  connection.Execute(fmt::format(
      "CREATE TABLE {} (MoveID nvarchar(36) NOT NULL, State nvarchar(10) NOT NULL, MovedAt "
      "datetime NOT NULL, Place nvarchar(1000) NOT NULL, UserID nvarchar(50) NULL, PRIMARY KEY "
      "(MoveID))",
      kMoveTable));
  connection.Execute(fmt::format(
      "INSERT INTO {} (MoveID,State,MovedAt,Place,UserID) VALUES ({},{},{},{},{})", kMoveTable,
      QuoteStr(mark.id), QuoteStr(mark.state == MoveMark::State::moved ? kMoved : kCopy),
      QuoteStr(mark.at.ToCanonical()), QuoteStr(mark.place), QuoteStr(mark.user)));
}

void RemoveMoveMark(Connection& connection) {
  if (TableExists(connection, kMoveTable)) {
    connection.Execute(fmt::format("DROP TABLE {}", kMoveTable));
  }
}

std::string MovedWords(const MoveMark& mark) {
  const std::string when = Format(mark.at, "dd-MM-yyyy hh:nn");
  if (mark.state == MoveMark::State::copy) {
    return fmt::format(
        "This database is a copy of the office in {}, begun on {}, which was not finished: the old "
        "office is still in force. On the PC that moves the office, move it once more.\n"
        "此资料库是 {} 的副本，于 {} "
        "开始，尚未完成，旧资料库仍然有效。请在搬移公司的电脑上再搬移一次。",
        mark.place, when, mark.place, when);
  }
  return fmt::format(
      "This office was moved to {} on {} by {}. Nothing is saved here any more. Let the "
      "administrator name the new database in the settings of this PC.\n"
      "此公司已于 {} 由 {} 搬移至 {}，不再储存于此。请管理员在本机设定中指定新的资料库。",
      mark.place, when, mark.user, when, mark.user, mark.place);
}

void RefuseMovedOffice(Connection& main) {
  if (const auto mark = ReadMoveMark(main)) throw SqlError(kCannotOpen, MovedWords(*mark));
}

}  // namespace kaunter
