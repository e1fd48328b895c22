#include "desktop/typed_sum.h"

#include <string>

namespace kaunter {
namespace {

constexpr std::string_view kSpace = " \t";

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

std::optional<Money> Amount(std::string_view text) {
  text = Trimmed(text);
  return text.empty() ? std::nullopt : Money::TryText(text);
}

std::optional<Money> Product(std::string_view text) {
  const auto sign = text.find('*');
  const std::optional<Money> first = Amount(text.substr(0, sign));
  if (!first || sign == std::string_view::npos) return first;
  const std::optional<Money> rest = Product(text.substr(sign + 1));
  return rest ? std::optional(*first * *rest) : std::nullopt;
}

}  // namespace

std::optional<Money> TypedSum(std::string_view text) {
  text = Trimmed(text);
  // A sign in front is the amount's own.
  if (text.find_first_of("+-*", 1) == std::string_view::npos) return std::nullopt;
  Money sum;
  std::size_t from = 0;
  bool minus = false;
  while (true) {
    const std::size_t to = text.find_first_of("+-", from == 0 ? 1 : from);
    const std::optional<Money> part = Product(text.substr(from, to - from));
    if (!part) return std::nullopt;
    sum += minus ? -*part : *part;
    if (to == std::string_view::npos) return sum;
    minus = text[to] == '-';
    from = to + 1;
  }
}

}  // namespace kaunter
