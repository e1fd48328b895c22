#include "collections/batch_link_frm.h"

#include <fmt/format.h>

#include "collections/refusals.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/record.h"
#include "core/values.h"
#include "loans/charge_totals.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

// Places in the grids.
constexpr int kChargeID = 0, kAmount = 4;
constexpr int kPayLoan = 3;

const Caption kRetrieveFailed{"an error occur during retrieve late charge"};

}  // namespace

BatchLinkfrm::BatchLinkfrm(Session& session, Desk& desk)
    : SessionScreen("BatchLinkfrm", {"Late Charge Reversal"}, session, desk) {
  LoanID.max_length = kKeyLength;
  DateFrom.max_length = DateTo.max_length = kDateLength;
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) {
    LoanID.SetText(id);
    LeaveLoan();
  });
  LoanID.onLeave = [this] {
    LoanID.SetText(Trim(LoanID.text()));
    if (!SameText(LoanID.text(), asked_loan_)) LeaveLoan();
  };
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box, {"Invalid Date"}); };
  }
  DG.onCellLeave = [this](int row, int column, const std::string& before) {
    if (column == kAmount) EditAmount(row, before);
  };
  DG2.onOpen = [this](int row, int) { OpenPayment(row); };
  Command1.onClick = [this] { RetrieveByDate(); };
  Command2.onClick = [this] { ListPayments(); };
  SaveCmd.onClick = [this] { Save(); };
}

void BatchLinkfrm::Load() { SaveCmd.SetEnabled(false); }

bool BatchLinkfrm::RequestClose() { return MayDiscard(AnyChanged()); }

// --- the charges of a loan

bool BatchLinkfrm::CheckLoan() {
  if (LoanID.empty()) return Refuse(LoanID, {"Loan ID is required"});
  const Recordset row =
      main().Query("SELECT CompCode FROM LoanMast WHERE LoanID=" + QuoteStr(LoanID.text()));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(LoanID, LoanNotFound(LoanID.text()).english);
  }
  LoanID.SetMark(false);
  return true;
}

void BatchLinkfrm::LeaveLoan() {
  asked_loan_ = LoanID.text();
  if (LoanID.empty() || !CheckLoan()) return;
  if (Confirm(
          {fmt::format("Confirm to retrieve all Late Charges from Loan ID {} ?", LoanID.text())})) {
    RetrieveAll();
  }
}

void BatchLinkfrm::RetrieveAll() {
  Retrieve(
      fmt::format("SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt,OrgAmt From ChargeMast WHERE "
                  "LoanID={} AND  PType='Batch' ORDER BY TrxDate",
                  QuoteStr(LoanID.text())));
}

bool BatchLinkfrm::CheckDates() {
  return RequireDate(session(), DateFrom, {"Date From is require"}, {"Invalid Date"}) &&
         RequireDate(session(), DateTo, {"Date To is require"}, {"Invalid Date"}) &&
         CheckDateOrder(session(), DateFrom, DateTo);
}

void BatchLinkfrm::RetrieveByDate() {
  if (!CheckDates() || !CheckLoan()) return;
  Retrieve(
      fmt::format("SELECT ChargeID,LoanID,TrxDate,DueDate,ChargeAmt,OrgAmt FROM ChargeMast WHERE "
                  "PType='Batch' AND TrxDate >= {} AND TrxDate <= {} AND LoanID={}",
                  SqlDate(DateFrom.text()), SqlDate(DateTo.text()), QuoteStr(LoanID.text())));
}

bool BatchLinkfrm::Read(const std::function<void()>& read) {
  return ReadOrTell(session(), *this, fmt::format("Late Charge - Loan ID {}", LoanID.text()),
                    kRetrieveFailed, read);
}

void BatchLinkfrm::Retrieve(const std::string& sql) {
  if (!MayLeaveRecord(AnyChanged())) return;
  if (!Read([&] { FillGrid(DG, main().Query(sql)); })) return;
  selection_ = sql;
  amounts_.clear();
  for (int row = 0; row < DG.RowCount(); ++row) amounts_.push_back(DG.Cell(row, kAmount));
  SaveCmd.SetEnabled(DG.RowCount() > 0);
}

