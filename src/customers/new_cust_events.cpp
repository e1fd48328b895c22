// What happens when a box of the customer screen is left.
#include <fmt/format.h>

#include "core/identity.h"
#include "core/values.h"
#include "customers/customer_checks.h"
#include "customers/customer_store.h"
#include "customers/new_cust_frm.h"

namespace kaunter {

void NewCustFrm::LeaveNewIc(TextBox& ic, TextBox& birth) {
  ic.SetText(MaskNewIc(Trim(ic.text())));
  ic.SetMark(false);
  if (ic.empty()) return;
  if (const auto date = BirthDateOfIc(ic.text())) {
    birth.SetText(*date);
  } else {
    Refuse(ic, CheckNewIc(ic.name(), ic.text())->text);
  }
}

// Only informs: the same person may be entered again, and the save goes on.
void NewCustFrm::CheckDuplicate(TextBox& box, const std::string& column, const Caption& kind) {
  if (Trim(box.text()).empty()) return;
  const auto holder = FindOtherHolder(main(), column, box.text(), CustID.text(), CompCode.text());
  if (!holder) return;
  Tell(MessageKind::information, {fmt::format("{} {} is belong to {} customer {}", kind.english,
                                              box.text(), holder->company, holder->name),
                                  fmt::format("{} {} 是属于 {} 顾客 {}", kind.chinese, box.text(),
                                              holder->company, holder->name)});
}

void NewCustFrm::LeaveMoney(TextBox& box) {
  box.SetText(Trim(box.text()));
  const auto amount = Money::TryText(box.text());
  if (amount) box.SetText(ShowMoney(Value(*amount)));
  if (amount || box.empty()) box.SetMark(false);
}

void NewCustFrm::LeaveArea() {
  const bool company = AreaCode.text() == "COMPANY";
  CompNo.tip = company ? Caption("Needed for a company", "公司必填") : Caption();
}

}  // namespace kaunter
