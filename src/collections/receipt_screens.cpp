#include "collections/receipt_screens.h"

#include <fmt/format.h>

#include "collections/receipt_number.h"
#include "collections/renumber_receipts.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

constexpr int kNumberLength = 10;  // a counter holds at most 2147483647

// What a counter can hold: digits alone.
bool IsCounter(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  try {
    CLng(text);
  } catch (const std::overflow_error&) {
    return false;
  }
  return true;
}

std::string KeyOf(const std::string& company) { return QuoteStr(company + "#R"); }

void TakeCompany(ComboBox& box, Session& session) {
  FillCompanies(box, session);
  box.SetText(session.CurrentCompCode);
  box.SetEnabled(session.CurrentCompCode.empty());
}

}  // namespace

// --- ReceiptNoFrm

ReceiptNoFrm::ReceiptNoFrm(Session& session, Desk& desk)
    : SessionScreen("ReceiptNoFrm", {"Last Receipt No"}, session, desk) {
  CompCode.onPick = [this] { Read(); };
  LoanNo.max_length = kNumberLength;
  LoanNo.onLeave = [this] {
    LoanNo.SetText(Trim(LoanNo.text()));
    if (!LoanNo.empty()) CheckNumber();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void ReceiptNoFrm::Load() {
  TakeCompany(CompCode, session());
  Read();
}

void ReceiptNoFrm::Read() {
  LoanNo.SetText(
      ScalarQuery(main(), "SELECT LoanNo FROM NumberMast WHERE CustID=" + KeyOf(CompCode.text())));
  remembered_ = LoanNo.text();
}

bool ReceiptNoFrm::RequestClose() { return MayDiscard(LoanNo.text() != remembered_); }

bool ReceiptNoFrm::CheckNumber() {
  if (!IsCounter(LoanNo.text())) return Refuse(LoanNo, {"numberic is required"});
  LoanNo.SetMark(false);
  return true;
}

void ReceiptNoFrm::Save() {
  if (CompCode.empty()) {
    Refuse(CompCode, {"Company Code is required"});
    return;
  }
  LoanNo.SetText(Trim(LoanNo.text()));
  if (LoanNo.empty()) {
    Refuse(LoanNo, {"Last Receipt No is required"});
    return;
  }
  if (!CheckNumber() || !Confirm({"Confirm to save ? "})) return;
  const bool saved =
      Attempt("Last Receipt No", {"an error occur during saving Last Receipt No"}, [this] {
        const std::string number = StripCommaOrZero(LoanNo.text());
        const std::string key = KeyOf(CompCode.text());
        if (main().Execute(
                fmt::format("UPDATE NumberMast SET LoanNo={} WHERE CustID={}", number, key)) > 0) {
          return;
        }
        main().Execute(fmt::format(
            "INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ({},{},'0')", key, number));
      });
  if (!saved) return;
  remembered_ = LoanNo.text();
  Tell(MessageKind::information, {"Last Receipt No Saved"});
}

// --- RecalcReceiptNo

RecalcReceiptNo::RecalcReceiptNo(Session& session, Desk& desk)
    : SessionScreen("RecalcReceiptNo", {"Restructure Receipt No", "重编收据号码"}, session, desk) {
  CompCode.onPick = [this] { ShowStyle(); };
  Style.SetLocked(true);
  TrxDate.max_length = kDateLength;
  StartFrom.max_length = kNumberLength;
  SaveCmd.onClick = [this] { Restructure(); };
}

void RecalcReceiptNo::Load() {
  TakeCompany(CompCode, session());
  ShowStyle();
}

void RecalcReceiptNo::ShowStyle() {
  const ReceiptStyle style = ReceiptStyleOf(session(), CompCode.text());
  StartFrom.SetVisible(style == ReceiptStyle::serial);
  const std::string today = ServerNow(main(), false);
  Style.SetText(ReceiptSeriesOn(style, CompCode.text(), today).prefix + "0001");
}

bool RecalcReceiptNo::Check() {
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is required", "请选择公司"});
  TrxDate.SetText(Trim(TrxDate.text()));
  StartFrom.SetText(Trim(StartFrom.text()));
  if (TrxDate.empty()) return Refuse(TrxDate, {"Date are required", "请输入日期"});
  if (StartFrom.visible() && StartFrom.empty()) {
    return Refuse(StartFrom, {"Number are required", "请输入号码"});
  }
  if (!IsDate(TrxDate.text())) {
    return Refuse(TrxDate, {"Invaid Date, please check", "日期不正确，请检查"});
  }
  if (StartFrom.visible() && !IsCounter(StartFrom.text())) {
    return Refuse(StartFrom, {"Invalid Number, please check", "号码不正确，请检查"});
  }
  for (Control* box : {static_cast<Control*>(&CompCode), static_cast<Control*>(&TrxDate),
                       static_cast<Control*>(&StartFrom)}) {
    box->SetMark(false);
  }
  return true;
}

void RecalcReceiptNo::Restructure() {
  if (!Check()) return;
  if (!Confirm({fmt::format("Confirm to restructuring payment receipt no from {} and number start "
                            "from {} ? ",
                            TrxDate.text(), StartFrom.text()),
                fmt::format("确定从 {} 起重编付款收据号码，号码从 {} 开始？", TrxDate.text(),
                            StartFrom.text())})) {
    return;
  }
  if (!Renumber()) return;
  WriteLog(session(),
           LogLine(session(), fmt::format("Restructure Receipt No - {} from {} {}", CompCode.text(),
                                          TrxDate.text(), StartFrom.text())));
  Tell(MessageKind::information, {"Process completed", "程序已完成"});
}

bool RecalcReceiptNo::Renumber() {
  try {
    const Hourglass busy(desk());
    const auto bar = desk().Progress(title().In(session().ChineseFlag));
    Transaction transaction(main());
    RenumberReceipts(session(),
                     {CompCode.text(), *DateTime::FromDisplay(TrxDate.text()), StartFrom.text()},
                     [&bar](int done, int count) {
                       if (done == 1) bar->SetRange(count);
                       bar->SetPosition(done);
                     });
    transaction.Commit();
    return true;
  } catch (const ReceiptConflict& conflict) {
    return Refuse(
        StartFrom.visible() ? StartFrom : TrxDate,
        {fmt::format("Receipt No {} is used before {}, nothing was changed. Start from the first "
                     "day of the series, or behind the last number in use",
                     conflict.what(), TrxDate.text()),
         fmt::format("收据号码 {} 在 {} 之前已使用，没有更改。请从该系列的第一天或最后使用的号码之"
                     "后开始",
                     conflict.what(), TrxDate.text())});
  }
}

}  // namespace kaunter
