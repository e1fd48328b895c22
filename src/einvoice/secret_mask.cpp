#include "einvoice/secret_mask.h"

#include <algorithm>

#include "einvoice/web_address.h"

namespace kaunter {
namespace {

constexpr std::string_view kHidden = "***";

// As a JSON writer that escapes would write it.
std::string JsonEscaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '/') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace

void SecretMask::Add(std::string_view secret) {
  if (secret.empty()) return;
  for (std::string form : {std::string(secret), JsonEscaped(secret), EncodedForm(secret)}) {
    if (std::ranges::find(secrets_, form) == secrets_.end()) secrets_.push_back(std::move(form));
  }
  std::ranges::stable_sort(secrets_, std::ranges::greater(), &std::string::size);
}

std::string SecretMask::Hide(std::string_view text) const {
  std::string hidden;
  for (std::size_t at = 0; at < text.size();) {
    const auto secret = std::ranges::find_if(
        secrets_, [&](const std::string& s) { return text.substr(at, s.size()) == s; });
    if (secret == secrets_.end()) {
      hidden += text[at++];
    } else {
      hidden += kHidden;
      at += secret->size();
    }
  }
  return hidden;
}

}  // namespace kaunter
