// From a driver's diagnostics to the numbers that the rest of the system knows.
#pragma once

#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_handle.h"

namespace kaunter::sql {

// Number and description of a failure. SQL Server's own number is taken as it is
// (`server_numbers`); any other server's SQLSTATE is turned into the number that SQL Server gives
// for the same trouble, else its native number stays. The description joins all records.
SqlError ToSqlError(const std::vector<OdbcDiagnostic>& records, bool server_numbers);

// True when the records say that the connection is gone.
bool TellsLost(const std::vector<OdbcDiagnostic>& records);

// True for a failure after which the server has given the transaction up (a deadlock, a failed
// conversion): what follows would stand alone, outside of any transaction.
bool EndsTransaction(int number);

inline constexpr int kLostNumber = 10054;
inline constexpr int kCannotOpenNumber = 4060;
inline constexpr int kLoginRefusedNumber = 18456;

}  // namespace kaunter::sql