void BatchLinkfrm::EditAmount(int row, const std::string& before) {
  const std::string typed = Trim(DG.Cell(row, kAmount));
  const auto amount = Money::TryText(typed.empty() ? "0" : typed);
  // Less than nothing would count as late interest paid.
  if (!amount || *amount < Money()) {
    DG.SetCell(row, kAmount, before);
    Refuse(DG, {"Invalid Amount"});
    return;
  }
  DG.SetCell(row, kAmount, ShowMoney(*amount));
  DG.SetMark(false);
  DG.SetTone(row, IsChanged(row) ? RowTone::warn : RowTone::plain);
}

bool BatchLinkfrm::IsChanged(int row) const {
  return DG.Cell(row, kAmount) != amounts_.at(static_cast<std::size_t>(row));
}

bool BatchLinkfrm::AnyChanged() const {
  for (int row = 0; row < DG.RowCount(); ++row) {
    if (IsChanged(row)) return true;
  }
  return false;
}

void BatchLinkfrm::Save() {
  if (!AnyChanged()) {
    Refuse(DG, {"No changes, please check"});
    return;
  }
  if (!Confirm({"Confirm to update changes ?"})) return;
  const std::string loan = DG.Cell(0, 1);
  const bool done = Attempt(fmt::format("Late Charge - Loan ID {}", loan), kRetrieveFailed, [&] {
    const Hourglass busy(desk());
    for (int row = 0; row < DG.RowCount(); ++row) {
      if (!IsChanged(row)) continue;
      const std::string& id = DG.Cell(row, kChargeID);
      ExecuteOnRow(
          main(),
          fmt::format("UPDATE ChargeMast SET ChargeAmt={},OrgAmt={} WHERE ChargeID={}",
                      StripCommaOrZero(DG.Cell(row, kAmount)),
                      StripCommaOrZero(amounts_[static_cast<std::size_t>(row)]), QuoteStr(id)),
          id);
    }
    RefreshChargeTotals(main(), loan);
  });
  if (!done) return;
  for (int row = 0; row < DG.RowCount(); ++row) {
    amounts_[static_cast<std::size_t>(row)] = DG.Cell(row, kAmount);
  }
  Tell(MessageKind::information, {"Process changs done"});
  Retrieve(selection_);
}

// --- payments entered late

void BatchLinkfrm::ListPayments() {
  if (!CheckDates()) return;
  const std::string last_day = DateTime::FromDisplay(DateTo.text())->ToCanonical();
  Read([&] {
    const std::string sql = fmt::format(
        "SELECT p.PayID,p.DateCreated,PayDate,p.LoanID,(p.PayAmt+p.IntAmt-p.DiscAmt) as "
        "[Payment],p.LastDueDate, c.CustName,l.OldLoanCode + ' (' + l.Memo5 + ')' as [LotNo] FROM "
        "PaymentMast  as p INNER JOIN CustMast as c on p.CustID=c.CustID INNER JOIN LoanMast as l "
        "on p.LoanID=l.LoanID WHERE p.DateCreated >= {}{} AND p.DateCreated <= '{} 23:59:59' AND "
        "p.DateCreated > p.LastDueDate ORDER BY p.PayDate,p.LoanID",
        SqlDate(DateFrom.text()), AndCompany(session(), "p.CompCode"), last_day);
    std::vector<std::vector<std::string>> lines;
    for (Recordset rows = main().Query(sql); !rows.Eof(); rows.MoveNext()) {
      lines.push_back(ShownRow(DG2, rows));
      lines.back()[1] = ShowDateTime(rows.Field("DateCreated"));
    }
    DG2.SetRows(std::move(lines));
  });
}

void BatchLinkfrm::OpenPayment(int row) {
  LoanID.SetText(DG2.Cell(row, kPayLoan));
  LeaveLoan();
}

}  // namespace kaunter
