#include "cash/sell_gold_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

#include "cash/gold_cells.h"
#include "cash/gold_figures.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/report_path.h"
#include "core/values.h"
#include "screen/hourglass.h"
#include "screen/text.h"

namespace kaunter {
namespace {

enum Place {
  kCompany,
  kLoanID,
  kSeqNo,
  kBought,
  kGoldID,
  kDesc,
  kQty,
  kUnitPrice,
  kWeight,
  kEstimate,
  kCost,
  kRemarks,
  kSoldAmt,
  kSoldDate,
  kSoldRemarks,
  kPlaces
};

constexpr std::size_t kNewsTold = 8;

// The item itself, without what became of it.
bool SameItem(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return std::equal(a.begin(), a.begin() + kSoldAmt, b.begin());
}

std::string NameOf(const std::vector<std::string>& cells) {
  return fmt::format("{} {} {}", cells[kLoanID], cells[kSeqNo], cells[kDesc]);
}

std::string SaleOf(const std::vector<std::string>& cells) {
  if (cells[kSoldDate].empty()) return "-";
  return fmt::format("{} {} {}", cells[kSoldDate], cells[kSoldAmt], cells[kSoldRemarks]);
}

}  // namespace

FrmSellGold::FrmSellGold(Session& session, Desk& desk)
    : SessionScreen("FrmSellGold", {"Selling Gold", "卖出黄金"}, session, desk),
      right_(session, desk) {
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  CompCode.onPick = [this] { ShowFigures(); };
  CmdGo.onClick = [this] { List(); };
  Vsd2.onCellLeave = [this](int row, int column, const std::string& before) {
    LeaveCell(row, column, before);
  };
  Vsd2.onOpen = [this](int row, int column) {
    if (column < kSoldAmt) OpenPurchase(row);
  };
  CmdPrint.onClick = [this] { Print(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(AnyTyped())) ClearAll();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void FrmSellGold::Load() {
  FillCompanies(CompCode, session());
  OfferNothing(CompCode);  // all
  ClearAll();
}

bool FrmSellGold::RequestClose() { return MayDiscard(AnyTyped()); }

// From the oldest purchase that still has gold in hand to today.
void FrmSellGold::ClearAll() {
  Vsd2.Clear();
  listed_.clear();
  condition_.clear();
  CompCode.Clear();
  ShowFigures();
  DateTo.SetText(ServerNow(main(), false));
  DateFrom.SetText(DateTo.text());
  const std::vector<GoldInHand> all = ReadGoldInHand(session());
  for (const GoldInHand& hand : all) {
    if (SqlDate(hand.since) < SqlDate(DateFrom.text())) DateFrom.SetText(hand.since);
  }
}

// --- the list

void FrmSellGold::List() {
  if (!RequireDate(session(), DateFrom, {"Date From is required", "请输入日期自"}) ||
      !RequireDate(session(), DateTo, {"Date To is required", "请输入至日期"}) ||
      !CheckDateOrder(session(), DateFrom, DateTo) || !MayLeaveRecord(AnyTyped())) {
    return;
  }
  const Hourglass busy(desk());
  condition_ = fmt::format("g.TrxDate >= {} AND g.TrxDate <={}", SqlDate(DateFrom.text()),
                           SqlDate(DateTo.text()));
  if (!CompCode.empty()) condition_ += " AND g.CompCode=" + QuoteStr(CompCode.text());
  condition_ += AndCompany(session(), "g.CompCode");
  listed_ = Stored();
  right_.Forget();
  Vsd2.SetMark(false);
  Vsd2.SetRows(listed_);
  for (int row = 0; row < Vsd2.RowCount(); ++row) ShowTone(row);
  ShowFigures();
  if (listed_.empty()) Tell(MessageKind::information, {"No record(s) found", "资料找不到"});
}

std::vector<FrmSellGold::Cells> FrmSellGold::Stored() const {
  std::vector<Cells> lines;
  for (Recordset rows = main().Query(
           "SELECT l.CompCode,l.LoanID,l.SeqNo,g.TrxDate,l.GoldID,l.GoldDesc,l.Qty,l.UnitPrice,"
           "l.Weight,l.TotalAmt,l.LoanAmt,l.Remarks,l.SoldAmt,l.SoldDate,l.SoldRemarks FROM "
           "GoldTransMast as g inner join LoanCollateral as l on g.LoanID=l.LoanID WHERE " +
           condition_ + " ORDER BY l.LoanID,l.SeqNo");
       !rows.Eof(); rows.MoveNext()) {
    Cells cells = ShownRow(Vsd2, rows);
    for (const auto& [place, form] :
         {std::pair{kQty, kPieceForm}, std::pair{kWeight, kWeightForm}}) {
      cells[place] = Format(Money::TryText(cells[place]).value_or(Money()), form);
    }
    lines.push_back(std::move(cells));
  }
  return lines;
}

// Sold is done; an amount without a date is not sold.
void FrmSellGold::ShowTone(int row) {
  const bool dated = !Vsd2.Cell(row, kSoldDate).empty();
  const bool amount = Vsd2.Cell(row, kSoldAmt) != ShowMoney(Money());
  Vsd2.SetTone(row, dated ? RowTone::quiet : amount ? RowTone::warn : RowTone::plain);
}

void FrmSellGold::ShowFigures() {
  std::vector<Cells> lines;
  std::vector<RowTone> tones;
  GoldInHand total;
  const auto add = [&](const GoldInHand& hand, const std::string& since) {
    lines.push_back({hand.company, std::to_string(hand.items), Format(hand.weight, kWeightForm),
                     ShowMoney(hand.cost), since});
  };
  for (const GoldInHand& hand : ReadGoldInHand(session(), CompCode.text())) {
    add(hand, hand.since);
    total.items += hand.items;
    total.weight += hand.weight;
    total.cost += hand.cost;
  }
  tones.resize(lines.size(), RowTone::plain);
  if (lines.size() > 1) {
    total.company = session().In({"Total", "总计"});
    add(total, {});
    tones.push_back(RowTone::total);
  }
  HandDG.SetRows(std::move(lines), tones);
  lines.clear();
  tones.clear();
  for (const GoldMonth& month : ReadGoldResult(session(), CompCode.text())) {
    const Money result = month.sold - month.cost;
    lines.push_back({fmt::format("{:02}-{}", month.month, month.year), std::to_string(month.items),
                     ShowMoney(month.sold), ShowMoney(month.cost), ShowMoney(result)});
    tones.push_back(result < Money() ? RowTone::bad : RowTone::plain);
  }
  ResultDG.SetRows(std::move(lines), tones);
}

void FrmSellGold::LeaveCell(int row, int column, const std::string& before) {
  std::string text = Trim(Vsd2.Cell(row, column));
  const auto refuse = [&](const Caption& why) {
    Vsd2.SetCell(row, column, before);
    Refuse(Vsd2, why);
  };
  if (column == kSoldAmt) {
    const auto figure = GoldFigure(text.empty() ? "0" : text, kAmountForm);
    if (!figure) return refuse(kInvalidAmount);
    text = *figure;
  } else if (column == kSoldDate) {
    if (!text.empty() && !IsDate(text)) return refuse(kInvalidDate);
    const std::string& bought = Vsd2.Cell(row, kBought);
    if (!text.empty() && !bought.empty() && SqlDate(text) < SqlDate(bought)) {
      return refuse(
          {fmt::format("Invalid Date: {} was bought on {}", NameOf(Vsd2.Row(row)), bought),
           fmt::format("日期不正确：{} 于 {} 买入", NameOf(Vsd2.Row(row)), bought)});
    }
  } else if (column == kSoldRemarks) {
    text = ApplyCapLock(session(), text);
    if (CharacterCount(text) > kItemRemarkLength) return refuse(kTextTooLong);
  }
  Vsd2.SetCell(row, column, text);
  Vsd2.SetMark(false);
  ShowTone(row);
}

bool FrmSellGold::IsTyped(int row) const {
  return Vsd2.Row(row) != listed_[static_cast<std::size_t>(row)];
}

bool FrmSellGold::AnyTyped() const {
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    if (IsTyped(row)) return true;
  }
  return false;
}

void FrmSellGold::OpenPurchase(int row) {
  if (!desk().CanShow("FrmBuyGold")) return;
  const std::string own_title = std::exchange(session().MsgTitle, "Buy Gold");
  OpenFor(session(), desk(), "FrmBuyGold", "Buy Gold", Vsd2.Cell(row, kLoanID));
  session().MsgTitle = own_title;
  const std::vector<News> news = ReadNews();
  for (auto one = news.rbegin(); one != news.rend(); ++one) FollowRow(*one);
  ShowFigures();
}

// --- the save

// A sale that is noted already is a record of its own to change.
bool FrmSellGold::MayChangeSales() {
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    const Cells& was = listed_[static_cast<std::size_t>(row)];
    if (was[kSoldDate].empty() || !IsTyped(row)) continue;
    if (right_.MayChange({"change the sale of " + NameOf(was), "更改卖出记录 " + NameOf(was)},
                         was[kCompany])) {
      return true;
    }
    Vsd2.SetCurrentRow(row);
    const std::string& user = session().CurrentUserID;
    return Refuse(Vsd2, {fmt::format("User {} Level not allow to edit or delete record ({})", user,
                                     NameOf(was)),
                         fmt::format("用户 {} 的级别不可更改或删除记录（{}）", user, NameOf(was))});
  }
  return true;
}

void FrmSellGold::Save() {
  if (Vsd2.RowCount() == 0) {
    Refuse(DateFrom, {"No item is listed: press Go first", "尚未列出金饰：请先按列出"});
    return;
  }
  if (!MayChangeSales() || !Confirm({"Confirm to save?", "确定储存？"})) return;
  std::vector<News> news;
  const bool saved =
      Attempt("Sell Gold", {"an error occur during saving record", "储存记录时发生错误"}, [&] {
        const Hourglass busy(desk());
        news = Store();
      });
  if (!saved) return;
  if (!news.empty()) {
    Follow(news);
    return;
  }
  LogSales();
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    listed_[static_cast<std::size_t>(row)] = Vsd2.Row(row);
  }
  Tell(MessageKind::information, {"Sell Gold Saved", "卖出黄金已储存"});
  ShowFigures();
}

