// Names that are similar: the rule by cases, and the index against each name by itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "compliance/name_index.h"

namespace kaunter {
namespace {

TEST(NameMatch, WhatIsSimilarAndWhy) {
  const struct {
    const char* listed;
    const char* customer;
    const char* reason;  // "" where they are not similar
  } kCases[] = {
      {"MUHAMMAD ALI BIN ABU BAKAR", "muhammad ali bin abu bakar", "same name"},
      {"MUHAMMAD ALI BIN ABU BAKAR", "ABU BAKAR MOHD ALI",
       "same words in another order; MOHD = MUHAMMAD; not counted: BIN"},
      {"MUHAMMAD ALI BIN ABU BAKAR", "Ali b. Abu-Bakar",
       "same name but for MUHAMMAD; not counted: B / BIN"},
      {"MUHAMMAD ALI BIN ABU BAKAR", "MOHDALI ABUBAKAR",
       "same letters, written together or apart; MOHD = MUHAMMAD; not counted: BIN"},
      {"MUHAMMAD BIN ALI", "MOHD BIN HASSAN", ""},  // Muhammad and bin alone
      {"MUHAMMAD BIN ALI", "ALI", ""},
      {"MUHAMMAD ALI BIN ABU", "SITI ALI BINTI ABU", ""},  // not left out: another one
      {"MUHAMMAD ALI BIN ABU", "ABU BIN ALI", ""},         // left out, and the father's name first
      {"MUHAMMAD", "MOHD", ""},
      {"AHMED MOHAMMED", "Mohd bin Ahmad",
       "same words in another order; MOHD = MOHAMMED, AHMAD = AHMED; not counted: BIN"},
      {"WAN NIK", "WAN NIK CHE", ""},
      {"A. B. MAT", "MAT A B", ""},
      {"ALI", "Mr. ALI", "same name; not counted: MR"},
      {"AHMAD BIN HASSAN", "ABDUL HASAN", ""},  // one word beside the weak ones
      {"HUSSEIN YUSOFF", "Dato' Seri Husin bin Hj. Yusuf",
       "same name, spelled otherwise; HUSIN = HUSSEIN, YUSUF = YUSOFF; not counted: DATO, SERI, "
       "BIN, HJ"},
      {"NOOR AISYAH BT RAHMAT", "NURAISHAH RAHMAT",
       "same letters, written together or apart; not counted: BT"},
      {"ABDURRAHMAN WAHID", "Abdul Rahman Wahid", "same name, spelled otherwise; ABDUL = ABDUR"},
      {"MUTHU A/L RAMAN", "RAMAN S/O MUTHU", "same words in another order; not counted: S/O / A/L"},
      {"MUTHU A. L. RAMAN", "MUTHU A/P RAMAN", "same name but for A, L; not counted: A/P"},
      {"SO AH LEK", "AH LEK S/O", ""},
      {"JOSÉ NÚÑEZ PEÑA", "Pena Nunez, Jose", "same words in another order"},
      {"ŁUKASZ MÜLLER", "LUKASZ MULLER", "same name"},
      {"ＴＡＮ　ＡＨ　ＫＯＷ", "tan ah kow", "same name"},
      {"TAN AH KOW", "KOWTAN AH", "same letters, written together or apart"},
      {"TAN AH KOW", "DAVID TAN AH KOW", "the customer's name has besides DAVID"},
      {"TAN AH KOW @ LIM BENG HOCK", "Lim Beng Hock", "same name"},
      {"TAN AH KOW (BENG)", "BENG", ""},  // a nickname of one word
      {"TAN SRI LIM", "SRI LIM", ""},
      {"TAN AH", "DAVID TAN AH KOW", ""},  // two words are among too many names
      {"TAN AH KOW", "TAN AH LEK", ""},
      {"TAN AH KOW BENG", "TAN AH KOW XAVIER", ""},  // each has a word of its own
      {"LEE NA", "LENA E", ""},                      // the same letters, but no words of them
      {"O'BRIEN PATRICK SEAN", "PATRICK OBRIEN SEAN'; DROP TABLE CustMast",
       "the customer's name has besides DROP, TABLE, CUSTMAST"},
      {"陳亞九", "陈 亚九先生", "same name"},
      {"陈亚九", "TAN AH KOW 陳亞九", "same name"},
      {"陈亚九", "陈亚", ""},
      {"陈亚九", "亚九陈", ""},  // a surname stands first
      {"阿里·哈桑", "阿里哈桑", "same name"},
      {"", "", ""},
      {"BIN", "BINTI", ""},
      {"\xff\xfe", "\xff\xfe", ""},
      {"123 456", "456-123", "same words in another order"},
  };
  for (const auto& c : kCases) {
    const NameIndex index({"SOMEBODY ELSE ENTIRELY", c.listed});
    const auto hits = index.Find(c.customer);
    ASSERT_LE(hits.size(), 1u);
    EXPECT_EQ(hits.empty() ? "" : hits[0].reason.english, c.reason)
        << c.listed << " ~ " << c.customer;
    if (!hits.empty()) {
      EXPECT_EQ(hits[0].entry, 1u);
      EXPECT_FALSE(hits[0].reason.chinese.empty());
    }
    // Who is like an entry is so from the other side.
    EXPECT_EQ(NameIndex({c.customer}).Find(c.listed).size(), hits.size()) << c.customer;
  }
}

TEST(NameMatch, ALongNameGivesAShortReason) {
  std::string name;
  for (int i = 0; i < 60; ++i) name += "W" + std::to_string(i) + " ";
  const auto hits = NameIndex({name}).Find("W1 W2 W3");
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_LT(hits[0].reason.english.size(), 200u);
}

// The rule, looked at for two names by themselves.
std::vector<std::string> Words(const NameForm& form, bool weak_too) {
  std::vector<std::string> words;
  for (const NameWord& word : form.words) {
    if (weak_too || !word.weak) words.push_back(word.key);
  }
  std::sort(words.begin(), words.end());
  return words;
}

bool Tiles(const std::string& text, std::vector<std::string> words) {
  std::sort(words.begin(), words.end());
  do {
    std::string all;
    for (const std::string& word : words) all += word;
    if (all == text) return true;
  } while (std::next_permutation(words.begin(), words.end()));
  return false;
}

bool Similar(const NameForm& a, const NameForm& b) {
  const auto all = Words(a, true);
  const auto others = Words(b, true);
  const auto strong = Words(a, false);
  const auto their_strong = Words(b, false);
  if (strong.empty() || their_strong.empty()) {
    return all == others && std::count_if(all.begin(), all.end(), [](const std::string& word) {
                              return word.size() > 1;
                            }) > 1;
  }
  if (all == others || a.together == b.together) return true;
  const auto length = [](const std::vector<std::string>& words) {
    std::size_t sum = 0;
    for (const std::string& word : words) sum += word.size();
    return sum;
  };
  auto order = all;
  do {
    if (length(all) != length(others)) break;
    std::string text;
    for (const std::string& word : order) text += word;
    if (Tiles(text, others)) return true;
  } while (std::next_permutation(order.begin(), order.end()));
  const auto in_order = [](const NameForm& form) {
    std::string text;
    for (const NameWord& word : form.words) text += word.weak ? "" : word.key + " ";
    return text;
  };
  if (in_order(a) == in_order(b) && strong.size() >= 2 &&
      (std::includes(all.begin(), all.end(), others.begin(), others.end()) ||
       std::includes(others.begin(), others.end(), all.begin(), all.end()))) {
    return true;
  }
  const auto& part = strong.size() <= their_strong.size() ? strong : their_strong;
  const auto& whole = strong.size() <= their_strong.size() ? their_strong : strong;
  return part.size() >= 3 && std::includes(whole.begin(), whole.end(), part.begin(), part.end());
}

TEST(NameMatch, TheIndexFindsWhatEachNameByItselfWould) {
  std::mt19937 random(7);
  const auto one_of = [&random](const std::vector<std::string>& from) {
    return from[random() % from.size()];
  };
  // Few words, so that many names meet.
  const std::vector<std::string> parts = {"ALI",  "ABU",    "HASSAN", "TAN", "AH",  "KOW",
                                          "MOHD", "ABDUL",  "AB",     "UAL", "I",   "LI",
                                          "NUR",  "YUSOFF", "YUSUF",  "A",   "ABUA"};
  const auto name = [&] {
    std::string text;
    const auto count = 1 + random() % 5;
    for (std::size_t i = 0; i < count; ++i) {
      text += one_of(parts) + one_of({" ", " ", " ", "", " BIN ", " @ "});
    }
    return text;
  };
  std::vector<std::string> listed;
  for (int i = 0; i < 500; ++i) listed.push_back(name());
  const NameIndex index(listed);
  std::vector<std::vector<NameForm>> forms;
  for (const std::string& each : listed) forms.push_back(FormsOf(each));
  std::size_t found = 0;
  for (int i = 0; i < 300; ++i) {
    const std::string customer = name();
    const auto own = FormsOf(customer);
    std::vector<std::size_t> expected;
    for (std::size_t entry = 0; entry < listed.size(); ++entry) {
      bool similar = false;
      for (const NameForm& mine : own) {
        for (const NameForm& theirs : forms[entry]) similar = similar || Similar(mine, theirs);
      }
      if (similar) expected.push_back(entry);
    }
    std::vector<std::size_t> actual;
    for (const NameHit& hit : index.Find(customer)) actual.push_back(hit.entry);
    EXPECT_EQ(actual, expected) << customer;
    found += expected.size();
  }
  EXPECT_GT(found, 400u);
}

}  // namespace
}  // namespace kaunter
