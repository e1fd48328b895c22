// The rows of a table that ask for more than was paid for them, by their day: few among very many.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter {

struct OpenRowsOf {
  std::string_view table;
  std::string_view day;
  std::string_view amount;
  std::string_view paid;  // NULL where nothing was
};

// The row's day, and NULL where it is paid, for a statement that knows the table as `alias`. Beside
// the told conditions it changes no answer: PostgreSQL knows by it how few rows there are.
std::string OpenDay(const OpenRowsOf& rows, std::string_view alias);
// Has PostgreSQL answer by an index of these days, which is made where it is missing; nothing
// happens on another engine. Throws SqlError where it could be made and is not.
void IndexOpenRows(Connection& connection, const OpenRowsOf& rows);

}  // namespace kaunter
