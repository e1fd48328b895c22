#include "upkeep/about_frm.h"

#include "screen/clipboard_desk.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kAllCompanies = 4;  // the level that sees them

}  // namespace

AboutFrm::AboutFrm(Session& session, Desk& desk)
    : SessionScreen("AboutFrm", {"About This Office", "关于本资料库"}, session, desk) {
  CopyCmd.onClick = [this] { Copy(); };
}

void AboutFrm::Load() {
  const Hourglass hourglass(desk());
  about_ = TellAbout(
      session(), session().CurrentLevel >= kAllCompanies ? RowCounts::told : RowCounts::withheld);
  std::vector<std::vector<std::string>> lines;
  for (const AboutLine& line : about_.lines) {
    lines.push_back({session().In(line.what), session().In(line.is)});
  }
  DG.SetRows(lines);
  std::vector<std::vector<std::string>> slow;
  for (const SlowStatement& one : about_.slow) {
    slow.push_back({one.statement, std::to_string(one.times), std::to_string(one.longest),
                    std::to_string(one.total)});
  }
  SlowDG.SetRows(slow);
}

void AboutFrm::Copy() {
  if (auto* desk_with_clipboard = dynamic_cast<ClipboardDesk*>(&desk())) {
    desk_with_clipboard->Copy(AboutText(about_, session().ChineseFlag));
    Tell(MessageKind::information, {"It is copied. Paste it into a letter to support.",
                                    "已复制，可以贴到给支援人员的信里。"});
  } else {
    Tell(MessageKind::critical, {"This PC has no clipboard. kaunter-office about prints the same.",
                                 "此电脑没有剪贴板。kaunter-office about 会打印同样的内容。"});
  }
}

}  // namespace kaunter
