// The mark of an office that was moved to another database, or of a copy that is not one yet: a
// table of one row that no office in force has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"
#include "platform/sql/connection.h"

namespace kaunter {

inline constexpr std::string_view kMoveTable = "OfficeMove";

struct MoveMark {
  enum class State {
    copy,   // a copy that is being made, or that waits for the old office to be closed
    moved,  // the old office: closed, and the place that is in force is told
  };
  std::string id;  // the same on both sides
  State state = State::copy;
  DateTime at;
  std::string place;  // moved: where to; copy: where from
  std::string user;
};

std::optional<MoveMark> ReadMoveMark(Connection& connection);
// Makes the table and its row. Within a transaction of the caller.
void WriteMoveMark(Connection& connection, const MoveMark& mark);
void RemoveMoveMark(Connection& connection);

// What a desk is told that opens, or saves into, what bears the mark; in both languages, since who
// reads it is not known.
std::string MovedWords(const MoveMark& mark);

// Throws SqlError (4060) with these words. Every program that opens an office for work asks it.
void RefuseMovedOffice(Connection& main);

}  // namespace kaunter
