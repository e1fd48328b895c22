#include "desktop/accelerators.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "screen/screen.h"

namespace kaunter {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsLetter(char c) { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

// Of the sign before an accelerator; npos for none. "&&" is a sign that is shown.
std::size_t SignIn(const std::string& caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') return i;
    ++i;
  }
  return std::string::npos;
}

char LetterOf(const std::string& caption) {
  const std::size_t sign = SignIn(caption);
  return sign == std::string::npos ? '\0' : Lower(caption[sign + 1]);
}

const Control* PageOf(const Control& control) {
  for (const Control* at = control.parent(); at; at = at->parent()) {
    const auto* frame = dynamic_cast<const Frame*>(at);
    if (frame && frame->is_page()) return frame;
  }
  return nullptr;
}

// Hands out the letters of a screen, the window's own first (page null), then page by page.
class Letters {
 public:
  explicit Letters(const Screen& screen) {
    std::vector<const Button*> order;
    for (const Control* control : screen.controls()) {
      if (const auto* button = dynamic_cast<const Button*>(control)) {
        order.push_back(button);
      } else if (const char letter = LetterOf(control->caption().english)) {
        used_[PageOf(*control)].insert(letter);
      }
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Button* a, const Button* b) { return Rank(*a) < Rank(*b); });
    for (const Button* button : order) given_[button] = Give(*button);
  }

  char Of(const Button& button) const { return given_.at(&button); }

 private:
  static int Rank(const Button& button) {
    if (PageOf(button)) return 2;
    return button.role() == ButtonRole::primary || button.role() == ButtonRole::cancel ? 0 : 1;
  }

  char Give(const Button& button) {
    const std::string& caption = button.caption().english;
    const char wanted = LetterOf(caption);
    if (wanted == '\0') return wanted;
    const Control* page = PageOf(button);
    const auto take = [&](char c) {
      const char letter = Lower(c);
      if (used_[nullptr].contains(letter) || used_[page].contains(letter)) return false;
      used_[page].insert(letter);
      return true;
    };
    if (take(wanted)) return wanted;
    for (const char c : caption) {
      if (IsLetter(c) && take(c)) return Lower(c);
    }
    return '\0';
  }

  std::map<const Control*, std::set<char>> used_;
  std::map<const Button*, char> given_;
};

}  // namespace

std::string ButtonText(const Button& button, bool chinese) {
  const char wanted = LetterOf(button.caption().english);
  const char given = Letters(button.screen()).Of(button);
  std::string text = button.caption().In(chinese);
  const std::size_t sign = SignIn(text);
  if (given == wanted || sign == std::string::npos) return text;
  if (chinese) {
    // "保存(&S)": the letter stands in brackets behind the words.
    const std::size_t open = text.rfind('(', sign);
    if (open == std::string::npos) return text;
    text.erase(open, text.find(')', sign) - open + 1);
    if (given) text += std::string("(&") + static_cast<char>(given - 'a' + 'A') + ")";
    return text;
  }
  text.erase(sign, 1);
  const auto at = std::find_if(text.begin(), text.end(), [&](char c) { return Lower(c) == given; });
  if (given && at != text.end()) text.insert(at, '&');
  return text;
}

}  // namespace kaunter
