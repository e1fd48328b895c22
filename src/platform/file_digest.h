// The SHA-256 of a file, by which damage on a disk is known.
#pragma once

#include <string>

namespace kaunter {

// In hexadecimal; acts meanwhile as behind a long statement (platform/sql/waiting.h). Throws
// std::runtime_error that names a file that cannot be read.
std::string DigestOfFile(const std::string& path);

}  // namespace kaunter
