#include "loans/update_sch.h"

#include <fmt/format.h>

#include <stdexcept>
#include <vector>

#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/record.h"
#include "core/values.h"
#include "loans/loan_totals.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kLevelThatMayAmend = 4;

enum ListColumn { kSch, kLoan, kCustomer, kDueDate, kPayable };

const Caption kPaymentsExist = {"Payment exist, no amendment allow", "已有付款，不可更改"};

// What an amended row keeps of the one it replaces.
struct KeptInterest {
  std::string SchID;
  Money InterestAmt;
  Money FIntAmt;
};

std::vector<KeptInterest> ReadInterest(Connection& main, const std::string& id) {
  std::vector<KeptInterest> kept;
  for (Recordset rows =
           main.Query("Select SchID,InterestAmt,FIntAmt from SchMast where LoanID = " + id);
       !rows.Eof(); rows.MoveNext()) {
    kept.push_back({ShowInt(rows.Field("SchID")), Sen(rows, "InterestAmt"), Sen(rows, "FIntAmt")});
  }
  return kept;
}

void InsertRow(Connection& main, const std::vector<std::string>& cells) {
  main.Execute(
      fmt::format("INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,IntChargeAmt,IntAmt,"
                  "Payment,DragInt,DragIntPaid) VALUES ({},{},{},{},{},0,0,0,0,0)",
                  StripCommaOrZero(cells[kSch]), QuoteStr(cells[kLoan]), QuoteStr(cells[kCustomer]),
                  SqlDate(cells[kDueDate]), StripCommaOrZero(cells[kPayable])));
}

// The amended amount is capital and interest again: without the split the first rebuild, whose last
// step makes the payable of the two, would set it to nothing.
void SplitRows(Connection& main, const std::string& id, const std::vector<KeptInterest>& kept,
               Money balance) {
  for (const KeptInterest& row : kept) {
    main.Execute(fmt::format(
        "UPDATE SchMast SET InterestAmt={0},FIntAmt={1},CapitalAmt=PayableAmt - {0},"
        "LoanBal={2},IntDate=DueDate WHERE LoanID={3} AND SchID={4}",
        row.InterestAmt.ToText(), row.FIntAmt.ToText(), balance.ToText(), id, row.SchID));
  }
}

void MoveCustomerBalance(Connection& main, const std::string& cust_id, Money by) {
  const std::string id = QuoteStr(cust_id);
  const Recordset row = main.Query("SELECT TotLoanBal FROM CustMast WHERE CustID=" + id);
  if (row.Eof()) return;
  main.Execute(fmt::format("UPDATE CustMast SET TotLoanBal={} WHERE CustID={}",
                           (Sen(row.Field(0)) + by).ToText(), id));
}

// A special schedule is restored from its backup on each rebuild, so the backup is made anew.
void RenewSpecialBackup(Connection& main, const std::string& loan_id) {
  if (ScalarQuery(main, "SELECT SpecialSch FROM LoanMast WHERE LoanID=" + QuoteStr(loan_id)) ==
      "1") {
    CopySchedule(main, loan_id, /*update_rows=*/false, /*to_backup=*/true);
  }
}

}  // namespace

UpdateSch::UpdateSch(Session& session, Desk& desk)
    : SessionScreen("UpdateSch", {"Update Schedule", "更新还款表"}, session, desk) {
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) {
    if (MayDiscard(changed_)) LoadLoan(id);
  });
  LoanID.onLeave = [this] { LeaveLoanID(); };
  CustName.SetLocked(true);
  NextDueDate.max_length = kDateLength;
  LoanAmt.max_length = kMoneyLength;
  NextDueDate.onLeave = [this] {
    NextDueDate.SetText(Trim(NextDueDate.text()));
    if (picked_ >= 0 || !NextDueDate.empty()) CheckDate();
  };
  LoanAmt.onLeave = [this] {
    LoanAmt.SetText(Trim(LoanAmt.text()));
    if (picked_ >= 0 || !LoanAmt.empty()) CheckAmount();
  };
  SchLV.onRow = [this](int row) { PickRow(row); };
  Command2.onClick = [this] { TakeRow(); };
  SaveCmd.onClick = [this] { Save(); };
}

void UpdateSch::Load() { ClearScreen(); }

bool UpdateSch::RequestClose() { return MayDiscard(changed_ || Typed()); }

