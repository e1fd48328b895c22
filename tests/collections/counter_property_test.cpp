// Random histories at the payment counter, typed into the screen as a clerk types them: new
// payments, changed and deleted ones, on two loans of one customer, by four screens that stay open.
// After every press the stored rows are compared with a second model (counter_books.h,
// counter_boxes.h); what was refused has changed no row and no box; the identities of the ledger
// hold; a second rebuild changes nothing; a payment changed back or deleted again brings the loan
// back.
//
// The histories are numbered and always the same. KAUNTER_HISTORY runs one of them alone and prints
// its steps, KAUNTER_HISTORIES sets their number.
#include <functional>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "tests/collections/counter_clerks.h"

namespace kaunter {
namespace {

class CounterHistory : public CounterClerks {
 public:
  // False when something did not hold; told with the steps that led there.
  bool Run(std::uint64_t number, bool tell) {
    number_ = number;
    random_ = Random(number);
    steps_.clear();
    held_ = true;
    ++counted.histories;
    MakeCustomer();
    Compare("at the start");
    const auto steps = random_.Between(3, 9);
    for (int i = 0; held_ && i < steps; ++i) Step();
    for (Clerk& clerk : clerks_) clerk.screen.reset();
    if (tell) std::cout << Trail();
    return held_;
  }

 private:
  // --- one step

  void Step() {
    company_.may_discount = !OneIn(4);
    company_.may_edit = !OneIn(4);
    company_.special_user = OneIn(20);
    office_.session.AllowDisc = company_.may_discount;
    office_.session.AllowEdit = company_.may_edit;
    office_.session.Special = company_.special_user;
    Loan& loan = company_.loans[static_cast<std::size_t>(Between(0, 1))];
    switch (Between(0, 15)) {
      case 0:
        PostBetween(loan);
        return;
      case 1:
      case 2:
        WithPaid(loan, [&](const Paid& paid) { Change(loan, paid.id); });
        return;
      case 3:
      case 4:
        WithPaid(loan, [&](const Paid& paid) { ChangeAndBack(loan, paid.id); });
        return;
      case 5:
      case 6:
        WithPaid(loan, [&](const Paid& paid) { Delete(loan, paid.id); });
        return;
      case 7:
        PayAndDelete(loan);
        return;
      case 8:
        Interleaved(loan);
        return;
      case 9:
        HandOver(loan);
        return;
      case 10:
        NotActive(loan);
        return;
      default:
        Pay(kNew, loan);
    }
  }

  void WithPaid(Loan& loan, const std::function<void(const Paid&)>& act) {
    if (loan.paid.empty()) {
      Pay(kNew, loan);
      return;
    }
    const Paid paid =
        loan.paid[static_cast<std::size_t>(Between(0, static_cast<int>(loan.paid.size()) - 1))];
    act(paid);
  }

  // The batch posts late charges; its own refresh of the totals is a rebuild here.
  void PostBetween(Loan& loan) {
    PostCharges(loan);
    RebuildLoan(main(), loan.id);
    loan.Rebuild();
    RebuildCustomer(main(), "C");
    Compare("charges posted", &loan);
  }

  void Pay(Who who, Loan& loan) {
    Clerk& clerk = Opened(who);
    if (!BringLoan(clerk, loan)) return;
    TypeAndPress(clerk, 3);
  }
  void Change(Loan& loan, const std::string& pay_id) {
    Clerk& clerk = Opened(kEdit);
    if (BringPayment(clerk, loan, pay_id)) TypeAndPress(clerk, 2);
  }
  bool Delete(Loan& loan, const std::string& pay_id) {
    Clerk& clerk = Opened(kDelete);
    return BringPayment(clerk, loan, pay_id) && Press(clerk, DrawAnswers());
  }

