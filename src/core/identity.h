// What an identity number and a mobile number tell.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

// The mask of a new IC.
inline constexpr std::string_view kNewIcMask = "######-##-####";

// Twelve digits in the mask's form.
bool IsNewIc(std::string_view text);
// Twelve plain digits get the mask; any other text stays as it is.
std::string MaskNewIc(std::string_view text);
// The date of birth of a new IC as dd-mm-yyyy: digits 5-6, 3-4 and 1-2 are day, month and year; 00
// to 29 lie in the 2000s. Nothing when that is no date: day and month are never swapped.
std::optional<std::string> BirthDateOfIc(std::string_view new_ic);

// "012-345 6789" and "+6012 3456789" give "60123456789"; "" for anything that is not digits then.
std::string NormaliseMobile(std::string_view number);

}  // namespace kaunter
