// Rows of an ODBC statement, read to the end into values.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/odbc/odbc_handle.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

// Called with what an ODBC call gave; throws when that is a failure.
using OdbcCheck = std::function<void(SQLRETURN)>;

// Reads the open result of `statement`. `known` gives the columns' types where the translator has
// decided them (a driver that types its columns loosely is then not asked); a column of unknown
// type, or all of them when `known` is empty, goes by what the driver tells. Decimals always travel
// as text: a driver's double would bring a binary residue. Bits are 1 and 0. Throws SqlError 8115
// for a decimal of up to four places that money cannot hold.
Recordset ReadRows(const OdbcHandle& statement, bool wide, const std::vector<ResultColumn>& known,
                   const OdbcCheck& check);

// Passes over the rows, so that a failure in one of the last surfaces too.
void SkipRows(const OdbcHandle& statement, const OdbcCheck& check);

}  // namespace kaunter::sql
