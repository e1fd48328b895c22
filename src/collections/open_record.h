// Opening a customer or a loan from a list: the other screen is told what to show, and the session
// is afterwards as the list's own screen needs it.
#pragma once

#include <string>

namespace kaunter {

class Session;
class Desk;

// Both give false when the key is empty or the screen is not there.
bool OpenCustomer(Session& session, Desk& desk, const std::string& cust_id);
bool OpenLoan(Session& session, Desk& desk, const std::string& loan_id);

}  // namespace kaunter
