#include "compliance/name_index.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace kaunter {
namespace {

// The rules of the header, in their order.
enum Rule { kSameWords = 1, kTogetherOrApart, kWithoutWeak, kPart };

constexpr std::size_t kStrongBesideWeak = 2;
constexpr std::size_t kStrongInPart = 3;
constexpr std::size_t kMostTiles = 6;  // of a name of more words not each order is tried

std::size_t CountStrong(const NameForm& form) {
  return static_cast<std::size_t>(
      std::ranges::count_if(form.words, [](const NameWord& word) { return !word.weak; }));
}

// Weak words alone tell somebody apart when there are two of them: Ahmad bin Muhammad.
bool TellsApart(const NameForm& form) {
  constexpr std::size_t kWeakAlone = 2;
  return CountStrong(form) > 0 || std::ranges::count_if(form.words, [](const NameWord& word) {
                                    return word.key.size() > 1;
                                  }) >= static_cast<std::ptrdiff_t>(kWeakAlone);
}

std::vector<std::string> Keys(const NameForm& form) {
  std::vector<std::string> keys;
  for (const NameWord& word : form.words) keys.push_back(word.key);
  std::ranges::sort(keys);
  return keys;
}

std::string Joined(const std::vector<std::string>& keys) {
  std::string all;
  for (const std::string& key : keys) all.append(key).append(" ");
  return all;
}

std::string StrongInOrder(const NameForm& form) {
  std::string all;
  for (const NameWord& word : form.words) {
    if (!word.weak) all.append(word.key).append(" ");
  }
  return all;
}

// Of two forms that are alike but for weak words: one has all that the other has.
bool LeavesOut(const NameForm& a, const NameForm& b) {
  std::vector<std::string> some = Keys(a);
  std::vector<std::string> others = Keys(b);
  if (some.size() > others.size()) std::swap(some, others);
  return std::ranges::includes(others, some);
}

std::string SortedLetters(const NameForm& form) {
  std::string letters = form.together;
  std::ranges::sort(letters);
  return letters;
}

// The text is these words, each once, in some order.
bool IsTiled(std::string_view text, std::vector<std::string>& words) {
  if (text.empty()) return words.empty();
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (!text.starts_with(words[i])) continue;
    const std::string word = words[i];
    words.erase(words.begin() + static_cast<std::ptrdiff_t>(i));
    const bool rest = IsTiled(text.substr(word.size()), words);
    words.insert(words.begin() + static_cast<std::ptrdiff_t>(i), word);
    if (rest) return true;
  }
  return false;
}

// Of two forms with the same letters: one is the other's words in some order, some of them written
// together.
bool WrittenTogether(const NameForm& a, const NameForm& b) {
  if (a.together == b.together) return true;
  std::vector<std::string> some = Keys(a);
  std::vector<std::string> others = Keys(b);
  if (some.size() > kMostTiles || others.size() > kMostTiles) return false;
  if (some.size() > others.size()) std::swap(some, others);
  do {
    std::string text;
    for (const std::string& word : some) text += word;
    if (IsTiled(text, others)) return true;
  } while (std::next_permutation(some.begin(), some.end()));
  return false;
}

// --- the reason

// So many words that nobody would read on.
std::string Short(std::string list) {
  constexpr std::size_t kRead = 120;
  if (list.size() <= kRead) return list;
  const std::size_t end = list.rfind(", ", kRead);
  list.resize(end == std::string::npos ? 0 : end + 2);
  return list + "...";
}

// Takes the words that both have out of both; what differs in their spelling stands in `spelled`.
void TakeCommon(std::vector<NameWord>& mine, std::vector<NameWord>& theirs, std::string& spelled) {
  std::erase_if(mine, [&](const NameWord& word) {
    const auto same = std::ranges::find(theirs, word.key, &NameWord::key);
    if (same == theirs.end()) return false;
    if (same->shown != word.shown) {
      spelled += fmt::format("{}{} = {}", spelled.empty() ? "" : ", ", word.shown, same->shown);
    }
    theirs.erase(same);
    return true;
  });
}

Caption Explain(int rule, const NameForm& mine, const NameForm& theirs) {
  Caption reason;
  std::vector<NameWord> rest = mine.words;
  std::vector<NameWord> their_rest = theirs.words;
  std::string spelled;
  TakeCommon(rest, their_rest, spelled);
  std::string unlike;
  for (const auto* words : {&rest, &their_rest}) {
    for (const NameWord& word : *words) unlike += (unlike.empty() ? "" : ", ") + word.shown;
  }
  unlike = Short(unlike);
  spelled = Short(spelled);
  if (rule == kSameWords) {
    const bool in_order =
        std::ranges::equal(mine.words, theirs.words, {}, &NameWord::key, &NameWord::key);
    if (in_order) {
      reason = spelled.empty() ? Caption{"same name", "姓名相同"}
                               : Caption{"same name, spelled otherwise", "姓名相同，拼写不同"};
    } else {
      reason = {"same words in another order", "各词相同，次序不同"};
    }
  } else if (rule == kTogetherOrApart) {
    reason = {"same letters, written together or apart", "字母相同，连写或分写不同"};
  } else if (rule == kWithoutWeak) {
    reason = {"same name but for " + unlike, "除 " + unlike + " 外姓名相同"};
  } else if (rest.empty() || CountStrong(mine) < CountStrong(theirs)) {
    reason = {"the listed name has besides " + unlike, "名单上的姓名另有 " + unlike};
  } else {
    reason = {"the customer's name has besides " + unlike, "顾客姓名另有 " + unlike};
  }
  if (!spelled.empty()) AddReason(reason, {spelled, spelled});
  if (mine.left_out != theirs.left_out) {
    const std::string both = mine.left_out.empty()     ? theirs.left_out
                             : theirs.left_out.empty() ? mine.left_out
                                                       : mine.left_out + " / " + theirs.left_out;
    AddReason(reason, {"not counted: " + Short(both), "不计：" + Short(both)});
  }
  return reason;
}

}  // namespace

