#include "compliance/aml_desc_frm.h"

#include <fmt/format.h>

#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/connection.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::size_t kLongestReason = 100;  // AMLADesc.AMLADesc

struct ReasonKind {
  const char* sid;
  Grid AMLADescFrm::*grid;
};
constexpr ReasonKind kKinds[] = {{"LOAN", &AMLADescFrm::LoanDG},
                                 {"PAYMENT", &AMLADescFrm::PaymentDG}};

}  // namespace

AMLADescFrm::AMLADescFrm(Session& session, Desk& desk)
    : SessionScreen("AMLADescFrm", {"AML Reason Code", "反洗钱理由"}, session, desk) {
  for (const ReasonKind& kind : kKinds) {
    Grid& grid = this->*kind.grid;
    grid.onCellLeave = [this, &grid](int row, int, const std::string& before) {
      LeaveCell(grid, row, before);
    };
    grid.onKey = [&grid](std::string_view key) {
      const int row = grid.current_row();
      if (key == "Delete" && row >= 0 && row + 1 < grid.RowCount()) grid.RemoveRow(row);
    };
  }
  SaveCmd.onClick = [this] { Save(); };
}

void AMLADescFrm::Load() { Read(); }

bool AMLADescFrm::RequestClose() { return MayDiscard(Typed() != remembered_); }

void AMLADescFrm::Read() {
  try {
    for (const ReasonKind& kind : kKinds) {
      Grid& grid = this->*kind.grid;
      FillGrid(grid, main().Query(
                         fmt::format("SELECT AMLADesc FROM AMLADesc WHERE SID={} ORDER BY AMLADesc",
                                     QuoteStr(kind.sid))));
      grid.AddRow({""});  // where the next one is typed
    }
  } catch (const SqlError& failure) {
    SaveCmd.SetEnabled(false);  // a save would take away what could not be read
    Tell(MessageKind::critical,
         Failed({"an error occur during reading record", "读取资料时发生错误"}, failure, kNotRead));
  }
  remembered_ = Typed();
}

void AMLADescFrm::LeaveCell(Grid& grid, int row, const std::string& before) {
  std::string text = Trim(grid.Cell(row, 0));
  if (CharacterCount(text) > kLongestReason) {
    Refuse(grid, {fmt::format("A reason has at most {} characters", kLongestReason),
                  fmt::format("理由最多 {} 个字", kLongestReason)});
    text = before;
  }
  for (int other = 0; other < grid.RowCount(); ++other) {
    if (other == row || text.empty() || !SameText(grid.Cell(other, 0), text)) continue;
    Refuse(grid, {fmt::format("{} existed", text), fmt::format("{} 已存在", text)});
    text = before;
  }
  grid.SetCell(row, 0, text);
  if (row + 1 == grid.RowCount() && !text.empty()) grid.AddRow({""});
}

void AMLADescFrm::Save() {
  if (!Confirm({"Confirm to save ?", "确定储存？"})) return;
  const bool saved = Attempt(
      "AML Reason Code", {"an error occur during saving record", "储存资料时发生错误"}, [this] {
        main().Execute("DELETE FROM AMLADesc");
        for (const ReasonKind& kind : kKinds) {
          const Grid& grid = this->*kind.grid;
          for (int row = 0; row < grid.RowCount(); ++row) {
            if (grid.Cell(row, 0).empty()) continue;
            main().Execute(fmt::format("INSERT INTO AMLADesc (SID,AMLADesc) VALUES ({},{})",
                                       QuoteStr(kind.sid), QuoteStr(grid.Cell(row, 0))));
          }
        }
      });
  if (!saved) return;
  Tell(MessageKind::information, {"Record savd", "资料已储存"});
  Read();
}

std::string AMLADescFrm::Typed() const {
  std::string all;
  for (const ReasonKind& kind : kKinds) {
    const Grid& grid = this->*kind.grid;
    for (int row = 0; row < grid.RowCount(); ++row) all += grid.Cell(row, 0) + '\n';
    all += '\f';
  }
  return all;
}

}  // namespace kaunter
