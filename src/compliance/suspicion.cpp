#include "compliance/suspicion.h"

#include <utility>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

// The company travels as the command, the payment as the extra; the number comes back as a picker's
// choice does. Where the screen was not opened the customer still stands there, and CallerTag is no
// answer.
std::string ReportSuspicion(Session& session, Desk& desk, const Suspicion& about) {
  const std::string own_tag = std::exchange(session.CallerTag, about.comp_code);
  const std::string own_title = std::exchange(
      session.MsgTitle, session.In({"Suspicious Transaction Report (STR)", "可疑交易报告"}));
  session.HandOverCustID = about.cust_id;
  session.HandOverLoanID = about.loan_id;
  session.PickerExtra = about.pay_id;
  desk.Show("AMLAFrm");
  const bool opened = session.HandOverCustID.empty();
  session.HandOverCustID.clear();
  session.HandOverLoanID.clear();
  session.PickerExtra.clear();
  session.MsgTitle = own_title;
  const std::string number = std::exchange(session.CallerTag, own_tag);
  return opened ? number : std::string();
}

Suspicion TakeSuspicion(Session& session) {
  Suspicion about;
  about.cust_id = std::exchange(session.HandOverCustID, {});
  about.comp_code = std::exchange(session.CallerTag, {});
  about.loan_id = std::exchange(session.HandOverLoanID, {});
  about.pay_id = std::exchange(session.PickerExtra, {});
  return about;
}

void GiveReportNumber(Session& session, const std::string& number) { session.CallerTag = number; }

}  // namespace kaunter
