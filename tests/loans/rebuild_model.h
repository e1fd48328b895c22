// A slow, plain second model of the rebuild, for the property test: rows in memory, amounts in
// whole sen, nothing shared with src/.
//
// All amounts of a rebuild have two decimals, so whole sen are exact. The interest of a row is a
// fraction; only where it lies on a tie does the model go the way of a double too.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/loans/schedule_model.h"

namespace kaunter::model {

using Sen = std::int64_t;

struct Row {
  int id = 0;
  Day due{};
  Sen payable = 0;
  Sen capital = 0;
  Sen interest = 0;
  Sen paid = 0;
  Sen capital_paid = 0;
  Sen interest_paid = 0;
  Sen balance = 0;
  Sen extra = 0;

  bool open() const { return paid < payable; }
  bool operator==(const Row&) const = default;
};

struct Payment {
  std::string id;
  Day date{};
  Sen instalment = 0;
  Sen extra = 0;
  Sen late = 0;  // IntAmt
  Sen charge = 0;
  Sen collector = 0;
  Sen discount = 0;
  Sen calculated = 0;  // Memo5
  Sen top = 0;
  int top_term = 0;
  // What the rebuild writes.
  Sen old_balance = 0;
  Sen new_balance = 0;
  Sen interest_part = 0;
  Sen capital_part = 0;
};

struct StoredLoan {
  std::string scheme = "0";
  bool special = false;
  Sen amount = 0;
  std::int64_t rate4 = 0;  // InsRate in ten-thousandths of a percent
  Sen instalment = 0;
  std::vector<Row> rows;    // in the order of their due dates
  std::vector<Row> backup;  // of a special schedule
  std::vector<Payment> payments;
  // What the rebuild writes.
  Sen balance = 0;
  Day next_due{1999, 1, 1};  // stays as it was when every row is paid
  Sen total_paid = 0;
  Sen total_charge = 0;
  Sen total_discount = 0;
  Sen total_extra = 0;
  std::vector<Payment> late_paid;  // one negative charge each
  bool grace_row_cut = false;      // an interest-only row has become a repaying one
};

inline int HouseMonthLength(const Day& day) {
  return day.month == 2 && day.year % 4 == 0 ? 29 : TrueMonthLength(day.month, day.year);
}

inline bool NotBefore(const Day& a, const Day& b) {
  return a.year != b.year     ? a.year > b.year
         : a.month != b.month ? a.month > b.month
                              : a.day >= b.day;
}

inline Sen RowInterest(const StoredLoan& loan, const Row& row, Sen balance) {
  if (balance <= 0) return 0;
  const std::int64_t rate2 = (loan.rate4 + 50) / 100;
  const Int128 numerator = Int128{HouseMonthLength(row.due)} * rate2 * balance;
  const Int128 denominator = Int128{100} * 100 * 365;
  if (2 * (numerator % denominator) != denominator) return HalfEven({numerator, denominator});
  const double ringgit =
      HouseMonthLength(row.due) *
      ((static_cast<double>(rate2) / 100 * (static_cast<double>(balance) / 100 / 100)) / 365);
  return static_cast<Sen>(std::nearbyint(ringgit * 100));
}

class Replay {
 public:
  explicit Replay(StoredLoan& loan) : loan_(loan) {}

  void Run() {
    Sen opening = loan_.amount;
    if (loan_.scheme == "0") {
      opening = 0;
      for (const Row& row : loan_.rows) opening += row.payable;
    }
    balance_ = told_ = opening;
    for (Row& row : loan_.rows) {
      row.paid = row.capital_paid = row.interest_paid = row.extra = 0;
      row.balance = opening;
    }
    loan_.late_paid.clear();
    loan_.total_paid = loan_.total_charge = loan_.total_discount = loan_.total_extra = 0;
    if (loan_.scheme == "1" && loan_.special) TakeBackup();
    if (loan_.scheme == "1" && !loan_.special) Derive(opening);
    std::vector<Payment*> in_order;
    for (Payment& payment : loan_.payments) in_order.push_back(&payment);
    std::sort(in_order.begin(), in_order.end(),
              [](const Payment* a, const Payment* b) { return a->id < b->id; });
    for (Payment* payment : in_order) Pay(*payment);
    loan_.balance = told_;
    for (auto row = loan_.rows.rbegin(); row != loan_.rows.rend(); ++row) {
      if (row->open()) loan_.next_due = row->due;
    }
    for (Row& row : loan_.rows) row.payable = row.capital + row.interest;
  }

