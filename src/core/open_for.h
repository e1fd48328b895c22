// Opening a screen for a record: the hand-over of its command and keys.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Session;
class Desk;

struct HandOver {
  std::string cust_id;
  std::string loan_id;
  std::string extra;  // PickerExtra: a payment of the loan, the supplier of a document
};

// Shows the screen with `command` in CallerTag and the keys in their hand-over fields, and returns
// when it has been closed; the caller's own command, keys and message title are back then.
void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             const HandOver& keys);
// The same for a loan.
void OpenFor(Session& session, Desk& desk, std::string_view screen, std::string_view command,
             std::string_view loan_id);

// The criteria of a report under its title; those of one loan where `loan_id` names it.
void OpenReport(Session& session, Desk& desk, std::string_view title, std::string_view file,
                std::string_view loan_id = {});

// A customer or a loan of a list, to be looked at and changed under the screen's own title. False
// when the key is empty or the screen is not there.
bool OpenCustomer(Session& session, Desk& desk, const std::string& cust_id);
bool OpenLoan(Session& session, Desk& desk, const std::string& loan_id);

}  // namespace kaunter
