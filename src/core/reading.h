// What is read for a screen, and what becomes of a failure.
#pragma once

#include <functional>
#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Session;
class Screen;

inline const Caption kLoanReadFailed{"an error occur during reading loan record",
                                     "阅读贷款资料时出现错误"};
inline const Caption kCustomerReadFailed{"an error occur during reading customer record",
                                         "阅读顾客资料时出现错误"};

// Reads under the hourglass. A failure is logged under `what`, told as `failed` (critical, under
// the title in force), and gives false; the caller clears what was read half.
bool ReadOrTell(Session& session, const Screen& screen, std::string_view what,
                const Caption& failed, const std::function<void()>& read);

}  // namespace kaunter
