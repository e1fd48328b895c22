// PaymentReader, the record of what was taken from a source: one row for each of its lines, under
// the line's reference number. Whoever takes a line holds its row first, so that no line pays twice
// however many desktops read it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

inline constexpr std::string_view kPaymentDone = "Payment Done";
inline constexpr std::size_t kLongestRefNo = 300;

struct TakenLine {
  std::string RefNo;
  std::string Remarks = {};
  std::string PayID = {};
  std::string ErrMsg = {};
  std::string LineHash = {};   // "" of lines that an older version took
  std::string LoanID = {};     // that its payment went to
  bool payment_there = false;  // the payment has not been deleted since

  bool Done() const { return Remarks == kPaymentDone; }
  bool Pays() const { return Done() && payment_there; }
  // Another line, of another file of the same name.
  bool IsOther(std::string_view line_hash) const {
    return !LineHash.empty() && !line_hash.empty() && LineHash != line_hash;
  }
};

// Nothing when the line was never processed. Throw SqlError.
std::optional<TakenLine> ReadTakenLine(Connection& main, std::string_view ref_no);
// The lines of this fingerprint, of other files, that pay. `file` is the file's own name.
std::vector<TakenLine> SameLinesElsewhere(Connection& main, std::string_view line_hash,
                                          std::string_view file);

// What is told of a line whose name another file has used up.
Caption OtherLineOfThisName(const TakenLine& taken);

// Holds the line until the open transaction ends; others who want it wait.
void HoldLine(Connection& main, std::string_view ref_no);
// Writes what became of a line that is held.
void WriteTakenLine(Connection& main, const TakenLine& line, std::string_view user);

}  // namespace kaunter
