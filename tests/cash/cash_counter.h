// An office with two companies and a loan in each, and a desk at which expenses and suppliers are
// entered.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/password_screens.h"
#include "tests/loans/loan_office.h"

namespace kaunter {

class CashDesk : public AgreeingDesk {
 public:
  bool Ask(std::string_view title, std::string_view text) override {
    AgreeingDesk::Ask(title, text);
    if (meanwhile) meanwhile();
    return agrees && !text.starts_with(refused);
  }
  void ShowModal(Screen& screen) override {
    if (dynamic_cast<frmUserSignIn*>(&screen) != nullptr) ++asked_manager;
  }
  void Show(std::string_view screen) override { shown.emplace_back(screen); }
  bool CanShow(std::string_view) const override { return true; }

  std::string refused = "-";        // questions that begin so get a no
  std::function<void()> meanwhile;  // what happens while a question stands
  int asked_manager = 0;
  std::vector<std::string> shown;
};

class CashCounter : public ::testing::Test, protected LoanOffice {
 protected:
  CashCounter() {
    MakeLoan("HQ0001-001", LoanScheme::kPersonal, "1200", "12");
    office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('KL','KL')");
    office.session.MsgTitle = "T";
  }

  template <typename Box>
  static void Put(Box& box, const std::string& text) {
    box.Enter();
    if constexpr (std::is_same_v<Box, ComboBox>) {
      box.SetText(text);
    } else {
      ASSERT_TRUE(box.Type(text)) << box.name();
    }
    box.screen().Guard([&] { box.Leave(); });
  }
  // What a press of the button asks and tells.
  std::string Press(Button& button) {
    counter.messages.clear();
    counter.questions.clear();
    button.screen().Guard([&] { button.Click(); });
    std::string all;
    for (const std::string& text : counter.questions) all += "?" + text + "|";
    for (const std::string& text : counter.messages) all += text + "|";
    return all;
  }

  CashDesk counter;
};

}  // namespace kaunter
