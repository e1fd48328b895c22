// Four screens of the payment counter that stay open, each with the second model of what stands on
// it, and the clerks who type into them.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "collections/payment_frm.h"
#include "tests/collections/counter_office.h"

namespace kaunter {

using counter::Box;
using counter::Dashed;
using counter::Typed;
using counter::Verdict;

inline constexpr std::array<TextBox PaymentFrm::*, counter::kBoxes> kBoxesOfScreen = {
    &PaymentFrm::TotPay,  &PaymentFrm::PayAmt,    &PaymentFrm::InstalAmt,    &PaymentFrm::PayExtra,
    &PaymentFrm::IntAmt,  &PaymentFrm::ChargeAmt, &PaymentFrm::CollectorAmt, &PaymentFrm::DiscAmt,
    &PaymentFrm::Memo5,   &PaymentFrm::MPayment,  &PaymentFrm::SalesmanComm, &PaymentFrm::TopAmt,
    &PaymentFrm::TopTerm, &PaymentFrm::TopUpAmt};

struct Counted {
  int histories = 0, typed = 0, pressed = 0, refused = 0, stored = 0, changed = 0, deleted = 0;
  int taken_back = 0;
  std::map<std::string, int> told;  // how often each refusal was met, without its figures
};

class CounterClerks : protected CounterOffice {
 public:
  Counted counted;

 protected:
  // A screen and what should stand on it.
  struct Clerk {
    std::unique_ptr<PaymentFrm> screen;
    counter::Counter model;
  };
  enum Who { kNew, kOther, kEdit, kDelete };

  // --- at the screen

  Clerk& Opened(Who who) {
    Clerk& clerk = clerks_[who];
    if (clerk.screen == nullptr || OneIn(12)) return Reopened(who, "");
    clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    clerk.model.Start(company_, kModes[who]);
    return clerk;
  }
  Clerk& Reopened(Who who, const std::string& loan) {
    Clerk& clerk = clerks_[who];
    if (clerk.screen != nullptr) clerk.screen->Close();
    office_.session.CallerTag = kModes[who];
    office_.session.HandOverLoanID = loan;
    office_.session.PickerExtra.clear();
    desk_.messages.clear();
    clerk.screen = std::make_unique<PaymentFrm>(office_.session, desk_);
    clerk.screen->Guard([&] { clerk.screen->Load(); });
    clerk.model.Start(company_, kModes[who]);
    return clerk;
  }

  template <typename AnyBox>
  void Put(AnyBox& box, const std::string& text) {
    box.Enter();
    Place(box, text);
    box.screen().Guard([&] { box.Leave(); });
    ++counted.typed;
  }
  void Place(TextBox& box, const std::string& text) {
    if (!box.Type(text)) Fault(box.name() + " does not take " + text);
  }
  void Place(ComboBox& box, const std::string& text) {
    if (!box.Pick(text)) Fault(box.name() + " does not take " + text);
  }
  std::string LastTold() { return desk_.messages.empty() ? "" : desk_.messages.back(); }
  void Told(const std::string& where, const std::string& should_be) {
    const std::string is = LastTold();
    if (should_be.empty() ? !is.empty() : !is.starts_with(should_be)) {
      Fault(fmt::format("{} told \"{}\", should be \"{}\"", where, is, should_be));
    }
  }

  bool BringLoan(Clerk& clerk, Loan& loan) {
    Note(fmt::format("{} on {} (balance {})", clerk.model.mode, loan.id,
                     counter::Shown(loan.ledger.balance)));
    desk_.messages.clear();
    Put(clerk.screen->LoanID, OneIn(5) ? " " + loan.id + " " : loan.id);
    Told("loan", clerk.model.OpenLoan(loan));
    CompareBoxes(clerk);
    return held_ && clerk.model.enabled;
  }
  bool BringPayment(Clerk& clerk, Loan& loan, const std::string& pay_id) {
    Note(fmt::format("{} of {}", clerk.model.mode, pay_id));
    clerk.screen->Guard([&] { clerk.screen->CmdClear.Click(); });
    clerk.model.Start(company_, clerk.model.mode);
    desk_.messages.clear();
    Put(clerk.screen->PayID, pay_id);
    Told("payment", "");
    clerk.model.OpenPayment(loan, *loan.Find(pay_id));
    CompareBoxes(clerk);
    return held_;
  }