// --- the loan

void UpdateSch::LeaveLoanID() {
  LoanID.SetText(Trim(LoanID.text()));
  if (SameText(LoanID.text(), loaded_.LoanID)) return;
  if (!MayDiscard(changed_)) {
    LoanID.SetText(loaded_.LoanID);
  } else if (LoanID.empty()) {
    ClearScreen();
  } else {
    LoadLoan(LoanID.text());
  }
}

void UpdateSch::LoadLoan(std::string id) {
  ClearScreen();
  if (!FindCustomer(id)) {
    RefuseCode(LoanID,
               {fmt::format("Loan {} not found", id), fmt::format("找不到贷款编号 {}", id)});
    return;
  }
  if (HasPayments()) {
    ClearScreen();
    Refuse(LoanID, kPaymentsExist);
    return;
  }
  LoanID.SetText(loaded_.LoanID);
  LoanID.SetMark(false);
  List();
}

bool UpdateSch::FindCustomer(const std::string& id) {
  const std::string quoted = QuoteStr(id);
  const Recordset row = main().Query(
      "Select CM.CustID, CM.CustName from LoanMast as LM inner join CustMast as CM on LM.CustID = "
      "CM.CustID where LoanID=" +
      quoted);
  if (row.Eof()) return false;
  const Recordset loan =
      main().Query("SELECT LoanID,CompCode FROM LoanMast WHERE LoanID=" + quoted);
  // Another company's loan is nobody's business here.
  if (!MayUseCompany(session(), NullToEmpty(loan.Field("CompCode")))) return false;
  loaded_ = {NullToEmpty(loan.Field("LoanID")), NullToEmpty(row.Field("CustID"))};
  CustName.SetText(NullToEmpty(row.Field("CustName")));
  return true;
}

bool UpdateSch::HasPayments() const {
  return !main()
              .Query("SELECT PayID FROM PaymentMast WHERE LoanID=" + QuoteStr(loaded_.LoanID))
              .Eof();
}

std::vector<std::vector<std::string>> UpdateSch::StoredRows() const {
  std::vector<std::vector<std::string>> lines;
  for (Recordset rows = main().Query(
           "Select * from SchMast where LoanID=" + QuoteStr(loaded_.LoanID) + " order by DueDate");
       !rows.Eof(); rows.MoveNext()) {
    lines.push_back({ShowInt(rows.Field("SchID")), NullToEmpty(rows.Field("LoanID")),
                     NullToEmpty(rows.Field("CustID")), ShowDate(rows.Field("DueDate")),
                     ShowMoney(rows.Field("PayableAmt")), ShowMoney(rows.Field("IntChargeAmt")),
                     ShowMoney(rows.Field("IntAmt")), ShowMoney(rows.Field("Payment")),
                     ShowMoney(rows.Field("DragInt")), ShowMoney(rows.Field("DragIntPaid"))});
  }
  return lines;
}

void UpdateSch::List() {
  shown_ = StoredRows();
  SchLV.SetRows(shown_);
  ClearEditing();
  changed_ = false;
}

void UpdateSch::ClearScreen() {
  loaded_ = {};
  LoanID.Clear();
  CustName.Clear();
  SchLV.Clear();
  ClearEditing();
  changed_ = false;
}

// --- one row

void UpdateSch::ClearEditing() {
  picked_ = -1;
  for (TextBox* box : {&NextDueDate, &LoanAmt}) {
    box->Clear();
    box->SetMark(false);
  }
}

void UpdateSch::PickRow(int row) {
  ClearEditing();
  picked_ = row;
  NextDueDate.SetText(SchLV.Cell(row, kDueDate));
  LoanAmt.SetText(SchLV.Cell(row, kPayable));
}

bool UpdateSch::Typed() const {
  return picked_ >= 0 && (NextDueDate.text() != SchLV.Cell(picked_, kDueDate) ||
                          LoanAmt.text() != SchLV.Cell(picked_, kPayable));
}

bool UpdateSch::CheckAmount() {
  const std::optional<Money> amount = Money::TryText(LoanAmt.text());
  if (!amount || *amount < Money()) {
    return Refuse(LoanAmt, {"Invalid Pay Amount", "还款金额无效"});
  }
  LoanAmt.SetText(ShowMoney(*amount));
  LoanAmt.SetMark(false);
  return true;
}

