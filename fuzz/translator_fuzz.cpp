// Any text as a statement to the embedded engine.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz/token_mutator.h"
#include "fuzz/translator_check.h"
#include "tests/core/office.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  static kaunter::TokenMutator mutator;
  if (seed % 5 == 0) return LLVMFuzzerMutate(data, size, most);
  std::string text = mutator.Mutate({reinterpret_cast<const char*>(data), size}, seed);
  text.resize(std::min(text.size(), most));
  std::memcpy(data, text.data(), text.size());
  return text.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static kaunter::Office office(kaunter::Office::State::patched);
  static kaunter::TranslatorCheck check(office.folder.File("office.db"));
  if (const auto fault = check.FindFault({reinterpret_cast<const char*>(data), size})) {
    std::fprintf(stderr, "%s\n", fault->c_str());
    std::abort();
  }
  return 0;
}
