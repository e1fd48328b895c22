// A second model of the books behind the payment counter, for the test of random histories: a
// customer's loans with payments, charges, cheques and receipt numbers as they should stand.
// Amounts in whole sen. The replay of the payments is that of tests/loans/rebuild_model.h. Nothing
// is shared with src/.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "tests/loans/rebuild_model.h"

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
  static constexpr int kMonths[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
  const int y = day.month < 3 ? day.year - 1 : day.year;
  return (y + y / 4 - y / 100 + y / 400 + kMonths[day.month - 1] + day.day) % 7 == 0;
}

// "1,234.50"
inline std::string Shown(Sen sen) {
  std::string whole = std::to_string((sen < 0 ? -sen : sen) / 100);
  for (int at = static_cast<int>(whole.size()) - 3; at > 0; at -= 3) {
    whole.insert(static_cast<std::size_t>(at), ",");
  }
  return fmt::format("{}{}.{:02}", sen < 0 ? "-" : "", whole, (sen < 0 ? -sen : sen) % 100);
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

  // But for what each rebuild writes.
  bool SameEntry(const Paid& other) const {
    const auto entry = [](const Paid& p) {
      return std::tie(p.id, p.date.year, p.date.month, p.date.day, p.row, p.pay, p.instalment,
                      p.extra, p.late, p.charge, p.collector, p.discount, p.calculated, p.top,
                      p.top_term, p.topup, p.cheque, p.bank, p.collect, p.group, p.receipt);
    };
    return entry(*this) == entry(other);
  }
};

struct Charge {
  std::string id;
  Day date{};
  Sen amount = 0, original = 0;
  std::string type;
};

struct Cheque {
  int seq = 0;
  std::string no, bank, pay_id;
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
  Paid* Find(const std::string& pay_id) {
    for (Paid& one : paid) {
      if (one.id == pay_id) return &one;
    }
    return nullptr;
  }
  Cheque* FindCheque(const std::string& no) {
    for (Cheque& one : cheques) {
      if (one.no == no) return &one;
    }
    return nullptr;
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
  void SumCharges() {
    charged = credited = 0;
    for (const Charge& one : charges) {
      if (one.type == "Batch Loan Interest") continue;
      (one.amount > 0 ? charged : credited) += one.amount;
    }
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
    SumCharges();
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
