// Statements as they may be shown: passwords, their hashes, client ids and secrets, and PINs stand
// as ***.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

std::string WithoutSecrets(std::string_view sql);

// What a setting or a column of this name holds is secret.
bool IsSecretName(std::string_view name);

}  // namespace kaunter
