#include "compliance/name_words.h"

#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kaunter {
namespace {

using Words = std::vector<std::string>;

// --- the tables

// Between a name and the father's.
const std::unordered_set<std::string_view> kJoining = {
    "BIN",  "BINTI", "BINTE", "BINT", "BT", "BTE", "BTI", "BN", "IBN",
    "IBNI", "ANAK",  "AL",    "EL",   "AP", "AK",  "SO",  "DO"};
// Those that a name may have by chance count only where a slash or a point parts their letters.
const std::unordered_set<std::string_view> kJoiningByMark = {"AL", "AP", "AK", "SO", "DO"};
const std::unordered_set<std::string_view> kArticles = {"AL", "EL"};

// Before a name; the longest first.
const std::vector<Words> kTitles = {{"TAN", "SRI"},   {"PUAN", "SRI"},
                                    {"TOH", "PUAN"},  {"DATO", "SERI"},
                                    {"DATO", "SRI"},  {"DATUK", "SERI"},
                                    {"DATUK", "SRI"}, {"DATIN", "SERI"},
                                    {"DATIN", "SRI"}, {"DATO"},
                                    {"DATUK"},        {"DATIN"},
                                    {"TUN"},          {"TUAN"},
                                    {"ENCIK"},        {"EN"},
                                    {"PUAN"},         {"PN"},
                                    {"CIK"},          {"MR"},
                                    {"MRS"},          {"MS"},
                                    {"MISS"},         {"MDM"},
                                    {"MADAM"},        {"DR"},
                                    {"PROF"},         {"PROFESSOR"},
                                    {"IR"},           {"SIR"}};
const std::unordered_set<std::string_view> kPilgrims = {"HAJI",   "HJ",    "HAJAH",
                                                        "HAJJAH", "HAJJI", "HJH"};
constexpr std::u16string_view kChineseTitles[] = {u"先生", u"女士", u"小姐", u"太太", u"夫人"};

const std::unordered_set<std::string_view> kBetweenForms = {"ALIAS", "AKA"};

const std::unordered_set<std::string_view> kWeak = {
    "MUHAMMAD", "ABDUL", "AHMAD", "NUR",  "NURUL",  "SITI",   "SYED",  "SHARIFAH", "WAN",
    "NIK",      "CHE",   "MAT",   "RAJA", "TENGKU", "SHEIKH", "MEGAT", "PUTERI",   "SRI"};

// The first of a line stands for all.
const std::vector<Words> kSpellings = {
    {"MUHAMMAD", "MUHAMAD", "MUHAMMED", "MUHAMED", "MOHAMMAD", "MOHAMAD", "MOHAMMED", "MOHAMED",
     "MOHAMMOD", "MOHAMUD", "MEHMOOD", "MOHD", "MUHD", "MHD", "MOHMD", "MOHMAD", "MD"},
    {"ABDUL", "ABD", "ABDOL", "ABDEL", "ABDUR", "ABDUS", "ABDOUL"},
    {"AHMAD", "AHMED", "AHMAT", "ACHMAD", "AKHMAD"},
    {"NUR", "NOR", "NOOR", "NOUR"},
    {"NURUL", "NORUL", "NOORUL"},
    {"SITI", "STI"},
    {"SYED", "SAYED", "SAYYID", "SAYYED", "SAIYED"},
    {"SHARIFAH", "SYARIFAH", "SHARIFA", "SYARIFA"},
    {"TENGKU", "TUNKU", "TG", "TENKU"},
    {"SHEIKH", "SHEIK", "SHAIKH", "SYEIKH", "SYEKH"},
    {"YUSUF", "YUSOF", "YUSOFF", "YUSSOF", "YUSUFF", "YOUSEF", "YOUSUF", "YUSEF"},
    {"HUSSAIN", "HUSSEIN", "HUSIN", "HUSAIN", "HUSEIN", "HUSSIN", "HOSSAIN", "HOSSEIN"},
    {"IBRAHIM", "EBRAHIM", "IBRAHEEM"},
    {"ISMAIL", "ISMAEL", "ISMAEEL"},
    {"OTHMAN", "OSMAN", "USMAN", "UTHMAN"},
    {"OMAR", "UMAR", "OMER"},
    {"JAAFAR", "JAFAR", "JAFFAR", "JAFFER"},
    {"MUSTAFA", "MUSTAPHA", "MUSTAFFA", "MOSTAFA"}};

// Spelled one way or the other in names of six letters and more; a Chinese syllable is shorter.
constexpr std::size_t kLong = 6;
constexpr std::pair<std::string_view, std::string_view> kLetters[] = {
    {"SY", "SH"}, {"PH", "F"}, {"OO", "U"}, {"OU", "U"}, {"EE", "I"},
    {"EI", "AI"}, {"DZ", "Z"}, {"DH", "D"}, {"TH", "T"}, {"KH", "K"}};

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string LettersOneWay(std::string word) {
  if (word.size() < kLong) return word;
  for (const auto& [from, to] : kLetters) ReplaceAll(word, from, to);
  word.erase(std::unique(word.begin(), word.end()), word.end());
  return word;
}

std::string SpelledOneWay(const std::string& written) {
  std::string word = LettersOneWay(written);
  if (written.size() < kLong) return word;
  if (word.ends_with("AH")) word.pop_back();
  if (word.ends_with('Y')) word.back() = 'I';
  return word;
}

const std::unordered_map<std::string, std::string>& Spellings() {
  static const auto table = [] {
    std::unordered_map<std::string, std::string> made;
    for (const Words& line : kSpellings) {
      for (const std::string& word : line) {
        made.emplace(word, line.front());
        made.emplace(SpelledOneWay(word), line.front());
      }
    }
    return made;
  }();
  return table;
}

std::string KeyOf(const std::string& word) {
  if (const auto known = Spellings().find(word); known != Spellings().end()) return known->second;
  std::string key = SpelledOneWay(word);
  const auto known = Spellings().find(key);
  return known == Spellings().end() ? key : known->second;
}

// --- letters

// Accents off, the simplified script, plain Latin letters, capitals.
icu::UnicodeString Plain(std::string_view text) {
  static const std::unique_ptr<icu::Transliterator> plain = [] {
    UErrorCode error = U_ZERO_ERROR;
    UParseError place;
    std::unique_ptr<icu::Transliterator> made(icu::Transliterator::createInstance(
        u"NFKD; [:Mn:] Remove; Traditional-Simplified; Latin-ASCII; Any-Upper", UTRANS_FORWARD,
        place, error));
    if (U_FAILURE(error) || !made) throw std::runtime_error("ICU has no transliterator of names");
    return made;
  }();
  auto letters = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  plain->transliterate(letters);
  return letters;
}

bool IsChinese(UChar32 c) {
  UErrorCode error = U_ZERO_ERROR;
  return uscript_getScript(c, &error) == USCRIPT_HAN;
}

bool IsApostrophe(UChar32 c) {
  return c == '\'' || c == '`' || c == 0x2019 || c == 0x2018 || c == 0x02BC || c == 0x00B4;
}

// What the letters of a name fall into.
struct RawForm {
  std::vector<std::pair<std::string, bool>> words;  // true: its letters are parted by a mark
};
struct Raw {
  std::vector<RawForm> forms = {{}};
  icu::UnicodeString chinese;
};

class Reader {
 public:
  explicit Reader(const icu::UnicodeString& text) {
    for (int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) Take(text.char32At(at));
    EndWord();
  }
  Raw Done() { return std::move(raw_); }

