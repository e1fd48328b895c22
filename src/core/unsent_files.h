// What a person hears of photos and documents that the office's server does not have yet.
#pragma once

#include <string_view>

namespace kaunter {

class Screen;
class Session;

void TellNotSent(Session& session, const Screen& screen, std::string_view file,
                 std::string_view why);
// Tells, once, that what somebody asked for did not arrive; false when there is nothing to tell. In
// the Tick of the screens that send.
bool TellUnsent(Session& session, const Screen& screen);

}  // namespace kaunter
