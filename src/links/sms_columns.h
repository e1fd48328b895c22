// The columns of the grid of SMSfrm.
#pragma once

namespace kaunter::sms {

enum Column {
  kNo,
  kCustID,
  kCompCode,
  kCustName,
  kHP,
  kLoanID,
  kStatus,
  kDueDate,
  kDueAmt,
  kContent,
  kLoanAmt,
  kLoanDate,
  kInstallmentAmt,
  kLoanBal,
  kDOB,
  kTel,
  kCompHP,
  kArea,
  kMessages,
  kRemark
};
// Of failed messages: the same up to the status.
enum FailedColumn { kDateSent = kStatus + 1, kSentBy, kFailedContent, kID };

}  // namespace kaunter::sms