 private:
  void Take(UChar32 c) {
    if (IsApostrophe(c)) return;
    if (!IsChinese(c) && u_isalnum(c)) {
      letters_.append(c);
      return;
    }
    const bool ended = EndWord();
    const bool slash = c == '/' || c == '\\';
    if (slash || (c == '.' && ended)) {
      mark_ = LastStandsAlone() ? c : 0;
    } else if (c != ' ' || mark_ == '.') {
      mark_ = 0;
    }
    if (IsChinese(c)) raw_.chinese.append(c);
    if (c == '@' || c == '(' || c == ')' || c == '[' || c == ']') NextForm();
  }
  bool LastStandsAlone() const {
    const auto& words = raw_.forms.back().words;
    return !words.empty() && words.back().first.size() == 1;
  }
  bool EndWord() {
    if (letters_.isEmpty()) return false;
    std::string word;
    letters_.toUTF8String(word);
    letters_.remove();
    auto& words = raw_.forms.back().words;
    if (word.size() == 1 && mark_ != 0) {
      words.back() = {words.back().first + word, true};
    } else if (kBetweenForms.contains(word)) {
      NextForm();
    } else {
      words.emplace_back(std::move(word), false);
    }
    mark_ = 0;
    return true;
  }
  void NextForm() {
    mark_ = 0;
    if (!raw_.forms.back().words.empty()) raw_.forms.emplace_back();
  }

