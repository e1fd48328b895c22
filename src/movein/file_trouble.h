// What is wrong with a file that somebody brings, in both languages.
#pragma once

#include <stdexcept>
#include <utility>

#include "screen/caption.h"

namespace kaunter {

struct FileTrouble : std::runtime_error {
  explicit FileTrouble(Caption caption)
      : std::runtime_error(caption.english), text(std::move(caption)) {}
  Caption text;
};

}  // namespace kaunter
