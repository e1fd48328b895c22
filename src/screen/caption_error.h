// A failure that is told in both languages; what() is the English text.
#pragma once

#include <stdexcept>
#include <utility>

#include "screen/caption.h"

namespace kaunter {

struct CaptionError : std::runtime_error {
  explicit CaptionError(Caption caption)
      : std::runtime_error(caption.english), text(std::move(caption)) {}
  Caption text;
};

// The same of what went wrong outside: a server, another program. What was asked for did fit.
struct CaptionFailure : std::runtime_error {
  explicit CaptionFailure(Caption caption)
      : std::runtime_error(caption.english), text(std::move(caption)) {}
  Caption text;
};

}  // namespace kaunter
