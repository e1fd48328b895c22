// An office with two loans, and a counter at which charges are written, changed and taken back.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "core/schema_text.h"
#include "tests/loans/loan_office.h"

namespace kaunter {

class ChargeCounter : public ::testing::Test, protected LoanOffice {
 protected:
  ChargeCounter() {
    MakeLoan(kLoan, LoanScheme::kPersonal, "1200", "12");
    MakeLoan(kOther, LoanScheme::kPersonal, "600", "6");
    office.session.AllowEdit = office.session.AllowDelete = true;
    office.session.MsgTitle = "Title";
    counter.can_show = "*";
  }

  std::string LastMessage() { return counter.messages.empty() ? "" : counter.messages.back(); }
  std::string LastQuestion() { return counter.questions.empty() ? "" : counter.questions.back(); }
  std::function<void()> Click(Screen& screen, Button& button) {
    return [&] { screen.Guard([&] { button.Click(); }); };
  }

  void AddCharge(const std::string& id, const std::string& kind, const std::string& date,
                 const std::string& amount, const std::string& loan = kLoan) {
    office.Run(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,TrxDate,DueDate,LoanID,CustID,CompCode,ChargeAmt,OrgAmt,"
        "LateInt,PType) VALUES ('{}','{}','2024-01-31','{}','HQ0001','HQ',{},0,18,'{}')",
        id, date, loan, amount, kind));
  }
  // What the loan says that was charged and paid.
  std::string Totals(const std::string& loan = kLoan) {
    return Lines("SELECT TotCollectorAmt,TotInt FROM LoanMast WHERE LoanID='" + loan + "'");
  }

  static inline const std::string kLoan = "HQ0001-001";
  static inline const std::string kOther = "HQ0001-002";
  AgreeingDesk counter;
};

}  // namespace kaunter
