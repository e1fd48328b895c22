// A text as a QR code: a square of dark and light modules.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kaunter {

struct QrCode {
  static constexpr int kQuietZone = 4;  // light modules that a reader wants around it

  int side = 0;            // modules, without the quiet zone
  std::vector<bool> dark;  // row by row
  bool Dark(int row, int column) const {
    return dark.at(static_cast<std::size_t>(row * side + column));
  }
};

// Nothing for an empty text, and for one that is longer than a code holds (2,331 bytes).
std::optional<QrCode> EncodeQr(const std::string& text);

}  // namespace kaunter
