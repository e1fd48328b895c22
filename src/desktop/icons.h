// The few line icons of the program, drawn in the tones in force.
#pragma once

#include <QIcon>
#include <string_view>

namespace kaunter {

enum class Glyph {
  calendar,
  search,
  person,
  paper,
  coins,
  calculator,
  clock,
  book,
  seal,
  shield,
  card,
  arrow,
  sidebar
};

// `strong` draws in the accent, else in the quiet tone of labels.
QIcon MakeIcon(Glyph glyph, bool strong = false);

}  // namespace kaunter
