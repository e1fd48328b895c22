// Digests and random numbers, by the system's library for them.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace kaunter {

class Digest {
 public:
  enum class Kind { md5, sha256 };

  // Throws std::runtime_error where the machine has none of that kind, as do the others.
  explicit Digest(Kind kind);
  ~Digest();
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;

  void Add(std::string_view bytes);
  // Of all that was added, two lower-case digits a byte. Once.
  std::string Hex();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

std::string DigestOf(Digest::Kind kind, std::string_view bytes);

// As for a key. Throws std::runtime_error when the machine gives none.
void FillWithRandom(std::span<unsigned char> bytes);

}  // namespace kaunter
