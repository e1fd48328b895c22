// Statements as they may be shown: passwords, their hashes, client ids and secrets, and PINs stand
// as ***.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

std::string WithoutSecrets(std::string_view sql);

// A line of text, in which a statement or a connection string may be quoted: what stands behind
// PWD= and Password=, and the secrets of the statement.
std::string WithoutPasswords(std::string_view line);

// A statement as support may see it: each of its texts, numbers and dates is a question mark, and
// lists of them one. Names of tables and columns stay.
std::string WithoutLiterals(std::string_view sql);

// What a setting or a column of this name holds is secret.
bool IsSecretName(std::string_view name);

}  // namespace kaunter
