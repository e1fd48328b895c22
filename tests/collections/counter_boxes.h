// A second model of the payment screen, for the test of random histories: its boxes with what each
// does when it is left, the checks of a save in their order, and what a save and a delete do to the
// books (counter_books.h). Typed amounts in ten-thousandths of a ringgit. Nothing is shared with
// src/.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "tests/collections/counter_books.h"

namespace kaunter::counter {

// What a box of an amount holds: as it is shown, and in ten-thousandths.
struct Amount {
  std::string text = "0.00";
  std::int64_t units = 0;
  bool number = true;  // or blank

  static Amount Of(Sen sen) { return {Shown(sen), sen * 100}; }
  // As a column keeps it: half a sen away from zero. Letters count as nothing.
  Sen sen() const {
    if (!number) return 0;
    return (units < 0 ? units - 50 : units + 50) / 100;
  }
};

enum Box {
  kTotal,
  kPay,
  kInstal,
  kExtra,
  kInterest,
  kRefund,
  kCollector,
  kDiscount,
  kMemo5,
  kMultiple,
  kCommission,
  kTopAmt,
  kTopTerm,
  kTopUp,
  kBoxes
};

struct Rule {
  const char* invalid;
  Sen Paid::*kept_in = nullptr;
  bool may_be_negative = false;
};
inline constexpr std::array<Rule, kBoxes> kRules = {{
    {"Invalid Total Payment"},
    {"Invalid Amount, Please check", &Paid::pay},
    {"Invalid Amount", &Paid::instalment},
    {"Invalid Amount", &Paid::extra},
    {"Invalid Interest Payment, Please check", &Paid::late, true},
    {"Invalid Refund Deposit Amount, Please check", &Paid::charge},
    {"Invalid Collector Fee, Please check", &Paid::collector},
    {"Invalid Discount, Please check", &Paid::discount},
    {"Invalid Late Interest, Please check", &Paid::calculated},
    {"Invalid data, Please check"},
    {"Invalid Salesman Comm, Please check", &Paid::commission},
    {"Invalid Term", &Paid::top},
    {"Invalid Term"},
    {"Invalid Topup Loan Amount, Please check!", &Paid::topup},
}};

// How the desk answers while it is pressed.
struct Answers {
  bool holiday = true, confirm = true, manager = false, credit = true, extra = true;
};

// A loan with a payment as it is typed.
struct Foreseen {
  std::vector<model::Row> before, after;  // the payment
  Sen new_balance = 0, last_balance = 0;
};

// The boxes of one open screen.
struct Counter {
  Company* company = nullptr;
  std::string mode;
  Loan* loan = nullptr;
  Loan seen;  // as it came on the screen
  bool enabled = false;
  std::optional<Paid> loaded;  // as it was when it came on the screen
  std::array<Amount, kBoxes> box;
  Sen old_balance = 0, new_balance = 0, outstanding = 0, drawn = 0, waived = 0;
  std::string split_total, date, checked_date, group, offered;
  std::vector<std::string> asked;      // by the last press, how each question begins
  std::optional<Day> day, waive_from;  // what the date box holds, if it is one
  bool signed_in = false;
  std::string refused_for;
  Paid entry;  // but for the amounts, what is stored

  bool is_new() const { return mode == "New Payment"; }
  bool is_edit() const { return mode == "Edit Payment"; }
  bool is_delete() const { return mode == "Delete Payment"; }
  bool flexi() const { return loan->flexi(); }
  bool Locked(Box which) const {
    if (is_delete()) return true;
    if (which == kTotal) return !is_new();
    return (which == kInstal || which == kExtra) && !flexi();
  }
  std::string OwnID() const { return loaded ? loaded->id : std::string(); }

