// Sending one document after the other, each recorded before the next goes out. There is no screen
// in it.
#pragma once

#include <string>
#include <string_view>

#include "einvoice/invoice_line.h"
#include "einvoice/invoice_service.h"
#include "einvoice/sending_marks.h"

namespace kaunter {

class Session;

class Submission {
 public:
  enum class Outcome {
    recorded,  // the service gave a uuid, and it is stored
    refused,   // the service said no
    open,      // its answer does not tell
    no_token,  // it does not know who asks; the document was not taken
    not_ours,  // another desktop has sent the document since it was listed
  };

  // Of a run: `supplier` is the company's block.
  Submission(Session& session, InvoiceService& service, SendMode mode, std::string_view supplier);

  // Sends the document and writes what comes of it, into the line too. Throws HttpFailure when no
  // whole answer came, and what a failed write throws; the line's mark then tells what is known.
  Outcome Send(InvoiceLine& line);

  // Records a uuid that is known from elsewhere: an answer whose record failed, or one that a
  // person found with the service.
  void Record(InvoiceLine& line, const std::string& uuid);

 private:
  bool ForgetReplaced(const InvoiceLine& line, const std::string& uuid);
  Outcome TakeReply(InvoiceLine& line, const SendingMark& before, const std::string& reply);

  Session& session_;
  InvoiceService& service_;
  SendMode mode_;
  SendingMarks marks_;
  std::string supplier_;
};

// The row of EInvMast, or its new uuid: a second line of a document only renews the uuid of the
// first. In the transaction of the caller.
void SaveEInvResult(Session& session, const InvoiceRow& row, std::string_view uuid, SendMode mode,
                    bool ticked);

}  // namespace kaunter
