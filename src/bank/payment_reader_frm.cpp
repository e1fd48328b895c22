#include "bank/payment_reader_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "bank/bank_file.h"
#include "bank/reader_sources.h"
#include "bank/taken_lines.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/places.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/hourglass.h"
#include "screen/stop_bar.h"

namespace kaunter {
namespace {

// Places in the grid.
constexpr int kLoan = 1;

const Caption kReading{"Reading", "正在读取"};

// The person has stopped the reading.
class Stopped {};

[[noreturn]] void RefuseMany(const std::string& english, const std::string& chinese) {
  throw BankFileRefused({fmt::format("There are more than {} lines: {}", kMostReaderRows, english),
                         fmt::format("超过 {} 行：{}", kMostReaderRows, chinese)});
}

}  // namespace

PaymentReaderfrm::PaymentReaderfrm(Session& session, Desk& desk)
    : SessionScreen("PaymentReaderfrm", {"Payment Reader", "银行付款读取"}, session, desk) {
  DG.SetHasChecks(true);
  DG.onTick = [this](int row) { Tick(row); };
  DG.onOpen = [this](int row, int) { OpenPayment(row); };
  DG.onCellLeave = [this](int row, int column, const std::string& before) {
    if (column == kLoan) ChangeLoan(row, before);
  };
  TrxDate.max_length = kDateLength;
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate); };
  ReadCmd.onClick = [this] { ReadTextFile(); };
  ListCmd.onClick = [this] {
    List({"Confirm to read from payment record ?", "确定从付款计划读取？"},
         {"Planned on", "计划于"},
         [this](const DateTime& day) { return PlannedPayments(this->session(), day); });
  };
  DueCmd.onClick = [this] {
    List({"Comfirm to load cheque on due payment ?", "确定读取到期支票付款？"},
         {"Due on", "到期于"},
         [this](const DateTime& day) { return DueInstalments(this->session(), day); });
  };
  CmdCheckAll.onClick = [this] { TickAll(true); };
  CmdUncheckAll.onClick = [this] { TickAll(false); };
  SaveCmd.onClick = [this] { Process(); };
  CmdPrint.onClick = [this] { Print(); };
  FailedCmd.onClick = [this] { WriteFailedLines(); };
  CmdClear.onClick = [this] {
    Clear();
    TrxDate.Clear();
    TrxDate.SetMark(false);
  };
}

void PaymentReaderfrm::Load() {
  TrxDate.SetText(ShowDate(ServerTime(main())));
  Clear();
  try {
    layouts_ = ReadBankLayouts(session().AppPath);
  } catch (const BankLayoutFault& fault) {
    Refuse({fault.what(), fault.what()});
  }
  std::vector<std::string> names;
  for (const BankLayout& layout : layouts_) names.push_back(layout.name);
  Bank.SetItems(std::move(names));
}

// --- reading

void PaymentReaderfrm::ReadTextFile() {
  if (layouts_.empty()) {
    Refuse(Bank, {"No bank's layout is there: is the file BankLayouts.txt beside the program?",
                  "没有任何银行格式：程序旁是否有 BankLayouts.txt 文件？"});
    return;
  }
  const auto layout = std::ranges::find(layouts_, Bank.text(), &BankLayout::name);
  if (layout == layouts_.end()) {
    Refuse(Bank, {"Inport Text File Bank is require", "请选择文本文件的银行"});
    return;
  }
  const std::string path =
      desk().PickFile(session().In({"Select Bank Text File", "请选择银行文本文件"}),
                      folder_.empty() ? PickStart(session()) : folder_,
                      session().In({"Text (*.txt *.csv *.dat)|All files (*)",
                                    "文本 (*.txt *.csv *.dat)|所有文件 (*)"}));
  if (path.empty() || !Confirm({"Confirm to read bank text report ?", "确定读取银行文本报告？"})) {
    return;
  }
  const bool shown = Show({"an error occur during reading text file", "读取文本文件时出现错误"},
                          [&](StopBar& progress) { return LinesOf(*layout, path, progress); });
  if (!shown) return;
  path_ = path;
  folder_ = std::filesystem::path(path).parent_path().string();
  source_ = fmt::format("{} ({})", std::filesystem::path(path).filename().string(), layout->name);
  WriteLog(session(), LogLine(session(), fmt::format("Payment Reader - {} read, {} lines", path,
                                                     rows_.size())));
  ShowTotal();
  Tell(MessageKind::information, {"Complete reading", "读取完毕"});
}

