// What the gold of the office has cost and brought: what is still in hand, and the result of what
// was sold. An item costs what was paid for it (LoanAmt); what is added to or taken off the whole
// purchase belongs to no item. It is sold once it has a date of sale.
#pragma once

#include <string>
#include <vector>

#include "platform/money.h"

namespace kaunter {

class Session;

struct GoldInHand {
  std::string company;
  int items = 0;
  Money weight;  // grams
  Money cost;
  std::string since;  // the oldest purchase of them, dd-mm-yyyy
};

struct GoldMonth {
  int year = 0;
  int month = 0;
  int items = 0;
  Money sold;
  Money cost;
};

// A row a company that has gold in hand, of those that the person may see; of one company when it
// is named. One statement.
std::vector<GoldInHand> ReadGoldInHand(Session& session, const std::string& company = {});
// The months in which gold was sold, the latest first. One statement.
std::vector<GoldMonth> ReadGoldResult(Session& session, const std::string& company = {});

}  // namespace kaunter