  void Start(Company& in, std::string as) {
    *this = {};
    company = &in;
    mode = std::move(as);
    box[kMultiple].text = box[kTopTerm].text = "0";
  }
  // What is told of a loan that comes on the screen.
  std::string OpenLoan(Loan& with) {
    loan = &with;
    seen = with;
    old_balance = new_balance = with.ledger.balance;
    outstanding = with.charged + with.credited;
    drawn = company->special_user ? 0 : with.drawn;
    const model::Row& row = with.FirstOpen();
    entry.row = row.id;
    entry.last_due = row.due;
    entry.payable = row.payable;
    entry.interest_open = row.interest - row.interest_paid;
    entry.capital_open = row.capital - row.capital_paid;
    entry.next_due = NextOf(row);
    enabled = old_balance > 0;
    return enabled ? "" : "Loan settled, cannot make payment";
  }
  void OpenPayment(Loan& with, const Paid& stored) {
    loan = &with;
    seen = with;
    loaded = entry = stored;
    enabled = true;
    outstanding = with.charged + with.credited;
    offered = GroupOf(stored.new_balance);
    old_balance = is_edit() ? stored.old_balance : with.ledger.balance;
    new_balance = is_edit() ? stored.new_balance : old_balance - stored.pay;
    drawn = company->special_user ? 0 : with.drawn;
    for (std::size_t i = 0; i < kBoxes; ++i) {
      if (kRules[i].kept_in != nullptr) box[i] = Amount::Of(stored.*kRules[i].kept_in);
    }
    box[kTotal] = Amount::Of(stored.pay + stored.late);
    box[kTopTerm] = {std::to_string(stored.top_term), stored.top_term * 10000};
    group = stored.group;
    date = checked_date = Dashed(stored.date);
    day = stored.date;
  }

  // --- boxes that are left; what is told

  std::string Leave(Box which, Amount typed) {
    typed.text.erase(0, std::min(typed.text.find_first_not_of(' '), typed.text.size()));
    typed.text.resize(typed.text.find_last_not_of(' ') + 1);
    if (typed.text.empty() && (which == kTotal || which == kPay)) typed.text = "0";
    box[which] = typed;
    if (!Valid(which)) return kRules[which].invalid;
    const Sen pay = box[kPay].sen(), sen = typed.sen();
    switch (which) {
      case kTotal:
        LeaveTotal();
        return "";
      case kPay:
        if (pay > old_balance && !flexi()) return "Payment cannot more than Payable Amount";
        if (pay > old_balance && pay > Limit()) return AboveLimit();
        Spread();
        return "";
      case kInterest:
        ShowTotal();
        return "";
      case kInstal:
        if (sen > pay) return "Installment cannot more than Payment Amount";
        box[kExtra] = Amount::Of(pay - sen);
        return "";
      case kExtra:
        if (sen > pay) return "Extra cannot more than Payment Amount";
        box[kInstal] = Amount::Of(pay - sen);
        return "";
      case kRefund:
        return Refund();
      case kMultiple:
        return Multiple();
      case kTopAmt:
      case kTopTerm:
        if (box[kTopAmt].text.empty() || box[kTopTerm].text.empty()) box[kTopUp] = {};
        if (std::string told = TopTerm(); !told.empty()) return told;
        ShowNewBalance();
        return "";
      default:
        if (!typed.text.empty()) box[which] = Amount::Of(sen);
        return "";
    }
  }

  std::string LeaveCheque(const std::string& no) {
    if (std::exchange(entry.cheque, no) == no) return "";
    const Cheque* found = loan->FindCheque(no);
    if (found == nullptr) return "";
    if (!found->pay_id.empty() && found->pay_id != OwnID()) {
      entry.cheque.clear();
      return "Cheque, Cannot be reuse";
    }
    box[kPay] = Amount::Of(found->amount);
    entry.bank = "MBB";
    entry.collect = "CHEQUE";
    Spread();
    return "";
  }

  std::string LeaveDate(const Answers& answers) {
    if (date.empty() || date == checked_date) return "";
    waive_from.reset();
    waived = 0;
    checked_date.clear();
    if (!day) return "Invalid Date, Please check";
    if (loan == nullptr) return "";
    if (!model::NotBefore(*day, loan->lent)) return "Payment date cannot eariler than loan date";
    const bool closed = company->check_holiday && (IsSunday(*day) || *day == company->holiday);
    if (closed && !answers.holiday) return "?";
    LookForCharges();
    checked_date = date;
    return "";
  }
  void LookForCharges() {
    waive_from = day;
    waived = 0;
    for (const Charge& one : loan->charges) {
      if (is_new() && Obsolete(one)) waived += one.amount;
    }
  }