std::vector<ReaderRow> PaymentReaderfrm::LinesOf(const BankLayout& layout, const std::string& path,
                                                 StopBar& progress) {
  const std::string name = std::filesystem::path(path).filename().string();
  if (BankLineRef(path, kMostReaderRows).size() > kLongestRefNo - 8) {
    throw BankFileRefused(
        {"The name of the file is too long, please rename it", "文件名太长，请改名"});
  }
  BankFile file(layout, path);
  std::vector<ReaderRow> rows;
  file.on_way = [&] {
    if (!progress.GoOn(file.percent(), 100, session().In(kReading) + " " + name)) throw Stopped();
  };
  BankLine line;
  while (file.Next(line)) {
    if (rows.size() == static_cast<std::size_t>(kMostReaderRows)) {
      RefuseMany("split the file into several", "请把文件分成几个");
    }
    ReaderRow& row = rows.emplace_back();
    row.file = name;
    row.RefNo = BankLineRef(path, line.number);
    row.date = line.date;
    row.amount = line.amount.value_or(Money());
    row.fingerprint = line.fingerprint;
    row.raw = line.raw;
    row.fault = line.fault;
    row.LoanID = line.reference;
    if (!FindReaderLoan(session(), line.reference, row)) row.CustID.clear();
  }
  head_ = file.head();
  notes_.clear();
  if (!file.account().empty()) {
    notes_ += session().In({"; account ", "；户口 "}) + file.account();
  }
  if (file.passed_by() > 0) {
    notes_ += session().In({fmt::format("; {} other lines passed by", file.passed_by()),
                            fmt::format("；略过其他 {} 行", file.passed_by())});
  }
  return rows;
}

void PaymentReaderfrm::List(
    const Caption& question, const Caption& source,
    const std::function<std::vector<ReaderRow>(const DateTime& day)>& read) {
  if (!RequireDate(session(), TrxDate, {"Date is required", "请输入日期"}) || !Confirm(question)) {
    return;
  }
  const bool shown = Show(
      {"an error occur during reading payment record", "阅读付款资料时出现错误"}, [&](StopBar&) {
        auto rows = read(*DateTime::FromDisplay(TrxDate.text()));
        if (rows.size() > static_cast<std::size_t>(kMostReaderRows)) {
          RefuseMany("choose an earlier date", "请选较早的日期");
        }
        return rows;
      });
  if (!shown) return;
  source_ = session().In(source) + " " + TrxDate.text();
  ShowTotal();
  Tell(MessageKind::information, {"Complete reading", "读取完毕"});
}

bool PaymentReaderfrm::Show(const Caption& failed,
                            const std::function<std::vector<ReaderRow>(StopBar& progress)>& read) {
  Clear();
  try {
    const Hourglass busy(desk());
    StopBar progress(*this);
    progress.GoOn(0, 100, session().In(kReading));
    std::vector<ReaderRow> rows = read(progress);
    ReaderPreview preview(session(), desk());
    std::vector<ReaderOutlook> outlooks;
    outlooks.reserve(rows.size());
    for (ReaderRow& row : rows) {
      if (!progress.GoOn(outlooks.size(), rows.size(), row.RefNo)) throw Stopped();
      outlooks.push_back(preview.Look(row));
    }
    rows_ = std::move(rows);
    outlooks_ = std::move(outlooks);
  } catch (const Stopped&) {
    Clear();
    Tell(MessageKind::information, {"Stopped, nothing was read", "已停止，没有读取"});
    return false;
  } catch (const BankFileRefused& refused) {
    Clear();
    return Refuse({failed.english + "\n" + refused.text.english,
                   failed.chinese + "\n" + refused.text.chinese});
  } catch (const std::exception& failure) {
    Clear();
    LogRollback(session(), "Payment Reader", failure);
    return Refuse(Failed(failed, failure, kNotRead));
  }
  std::vector<std::vector<std::string>> lines;
  std::vector<RowTone> tones;
  for (std::size_t i = 0; i < Count(); ++i) {
    lines.push_back(CellsOf(i));
    tones.push_back(ToneOfRow(i));
  }
  DG.SetRows(std::move(lines), tones);
  for (std::size_t i = 0; i < Count(); ++i) {
    DG.SetTicked(static_cast<int>(i), outlooks_[i].kind == ReaderOutlook::Kind::pays);
    if (outlooks_[i].behind) behind_.insert(rows_[i].LoanID);
  }
  return true;
}

void PaymentReaderfrm::Clear() {
  rows_.clear();
  outlooks_.clear();
  behind_.clear();
  source_.clear();
  path_.clear();
  head_.clear();
  notes_.clear();
  DG.Clear();
  ShowTotal();
}

// --- the list

std::vector<std::string> PaymentReaderfrm::CellsOf(std::size_t index) const {
  const ReaderRow& row = rows_[index];
  return {row.date ? ShowDate(*row.date) : "",
          row.LoanID,
          row.CustID,
          row.CustName,
          ShowMoney(row.amount),
          "CASH",
          session().In(outlooks_[index].text),
          row.Remarks,
          row.PayID,
          row.ErrMsg,
          row.RefNo};
}

RowTone PaymentReaderfrm::ToneOfRow(std::size_t index) const {
  const ReaderRow& row = rows_[index];
  if (!row.processed) return ToneOf(outlooks_[index].kind);
  return row.done ? RowTone::good : RowTone::bad;
}

void PaymentReaderfrm::ShowRow(std::size_t index) {
  const int row = static_cast<int>(index);
  const std::vector<std::string> cells = CellsOf(index);
  for (std::size_t column = 0; column < cells.size(); ++column) {
    DG.SetCell(row, static_cast<int>(column), cells[column]);
  }
  DG.SetTone(row, ToneOfRow(index));
}

