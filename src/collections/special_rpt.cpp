#include "collections/special_rpt.h"

#include <fmt/format.h>

#include <exception>
#include <utility>
#include <variant>

#include "collections/hold_loan.h"
#include "collections/pay_day.h"
#include "collections/plain_payment.h"
#include "collections/refusals.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/telling.h"
#include "core/values.h"
#include "loans/rebuild_and_tell.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

// Places in the grid.
constexpr int kLoan = 0, kDue = 7, kBalance = 8, kLoanBal = 9, kAmount = 10, kPayID = 11,
              kRemarks = 12;

// More failures than these are counted, not named.
constexpr std::size_t kToldFailures = 12;

struct Sort {
  Caption caption;
  const char* column;
};

const std::vector<Sort>& Sorts() {
  static const std::vector<Sort> sorts = {{{"Customer Name", "顾客姓名"}, "c.CustName"},
                                          {{"Loan Code", "贷款编号"}, "l.LoanID"},
                                          {{"Alternate Code", "另用编号"}, "l.OldLoanCode"},
                                          {{"Due Date", "到期日"}, "s.DueDate"}};
  return sorts;
}

}  // namespace

SpecialRpt::SpecialRpt(Session& session, Desk& desk)
    : SessionScreen("SpecialRpt", {"Loan Summary", "贷款总结"}, session, desk) {
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  PayDate.max_length = kDateLength;
  PayDate.onLeave = [this] {
    PayDate.SetText(Trim(PayDate.text()));
    if (!PayDate.empty()) CheckPayDate();
  };
  Command1.onClick = [this] { List(); };
  DG.onCellLeave = [this](int row, int column, const std::string& before) {
    if (column == kAmount) EditAmount(row, before);
  };
  DG.onOpen = [this](int row, int) { OpenPayment(row); };
  SaveCmd.onClick = [this] { Process(); };
}

void SpecialRpt::Load() {
  FillCompanies(CompCode, session());
  FillItems(Bank, main(), "SELECT BankCode FROM BankMast ORDER BY BankCode");
  FillItems(LoanGroupID, main(), "SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID");
  for (ComboBox* choice : {&Bank, &LoanGroupID}) OfferNothing(*choice);  // any
  std::vector<std::string> sorts;
  for (const Sort& sort : Sorts()) sorts.push_back(session().In(sort.caption));
  SortBy.SetItems(std::move(sorts));
  SortBy.SetIndex(0);
  CompCode.SetText(session().CurrentCompCode);
  PayDate.SetText(ShowDate(ServerTime(main())));
  ShowTotal();
}

bool SpecialRpt::RequestClose() { return MayDiscard(CountOpen() > 0); }

bool SpecialRpt::CheckRange() {
  if (!CheckDateBox(session(), DateFrom)) return false;
  if (!RequireDate(session(), DateTo, {"Date To is required", "请输入至日期"})) return false;
  if (!CheckDateOrder(session(), DateFrom, DateTo)) return false;
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code To is required", "请输入公司"});
  return true;
}

bool SpecialRpt::CheckPayDate() {
  const Caption required{"Payment Date is required", "请输入付款日期"};
  if (!RequireDate(session(), PayDate, required)) return false;
  if (PayDate.text() == allowed_day_) return true;
  if (IsHolidayBlocked(session(), desk(), PayDate.text(), true, true)) {
    FocusOn(PayDate);
    return false;
  }
  allowed_day_ = PayDate.text();
  PayDate.SetMark(false);
  return true;
}

// --- the list

