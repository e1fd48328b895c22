// Random histories at the payment counter, typed into the screen as a clerk types them: new
// payments, changed and deleted ones, on two loans of one customer, by four screens that stay open.
// After every press the stored rows are compared with a second model (counter_books.h,
// counter_boxes.h); what was refused has changed no row and no box; the identities of the ledger
// hold; a second rebuild changes nothing, and the check of the ledger finds nothing to say; a
// payment changed back or deleted again brings the loan back.
//
// The histories are numbered and always the same. KAUNTER_HISTORY runs one of them alone and prints
// its steps, KAUNTER_HISTORIES sets their number.
#include <functional>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "collections/ledger_check.h"
#include "tests/collections/counter_clerks.h"

namespace kaunter {
namespace {

class CounterHistory : public CounterClerks {
 public:
  // False when something did not hold; told with the steps that led there.
  bool Run(std::uint64_t number) {
    number_ = number;
    random_ = Random(number);
    steps_.clear();
    held_ = true;
    MakeCustomer();
    Compare();
    const auto steps = random_.Between(3, 9);
    for (int i = 0; held_ && i < steps; ++i) Step();
    for (Clerk& clerk : clerks_) clerk.screen.reset();
    const LedgerReport report = CheckCompany(main(), "HQ", [](const auto&) { return true; });
    std::string faults, should_be;
    for (const LedgerFault& fault : report.faults) {
      faults += fmt::format("{} {} {} {}\n", fault.LoanID, fault.what.english, fault.stored,
                            fault.should_be);
    }
    for (const Loan& loan : company_.loans) {
      const Sen outstanding = loan.charged + loan.credited;
      if (outstanding >= 0) continue;
      should_be +=
          fmt::format("{} Outstanding charges {} 0.00\n", loan.id, counter::Shown(outstanding));
    }
    Same("Verify ledger", faults, should_be);
    return held_;
  }
  using CounterClerks::Trail;

 private:
  // --- one step

  void Allow(bool edit, bool discount, bool special_user) {
    company_.may_edit = office_.session.AllowEdit = edit;
    company_.may_discount = office_.session.AllowDisc = discount;
    company_.special_user = office_.session.Special = special_user;
  }

  void Step() {
    Allow(!OneIn(4), !OneIn(4), OneIn(20));
    Loan& loan = AnyOf(company_.loans);
    const auto act = Between(0, 15);
    if (act == 0) {
      PostBetween(loan);
    } else if (act < 7 && !loan.paid.empty()) {
      const std::string id = AnyOf(loan.paid).id;
      if (act < 3) Change(loan, id);
      if (act == 3 || act == 4) ChangeAndBack(loan, id);
      if (act > 4) Delete(loan, id);
    } else if (act == 7) {
      PayAndDelete(loan);
    } else if (act == 8) {
      Interleaved(loan);
    } else if (act == 9) {
      HandOver(loan);
    } else if (act == 10) {
      NotActive(loan);
    } else {
      Pay(loan);
    }
  }

  // The batch posts late charges; its own refresh of the totals is a rebuild here. At times the
  // deposit is lowered, too, below what was refunded of it.
  void PostBetween(Loan& loan) {
    if (OneIn(3)) {
      loan.deposit = Between(0, loan.deposit);
      main().Execute(fmt::format("UPDATE LoanMast SET DepositAmt2={} WHERE LoanID='{}'",
                                 Text(loan.deposit), loan.id));
    }
    PostCharges(loan);
    RebuildLoan(main(), loan.id);
    loan.Rebuild();
    RebuildCustomer(main(), "C");
    Compare(&loan);
  }

  bool Pay(Loan& loan) {
    Clerk& clerk = Opened(kNew);
    return BringLoan(clerk, loan) && TypeAndPress(clerk, 3);
  }
  bool Change(Loan& loan, const std::string& pay_id) {
    Clerk& clerk = Opened(kEdit);
    return BringPayment(clerk, loan, pay_id) && TypeAndPress(clerk, 2);
  }
  bool Delete(Loan& loan, const std::string& pay_id, const Answers& answers) {
    Clerk& clerk = Opened(kDelete);
    return BringPayment(clerk, loan, pay_id) && Press(clerk, answers);
  }
  bool Delete(Loan& loan, const std::string& pay_id) { return Delete(loan, pay_id, DrawAnswers()); }