bool UpdateSch::CheckDate() {
  const std::optional<DateTime> date = DateTime::FromDisplay(NextDueDate.text());
  if (!IsDate(NextDueDate.text())) return Refuse(NextDueDate, {"Invalid Dat", "日期无效"});
  // A row stays between its neighbours.
  const auto neighbour = [this](int row) {
    const bool there = picked_ >= 0 && row >= 0 && row < SchLV.RowCount();
    return there ? DateTime::FromDisplay(SchLV.Cell(row, kDueDate)) : std::nullopt;
  };
  if (const auto before = neighbour(picked_ - 1); before && *date <= *before) {
    const std::string& shown = SchLV.Cell(picked_ - 1, kDueDate);
    return Refuse(NextDueDate, {fmt::format("Date cannot less that {}", shown),
                                fmt::format("日期必须在 {} 之后", shown)});
  }
  if (const auto after = neighbour(picked_ + 1); after && *date >= *after) {
    const std::string& shown = SchLV.Cell(picked_ + 1, kDueDate);
    return Refuse(NextDueDate, {fmt::format("Date cannot more that {}", shown),
                                fmt::format("日期必须在 {} 之前", shown)});
  }
  NextDueDate.SetMark(false);
  return true;
}

void UpdateSch::TakeRow() {
  if (picked_ < 0) {
    Refuse(SchLV, {"Please select a schedule first", "请先选择一期"});
    return;
  }
  if (!CheckDate() || !CheckAmount()) return;
  SchLV.SetCell(picked_, kDueDate, NextDueDate.text());
  SchLV.SetCell(picked_, kPayable, LoanAmt.text());
  ClearEditing();
  changed_ = true;
}

// --- the save

void UpdateSch::Save() {
  if (session().CurrentLevel != kLevelThatMayAmend) {
    Refuse({"Your level not allow to amend schedule", "您的级别不可更改还款表"});
    return;
  }
  if (Typed()) {
    Refuse(Command2,
           {"Please press Update or select another schedule first", "请先按更新，或选择另一期"});
    return;
  }
  if (!changed_) {
    Refuse({"Nothing to amend", "没有任何更改"});
    return;
  }
  if (!Confirm({"Confirm to amend ?", "确定更改？"})) return;
  // Written first: the line tells that the change was confirmed, even where the write then fails.
  WriteLog(session(),
           LogLine(session(),
                   fmt::format("Update Schedule - Loan ID {} Schedule Updated", loaded_.LoanID)));
  if (!Write()) return;
  List();
  Tell(MessageKind::information, {"Schedule updated", "还款表已更新"});
}

bool UpdateSch::Write() {
  const auto write = [this] {
    const Hourglass busy(desk());
    const std::string id = QuoteStr(loaded_.LoanID);
    // Another desktop may have taken one since the list was filled.
    if (HasPayments()) throw std::runtime_error(session().In(kPaymentsExist));
    if (StoredRows() != shown_) {
      throw std::runtime_error(session().In(LoanChangedMeanwhile(loaded_.LoanID)));
    }
    const Recordset loan = main().Query("Select LoanBal from LoanMast where LoanID = " + id);
    const Money old_balance = loan.Eof() ? Money() : Sen(loan.Field(0));
    const std::vector<KeptInterest> kept = ReadInterest(main(), id);
    main().Execute("Delete from SchMast where LoanID = " + id);
    Money balance;
    for (int row = 0; row < SchLV.RowCount(); ++row) {
      InsertRow(main(), SchLV.Row(row));
      balance += Money::FromText(StripCommaOrZero(SchLV.Cell(row, kPayable)));
    }
    SplitRows(main(), id, kept, balance);
    RenewSpecialBackup(main(), loaded_.LoanID);
    ExecuteOnRow(main(),
                 fmt::format("UPDATE LoanMast SET LoanBal={},SchChanged='1' WHERE LoanID={}",
                             balance.ToText(), id),
                 loaded_.LoanID);
    MoveCustomerBalance(main(), loaded_.CustID, balance - old_balance);
  };
  return Attempt(fmt::format("Update Schedule - Loan ID {}", loaded_.LoanID),
                 {"an error occur during saving schedule", "储存还款表时发生错误"}, write);
}

}  // namespace kaunter
