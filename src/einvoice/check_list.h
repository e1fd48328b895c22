// What the service would refuse, told before anything is sent. It stops nobody: the office may know
// better, and the service has the last word.
#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "einvoice/invoice_line.h"

namespace kaunter {

class Session;

class CheckList {
 public:
  // Reads the authority's codes; a table without rows is not asked.
  explicit CheckList(Session& session);

  // Fills the faults of each line. `lines` are all that are listed: a number that stands twice is
  // seen among them.
  void Check(std::vector<InvoiceLine>& lines, SendMode mode, std::string_view comp_code) const;
  // Of the company's own identity; "" for none.
  std::string OfCompany(const std::string& comp_code) const;

 private:
  using Codes = std::set<std::string, std::less<>>;
  // What is told of one document, in the language in force.
  class Faults;
  struct Party;

  Codes Read(std::string_view table, std::string_view column) const;
  void CheckParty(const Party& party, Faults& faults) const;
  void CheckDocument(const InvoiceLine& line, Faults& faults) const;
  void CheckCode(const Codes& codes, const std::string& code, const Caption& what,
                 Faults& faults) const;

  Session& session_;
  Codes states_, countries_, taxes_, classes_;
};

}  // namespace kaunter
