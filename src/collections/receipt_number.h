// The number on a receipt, unique within its company.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "core/session.h"

namespace kaunter {

enum class ReceiptStyle {
  dated,    // "240131-0001": the setting ORYYMMDD is "1"; counter "OR<company>#yyMMdd-"
  serial,   // "R0001": the company's SerialReceiptNo is "1"; counter "<company>#R"
  monthly,  // "202401-0001": else; counter "<company>#yyyyMM-"
};
// The style in force for the company. Throws SqlError.
ReceiptStyle ReceiptStyleOf(const Session& session, std::string_view comp_code);

// A series of receipts: its numbers are "<prefix>0001" and on, its counter "<owner>#<prefix>".
struct ReceiptSeries {
  std::string prefix;
  std::string owner;
};
// The series of the style that a payment of the day (dd-mm-yyyy) belongs to. Throws
// std::invalid_argument for a text that is no date where the style needs one.
ReceiptSeries ReceiptSeriesOn(ReceiptStyle style, std::string_view comp_code,
                              std::string_view pay_date);

// The next number of the series in force on `pay_date` (dd-mm-yyyy); one that a payment of the
// company bears is passed over in silence. Runs inside the caller's transaction, so that a rollback
// gives the number back. Throws SqlError; std::invalid_argument for a text that is no date.
std::string NextReceiptNo(Session& session, std::string_view comp_code, std::string_view pay_date);

// Another payment of the company bears the number.
bool ReceiptTaken(Connection& main, std::string_view comp_code, std::string_view pay_id,
                  std::string_view receipt_no);

// A receipt number that must be free belongs to another payment of the company. what() is the
// number.
struct ReceiptConflict : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace kaunter