 private:
  void TakeBackup() {
    for (Row& row : loan_.rows) {
      for (const Row& kept : loan_.backup) {
        if (kept.id != row.id) continue;
        row.payable = kept.payable;
        row.capital = kept.capital;
        row.interest = kept.interest;
        row.balance = kept.balance;
      }
    }
  }

  void Derive(Sen left) {
    for (Row& row : loan_.rows) {
      if (row.interest != 0 && row.capital == 0) continue;
      row.interest = RowInterest(loan_, row, left);
      row.capital = &row == &loan_.rows.back() ? left : loan_.instalment - row.interest;
      row.payable = row.capital + row.interest;
      left += row.interest - loan_.instalment;
    }
  }

  void Pay(Payment& payment) {
    payment.old_balance = told_;
    payment.interest_part = payment.capital_part = 0;
    const bool topped = payment.top != 0 && payment.top_term != 0;
    if (topped) told_ += payment.top * payment.top_term - payment.instalment;
    if (!topped && loan_.scheme == "0") told_ -= payment.instalment;
    loan_.total_paid += payment.instalment;
    loan_.total_charge += payment.charge;
    loan_.total_discount += payment.discount;
    loan_.total_extra += payment.extra;
    Sen walking = payment.instalment;
    Sen splitting = payment.instalment;
    for (Row& row : loan_.rows) {
      if (walking <= 0) break;
      if (row.open()) Fill(row, payment, walking, splitting);
    }
    if (payment.extra > 0) CutAhead(payment);
    if (payment.late > 0) loan_.late_paid.push_back(payment);
    payment.new_balance = told_;
  }

  void Fill(Row& row, Payment& payment, Sen& walking, Sen& splitting) {
    const Row before = row;
    const Sen taken = std::min(walking, row.payable - row.paid);
    walking -= taken;
    row.paid += taken;
    row.interest_paid = std::min(row.paid, row.interest);
    row.capital_paid = row.paid - row.interest_paid;
    const Sen interest = std::min(splitting, before.interest - before.interest_paid);
    payment.interest_part += interest;
    splitting -= interest;
    if (splitting > 0) {
      const Sen capital = std::min(splitting, before.capital - before.capital_paid);
      payment.capital_part += capital;
      splitting -= capital;
    }
    if (loan_.scheme == "0") {
      balance_ -= taken;
    } else {
      balance_ -= row.capital_paid - before.capital_paid;
      told_ = balance_;
    }
    row.balance = balance_;
    for (Row& other : loan_.rows) {
      if (other.id > row.id) other.balance = balance_;
    }
  }

  void CutAhead(Payment& payment) {
    payment.capital_part += payment.extra;
    balance_ -= payment.extra;
    told_ = balance_;
    std::vector<Row*> open;
    for (Row& row : loan_.rows) {
      if (row.open()) open.push_back(&row);
    }
    if (open.empty()) return;
    Sen left = balance_ + open.front()->capital_paid;
    Sen capital = open.front()->capital;
    Sen extra = payment.extra;
    for (Row* row : open) {
      if (NotBefore(payment.date, row->due) || row->paid > 0) {
        left -= row->capital;
        continue;
      }
      if (row->interest != 0 && row->capital == 0) loan_.grace_row_cut = true;
      row->interest = RowInterest(loan_, *row, left);
      capital = left > capital ? loan_.instalment - row->interest : left;
      left = std::max<Sen>(left - loan_.instalment + row->interest, 0);
      row->capital = capital;
      row->payable = capital + row->interest;
      row->balance = balance_;
      row->extra += extra;
      extra = 0;
      // What looks like an interest-only row now is left alone by the next derivation.
      if (row->interest != 0 && row->capital == 0) loan_.grace_row_cut = true;
    }
  }

  StoredLoan& loan_;
  Sen balance_ = 0;
  Sen told_ = 0;
};

}  // namespace kaunter::model
