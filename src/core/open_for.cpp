#include "core/open_for.h"

#include <string>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             std::string_view loan_id) {
  const std::string own_tag = session.CallerTag;
  const std::string own_loan = session.HandOverLoanID;
  const std::string own_title = session.MsgTitle;
  session.CallerTag = command;
  session.HandOverLoanID = loan_id;
  desk.Show(screen);
  session.CallerTag = own_tag;
  session.HandOverLoanID = own_loan;
  session.MsgTitle = own_title;
}

}  // namespace kaunter
