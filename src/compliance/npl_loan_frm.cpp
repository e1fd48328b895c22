#include "compliance/npl_loan_frm.h"

#include <fmt/format.h>

#include <charconv>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/session_report.h"
#include "core/stoppable.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr int kCountLength = 9;
constexpr int kMonthsLength = 3;

// A whole number from `least` on.
std::optional<int> Whole(const std::string& text, int least) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || at != end || number < least) return std::nullopt;
  return number;
}

}  // namespace

NPLLoanFrm::NPLLoanFrm(Session& session, Desk& desk)
    : SessionScreen("NPLLoanFrm", {"Nonperforming Loan (NPL)", "不良贷款 (NPL)"}, session, desk) {
  for (TextBox& box : NoLoan) {
    box.max_length = kCountLength;
    box.onLeave = [this, &box] { CheckCount(box); };
  }
  for (TextBox& box : LoanAmt) {
    box.max_length = kMoneyLength;
    box.onLeave = [this, &box] { CheckAmount(box); };
  }
  Months.max_length = kMonthsLength;
  CompCode.onPick = [this] { Forget(); };
  SaveCmd.onClick = [this] { Process(); };
  PrintCmd.onClick = [this] { Print(); };
  UpdateCmd.onClick = [this] { UpdateStatus(); };
}

std::deque<TextBox> NPLLoanFrm::OfEachYear(const char* name, const Caption& what, Kind kind) {
  std::deque<TextBox> boxes;
  for (std::size_t i = 0; i < kNplYears; ++i) {
    const int year = kFirstNplYear + static_cast<int>(i);
    boxes.emplace_back(
        *this, fmt::format("{}({})", name, i),
        Caption(fmt::format("{} {}", year, what.english), fmt::format("{} {}", year, what.chinese)),
        kind);
  }
  return boxes;
}

void NPLLoanFrm::Load() {
  FillCompanies(CompCode, session());
  ChooseHome(session(), CompCode);
  FillItems(LoanGroupID, main(), "SELECT LoanGroupID FROM LoanGroupMast ORDER BY LoanGroupID");
  std::vector<std::string> groups = LoanGroupID.items();
  LoanGroupID.SetText(std::string(kDoubtfulGroup));
  if (LoanGroupID.index() < 0) {
    groups.emplace_back(kDoubtfulGroup);
    LoanGroupID.SetItems(groups);
    LoanGroupID.SetText(std::string(kDoubtfulGroup));
  }
  Forget();
}

void NPLLoanFrm::Forget() {
  processed_ = false;
  for (TextBox& box : NoLoan) box.SetText("0");
  for (TextBox& box : LoanAmt) box.SetText("0.00");
  DG.Clear();
}

// Figures that somebody brings from elsewhere.
bool NPLLoanFrm::Typed() const {
  for (std::size_t i = 0; i < kNplYears; ++i) {
    if (NoLoan[i].text() != "0" || LoanAmt[i].text() != "0.00") return true;
  }
  return false;
}

bool NPLLoanFrm::CheckCompany() {
  return !CompCode.empty() || Refuse(CompCode, {"Company Code is required", "请选择公司"});
}

bool NPLLoanFrm::CheckCount(TextBox& box) {
  FillBlank(box, "0");
  if (!Whole(box.text(), 0)) return Refuse(box, {"Invalid value", "数值不正确"});
  box.SetMark(false);
  return true;
}

bool NPLLoanFrm::CheckAmount(TextBox& box) {
  FillBlank(box, "0");
  const auto amount = Money::TryText(box.text());
  if (!amount) return Refuse(box, kInvalidAmount);
  box.SetText(ShowMoney(*amount));
  box.SetMark(false);
  return true;
}

// --- the figures

void NPLLoanFrm::Process() {
  if (!CheckCompany() || !Confirm({"Confirm to process ?", "确定处理？"})) return;
  if (Read()) Tell(MessageKind::information, {"Process done", "处理完毕"});
}

