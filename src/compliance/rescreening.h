// All customers against the copy of the watch list, and what was decided about those who are like
// an entry. Nothing of it bars a customer; a decision "hit" gives him the status AMLA.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "compliance/watch_index.h"
#include "compliance/watch_list.h"
#include "core/stoppable.h"

namespace kaunter {

class Session;

// As it stands in AMLADecision: a row a decision, never changed and never deleted.
struct WatchDecision {
  int SeqNo = 0;  // of the customer's
  bool hit = false;
  std::string Remark;
  std::string UserID;
  DateTime DateCreated;
};

struct WatchHit {
  ScreenedCustomer customer;
  WatchEntry entry;
  bool by_number = false;
  Caption reason;
  // The newest decision on the two as they stand now.
  std::optional<WatchDecision> decision;
  // Without one: the newest on the same two before the entry or the customer's name or a number
  // changed.
  std::optional<WatchDecision> before_change;
  int seen = 0;  // the newest decision on this customer that was read
};

struct Rescreening {
  std::size_t customers = 0;
  std::vector<WatchHit> hits;  // those by number first, then in the order of the customers
};

std::size_t CountUndecided(const std::vector<WatchHit>& hits);

// The customers of the companies that the person may see, against the copy. Nothing where
// `go_on` gave false. A run to the end is kept as a row of AMLARun. Throws SqlError, and
// std::runtime_error in the language in force where the copy is damaged.
std::optional<Rescreening> ScreenAllCustomers(Session& session, const WatchCopy& copy,
                                              const GoOn& go_on);

// Inside a transaction: keeps the decision, and gives a customer who is the listed person the
// status AMLA. Throws SqlError, and std::runtime_error in the language in force where another
// desktop has decided about the two since they were read. The audit is for after the commit.
WatchDecision Decide(Session& session, const WatchHit& hit, bool is_hit, std::string_view remark);
void AuditDecision(Session& session, const WatchHit& hit, bool is_hit);

// The rows of the printed list, under the name of this PC. Throws SqlError.
inline constexpr std::string_view kHitsFile = "WatchListHits.rpt";
void StageHits(const Session& session, std::string_view pcname, const std::vector<WatchHit>& hits);

// "Not decided", "Hit", "No hit", "Changed since: no hit".
Caption ShownDecision(const WatchHit& hit);
Caption ShownKind(const WatchHit& hit);

}  // namespace kaunter
