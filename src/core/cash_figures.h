// Where the cash is: what each company has, what moved it today and in the seven days before, and
// what is to come in the days ahead. Amounts are ringgit.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"

namespace kaunter {

class Session;

constexpr int kOutlookDays = 30;  // today and those behind it
constexpr int kDaysBehind = 7;    // without today

struct CashPosition {
  std::string CompCode;
  Money cash;  // the running balances
  Money bank;
  Money today;    // what came in less what went out; between cash and bank is neither
  Money week;     // the same of the seven days before today
  Money cheques;  // post-dated, new, dated within the outlook
  Money due;      // open instalments of loans with a balance, due within the outlook
  bool operator==(const CashPosition&) const = default;
};

// In this order.
inline constexpr std::array kCashAmounts = {&CashPosition::cash,    &CashPosition::bank,
                                            &CashPosition::today,   &CashPosition::week,
                                            &CashPosition::cheques, &CashPosition::due};

// One a company that the person may see and that has any of it. What is not asked for is not read
// and stays 0.
struct CashAsked {
  bool cheques = true;
  bool due = true;
};
std::vector<CashPosition> ReadCashPositions(Session& session, const DateTime& today,
                                            CashAsked asked = {});

}  // namespace kaunter
