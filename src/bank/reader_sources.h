// Where the lines of the payment reader come from, besides a bank's file: planned payments, and
// instalments that are due.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bank/reader_row.h"
#include "core/session.h"

namespace kaunter {

// More lines than these are no work for one sitting, and no list that a person looks through.
inline constexpr int kMostReaderRows = 20000;

// The loan of this code with its customer, put into the row; false when there is none, or it
// belongs to a company that is none of the person's. Throws SqlError.
bool FindReaderLoan(Session& session, std::string_view loan_id, ReaderRow& row);

// The payments on active loans that are planned for the day (with the setting PayToDate up to it),
// their instalments still open and not taken yet. Throws SqlError.
std::vector<ReaderRow> PlannedPayments(Session& session, const DateTime& day);

// The open instalments of running loans up to the day, all of them paid on it. Throws SqlError.
std::vector<ReaderRow> DueInstalments(Session& session, const DateTime& day);

}  // namespace kaunter
