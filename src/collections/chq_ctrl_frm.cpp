#include "collections/chq_ctrl_frm.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "collections/refusals.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

// Places in the grid.
constexpr int kNo = 0, kDate = 1, kBank = 2, kAmount = 3, kStatus = 4;

constexpr std::string_view kNew = "NEW";
// A payment that takes a cheque writes its number and date beside it and leaves the status: the
// status of such a cheque is shown, never stored.
constexpr std::string_view kUsed = "USED";

std::string StatusOf(const Recordset& cheque) {
  std::string status = NullToEmpty(cheque.Field("ChqStatus"));
  const bool taken = !NullToEmpty(cheque.Field("PayID")).empty();
  return taken && SameText(status, kNew) ? std::string(kUsed) : status;
}

// Another desktop's payment may take it while a question stands.
constexpr std::string_view kNotTaken = " and (PayID='' or PayID is null)";

}  // namespace

ChqCtrlFrm::ChqCtrlFrm(Session& session, Desk& desk)
    : SessionScreen("ChqCtrlFrm", {"Cheque", "支票"}, session, desk) {
  for (TextBox* box : {&CustName, &LoanDate, &ChqStatus}) box->SetLocked(true);
  LoanID.picker = "LoanPop";
  LoanID.onSearch = [this] { PickLoan(); };
  LoanID.onLeave = [this] { LeaveLoanID(); };
  SearchCmd.onClick = [this] { PickLoan(); };
  ChqNo.onLeave = [this] { LeaveChqNo(); };
  ChqDate.onLeave = [this] { CheckDateBox(this->session(), ChqDate); };
  ChqAmt.onLeave = [this] {
    ChqAmt.SetText(Trim(ChqAmt.text()));
    if (!ChqAmt.empty()) CheckAmount();
  };
  ChqDG.onRow = [this](int row) {
    if (!Typed()) ShowCheque(row);
  };
  ChqDG.onOpen = [this](int row, int) {
    if (MayLeaveRecord(Typed())) ShowCheque(row);
  };
  Cmd1.shortcut = "Ctrl+S";
  Cmd1.onClick = [this] { Add(); };
  Cmd3.onClick = [this] { Amend(); };
  Cmd4.onClick = [this] { Remove(); };
}

void ChqCtrlFrm::Load() {
  const Recordset none = main().Query("SELECT * FROM ChqMast WHERE LoanID=''");
  for (const Column& column : none.columns()) {
    if (column.name == "ChqNo") ChqNo.max_length = column.width;
    if (column.name == "ChqBank") ChqBank.max_length = column.width;
  }
  LoanID.max_length = kKeyLength;
  ChqDate.max_length = kDateLength;
  ChqAmt.max_length = kMoneyLength;
  FillItems(ChqBank, main(), "SELECT BankCode FROM BankMast ORDER BY BankCode");
  ClearLoan();
}

std::string ChqCtrlFrm::Rest() const {
  return fmt::format("{}\n{}\n{}", ChqDate.text(), ChqAmt.text(), ChqBank.text());
}

bool ChqCtrlFrm::Typed() const { return ChqNo.text() != shown_number_ || Rest() != shown_rest_; }

void ChqCtrlFrm::Remember() {
  shown_number_ = ChqNo.text();
  shown_rest_ = Rest();
}

bool ChqCtrlFrm::RequestClose() { return MayDiscard(Typed()); }

bool ChqCtrlFrm::Read(const std::function<void()>& read) {
  return ReadOrTell(session(), *this, fmt::format("Cheque - Loan ID {}", LoanID.text()),
                    {"an error occur during reading cheque record", "阅读支票资料时出现错误"},
                    read);
}

bool ChqCtrlFrm::Write(const std::function<void()>& write) {
  return Attempt(fmt::format("Cheque No {} - Loan ID {}", ChqNo.text(), loaded_loan_),
                 {"an error occur during saving cheque record", "储存支票资料时出现错误"},
                 [this, &write] {
                   const Hourglass busy(desk());
                   write();
                 });
}

