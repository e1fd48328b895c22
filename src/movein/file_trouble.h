// What is wrong with a file that somebody brings, in both languages; and the way back into one.
#pragma once

#include <string>
#include <string_view>

#include "screen/caption_error.h"

namespace kaunter {

struct FileTrouble : CaptionError {
  using CaptionError::CaptionError;
};

// A cell of a list that goes back to a spreadsheet, which must not take it for a formula.
inline std::string Harmless(const std::string& text) {
  constexpr std::string_view kFormulas = "=+-@";
  const bool formula = !text.empty() && kFormulas.find(text.front()) != std::string_view::npos;
  return formula ? "'" + text : text;
}

}  // namespace kaunter