  static bool AllPaid(const Loan& loan) {
    return std::none_of(loan.ledger.rows.begin(), loan.ledger.rows.end(),
                        [](const model::Row& row) { return row.open(); });
  }
  std::string Waived(const Loan& loan) {
    return bare_.Rows("SELECT ChargeID FROM ChargeMast WHERE OrgAmt <> 0 AND LoanID=?", loan.id);
  }

  // What `there` does and `back` takes back leaves the loan as it was, unless extra capital has cut
  // rows for good, a late charge was waived, or the loan was paid up, whose next due date stays.
  void ThereAndBack(const char* what, Loan& loan, const std::function<bool()>& there,
                    const std::function<bool()>& back) {
    const std::string before = StateOf(loan), waived = Waived(loan);
    const bool comes_back = !loan.CutAnew() && !AllPaid(loan);
    if (!there()) return;
    const bool cut = loan.CutAnew() || loan.ledger.grace_row_cut;
    if (!back() || !comes_back || cut || Waived(loan) != waived) return;
    Same(what, StateOf(loan), before);
  }

  void ChangeAndBack(Loan& loan, const std::string& pay_id) {
    Allow(true, true, company_.special_user);
    const Paid before = *loan.Find(pay_id);
    ThereAndBack(
        "changed and changed back", loan, [&] { return Change(loan, pay_id); },
        [&] {
          Clerk& clerk = Opened(kEdit);
          if (!BringPayment(clerk, loan, pay_id)) return false;
          TypeCheque(clerk, before.cheque);
          for (int box = counter::kPay; box < counter::kBoxes; ++box) {
            Sen Paid::*const kept = counter::kRules[static_cast<std::size_t>(box)].kept_in;
            if (kept != nullptr) TypeAmount(clerk, Box(box), Amount::Of(before.*kept));
          }
          TypeAmount(clerk, counter::kTopTerm,
                     {std::to_string(before.top_term), before.top_term * 10000});
          TypeDate(clerk, before.date);
          TypeReceipt(clerk, before.receipt);
          if (!Press(clerk, {})) return false;
          // A split that does not add up is not typed a second time.
          const Paid& after = *loan.Find(pay_id);
          return after.pay == before.pay && after.instalment == before.instalment &&
                 after.extra == before.extra && after.cheque == before.cheque;
        });
  }

  void PayAndDelete(Loan& loan) {
    Allow(company_.may_edit, true, false);
    ThereAndBack(
        "paid and deleted", loan, [&] { return Pay(loan); },
        [&] { return Delete(loan, loan.paid.back().id, {}); });
  }

  // A payment is half typed while others are stored.
  void Interleaved(Loan& loan) {
    std::optional<std::string> changing;
    if (!loan.paid.empty() && OneIn(2)) changing = loan.paid.back().id;
    Clerk& slow = Opened(!changing ? kOther : OneIn(2) ? kEdit : kDelete);
    if (!(changing ? BringPayment(slow, loan, *changing) : BringLoan(slow, loan))) return;
    if (!slow.model.is_delete()) TypeSome(slow);
    const bool same_cheque = !changing && !loan.cheques.empty() && OneIn(2);
    if (same_cheque) TypeCheque(slow, "CHQ1");
    Note("meanwhile");
    if (same_cheque) {
      Clerk& quicker = Opened(kNew);
      if (!BringLoan(quicker, loan)) return;
      TypeCheque(quicker, "CHQ1");
      TypeAmount(quicker, counter::kPay, As(1));
      TypeDate(quicker, loan.lent);
      Press(quicker, {});
    } else if (changing && slow.model.is_delete()) {
      Change(loan, *changing);
    } else if (changing) {
      Delete(loan, *changing);
    } else if (!loan.paid.empty() && OneIn(2)) {
      Delete(loan, loan.paid.front().id);
    } else {
      Pay(loan);
    }
    Note("and then");
    Press(slow, {});
  }