std::vector<FrmSellGold::News> FrmSellGold::ReadNews() const {
  std::map<std::pair<std::string, std::string>, Cells> now;
  for (Cells& cells : Stored()) {
    std::pair key(cells[kLoanID], cells[kSeqNo]);
    now.emplace(std::move(key), std::move(cells));
  }
  std::vector<News> news;
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    const Cells& was = listed_[static_cast<std::size_t>(row)];
    const auto found = now.find({was[kLoanID], was[kSeqNo]});
    if (found == now.end()) {
      news.push_back({row, std::nullopt});
    } else if (found->second != was) {
      news.push_back({row, found->second});
    }
  }
  return news;
}

// Nobody buys, deletes or sells what is listed until the save has ended.
std::vector<FrmSellGold::News> FrmSellGold::Store() {
  main().Execute("UPDATE g SET g.UserID=g.UserID FROM GoldTransMast as g WHERE " + condition_);
  std::vector<News> news = ReadNews();
  if (!news.empty()) return news;
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    const Cells& cells = Vsd2.Row(row);
    main().Execute(fmt::format(
        "UPDATE LoanCollateral SET SoldDate={},SoldAmt={},SoldRemarks={},SoldUserID={} WHERE "
        "LoanID={} AND SeqNo={}",
        SqlDate(cells[kSoldDate]), StripCommaOrZero(cells[kSoldAmt]), QuoteStr(cells[kSoldRemarks]),
        QuoteStr(session().CurrentUserID), QuoteStr(cells[kLoanID]), cells[kSeqNo]));
  }
  return news;
}