  // The amounts on the screen are those of the model.
  void CompareBoxes(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    for (const Box box : {counter::kPay, counter::kInstal, counter::kExtra, counter::kInterest}) {
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
  }

  void TypeAmount(Clerk& clerk, Box which, const Typed& typed) {
    TextBox& box = *clerk.screen.*kBoxesOfScreen[which];
    if (box.locked() != clerk.model.Locked(which)) Fault(box.name() + " is locked or is not");
    if (box.locked() || !held_) return;
    Note(fmt::format("{} \"{}\"", box.name(), typed.text));
    desk_.messages.clear();
    Put(box, typed.text);
    const std::string told = clerk.model.Leave(which, typed);
    Told(box.name(), told);
    if (!told.empty()) Same(box.name(), box.text(), clerk.model.box[which].text);
    CompareBoxes(clerk);
  }
  void TypeCheque(Clerk& clerk, const std::string& no) {
    if (!held_) return;
    Note("ChqNo " + no);
    desk_.messages.clear();
    Put(clerk.screen->ChqNo, no);
    Told("ChqNo", clerk.model.LeaveCheque(no));
    CompareBoxes(clerk);
  }
  void TypeReceipt(Clerk& clerk, const std::string& number) {
    Note("ReceiptNo " + number);
    Put(clerk.screen->ReceiptNo, number);
    clerk.model.receipt = number;
  }
  void TypeDate(Clerk& clerk, const std::string& text, const std::optional<Day>& day) {
    if (!held_) return;
    desk_.answers.holiday = !OneIn(3);
    Note(fmt::format("PayDate {}{}", text, desk_.answers.holiday ? "" : ", not on a holiday"));
    desk_.messages.clear();
    Put(clerk.screen->PayDate, text);
    clerk.model.TypeDate(text, day);
    std::string told = clerk.model.LeaveDate(desk_.answers);
    Told("PayDate", told == "?" ? "" : told);
    Same("PayDate", clerk.screen->PayDate.text(), text);
  }

  // --- what is typed

  Typed As(Sen sen) {
    const std::string plain = Text(sen);
    switch (Between(0, 9)) {
      case 0:
        return {" " + plain + " ", sen * 100};
      case 1:
      case 2:
        return {counter::Shown(sen), sen * 100};
      case 3:
        if (sen >= 0 && sen % 100 == 0) return {plain + ".005", sen * 100 + 50};
        return {plain, sen * 100};
      default:
        return {plain, sen * 100};
    }
  }
  Typed Wrong() {
    static const Typed kWrong[] = {
        {"abc", 0, false}, {"1O0", 0, false}, {"1e3", 0, false}, {"12..5", 0, false},
        {"1';", 0, false}, {"-5", -50000},    {"-0.01", -100},   {"", 0}};
    return kWrong[Between(0, 7)];
  }
  Typed DrawTyped(const counter::Counter& on, Box which) {
    if (OneIn(14)) {
      const Typed wrong = Wrong();
      // A count has room for four signs.
      if (wrong.text.size() <= 4) return wrong;
    }
    const Sen balance = std::max<Sen>(on.old_balance, 1);
    switch (which) {
      case counter::kTotal:
      case counter::kPay:
        switch (Between(0, 11)) {
          case 0:
            return As(balance);
          case 1:
            return As(balance + 1);
          case 2:
            return As(0);
          case 3:
            return As(std::max<Sen>(on.Limit(), 0) + Between(0, 1));
          case 4:
            return As(std::max<Sen>(on.outstanding, 0) + Between(0, 1));
          case 5:
          case 6:
          case 7:
            return As(std::max<Sen>(on.entry.payable, 0));
          default:
            return As(Between(1, balance / (OneIn(2) ? 1 : 4)));
        }
      case counter::kInstal:
      case counter::kExtra:
        return As(Between(0, on.box[counter::kPay].sen() + (OneIn(6) ? 1 : 0)));
      case counter::kInterest:
        return As(Between(OneIn(5) ? -500 : 0, OneIn(3) ? on.outstanding : 5000));
      case counter::kRefund:
        return As(Between(0, OneIn(3) ? 60000 : on.loan->deposit));
      case counter::kMultiple:
      case counter::kTopTerm: {
        const auto count = Between(0, which == counter::kTopTerm ? 3 : 6);
        return {std::to_string(count), count * 10000};
      }
      default:
        return As(Between(0, 20000));
    }
  }

  void TypeDay(Clerk& clerk) {
    const Loan& loan = *clerk.model.loan;
    switch (Between(0, 14)) {
      case 0:
        TypeDate(clerk, OneIn(2) ? "31-02-2024" : "tomorrow", std::nullopt);
        return;
      case 1:
        TypeDate(clerk, "", std::nullopt);
        return;
      case 2: {
        const Day before{loan.lent.year, loan.lent.month, 19};
        TypeDate(clerk, Dashed(before), before);
        return;
      }
      case 3:
        TypeDate(clerk, Dashed(loan.lent), loan.lent);
        return;
      case 4:
        if (model::NotBefore(company_.holiday, loan.lent)) {
          TypeDate(clerk, Dashed(company_.holiday), company_.holiday);
          return;
        }
        [[fallthrough]];
      default: {
        const Day day = AnyDay(loan);
        TypeDate(clerk, Dashed(day), day);
      }
    }
  }

  void TypeSome(Clerk& clerk) {
    const counter::Counter& on = clerk.model;
    const auto type = [&](Box box) { TypeAmount(clerk, box, DrawTyped(clerk.model, box)); };
    if (on.date.empty() ? !OneIn(20) : OneIn(4)) TypeDay(clerk);
    if (OneIn(8)) TypeCheque(clerk, fmt::format("CHQ{}", Between(1, 3)));
    switch (Between(0, 5)) {
      case 0:
      case 1:
        type(on.is_new() ? counter::kTotal : counter::kPay);
        break;
      case 2:
        type(counter::kPay);
        break;
      case 3:
        type(counter::kPay);
        type(OneIn(2) ? counter::kInstal : counter::kExtra);
        break;
      case 4:
        type(OneIn(2) ? counter::kInterest : counter::kRefund);
        break;
      default:
        for (int i = 0; i < 4; ++i) type(static_cast<Box>(Between(0, counter::kBoxes - 1)));
    }
    for (int box = counter::kInterest; box < counter::kBoxes; ++box) {
      if (OneIn(14)) type(static_cast<Box>(box));
    }
    if (OneIn(10)) {
      type(counter::kTopAmt);
      type(counter::kTopTerm);
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
    return choice[static_cast<std::size_t>(Between(0, static_cast<int>(choice.size()) - 1))];
  }

  Answers DrawAnswers() {
    return {.holiday = !OneIn(4), .confirm = !OneIn(10), .manager = OneIn(2)};
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
    if (told.find("ate") != std::string::npos && told.find("day") == std::string::npos) {
      const Day day = AnyDay(*clerk.model.loan);
      TypeDate(clerk, Dashed(day), day);
    }
    if (told.find("discount") != std::string::npos) {
      TypeAmount(clerk, counter::kDiscount, {"0", 0});
    }
    if (told.find("eposit") != std::string::npos) TypeAmount(clerk, counter::kRefund, {"", 0});
    if (told.starts_with("Cannot exceed")) TypeAmount(clerk, counter::kMultiple, {"0", 0});
    if (told.find("Topup more") != std::string::npos) {
      TypeAmount(clerk, counter::kTopTerm, {"1", 10000});
    }
    if (told.starts_with("Same Receipt")) TypeReceipt(clerk, "");
    for (int i = 0; i < counter::kBoxes; ++i) {
      if (told == counter::kRules[static_cast<std::size_t>(i)].invalid) {
        TypeAmount(clerk, static_cast<Box>(i), {"0", 0});
      }
    }
    if (told.find("ayment") != std::string::npos) {
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
    ++counted.pressed;
    const std::string before = bare_.Everything();
    const std::vector<std::string> typed = BoxTexts(*clerk.screen);
    const Verdict verdict = clerk.model.Press(answers);
    std::string failed;
    if (verdict.kind == Verdict::Kind::stored) {
      failed = clerk.model.is_delete() ? clerk.model.Delete() : clerk.model.Store();
    }
    const bool stored = verdict.kind == Verdict::Kind::stored && failed.empty();
    Note(fmt::format("press: {}", stored                                    ? "stored"
                                  : verdict.kind == Verdict::Kind::declined ? "declined"
                                  : verdict.kind == Verdict::Kind::dead     ? "dead"
                                  : failed.empty()                          ? verdict.told
                                                                            : failed));
    desk_.messages.clear();
    desk_.asked.clear();
    desk_.answers = answers;
    clerk.screen->Guard([&] { clerk.screen->SaveCmd.Click(); });
    if (main().InTransaction()) Fault("a transaction is left open");
    if (!stored) {
      ++counted.refused;
      const std::string told = verdict.told.empty() ? failed : verdict.told;
      clerk.model.refused_for = told;
      Told("the press", told == "?" ? "" : told);
      ++counted.told[WithoutFigures(told)];
      // A failed delete has the loan rebuilt all the same.
      if (!clerk.model.is_delete() || !clerk.model.loan->CutAnew()) {
        Same("a refused press changed rows", bare_.Everything(), before);
      }
      KeepsTyped(clerk, typed);
      return false;
    }
    Told("the press", clerk.model.is_new() ? "Payment ID " : "Loan ID ");
    ++(clerk.model.is_new()      ? counted.stored
       : clerk.model.is_delete() ? counted.deleted
                                 : counted.changed);
    Compare("behind the press", clerk.model.loan);
    return held_;
  }

  static std::string WithoutFigures(std::string text) {
    std::erase_if(text, [](char c) { return c == '.' || c == ',' || (c >= '0' && c <= '9'); });
    return text;
  }

  // A blank box may have taken its default; what was typed stands where it stood.
  void KeepsTyped(Clerk& clerk, const std::vector<std::string>& typed) {
    const std::vector<std::string> after = BoxTexts(*clerk.screen);
    for (std::size_t i = 0; i < typed.size(); ++i) {
      if (!typed[i].ends_with("=")) Same("a refused press changed a box", after[i], typed[i]);
    }
    Same("LampiranStatus", clerk.screen->LampiranStatus.text(), clerk.model.group);
  }

  static constexpr const char* kModes[] = {"New Payment", "New Payment", "Edit Payment",
                                           "Delete Payment"};

  std::array<Clerk, 4> clerks_;
};

}  // namespace kaunter