  void HandOver(Loan& loan) {
    const Day day = AnyDay(loan);
    const Sen charges = loan.charged + loan.credited;
    const Sen schedule = Between(0, std::max<Sen>(loan.ledger.balance, 0));
    // Of a flexi loan more capital may be due than is left.
    const Sen rest = loan.flexi() && OneIn(3) ? -Between(0, schedule)
                                              : Between(0, loan.ledger.balance - schedule);
    SettlementQuote quote;
    quote.DragLoan = loan.flexi() ? "1" : "0";
    quote.SettledDate = Dashed(day);
    quote.OPayment = counter::Shown(charges);
    quote.NPayment = counter::Shown(schedule);
    quote.EPayment = counter::Shown(rest);
    quote.PayAmt = counter::Shown(schedule + rest);
    quote.ChargeAmt = "0.00";
    office_.session.HandOverQuote = quote;
    Clerk& clerk = Opened(kNew, loan.id);
    office_.session.HandOverQuote = {};
    counter::Counter& on = clerk.model;
    Note(fmt::format("{} comes with a quote for {}: {} and {}, late {}", loan.id, quote.SettledDate,
                     quote.NPayment, quote.EPayment, quote.OPayment));
    Told("hand-over", on.OpenLoan(loan));
    if (!on.enabled) return;
    on.date = Dashed(day);
    on.day = day;
    on.LookForCharges();
    on.box[counter::kInterest] = Amount::Of(charges);
    on.box[counter::kPay] = Amount::Of(loan.flexi() ? schedule + rest : schedule);
    on.box[counter::kInstal] = Amount::Of(schedule + std::min<Sen>(rest, 0));
    on.box[loan.flexi() ? counter::kExtra : counter::kDiscount] =
        Amount::Of(std::max<Sen>(rest, 0));
    if (!loan.flexi()) on.new_balance = on.old_balance - schedule;
    on.box[counter::kTotal] = Amount::Of(on.box[counter::kPay].sen() + charges);
    on.split_total = on.box[counter::kTotal].text;
    CompareBoxes(clerk);
    const int closings = desk_.closings;
    clerk.screen->RequestClose();
    if (desk_.closings == closings) Fault("a quotation is lost unasked");
    Press(clerk, DrawAnswers());
  }

  // Nothing comes on a loan that does not run.
  void NotActive(Loan& loan) {
    const auto become = [&](const char* status) {
      main().Execute(
          fmt::format("UPDATE LoanMast SET LoanStatus='{}' WHERE LoanID='{}'", status, loan.id));
    };
    const char* status = OneIn(2) ? "CLOSED" : "PENDING";
    become(status);
    Clerk& clerk = Opened(kNew);
    Type(clerk, clerk.screen->LoanID, loan.id,
         [&] { return fmt::format("No payment for {} loan", status); });
    const std::string before = Everything();
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    Same("a press on a loan that does not run", Everything(), before);
    become("ACTIVE");
  }
};

TEST(CounterPropertyTest, RandomHistoriesAtTheScreenKeepEveryRow) {
  if (const std::uint64_t one = FromEnvironment("KAUNTER_HISTORY", 0); one != 0) {
    CounterHistory office;
    office.Run(one);
    std::cout << office.Trail();
    return;
  }
  const std::uint64_t count = FromEnvironment("KAUNTER_HISTORIES", 900);
  const std::size_t offices = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
  std::vector<std::unique_ptr<CounterHistory>> all;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < offices; ++i) {
    all.push_back(std::make_unique<CounterHistory>());
    threads.emplace_back([&office = *all.back(), i, offices, count] {
      int broken = 0;
      for (std::uint64_t number = i + 1; number <= count && broken < 2; number += offices) {
        if (!office.Run(number)) ++broken;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::map<std::string, std::int64_t> checked, told;
  for (const auto& office : all) {
    for (const auto& [what, times] : office->checked) checked[what] += times;
    for (const auto& [what, times] : office->told) told[what] += times;
  }
  for (const auto& [what, times] : checked) std::cout << fmt::format("{:>8} {}\n", times, what);
  // The histories have come past what they are for: nearly every refusal there is, and every check
  // often enough.
  if (count < 900) return;
  if (HasFailure()) return;
  EXPECT_GT(told.size(), 30u);
  EXPECT_EQ(checked.size(), 19u + std::size(kPlaces) + std::size(kIdentities));
  for (const auto& [what, times] : checked) EXPECT_GT(times, 100) << what;
}

}  // namespace
}  // namespace kaunter
