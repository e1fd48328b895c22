#include "platform/digest.h"

namespace kaunter {

std::string DigestOf(Digest::Kind kind, std::string_view bytes) {
  Digest digest(kind);
  digest.Add(bytes);
  return digest.Hex();
}

}  // namespace kaunter
