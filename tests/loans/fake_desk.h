// A desk nobody sits at that keeps the reports started on it.
#pragma once

#include <vector>

#include "screen/report_job.h"
#include "tests/screen/silent_desk.h"

namespace kaunter {

class FakeDesk : public SilentDesk {
 public:
  void Print(const ReportJob& job) override { printed.push_back(job); }

  std::vector<ReportJob> printed;
};

}  // namespace kaunter
