// The grids of the loan screen: schedule, payments, charges, drawdowns, cheques, check list. Each
// fills from one query, in one redraw.
#include <fmt/format.h>

#include <stdexcept>

#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/open_for.h"
#include "core/values.h"
#include "loans/new_loan_frm.h"
#include "loans/rebuild_and_tell.h"

namespace kaunter {
namespace {

// Places in the grids.
constexpr int kSchID = 0, kPayable = 2, kCapital = 3, kInterest = 4, kPaid = 7, kUnpaid = 8;
constexpr int kPayID = 0, kSettlement = 11;
constexpr int kChqDate = 0, kChqNo = 1, kChqAmt = 3, kChqPayID = 4, kChqSeqNo = 6;

using Lines = std::vector<std::vector<std::string>>;

Money Cell(const Grid& grid, int row, int column) {
  return Money::TryText(grid.Cell(row, column)).value_or(Money());
}

}  // namespace

void NewLoanFrm::BindGridEvents() {
  vsd3.onCellLeave = [this](int row, int column, const std::string& before) {
    EditSchedule(row, column, before);
  };
  vsd4.onOpen = [this](int row, int) { OpenPayment(row); };
  vsd4.onKey = [this](std::string_view key) {
    const int row = vsd4.current_row();
    if (row < 0) return;
    if (key == "Enter") OpenPayment(row);
    if (key == "Delete") DeletePayment(row);
  };
  ChargesDG2.onOpen = [this](int row, int) {
    if (!desk().CanShow("LoanLateChargefrm")) return;
    OpenFor(session(), desk(), "LoanLateChargefrm", ChargesDG2.Cell(row, 0), loaded_id_);
  };
  DrawDownDG.onOpen = [this](int row, int) { OpenDrawdown(DrawDownDG.Cell(row, 0)); };
  CmdDrawDown.onClick = [this] { OpenDrawdown({}); };
  CmdSettle.onClick = [this] { OpenSettlement(); };
  CmdPrint.onClick = [this] { OpenFor(session(), desk(), "frmPrinting", "loan", loaded_id_); };
  vsd.onCellLeave = [this](int row, int column, const std::string& before) {
    EditCheque(row, column, before);
  };
  vsd.onKey = [this](std::string_view key) {
    if (key == "Delete" && vsd.current_row() >= 0) DeleteCheque(vsd.current_row());
  };
}

void NewLoanFrm::LoadGrids() {
  LoadCharges();
  LoadSchedule();
  LoadPayments();
  LoadDrawdowns();
  LoadCheques();
  LoadCheckList();
}

void NewLoanFrm::ClearGrids() {
  for (Grid* grid : {&ChargesDG, &ChargesDG2, &vsd3, &vsd4, &DrawDownDG, &vsd, &Vsd2}) {
    grid->Clear();
  }
  SumSchedule();
}

// --- the schedule

void NewLoanFrm::LoadSchedule() {
  Lines lines;
  std::vector<RowTone> tones;
  const DateTime today = ServerTime(main()).DateOnly();
  for (Recordset rows = main().Query(fmt::format(
           "SELECT SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt,CapitalPayment,FIntAmt,"
           "InterestPayment,Payment,LoanBal,Payableamt-Payment as [Balance],PayExtra,LateInt FROM "
           "SchMast WHERE LoanID={} ORDER BY SchID",
           QuoteStr(loaded_id_)));
       !rows.Eof(); rows.MoveNext()) {
    std::vector<std::string>& line = lines.emplace_back();
    line.push_back(ShowInt(rows.Field("SchID")));
    line.push_back(ShowDate(rows.Field("DueDate")));
    for (const char* column :
         {"PayableAmt", "CapitalAmt", "InterestAmt", "CapitalPayment", "InterestPayment", "Payment",
          "Balance", "LoanBal", "PayExtra", "LateInt", "FIntAmt"}) {
      line.push_back(ShowMoney(rows.Field(column)));
    }
    const Money* unpaid = rows.Field("Balance").AsMoney();
    const DateTime* due = rows.Field("DueDate").AsDate();
    const bool paid = unpaid != nullptr && *unpaid <= Money();
    tones.push_back(paid                             ? RowTone::quiet
                    : due != nullptr && *due < today ? RowTone::bad
                                                     : RowTone::plain);
  }
  vsd3.SetRows(std::move(lines), tones);
  SumSchedule();
}

void NewLoanFrm::EditSchedule(int row, int column, const std::string& before) {
  if (column != kPayable) return;
  EditedLine line{vsd3.Cell(row, kSchID), before, vsd3.Cell(row, kCapital),
                  vsd3.Cell(row, kInterest)};
  const std::string typed = vsd3.Cell(row, kPayable);
  if (auto refusal = EditPayable(&line, typed)) {
    vsd3.SetCell(row, kPayable, before);
    RefuseWith(*refusal);
    return;
  }
  vsd3.SetCell(row, kPayable, line.PayableAmt);
  vsd3.SetMark(false);
  if (line.PayableAmt == before) return;
  vsd3.SetCell(row, kCapital, line.CapitalAmt);
  vsd3.SetCell(row, kUnpaid, ShowMoney(Cell(vsd3, row, kPayable) - Cell(vsd3, row, kPaid)));
  // Without it the save would write the schedule as computed, and the edit would be lost.
  SchChanged.SetChecked(true);
  SumSchedule();
}

void NewLoanFrm::SumSchedule() {
  Money payable, capital, interest, paid;
  for (int row = 0; row < vsd3.RowCount(); ++row) {
    payable += Cell(vsd3, row, kPayable);
    capital += Cell(vsd3, row, kCapital);
    interest += Cell(vsd3, row, kInterest);
    paid += Cell(vsd3, row, kPaid);
  }
  ScheduleTotalLBL.SetText(session().In(
      {fmt::format("{} instalments: payable {}, capital {}, interest {}, paid {}, balance {}",
                   vsd3.RowCount(), ShowMoney(payable), ShowMoney(capital), ShowMoney(interest),
                   ShowMoney(paid), ShowMoney(payable - paid)),
       fmt::format("共 {} 期：应还 {}，本金 {}，利息 {}，已还 {}，未还 {}", vsd3.RowCount(),
                   ShowMoney(payable), ShowMoney(capital), ShowMoney(interest), ShowMoney(paid),
                   ShowMoney(payable - paid))}));
}

std::vector<EditedLine> NewLoanFrm::EditedLines() const {
  std::vector<EditedLine> lines;
  for (int row = 0; row < vsd3.RowCount(); ++row) {
    lines.push_back({vsd3.Cell(row, kSchID), vsd3.Cell(row, kPayable), vsd3.Cell(row, kCapital),
                     vsd3.Cell(row, kInterest)});
  }
  return lines;
}

// Built once: a later change of the schedule leaves the text, which is part of a signed paper.
void NewLoanFrm::BuildRepaymentText() {
  if (!Memo3.empty() || vsd3.RowCount() == 0) return;
  std::string text;
  int count = 0;
  for (int row = 0; row < vsd3.RowCount(); ++row) {
    const std::string& payable = vsd3.Cell(row, kPayable);
    if (row == 0) {
      text = "RM " + payable;
    } else if (payable != vsd3.Cell(row - 1, kPayable)) {
      text += fmt::format(" X {}\r\nRM {}", count, payable);
      count = 0;
    }
    ++count;
  }
  text += fmt::format(" X {}", count);
  main().Execute(fmt::format("UPDATE LoanMast SET Memo3={} WHERE LoanID={}", QuoteStr(text),
                             QuoteStr(loaded_id_)));
  Memo3.SetText(text);
}

// --- payments

void NewLoanFrm::LoadPayments() {
  Lines lines;
  for (Recordset rows = main().Query(fmt::format(
           "Select PayID,SchID,PayDate,PayAmt,IntAmt,Memo5,DiscAmt,TopUpAmt,NewLoanBal,Memo1,"
           "ChargeAmt,ReceiptNo,CapPay,IntPay,Settlement from PaymentMast where LoanID={} ORDER BY "
           "PayID",
           QuoteStr(loaded_id_)));
       !rows.Eof(); rows.MoveNext()) {
    lines.push_back({NullToEmpty(rows.Field("PayID")), NullToEmpty(rows.Field("ReceiptNo")),
                     ShowDate(rows.Field("PayDate")), ShowMoney(rows.Field("PayAmt")),
                     ShowMoney(rows.Field("CapPay")), ShowMoney(rows.Field("IntPay")),
                     ShowMoney(rows.Field("NewLoanBal")), NullToEmpty(rows.Field("Memo1")),
                     ShowMoney(rows.Field("IntAmt")), ShowMoney(rows.Field("DiscAmt")),
                     ShowMoney(rows.Field("ChargeAmt")), NullToEmpty(rows.Field("Settlement"))});
  }
  vsd4.SetRows(std::move(lines));
}

void NewLoanFrm::OpenPayment(int row) {
  if (IsInquiry() || !desk().CanShow("PaymentFrm") || !HasFlag(session(), "AccessPayment")) return;
  const std::string id = loaded_id_;
  if (record_.Changed()) {
    Refuse({"Please save the changes of the loan first", "请先储存贷款的更改"});
    return;
  }
  OpenFor(session(), desk(), "PaymentFrm", "Edit Payment",
          HandOver{{}, id, vsd4.Cell(row, kPayID)});
  LoadLoan(id);
}

void NewLoanFrm::DeletePayment(int row) {
  if (LoanMode != "Edit Loan") return;
  const std::string id = vsd4.Cell(row, kPayID);
  if (!HasFlag(session(), "AccessPayment") || vsd4.Cell(row, kSettlement) == "1") {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (record_.Changed()) {
    Refuse({"Please save the changes of the loan first", "请先储存贷款的更改"});
    return;
  }
  if (!ConfirmLoss({"Confirm to delete payment ?", "确定删除付款？"})) return;
  const bool deleted = Attempt(
      fmt::format("Delete Payment - {}", id),
      {"an error occur during delete payment", "删除付款时发生错误"}, [&] {
        const std::string pay_id = QuoteStr(id);
        const Recordset payment = main().Query(fmt::format(
            "SELECT CompCode,PayAmt,CollectorAmt,IntAmt,DiscAmt,PayDate,Settlement FROM "
            "PaymentMast WHERE PayID={}",
            pay_id));
        // Another desktop may have settled the loan with it since the grid was filled.
        if (!payment.Eof() && NullToEmpty(payment.Field("Settlement")) == "1") {
          throw std::runtime_error(fmt::format("{} is a settlement", id));
        }
        ExecuteOnRow(main(), fmt::format("DELETE PaymentMast WHERE PayID={}", pay_id), id);
        main().Execute(
            fmt::format("UPDATE ChqMast SET PayID='',PayDate=null WHERE LoanID={} AND PayID={}",
                        QuoteStr(loaded_id_), pay_id));
        WriteAudit(session(), "Delete", "Payment", NullToEmpty(payment.Field("CompCode")), id,
                   {payment.Field("PayAmt"), payment.Field("CollectorAmt"), payment.Field("IntAmt"),
                    payment.Field("DiscAmt"), payment.Field("PayDate")});
      });
  if (!deleted) return;
  RebuildAndTell(session(), desk(), loaded_id_, CustID.text());
  Tell(MessageKind::information, {"Payment deleted successfull", "付款已删除"});
  LoadLoan(std::string(loaded_id_));
}

// --- charges

void NewLoanFrm::LoadCharges() {
  const std::string id = QuoteStr(loaded_id_);
  FillGrid(ChargesDG,
           main().Query(fmt::format(
               "SELECT ChargeID,TrxDate,ChargeAmt,ChargeDesc,PType,DueDate FROM ChargeMast where "
               "PType <> 'Batch' AND LoanID={} ORDER BY TrxDate,ChargeID",
               id)));
  Lines months;
  for (Recordset rows = main().Query(fmt::format(
           "SELECT year(TrxDate) as [Y],month(TrxDate) as [M],SUM(ChargeAmt) as ChargeAmt,'Late "
           "Interest' as ChargeDesc,PType,Max(DueDate) as DueDate from ChargeMast WHERE PType = "
           "'Batch' and LoanID={} GROUP BY year(TrxDate),month(TrxDate),PType ORDER BY 1,2",
           id));
       !rows.Eof(); rows.MoveNext()) {
    months.push_back({fmt::format("{:0>2}-{}", ShowInt(rows.Field("M")), ShowInt(rows.Field("Y"))),
                      ShowMoney(rows.Field("ChargeAmt")), NullToEmpty(rows.Field("ChargeDesc")),
                      NullToEmpty(rows.Field("PType")), ShowDate(rows.Field("DueDate"))});
  }
  ChargesDG2.SetRows(std::move(months));
}

// --- drawdowns

// Their sum is the loan's own PayOutAmt, which each release and its delete keep true.
void NewLoanFrm::LoadDrawdowns() {
  FillGrid(DrawDownDG, main().Query(fmt::format(
                           "SELECT SID,TrxDate,DrawDownAmt,UserID,Payee,Remarks FROM DrawDownMast "
                           "WHERE LoanID={} ORDER BY TrxDate",
                           QuoteStr(loaded_id_))));
}

void NewLoanFrm::OpenDrawdown(const std::string& sid) {
  if (LoanMode != "Edit Loan" || loaded_id_.empty() || !desk().CanShow("Drawdown")) return;
  if (record_.Changed()) {
    Refuse({"Please save the changes of the loan first", "请先储存贷款的更改"});
    return;
  }
  const std::string id = loaded_id_;
  OpenFor(session(), desk(), "Drawdown", sid, sid.empty() ? id : std::string());
  LoadLoan(id);
}

void NewLoanFrm::OpenSettlement() {
  // A quotation ends in a payment.
  if (!HasFlag(session(), "AccessPayment")) {
    Refuse({"You are not allow to make payment", "您不可付款"});
    return;
  }
  if (record_.Changed()) {
    Refuse({"Please save the changes of the loan first", "请先储存贷款的更改"});
    return;
  }
  const std::string id = loaded_id_;
  OpenFor(session(), desk(), "Settlementfrm", "", id);
  LoadLoan(id);
}

// --- cheques

void NewLoanFrm::LoadCheques() {
  Lines lines;
  for (Recordset rows = main().Query(fmt::format(
           "SELECT * FROM ChqMast WHERE LoanID={} ORDER BY SeqNo", QuoteStr(loaded_id_)));
       !rows.Eof(); rows.MoveNext()) {
    lines.push_back({ShowDate(rows.Field("ChqDate")), NullToEmpty(rows.Field("ChqNo")),
                     NullToEmpty(rows.Field("ChqBank")), ShowMoney(rows.Field("ChqAmt")),
                     NullToEmpty(rows.Field("PayID")), ShowDate(rows.Field("PayDate")),
                     ShowInt(rows.Field("SeqNo"))});
  }
  vsd.SetRows(std::move(lines));
}

void NewLoanFrm::EditCheque(int row, int column, const std::string& before) {
  const std::string typed = Trim(vsd.Cell(row, column));
  vsd.SetCell(row, column, before);  // until the table has it
  const auto refuse = [this](const Caption& text) { Refuse(vsd, text); };
  if (typed == before) return;
  if (!vsd.Cell(row, kChqPayID).empty()) {
    refuse({"cannot change a cheque that is paid in", "已入账的支票不可更改"});
    return;
  }
  std::string assignment;
  std::string shown = typed;
  if (column == kChqAmt) {
    const auto amount = Money::TryText(typed);
    if (!amount) return refuse(kInvalidAmount);
    shown = ShowMoney(*amount);
    assignment = "ChqAmt=" + StripCommaOrZero(shown);
  } else if (column == kChqDate) {
    if (!IsDate(typed)) return refuse(kInvalidDate);
    assignment = "ChqDate=" + SqlDate(typed);
  } else {
    return;
  }
  ExecuteOnRow(main(),
               fmt::format("UPDATE ChqMast SET {} WHERE LoanID={} AND SeqNo={} AND PayID=''",
                           assignment, QuoteStr(loaded_id_), vsd.Cell(row, kChqSeqNo)),
               vsd.Cell(row, kChqNo));
  vsd.SetCell(row, column, shown);
  vsd.SetMark(false);
}

void NewLoanFrm::DeleteCheque(int row) {
  if (LoanMode != "Edit Loan") return;
  if (!vsd.Cell(row, kChqPayID).empty()) {
    Refuse({"cannot delete cheque", "支票不可删除"});
    return;
  }
  const std::string number = vsd.Cell(row, kChqNo);
  if (!ConfirmLoss({fmt::format("Confirm to delete cheque {} ?", number),
                    fmt::format("确定删除支票 {}？", number)})) {
    return;
  }
  ExecuteOnRow(main(),
               fmt::format("DELETE FROM ChqMast WHERE LoanID={} AND SeqNo={} AND PayID=''",
                           QuoteStr(loaded_id_), vsd.Cell(row, kChqSeqNo)),
               number);
  vsd.RemoveRow(row);
}

// --- the check list of the customer

void NewLoanFrm::LoadCheckList() {
  Recordset rows = main().Query(fmt::format(
      "SELECT CheckListDesc,Detail,Checked,Remarks,Detail FROM CheckListTrans WHERE CheckListType "
      "= 'CL' AND CustID={} ORDER BY CheckListSeq",
      QuoteStr(CustID.text())));
  if (rows.Eof()) {
    rows = main().Query(
        "SELECT CheckListDesc,'' as [Detail],'2' as [Checked],'' as [Remarks] FROM CheckListMast "
        "WHERE CheckListType = 'CL' ORDER BY CheckListSeq");
  }
  FillGrid(Vsd2, std::move(rows));
}

}  // namespace kaunter
