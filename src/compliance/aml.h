// Money laundering: the rules of a company, the cash thresholds of loans and payments, and the
// codes of their reasons. screening.h looks identities up in the watch list.
//
// All of it sleeps while the office's setting AMLA is off.
#pragma once

#include <string>
#include <string_view>

#include "platform/money.h"

namespace kaunter {

class Session;
class ComboBox;
class Connection;
struct AMLSettings;

// Reads the rules of the company into session.aml; true when the company takes part. A company that
// is not found leaves the earlier rules in place and gives false, and so does an office that has
// switched the feature off, without asking the database. Throws SqlError.
bool LoadAMLSettings(Session& session, std::string_view comp_code);

// A name as the list prints it: no blanks at its ends, one between words.
std::string TidyText(std::string_view text);

// Fills the list with the codes that records of `table` (LoanMast, PaymentMast) carry and those set
// up for the kind `sid` ("LOAN", "PAYMENT"), each once. What stands in the box stays. Throws
// SqlError.
void FillReasonCodes(ComboBox& box, Connection& main, std::string_view table, std::string_view sid,
                     bool with_blank);

struct ThresholdDecision {
  enum class Act {
    nothing,
    warn,           // show the text, go on
    demand_reason,  // show the text, stop on the box AMLACode
    take_default,   // the reason is the office's default: no text, go on
  };
  Act act = Act::nothing;
  std::string text;  // for a box with the title kThresholdTitle
};
inline constexpr std::string_view kThresholdTitle = "AML/CFT Alert";

// What a save has to do about the cash threshold of the company, which must be exceeded strictly.
// `reason` is what stands in AMLACode; `default_reason` the office's setting AutoLoanPurpose, which
// stands in for a blank one.
ThresholdDecision JudgeLoan(const AMLSettings& aml, Money amount, std::string_view reason,
                            std::string_view default_reason);
// `amount` is PayAmt + IntAmt + CollectorAmt + ChargeAmt - DiscAmt. A payment has no default
// reason.
ThresholdDecision JudgePayment(const AMLSettings& aml, Money amount, std::string_view reason);

}  // namespace kaunter
