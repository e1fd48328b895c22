// Four screens of the payment counter that stay open, each with the second model of what stands on
// it, and the clerks who type into them.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/ranges.h>

#include "collections/payment_frm.h"
#include "tests/collections/counter_office.h"

namespace kaunter {

using counter::Amount;
using counter::Box;
using counter::Dashed;

inline constexpr std::array<TextBox PaymentFrm::*, counter::kBoxes> kBoxesOfScreen = {
    &PaymentFrm::TotPay,  &PaymentFrm::PayAmt,    &PaymentFrm::InstalAmt,    &PaymentFrm::PayExtra,
    &PaymentFrm::IntAmt,  &PaymentFrm::ChargeAmt, &PaymentFrm::CollectorAmt, &PaymentFrm::DiscAmt,
    &PaymentFrm::Memo5,   &PaymentFrm::MPayment,  &PaymentFrm::SalesmanComm, &PaymentFrm::TopAmt,
    &PaymentFrm::TopTerm, &PaymentFrm::TopUpAmt};

class CounterClerks : public CounterOffice {
 protected:
  // A screen and what should stand on it.
  struct Clerk {
    std::unique_ptr<PaymentFrm> screen;
    counter::Counter model;
  };
  enum Who { kNew, kOther, kEdit, kDelete };

  // --- at the screen

  // Cleared, or opened anew; with a loan that is handed over, always the latter.
  Clerk& Opened(Who who, const std::string& handed_over = {}) {
    static constexpr const char* kModes[] = {"New Payment", "New Payment", "Edit Payment",
                                             "Delete Payment"};
    Clerk& clerk = clerks_[who];
    desk_.told.clear();
    if (clerk.screen != nullptr && handed_over.empty() && !OneIn(12)) {
      clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    } else {
      if (clerk.screen != nullptr) clerk.screen->Close();
      office_.session.CallerTag = kModes[who];
      office_.session.HandOverLoanID = handed_over;
      office_.session.PickerExtra.clear();
      clerk.screen = std::make_unique<PaymentFrm>(office_.session, desk_);
      clerk.screen->Guard([&] { clerk.screen->Load(); });
    }
    clerk.model.Start(company_, kModes[who]);
    return clerk;
  }

  static bool Place(TextBox& box, const std::string& text) { return box.Type(text); }
  static bool Place(ComboBox& box, const std::string& text) { return box.Pick(text); }

  // A box is typed into and left; `leave` does the same in the model and says what is told.
  template <typename AnyBox>
  void Type(Clerk& clerk, AnyBox& box, const std::string& text, const auto& leave) {
    if (!held_) return;
    Note(box.name() + " \"" + text + "\"");
    desk_.told.clear();
    box.Enter();
    if (!Place(box, text)) Fault(box.name() + " does not take " + text);
    clerk.screen->Guard([&] { box.Leave(); });
    Told(box.name(), leave());
    clerk.model.OfferGroup();
    CompareBoxes(clerk);
  }
  // "?" stands for a question that was answered with no.
  void Told(const std::string& where, const std::string& should_be) {
    if (should_be.empty() || should_be == "?" ? !desk_.told.empty()
                                              : !desk_.told.starts_with(should_be)) {
      Fault(fmt::format("{} told \"{}\", should be \"{}\"", where, desk_.told, should_be));
    }
  }

  bool BringLoan(Clerk& clerk, Loan& loan) {
    Note(fmt::format("{} (balance {})", clerk.model.mode, counter::Shown(loan.ledger.balance)));
    if (OneIn(4)) TypeDate(clerk, AnyDay(loan));
    Type(clerk, clerk.screen->LoanID, OneIn(5) ? " " + loan.id + " " : loan.id, [&] {
      const std::string told = clerk.model.OpenLoan(loan);
      return told.empty() ? clerk.model.LeaveDate(desk_.answers) : told;
    });
    return held_ && clerk.model.enabled;
  }
  bool BringPayment(Clerk& clerk, Loan& loan, const std::string& pay_id) {
    Note(clerk.model.mode);
    clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    clerk.model.Start(company_, clerk.model.mode);
    Type(clerk, clerk.screen->PayID, pay_id, [&] {
      clerk.model.OpenPayment(loan, *loan.Find(pay_id));
      return "";
    });
    return held_;
  }

