// A desk that has a clipboard. Not every desk has: it says so by being one.
#pragma once

#include <string_view>

namespace kaunter {

class ClipboardDesk {
 public:
  virtual ~ClipboardDesk() = default;
  virtual void Copy(std::string_view text) = 0;
};

}  // namespace kaunter
