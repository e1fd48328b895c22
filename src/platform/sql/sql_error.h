// The words of a refusal: SQL Server's number and text, with the statement and the place.
#pragma once

#include <string>
#include <string_view>

#include "platform/sql/connection.h"

namespace kaunter::sql {

// Throws SqlError: the words, then where in the statement ("at 57, near '...'") and the statement
// itself, of a very long one the surroundings of the place.
[[noreturn]] void Fail(int number, std::string_view words, std::string_view statement,
                       std::size_t place);

// "INSERT" of "INSERT INTO ...", for "INSERT fails."; "" when it begins with no short word.
std::string VerbOf(std::string_view statement);

// What a save is told that waits while the whole office is copied to another engine.
std::string BeingMovedWords(const std::string& database);

}  // namespace kaunter::sql