  // The amounts on the screen are those of the model.
  void CompareBoxes(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    if (on.loan == nullptr) return;
    for (const Box box :
         {counter::kTotal, counter::kPay, counter::kInstal, counter::kExtra, counter::kInterest}) {
      const std::string& text = (*clerk.screen.*kBoxesOfScreen[box]).text();
      if (!on.box[box].number) continue;
      const auto shown = Money::TryText(text.empty() ? "0" : text);
      if (!shown || shown->ten_thousandths() != on.box[box].units) {
        Fault(fmt::format("{} shows {} for {}", (*clerk.screen.*kBoxesOfScreen[box]).name(), text,
                          on.box[box].units));
      }
    }
    Same("NewLoanBal", clerk.screen->NewLoanBal.text(), counter::Shown(on.new_balance));
    Same("OldLoanBal", clerk.screen->OldLoanBal.text(), counter::Shown(on.old_balance));
    CompareWaived(clerk);
    Same("the words", clerk.screen->SplitLBL.Text(), on.Words());
  }
  void CompareWaived(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    Same("WaivedAmt", clerk.screen->WaivedAmt.text(),
         on.is_new() && on.waive_from ? counter::Shown(on.waived) : "");
  }

  void TypeAmount(Clerk& clerk, Box which, const Amount& typed) {
    TextBox& box = *clerk.screen.*kBoxesOfScreen[which];
    if (box.locked() != clerk.model.Locked(which)) Fault(box.name() + " is locked or is not");
    if (box.locked()) return;
    std::string told;
    Type(clerk, box, typed.text, [&] { return told = clerk.model.Leave(which, typed); });
    if (!told.empty()) Same("a refused box", box.text(), clerk.model.box[which].text);
  }
  void TypeCheque(Clerk& clerk, const std::string& no) {
    Type(clerk, clerk.screen->ChqNo, no, [&] { return clerk.model.LeaveCheque(no); });
  }
  void TypeReceipt(Clerk& clerk, const std::string& number) {
    Type(clerk, clerk.screen->ReceiptNo, number, [&] {
      clerk.model.entry.receipt = number;
      return "";
    });
  }
  void TypeDate(Clerk& clerk, const std::string& text, const std::optional<Day>& day) {
    desk_.answers.holiday = !OneIn(3);
    Type(clerk, clerk.screen->PayDate, text, [&] {
      clerk.model.date = text;
      clerk.model.day = day;
      return clerk.model.LeaveDate(desk_.answers);
    });
    Same("PayDate", clerk.screen->PayDate.text(), text);
  }
  void TypeDate(Clerk& clerk, const Day& day) { TypeDate(clerk, Dashed(day), day); }

  // --- what is typed