void SpecialRpt::List() {
  if (!CheckRange() || !MayLeaveRecord(CountOpen() > 0)) return;
  const Hourglass busy(desk());
  std::string sql =
      "SELECT s.LoanID,s.DueDate,s.PayableAmt-s.Payment as [Balance],c.CustName,c.OldCode,"
      "l.LoanTypeID,l.OfferDays,l.LateChargePerDay,l.LoanBal,l.DragLoan,l.OldLoanCode FROM "
      "(SchMast as s INNER JOIN LoanMast as l on s.LoanID=l.LoanID) INNER JOIN CustMast as c on "
      "l.CustID=c.CustID WHERE ";
  if (!DateFrom.empty()) sql += fmt::format("s.DueDate >= {} AND ", SqlDate(DateFrom.text()));
  sql += fmt::format("s.DueDate <= {}", SqlDate(DateTo.text()));
  if (!Bank.empty()) sql += " AND l.Bank=" + QuoteStr(Bank.text());
  if (!LoanGroupID.empty()) sql += " AND l.LoanGroupID=" + QuoteStr(LoanGroupID.text());
  const int sort = std::max(SortBy.index(), 0);
  sql += fmt::format(" AND s.PayableAmt-s.Payment > 0 AND l.CompCode={} ORDER BY {}",
                     QuoteStr(CompCode.text()), Sorts()[static_cast<std::size_t>(sort)].column);
  std::vector<std::vector<std::string>> lines;
  for (Recordset rows = main().Query(sql); !rows.Eof(); rows.MoveNext()) {
    lines.push_back({NullToEmpty(rows.Field("LoanID")), NullToEmpty(rows.Field("OldLoanCode")),
                     NullToEmpty(rows.Field("CustName")), NullToEmpty(rows.Field("OldCode")),
                     NullToEmpty(rows.Field("LoanTypeID")), ShowInt(rows.Field("OfferDays")),
                     Show2dp(rows.Field("LateChargePerDay")), ShowDate(rows.Field("DueDate")),
                     ShowMoney(rows.Field("Balance")), ShowMoney(rows.Field("LoanBal")), "", "",
                     ""});
  }
  DG.SetRows(std::move(lines));
  ShowTotal();
}

bool SpecialRpt::IsOpen(int row) const {
  return !DG.Cell(row, kAmount).empty() && DG.Cell(row, kPayID).empty();
}

int SpecialRpt::CountOpen() const {
  int count = 0;
  for (int row = 0; row < DG.RowCount(); ++row) count += IsOpen(row) ? 1 : 0;
  return count;
}

void SpecialRpt::EditAmount(int row, const std::string& before) {
  const std::string typed = Trim(DG.Cell(row, kAmount));
  DG.SetCell(row, kAmount, before);
  if (typed == before) return;
  if (const std::string& id = DG.Cell(row, kPayID); !id.empty()) {
    Refuse(DG, {fmt::format("Payment {} is saved, double click the row to change it", id),
                fmt::format("付款 {} 已储存，请双击该行更改", id)});
    return;
  }
  const auto amount = Money::TryText(typed.empty() ? "0" : typed);
  if (!amount || *amount < Money()) {
    Refuse(DG, kInvalidAmount);
    return;
  }
  const std::string shown = ShowMoney(*amount);
  DG.SetCell(row, kAmount, Money::FromText(shown).IsZero() ? std::string() : shown);
  DG.SetCell(row, kRemarks, "");
  DG.SetTone(row, RowTone::plain);
  DG.SetMark(false);
  ShowTotal();
}

void SpecialRpt::ShowTotal() {
  Money total;
  for (int row = 0; row < DG.RowCount(); ++row) {
    if (IsOpen(row)) total += Money::FromText(DG.Cell(row, kAmount));
  }
  const int open = CountOpen();
  TotalLBL.SetText(session().In(
      {fmt::format("{} instalments, {} payments to save, {}", DG.RowCount(), open,
                   ShowMoney(total)),
       fmt::format("共 {} 期，待储存付款 {} 笔，{}", DG.RowCount(), open, ShowMoney(total))}));
}

// --- the payments

void SpecialRpt::Process() {
  if (!CheckRange() || !CheckPayDate()) return;
  const int count = CountOpen();
  if (count == 0) {
    Refuse(DG, {"No Payment, please check", "没有付款，请检查"});
    return;
  }
  if (!Confirm({"Conform to proceed?", "确定进行？"})) return;
  std::vector<std::string> failures;
  {
    const Hourglass busy(desk());
    const auto bar = desk().Progress(session().MsgTitle);
    bar->SetRange(count);
    for (int row = 0; row < DG.RowCount(); ++row) {
      if (!IsOpen(row)) continue;
      const std::string loan = DG.Cell(row, kLoan);
      bar->SetText(loan);
      const std::string failure = Pay(row);
      DG.SetCell(row, kRemarks, failure);
      DG.SetTone(row, failure.empty() ? RowTone::good : RowTone::bad);
      if (!failure.empty()) failures.push_back(fmt::format("{}: {}", loan, failure));
      bar->Step();
    }
  }
  ShowTotal();
  if (!failures.empty()) {
    std::string list;
    for (std::size_t i = 0; i < failures.size() && i < kToldFailures; ++i)
      list += "\n" + failures[i];
    if (failures.size() > kToldFailures) {
      list += fmt::format("\n+ {}", failures.size() - kToldFailures);
    }
    Tell(MessageKind::critical,
         {fmt::format("{} payments are not saved, please check\n{}", failures.size(), list),
          fmt::format("{} 笔付款没有储存，请检查\n{}", failures.size(), list)});
  }
  Tell(MessageKind::information, {"Process completed", "处理完毕"});
}

