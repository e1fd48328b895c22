#include "core/open_for.h"

#include <utility>

#include "core/session.h"
#include "screen/desk.h"

namespace kaunter {

void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             const HandOver& keys) {
  const std::string own_tag = std::exchange(session.CallerTag, command);
  const std::string own_customer = std::exchange(session.HandOverCustID, keys.cust_id);
  const std::string own_loan = std::exchange(session.HandOverLoanID, keys.loan_id);
  const std::string own_extra = std::exchange(session.PickerExtra, keys.extra);
  const std::string own_title = session.MsgTitle;
  desk.Show(screen);
  session.CallerTag = own_tag;
  session.HandOverCustID = own_customer;
  session.HandOverLoanID = own_loan;
  session.PickerExtra = own_extra;
  session.MsgTitle = own_title;
}

void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             std::string_view loan_id) {
  OpenFor(session, desk, screen, command, HandOver{{}, std::string(loan_id), {}});
}

void OpenReport(Session& session, Desk& desk, std::string_view title, std::string_view file,
                std::string_view loan_id) {
  const std::string own_title = std::exchange(session.MsgTitle, title);
  const std::string own_file = std::exchange(session.ReportFile, file);
  const std::string own_loan = std::exchange(session.HandOverLoanID, loan_id);
  desk.Show("ReportFrm");
  session.MsgTitle = own_title;
  session.ReportFile = own_file;
  session.HandOverLoanID = own_loan;
}

namespace {

// Messages of the other screen stand under what is done there.
bool OpenToEdit(Session& session, Desk& desk, const char* screen, const char* mode,
                const HandOver& keys) {
  if (!desk.CanShow(screen)) return false;
  const std::string own_title = std::exchange(session.MsgTitle, mode);
  OpenFor(session, desk, screen, mode, keys);
  session.MsgTitle = own_title;
  return true;
}

}  // namespace

bool OpenCustomer(Session& session, Desk& desk, const std::string& cust_id) {
  return !cust_id.empty() &&
         OpenToEdit(session, desk, "NewCustFrm", "Edit Customer", {cust_id, {}, {}});
}

bool OpenLoan(Session& session, Desk& desk, const std::string& loan_id) {
  return !loan_id.empty() &&
         OpenToEdit(session, desk, "NewLoanFrm", "Edit Loan", {{}, loan_id, {}});
}

}  // namespace kaunter