// --- the loan

void ChqCtrlFrm::LeaveLoanID() {
  LoanID.SetText(Trim(LoanID.text()));
  if (SameText(LoanID.text(), loaded_loan_)) return;
  if (!MayLeaveRecord(Typed())) {
    LoanID.SetText(loaded_loan_);
    return;
  }
  if (LoanID.empty()) {
    ClearLoan();
  } else {
    LoadLoan(std::string(LoanID.text()));
  }
}

void ChqCtrlFrm::PickLoan() {
  const std::string id = Pick(session(), desk(), "LoanPop");
  if (!id.empty() && MayLeaveRecord(Typed())) LoadLoan(id);
}

void ChqCtrlFrm::LoadLoan(const std::string& id) {
  ClearLoan();
  LoanID.SetText(id);
  bool found = false;
  const bool read = Read([&] {
    const Recordset row = main().Query(
        "SELECT l.LoanID,l.CompCode,l.TrxDate,c.CustName FROM LoanMast as l LEFT OUTER JOIN "
        "CustMast as c on l.CustID=c.CustID WHERE l.LoanID=" +
        QuoteStr(id));
    found = !row.Eof() && MayUseCompany(session(), NullToEmpty(row.Field("CompCode")));
    if (!found) return;
    LoanID.SetText(NullToEmpty(row.Field("LoanID")));
    CustName.SetText(NullToEmpty(row.Field("CustName")));
    LoanDate.SetText(ShowDate(row.Field("TrxDate")));
    loaded_loan_ = LoanID.text();
    ReadCheques();
  });
  if (!read) {
    ClearLoan();
    LoanID.SetText(id);
  } else if (!found) {
    Refuse(LoanID, LoanNotFound(id));
  } else {
    LoanID.SetMark(false);
  }
}

void ChqCtrlFrm::ReadCheques() {
  std::vector<std::vector<std::string>> lines;
  std::vector<RowTone> tones;
  for (Recordset rows = main().Query(fmt::format(
           "SELECT * FROM ChqMast WHERE LoanID={} ORDER BY SeqNo", QuoteStr(loaded_loan_)));
       !rows.Eof(); rows.MoveNext()) {
    const std::string status = StatusOf(rows);
    lines.push_back({NullToEmpty(rows.Field("ChqNo")), ShowDate(rows.Field("ChqDate")),
                     NullToEmpty(rows.Field("ChqBank")), ShowMoney(rows.Field("ChqAmt")), status,
                     NullToEmpty(rows.Field("PayID")), ShowDate(rows.Field("PayDate"))});
    tones.push_back(SameText(status, kNew) ? RowTone::plain : RowTone::quiet);
  }
  ChqDG.SetRows(std::move(lines), tones);
}

void ChqCtrlFrm::ClearLoan() {
  for (TextBox* box : {&LoanID, &CustName, &LoanDate}) box->Clear();
  loaded_loan_.clear();
  ChqDG.Clear();
  ClearCheque();
}

// --- the cheque

void ChqCtrlFrm::ClearCheque() {
  for (TextBox* box : {&ChqNo, &ChqDate, &ChqAmt, &ChqStatus}) {
    box->Clear();
    box->SetMark(false);
  }
  ChqBank.Clear();
  ChqBank.SetMark(false);
  Remember();
}

void ChqCtrlFrm::ShowCheque(int row) {
  ClearCheque();
  ChqNo.SetText(ChqDG.Cell(row, kNo));
  ChqDate.SetText(ChqDG.Cell(row, kDate));
  ChqAmt.SetText(ChqDG.Cell(row, kAmount));
  ChqBank.SetText(ChqDG.Cell(row, kBank));
  ChqStatus.SetText(ChqDG.Cell(row, kStatus));
  Remember();
}

