// Which texts are numbers: one grammar for amounts, rates and counts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

// Takes a sign, digits with one point, commas between the digits before the point and blanks around
// it all. Gives the bare number (a minus, digits, the point), as typed but for commas, blanks and a
// plus; nothing for any other text, so no exponents and no letters.
std::optional<std::string> ReadNumberText(std::string_view text);

}  // namespace kaunter
