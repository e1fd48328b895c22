#include "collections/open_record.h"

#include <utility>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

bool Open(Session& session, Desk& desk, const char* screen, const char* mode,
          const std::string& cust_id, const std::string& loan_id) {
  if (!desk.CanShow(screen)) return false;
  const std::string own_tag = std::exchange(session.CallerTag, mode);
  const std::string own_title = std::exchange(session.MsgTitle, mode);
  session.HandOverCustID = cust_id;
  session.HandOverLoanID = loan_id;
  desk.Show(screen);
  session.HandOverCustID.clear();
  session.HandOverLoanID.clear();
  session.CallerTag = own_tag;
  session.MsgTitle = own_title;
  return true;
}

}  // namespace

bool OpenCustomer(Session& session, Desk& desk, const std::string& cust_id) {
  return !cust_id.empty() &&
         Open(session, desk, "NewCustFrm", "Edit Customer", cust_id, std::string());
}

bool OpenLoan(Session& session, Desk& desk, const std::string& loan_id) {
  return !loan_id.empty() && Open(session, desk, "NewLoanFrm", "Edit Loan", std::string(), loan_id);
}

}  // namespace kaunter