bool NPLLoanFrm::Read() {
  Forget();
  std::array<NplYear, kNplYears> years;
  Recordset loans;
  if (!RunStoppable(session(), desk(), session().In(title()), kCountingReturn, [&](const GoOn&) {
        const ReadTransaction reading(main());  // the list adds up to the figures
        years = CountNpl(main(), CompCode.text());
        loans = main().Query(NplLoansStatement(CompCode.text()));
      })) {
    return false;
  }
  for (std::size_t i = 0; i < kNplYears; ++i) {
    NoLoan[i].SetText(std::to_string(years[i].loans));
    LoanAmt[i].SetText(ShowMoney(years[i].balance));
  }
  FillGrid(DG, std::move(loans));
  processed_ = true;
  return true;
}

void NPLLoanFrm::Print() {
  if (!CheckCompany()) return;
  if (!processed_ && !Typed()) {
    Refuse(SaveCmd, {"Nothing is counted yet for this company: press Process first",
                     "此公司尚未计算：请先按“处理”"});
    return;
  }
  for (std::size_t i = 0; i < kNplYears; ++i) {
    if (!CheckCount(NoLoan[i]) || !CheckAmount(LoanAmt[i])) return;
  }
  if (!Confirm({"Confirm to print ? ", "确定打印？"})) return;
  ReportJob job = SessionReport(session(), "NPL Report.rpt");
  job.SelectionFormula = fmt::format("{{CompMast.CompCode}}={}", QuoteStr(CompCode.text()));
  job.ParameterFields[0] = "RptID;;True";
  std::string printed;  // they may have been corrected, and are stored nowhere
  int at = 0;
  for (const bool amounts : {false, true}) {
    for (std::size_t i = 0; i < kNplYears; ++i) {
      const int year = kFirstNplYear + static_cast<int>(i);
      const std::string& figure = amounts ? LoanAmt[i].text() : NoLoan[i].text();
      job.ParameterFields[++at] = fmt::format("{}{};{};True", year, amounts ? 2 : 1, figure);
      printed += fmt::format(", {} {} {}", year, amounts ? "balance" : "loans", figure);
    }
  }
  WriteLog(session(),
           LogLine(session(), "NPL Report - Report Printed, " + CompCode.text() + printed));
  desk().Print(job);
}

// --- the status

void NPLLoanFrm::UpdateStatus() {
  if (!CheckCompany()) return;
  const auto months = Whole(Trim(Months.text()), 1);
  if (!months) {
    Refuse(Months, {"Overdue Months: a whole number from 1 on", "逾期月数：请输入 1 或以上的整数"});
    return;
  }
  if (LoanGroupID.empty()) {
    Refuse(LoanGroupID, {"New Status is required", "请选择新状态"});
    return;
  }
  const std::string& group = LoanGroupID.text();
  if (!Confirm(
          {fmt::format("Confirm to update {} loan overdue {} months to status {} ?", kCurrentGroup,
                       *months, group),
           fmt::format("确定把逾期 {} 个月的 {} 贷款改为 {}？", *months, kCurrentGroup, group)})) {
    return;
  }
  const DateTime cut = ServerTime(main()).DateOnly().AddMonths(-*months);
  std::int64_t moved = 0;
  const bool done =
      Attempt("Loan status " + CompCode.text(),
              {"an error occur during updating loan status", "更新贷款状态时出现错误"},
              [&] { moved = MoveOverdue(main(), CompCode.text(), cut, group); });
  if (!done) return;
  WriteLog(session(),
           LogLine(session(), fmt::format("Loan status of {}: {} loans overdue since {} to {}",
                                          CompCode.text(), moved, ShowDate(cut), group)));
  Read();
  Tell(MessageKind::information, {"Loan status updated", "贷款状态已更新"});
}

}  // namespace kaunter