  Amount As(Sen sen) {
    const std::string plain = Text(sen);
    const auto form = Between(0, 9);
    if (form == 0) return {" " + plain + " ", sen * 100};
    if (form < 3) return Amount::Of(sen);
    if (form == 3 && sen >= 0 && sen % 100 == 0) return {plain + ".005", sen * 100 + 50};
    return {plain, sen * 100};
  }
  Amount DrawTyped(const counter::Counter& on, Box which) {
    static const Amount kWrong[] = {{"abc", 0, false}, {"1O0", 0, false},  {"1e3", 0, false},
                                    {"1';", 0, false}, {"-5", -50000},     {"-0.01", -100},
                                    {"", 0},           {"12..5", 0, false}};
    if (OneIn(14)) {
      const Amount& wrong = AnyOf(kWrong);
      if (wrong.text.size() <= 4) return wrong;  // a count has room for four signs
    }
    if (which == counter::kMultiple || which == counter::kTopTerm) {
      const auto count = Between(0, which == counter::kTopTerm ? 3 : 6);
      return {std::to_string(count), count * 10000};
    }
    const Sen balance = std::max<Sen>(on.old_balance, 1), due = std::max<Sen>(on.entry.payable, 0);
    const Sen limit = std::max<Sen>(on.Limit(), 0) + Between(0, 1);
    const Sen charges = std::max<Sen>(on.outstanding, 0) + Between(0, 1);
    const Sen part = Between(1, balance / (OneIn(2) ? 1 : 4));
    const Sen pays[] = {balance, balance + 1, 0,    limit, charges, due,
                        due,     due,         part, part,  part,    part};
    return As(which <= counter::kPay ? AnyOf(pays)
              : which <= counter::kExtra
                  ? Between(0, on.box[counter::kPay].sen() + (OneIn(6) ? 1 : 0))
              : which == counter::kInterest
                  ? Between(OneIn(5) ? -500 : 0, OneIn(3) ? on.outstanding : 5000)
              : which == counter::kRefund ? Between(0, OneIn(3) ? 60000 : on.loan->deposit)
                                          : Between(0, 20000));
  }

  void TypeDay(Clerk& clerk) {
    const Loan& loan = *clerk.model.loan;
    const auto pick = Between(0, 14);
    if (pick < 2) {
      TypeDate(clerk, pick == 0 ? "" : OneIn(2) ? "31-02-2024" : "tomorrow", std::nullopt);
      return;
    }
    const Day before{loan.lent.year, loan.lent.month, 19};
    const bool holiday = pick == 4 && model::NotBefore(company_.holiday, loan.lent);
    TypeDate(clerk, pick == 2   ? before
                    : pick == 3 ? loan.lent
                    : holiday   ? company_.holiday
                                : AnyDay(loan));
  }

  void TypeSome(Clerk& clerk) {
    using namespace counter;
    const auto type = [&](Box box) { TypeAmount(clerk, box, DrawTyped(clerk.model, box)); };
    const auto any = [&] { return static_cast<Box>(Between(0, kBoxes - 1)); };
    if (clerk.model.date.empty() ? !OneIn(20) : OneIn(4)) TypeDay(clerk);
    if (OneIn(8)) TypeCheque(clerk, fmt::format("CHQ{}", Between(1, 3)));
    const Box first = clerk.model.is_new() ? kTotal : kPay;
    const std::vector<Box> groups[] = {{first},
                                       {first},
                                       {kPay},
                                       {kPay, OneIn(2) ? kInstal : kExtra},
                                       {OneIn(2) ? kInterest : kRefund},
                                       {any(), any(), any(), any()}};
    for (const Box box : AnyOf(groups)) type(box);
    for (int box = kInterest; box < kBoxes; ++box) {
      if (OneIn(14)) type(static_cast<Box>(box));
    }
    if (OneIn(10)) {
      type(kTopAmt);
      type(kTopTerm);
    }
    if (OneIn(8)) TypeReceipt(clerk, AnyReceipt());
    if (OneIn(12)) TypeDay(clerk);
  }

  // One that is in use, the next one, a book's own.
  std::string AnyReceipt() {
    std::vector<std::string> choice = {"BOOK 1", "BOOK 2", "R0002", ""};
    for (const Loan& loan : company_.loans) {
      for (const Paid& paid : loan.paid) choice.push_back(paid.receipt);
    }
    for (const auto& [key, at] : company_.counters) {
      choice.push_back(fmt::format("{}{:04}", key.substr(key.find('#') + 1), at + 1));
    }
    return AnyOf(choice);
  }

  Answers DrawAnswers() {
    return {.holiday = !OneIn(4),
            .confirm = !OneIn(10),
            .manager = OneIn(2),
            .credit = !OneIn(3),
            .extra = !OneIn(3)};
  }

  bool TypeAndPress(Clerk& clerk, int times) {
    TypeSome(clerk);
    for (int i = 0; held_ && i < times; ++i) {
      if (Press(clerk, DrawAnswers())) return true;
      if (OneIn(5)) {
        TypeSome(clerk);
      } else {
        Mend(clerk, clerk.model.refused_for);
      }
    }
    return false;
  }

