#include "collections/loan_late_charge_frm.h"

#include <fmt/format.h>

#include "core/company_access.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kAmount = 2;

}  // namespace

LoanLateChargefrm::LoanLateChargefrm(Session& session, Desk& desk)
    : SessionScreen("LoanLateChargefrm", {"Late Charge"}, session, desk) {}

void LoanLateChargefrm::Load() {
  const std::string& loan = session().HandOverLoanID;
  SetTitle({fmt::format("Late Charge - {}", loan)});
  const auto first = DateTime::FromDisplay("01-" + session().CallerTag);
  const std::string company =
      ScalarQuery(main(), "SELECT CompCode FROM LoanMast WHERE LoanID=" + QuoteStr(loan));
  if (!first || !MayUseCompany(session(), company)) return;
  const DateTime last = first->AddMonths(1).AddDays(-1);
  FillGrid(DG, main().Query(fmt::format(
                   "SELECT ChargeID,TrxDate,ChargeAmt,ChargeDesc,PType,DueDate FROM ChargeMast "
                   "WHERE LoanID={} AND PType='Batch' and TrxDate >={} AND TrxDate <= {} ORDER BY "
                   "TrxDate",
                   QuoteStr(loan), SqlDate(*first), SqlDate(last))));
  Money total;
  for (int row = 0; row < DG.RowCount(); ++row) total += Money::FromText(DG.Cell(row, kAmount));
  TotalLBL.SetText(fmt::format("{} charges, {}", DG.RowCount(), ShowMoney(total)));
}

}  // namespace kaunter