  // The payment in words; "" while a box holds no amount.
  std::string Words() const {
    if (is_delete()) return "";
    for (int i = kPay; i < kBoxes; ++i) {
      if (!Valid(static_cast<Box>(i))) return "";
    }
    const Paid made = Typed();
    const Foreseen seen_after = Foresee(made);
    std::string words;
    const auto add = [&](Sen sen, const std::string& what) {
      if (sen != 0) words += (words.empty() ? "" : ", ") + Shown(sen) + " " + what;
    };
    add(made.late, "late interest");
    add(made.collector, "collector fee");
    add(made.charge, "other charges");
    add(-made.discount, "discount");
    add(made.extra, "extra capital");
    Sen interest = 0, capital = 0;
    std::vector<int> with_capital;
    const model::Row* last = nullptr;
    for (std::size_t i = 0; i < seen_after.after.size(); ++i) {
      const model::Row &row = seen_after.after[i], &was = seen_after.before[i];
      if (row.paid == was.paid) continue;
      last = &row;
      interest += row.interest_paid - was.interest_paid;
      capital += row.capital_paid - was.capital_paid;
      if (row.capital_paid != was.capital_paid) with_capital.push_back(row.id);
    }
    add(made.pay - made.extra - interest - capital, "to no instalment");
    add(interest, "interest");
    if (with_capital.size() == 1) {
      add(capital, fmt::format("of instalment {}", with_capital[0]));
    } else if (!with_capital.empty()) {
      add(capital,
          fmt::format("of instalments {} to {}", with_capital.front(), with_capital.back()));
    }
    if (words.empty()) return "";
    if (last != nullptr && last->open()) {
      const bool named = with_capital == std::vector<int>{last->id};
      words += fmt::format("; {} of {} stays open", Shown(last->payable - last->paid),
                           named ? "it" : fmt::format("instalment {}", last->id));
    }
    return Shown(made.pay + made.late + made.collector + made.charge - made.discount) + ": " +
           words;
  }

  // Behind each box that is left: an edit that pays the loan up, or no longer does, changes the
  // group that stands for it.
  void OfferGroup() {
    if (!is_edit() || loan == nullptr) return;
    for (int i = kPay; i < kBoxes; ++i) {
      if (!Valid(static_cast<Box>(i))) return;
    }
    const std::string now = GroupOf(flexi() ? Foresee(Typed()).new_balance : new_balance);
    if (now != offered && group == offered) group = now;
    offered = now;
  }

  // --- the press of the button: nothing when it stores, else what is told ("" for nothing)

  std::optional<std::string> Press(const Answers& answers) {
    asked.clear();
    if (!enabled) return "";
    std::string told = Check(answers);
    if (!told.empty() || !answers.confirm) return told;
    told = is_delete() ? Delete() : Store();
    if (!told.empty()) return told;
    loan->Rebuild();
    enabled = false;
    return std::nullopt;
  }

  Sen Limit() const { return loan->Open() + (loaded ? loaded->pay : 0); }