  // What the last press was refused for is typed anew.
  void Mend(Clerk& clerk, const std::string& told) {
    const auto says = [&](const char* what) { return told.find(what) != std::string::npos; };
    if (says("ate") && !says("day")) TypeDate(clerk, AnyDay(*clerk.model.loan));
    if (says("discount")) TypeAmount(clerk, counter::kDiscount, {"0", 0});
    if (says("eposit")) TypeAmount(clerk, counter::kRefund, {"", 0});
    if (says("Cannot exceed")) TypeAmount(clerk, counter::kMultiple, {"0", 0});
    if (says("Topup more")) TypeAmount(clerk, counter::kTopTerm, {"1", 10000});
    if (says("Same Receipt")) TypeReceipt(clerk, "");
    for (std::size_t i = 0; i < counter::kBoxes; ++i) {
      if (told == counter::kRules[i].invalid) TypeAmount(clerk, static_cast<Box>(i), {"0", 0});
    }
    if (says("ayment")) {
      const Sen due = std::max<Sen>(clerk.model.entry.payable, 1);
      TypeAmount(clerk, counter::kPay, As(std::clamp<Sen>(clerk.model.old_balance, 0, due)));
    }
  }

  // --- the press of the button and what stands behind it

  std::vector<std::string> BoxTexts(const PaymentFrm& screen) {
    std::vector<std::string> texts;
    for (const Control* control : screen.controls()) {
      if (control->type() == ControlType::text_box || control->type() == ControlType::combo_box) {
        texts.push_back(control->name() + "=" + control->Text());
      }
    }
    return texts;
  }

  bool Press(Clerk& clerk, const Answers& answers) {
    if (!held_) return false;
    const std::string before = Everything();
    const std::vector<std::string> typed = BoxTexts(*clerk.screen);
    const std::optional<std::string> refused = clerk.model.Press(answers);
    Note("press: " + refused.value_or("stored"));
    desk_.told.clear();
    desk_.asked.clear();
    desk_.answers = answers;
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    const std::vector<std::string>& asked = clerk.model.asked;
    if (!std::equal(asked.begin(), asked.end(), desk_.asked.begin(), desk_.asked.end(),
                    [](const auto& begins, const auto& is) { return is.starts_with(begins); })) {
      Fault(fmt::format("asked {}, should be {}", fmt::join(desk_.asked, "; "),
                        fmt::join(asked, "; ")));
    }
    for (const std::string& question : asked) ++told[WithoutFigures(question)];
    if (main().InTransaction()) Fault("a transaction is left open");
    if (!refused) {
      Told("the press", clerk.model.is_new() ? "Payment ID " : "Loan ID ");
      ++checked[clerk.model.mode];
      Compare(clerk.model.loan);
      return held_;
    }
    clerk.model.refused_for = *refused;
    Told("the press", *refused);
    ++told[WithoutFigures(*refused)];
    // A failed delete has the loan rebuilt all the same.
    if (!clerk.model.is_delete() || !clerk.model.loan->CutAnew()) {
      Same("a refused press changes no row", Everything(), before);
    }
    // A blank box may have taken its default; what was typed stands where it stood.
    const std::vector<std::string> after = BoxTexts(*clerk.screen);
    for (std::size_t i = 0; i < typed.size(); ++i) {
      // The charges are looked for anew with a date that was handed over.
      if (typed[i].starts_with("WaivedAmt=")) continue;
      if (!typed[i].ends_with("=")) Same("a refused press changes no box", after[i], typed[i]);
    }
    Same("LampiranStatus", clerk.screen->LampiranStatus.text(), clerk.model.group);
    CompareWaived(clerk);
    return false;
  }

  static std::string WithoutFigures(std::string text) {
    std::erase_if(text, [](char c) { return c == '.' || c == ',' || (c >= '0' && c <= '9'); });
    return text;
  }

  std::array<Clerk, 4> clerks_;
};

}  // namespace kaunter
