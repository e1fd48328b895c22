// An office with a loan, and payments that are stored as the screens store them.
#pragma once

#include <gtest/gtest.h>

#include "collections/payment_store.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"
#include "tests/loans/loan_office.h"

namespace kaunter {

inline const std::string kLoan = "HQ0001-001";

class PaymentTest : public ::testing::Test, protected LoanOffice {
 protected:
  static Money Rm(std::string_view text) { return Money::FromText(text); }

  static Payment Of(const std::string& amount, const std::string& date = "31-01-2024",
                    const std::string& loan = kLoan) {
    Payment payment;
    payment.LoanID = loan;
    payment.CustID = "HQ0001";
    payment.CompCode = "HQ";
    payment.PayDate = date;
    payment.PayAmt = payment.InstalAmt = Rm(amount);
    return payment;
  }

  // The write in a transaction of its own.
  void Whole(const std::function<void()>& write) {
    Transaction transaction(main());
    write();
    transaction.Commit();
  }
  // As a screen does it: a failure is told and goes no further.
  void Tried(const std::function<void()>& write) {
    try {
      Whole(write);
    } catch (const std::exception& failure) {
      told = failure.what();
    }
  }
  void Rebuild(const std::string& loan = kLoan) {
    RebuildAndTell(office.session, desk, loan, "HQ0001");
  }
  Payment Store(Payment payment) {
    Whole([&] { CreatePayment(office.session, payment); });
    Rebuild(payment.LoanID);
    return payment;
  }
  Payment Read(const std::string& pay_id) { return ReadPayment(main(), pay_id).value(); }

  std::string told;
};

}  // namespace kaunter
