// A person's name as words that can be compared with those of a list: without accents, titles and
// the words that join a name to a father's, each spelled in one way.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

struct NameWord {
  std::string key;    // MUHAMMAD: two spellings of one name have the same
  std::string shown;  // MOHD
  // So common, or so often left out, that it tells nobody apart: Muhammad, Abdul, an initial.
  bool weak = false;
};

// One way in which a person is called.
struct NameForm {
  std::vector<NameWord> words;  // in their order
  std::string together;         // their letters without a blank, spelled in one way
  std::string left_out;         // "BIN, DATO": titles and joining words, in their order
};

// The forms of a name: more than one where "@", "alias", brackets or another script part it. Empty
// for a name without a letter. Beside others a form of one word is left out: half the country would
// bear it. A form in Chinese is one word, in the simplified script.
std::vector<NameForm> FormsOf(std::string_view name);

}  // namespace kaunter
