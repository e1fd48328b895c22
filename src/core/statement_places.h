// Places in a statement that is kept as a text, "@FromDate" and its like, which are filled when it
// runs.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kaunter {

// Where the place stands, without regard to case; npos when it does not.
std::size_t FindPlace(std::string_view text, std::string_view place, std::size_t from = 0);

// The text with each place filled, in one walk: a value that looks like a place is none.
std::string WithPlacesFilled(std::string_view text,
                             const std::vector<std::pair<std::string_view, std::string>>& places);

}  // namespace kaunter