 private:
  static std::string GroupOf(Sen balance) {
    return balance > 0 ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
  }
  // As it would be stored.
  Paid Typed() const {
    Paid made = entry;
    for (std::size_t i = 0; i < kBoxes; ++i) {
      if (kRules[i].kept_in != nullptr) made.*kRules[i].kept_in = box[i].sen();
    }
    made.top_term = static_cast<int>(box[kTopTerm].units / 10000);
    if (!group.empty()) made.group = group;
    made.date = day.value_or(Day{});
    return made;
  }
  Foreseen Foresee(Paid made) const {
    if (is_new()) made.id = "~";
    const auto replayed = [&](bool with_it, bool later_ones) {
      model::StoredLoan ledger = seen.ledger;
      ledger.payments.clear();
      for (const Paid& one : seen.paid) {
        if (one.id < made.id || (later_ones && one.id > made.id)) ledger.payments.push_back(one);
      }
      if (with_it) ledger.payments.push_back(made);
      model::Replay(ledger).Run();
      return ledger;
    };
    const model::StoredLoan with_it = replayed(true, false);
    return {replayed(false, false).rows, with_it.rows, with_it.balance,
            replayed(true, true).balance};
  }
  Day NextOf(const model::Row& row) const {
    if (flexi()) return loan->Step(row.due, 1);
    for (const model::Row& other : loan->ledger.rows) {
      if (other.id == row.id + 1) return other.due;
    }
    return row.due;
  }
  bool Valid(Box which) const {
    const Amount& amount = box[which];
    if (!amount.number) return false;
    if ((which == kMultiple || which == kTopTerm) &&
        amount.text.find_first_not_of("0123456789") != std::string::npos) {
      return false;
    }
    // A total that nobody typed may give back what was paid too much.
    const bool gives_back = which == kTotal && amount.text == split_total &&
                            amount.sen() == box[kPay].sen() + box[kInterest].sen() &&
                            box[kInterest].sen() >= outstanding;
    return kRules[which].may_be_negative || gives_back || amount.units >= 0;
  }
  void LeaveTotal() {
    if (box[kTotal].text == split_total) return;
    const Amount typed = box[kTotal];
    const std::int64_t late = std::min(typed.units, outstanding * 100);
    box[kInterest] = {"late", late, true};
    box[kPay] = {"rest", typed.units - late, true};
    Spread();
    box[kTotal] = typed;
    split_total = typed.text;
  }
  void Spread() {
    const Sen pay = box[kPay].sen();
    // A split by hand that still adds up stays.
    if (!flexi() || box[kInstal].sen() + box[kExtra].sen() != pay) {
      box[kInstal] = Amount::Of(pay);
      box[kExtra] = {};
    }
    ShowNewBalance();
    ShowTotal();
  }
  void ShowNewBalance() {
    if (!flexi()) new_balance = old_balance - box[kPay].sen() + box[kTopAmt].sen();
  }
  void ShowTotal() {
    box[kTotal] = Amount::Of(box[kPay].sen() + box[kInterest].sen());
    split_total = box[kTotal].text;
  }
  std::string AboveLimit() const { return "Total payment cannot more than " + Shown(Limit()); }
  std::string Refund() const {
    const Sen refund = box[kRefund].sen();
    Sen left = loan->deposit;
    for (const Paid& one : loan->paid) {
      if (one.id != OwnID()) left -= one.charge;
    }
    if (refund == 0 || refund <= left || (loaded && refund == loaded->charge)) return "";
    if (left <= 0) return "This loan has no deposit or fully refunded";
    return fmt::format("Refund Deposit cannot more than {} Deposit Amount, Please check",
                       Shown(left));
  }
  std::string Multiple() const {
    const auto ahead = static_cast<std::int64_t>(loan->ledger.rows.size()) - entry.row;
    if (box[kMultiple].units == 0 || box[kMultiple].units <= ahead * 10000) return "";
    return fmt::format("Cannot exceed {} payment", ahead);
  }
  std::string TopTerm() const {
    if (!flexi() || box[kTopTerm].units <= 10000) return "";
    return "Flexi Loan not allow to Topup more than 1 term";
  }

  std::string Check(const Answers& answers) {
    const Sen pay = box[kPay].sen();
    if (pay > 0 && drawn == 0) return "Loan not fully drawdown cannot make payment";
    if (box[kDiscount].sen() > 0 && !company->may_discount) {
      return "User AMY are not allow to save discount payment";
    }
    if (is_edit() && !company->may_edit && !signed_in) {
      signed_in = answers.manager;
      if (!signed_in) return "User AMY Level not allow to edit or delete payment record";
    }
    if (is_delete()) return "";
    if (group.empty()) entry.group = new_balance > 0 ? "PINJAMAN SEMASA" : "PINJAMAN SELESAI";
    for (int i = 0; i < kBoxes; ++i) {
      if (i == kTotal && !is_new()) continue;
      if (!Valid(static_cast<Box>(i))) return kRules[static_cast<std::size_t>(i)].invalid;
    }
    if (pay > old_balance) {
      if (!flexi()) return "Payment amount cannot more than loan balance amount";
      if (pay > Limit()) return AboveLimit();
    }
    if (box[kInstal].sen() + box[kExtra].sen() > pay) {
      return "Instalment & Extra not tally with Payment Amount";
    }
    if (!day) return "Date is required";
    const auto all = {kInterest, kCollector, kPay, kRefund, kTopAmt, kExtra, kInstal};
    if (std::all_of(all.begin(), all.end(), [&](Box one) { return box[one].sen() == 0; })) {
      return "No payment";
    }
    for (const std::string& told : {Refund(), Multiple(), TopTerm()}) {
      if (!told.empty()) return told;
    }
    if (std::string told = LeaveDate(answers); !told.empty()) return told;
    return Agreed(answers) ? "" : "?";
  }