std::string SpecialRpt::Pay(int row) {
  const std::string loan = DG.Cell(row, kLoan);
  Payment payment;
  try {
    Transaction transaction(main());
    HoldLoan(main(), loan);
    auto made = PlainPayment(main(), loan, PayDate.text(), Money::FromText(DG.Cell(row, kAmount)));
    if (const auto* reason = std::get_if<Caption>(&made)) return session().In(*reason);
    payment = std::get<Payment>(std::move(made));
    CreatePayment(session(), payment);
    transaction.Commit();
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("{} - Loan ID {}", session().MsgTitle, loan), failure);
    return session().In(
        Failed({fmt::format("An error occurs during saving payment - {}", failure.what()),
                fmt::format("储存付款时发生错误 - {}", failure.what())},
               failure));
  }
  DG.SetCell(row, kPayID, payment.PayID);
  session().PaymentsChanged = true;
  RebuildAndTell(session(), desk(), payment.LoanID, payment.CustID);
  // The payment stands; figures that cannot be read again stay as they were listed.
  Guard([&] { RefreshLoan(payment.LoanID); });
  return {};
}

void SpecialRpt::RefreshLoan(const std::string& loan_id) {
  const Recordset stored = main().Query(fmt::format(
      "SELECT s.DueDate,s.PayableAmt-s.Payment as [Balance],l.LoanBal FROM SchMast as s INNER JOIN "
      "LoanMast as l on s.LoanID=l.LoanID WHERE s.LoanID={}",
      QuoteStr(loan_id)));
  for (int row = 0; row < DG.RowCount(); ++row) {
    if (!SameText(DG.Cell(row, kLoan), loan_id)) continue;
    for (Recordset line = stored; !line.Eof(); line.MoveNext()) {
      if (ShowDate(line.Field("DueDate")) != DG.Cell(row, kDue)) continue;
      DG.SetCell(row, kBalance, ShowMoney(line.Field("Balance")));
      DG.SetCell(row, kLoanBal, ShowMoney(line.Field("LoanBal")));
    }
  }
}

// --- one payment by itself

void SpecialRpt::OpenPayment(int row) {
  if (DG.Cell(row, kAmount).empty()) {
    Refuse(DG, {"No Payment, please check", "没有付款，请检查"});
    return;
  }
  if (!desk().CanShow("PaymentFrm")) return;
  const std::string loan = DG.Cell(row, kLoan);
  const std::string id = DG.Cell(row, kPayID);
  const bool other_changes = std::exchange(session().PaymentsChanged, false);
  OpenFor(session(), desk(), "PaymentFrm", id.empty() ? "New Payment" : "Edit Payment",
          HandOver{{}, loan, id});
  if (!session().PaymentsChanged) {
    session().PaymentsChanged = other_changes;
    return;
  }
  // A new payment taken there is this row's: saving the row too would take the money twice.
  const Recordset stored =
      main().Query("SELECT PayAmt FROM PaymentMast WHERE PayID=" + QuoteStr(id));
  DG.SetCell(row, kAmount, stored.Eof() ? std::string() : ShowMoney(stored.Field(0)));
  if (stored.Eof()) DG.SetCell(row, kPayID, "");
  DG.SetCell(row, kRemarks, "");
  DG.SetTone(row, stored.Eof() ? RowTone::plain : RowTone::good);
  RefreshLoan(loan);
  ShowTotal();
}

}  // namespace kaunter
