// What the office keeps of a customer, a loan and a payment, as far as old data brings it: our
// side of a mapping.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

enum class MoveKind { customers, loans, payments };
inline constexpr std::array<MoveKind, 3> kMoveKinds = {MoveKind::customers, MoveKind::loans,
                                                       MoveKind::payments};

// "customers", as mapping files and the record of what was moved name it.
std::string_view MoveKindName(MoveKind kind);
Caption MoveKindCaption(MoveKind kind);
// The table that takes the records, and its key.
std::string_view TableOf(MoveKind kind);
std::string_view KeyOf(MoveKind kind);

enum class TargetKind { text, day, money, rate, whole, new_ic };

struct TargetField {
  const char* column;  // of the table, or a name of our own for what stands in none
  Caption caption;
  TargetKind kind = TargetKind::text;
  bool stored = true;  // in the column of its name
  const char* usual;   // what a new mapping takes for all lines where no heading fits; "" for none
  const char* list;  // what it must be: "A|B", or a table and its column "CustRaceMast.CustRaceID"
  const char* guesses;  // headings that mean it, in small letters without signs, parted by blanks
};

const std::vector<TargetField>& TargetFields(MoveKind kind);
// Null for a name that is none.
const TargetField* FindTarget(MoveKind kind, std::string_view column);

}  // namespace kaunter