// A number of the list brings its cheque, unless something is typed that it would replace.
void ChqCtrlFrm::LeaveChqNo() {
  ChqNo.SetText(Trim(ChqNo.text()));
  if (ChqNo.text() == shown_number_) return;
  ChqStatus.Clear();
  for (int row = 0; row < ChqDG.RowCount(); ++row) {
    if (!SameText(ChqDG.Cell(row, kNo), ChqNo.text())) continue;
    if (Rest() == shown_rest_) {
      ChqDG.SetCurrentRow(row);
      ShowCheque(row);
    } else {
      ChqStatus.SetText(ChqDG.Cell(row, kStatus));
    }
    return;
  }
}

bool ChqCtrlFrm::CheckAmount() {
  const auto amount = Money::TryText(ChqAmt.text());
  if (!amount || *amount <= Money()) return Refuse(ChqAmt, kInvalidAmount);
  ChqAmt.SetText(ShowMoney(*amount));
  ChqAmt.SetMark(false);
  return true;
}

bool ChqCtrlFrm::CheckLoan() {
  if (LoanID.empty()) return Refuse(LoanID, kLoanRequired);
  // What was refused when it was typed is no loan now either.
  return SameText(LoanID.text(), loaded_loan_) || Refuse(LoanID, LoanNotFound(LoanID.text()));
}

bool ChqCtrlFrm::CheckCheque() {
  for (Control* box : std::initializer_list<Control*>{&ChqNo, &ChqAmt, &ChqDate, &ChqBank}) {
    box->SetMark(false);
    if (!Trim(box->Text()).empty()) continue;
    return Refuse(*box, {"Cheque No, Cheque Amount, Cheque Date and Bank is required",
                         "请输入支票号码、支票金额、支票日期及银行"});
  }
  return CheckDateBox(session(), ChqDate) && CheckAmount();
}

std::string ChqCtrlFrm::OfThisCheque() const {
  return fmt::format("LoanID = {} and ChqNo = {}", QuoteStr(loaded_loan_), QuoteStr(ChqNo.text()));
}

std::optional<std::string> ChqCtrlFrm::StoredStatus() {
  const Recordset cheque = main().Query("SELECT * FROM ChqMast WHERE " + OfThisCheque());
  if (cheque.Eof()) return std::nullopt;
  return StatusOf(cheque);
}

bool ChqCtrlFrm::RefuseStatus(const Caption& before, const std::string& status,
                              const Caption& behind) {
  ChqStatus.SetText(status);
  return Refuse(
      ChqNo, {before.english + status + behind.english, before.chinese + status + behind.chinese});
}

// Told, logged, and the list as it is stored now.
void ChqCtrlFrm::Written(const Caption& done, const char* what) {
  const std::string line =
      fmt::format("Cheque No {} {} - Loan ID {}", ChqNo.text(), what, loaded_loan_);
  Tell(MessageKind::information, done);
  Read([this] { ReadCheques(); });
  WriteLog(session(), LogLine(session(), line));
}

void ChqCtrlFrm::Add() {
  if (!CheckLoan() || !CheckCheque()) return;
  const std::string number = ChqNo.text();
  if (!Confirm({fmt::format("Add {} Cheque No ?", number), fmt::format("新增支票 {}？", number)})) {
    return;
  }
  bool existed = false;
  const bool added = Write([&] {
    const std::string loan = QuoteStr(loaded_loan_);
    existed = StoredStatus().has_value();
    if (existed) return;
    // Another desktop may have deleted the loan while the question stood.
    if (main().Query("SELECT LoanID FROM LoanMast WHERE LoanID=" + loan).Eof()) {
      throw std::runtime_error(session().In(LoanNotFound(loaded_loan_)));
    }
    const std::string last =
        ScalarQuery(main(), "SELECT MAX(SeqNo) FROM ChqMast WHERE LoanID=" + loan);
    main().Execute(fmt::format(
        "INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt,PayID,ChqStatus) VALUES "
        "({},{},{},{},{},{},'','NEW')",
        loan, last.empty() ? 1 : CLng(last) + 1, QuoteStr(number), SqlDate(ChqDate.text()),
        QuoteStr(ChqBank.text()), StripCommaOrZero(ChqAmt.text())));
  });
  if (!added) return;
  if (existed) {
    Refuse(ChqNo, {fmt::format("Cheque No {} existed", number),
                   fmt::format("支票号码 {} 已存在", number)});
    return;
  }
  Written({fmt::format("Cheque No {} added", number), fmt::format("支票 {} 已新增", number)},
          "added");
  // A customer leaves a book of them: the next one has the same amount and bank.
  for (TextBox* box : {&ChqNo, &ChqDate, &ChqStatus}) box->Clear();
  Remember();
  FocusOn(ChqNo);
}

