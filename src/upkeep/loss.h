// What an office loses when an earlier state takes its place.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct CompanyLoss {
  std::string company;
  std::int64_t receipts = 0;            // saved or changed since
  Money amount;                         // of these
  std::optional<DateTime> first, last;  // when the first and the last of them were entered
  bool operator==(const CompanyLoss&) const = default;
};

struct Loss {
  std::vector<CompanyLoss> companies;  // those that lose a receipt
  std::int64_t loans = 0;              // new since, or of another amount
  std::int64_t customers = 0;
  std::int64_t deleted = 0;  // receipts that were deleted since, and come back
  std::int64_t Receipts() const;
  bool operator==(const Loss&) const = default;
};

// By key, row for row: a clock that was wrong hides nothing. False of `go_on` ends it, with nothing
// given. Throws SqlError.
std::optional<Loss> WhatIsLost(Connection& office, Connection& earlier,
                               const std::function<bool(std::int64_t done)>& go_on);

// One company at least is in both: two offices that have none in common are two offices.
bool AreOneOffice(Connection& office, Connection& earlier);

}  // namespace kaunter