// The list follows what another desktop has done, except where something is typed: that stays, and
// the person decides.
void FrmSellGold::Follow(const std::vector<News>& news) {
  Caption told{"Another desktop has changed what is listed, and nothing was written:",
               "另一台电脑已更改列出的资料，因此未写入任何资料："};
  for (std::size_t i = 0; i < news.size() && i < kNewsTold; ++i) {
    const Caption line = TellNews(news[i]);
    told.english += "\n" + line.english;
    told.chinese += "\n" + line.chinese;
  }
  if (news.size() > kNewsTold) {
    const std::string more = fmt::format("\n... +{}", news.size() - kNewsTold);
    told.english += more;
    told.chinese += more;
  }
  for (auto one = news.rbegin(); one != news.rend(); ++one) FollowRow(*one);
  Refuse(Vsd2, told);
}

Caption FrmSellGold::TellNews(const News& news) const {
  const Cells& was = listed_[static_cast<std::size_t>(news.row)];
  const std::string name = NameOf(was);
  const bool typed = IsTyped(news.row);
  if (!news.now || !SameItem(was, *news.now)) {
    return typed ? Caption{name +
                               " is no longer there as listed. Take back what you typed in its "
                               "line, or press Go",
                           name + " 已不是列出时的金饰。请取消该行输入的资料，或按列出"}
                 : Caption{name + " is no longer there as listed", name + " 已不是列出时的金饰"};
  }
  const std::string sale = SaleOf(*news.now);
  return typed ? Caption{fmt::format("{} is stored as {}. What you typed is written in its place "
                                     "when you save again",
                                     name, sale),
                         fmt::format("{} 现存为 {}。再次储存将以您输入的资料取代", name, sale)}
               : Caption{fmt::format("{} is now {}", name, sale),
                         fmt::format("{} 现在是 {}", name, sale)};
}

