#include "reports/qr_code.h"

#include <qrencode.h>

#include <memory>

namespace kaunter {

std::optional<QrCode> EncodeQr(const std::string& text) {
  if (text.empty()) return std::nullopt;
  // A sixth of it may be dirty or torn (M); 0 takes the smallest version that holds the text.
  const std::unique_ptr<QRcode, decltype(&QRcode_free)> made(
      QRcode_encodeString8bit(text.c_str(), 0, QR_ECLEVEL_M), &QRcode_free);
  if (made == nullptr) return std::nullopt;
  QrCode code;
  code.side = made->width;
  const int modules = made->width * made->width;
  code.dark.reserve(static_cast<std::size_t>(modules));
  for (int i = 0; i < modules; ++i) code.dark.push_back((made->data[i] & 1) != 0);
  return code;
}

}  // namespace kaunter
