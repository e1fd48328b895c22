#include "compliance/return_figures_frm.h"

#include <fmt/format.h>

#include <set>
#include <sstream>
#include <utility>

#include "compliance/new_lampiran.h"
#include "compliance/npl_loans.h"
#include "compliance/yearly_return.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/session_report.h"
#include "core/settings.h"
#include "core/staged_rows.h"
#include "core/stoppable.h"
#include "core/values.h"
#include "platform/host.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

// Nobody reads more of them on a screen; the paper has them all.
constexpr std::size_t kListed = 2000;

enum Kinds { kYearly, kLampiran, kNpl };

}  // namespace

ReturnFiguresFrm::ReturnFiguresFrm(Session& session, Desk& desk)
    : SessionScreen("ReturnFiguresFrm", {"Return Figures", "申报数字"}, session, desk) {
  CompDG.SetHasChecks(true);
  Return.SetItems({session.In({"Yearly Loan Return", "全年贷款申报"}),
                   session.In({"New Lampiran", "新 Lampiran"}),
                   session.In({"Nonperforming Loans", "不良贷款"})});
  Return.SetIndex(kYearly);
  Return.onPick = [this] { ChooseReturn(); };
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onChange = [this] { Forget(); };
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  Check1.SetChecked(true);
  Check1.onClick = [this] { Forget(); };
  CompDG.onTick = [this](int) { Forget(); };
  CountCmd.onClick = [this] { Count(); };
  FigureDG.onOpen = [this](int row, int) { OpenFigure(row); };
  FigureDG.onRow = [this](int row) { OpenFigure(row); };
  PrintCmd.onClick = [this] { Print(); };
}

// The year that a return is due for: the one before this.
void ReturnFiguresFrm::Load() {
  FillGrid(CompDG, main().Query("SELECT CompCode,CompDesc FROM CompMast " +
                                CompanyFilter(session(), "CompCode") + "ORDER BY CompCode"));
  for (int row = 0; row < CompDG.RowCount(); ++row) {
    const std::string& home = session().CurrentCompCode;  // none: the built-in logon
    CompDG.SetTicked(row, home.empty() || SameText(CompDG.Cell(row, 0), home));
  }
  const int year = ServerTime(main()).year - 1;
  DateFrom.SetText(fmt::format("01-01-{:04}", year));
  DateTo.SetText(fmt::format("31-12-{:04}", year));
  ForgetLoans();
  if (!session().HandOverSelection.empty()) TakeHandOver();
}

void ReturnFiguresFrm::TakeHandOver() {
  std::istringstream lines(std::exchange(session().HandOverSelection, {}));
  std::string line;
  const auto next = [&] { return std::getline(lines, line) ? line : std::string(); };
  Return.SetIndex(CLng(next()));
  DateFrom.SetText(next());
  DateTo.SetText(next());
  Check1.SetChecked(next() == "1");
  std::set<std::string> companies;
  while (!next().empty()) companies.insert(line);
  for (int row = 0; !companies.empty() && row < CompDG.RowCount(); ++row) {
    CompDG.SetTicked(row, companies.contains(CompDG.Cell(row, 0)));
  }
  ChooseReturn();
}

void ReturnFiguresFrm::Unload() { DropStagedRows(main(), ThisHostName(), kReturnLoansFile); }

void ReturnFiguresFrm::Forget() {
  lines_.clear();
  FigureDG.Clear();
  ForgetLoans();
}

void ReturnFiguresFrm::ForgetLoans() {
  opened_ = -1;
  loans_.clear();
  LoanDG.Clear();
  LoansLBL.SetText({});
  PrintCmd.SetEnabled(false);
}

void ReturnFiguresFrm::ChooseReturn() {
  Forget();
  Check1.SetEnabled(Return.index() == kYearly);
  for (TextBox* box : {&DateFrom, &DateTo}) box->SetEnabled(Return.index() != kNpl);
}

std::optional<ReturnPeriod> ReturnFiguresFrm::Period() {
  ReturnPeriod period;
  for (int row = 0; row < CompDG.RowCount(); ++row) {
    if (CompDG.Ticked(row)) period.companies.push_back(CompDG.Cell(row, 0));
  }
  if (period.companies.empty()) {
    Refuse(CompDG, {"Company Code is require, please check", "请选择公司"});
    return std::nullopt;
  }
  if (period.companies.size() > 1 && Return.index() != kYearly) {
    Refuse(CompDG,
           {"This return is of one company: tick one alone", "此申报只限一间公司：请只勾选一间"});
    return std::nullopt;
  }
  if (Return.index() == kNpl) return period;  // its years are fixed, and its dates cannot be typed
  const Caption required{"From Date / To Date is require, please check", "请输入开始与结束日期"};
  if (!RequireDate(session(), DateFrom, required) || !RequireDate(session(), DateTo, required) ||
      !CheckDateOrder(session(), DateFrom, DateTo)) {
    return std::nullopt;
  }
  period.from = *DateTime::FromDisplay(DateFrom.text());
  period.to = *DateTime::FromDisplay(DateTo.text());
  return period;
}

