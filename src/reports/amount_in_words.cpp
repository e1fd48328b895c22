#include "reports/amount_in_words.h"

#include <cstdint>
#include <utility>

namespace kaunter {
namespace {

constexpr const char* kSmall[] = {"ZERO",    "ONE",     "TWO",       "THREE",    "FOUR",
                                  "FIVE",    "SIX",     "SEVEN",     "EIGHT",    "NINE",
                                  "TEN",     "ELEVEN",  "TWELVE",    "THIRTEEN", "FOURTEEN",
                                  "FIFTEEN", "SIXTEEN", "SEVENTEEN", "EIGHTEEN", "NINETEEN"};
constexpr const char* kTens[] = {"",      "",      "TWENTY",  "THIRTY", "FORTY",
                                 "FIFTY", "SIXTY", "SEVENTY", "EIGHTY", "NINETY"};
constexpr std::pair<std::uint64_t, const char*> kScales[] = {{1'000'000'000'000, "TRILLION"},
                                                             {1'000'000'000, "BILLION"},
                                                             {1'000'000, "MILLION"},
                                                             {1'000, "THOUSAND"},
                                                             {100, "HUNDRED"}};

std::string Words(std::uint64_t number) {
  for (const auto& [scale, name] : kScales) {
    if (number < scale) continue;
    const std::string above = Words(number / scale) + " " + name;
    return number % scale == 0 ? above : above + " " + Words(number % scale);
  }
  if (number < 20) return kSmall[number];
  const std::string tens = kTens[number / 10];
  return number % 10 == 0 ? tens : tens + " " + kSmall[number % 10];
}

}  // namespace

std::string AmountInWords(Money amount) {
  const std::int64_t units = amount.ten_thousandths();
  // The smallest number of 64 bits has no positive twin: its size is taken in the unsigned type.
  const std::uint64_t size =
      units < 0 ? ~static_cast<std::uint64_t>(units) + 1 : static_cast<std::uint64_t>(units);
  const std::uint64_t sen = (size + 50) / 100;
  const std::string sign = units < 0 && sen > 0 ? "MINUS " : "";
  const std::string odd = sen % 100 > 0 ? "SEN " + Words(sen % 100) : "";
  if (sen > 0 && sen < 100) return sign + odd + " ONLY";
  std::string words = "RINGGIT MALAYSIA " + sign + Words(sen / 100);
  if (!odd.empty()) words += " AND " + odd;
  return words + " ONLY";
}

}  // namespace kaunter
