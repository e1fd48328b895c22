// By OpenSSL.
#include <fmt/format.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <array>
#include <stdexcept>

#include "platform/digest.h"

namespace kaunter {
namespace {

void Require(int result) {
  if (result != 1)
    throw std::runtime_error("This machine has no digest of the kind that is asked for.");
}

}  // namespace

struct Digest::State {
  State() : context(EVP_MD_CTX_new()) {}
  ~State() { EVP_MD_CTX_free(context); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  EVP_MD_CTX* context;
};

Digest::Digest(Kind kind) : state_(std::make_unique<State>()) {
  Require(
      EVP_DigestInit_ex(state_->context, kind == Kind::md5 ? EVP_md5() : EVP_sha256(), nullptr));
}

Digest::~Digest() = default;

void Digest::Add(std::string_view bytes) {
  Require(EVP_DigestUpdate(state_->context, bytes.data(), bytes.size()));
}

std::string Digest::Hex() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  Require(EVP_DigestFinal_ex(state_->context, digest.data(), &length));
  std::string hex;
  for (unsigned int i = 0; i < length; ++i) hex += fmt::format("{:02x}", digest[i]);
  return hex;
}

void FillWithRandom(std::span<unsigned char> bytes) {
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) {
    throw std::runtime_error("the machine gives no random numbers");
  }
}

}  // namespace kaunter
