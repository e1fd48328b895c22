// The copy of a database into an empty one of another engine, and the comparison of both, row by
// row. Neither commits anything.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/sql/whole_database.h"

namespace kaunter {

// The person wants the end.
class CopyStopped : public std::runtime_error {
 public:
  CopyStopped() : std::runtime_error("stopped") {}
};

enum class CopyStep { copy, compare };

// Told every some hundred rows, and before what takes long; it throws to end the work.
using CopyGoOn = std::function<void(CopyStep step, const std::string& table, std::int64_t rows)>;

// Rows that were copied. `tables` are those of `from`. Throws SqlError.
std::int64_t CopyTables(sql::WholeDatabase& from, sql::WholeDatabase& to,
                        const std::vector<sql::WholeTable>& tables, const CopyGoOn& go_on);

// What differs, a line each and no more than some twenty: tables and their columns, keys, indexes
// and counters first, then rows by their typed values in the order of their keys.
std::vector<std::string> CompareTables(sql::WholeDatabase& from, sql::WholeDatabase& to,
                                       const std::vector<sql::WholeTable>& from_tables,
                                       const std::vector<sql::WholeTable>& to_tables,
                                       const CopyGoOn& go_on);

}  // namespace kaunter
