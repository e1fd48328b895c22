// The way from a customer, a loan or a payment to the report on a suspicious transaction.
#pragma once

#include <string>

namespace kaunter {

class Session;
class Desk;

struct Suspicion {
  std::string cust_id;
  std::string comp_code;
  std::string loan_id;
  std::string pay_id;
};

// Opens AMLAFrm for it and returns when it has been closed: the number of the report that was
// recorded, "" for none.
std::string ReportSuspicion(Session& session, Desk& desk, const Suspicion& about);

// What AMLAFrm finds when it opens; nothing is left behind.
Suspicion TakeSuspicion(Session& session);
// What it leaves when it closes.
void GiveReportNumber(Session& session, const std::string& number);

}  // namespace kaunter
