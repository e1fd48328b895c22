#include "cash/cash_book_frm.h"

#include <fmt/format.h>

#include <utility>

#include "cash/largest_amount.h"
#include "core/amounts.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/screen_rights.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kNumberLength = 10;
constexpr int kListed = 100;
// Places in the grid.
constexpr int kNo = 0;

const Caption kSaveFailed{"an error occur during saving cash book transaction",
                          "储存现金簿交易时出现错误"};

// What the audit takes as a row's values.
std::vector<Value> Audited(const Recordset& row) {
  return {row.Field("TranDate"), row.Field("TranType"), row.Field("TranAmt"),
          row.Field("TranDesc")};
}

}  // namespace

CashBookFrm::CashBookFrm(Session& session, Desk& desk)
    : SessionScreen("CashBookFrm", {"Cash Book", "现金簿"}, session, desk),
      record_("CashBook", "DocID"),
      right_(session, desk) {
  record_.AddValue("CompCode", [this] { return QuoteStr(CompCode.text()); })
      .Add(TranDate, As::date)
      .Add(TranType)
      .Add(TranDesc)
      .Add(TranAmt, As::money)
      .Add(TranMemo)
      .AddValue("CBType", [] { return std::string("'M'"); })
      .Add(CBCat, As::text, "CatCode")
      .AddValue("CashBal", [this] { return after_.cash.ToText(); })
      .AddValue("BankBal", [this] { return after_.bank.ToText(); });
  for (TextBox* box : {&CompDesc, &CashInHand, &CashInBank}) box->SetLocked(true);
  std::vector<std::string> types;
  for (const CashEffect& effect : CashEffects()) {
    if (effect.cash == 0 || effect.bank == 0) types.emplace_back(effect.TranType);
  }
  TranType.SetItems(std::move(types));
  CompCode.onPick = [this] { ShowCompany(); };
  CompCode.onLeave = [this] { LeaveCompany(); };
  OfferPicker(session, CashBookNo, "CashBookPop", [this](const std::string& number) {
    if (MayLeaveRecord(Typed())) Open(number);
  });
  CashBookNo.onLeave = [this] { LeaveNumber(); };
  TranDate.onLeave = [this] { CheckDateBox(this->session(), TranDate); };
  TranAmt.onLeave = [this] {
    TranAmt.SetText(Trim(TranAmt.text()));
    if (!TranAmt.empty()) CheckAmount();
  };
  // Rows that were posted are no business of this screen.
  DG.onOpen = [this](int row, int) {
    if (DG.Tone(row) != RowTone::quiet && MayLeaveRecord(Typed())) Open(DG.Cell(row, kNo));
  };
  SaveCmd.onClick = [this] { Save(); };
  Command1.onClick = [this] { Delete(); };
  SearchCmd.onClick = [this] { CashBookNo.onSearch(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Typed())) ClearAll();
  };
  RecalcCmd.onClick = [this] {
    this->desk().Show("RecalcCashBookFrm");
    ShowCompany();
  };
}

void CashBookFrm::Load() {
  record_.TakeWidths(main());
  CashBookNo.max_length = kNumberLength;
  TranDate.max_length = kDateLength;
  TranAmt.max_length = kMoneyLength;
  FillCompanies(CompCode, session());
  FillItems(CBCat, main(), "SELECT CatCode FROM CashBookCat ORDER BY CatCode");
  OfferShortcut(session(), RecalcCmd, "RecalcCashBookFrm", "");
  ClearAll();
}

bool CashBookFrm::RequestClose() { return MayDiscard(Typed()); }

// The company that a new movement is for is a place to look at, and lost without a word.
bool CashBookFrm::Typed() const {
  return record_.Changed() || (!loaded_.empty() && CompCode.text() != loaded_company_);
}

// --- the company

void CashBookFrm::LeaveCompany() {
  if (!CheckCompanyAccess(session(), desk(), CompCode)) {
    CompCode.Clear();
    FocusOn(CompCode);
  }
  if (CompCode.text() != shown_company_) ShowCompany();
}

