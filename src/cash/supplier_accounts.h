// Documents of suppliers on the payables side of the accounting link.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

class Screen;
class Session;

struct SupplierDocument {
  std::string TransID;
  std::string TransType;  // "Invoice", "Payment" or "Credit Note"
  std::string TrxDate;    // dd-mm-yyyy
  std::string SuppID;
  std::string SuppName;
  std::string TransDesc;
  Money TransAmt;  // as it is kept: what lowers the debt is negative
};

// "发票" for "Invoice".
Caption TypeCaption(std::string_view type);
// Hands the document on, what lowers the debt as a positive amount there; where that fails, it is
// told under "Alert !!". Nothing while the link is off.
void LinkSupplierDocument(Session& session, Screen& screen, const SupplierDocument& document);
// Nothing is taken back out of the accounts: while the link is on, tells that `what` is still
// there.
void TellLeftInAccounts(Session& session, Screen& screen, const Caption& what);

}  // namespace kaunter
