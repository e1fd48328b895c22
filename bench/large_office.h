// A large office in a folder of its own, for measuring: customers of three companies and their
// loans, the same ones at every run.
#pragma once

#include <filesystem>
#include <string>

#include "bench/strict_desk.h"
#include "core/session.h"

namespace kaunter {

class LargeOffice {
 public:
  // Two loans a customer, roughly; a third of the loans is settled, one in ten is of another
  // company than its customer. Customers are C000001 and on, loans C000001-001 and on.
  // With `schedule_rows` each loan has that many, a month apart, the last but one due before the
  // office's today; one open loan in fifty is behind with what is due. The loans of five hundred
  // customers have no stamp number.
  LargeOffice(int customers, int loans, int schedule_rows = 0);
  ~LargeOffice();
  LargeOffice(const LargeOffice&) = delete;
  LargeOffice& operator=(const LargeOffice&) = delete;

  std::string file() const { return (folder_ / "office.db").string(); }

  Session session;  // connected; a user of level 4
  StrictDesk desk;

 private:
  void AddCustomers(int count);
  void AddLoans(int customers, int count);
  void AddSchedules(int rows);

  std::filesystem::path folder_;
};

}  // namespace kaunter
