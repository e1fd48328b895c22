#include "platform/file_digest.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

namespace kaunter {

std::string DigestOfFile(const std::string& path) {
  constexpr std::size_t kPortion = 1 << 16;
  std::ifstream file(path, std::ios::binary);
  const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> digest(EVP_MD_CTX_new(),
                                                                       EVP_MD_CTX_free);
  bool good = file.is_open() && EVP_DigestInit_ex(digest.get(), EVP_sha256(), nullptr) == 1;
  std::vector<char> portion(kPortion);
  while (good && file) {
    file.read(portion.data(), static_cast<std::streamsize>(portion.size()));
    good = EVP_DigestUpdate(digest.get(), portion.data(),
                            static_cast<std::size_t>(file.gcount())) == 1;
  }
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned int length = 0;
  if (!good || file.bad() || EVP_DigestFinal_ex(digest.get(), bytes.data(), &length) != 1) {
    throw std::runtime_error(fmt::format("{} cannot be read", path));
  }
  std::string text;
  for (unsigned int i = 0; i < length; ++i) text += fmt::format("{:02x}", bytes[i]);
  return text;
}

}  // namespace kaunter
