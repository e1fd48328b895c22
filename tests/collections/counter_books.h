// A second model of the books behind the payment counter, for the test of random histories: a
// customer's loans with payments, charges, cheques and receipt numbers as they should stand.
// Amounts in whole sen. The replay of the payments is that of tests/loans/rebuild_model.h. Nothing
// is shared with src/ but how an amount is shown.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "core/formats.h"
#include "tests/loans/random_loans.h"

namespace kaunter::counter {

using model::Day;
using model::Sen;

inline std::string Iso(const Day& day) {
  return fmt::format("{:04}-{:02}-{:02}", day.year, day.month, day.day);
}
inline std::string Dashed(const Day& day) {
  return fmt::format("{:02}-{:02}-{:04}", day.day, day.month, day.year);
}
inline bool IsSunday(const Day& day) {
  using std::chrono::month, std::chrono::sys_days, std::chrono::weekday, std::chrono::year;
  return weekday(sys_days(year(day.year) / day.month / day.day)) == std::chrono::Sunday;
}
inline std::string Shown(Sen sen) {
  return Format(Money::FromTenThousandths(sen * 100), "#,##0.00");
}

struct Paid : model::Payment {
  int row = 0;
  Sen pay = 0;
  Sen topup = 0;
  Sen commission = 0;
  std::string cheque, bank = "CASH", collect = "CASH", group, receipt;
  Day last_due{}, next_due{};
  Sen payable = 0, interest_open = 0, capital_open = 0;
  bool changed = false;

  // What was entered, where no rebuild writes.
  std::string Entry() const {
    return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", id, row, Iso(date), pay,
                       instalment, extra, late, charge, discount, collector, calculated, top,
                       top_term, topup, receipt, cheque) +
           fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|", bank, collect, group, payable, interest_open,
                       capital_open, Iso(last_due), Iso(next_due), commission);
  }
};

struct Charge {
  std::string id;
  Day date{};
  Sen amount = 0, original = 0;
  std::string type;
};

struct Cheque {
  std::string no, pay_id;
  Sen amount = 0;
  Day date{};
};

// What a deleted payment takes off the row that it was entered on; no rebuild puts it back.
struct Reversed {
  Sen interest = 0, capital = 0, collector = 0, late = 0;
};

struct Loan {
  std::string id, type = "MONTH", group = "PINJAMAN SEMASA";
  Day lent{};
  Sen deposit = 0, drawn = 0, topup = 0;
  model::StoredLoan ledger;
  std::vector<Paid> paid;
  std::vector<Charge> charges;
  std::vector<Cheque> cheques;
  int next = 1;          // serial of the next payment
  bool counted = false;  // its counter has a row
  Sen charged = 0, credited = 0;
  std::map<int, Reversed> reversed;

  bool flexi() const { return ledger.scheme != "0"; }
  // Due so many instalments after another day.
  Day Step(const Day& due, int count) const {
    if (type == "MONTH") return model::MonthlyDue(due, count);
    return model::PlusDays(due, count * (type == "WEEK" ? 7 : type == "DAILY" ? 1 : 14));
  }
  Paid* Find(const std::string& pay_id) {
    const auto found =
        std::find_if(paid.begin(), paid.end(), [&](const Paid& one) { return one.id == pay_id; });
    return found == paid.end() ? nullptr : &*found;
  }
  Cheque* FindCheque(const std::string& no) {
    const auto found = std::find_if(cheques.begin(), cheques.end(),
                                    [&](const Cheque& one) { return one.no == no; });
    return found == cheques.end() ? nullptr : &*found;
  }
  // Nothing open counts as the first row.
  const model::Row& FirstOpen() const {
    for (const model::Row& row : ledger.rows) {
      if (row.payable != row.paid) return row;
    }
    return ledger.rows.front();
  }
  Sen Open() const {
    Sen open = 0;
    for (const model::Row& row : ledger.rows) {
      open += row.capital + row.interest - row.capital_paid - row.interest_paid;
    }
    return open;
  }
  void Rebuild() {
    std::sort(paid.begin(), paid.end(), [](const Paid& a, const Paid& b) { return a.id < b.id; });
    ledger.payments.assign(paid.begin(), paid.end());
    model::Replay(ledger).Run();
    for (std::size_t i = 0; i < paid.size(); ++i) {
      static_cast<model::Payment&>(paid[i]) = ledger.payments[i];
    }
    std::erase_if(charges, [](const Charge& one) { return one.type == "Payment"; });
    for (const model::Payment& one : ledger.late_paid) {
      charges.push_back({one.id, one.date, -one.late, 0, "Payment"});
    }
    charged = credited = 0;
    for (const Charge& one : charges) {
      if (one.type == "Batch Loan Interest") continue;
      (one.amount > 0 ? charged : credited) += one.amount;
    }
    if (group == "PINJAMAN SEMASA" || group == "PINJAMAN SELESAI") {
      group = ledger.balance == 0 ? "PINJAMAN SELESAI" : "PINJAMAN SEMASA";
    }
  }
  // Rows that extra capital has cut and that no derivation brings back: each rebuild cuts anew.
  bool CutAnew() const {
    if (ledger.total_extra == 0) return false;
    if (ledger.scheme != "1") return true;
    if (ledger.special) return ledger.backup.size() < ledger.rows.size();
    return ledger.grace_row_cut ||
           std::any_of(ledger.rows.begin(), ledger.rows.end(),
                       [](const model::Row& row) { return row.interest != 0 && row.capital == 0; });
  }
};

struct Company {
  std::vector<Loan> loans;
  enum class Receipts { monthly, serial, dated } receipts = Receipts::monthly;
  std::map<std::string, int> counters;
  bool check_holiday = false;
  Day holiday{};
  bool may_edit = true, may_discount = true, special_user = false;

  bool ReceiptTaken(const std::string& number, const std::string& but) const {
    for (const Loan& loan : loans) {
      for (const Paid& one : loan.paid) {
        if (one.id != but && one.receipt == number) return true;
      }
    }
    return false;
  }
  std::string NextReceipt(const Day& day) {
    std::string prefix = "R", owner = "HQ";
    if (receipts == Receipts::monthly) prefix = fmt::format("{:04}{:02}-", day.year, day.month);
    if (receipts == Receipts::dated) {
      prefix = fmt::format("{:02}{:02}{:02}-", day.year % 100, day.month, day.day);
      owner = "ORHQ";
    }
    std::string number;
    do {
      number = fmt::format("{}{:04}", prefix, ++counters[owner + "#" + prefix]);
    } while (ReceiptTaken(number, ""));
    return number;
  }
};

}  // namespace kaunter::counter
