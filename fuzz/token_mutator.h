// Changes a text word by word: whole words, numbers, quoted texts and signs are left out, doubled,
// swapped or replaced by ones seen in other inputs. A mutation of single bytes rarely leaves a
// statement that gets past the parser; one of these often does.
#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class TokenMutator {
 public:
  std::string Mutate(std::string_view text, unsigned seed);

 private:
  static std::vector<std::string_view> Split(std::string_view text);
  void Remember(const std::vector<std::string_view>& tokens, std::mt19937& random);

  std::vector<std::string> seen_;
};

}  // namespace kaunter