bool ReturnFiguresFrm::RunLong(const std::function<void(const GoOn&)>& work) {
  return RunStoppable(session(), desk(), session().In(title()), kCountingReturn, work);
}

void ReturnFiguresFrm::Count() {
  Forget();
  const auto period = Period();
  if (!period) return;
  const bool whole = RunLong([&](const GoOn& go_on) {
    if (Return.index() == kLampiran) {
      lines_ = LampiranLines(main(), *period);
    } else if (Return.index() == kNpl) {
      lines_ = NplLines(main(), period->companies.front());
    } else {
      lines_ = CountYearly(main(), {*period, Check1.checked(), ReadSetting(main(), "2E") == "1"},
                           true, go_on);
    }
  });
  if (!whole) return Forget();
  std::vector<std::vector<std::string>> rows;
  std::vector<RowTone> tones;
  for (const ReturnLine& line : lines_) {
    rows.push_back({line.place, session().In(line.name), line.figure});
    const bool left_over = line.place.empty();
    tones.push_back(!left_over           ? RowTone::plain
                    : line.figure == "0" ? RowTone::quiet
                                         : RowTone::warn);
  }
  FigureDG.SetRows(std::move(rows), tones);
}

Caption ReturnFiguresFrm::Named(const ReturnLine& line) const {
  const std::string place = line.place.empty() ? "" : " (" + line.place + ")";
  return {line.name.english + place, line.name.chinese + place};
}

void ReturnFiguresFrm::OpenFigure(int row) {
  if (row == opened_) return;
  ForgetLoans();
  const ReturnLine& line = lines_.at(static_cast<std::size_t>(row));
  if (!RunLong([&](const GoOn&) { loans_ = line.loans(main()); })) return ForgetLoans();
  opened_ = row;
  Money sum;
  std::vector<std::vector<std::string>> rows;
  for (const ReturnLoan& loan : loans_) {
    sum += loan.amount;
    if (rows.size() == kListed) continue;
    rows.push_back({loan.LoanID, loan.TrxDate ? ShowDate(*loan.TrxDate) : "", loan.CompCode,
                    loan.CustName, loan.because, ShowMoney(loan.amount)});
  }
  LoanDG.SetRows(std::move(rows));
  PrintCmd.SetEnabled(true);
  const bool holds =
      line.figure == (line.is_count ? std::to_string(loans_.size()) : ShowMoney(sum));
  const Caption name = Named(line);
  Caption told{fmt::format("{}: {} = {} loans, RM {}", name.english, line.figure, loans_.size(),
                           ShowMoney(sum)),
               fmt::format("{}：{} = {} 笔，RM {}", name.chinese, line.figure, loans_.size(),
                           ShowMoney(sum))};
  const auto add = [&](const std::string& english, const std::string& chinese) {
    told.english += english;
    told.chinese += chinese;
  };
  if (!holds) add(". The books have changed since: count again", "。账目已有变动：请重新计算");
  if (loans_.size() > kListed) {
    add(fmt::format(". The first {} are listed, the print has all", kListed),
        fmt::format("。此处列出前 {} 笔，打印则有全部", kListed));
  }
  LoansLBL.SetText(session().In(told));
}

void ReturnFiguresFrm::Print() {
  const ReturnLine& line = lines_.at(static_cast<std::size_t>(opened_));
  StageReturnLoans(main(), ThisHostName(), loans_);
  ReportJob job = SessionReport(session(), kReturnLoansFile);
  job.SelectionFormula = StagedFormula(ThisHostName(), kReturnLoansFile);
  job.ReportTitle = fmt::format("{}  {} - {}", Return.text(), DateFrom.text(), DateTo.text());
  if (Return.index() == kNpl) job.ReportTitle = Return.text();
  job.ParameterFields[0] = fmt::format("Figure;{};True", session().In(Named(line)));
  job.ParameterFields[1] = fmt::format("Value;{};True", line.figure);
  WriteLog(session(), LogLine(session(), fmt::format("Return Figures {} - Report Printed",
                                                     Named(line).english)));
  desk().Print(job);
}

}  // namespace kaunter
