#include "fuzz/token_mutator.h"

#include <algorithm>
#include <cctype>

namespace kaunter {
namespace {

constexpr std::size_t kMostSeen = 4000;

bool IsWord(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || (c & 0x80) != 0;
}

}  // namespace

std::vector<std::string_view> TokenMutator::Split(std::string_view text) {
  std::vector<std::string_view> tokens;
  while (!text.empty()) {
    std::size_t length = 1;
    if (text[0] == '\'' || text[0] == '"') {
      const std::size_t end = text.find(text[0], 1);
      length = end == std::string_view::npos ? text.size() : end + 1;
    } else if (IsWord(text[0])) {
      while (length < text.size() && IsWord(text[length])) ++length;
    }
    tokens.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return tokens;
}

void TokenMutator::Remember(const std::vector<std::string_view>& tokens, std::mt19937& random) {
  if (tokens.empty()) return;
  const std::string token(tokens[random() % tokens.size()]);
  if (token.size() > 60 || std::find(seen_.begin(), seen_.end(), token) != seen_.end()) return;
  if (seen_.size() < kMostSeen) {
    seen_.push_back(token);
  } else {
    seen_[random() % seen_.size()] = token;
  }
}

std::string TokenMutator::Mutate(std::string_view text, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string_view> tokens = Split(text);
  for (int i = 0; i < 4; ++i) Remember(tokens, random);
  const auto any = [&](std::size_t size) { return static_cast<std::size_t>(random() % size); };
  std::vector<std::string> kept(tokens.begin(), tokens.end());
  const int rounds = 1 + static_cast<int>(random() % 4);
  for (int round = 0; round < rounds; ++round) {
    if (kept.empty()) kept.emplace_back("SELECT");
    const std::size_t at = any(kept.size());
    const auto place = kept.begin() + static_cast<std::ptrdiff_t>(at);
    switch (random() % 6) {
      case 0:
        kept.erase(place);
        break;
      case 1: {  // a run of words once more, elsewhere
        const std::size_t length = std::min<std::size_t>(1 + any(8), kept.size() - at);
        const std::vector<std::string> run(place, place + static_cast<std::ptrdiff_t>(length));
        kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(any(kept.size() + 1)), run.begin(),
                    run.end());
        break;
      }
      case 2:
        std::swap(kept[at], kept[any(kept.size())]);
        break;
      case 3:
        if (!seen_.empty()) kept.insert(place, " " + seen_[any(seen_.size())] + " ");
        break;
      default:
        if (!seen_.empty()) kept[at] = seen_[any(seen_.size())];
    }
  }
  std::string mutated;
  for (const std::string& token : kept) mutated += token;
  return mutated;
}

}  // namespace kaunter
