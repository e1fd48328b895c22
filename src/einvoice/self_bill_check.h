// What the service would refuse of a self-billed invoice, as far as it can be seen from here.
#pragma once

#include <string>
#include <vector>

#include "einvoice/document_check.h"
#include "einvoice/self_bill.h"

namespace kaunter {

struct SelfBillRemark {
  Caption field;
  Caption what;
};

// In the order of the screen. `comp_code` is the company in whose name it goes out.
std::vector<SelfBillRemark> CheckSelfBill(Connection& main, const DocumentCheck& check,
                                          const SelfBill& bill, const std::string& comp_code);

}  // namespace kaunter
