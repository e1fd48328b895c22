// Addresses of the service, and what stands in them.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// A value of a query: what is no letter, digit, "-", "_", "." or "~" as %XX.
std::string EncodedForm(std::string_view value);
// An address as it may be sent: blanks, control characters and what is no ASCII as %XX.
std::string SendableAddress(std::string_view address);
// "service.example:8443" of an address; "" where it is none of http or https.
std::string HostOf(std::string_view address);

}  // namespace kaunter
