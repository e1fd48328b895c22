// Random loans with random payment histories: on time, in part, over-paid, back-dated, extra
// capital, late interest, top-ups, charges alone. A few are as large as a loan may be, have two
// rows due on one day, or a row that was moved by hand before another.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "platform/money.h"
#include "tests/loans/rebuild_model.h"

namespace kaunter {

inline std::uint64_t FromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* given = std::getenv(name);
  return given != nullptr ? std::strtoull(given, nullptr, 10) : otherwise;
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return std::uniform_int_distribution<std::int64_t>(least, most)(engine_);
  }
  bool OneIn(int n) { return Between(1, n) == 1; }

 private:
  std::mt19937_64 engine_;
};

inline std::string Text(model::Sen sen) { return Money::FromTenThousandths(sen * 100).ToText(); }
inline std::string Text(const model::Day& day) {
  return fmt::format("'{:04}-{:02}-{:02}'", day.year, day.month, day.day);
}

// A row as generation leaves it, or nearly: capital and interest drawn, a payable of their sum.
inline model::Row DrawRow(Random& random, const model::StoredLoan& loan, int id,
                          const model::Day& due, bool grace) {
  model::Row row;
  row.id = id;
  row.due = due;
  row.interest = random.OneIn(6) ? 0 : random.Between(1, loan.amount / 20 + 1);
  row.capital = grace ? 0 : random.Between(1, loan.amount / 6 + 1);
  row.payable = row.interest + row.capital;
  return row;
}

inline model::Payment DrawPayment(Random& random, const model::StoredLoan& loan,
                                  std::string_view id, const model::Day& first, int serial) {
  model::Payment payment;
  payment.id = fmt::format("{}-{:03}", id, serial);
  // In any order: back-dated ones are told by PayID, not by date.
  payment.date = model::PlusDays(first, static_cast<int>(random.Between(0, 31 * 14)));
  const model::Row& row = loan.rows[static_cast<std::size_t>(
      random.Between(0, static_cast<std::int64_t>(loan.rows.size()) - 1))];
  switch (random.Between(0, 7)) {
    case 0:
      payment.instalment = row.interest;  // the interest to the sen
      break;
    case 1:
    case 2:
      payment.instalment = row.payable;  // a whole row to the sen
      break;
    case 3:
      payment.instalment = 0;  // late interest or charges alone
      break;
    case 4:
      payment.instalment = random.Between(0, loan.amount * 2);  // beyond the end
      break;
    default:
      payment.instalment = random.Between(1, loan.amount / 5 + 1);
  }
  payment.late = random.OneIn(3) ? random.Between(-200, 5000) : 0;
  payment.charge = random.OneIn(5) ? random.Between(0, 3000) : 0;
  payment.collector = random.OneIn(5) ? random.Between(0, 3000) : 0;
  payment.discount = random.OneIn(5) ? random.Between(0, 3000) : 0;
  payment.calculated = random.OneIn(5) ? random.Between(0, 3000) : 0;
  if (random.OneIn(loan.scheme == "0" ? 40 : 3)) {
    payment.extra = random.Between(1, loan.amount / 3 + 1);
  }
  // A top-up needs both; one of them alone is none.
  if (random.OneIn(10)) payment.top = random.Between(1, loan.amount / 5 + 1);
  if (random.OneIn(payment.top != 0 ? 2 : 20)) {
    payment.top_term = static_cast<int>(random.Between(1, 3));
  }
  return payment;
}

struct LoanSizes {
  int rows = 14;
  int long_rows = 40;  // one loan in ten
  int payments = 12;
};

// The payments are numbered behind `id`.
inline model::StoredLoan DrawLoan(Random& random, std::string_view id, LoanSizes most = {}) {
  model::StoredLoan loan;
  const char* const schemes[] = {"0", "0", "1", "1", "1", "2"};
  loan.scheme = schemes[random.Between(0, 5)];
  loan.special = random.OneIn(5);
  loan.amount = random.OneIn(2) ? random.Between(1, 500) * 10000 : random.Between(100, 5000000);
  if (random.OneIn(12)) loan.amount = 9'999'999'999 - random.Between(0, 99);
  loan.rate4 = random.OneIn(3) ? random.Between(0, 480000) : 5000 * random.Between(0, 60);
  const model::Day first = {static_cast<int>(random.OneIn(10) ? 2100 : random.Between(2000, 2040)),
                            static_cast<int>(random.Between(1, 12)),
                            static_cast<int>(random.Between(1, 28))};
  const int count =
      static_cast<int>(random.Between(1, random.OneIn(10) ? most.long_rows : most.rows));
  const int grace = random.OneIn(4) ? static_cast<int>(random.Between(0, count - 1)) : 0;
  // At times below the interest, so that the balance grows.
  loan.instalment = random.OneIn(6) ? random.Between(1, loan.amount / 100 + 1)
                                    : loan.amount / count + random.Between(0, loan.amount / 50 + 1);
  for (int i = 0; i < count; ++i) {
    loan.rows.push_back(DrawRow(random, loan, i + 1, model::MonthlyDue(first, i), i < grace));
  }
  if (count > 1 && random.OneIn(10)) {
    // Rows are told by due date; on one day, by number.
    const auto moved = static_cast<std::size_t>(random.Between(1, count - 1));
    if (random.OneIn(2)) {
      loan.rows[moved].due = loan.rows[moved - 1].due;
    } else {
      std::swap(loan.rows[moved].id, loan.rows[moved - 1].id);
    }
  }
  if (loan.special && !random.OneIn(4)) {
    loan.backup = loan.rows;
    for (model::Row& row : loan.backup) {
      row.interest = random.Between(0, loan.amount / 30 + 1);
      row.payable = row.interest + row.capital;
    }
  }
  // Serials around 1000, whose text order is not the order in which they came, and none at all.
  const int start = random.OneIn(8) ? 995 : 1;
  const int payments = static_cast<int>(random.Between(0, most.payments));
  for (int i = 0; i < payments; ++i) {
    loan.payments.push_back(DrawPayment(random, loan, id, first, start + i));
  }
  return loan;
}

}  // namespace kaunter