  void ChangeAndBack(Loan& loan, const std::string& pay_id) {
    company_.may_edit = office_.session.AllowEdit = true;
    company_.may_discount = office_.session.AllowDisc = true;
    const bool cut_before = loan.CutAnew();
    const Paid before = *loan.Find(pay_id);
    const std::string state = StateOf(loan, true);
    const bool all_paid = AllPaid(loan);
    Clerk& clerk = Opened(kEdit);
    if (!BringPayment(clerk, loan, pay_id)) return;
    if (!TypeAndPress(clerk, 2)) return;
    const bool cut = cut_before || loan.CutAnew() || loan.ledger.grace_row_cut;
    if (!BringPayment(clerk, loan, pay_id)) return;
    Note("... and back");
    TypeCheque(clerk, before.cheque);
    for (const auto& [box, sen] :
         std::initializer_list<std::pair<Box, Sen>>{{counter::kPay, before.pay},
                                                    {counter::kExtra, before.extra},
                                                    {counter::kInstal, before.instalment},
                                                    {counter::kExtra, before.extra},
                                                    {counter::kInterest, before.late},
                                                    {counter::kRefund, before.charge},
                                                    {counter::kCollector, before.collector},
                                                    {counter::kDiscount, before.discount},
                                                    {counter::kMemo5, before.calculated},
                                                    {counter::kTopAmt, before.top},
                                                    {counter::kTopUp, before.topup}}) {
      TypeAmount(clerk, box, {counter::Shown(sen), sen * 100});
    }
    TypeAmount(clerk, counter::kTopTerm,
               {std::to_string(before.top_term), before.top_term * 10000});
    TypeDate(clerk, Dashed(before.date), before.date);
    TypeReceipt(clerk, before.receipt);
    if (!Press(clerk, {})) return;
    const Paid& after = *loan.Find(pay_id);
    const bool same = after.pay == before.pay && after.instalment == before.instalment &&
                      after.extra == before.extra && after.cheque == before.cheque;
    if (!same || cut || all_paid) return;
    ++counted.taken_back;
    Same("changed and changed back", StateOf(loan, true), state);
  }

  void PayAndDelete(Loan& loan) {
    company_.may_discount = office_.session.AllowDisc = true;
    company_.special_user = office_.session.Special = false;
    const bool cut = loan.CutAnew();
    const bool all_paid = AllPaid(loan);
    const std::string state = StateOf(loan, false);
    Clerk& clerk = Opened(kNew);
    if (!BringLoan(clerk, loan) || !TypeAndPress(clerk, 3)) return;
    const bool waived = clerk.model.waive_from.has_value();
    const bool cut_now = cut || loan.CutAnew() || loan.ledger.grace_row_cut;
    Clerk& gone = Opened(kDelete);
    const std::string id = loan.paid.back().id;
    if (!BringPayment(gone, loan, id) || !Press(gone, {})) return;
    if (cut_now || all_paid || waived) return;
    ++counted.taken_back;
    Same("paid and deleted", StateOf(loan, false), state);
  }

  // A payment is half typed while others are stored.
  void Interleaved(Loan& loan) {
    Clerk& clerk = Opened(kOther);
    std::optional<Paid> changing;
    if (!loan.paid.empty() && OneIn(2)) changing = loan.paid.back();
    Clerk* stale = &clerk;
    if (changing) {
      stale = &Opened(OneIn(2) ? kEdit : kDelete);
      if (!BringPayment(*stale, loan, changing->id)) return;
    } else if (!BringLoan(clerk, loan)) {
      return;
    }
    if (!stale->model.is_delete()) TypeSome(*stale);
    const bool same_cheque = !changing && !loan.cheques.empty() && OneIn(2);
    if (same_cheque) TypeCheque(*stale, "CHQ1");
    Note("meanwhile");
    if (same_cheque) {
      Clerk& quicker = Opened(kNew);
      if (!BringLoan(quicker, loan)) return;
      TypeCheque(quicker, "CHQ1");
      TypeAmount(quicker, counter::kPay, As(1));
      TypeDate(quicker, Dashed(loan.lent), loan.lent);
      Press(quicker, {});
    } else if (!changing && !loan.paid.empty() && OneIn(2)) {
      Delete(loan, loan.paid.front().id);
    } else if (changing && stale->model.is_edit()) {
      Delete(loan, changing->id);
    } else if (changing) {
      Change(loan, changing->id);
    } else {
      Pay(kNew, loan);
    }
    if (!held_) return;
    Note("and then");
    Press(*stale, {});
  }

