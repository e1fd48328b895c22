// A counter at which payments are typed: a personal and a flexi loan, both drawn, a desk that keeps
// what it was told, asked and given to print, and a manager who signs in or not.
//
// The personal loan has twelve instalments of 112.00 (100 capital, 12 interest), 1,344.00 in all.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "collections/payment_frm.h"
#include "tests/loans/loan_office.h"

namespace kaunter {

class PaymentCounter : public ::testing::Test, protected LoanOffice {
 protected:
  PaymentCounter() {
    Lend();
    counter.on_show = [this] {
      const Session& session = office.session;
      selection = session.HandOverSelection;
      handed_over =
          session.HandOverCustID + " " + session.HandOverLoanID + " " + session.PickerExtra;
    };
  }

  void Lend() {
    MakeLoan(kPersonal, LoanScheme::kPersonal, "1200", "12");
    MakeLoan(kFlexi, LoanScheme::kFlexi, "1200", "12");
    office.Run("UPDATE LoanMast SET PayOutAmt=1200,DepositAmt2=50,TotCollectorAmt=0,TotInt=0");
    office.session.AllowEdit = office.session.AllowDisc = true;
  }

  std::unique_ptr<PaymentFrm> Open(const std::string& mode, const std::string& loan = {},
                                   const std::string& payment = {}) {
    office.session.CallerTag = mode;
    office.session.HandOverLoanID = loan;
    office.session.PickerExtra = payment;
    counter.messages.clear();
    counter.questions.clear();
    auto screen = std::make_unique<PaymentFrm>(office.session, counter);
    screen->Load();
    return screen;
  }
  std::unique_ptr<PaymentFrm> New(const std::string& loan = kPersonal) {
    return Open("New Payment", loan);
  }
  template <typename Box>
  static void Put(Box& box, const std::string& text) {
    box.Enter();
    Place(box, text);
    box.screen().Guard([&] { box.Leave(); });
  }
  void Save(PaymentFrm& screen) {
    counter.messages.clear();
    counter.questions.clear();
    screen.Guard([&] { screen.SaveCmd.Click(); });
  }
  // A payment stored through the screen; its id.
  std::string Store(const std::string& total, const std::string& date = "31-01-2024",
                    const std::string& loan = kPersonal) {
    auto screen = New(loan);
    Put(screen->PayDate, date);
    Put(screen->TotPay, total);
    Save(*screen);
    EXPECT_FALSE(screen->SaveCmd.enabled()) << Said();
    return screen->PayID.text();
  }
  // All that was asked and told since the last Open or Save, under its titles.
  std::string Said() {
    std::string all;
    for (const std::string& text : counter.questions) all += "?" + text + "|";
    for (const std::string& text : counter.messages) all += text + "|";
    return all;
  }
  std::string LastMessage() { return counter.messages.empty() ? "" : counter.messages.back(); }
  std::string Payments() {
    return Lines("SELECT PayID,PayAmt,InstalAmt,PayExtra,IntAmt FROM PaymentMast ORDER BY PayID");
  }
  void Late(const std::string& id, const std::string& date, const std::string& amount,
            const std::string& loan = kPersonal) {
    office.Run(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,DueDate,ChargeAmt,OrgAmt,"
        "PType) VALUES ('{}','{}','HQ0001','HQ','{}','2024-01-31',{},0,'Batch')",
        id, loan, date, amount));
  }

  static inline const std::string kPersonal = "HQ0001-001";
  static inline const std::string kFlexi = "HQ0001-002";
  AgreeingDesk counter;
  std::string selection, handed_over;  // with the screen shown last

 private:
  static void Place(TextBox& box, const std::string& text) {
    ASSERT_TRUE(box.Type(text)) << box.name();
  }
  static void Place(ComboBox& box, const std::string& text) {
    ASSERT_TRUE(box.Pick(text)) << box.name();
  }
};

}  // namespace kaunter
