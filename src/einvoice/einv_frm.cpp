#include "einvoice/einv_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/open_for.h"
#include "core/telling.h"
#include "core/values.h"
#include "einvoice/check_list.h"
#include "einvoice/document_selection.h"
#include "screen/hourglass.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

// Behind the told columns.
constexpr int kStateColumn = kColumns;
constexpr int kCheckColumn = kColumns + 1;

const Caption kProcessFailed{"an error occur during process einvoicing", "处理电子发票时出现错误"};

std::vector<GridColumn> Columns() {
  return {{{"No", "序"}, Kind::integer, 5},
          {{"ID", "单据编号"}, Kind::text, 18},
          {{"No", "行"}, Kind::integer, 5},
          {{"Invoice Date", "日期"}, Kind::date, 11},
          {{"Customer ID", "顾客编号"}, Kind::text, 12},
          {{"Customer Name", "顾客"}, Kind::text, 22},
          {{"Company", "公司"}, Kind::text, 8},
          {{"Loan ID", "贷款编号"}, Kind::text, 14},
          {{"Sch ID", "期"}, Kind::text, 6},
          {{"Inv Type", "类别"}, Kind::text, 12},
          {{"Tax Code", "税码"}, Kind::text, 8},
          {{"Description", "说明"}, Kind::text, 22},
          {{"Amount", "金额"}, Kind::money, 12},
          {{"Qty", "数量"}, Kind::integer, 6},
          {{"Proceed", "选"}, Kind::text, 0},  // the mark at the front of the row
          {{"tin", "税号"}, Kind::text, 16},
          {{"CustTypeID", "身份号码"}, Kind::text, 16},
          {{"CustType", "身份类别"}, Kind::text, 10},
          {{"CustName", "登记姓名"}, Kind::text, 22},
          {{"Phone", "电话"}, Kind::text, 14},
          {{"Email", "电邮"}, Kind::text, 18},
          {{"Address", "地址"}, Kind::text, 24},
          {{"Postcode", "邮编"}, Kind::text, 8},
          {{"City", "城市"}, Kind::text, 12},
          {{"State", "州"}, Kind::text, 6},
          {{"Country", "国家"}, Kind::text, 8},
          {{"Status", "状态"}, Kind::text, 10},
          {{"uuid", "uuid"}, Kind::text, 26},
          {{"OldID", "原单据"}, Kind::text, 16},
          {{"Olduuic", "原 uuid"}, Kind::text, 26},
          {{"Msg", "回复"}, Kind::text, 24},
          {{"Office State", "办公室状态"}, Kind::text, 12},
          {{"Check", "检查"}, Kind::text, 24}};
}

std::vector<std::string> CellsOf(const InvoiceLine& line, bool chinese) {
  std::vector<std::string> cells = line.cells;
  cells.push_back(NameOf(StateOf(line)).In(chinese));
  cells.push_back(line.faults);
  return cells;
}

}  // namespace

EInvFrm::EInvFrm(Session& session, Desk& desk)
    : SessionScreen("EInvFrm", {"E-Invoicing", "电子发票"}, session, desk),
      vsd(*this, "vsd", {"Documents", "单据"}, Columns()),
      service_(session, desk),
      right_(session, desk) {
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  Msg.SetLocked(true);
  Checks.SetLocked(true);
  vsd.SetHasChecks(true);
  vsd.onTick = [this](int row) {
    LineOf(row).ticked = vsd.Ticked(row);
    ShowCounts();
  };
  vsd.onRow = [this](int) { ShowCurrent(); };
  vsd.onOpen = [this](int row, int column) { OpenSource(row, column); };
  CompCode.onPick = [this] { ChangeCompany(); };
  SendType.onPick = [this] { ChangeSendType(); };
  StateFilter.onPick = [this] { Refilter(); };
  C3.onClick = [this] { TickAll(C3.checked()); };
  SaveCmd.onClick = [this] { Process(); };
  CmdPrint.onClick = [this] { Export(); };
  CmdStatus.onClick = [this] { AskStatuses(); };
  CmdSettle.onClick = [this] { SettleUnknown(); };
  CmdClear.onClick = [this] { Clear(); };
}

void EInvFrm::Load() {
  SendType.SetIndex(0);
  SubmitMethod.SetIndex(0);
  CmdPrint.SetEnabled(false);
  ForgetLines();
  FillCompanies(CompCode, session());
  ChooseHome(session(), CompCode);
  TakeHandOver();
  ChangeCompany();
}

