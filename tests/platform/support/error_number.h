// The number of the error that a statement brings.
#pragma once

#include <string>

#include "platform/sql/connection.h"
#include "platform/sql/sql_error.h"

namespace kaunter {

// 0 when it passes. `words` takes what the error tells.
inline int NumberOf(Connection& connection, const std::string& statement,
                    std::string* words = nullptr) {
  try {
    connection.Execute(statement);
  } catch (const SqlError& error) {
    if (words != nullptr) *words = error.what();
    return error.number();
  }
  return 0;
}

}  // namespace kaunter
