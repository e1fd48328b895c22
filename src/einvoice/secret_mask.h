// Client ids, client secrets and tokens, as far as a conversation with the service knows them, and
// the texts without them: a line of the log, a message, a reply that is shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

class SecretMask {
 public:
  // Empty ones count for nothing.
  void Add(std::string_view secret);
  // Each secret stands as ***, as it was given or as JSON or an address would carry it.
  std::string Hide(std::string_view text) const;

 private:
  std::vector<std::string> secrets_;  // the longest first
};

}  // namespace kaunter
