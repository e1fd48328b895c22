// Searches for what stands anywhere inside of texts (LIKE '%...%'). No ordinary index answers them:
// without one of its own a search reads every row of the office.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

struct SearchedTexts {
  std::string table;
  std::vector<std::string> columns;
  // Searched without their dashes and blanks: replace(replace(column,'-',''),' ','') LIKE '%...%'.
  std::vector<std::string> numbers;
};

// Has the engine answer such searches from indexes, which are made where they are missing; nothing
// happens on an engine that has none. Throws SqlError where they could be made and are not:
// searches then read all rows, and find the same.
void IndexInsideTexts(Connection& connection, const std::vector<SearchedTexts>& all);
// They are there; found out by IndexInsideTexts on this connection.
bool AreTextsIndexed(const Connection& connection);

}  // namespace kaunter