void FrmSellGold::FollowRow(const News& news) {
  Cells& was = listed_[static_cast<std::size_t>(news.row)];
  const bool same_item = news.now && SameItem(was, *news.now);
  if (IsTyped(news.row)) {
    if (same_item) was = *news.now;
    Vsd2.SetTone(news.row, same_item ? RowTone::warn : RowTone::bad);
  } else if (!news.now) {
    listed_.erase(listed_.begin() + news.row);
    Vsd2.RemoveRow(news.row);
  } else {
    was = *news.now;
    for (int column = 0; column < kPlaces; ++column) {
      Vsd2.SetCell(news.row, column, was[static_cast<std::size_t>(column)]);
    }
    ShowTone(news.row);
  }
}

// Who sold what for how much, and what stood there before.
void FrmSellGold::LogSales() {
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    if (!IsTyped(row)) continue;
    const Cells& was = listed_[static_cast<std::size_t>(row)];
    WriteLog(session(), LogLine(session(), fmt::format("Sell Gold {}: {} (was {})", NameOf(was),
                                                       SaleOf(Vsd2.Row(row)), SaleOf(was))));
  }
}

// The list of sales asks for its own dates and companies.
void FrmSellGold::Print() {
  const std::string file =
      session().ChineseFlag ? ChineseReportName("SellGoldList.rpt") : "SellGoldList.rpt";
  const std::string own_title = std::exchange(session().MsgTitle, "Sell Gold Report");
  const std::string own_file = std::exchange(session().ReportFile, file);
  desk().Show("ReportFrm");
  session().MsgTitle = own_title;
  session().ReportFile = own_file;
}

}  // namespace kaunter