void PaymentReaderfrm::TickAll(bool on) {
  for (std::size_t i = 0; i < Count(); ++i) {
    // What looks as if it had been taken is ticked by hand, a line at a time.
    const bool tick = on && !rows_[i].done && outlooks_[i].kind == ReaderOutlook::Kind::pays;
    DG.SetTicked(static_cast<int>(i), tick);
  }
  ShowTotal();
}

void PaymentReaderfrm::Tick(int row) {
  if (rows_[static_cast<std::size_t>(row)].done) DG.SetTicked(row, false);
  ShowTotal();
}

// A customer mistypes the code of his loan: the clerk puts it right.
void PaymentReaderfrm::ChangeLoan(int at, const std::string& before) {
  const auto index = static_cast<std::size_t>(at);
  ReaderRow& row = rows_[index];
  const std::string typed = Trim(DG.Cell(at, kLoan));
  DG.SetCell(at, kLoan, before);
  if (typed == before) return;
  if (row.done || row.source != ReaderSource::file || row.fault) {
    Refuse(DG, {"The loan of this line cannot be changed", "此行的贷款编号不可更改"});
    return;
  }
  ReaderRow changed = row;
  if (!FindReaderLoan(session(), typed, changed)) {
    Refuse(DG,
           {fmt::format("Loan ID {} not found", typed), fmt::format("找不到贷款编号 {}", typed)});
    return;
  }
  changed.processed = false;
  outlooks_[index] = ReaderPreview(session(), desk()).Look(changed);
  row = std::move(changed);
  ShowRow(index);
  DG.SetTicked(at, outlooks_[index].kind == ReaderOutlook::Kind::pays);
  DG.SetMark(false);
  ShowTotal();
}

std::vector<std::size_t> PaymentReaderfrm::Ticked() const {
  std::vector<std::size_t> ticked;
  for (std::size_t i = 0; i < Count(); ++i) {
    if (DG.Ticked(static_cast<int>(i))) ticked.push_back(i);
  }
  return ticked;
}

void PaymentReaderfrm::ShowTotal() {
  Money to_take, taken, failed;
  int taken_count = 0, failed_count = 0, done = 0;
  const std::vector<std::size_t> ticked = Ticked();
  for (const std::size_t i : ticked) to_take += rows_[i].amount;
  for (const ReaderRow& row : rows_) {
    if (row.processed && row.done) {
      ++taken_count;
      taken += row.amount;
    } else if (row.processed) {
      ++failed_count;
      failed += row.amount;
    } else if (row.done) {
      ++done;
    }
  }
  Caption text{
      fmt::format("{} lines, {} to take, {}", Count(), ticked.size(), ShowMoney(to_take)),
      fmt::format("共 {} 行，将收取 {} 笔，{}", Count(), ticked.size(), ShowMoney(to_take))};
  const auto add = [&text](int count, const char* english, const char* chinese,
                           const std::string& amount) {
    if (count == 0) return;
    text.english += fmt::format("; {} {}{}", count, english, amount);
    text.chinese += fmt::format("；{} {} 笔{}", chinese, count, amount);
  };
  add(done, "done before", "先前已处理", "");
  add(taken_count, "taken", "已收取", ", " + ShowMoney(taken));
  add(failed_count, "failed", "失败", ", " + ShowMoney(failed));
  TotalLBL.SetText(session().In(text) + notes_);
  CmdPrint.SetEnabled(Count() > 0);
  bool any = false;
  for (std::size_t i = 0; i < Count() && !any; ++i) any = CannotStand(rows_[i], i);
  FailedCmd.SetEnabled(any);
}

void PaymentReaderfrm::OpenPayment(int at) {
  const auto index = static_cast<std::size_t>(at);
  if (!desk().CanShow("PaymentFrm") || rows_[index].CustID.empty()) return;
  const std::string id = rows_[index].done ? rows_[index].PayID : std::string();
  const bool other_changes = std::exchange(session().PaymentsChanged, false);
  OpenFor(session(), desk(), "PaymentFrm", id.empty() ? "New Payment" : "Edit Payment",
          HandOver{{}, rows_[index].LoanID, id});
  const bool changed = session().PaymentsChanged;
  session().PaymentsChanged = changed || other_changes;
  if (!changed || rows_[index].done) return;
  // The money of this line may have been taken there: the person ticks it again if it was not.
  outlooks_[index] = ReaderPreview(session(), desk()).Look(rows_[index]);
  outlooks_[index].kind = ReaderOutlook::Kind::doubted;
  outlooks_[index].text.english =
      "A payment was saved from here, tick the line if it is another one. " +
      outlooks_[index].text.english;
  outlooks_[index].text.chinese =
      "已由此储存一笔付款，如非同一笔请勾选。" + outlooks_[index].text.chinese;
  ShowRow(index);
  DG.SetTicked(at, false);
  ShowTotal();
}

}  // namespace kaunter
