#include "core/statement_places.h"

#include "core/texts.h"

namespace kaunter {

std::size_t FindPlace(std::string_view text, std::string_view place, std::size_t from) {
  for (std::size_t at = text.find('@', from); at != std::string_view::npos;
       at = text.find('@', at + 1)) {
    if (SameText(text.substr(at, place.size()), place)) return at;
  }
  return std::string_view::npos;
}

std::string WithPlacesFilled(std::string_view text,
                             const std::vector<std::pair<std::string_view, std::string>>& places) {
  std::string filled;
  std::size_t done = 0;
  for (;;) {
    std::size_t next = std::string_view::npos;
    const std::pair<std::string_view, std::string>* found = nullptr;
    for (const auto& place : places) {
      const std::size_t at = FindPlace(text, place.first, done);
      if (at >= next) continue;
      next = at;
      found = &place;
    }
    if (found == nullptr) return filled.append(text.substr(done));
    filled.append(text.substr(done, next - done)).append(found->second);
    done = next + found->first.size();
  }
}

}  // namespace kaunter
