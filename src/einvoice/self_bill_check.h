// What the service would refuse of a self-billed invoice, as far as it can be seen from here. It is
// shown and stops nothing: the service has the last word.
#pragma once

#include <vector>

#include "einvoice/self_bill.h"
#include "screen/caption.h"

namespace kaunter {

class Connection;

struct SelfBillRemark {
  Caption field;
  Caption what;
};

// In the order of the screen. `comp_code` is the company in whose name it goes out.
std::vector<SelfBillRemark> CheckSelfBill(Connection& main, const SelfBill& bill,
                                          const std::string& comp_code);

}  // namespace kaunter
