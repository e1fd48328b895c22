// A document in the list of the submission screen: its row, what the office knows of it, and its
// tick.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "einvoice/einvoice_row.h"
#include "einvoice/sending_marks.h"
#include "screen/caption.h"
#include "screen/grid.h"

namespace kaunter {

enum class SendMode { submit, cancel };
std::string_view NameOf(SendMode mode);  // "Submit", "Cancel"

// At a glance.
enum class LineState { unsent, sent, valid, refused, unknown, cancelled };
inline constexpr int kLineStates = 6;
const Caption& NameOf(LineState state);

struct InvoiceLine {
  InvoiceRow cells = InvoiceRow(einvoice_column::kColumns);
  SendingMark mark;         // of what is asked of the service: submission or cancellation
  std::string cancel_uuid;  // recorded
  std::string faults;       // what the service would refuse, in the language in force
  RowTone tone = RowTone::plain;
  bool ticked = false;
  bool Credit() const { return IsCreditNote(cells); }
  const std::string& id() const { return cells[einvoice_column::kID]; }
  const std::string& uuid() const { return cells[einvoice_column::kUuid]; }
  SendingMarks::Line key() const { return {id(), cells[einvoice_column::kSeqNo]}; }
};

LineState StateOf(const InvoiceLine& line);
// The state in words, with who sent it and why it is not known, or why it was refused.
Caption ToldState(const InvoiceLine& line);

// What was done already, so that doing it again is asked for: a document with a uuid to be
// submitted, a cancelled one to be cancelled.
bool WasDone(const InvoiceLine& line, SendMode mode);

}  // namespace kaunter