void CashBookFrm::ShowCompany() {
  shown_company_ = CompCode.text();
  CompDesc.Clear();
  CashInHand.Clear();
  CashInBank.Clear();
  DG.Clear();
  if (CompCode.empty()) return;
  const std::string company = QuoteStr(CompCode.text());
  CompDesc.SetText(
      ScalarQuery(main(), "Select CompDesc from CompMast where CompCode = " + company));
  const CashPair pair = ReadBalances(main(), CompCode.text());
  CashInHand.SetText(ShowMoney(pair.cash));
  CashInBank.SetText(ShowMoney(pair.bank));
  std::vector<std::vector<std::string>> lines;
  std::vector<RowTone> tones;
  for (Recordset rows = main().Query(fmt::format(
           "SELECT TOP {} DocID,TranDate,TranType,TranDesc,CatCode,TranAmt,CashBal,BankBal,CBType "
           "FROM CashBook WHERE CompCode={} ORDER BY TranDate DESC,DocID DESC",
           kListed, company));
       !rows.Eof(); rows.MoveNext()) {
    lines.push_back(ShownRow(DG, rows));
    tones.push_back(SameText(NullToEmpty(rows.Field("CBType")), "M") ? RowTone::plain
                                                                     : RowTone::quiet);
  }
  DG.SetRows(std::move(lines), tones);
}

// --- the row

void CashBookFrm::LeaveNumber() {
  CashBookNo.SetText(Trim(CashBookNo.text()));
  if (CashBookNo.text() == loaded_) return;
  if (CashBookNo.empty()) {
    // The number taken away makes a new row of what is shown.
    loaded_.clear();
    HintLBL.SetText({});
    return;
  }
  if (!IsNumeric(CashBookNo.text())) {
    Refuse(CashBookNo, {"numeric is require, Please check", "请输入数字，请检查"});
    return;
  }
  if (!MayLeaveRecord(Typed())) {
    CashBookNo.SetText(loaded_);
    return;
  }
  Open(CashBookNo.text());
}

Recordset CashBookFrm::Stored() {
  return main().Query(fmt::format("SELECT * FROM CashBook WHERE DocID={}{}",
                                  StripCommaOrZero(CashBookNo.text()),
                                  AndCompany(session(), "CompCode")));
}

bool CashBookFrm::RefuseNumber() {
  const std::string number = CashBookNo.text();
  return RefuseCode(CashBookNo, {fmt::format("Cash book transaction {} not found", number),
                                 fmt::format("找不到现金簿交易 {}", number)});
}

bool CashBookFrm::RefuseChanged(const Caption& what) {
  const std::string number = CashBookNo.text();
  return Refuse(
      CashBookNo,
      {fmt::format("Cash book transaction {} was changed on another desktop: it is not "
                   "{}, please load it again",
                   number, what.english),
       fmt::format("现金簿交易 {} 已被另一台电脑更改：未{}，请重新载入", number, what.chinese)});
}

void CashBookFrm::Open(std::string number) {
  ClearRow();
  CashBookNo.SetText(std::move(number));
  const Recordset row = Stored();
  if (row.Eof()) {
    RefuseNumber();
    return;
  }
  record_.Load(row);
  CompCode.SetText(NullToEmpty(row.Field("CompCode")));
  loaded_ = NullToEmpty(row.Field("DocID"));
  loaded_company_ = CompCode.text();
  stored_.Take(row);
  CashBookNo.SetText(loaded_);
  CashBookNo.SetMark(false);
  HintLBL.SetText(session().In(
      {"Saving it again moves the balances by its whole amount once more, and deleting it leaves "
       "them as they are: recalculate the cash book afterwards.",
       "再储存会按全数再次变动结余，删除则不变动结余：之后请重算现金簿。"}));
  Command1.SetEnabled(true);
  ShowCompany();
}

