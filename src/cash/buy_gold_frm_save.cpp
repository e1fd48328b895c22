// What FrmBuyGold writes and prints.
#include <fmt/format.h>

#include "cash/buy_gold_frm.h"
#include "core/audit.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/report_path.h"
#include "core/session_report.h"
#include "core/values.h"
#include "screen/hourglass.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr std::size_t kSalesNamed = 8;

// The values of the audit's line.
std::vector<Value> AuditValues(const GoldPurchase& purchase) {
  std::vector<Value> values;
  if (!purchase.Exists()) return values;
  for (const char* column : {"TotEstAmt", "TotAmt", "OtherAmt", "PayAmt", "TrxDate"}) {
    values.push_back(purchase.header.Field(column));
  }
  return values;
}

}  // namespace

bool FrmBuyGold::Check() {
  // A number typed and never found belongs to no purchase; numbers are drawn, not chosen.
  if (!SameText(LoanID.text(), loaded_id_)) {
    return Refuse(LoanID, {"Record not found", "找不到记录"});
  }
  if (!IsNew() &&
      !right_.MayChange({"save gold purchase " + loaded_id_, "储存黄金买入 " + loaded_id_},
                        CompCode.text())) {
    const std::string& user = session().CurrentUserID;
    return Refuse({fmt::format("User {} Level not allow to edit or delete record", user),
                   fmt::format("用户 {} 的级别不可更改或删除记录", user)});
  }
  if (!RequireDate(session(), TrxDate, {"Date is require", "请输入日期"})) return false;
  if (CustID.empty()) return Refuse(CustID, {"Customer ID is require", "请输入顾客编号"});
  if (!SameText(CustID.text(), shown_customer_) && !ShowCustomer()) return false;
  return CheckPayment();
}

bool FrmBuyGold::CheckPayment() {
  if (PayAmt.empty()) return Refuse(PayAmt, {"Pay Amount is require", "请输入付出金额"});
  if (!LeaveAmount(PayAmt, false)) return false;
  if (Lines() == 0) return Refuse(Vsd2, {"Gold Detail is require", "请输入黄金资料"});
  if (!LeaveAmount(OtherAmt, true)) return false;
  return !CompCode.empty() || Refuse(CompCode, {"Company Code is require", "请输入公司"});
}

bool FrmBuyGold::MayLoseSales(const Caption& when) {
  const std::vector<std::string> sales = StoredSales(stored_.items);
  if (sales.empty()) return true;
  std::string named;
  for (std::size_t i = 0; i < sales.size() && i < kSalesNamed; ++i) named += "\n" + sales[i];
  if (sales.size() > kSalesNamed) named += fmt::format("\n... +{}", sales.size() - kSalesNamed);
  return ConfirmLoss(
      {fmt::format("What is noted of these sales is lost {}:{}\n\nGo on ?", when.english, named),
       fmt::format("{}，以下卖出记录将会丢失：{}\n\n继续吗？", when.chinese, named)});
}

// --- the save

void FrmBuyGold::Save() {
  if (!Check()) return;
  SumUp();
  if (!Confirm({"Confirm to save record?", "确定储存记录？"}) ||
      !MayLoseSales({"when the purchase is saved again", "再次储存这笔买入"})) {
    return;
  }
  const std::size_t lost = StoredSales(stored_.items).size();
  std::string id = loaded_id_;
  Outcome outcome = Outcome::written;
  const bool saved =
      Attempt(fmt::format("Buy Gold {} - Customer ID {}", id, CustID.text()),
              {"an error occur during saving the record", "储存记录时发生错误"}, [&] {
                const Hourglass busy(desk());
                outcome = Store(id);
              });
  if (!saved || !TellOutcome(outcome)) return;
  // What is shown is stored, whatever the reading below meets.
  loaded_id_ = id;
  LoanID.SetText(id);
  record_.Remember();
  remembered_items_ = Typed();
  if (lost > 0) {
    WriteLog(
        session(),
        LogLine(session(), fmt::format("Buy Gold {} saved again, {} sale(s) cleared", id, lost)));
  }
  Tell(MessageKind::information, {"Record Saved", "记录已储存"});
  LoadPurchase(id);
}

FrmBuyGold::Outcome FrmBuyGold::Store(std::string& id) {
  const bool is_new = IsNew();
  if (is_new) {
    id = NextGoldNumber(main(), CompCode.text());
  } else if (const Outcome held = HoldStored(); held != Outcome::written) {
    return held;
  }
  WriteHeader(id);
  WriteItems(id);
  WriteAudit(session(), is_new ? "Create" : "Modify", "Buy Gold", CompCode.text(), id,
             AuditValues(stored_));
  return Outcome::written;
}

