// Any text as a script of kaunter-play, read and run on the small program of the language's tests:
// it holds, fails or stops with a line number, and the program always comes to its end.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz/token_mutator.h"
#include "tests/play/played.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  static kaunter::TokenMutator mutator;
  if (seed % 3 == 0) return LLVMFuzzerMutate(data, size, most);
  std::string text = mutator.Mutate({reinterpret_cast<const char*>(data), size}, seed);
  text.resize(std::min(text.size(), most));
  std::memcpy(data, text.data(), text.size());
  return text.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const kaunter::Played played =
      kaunter::Play(std::string(reinterpret_cast<const char*>(data), size));
  const bool told = played.err.find("line ") != std::string::npos;
  if (played.status < 0 || played.status > 2 || (played.status != 0 && !told)) {
    std::fprintf(stderr, "status %d without a line: %s\n", played.status, played.err.c_str());
    std::abort();
  }
  return 0;
}
