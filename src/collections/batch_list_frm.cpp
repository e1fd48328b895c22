#include "collections/batch_list_frm.h"

#include <fmt/format.h>

#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kAmount = 4;

}  // namespace

BatchListfrm::BatchListfrm(Session& session, Desk& desk)
    : SessionScreen("BatchListfrm", {"Late Charge List", "逾期利息列表"}, session, desk) {}

void BatchListfrm::Load() {
  if (session().HandOverSelection.empty()) return;
  FillGrid(DG, main().Query(session().HandOverSelection));
  Money total;
  for (int row = 0; row < DG.RowCount(); ++row) total += Money::FromText(DG.Cell(row, kAmount));
  TotalLBL.SetText(
      session().In({fmt::format("{} late charges, {}", DG.RowCount(), ShowMoney(total)),
                    fmt::format("共 {} 笔逾期利息，{}", DG.RowCount(), ShowMoney(total))}));
}

}  // namespace kaunter
