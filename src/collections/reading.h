// A record that is read for a screen: what becomes of a failure.
#pragma once

#include <functional>
#include <string_view>

namespace kaunter {

class Session;
class Desk;

// What `read` gives. A failure is logged under `what`, told in the words of both settlement
// screens, and gives false; the caller clears what was read half.
bool ReadOrTell(Session& session, Desk& desk, std::string_view what,
                const std::function<bool()>& read);

}  // namespace kaunter