void FrmBuyGold::WriteHeader(const std::string& id) {
  const std::string date = SqlDate(TrxDate.text());
  const std::string company = QuoteStr(CompCode.text());
  const std::string estimate = StripCommaOrZero(TotEstAmt.text());
  const std::string total = StripCommaOrZero(TotAmt.text());
  const std::string other = StripCommaOrZero(OtherAmt.text());
  const std::string paid = StripCommaOrZero(PayAmt.text());
  const std::string remarks = QuoteStr(Remarks.text());
  if (IsNew()) {
    main().Execute(fmt::format(
        "INSERT INTO GoldTransMast (LoanID,CompCode,CustID,TrxDate,TotEstAmt,TotAmt,OtherAmt,"
        "PayAmt,UserID,DateCreated,Remarks) VALUES ({},{},{},{},{},{},{},{},{},{},{})",
        QuoteStr(id), company, QuoteStr(CustID.text()), date, estimate, total, other, paid,
        QuoteStr(session().CurrentUserID), SqlDateTime(ServerTime(main())), remarks));
  } else {
    ExecuteOnRow(main(),
                 fmt::format("UPDATE GoldTransMast SET TrxDate={},CompCode={},TotEstAmt={},"
                             "TotAmt={},OtherAmt={},PayAmt={},Remarks={} WHERE LoanID={}",
                             date, company, estimate, total, other, paid, remarks, QuoteStr(id)),
                 id);
  }
}

void FrmBuyGold::WriteItems(const std::string& id) {
  main().Execute("DELETE FROM LoanCollateral WHERE LoanID=" + QuoteStr(id));
  int number = 0;
  for (int row = 0; row < Vsd2.RowCount(); ++row) {
    if (!IsLine(row)) continue;
    const std::vector<std::string>& cells = Vsd2.Row(row);
    main().Execute(fmt::format(
        "INSERT INTO LoanCollateral (LoanID,CompCode,CustID,SeqNo,GoldID,GoldDesc,Qty,UnitPrice,"
        "Weight,TotalAmt,LoanAmt,Remarks) VALUES ({},{},{},{},{},{},{},{},{},{},{},{})",
        QuoteStr(id), QuoteStr(CompCode.text()), QuoteStr(CustID.text()), ++number,
        QuoteStr(cells[1]), QuoteStr(cells[2]), StripCommaOrZero(cells[3]),
        StripCommaOrZero(cells[4]), StripCommaOrZero(cells[5]), StripCommaOrZero(cells[6]),
        StripCommaOrZero(cells[7]), QuoteStr(cells[8])));
  }
}

FrmBuyGold::Outcome FrmBuyGold::HoldStored() {
  if (!HoldGoldPurchase(main(), loaded_id_)) return Outcome::gone;
  return ReadGoldPurchase(main(), loaded_id_) == stored_ ? Outcome::written : Outcome::changed;
}

bool FrmBuyGold::TellOutcome(Outcome outcome) {
  if (outcome == Outcome::written) return true;
  if (outcome == Outcome::gone) {
    return Refuse(LoanID, {fmt::format("{} not found: it was deleted on another desktop meanwhile. "
                                       "What you typed still stands here.",
                                       loaded_id_),
                           fmt::format("找不到 {}：已被另一台电脑删除。您输入的资料仍保留在此。",
                                       loaded_id_)});
  }
  return Refuse(
      LoanID,
      {fmt::format("{} was changed or sold from on another desktop since it was opened here, and "
                   "nothing was written. What you typed still stands here. Press F2 and pick {} to "
                   "see it as it is now.",
                   loaded_id_, loaded_id_),
       fmt::format("{} 打开之后已被另一台电脑更改或卖出，因此未写入任何资料。您输入的资料仍保留在"
                   "此。请按 F2 选择 {} 查看现况。",
                   loaded_id_, loaded_id_)});
}

// --- the delete

void FrmBuyGold::Delete() {
  if (IsNew()) return;
  if (!right_.MayDelete({"delete gold purchase " + loaded_id_, "删除黄金买入 " + loaded_id_},
                        CompCode.text())) {
    Refuse({"You are not allow to delete record", "您不可删除记录"});
    return;
  }
  if (!ConfirmLoss({"Confirm to Delete Buy Gold Record ?", "确定删除买入黄金记录？"}) ||
      !MayLoseSales({"with the purchase", "随着这笔买入删除"})) {
    return;
  }
  const std::string key = QuoteStr(loaded_id_);
  Outcome outcome = Outcome::written;
  const bool deleted =
      Attempt("Buy Gold " + loaded_id_,
              {"an error occur during deleting the record", "删除记录时发生错误"}, [&] {
                const Hourglass busy(desk());
                outcome = HoldStored();
                if (outcome != Outcome::written) return;
                ExecuteOnRow(main(), "DELETE GoldTransMast WHERE LoanID=" + key, loaded_id_);
                main().Execute("DELETE FROM LoanCollateral WHERE LoanID=" + key);
                WriteAudit(session(), "Delete", "Buy Gold", CompCode.text(), loaded_id_,
                           AuditValues(stored_));
              });
  if (!deleted || !TellOutcome(outcome)) return;
  Tell(MessageKind::information, {"Buy Gold Record Deleted", "买入黄金记录已删除"});
  StartNew();
}

// --- the paper

void FrmBuyGold::Print() {
  const std::string file = "GoldVoucher.rpt";
  ReportJob job = SessionReport(session(), file);
  if (!ReportFileExists(job.ReportFileName)) {
    Refuse({fmt::format("Report file {} not found", file), fmt::format("找不到报表文件 {}", file)});
    return;
  }
  if (Changed()) {
    Refuse({"Please save the changes first", "请先储存更改"});
    return;
  }
  job.SelectionFormula = "{GoldTransMast.LoanID} = " + QuoteStr(loaded_id_);
  job.ReportTitle = session().In({"Gold Purchase", "买入黄金"});
  desk().Print(job);
}

}  // namespace kaunter