void CashBookFrm::ClearRow() {
  record_.Clear();
  CashBookNo.Clear();
  CashBookNo.SetMark(false);
  loaded_.clear();
  right_.Forget();
  HintLBL.SetText({});
  Command1.SetEnabled(false);
}

void CashBookFrm::ClearAll() {
  ClearRow();
  if (CompCode.items().size() == 1) CompCode.SetIndex(0);
  ShowCompany();
}

bool CashBookFrm::CheckAmount() {
  const auto amount = Money::TryText(TranAmt.text());
  // A blank is 0, which is no amount either.
  const Money sen = amount ? Sen(Value(*amount)) : Money();
  if (sen.IsZero() || IsTooLarge(sen)) {
    return Refuse(TranAmt, {fmt::format("Amount cannot be {}", TranAmt.text()),
                            fmt::format("金额不可为 {}", TranAmt.text())});
  }
  TranAmt.SetText(ShowMoney(sen));
  TranAmt.SetMark(false);
  return true;
}

// --- save and delete

bool CashBookFrm::RefuseRight() {
  const std::string& user = session().CurrentUserID;
  return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                 fmt::format("用户 {} 的级别不可更改或删除记录", user)});
}

bool CashBookFrm::Check() {
  if (Trim(TranAmt.text()).empty()) TranAmt.SetText("0");
  if (!CheckDateBox(session(), TranDate)) return false;
  FillBlank(TranDate, ServerNow(main(), false));
  if (CompCode.empty()) {
    return Refuse(CompCode, {"Company Code is require, Please check", "请输入公司编号，请检查"});
  }
  if (Trim(TranType.text()).empty()) {
    return Refuse(TranType,
                  {"Transaction Type is require, Please check", "请输入交易种类，请检查"});
  }
  if (!EffectOf(TranType.text(), Money())) {
    return Refuse(TranType, {fmt::format("\"{}\" is no Transaction Type, please choose one from "
                                         "the list",
                                         TranType.text()),
                             fmt::format("“{}”不是交易种类，请从列表选择", TranType.text())});
  }
  if (!CheckAmount()) return false;
  if (Trim(TranDesc.text()).empty()) {
    return Refuse(TranDesc,
                  {"Transaction Description is require, Please check", "请输入说明，请检查"});
  }
  if (CBCat.empty()) {
    return Refuse(CBCat, {"Category is require, Please check", "请输入类别，请检查"});
  }
  return CheckCompanyAccess(session(), desk(), CompCode);
}

void CashBookFrm::Save() {
  if (!CashBookNo.empty() && !IsNumeric(CashBookNo.text())) {
    LeaveNumber();
    return;
  }
  if (!Check()) return;
  const Recordset before = CashBookNo.empty() ? Recordset() : Stored();
  const bool exists = !before.Eof();
  if (!CashBookNo.empty() && !exists &&
      ScalarQuery(main(), "SELECT COUNT(*) FROM CashBook WHERE DocID=" +
                              StripCommaOrZero(CashBookNo.text())) != "0") {
    RefuseNumber();
    return;
  }
  if (exists && !stored_.Is(before)) {
    RefuseChanged({"saved", "储存"});
    return;
  }
  const std::string number = CashBookNo.text();
  if (exists &&
      !right_.MayChange({"save cash book transaction " + number, "储存现金簿交易 " + number},
                        CompCode.text())) {
    RefuseRight();
    return;
  }
  if (!Confirm({"Confirm Save ?", "确定储存？"})) return;
  if (!Move() || !Store()) return;
  Tell(MessageKind::information, {"Cash Book Transaction saved", "现金簿交易已储存"});
  WriteAudit(session(), exists ? "Modify" : "Create", "Cash Book", CompCode.text(),
             CashBookNo.text(), exists ? Audited(before) : std::vector<Value>());
  Log(fmt::format("saved: {} {} {} - {}", CompCode.text(), TranType.text(), TranAmt.text(),
                  exists ? "changed" : "new"));
  if (!number.empty() && !exists) {
    Tell(MessageKind::information,
         {fmt::format("There was no transaction {} any more: it was added as {}", number,
                      CashBookNo.text()),
          fmt::format("交易 {} 已不存在：已新增为 {}", number, CashBookNo.text())});
  }
  ClearAll();
}

