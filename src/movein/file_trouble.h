// What is wrong with a file that somebody brings, in both languages.
#pragma once

#include "screen/caption_error.h"

namespace kaunter {

struct FileTrouble : CaptionError {
  using CaptionError::CaptionError;
};

}  // namespace kaunter