void EInvFrm::TakeHandOver() {
  const DayRange days = std::exchange(session().HandOverDays, {});
  const std::string choices = std::exchange(session().HandOverSelection, {});
  DateFrom.SetText(days.from);
  DateTo.SetText(days.to);
  const std::size_t end = choices.find('\n');
  const std::string company = choices.substr(0, end);
  if (!company.empty() && std::ranges::find(CompCode.items(), company) != CompCode.items().end()) {
    CompCode.SetText(company);
  }
  if (end != std::string::npos) SubmitMethod.SetText(choices.substr(end + 1));
}

SendMode EInvFrm::mode() const {
  return SendType.text() == "Cancel" ? SendMode::cancel : SendMode::submit;
}

// Documents of one company never go out under the name of another.
void EInvFrm::ChangeCompany() {
  Clear();
  if (CompCode.empty()) return;
  const Hourglass busy(desk());
  supplier_ = service_.LoadSupplier(CompCode.text());
  SaveCmd.SetEnabled(!supplier_.empty());
  TokenLBL.SetText("");
  if (supplier_.empty()) {
    Refuse(CompCode, {"Company E-Invoicing not found, cannot process submition",
                      "找不到公司的电子发票资料，无法提交"});
    return;
  }
  CompCode.SetMark(false);
  std::string told;
  if (!service_.has_token()) {
    told = session().In({"No token: ", "没有令牌："}) + session().In(service_.token_trouble());
  }
  if (const std::string faults = CheckList(session()).OfCompany(CompCode.text()); !faults.empty()) {
    told += (told.empty() ? "" : "\n") +
            session().In({"The company's own tax identity: ", "公司本身的税务资料："}) + faults;
  }
  TokenLBL.SetText(told);
}

void EInvFrm::ChangeSendType() {
  vsd.SetColumns(Columns());
  ForgetLines();
  CmdPrint.SetEnabled(false);
}

void EInvFrm::ForgetLines() {
  lines_.clear();
  C3.SetChecked(false);
  StateFilter.SetIndex(-1);
  Refilter();
}

void EInvFrm::Clear() {
  ForgetLines();
  right_.Forget();
  SendType.SetEnabled(true);
  SubmitMethod.SetEnabled(true);
  CmdPrint.SetEnabled(false);
}

// --- the list

void EInvFrm::Process() {
  if (!RequireDate(session(), DateFrom, {"From Date required", "请输入开始日期"}) ||
      !RequireDate(session(), DateTo, {"To Date required", "请输入结束日期"})) {
    return;
  }
  if (!Confirm({fmt::format("Confirm to retrieve Invoice from {} to {} ?", DateFrom.text(),
                            DateTo.text()),
                fmt::format("确定取出 {} 至 {} 的发票？", DateFrom.text(), DateTo.text())})) {
    return;
  }
  SendType.SetEnabled(false);
  SubmitMethod.SetEnabled(false);
  ForgetLines();
  CmdPrint.SetEnabled(false);
  if (ReadLines(mode() == SendMode::cancel ? "VKT-Cancel" : "VKT-" + SubmitMethod.text())) {
    CmdPrint.SetEnabled(true);
  } else {
    Clear();
  }
}

bool EInvFrm::ReadLines(const std::string& sid) {
  try {
    const Hourglass busy(desk());
    const auto bar = desk().Progress(session().In(title()));
    const DocumentChoice choice = {.sid = sid,
                                   .comp_code = CompCode.text(),
                                   .from = DateFrom.text(),
                                   .to = DateTo.text(),
                                   .mode = mode()};
    lines_ = SelectDocuments(session(), choice, [&](int done, int total) {
      bar->SetRange(total);
      bar->SetPosition(done);
    });
    CheckList(session()).Check(lines_, mode(), CompCode.text());
  } catch (const std::exception& failure) {
    lines_.clear();
    LogRollback(session(), sid, failure);
    Tell(MessageKind::critical, FailedOrRefused(kProcessFailed, failure));
    Refilter();
    return false;
  }
  Refilter();
  if (!shown_.empty()) vsd.Select(0);
  return true;
}

void EInvFrm::Refilter() {
  const int wanted = StateFilter.index() - 1;  // below 0: all
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones;
  shown_.clear();
  for (std::size_t at = 0; at < lines_.size(); ++at) {
    const InvoiceLine& line = lines_[at];
    if (wanted >= 0 && static_cast<int>(StateOf(line)) != wanted) continue;
    shown_.push_back(at);
    rows.push_back(CellsOf(line, chinese()));
    tones.push_back(line.tone);
  }
  vsd.SetRows(std::move(rows), tones);
  for (std::size_t row = 0; row < shown_.size(); ++row) {
    if (lines_[shown_[row]].ticked) vsd.SetTicked(static_cast<int>(row), true);
  }
  ShowCounts();
  ShowCurrent();
}