  void HandOver(Loan& loan) {
    SettlementQuote quote;
    quote.DragLoan = loan.flexi() ? "1" : "0";
    const Day day = AnyDay(loan);
    quote.SettledDate = Dashed(day);
    const Sen charges = std::max<Sen>(loan.charged + loan.credited, 0);
    const Sen schedule = Between(0, std::max<Sen>(loan.ledger.balance, 0));
    const Sen rest = Between(0, loan.ledger.balance - schedule);
    quote.OPayment = counter::Shown(charges);
    quote.NPayment = counter::Shown(schedule);
    quote.EPayment = counter::Shown(rest);
    quote.PayAmt = counter::Shown(schedule + rest);
    quote.ChargeAmt = "0.00";
    office_.session.HandOverQuote = quote;
    Clerk& clerk = Reopened(kNew, loan.id);
    office_.session.HandOverQuote = {};
    counter::Counter& on = clerk.model;
    on.OpenLoan(loan);
    Note(fmt::format("{} comes with a quote for {}: {} and {}, late {}", loan.id, quote.SettledDate,
                     quote.NPayment, quote.EPayment, quote.OPayment));
    if (!on.enabled) {
      Told("hand-over", "Loan settled, cannot make payment");
      return;
    }
    on.TypeDate(Dashed(day), day);
    on.waive_from = day;
    on.box[counter::kInterest].Show(charges);
    on.box[counter::kPay].Show(loan.flexi() ? schedule + rest : schedule);
    on.box[counter::kInstal].Show(schedule);
    on.box[counter::kExtra].Show(loan.flexi() ? rest : 0);
    on.box[counter::kDiscount].Show(loan.flexi() ? 0 : rest);
    if (!loan.flexi()) on.new_balance = on.old_balance - schedule;
    on.box[counter::kTotal].Show(on.box[counter::kPay].sen() + charges);
    on.split_total = on.box[counter::kTotal].text;
    Press(clerk, DrawAnswers());
  }

  // Nothing comes on a loan that does not run.
  void NotActive(Loan& loan) {
    const std::string status = OneIn(2) ? "CLOSED" : "PENDING";
    main().Execute(
        fmt::format("UPDATE LoanMast SET LoanStatus='{}' WHERE LoanID='{}'", status, loan.id));
    Note(fmt::format("{} is {}", loan.id, status));
    Clerk& clerk = Opened(kNew);
    clerk.model = {};
    desk_.messages.clear();
    Put(clerk.screen->LoanID, loan.id);
    Told("loan", "No payment for " + status + " loan");
    const std::string before = bare_.Everything();
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    Same("a press on a loan that does not run", bare_.Everything(), before);
    main().Execute(
        fmt::format("UPDATE LoanMast SET LoanStatus='ACTIVE' WHERE LoanID='{}'", loan.id));
  }
};

TEST(CounterPropertyTest, RandomHistoriesAtTheScreenKeepEveryRow) {
  const std::uint64_t one = FromEnvironment("KAUNTER_HISTORY", 0);
  const std::uint64_t count = FromEnvironment("KAUNTER_HISTORIES", 1'050);
  if (one != 0) {
    CounterHistory().Run(one, true);
    return;
  }
  const std::size_t offices = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
  std::vector<std::unique_ptr<CounterHistory>> all;
  for (std::size_t i = 0; i < offices; ++i) all.push_back(std::make_unique<CounterHistory>());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < offices; ++i) {
    threads.emplace_back([&, i] {
      int broken = 0;
      for (std::uint64_t number = i + 1; number <= count && broken < 2; number += offices) {
        if (!all[i]->Run(number, false)) ++broken;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  Counted sum;
  for (const auto& office : all) {
    sum.histories += office->counted.histories;
    sum.typed += office->counted.typed;
    sum.pressed += office->counted.pressed;
    sum.refused += office->counted.refused;
    sum.stored += office->counted.stored;
    sum.changed += office->counted.changed;
    sum.deleted += office->counted.deleted;
    sum.taken_back += office->counted.taken_back;
    for (const auto& [told, times] : office->counted.told) sum.told[told] += times;
  }
  std::cout << fmt::format(
      "{} histories, {} boxes typed, {} presses: {} stored, {} changed, {} deleted, {} not\n",
      sum.histories, sum.typed, sum.pressed, sum.stored, sum.changed, sum.deleted, sum.refused);
  // The histories have come past what they are for: nearly every refusal there is, and payments
  // taken back.
  if (count < 1'000) return;
  EXPECT_GT(sum.told.size(), 30u);
  EXPECT_GT(sum.stored, sum.histories);
  EXPECT_GT(std::min(sum.changed, sum.deleted), sum.histories / 2);
  EXPECT_GT(sum.taken_back, 100);
}

}  // namespace
}  // namespace kaunter
