// By the system's own provider.
#include <fmt/format.h>
#include <windows.h>
// What stands on the types of the header above.
#include <bcrypt.h>

#include <array>
#include <stdexcept>

#include "platform/digest.h"

namespace kaunter {
namespace {

void Require(NTSTATUS result) {
  if (result < 0)
    throw std::runtime_error("This machine has no digest of the kind that is asked for.");
}

// They take no constant bytes, and change none.
UCHAR* BytesOf(std::string_view bytes) {
  return reinterpret_cast<UCHAR*>(const_cast<char*>(bytes.data()));
}

}  // namespace

struct Digest::State {
  State() = default;
  ~State() {
    if (hash != nullptr) BCryptDestroyHash(hash);
    if (kind != nullptr) BCryptCloseAlgorithmProvider(kind, 0);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  BCRYPT_ALG_HANDLE kind = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
  std::size_t length = 0;
};

Digest::Digest(Kind kind) : state_(std::make_unique<State>()) {
  state_->length = kind == Kind::md5 ? 16 : 32;
  Require(BCryptOpenAlgorithmProvider(
      &state_->kind, kind == Kind::md5 ? BCRYPT_MD5_ALGORITHM : BCRYPT_SHA256_ALGORITHM, nullptr,
      0));
  Require(BCryptCreateHash(state_->kind, &state_->hash, nullptr, 0, nullptr, 0, 0));
}

Digest::~Digest() = default;

void Digest::Add(std::string_view bytes) {
  Require(BCryptHashData(state_->hash, BytesOf(bytes), static_cast<ULONG>(bytes.size()), 0));
}

std::string Digest::Hex() {
  std::array<UCHAR, 32> digest{};
  Require(BCryptFinishHash(state_->hash, digest.data(), static_cast<ULONG>(state_->length), 0));
  std::string hex;
  for (std::size_t i = 0; i < state_->length; ++i) hex += fmt::format("{:02x}", digest[i]);
  return hex;
}

void FillWithRandom(std::span<unsigned char> bytes) {
  if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()),
                      BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0) {
    throw std::runtime_error("the machine gives no random numbers");
  }
}

}  // namespace kaunter
