// What a customer must tell before it is stored, in the order in which a clerk meets it. Without a
// screen: a customer that comes out of a file passes the same checks.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "core/refusal.h"

namespace kaunter {

struct Settings;

// What must be there, of a company besides, and that dates are dates.
std::optional<Refusal> CheckCustomerBoxes(const RecordTexts& text);
// Incomes are numbers, or blank.
std::optional<Refusal> CheckCustomerNumbers(const RecordTexts& text);
// What the office's setting IDEAL asks for besides.
std::optional<Refusal> CheckIdealBoxes(const Settings& settings, const RecordTexts& text);
// A new IC tells a date of birth.
std::optional<Refusal> CheckNewIc(std::string_view column, std::string_view ic);

// What a blank figure stands for.
struct BlankFigure {
  std::string_view column;
  std::string_view value;
};
inline constexpr std::array<BlankFigure, 4> kCustomerBlanks = {{{"CustCompIncome", "0.00"},
                                                                {"CustSpouseCompIncome", "0.00"},
                                                                {"CustChild", "0"},
                                                                {"CreditLimit", "0.00"}}};

}  // namespace kaunter