bool CashBookFrm::Move() {
  return AttemptOnRecord(fmt::format("Cash Book - {}", CompCode.text()), kSaveFailed, [this] {
    // Nothing has moved yet where another desktop has changed the row since the question.
    const Recordset now = CashBookNo.empty() ? Recordset() : Stored();
    if (!now.Eof()) stored_.Expect(now, "Cash book transaction " + CashBookNo.text());
    after_ = ApplyToBalances(main(), CompCode.text(), TranType.text(), Sen(TranAmt));
  });
}

bool CashBookFrm::Store() {
  const std::string moved = fmt::format("{} {}", TranType.text(), TranAmt.text());
  try {
    const Hourglass busy(desk());
    Transaction transaction(main());
    std::string number = CashBookNo.text();
    if (number.empty() || main().Execute(record_.UpdateStatement(number)) == 0) {
      main().Execute(record_.InsertStatement());
      number = ScalarQuery(
          main(), fmt::format("SELECT MAX(DocID) FROM CashBook WHERE CompCode={} AND TranDesc={}",
                              QuoteStr(CompCode.text()), QuoteStr(TranDesc.text())));
    }
    transaction.Commit();
    CashBookNo.SetText(number);
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session(), fmt::format("Cash Book - {} {}", CompCode.text(), moved), failure);
    const std::string company = CompCode.text();
    // Behind a line that was cut nobody knows whether the row is there.
    Tell(MessageKind::critical,
         {fmt::format("{}\n{}\nThe balances of {} have moved by {}. Mend the cause; where the row "
                      "is not in the cash book, recalculate the cash book balance and save again.",
                      kSaveFailed.english, failure.what(), company, moved),
          fmt::format("{}\n{}\n{} 的结余已按 {} "
                      "变动。请排除原因；若现金簿没有该笔记录，请先重算现金簿结余，再储存。",
                      kSaveFailed.chinese, failure.what(), company, moved)});
    ShowCompany();
    return false;
  }
}

void CashBookFrm::Delete() {
  const std::string number = CashBookNo.text();
  const Recordset row = number.empty() || !IsNumeric(number) ? Recordset() : Stored();
  if (row.Eof()) {
    RefuseNumber();
    return;
  }
  if (!stored_.Is(row)) {
    RefuseChanged({"deleted", "删除"});
    return;
  }
  if (!right_.MayDelete({"delete cash book transaction " + number, "删除现金簿交易 " + number},
                        CompCode.text())) {
    RefuseRight();
    return;
  }
  if (!ConfirmLoss({fmt::format("Confirm to delete cash book transaction {}", number),
                    fmt::format("确定删除现金簿交易 {}", number)})) {
    return;
  }
  const bool deleted = AttemptOnRecord(
      "Cash Book - delete " + number,
      {"an error occur during deleting cash book transaction", "删除现金簿交易时出现错误"}, [&] {
        stored_.Expect(Stored(), "Cash book transaction " + number);
        ExecuteOnRow(main(), "DELETE FROM CashBook WHERE DocID=" + number, number);
      });
  if (!deleted) return;
  WriteAudit(session(), "Delete", "Cash Book", NullToEmpty(row.Field("CompCode")), number,
             Audited(row));
  Log(fmt::format("{} deleted: {} {}", number, NullToEmpty(row.Field("TranType")),
                  ShowMoney(row.Field("TranAmt"))));
  Tell(MessageKind::information,
       {fmt::format("Cash book transaction {} deleted, please recalculate your cash book balance",
                    number),
        fmt::format("现金簿交易 {} 已删除，请重算现金簿结余", number)});
  ClearAll();
}

void CashBookFrm::Log(const std::string& what) {
  WriteLog(session(), LogLine(session(), "Cash Book " + what));
}

}  // namespace kaunter
