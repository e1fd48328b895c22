// The lax parser with any bytes: it ends, throws nothing, and its tree can be walked. What it has
// read holds no more than the text gave, and the same text gives the same tree again.
#include <cstdlib>
#include <string_view>

#include "einvoice/json.h"

namespace kaunter {
namespace {

struct Walked {
  std::size_t nodes = 0;
  std::size_t bytes = 0;
  bool operator==(const Walked&) const = default;
};

// Not by recursion: a text may nest as deep as it is long.
Walked Walk(const JsonValue& root) {
  Walked walked;
  std::vector<JsonValue> open = {root};
  while (!open.empty()) {
    const JsonValue value = open.back();
    open.pop_back();
    ++walked.nodes;
    walked.bytes += value.ToText().size();
    if (static_cast<std::size_t>(value.Count()) != value.Members().size()) std::abort();
    for (const auto& [key, member] : value.Members()) {
      walked.bytes += key.size();
      open.push_back(member);
      if (value.kind() == JsonValue::Kind::object && value.Item(key).IsNothing()) std::abort();
    }
    if (!value.Item(value.Count() + 1).IsNothing()) std::abort();
  }
  return walked;
}

void Check(std::string_view text) {
  const Walked first = Walk(Parse(text));
  const std::string errors = ParserErrors();
  // A stray byte becomes a sign of three; a number may be written out to 29 digits before and 28
  // behind its point.
  if (first.nodes > text.size() + 1 || first.bytes > 64 * text.size() + 64) std::abort();
  if (Walk(Parse(text)) != first || ParserErrors() != errors) std::abort();
}

}  // namespace
}  // namespace kaunter

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  kaunter::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
