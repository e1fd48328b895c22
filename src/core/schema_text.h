// The scripts of schema/ as the program carries them: "base", "logs", "sms", "accounting",
// "central", "mykad"; and the codes of schema/codes under the name of their table, "eState".
#pragma once

#include <string_view>

namespace kaunter {

// The whole script. An unknown name is a fault (std::logic_error).
std::string_view SchemaText(std::string_view name);

}  // namespace kaunter