  Raw raw_;
  icu::UnicodeString letters_;
  UChar32 mark_ = 0;  // "A/L", "A.L.": between two letters that stand alone
};

// --- words

void LeaveOut(NameForm& form, const std::string& word) {
  form.left_out += (form.left_out.empty() ? "" : ", ") + word;
}

bool BeginsWith(std::span<const std::pair<std::string, bool>> words, const Words& title) {
  if (words.size() <= title.size()) return false;
  return std::equal(title.begin(), title.end(), words.begin(),
                    [](const std::string& part, const auto& word) { return part == word.first; });
}

// ABDULRAHMAN, MOHDALI: the first part of a word that is written together with the next.
std::string FirstPart(const std::string& word) {
  constexpr std::size_t kRest = 3;
  if (word.starts_with("ABDULLA") || word.starts_with("ABDULA")) return {};
  for (const std::string_view part : {"ABDUL", "ABDUR", "MUHAMMAD", "MOHAMMAD", "MOHAMAD",
                                      "MUHAMAD", "MOHAMED", "MOHD", "MUHD"}) {
    if (word.starts_with(part) && word.size() >= part.size() + kRest) return std::string(part);
  }
  return {};
}

void AddWord(NameForm& form, const std::string& shown) {
  const auto known = Spellings().find(shown);
  form.together += known == Spellings().end() ? shown : known->second;
  std::string key = KeyOf(shown);
  const bool weak = key.size() == 1 || kWeak.contains(key);
  form.words.push_back({std::move(key), shown, weak});
}

NameForm FormOf(const RawForm& raw) {
  NameForm form;
  std::span<const std::pair<std::string, bool>> words = raw.words;
  for (bool more = true; more;) {
    more = false;
    for (const Words& title : kTitles) {
      if (!BeginsWith(words, title)) continue;
      for (const std::string& part : title) LeaveOut(form, part);
      words = words.subspan(title.size());
      more = true;
      break;
    }
  }
  bool first = true;
  for (const auto& [word, by_mark] : words) {
    const bool joins = kJoiningByMark.contains(word)
                           ? by_mark || (kArticles.contains(word) && words.size() > 1)
                           : kJoining.contains(word) || (word == "B" && !first);
    if ((joins || kPilgrims.contains(word)) && words.size() > 1) {
      LeaveOut(form, by_mark ? word.substr(0, 1) + "/" + word.substr(1) : word);
    } else if (const std::string part = FirstPart(word); !part.empty()) {
      AddWord(form, part);
      AddWord(form, word.substr(part.size()));
    } else {
      AddWord(form, word);
    }
    first = false;
  }
  form.together = LettersOneWay(form.together);
  return form;
}

std::optional<NameForm> ChineseForm(icu::UnicodeString name) {
  for (const std::u16string_view title : kChineseTitles) {
    const auto length = static_cast<int32_t>(title.size());
    if (name.length() > length + 1 && name.endsWith(icu::UnicodeString(title.data(), length))) {
      name.truncate(name.length() - length);
    }
  }
  if (name.countChar32() < 2) return std::nullopt;
  std::string text;
  name.toUTF8String(text);
  NameForm form;
  form.words.push_back({text, text, false});
  form.together = text;
  return form;
}

}  // namespace

std::vector<NameForm> FormsOf(std::string_view name) {
  Raw raw = Reader(Plain(name)).Done();
  std::vector<NameForm> forms;
  for (const RawForm& each : raw.forms) {
    NameForm form = FormOf(each);
    if (!form.words.empty()) forms.push_back(std::move(form));
  }
  const auto chinese = ChineseForm(raw.chinese);
  if (forms.size() > 1 || chinese) {
    std::erase_if(forms, [](const NameForm& form) { return form.words.size() == 1; });
  }
  if (chinese) forms.push_back(*chinese);
  return forms;
}

}  // namespace kaunter
