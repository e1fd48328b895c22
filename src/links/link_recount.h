// The bridge held against the ledger: what it lacks, or holds otherwise, and the sending of that.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "links/link_documents.h"

namespace kaunter {

struct LinkDifference {
  LinkedDocument document;
  std::string held;  // the bridge's amount as it is shown; "" where it holds nothing
  Caption what;
};

// False ends the work.
using LinkProgress = std::function<bool(std::size_t done, std::size_t all)>;

struct LinkRecount {
  std::size_t documents = 0;  // of the ledger, and the persons in them
  bool complete = true;       // nobody has stopped it
  std::vector<LinkDifference> differences;
};

// Everything of the ledger between two days (dd-mm-yyyy), of one company or of all that the person
// may see. Reads, and writes nothing. Throws SqlError.
LinkRecount Recount(Session& session, Connection& aed, const std::string& from,
                    const std::string& to, const std::string& company,
                    const LinkProgress& progress);

// How the bridge holds these documents, those alone that differ.
std::vector<LinkDifference> CompareWithBridge(Connection& aed,
                                              const std::vector<LinkedDocument>& documents);

enum class Resent {
  sent,
  sound,  // the bridge holds it by now: a save or another desktop has sent it
  gone,   // the ledger holds it no more
};
// Sends the document as the ledger has it now, in one transaction of the bridge. Throws SqlError.
Resent Resend(Session& session, Connection& aed, const LinkedDocument& document);

}  // namespace kaunter