void EInvFrm::ShowCounts() {
  std::array<int, kLineStates> counts{};
  int ticked = 0;
  for (const InvoiceLine& line : lines_) ++counts.at(static_cast<std::size_t>(StateOf(line)));
  for (const std::size_t line : shown_) ticked += lines_[line].ticked ? 1 : 0;
  std::vector<std::string> items = {session().In(
      {fmt::format("All ({})", lines_.size()), fmt::format("全部（{}）", lines_.size())})};
  for (int state = 0; state < kLineStates; ++state) {
    const Caption& name = NameOf(static_cast<LineState>(state));
    const int count = counts.at(static_cast<std::size_t>(state));
    items.push_back(session().In({fmt::format("{} ({})", name.english, count),
                                  fmt::format("{}（{}）", name.chinese, count)}));
  }
  const int chosen = std::max(StateFilter.index(), 0);
  StateFilter.SetItems(std::move(items));
  StateFilter.SetIndex(chosen);
  Caption told{
      fmt::format("{} of {} documents shown, {} ticked", shown_.size(), lines_.size(), ticked),
      fmt::format("显示 {} / {} 份单据，已勾选 {} 份", shown_.size(), lines_.size(), ticked)};
  for (int state = 0; state < kLineStates; ++state) {
    const int count = counts.at(static_cast<std::size_t>(state));
    if (count == 0) continue;
    const Caption& name = NameOf(static_cast<LineState>(state));
    told.english += fmt::format(" - {} {}", name.english, count);
    told.chinese += fmt::format(" - {} {}", name.chinese, count);
  }
  ResultLBL.SetText(session().In(told));
}

void EInvFrm::ShowLine(std::size_t line) {
  const auto found = std::ranges::find(shown_, line);
  if (found == shown_.end()) return;
  const int row = static_cast<int>(found - shown_.begin());
  std::vector<std::string> cells = CellsOf(lines_[line], chinese());
  for (const int column : {+kStatus, +kUuid, +kMsg, kStateColumn, kCheckColumn}) {
    vsd.SetCell(row, column, std::move(cells[static_cast<std::size_t>(column)]));
  }
  vsd.SetTone(row, lines_[line].tone);
  vsd.SetTicked(row, lines_[line].ticked);
  if (row == vsd.current_row()) ShowCurrent();
}

void EInvFrm::ShowCurrent() {
  const int row = vsd.current_row();
  Msg.Clear();
  Checks.Clear();
  CmdSettle.SetEnabled(false);
  if (row < 0) return;
  const InvoiceLine& line = LineOf(row);
  Msg.SetText(line.cells[kMsg]);
  const std::string state = session().In(ToldState(line));
  Checks.SetText(line.faults.empty() ? state : state + "\r\n" + line.faults);
  CmdSettle.SetEnabled(StateOf(line) == LineState::unknown);
}

void EInvFrm::TickAll(bool on) {
  for (std::size_t row = 0; row < shown_.size(); ++row) {
    InvoiceLine& line = lines_[shown_[row]];
    if (!line.uuid().empty()) continue;
    line.ticked = on;
    vsd.SetTicked(static_cast<int>(row), on);
  }
  ShowCounts();
}

void EInvFrm::OpenSource(int row, int column) {
  const InvoiceLine& line = LineOf(row);
  if (column == kCustID || column == kCustName) {
    OpenCustomer(session(), desk(), line.cells[kCustID]);
    return;
  }
  const std::string loan = line.cells[kLoanID];
  if (column == kLoanID) {
    OpenLoan(session(), desk(), loan);
    return;
  }
  const std::string id = QuoteStr(line.id());
  const char* screen = nullptr;
  const char* command = nullptr;
  if (!main().Query("SELECT PayID FROM PaymentMast WHERE PayID=" + id).Eof()) {
    screen = "PaymentFrm";
    command = "Edit Payment";
  } else if (!main().Query("SELECT ChargeID FROM ChargeMast WHERE ChargeID=" + id).Eof()) {
    screen = "Invoicefrm";
    command = "Edit Charge";
  } else {
    return;
  }
  if (!desk().CanShow(screen)) return;
  OpenFor(session(), desk(), screen, command, HandOver{{}, loan, line.id()});
}

}  // namespace kaunter
