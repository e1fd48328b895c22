#include "bank/is_setup_frm.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

#include "core/log.h"
#include "core/menu.h"
#include "core/reading.h"
#include "core/values.h"

namespace kaunter {

ISSetupfrm::ISSetupfrm(Session& session, Desk& desk)
    : SessionScreen("ISSetupfrm", {"Direct Debit Setup", "直接扣账设定"}, session, desk) {
  SaveCmd.onClick = [this] { Save(); };
}

void ISSetupfrm::Load() {
  ReadOrTell(
      session(), *this, "Direct Debit Setting",
      {"an error occur during reading Direc Debit Setting", "阅读直接扣账设定时出现错误"}, [this] {
        const Recordset rows = StoredDebitSetup(main());
        for (std::size_t i = 0; i < txt_.size(); ++i) {
          const auto width = DebitIdentifierWidth(i);
          txt_[i]->max_length = width ? static_cast<int>(*width) : rows.columns().front().width;
          if (i < rows.RowCount()) txt_[i]->SetText(NullToEmpty(rows.rows()[i][0]));
        }
      });
  stored_ = Typed();
}

std::vector<std::string> ISSetupfrm::Typed() const {
  std::vector<std::string> typed;
  for (const TextBox* box : txt_) typed.push_back(box->text());
  return typed;
}

bool ISSetupfrm::RequestClose() { return MayDiscard(Typed() != stored_); }

void ISSetupfrm::Save() {
  for (TextBox* box : txt_) {
    box->SetText(Trim(box->text()));
    if (!box->empty()) continue;
    Refuse(*box,
           {fmt::format("{} is required, please check !", PlainCaption(box->caption(), false)),
            fmt::format("请输入{}！", PlainCaption(box->caption(), true))});
    return;
  }
  if (!Attempt("Direct Debit Setting",
               {"an error occur during saving Direct Debit Setting", "储存直接扣账设定时出现错误"},
               [this] {
                 main().Execute("DELETE FROM Systemast WHERE Param like 'DD-%'");
                 for (std::size_t i = 0; i < txt_.size(); ++i) {
                   main().Execute(fmt::format("INSERT INTO Systemast (Param,Value) VALUES ({},{})",
                                              QuoteStr(DebitSetupKey(i)),
                                              QuoteStr(txt_[i]->text())));
                 }
               })) {
    return;
  }
  const std::vector<std::string> before = std::exchange(stored_, Typed());
  // Whose account the bank pays into follows from these.
  WriteLog(session(),
           LogLine(session(), fmt::format("Direct Debit Setting saved: {} (before: {})",
                                          fmt::join(stored_, ", "), fmt::join(before, ", "))));
  Tell(MessageKind::information, {"Direct Debit Setting saved", "直接扣账设定已储存"});
}

}  // namespace kaunter
