// What a line of the payment reader will do to its loan, told before it is processed. Lines are
// looked at in their order: each counts on those before it that will be taken.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "bank/reader_row.h"
#include "collections/payment_store.h"
#include "core/session.h"
#include "screen/desk.h"
#include "screen/grid.h"

namespace kaunter {

struct ReaderOutlook {
  enum class Kind {
    pays,     // as told
    doubted,  // it can be taken, and looks as if it had been: the person decides
    refused,  // as it stands it will fail
    done,     // it has paid
  };
  Kind kind = Kind::refused;
  Caption text;
  bool behind = false;  // done, and its loan has not been rebuilt since
};

class ReaderPreview {
 public:
  ReaderPreview(Session& session, Desk& desk) : session_(session), desk_(desk) {}

  // Takes what PaymentReader holds of the line into the row. Throws SqlError.
  ReaderOutlook Look(ReaderRow& row);

 private:
  ReaderOutlook LookAtLine(ReaderRow& row);
  std::optional<ReaderOutlook> LookAtRecord(ReaderRow& row);
  ReaderOutlook LookAtPayment(ReaderRow& row);
  std::optional<Caption> Doubt(ReaderRow& row, const DateTime& day);
  Caption InWordsOf(const Payment& payment, bool* settles);
  void AddNotes(const ReaderRow& row, const std::string& comp_code, Caption* text);

  Session& session_;
  Desk& desk_;
  // Of the lines before that will be taken.
  std::map<std::string, std::vector<Payment>> planned_;  // by loan
  std::map<std::string, std::string> lines_;             // RefNo by fingerprint
};

// What a row with this outlook is drawn with.
RowTone ToneOf(ReaderOutlook::Kind kind);

}  // namespace kaunter