void AddReason(Caption& reason, const Caption& more) {
  if (!reason.english.empty()) {
    reason.english += "; ";
    reason.chinese += "；";
  }
  reason.english += more.english;
  reason.chinese += more.chinese;
}

struct NameIndex::Asked {
  std::vector<std::uint32_t> strong;  // of the list, sorted
  std::uint64_t mask = 0;
  bool all_known = true;  // the list has all its strong words
};

NameIndex::NameIndex(const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (NameForm& form : FormsOf(names[i])) Add(static_cast<std::uint32_t>(i), std::move(form));
  }
  rarest_word_.resize(of_word_.size());
  for (std::uint32_t i = 0; i < forms_.size(); ++i) {
    const auto& strong = forms_[i].strong;
    if (strong.size() < kStrongInPart) continue;
    rarest_word_[*std::ranges::min_element(strong, {}, [this](std::uint32_t word) {
      return of_word_[word].size();
    })].push_back(i);
  }
}

std::uint32_t NameIndex::NumberOf(const std::string& key) {
  const auto [found, is_new] = numbers_.emplace(key, static_cast<std::uint32_t>(of_word_.size()));
  if (is_new) of_word_.emplace_back();
  return found->second;
}

void NameIndex::Add(std::uint32_t entry, NameForm form) {
  if (!TellsApart(form)) return;
  const auto position = static_cast<std::uint32_t>(forms_.size());
  by_words_[Joined(Keys(form))].push_back(position);
  if (CountStrong(form) > 0) by_letters_[SortedLetters(form)].push_back(position);
  Form made{entry, std::move(form), {}, 0};
  for (const NameWord& word : made.form.words) {
    if (word.weak) continue;
    const std::uint32_t number = NumberOf(word.key);
    made.mask |= std::uint64_t{1} << number % 64;
    made.strong.push_back(number);
    // A name may have a word twice.
    if (of_word_[number].empty() || of_word_[number].back() != position) {
      of_word_[number].push_back(position);
    }
  }
  std::ranges::sort(made.strong);
  if (made.strong.size() >= kStrongBesideWeak) {
    by_strong_[StrongInOrder(made.form)].push_back(position);
  }
  forms_.push_back(std::move(made));
}

void NameIndex::FindParts(const Asked& asked,
                          std::vector<std::pair<std::uint32_t, int>>& found) const {
  for (std::size_t i = 0; i < asked.strong.size(); ++i) {
    if (i > 0 && asked.strong[i] == asked.strong[i - 1]) continue;
    for (const std::uint32_t position : rarest_word_[asked.strong[i]]) {
      const Form& form = forms_[position];
      if ((form.mask & ~asked.mask) == 0 && std::ranges::includes(asked.strong, form.strong)) {
        found.emplace_back(position, kPart);
      }
    }
  }
  if (!asked.all_known || asked.strong.size() < kStrongInPart) return;
  const std::uint32_t rarest = *std::ranges::min_element(
      asked.strong, {}, [this](std::uint32_t word) { return of_word_[word].size(); });
  for (const std::uint32_t position : of_word_[rarest]) {
    const Form& form = forms_[position];
    if ((asked.mask & ~form.mask) == 0 && std::ranges::includes(form.strong, asked.strong)) {
      found.emplace_back(position, kPart);
    }
  }
}

std::vector<NameHit> NameIndex::Find(std::string_view name) const {
  std::vector<NameHit> hits;
  for (const NameForm& mine : FormsOf(name)) {
    const std::size_t count = CountStrong(mine);
    if (!TellsApart(mine)) continue;
    std::vector<std::pair<std::uint32_t, int>> found;
    const auto take = [&](const auto& index, const std::string& key, int rule, auto holds) {
      const auto same = index.find(key);
      if (same == index.end()) return;
      for (const std::uint32_t position : same->second) {
        if (holds(forms_[position].form)) found.emplace_back(position, rule);
      }
    };
    take(by_words_, Joined(Keys(mine)), kSameWords, [](const NameForm&) { return true; });
    if (count > 0) {
      take(by_letters_, SortedLetters(mine), kTogetherOrApart,
           [&mine](const NameForm& form) { return WrittenTogether(mine, form); });
    }
    if (count >= kStrongBesideWeak) {
      take(by_strong_, StrongInOrder(mine), kWithoutWeak,
           [&mine](const NameForm& form) { return LeavesOut(mine, form); });
    }
    Asked asked;
    for (const NameWord& word : mine.words) {
      if (word.weak) continue;
      const auto number = numbers_.find(word.key);
      if (number == numbers_.end()) {
        asked.all_known = false;
        continue;
      }
      asked.strong.push_back(number->second);
      asked.mask |= std::uint64_t{1} << number->second % 64;
    }
    std::ranges::sort(asked.strong);
    FindParts(asked, found);
    for (const auto& [position, rule] : found) {
      const Form& form = forms_[position];
      if (std::ranges::find(hits, form.entry, &NameHit::entry) != hits.end()) continue;
      hits.push_back({form.entry, Explain(rule, mine, form.form)});
    }
  }
  std::ranges::sort(hits, {}, &NameHit::entry);
  return hits;
}

}  // namespace kaunter
