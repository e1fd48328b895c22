// What the service would refuse, told before anything is sent. It stops nobody: the office may know
// better, and the service has the last word. But a document of another company is not sent.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "einvoice/document_check.h"
#include "einvoice/invoice_line.h"

namespace kaunter {

class Session;

class CheckList {
 public:
  explicit CheckList(Session& session);

  // Fills the faults of each line. `lines` are all that are listed: a number that stands twice is
  // seen among them.
  void Check(std::vector<InvoiceLine>& lines, SendMode mode, std::string_view comp_code) const;
  // Of the company's own identity; "" for none.
  std::string OfCompany(const std::string& comp_code) const;

 private:
  // What is told of one document, in the language in force.
  class Faults;

  void CheckDocument(const InvoiceLine& line, Faults& faults) const;

  Session& session_;
  DocumentCheck check_;
};

}  // namespace kaunter
