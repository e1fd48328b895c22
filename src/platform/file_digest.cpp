#include "platform/file_digest.h"

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>
#include <vector>

#include "platform/digest.h"
#include "platform/sql/waiting.h"

namespace kaunter {

std::string DigestOfFile(const std::string& path) {
  constexpr std::size_t kPortion = 1 << 16;
  std::ifstream file(path, std::ios::binary);
  Digest digest(Digest::Kind::sha256);
  std::vector<char> portion(kPortion);
  while (file.is_open() && file) {
    file.read(portion.data(), static_cast<std::streamsize>(portion.size()));
    digest.Add({portion.data(), static_cast<std::size_t>(file.gcount())});
    ActWhileWaiting();
  }
  if (!file.is_open() || file.bad()) {
    throw std::runtime_error(fmt::format("{} cannot be read", path));
  }
  return digest.Hex();
}

}  // namespace kaunter