void ChqCtrlFrm::Amend() {
  if (!CheckLoan()) return;
  const std::string number = ChqNo.text();
  const auto refuse_status = [this](const std::string& status) {
    return RefuseStatus({"Cannot amend or remove cheque status ", "不可更改或删除状态为 "}, status,
                        {"", " 的支票"});
  };
  std::optional<std::string> status;
  if (!Read([&] { status = StoredStatus(); })) return;
  if (status && !SameText(*status, kNew)) {
    refuse_status(*status);
    return;
  }
  if (!CheckCheque() || !Confirm({fmt::format("Confirm to change cheque No {}", number),
                                  fmt::format("确定更改支票 {}？", number)})) {
    return;
  }
  bool changed = false;
  const bool written = Write([&] {
    changed = main().Execute(fmt::format(
                  "UPDATE ChqMast SET ChqDate={},ChqBank={},ChqAmt={},PayID='',ChqStatus='NEW' "
                  "WHERE {}{}",
                  SqlDate(ChqDate.text()), QuoteStr(ChqBank.text()),
                  StripCommaOrZero(ChqAmt.text()), OfThisCheque(), kNotTaken)) > 0;
    if (!changed) status = StoredStatus();
  });
  if (!written) return;
  if (!changed && status) {
    refuse_status(*status);
    return;
  }
  if (!changed) {
    Refuse(ChqNo, {fmt::format("Cheque No {} not found", number),
                   fmt::format("找不到支票号码 {}", number)});
    return;
  }
  Remember();
  Written({fmt::format("Cheque No {} amended", number), fmt::format("支票 {} 已更改", number)},
          "amended");
}

void ChqCtrlFrm::Remove() {
  if (!CheckLoan()) return;
  const std::string number = ChqNo.text();
  if (!ConfirmLoss({fmt::format("Confirm to remove Cheque No {} ?", number),
                    fmt::format("确定删除支票 {}？", number)})) {
    return;
  }
  std::optional<std::string> status;
  if (!Read([&] { status = StoredStatus(); })) return;
  const auto refuse_status = [&] {
    return RefuseStatus({"Cannot remove ", "不可删除状态为 "}, *status,
                        {" Cheque status", " 的支票"});
  };
  if (status && !SameText(*status, kNew)) {
    refuse_status();
    return;
  }
  for (TextBox* box : {&ChqNo, &ChqAmt, &ChqDate}) {
    if (!box->empty()) continue;
    Refuse(*box, {"Cheque No, Cheque Amount and Cheque Date is required",
                  "请输入支票号码、支票金额及支票日期"});
    return;
  }
  bool removed = false;
  const bool written = Write([&] {
    removed = main().Execute(
                  fmt::format("DELETE FROM ChqMast WHERE {}{}", OfThisCheque(), kNotTaken)) > 0;
    status = removed ? std::nullopt : StoredStatus();
  });
  if (!written) return;
  if (status) {
    refuse_status();
    return;
  }
  if (!removed) {
    Refuse(ChqNo, {fmt::format("Cheque No {} not exist", number),
                   fmt::format("支票号码 {} 不存在", number)});
    return;
  }
  Written({fmt::format("Cheque No {} deleted", number), fmt::format("支票 {} 已删除", number)},
          "deleted");
  ClearCheque();
}

}  // namespace kaunter
