// The names of a list, found by a name that is similar. The rule, for two forms of names:
//
//   1. the same words, in any order, or
//   2. the same letters in them, written together or apart, or
//   3. the same words in the same order, but that one leaves out weak ones (Muhammad, Abdul, an
//      initial ...), with two others at least, or
//   4. all words of the one but weak ones, three at least, among those of the other.
//
// Titles, "bin", "a/l" and their like never count. A form of weak words alone is like one of the
// same words, if they are two. Each find tells its reason.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "compliance/name_words.h"
#include "screen/caption.h"

namespace kaunter {

struct NameHit {
  std::size_t entry;  // position among the names of the list
  Caption reason;
};

// Puts more behind a reason.
void AddReason(Caption& reason, const Caption& more);

class NameIndex {
 public:
  explicit NameIndex(const std::vector<std::string>& names);

  // By position, each entry once.
  std::vector<NameHit> Find(std::string_view name) const;

 private:
  using Positions = std::vector<std::uint32_t>;
  struct Form {
    std::uint32_t entry;
    NameForm form;
    std::vector<std::uint32_t> strong;  // numbers of its words, sorted
    std::uint64_t mask = 0;             // a bit for each of them
  };
  struct Asked;

  std::uint32_t NumberOf(const std::string& key);
  void Add(std::uint32_t entry, NameForm form);
  void FindParts(const Asked& asked, std::vector<std::pair<std::uint32_t, int>>& found) const;

  std::vector<Form> forms_;
  std::unordered_map<std::string, std::uint32_t> numbers_;  // of words
  std::unordered_map<std::string, Positions> by_words_;
  std::unordered_map<std::string, Positions> by_letters_;
  std::unordered_map<std::string, Positions> by_strong_;
  std::vector<Positions> of_word_;      // forms that have this strong word
  std::vector<Positions> rarest_word_;  // forms whose rarest strong word this is
};

}  // namespace kaunter