  bool Agreed(const Answers& answers) {
    const Sen late = box[kInterest].sen(), extra = box[kExtra].sen();
    if (!loaded || late != loaded->late) {
      const Sen owed = outstanding + (loaded ? std::max<Sen>(loaded->late, 0) : 0);
      if (late < 0) {
        asked.push_back(
            fmt::format("Interest Payment is {0}: {1} more", Shown(late), Shown(-late)));
      } else if (late > owed - waived && (late > 0 || waived > 0)) {
        asked.push_back(fmt::format(
            "Interest Payment {} is more than what is owed: {} outstanding, of which the date "
            "waives {}. The {} too",
            Shown(late), Shown(owed), Shown(waived), Shown(late - owed + waived)));
      }
      if (!asked.empty() && !answers.credit) return false;
    }
    if (!flexi() || extra <= 0) return true;
    if (loaded && loaded->extra == extra && loaded->instalment == box[kInstal].sen()) return true;
    const Foreseen after = Foresee(Typed());
    const Sen above = -std::min(after.new_balance, after.last_balance);
    if (above <= 0) return true;
    asked.push_back(fmt::format("Extra Capital {} is {} more", Shown(extra), Shown(above)));
    return answers.extra;
  }

  std::string Stale() const {
    return fmt::format("Payment {} was changed meanwhile, Please load it again", OwnID());
  }

  // --- the write; what is told of a failure

  std::string Store() {
    Paid made = Typed();
    const std::string failed = "An error occurs during saving payment\n";
    if (is_new() && made.pay > loan->ledger.balance && !(flexi() && made.pay <= Limit())) {
      return failed + "0 - Payment amount cannot more than loan balance amount";
    }
    Cheque* tied = loan->FindCheque(made.cheque);
    if (tied != nullptr && !tied->pay_id.empty() && tied->pay_id != OwnID()) {
      return failed + "0 - Cheque, Cannot be reuse";
    }
    Paid* stored = is_new() ? nullptr : loan->Find(loaded->id);
    if (stored != nullptr && stored->Entry() != loaded->Entry()) return failed + "0 - " + Stale();
    if (!made.receipt.empty() && company->ReceiptTaken(made.receipt, OwnID())) {
      return "Same Receipt No detected - " + made.receipt;
    }
    if (!is_new() && stored == nullptr) return failed;
    if (is_new()) {
      made.id = fmt::format("{}-{:03}", loan->id, loan->next++);
      loan->counted = true;
      if (made.receipt.empty()) made.receipt = company->NextReceipt(*day);
      loan->paid.push_back(made);
      if (waive_from) Waive();
    } else {
      made.changed = true;
      made.commission = stored->commission;  // written once
      *stored = made;
    }
    FreeCheque(made.id);
    if (tied != nullptr) {
      tied->pay_id = made.id;
      tied->date = *day;
    }
    return "";
  }

  std::string Delete() {
    const Paid before = *loaded;
    const Paid* stored = loan->Find(before.id);
    if (stored == nullptr || stored->Entry() != before.Entry()) {
      loan->Rebuild();
      return "an error occurs during deleting payment\n" + (stored == nullptr ? "" : Stale());
    }
    std::erase_if(loan->paid, [&](const Paid& one) { return one.id == before.id; });
    FreeCheque(before.id);
    loan->topup -= before.topup;
    Reversed& off = loan->reversed[before.row];
    off.interest -= before.interest_open;
    off.capital -= before.capital_open;
    off.collector -= before.collector;
    off.late -= before.late;
    return "";
  }

  void FreeCheque(const std::string& pay_id) {
    for (Cheque& one : loan->cheques) {
      if (one.pay_id == pay_id) one.pay_id.clear();
    }
  }
  // Late charges that the batch has posted for days after the payment, up to the next due date.
  bool Obsolete(const Charge& one) const {
    return one.type == "Batch" && !model::NotBefore(*waive_from, one.date) &&
           model::NotBefore(entry.next_due, one.date) && one.amount > 0;
  }
  void Waive() {
    for (Charge& one : loan->charges) {
      if (Obsolete(one)) one.original = std::exchange(one.amount, 0);
    }
  }
};

}  // namespace kaunter::counter
