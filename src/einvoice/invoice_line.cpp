#include "einvoice/invoice_line.h"

#include <fmt/format.h>

#include <array>

namespace kaunter {

using namespace einvoice_column;

std::string_view NameOf(SendMode mode) { return mode == SendMode::submit ? "Submit" : "Cancel"; }

const Caption& NameOf(LineState state) {
  static const std::array<Caption, kLineStates> names = {{{"Unsent", "未提交"},
                                                          {"Sent", "已提交"},
                                                          {"Valid", "有效"},
                                                          {"Refused", "被拒"},
                                                          {"Unknown", "不明"},
                                                          {"Cancelled", "已取消"}}};
  return names.at(static_cast<std::size_t>(state));
}

LineState StateOf(const InvoiceLine& line) {
  if (line.mark.Unknown()) return LineState::unknown;
  if (!line.cancel_uuid.empty()) return LineState::cancelled;
  const std::string& status = line.cells[kStatus];
  if (!line.uuid().empty()) {
    if (status == "Valid") return LineState::valid;
    return status == "Invalid" ? LineState::refused : LineState::sent;
  }
  return line.mark.state == SendingMark::State::refused ? LineState::refused : LineState::unsent;
}

Caption ToldState(const InvoiceLine& line) {
  Caption told = NameOf(StateOf(line));
  const auto add = [&told](const std::string& english, const std::string& chinese) {
    told.english += ": " + english;
    told.chinese += "：" + chinese;
  };
  const SendingMark& mark = line.mark;
  const std::string who = fmt::format("{} ({})", mark.user, mark.computer);
  if (mark.state == SendingMark::State::sending) {
    add(fmt::format("sent by {} at {}, no clear answer. {}", who, mark.sent_at, mark.reply),
        fmt::format("{} 于 {} 发送，没有明确的回复。{}", who, mark.sent_at, mark.reply));
  } else if (mark.state == SendingMark::State::answered) {
    add(fmt::format("sent by {} at {}, the service gave {}, which is not recorded yet", who,
                    mark.sent_at, mark.uuid),
        fmt::format("{} 于 {} 发送，服务给了 {}，尚未记录", who, mark.sent_at, mark.uuid));
  } else if (mark.state == SendingMark::State::refused) {
    add(fmt::format("{} {}", mark.sent_at, mark.reply),
        fmt::format("{} {}", mark.sent_at, mark.reply));
  }
  return told;
}

bool WasDone(const InvoiceLine& line, SendMode mode) {
  return mode == SendMode::submit ? !line.uuid().empty() : !line.cancel_uuid.empty();
}

}  // namespace kaunter
