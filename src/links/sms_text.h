// The text of a short message: its placeholders, and what it takes on the way to a telephone.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

// In the order in which they are replaced: a value may hold what looks like a later one.
inline constexpr std::array<std::string_view, 17> kSmsPlaceholders = {"{Customer Name}",
                                                                      "{LoanID}",
                                                                      "{Due Date}",
                                                                      "{Due Amt}",
                                                                      "{Loan Amt}",
                                                                      "{Loan Date}",
                                                                      "{Installment Amt}",
                                                                      "{Loan Balance}",
                                                                      "{Company Name}",
                                                                      "{Day}",
                                                                      "{Month}",
                                                                      "{Year}",
                                                                      "{Today}",
                                                                      "{Staff Name}",
                                                                      "{DOB}",
                                                                      "{Company Tel}",
                                                                      "{Company HP}"};

// A value for each placeholder, in their order.
using SmsValues = std::array<std::string, kSmsPlaceholders.size()>;

// Placeholders are told by their exact letters; one that is not known stays as it is.
std::string FillSms(std::string text, const SmsValues& values);
// What stands in braces and is no placeholder, each once.
std::vector<std::string> UnknownPlaceholders(std::string_view text);

// What a text takes. In the letters of the telephone standard (GSM 03.38) a message has 160 places,
// a part of a longer one 153, and a few signs, the euro and brackets among them, take two; a text
// with any other letter goes as Unicode, 70 places or 67. A letter of two places is never parted.
struct SmsSize {
  bool unicode = false;
  int places = 0;
  int messages = 0;  // 0 for an empty text
};
SmsSize MeasureSms(std::string_view text);
// "84 characters, 1 message"; in Unicode says so, for that is dear.
Caption ShowSmsSize(const SmsSize& size);
Caption SmsTemplateNotFound(std::string_view id);
// "{Due Amount} is not known and stays as it is", "" when all are known.
Caption ShowUnknown(std::string_view text);

}  // namespace kaunter
