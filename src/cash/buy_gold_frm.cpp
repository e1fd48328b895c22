#include "cash/buy_gold_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cash/gold_cells.h"
#include "cash/gold_figures.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/picker.h"
#include "core/values.h"
#include "screen/text.h"

namespace kaunter {
namespace {

enum Place {
  kNo,
  kGoldID,
  kDesc,
  kQty,
  kUnitPrice,
  kWeight,
  kEstimate,
  kAmount,
  kRemarks,
  kSoldDate,
  kSoldAmt,
  kPlaces
};

const Caption kNotFound{"Record not found", "找不到记录"};

// How a cell's figure is shown; "" for a text.
std::string_view FormOf(int column) {
  if (column == kQty) return kPieceForm;
  if (column == kWeight) return kWeightForm;
  return column == kUnitPrice || column == kEstimate || column == kAmount ? kAmountForm : "";
}

}  // namespace

FrmBuyGold::FrmBuyGold(Session& session, Desk& desk)
    : SessionScreen("FrmBuyGold", {"Buy Gold", "买入黄金"}, session, desk),
      record_("GoldTransMast", "LoanID"),
      right_(session, desk) {
  for (TextBox* box : {&CustName, &UserID, &DateCreated, &TotEstAmt, &TotAmt}) {
    box->SetLocked(true);
  }
  record_.Add(TrxDate, As::date).Add(CompCode).Add(CustID).Add(Remarks).Add(UserID).ReadOnly();
  record_.Add(DateCreated, As::date_time).ReadOnly();
  for (TextBox* box : {&TotEstAmt, &TotAmt, &OtherAmt, &PayAmt}) record_.Add(*box, As::money);

  OfferPicker(session, LoanID, "BuyGoldPop", [this](const std::string& id) { LoadPurchase(id); });
  LoanID.onLeave = [this] { LeaveLoanID(); };
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate); };
  CompCode.onPick = [this] { ShowHand(); };
  OfferPicker(session, CustID, "CustPop", [this](const std::string& id) {
    if (!CustID.Editable()) return;
    CustID.SetText(id);
    ShowCustomer();
  });
  CustID.onLeave = [this] {
    CustID.SetText(Trim(CustID.text()));
    if (!SameText(CustID.text(), shown_customer_)) ShowCustomer();
  };
  Remarks.onLeave = [this] { Remarks.SetText(ApplyCapLock(this->session(), Remarks.text())); };
  Vsd2.tip = {"Type in the last line to add one, Delete removes the line",
              "在最后一行输入以加入，Delete 键移除"};
  Vsd2.onCellLeave = [this](int row, int column, const std::string& before) {
    LeaveCell(row, column, before);
  };
  Vsd2.onKey = [this](std::string_view key) {
    if (key == "Delete") RemoveLine();
  };
  OtherAmt.onLeave = [this] {
    if (LeaveAmount(OtherAmt, true)) SumUp();
  };
  PayAmt.onEnter = [this] {
    if (PayAmt.empty() && Lines() > 0) PayAmt.SetText(ShowMoney(ToPay()));
  };
  PayAmt.onLeave = [this] {
    if (LeaveAmount(PayAmt, false)) SumUp();
  };
  CmdPrint.onClick = [this] { Print(); };
  CmdDelete.onClick = [this] { Delete(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void FrmBuyGold::Load() {
  record_.TakeWidths(main());
  LoanID.max_length = CustID.max_length;  // keys of one width
  TrxDate.max_length = kDateLength;
  OtherAmt.max_length = PayAmt.max_length = kMoneyLength;
  FillCompanies(CompCode, session());
  std::vector<std::string> kinds;
  for (Recordset rows = main().Query("SELECT GoldID FROM GoldTypeMast ORDER BY GoldID");
       !rows.Eof(); rows.MoveNext()) {
    kinds.push_back(NullToEmpty(rows.Field(0)));
  }
  Vsd2.SetColumnItems(kGoldID, std::move(kinds));
  StartNew();
  if (!session().HandOverLoanID.empty()) {
    LoadPurchase(session().HandOverLoanID);
  } else if (!session().HandOverCustID.empty()) {
    CustID.SetText(session().HandOverCustID);
    ShowCustomer();
    record_.Remember();
  }
}

bool FrmBuyGold::RequestClose() { return MayDiscard(Changed()); }

bool FrmBuyGold::Changed() const { return record_.Changed() || Typed() != remembered_items_; }

// --- showing a purchase

void FrmBuyGold::StartNew() {
  for (Control* box : controls()) box->SetMark(false);
  record_.Clear();
  LoanID.Clear();
  CustName.Clear();
  loaded_id_.clear();
  right_.Forget();
  stored_ = {};
  shown_customer_.clear();
  offered_ = {};
  CustID.SetLocked(false);
  CmdDelete.SetEnabled(false);
  CmdPrint.SetEnabled(false);
  TrxDate.SetText(ServerNow(main(), false));
  CompCode.SetText(CompCode.items().size() == 1 ? CompCode.items()[0] : session().CurrentCompCode);
  Vsd2.Clear();
  KeepBlankLine();
  SumUp();
  ShowHand();
  record_.Remember();
  remembered_items_ = Typed();
}

void FrmBuyGold::LeaveLoanID() {
  LeaveKey(
      LoanID, loaded_id_, Changed(), [this](std::string id) { LoadPurchase(std::move(id)); },
      [this] { StartNew(); });
}

void FrmBuyGold::LoadPurchase(std::string id) {
  GoldPurchase purchase = ReadGoldPurchase(main(), id);
  if (!purchase.Exists() ||
      !MayUseCompany(session(), NullToEmpty(purchase.header.Field("CompCode")))) {
    Refuse(LoanID, kNotFound);
    return;
  }
  if (!MayLeaveRecord(Changed())) {
    LoanID.SetText(loaded_id_);
    return;
  }
  ShowPurchase(std::move(purchase));
}

void FrmBuyGold::ShowPurchase(GoldPurchase purchase) {
  StartNew();
  record_.Load(purchase.header);
  loaded_id_ = NullToEmpty(purchase.header.Field("LoanID"));
  LoanID.SetText(loaded_id_);
  CustName.SetText(
      ScalarQuery(main(), "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(CustID.text())));
  shown_customer_ = CustID.text();
  std::vector<std::vector<std::string>> lines;
  std::vector<RowTone> tones;
  for (Recordset item = purchase.items; !item.Eof(); item.MoveNext()) {
    const auto figure = [&item](const char* column, std::string_view form) {
      return Format(Money::TryText(NullToEmpty(item.Field(column))).value_or(Money()), form);
    };
    const std::string sold = ShowDate(item.Field("SoldDate"));
    const Money brought = Sen(item, "SoldAmt");
    lines.push_back({std::to_string(lines.size() + 1), NullToEmpty(item.Field("GoldID")),
                     NullToEmpty(item.Field("GoldDesc")), figure("Qty", kPieceForm),
                     figure("UnitPrice", kAmountForm), figure("Weight", kWeightForm),
                     figure("TotalAmt", kAmountForm), figure("LoanAmt", kAmountForm),
                     NullToEmpty(item.Field("Remarks")), sold,
                     brought.IsZero() && sold.empty() ? "" : ShowMoney(brought)});
    tones.push_back(sold.empty() ? RowTone::plain : RowTone::quiet);
  }
  Vsd2.SetRows(std::move(lines), tones);
  KeepBlankLine();
  stored_ = std::move(purchase);
  // Whose purchase it is stays; another customer's is another purchase.
  CustID.SetLocked(true);
  CmdDelete.SetEnabled(true);
  CmdPrint.SetEnabled(true);
  ShowDifference();
  ShowHand();
  record_.Remember();
  remembered_items_ = Typed();
}

bool FrmBuyGold::ShowCustomer() {
  CustName.Clear();
  shown_customer_.clear();
  CustID.SetMark(false);
  if (CustID.empty()) return true;
  const Recordset row =
      main().Query("SELECT CustID,CompCode FROM CustMast WHERE CustID=" + QuoteStr(CustID.text()));
  if (row.Eof() || !MayUseCompany(session(), NullToEmpty(row.Field("CompCode")))) {
    return Refuse(CustID, {fmt::format("Customer ID {} not found", CustID.text()),
                           fmt::format("找不到顾客 {}", CustID.text())});
  }
  CustID.SetText(NullToEmpty(row.Field("CustID")));
  shown_customer_ = CustID.text();
  CustName.SetText(
      ScalarQuery(main(), "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(CustID.text())));
  return true;
}

// --- the items

bool FrmBuyGold::IsLine(int row) const {
  for (int column = kGoldID; column <= kRemarks; ++column) {
    if (!Vsd2.Cell(row, column).empty()) return true;
  }
  return false;
}

int FrmBuyGold::Lines() const {
  int lines = 0;
  for (int row = 0; row < Vsd2.RowCount(); ++row) lines += IsLine(row) ? 1 : 0;
  return lines;
}

std::string FrmBuyGold::Typed() const {
  std::string all;
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    if (!IsLine(row)) continue;
    for (int column = kGoldID; column <= kRemarks; ++column) all += Vsd2.Cell(row, column) + "\t";
    all += "\n";
  }
  return all;
}

void FrmBuyGold::LeaveCell(int row, int column, const std::string& before) {
  std::string text = Trim(Vsd2.Cell(row, column));
  const std::string_view form = FormOf(column);
  const auto refuse = [&](const Caption& why) {
    Vsd2.SetCell(row, column, before);
    Refuse(Vsd2, why);
  };
  if (!form.empty() && !text.empty()) {
    const auto figure = GoldFigure(text, form);
    if (!figure) return refuse(kInvalidAmount);
    text = *figure;
  } else if (column == kDesc || column == kRemarks) {
    text = ApplyCapLock(session(), text);
    if (CharacterCount(text) > (column == kDesc ? kItemDescLength : kItemRemarkLength)) {
      return refuse(kTextTooLong);
    }
  }
  Vsd2.SetCell(row, column, text);
  Vsd2.SetMark(false);
  // A price a gram and a weight make an estimate, until one is typed.
  if ((column == kUnitPrice || column == kWeight) && Vsd2.Cell(row, kEstimate).empty()) {
    const Money price = Money::TryText(Vsd2.Cell(row, kUnitPrice)).value_or(Money());
    const Money weight = Money::TryText(Vsd2.Cell(row, kWeight)).value_or(Money());
    if (!price.IsZero() && !weight.IsZero()) {
      Vsd2.SetCell(row, kEstimate, ShowMoney(price * weight));
    }
  }
  KeepBlankLine();
  SumUp();
}

void FrmBuyGold::RemoveLine() {
  const int row = Vsd2.current_row();
  if (row < 0 || row >= Vsd2.RowCount() || !IsLine(row) || !Vsd2.Editable()) return;
  std::string item = Vsd2.Cell(row, kDesc);
  if (item.empty()) item = Vsd2.Cell(row, kGoldID);
  if (item.empty()) item = Vsd2.Cell(row, kNo);
  if (!ConfirmLoss(
          {fmt::format("Confirm to remove {} ?", item), fmt::format("确定移除 {}？", item)})) {
    return;
  }
  Vsd2.RemoveRow(row);
  KeepBlankLine();
  SumUp();
}

void FrmBuyGold::KeepBlankLine() {
  if (Vsd2.RowCount() == 0 || IsLine(Vsd2.RowCount() - 1)) {
    Vsd2.AddRow(std::vector<std::string>(kPlaces));
  }
  int number = 0;
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    Vsd2.SetCell(row, kNo, IsLine(row) ? std::to_string(++number) : std::string());
  }
}

Money FrmBuyGold::ToPay() const {
  return SumOf(Vsd2, kAmount) + Money::TryText(OtherAmt.text()).value_or(Money());
}

// The pay amount of a new purchase that was what the purchase came to goes on being so.
void FrmBuyGold::SumUp() {
  TotEstAmt.SetText(ShowMoney(SumOf(Vsd2, kEstimate)));
  TotAmt.SetText(ShowMoney(SumOf(Vsd2, kAmount)));
  const Money to_pay = ToPay();
  if (IsNew() && !PayAmt.empty() && Money::TryText(PayAmt.text()) == offered_) {
    PayAmt.SetText(ShowMoney(to_pay));
  }
  offered_ = to_pay;
  ShowDifference();
}

void FrmBuyGold::ShowDifference() {
  const auto paid = Money::TryText(PayAmt.text());
  const Money off = paid ? *paid - ToPay() : Money();
  if (off.IsZero()) {
    DiffLBL.SetText({});
  } else {
    const std::string by = ShowMoney(off < Money() ? -off : off);
    DiffLBL.SetText(session().In(
        off < Money()
            ? Caption{fmt::format("Pay Amount is {} less than the items and Other come to", by),
                      fmt::format("付出金额比金饰与其他的总数少 {}", by)}
            : Caption{fmt::format("Pay Amount is {} more than the items and Other come to", by),
                      fmt::format("付出金额比金饰与其他的总数多 {}", by)}));
  }
}

void FrmBuyGold::ShowHand() {
  GoldInHand hand;
  for (const GoldInHand& one : ReadGoldInHand(session(), CompCode.text())) hand = one;
  HandLBL.SetText(
      session().In({fmt::format("Gold in hand of {}: {} item(s), {} g, cost {}", CompCode.text(),
                                hand.items, Format(hand.weight, kWeightForm), ShowMoney(hand.cost)),
                    fmt::format("{} 的库存黄金：{} 件，{} 克，成本 {}", CompCode.text(), hand.items,
                                Format(hand.weight, kWeightForm), ShowMoney(hand.cost))}));
}

bool FrmBuyGold::LeaveAmount(TextBox& box, bool may_be_negative) {
  box.SetText(Trim(box.text()));
  box.SetMark(false);
  if (box.empty()) return true;
  const auto amount = Money::TryText(box.text());
  const auto shown =
      GoldFigure(amount && may_be_negative && *amount < Money() ? (-*amount).ToText() : box.text(),
                 kAmountForm);
  if (!shown) return Refuse(box, kInvalidAmount);
  box.SetText(ShowMoney(*amount));
  return true;
}

}  // namespace kaunter
