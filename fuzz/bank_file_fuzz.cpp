// A bank's file of any bytes by a layout of any bytes: both are read to their end or refused, and
// what is read holds: the payments behind the head are a file of the same layout that gives them
// again. The input is a file of layouts, a line "%%", and the bank's file.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string_view>

#include "bank/bank_file.h"

namespace kaunter {
namespace {

struct Read {
  std::string head;
  std::string raw;
  std::vector<std::string> fingerprints;
};

Read ReadAll(const BankLayout& layout, const std::string& path) {
  Read read;
  BankFile file(layout, path);
  int last = 0;
  for (BankLine line; file.Next(line); last = line.number) {
    if (line.number <= last || line.raw.empty()) std::abort();
    if (!line.fault && (!line.date || !line.amount || line.reference.empty())) std::abort();
    if (line.amount && *line.amount < Money()) std::abort();
    read.raw += line.raw;
    read.fingerprints.push_back(line.fingerprint);
  }
  read.head = file.head();
  return read;
}

void Check(std::string_view input) {
  static const std::string path = "/dev/shm/kaunter-fuzz-bank-" + std::to_string(getpid());
  constexpr std::string_view kParting = "\n%%\n";
  const auto at = input.find(kParting);
  if (at == std::string_view::npos) return;
  std::vector<BankLayout> layouts;
  try {
    layouts = ParseBankLayouts(input.substr(0, at), "layouts");
  } catch (const BankLayoutFault&) {
    return;
  }
  for (const BankLayout& layout : layouts) {
    std::ofstream(path, std::ios::binary) << input.substr(at + kParting.size());
    try {
      const Read first = ReadAll(layout, path);
      if (first.fingerprints.empty()) continue;
      std::ofstream(path, std::ios::binary) << first.head << first.raw;
      if (ReadAll(layout, path).fingerprints != first.fingerprints) std::abort();
    } catch (const BankFileRefused&) {
      continue;
    }
  }
  unlink(path.c_str());
}

}  // namespace
}  // namespace kaunter

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  kaunter::Check(std::string_view(reinterpret_cast<const char*>(data), size));
  return 0;
}
