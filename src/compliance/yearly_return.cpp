#include "compliance/yearly_return.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

// Places of the row; what stands elsewhere is a parameter of the report.
constexpr std::string_view kField = "field";

std::string Replaced(std::string_view text, std::string_view mark, std::string_view by) {
  std::string all(text);
  for (std::size_t at = all.find(mark); at != std::string::npos; at = all.find(mark, at)) {
    all.replace(at, mark.size(), by);
    at += by.size();
  }
  return all;
}

std::string_view AmountOf(bool with_interest) {
  return with_interest ? "lm.LoanAmt+lm.TotLoanInt" : "lm.LoanAmt";
}
std::string_view SizeOf(const YearlyRequest& request) {
  return request.size_with_interest ? "lm.LoanAmt+lm.totloanint" : "lm.LoanAmt";
}

// What a loan brings to the figure, or to the amount beside a count.
std::string_view Brings(const YearlyFigure& figure, const YearlyRequest& request) {
  switch (figure.kind) {
    case FigureKind::interest:
      return "lm.TotLoanInt";
    case FigureKind::collected:
      return "pm.PayAmt+pm.ChargeAmt-pm.DiscAmt";
    case FigureKind::amount:
    case FigureKind::count:
      break;
  }
  return AmountOf(request.with_interest);
}

std::string LoansOfPeriod(const YearlyRequest& request, bool without_customer = false) {
  return fmt::format(
      " from LoanMast as lm {} join CustMast as cm on lm.CustID = cm.CustID where{}{}",
      without_customer ? "left outer" : "inner", CompaniesText(request.period.companies),
      WithinText("lm.TrxDate", request.period));
}

std::string Condition(const YearlyFigure& figure, const YearlyRequest& request) {
  return Replaced(figure.condition, "{size}", SizeOf(request));
}

std::string FromWhere(const YearlyFigure& figure, const YearlyRequest& request) {
  if (figure.kind != FigureKind::collected) {
    return LoansOfPeriod(request, figure.without_customer) + Condition(figure, request);
  }
  const ReturnPeriod& period = request.period;
  return fmt::format(
      " from (Paymentmast as pm inner join LoanMast as lm on pm.loanid = lm.loanid) inner join "
      "CustMast as cm on lm.CustID = cm.CustID where{}{}{}",
      CompaniesText(period.companies), WithinText("pm.PayDate", period),
      figure.earlier ? " and lm.TrxDate < " + TimeText(period.from) + " " : "");
}

bool IsCount(const YearlyFigure& figure) { return figure.kind == FigureKind::count; }

// The figures of loans with their customers come from one walk over the join: a statement each
// would walk it forty times, and in a large office from the disk.
bool InWalk(const YearlyFigure& figure) {
  return figure.kind != FigureKind::collected && !figure.without_customer;
}

// "SUM(lm.LoanAmt)", "Count(case when 1=1 AND LoanType='Secured' then lm.LoanID end)"
std::string Counted(const YearlyFigure& figure, const YearlyRequest& request, bool in_walk) {
  std::string taken(IsCount(figure) ? "lm.LoanID" : Brings(figure, request));
  const std::string condition = in_walk ? Condition(figure, request) : "";
  if (!condition.empty()) taken = fmt::format("case when 1=1{} then {} end", condition, taken);
  return fmt::format("{}({})", IsCount(figure) ? "Count" : "SUM", taken);
}

std::string Shown(const YearlyFigure& figure, const Value& value) {
  if (!IsCount(figure)) return ShowMoney(value);
  return value.IsNull() ? "0" : value.ToText();
}

std::string Parameter(std::string_view name, std::string_view value) {
  return fmt::format("{};{};True", name, value);
}

std::string Codes(const YearlyRequest& request) {
  std::string codes;
  for (const std::string& code : request.period.companies)
    codes += (codes.empty() ? "" : ",") + code;
  return codes;
}

void Store(Connection& main, const YearlyRequest& request, const std::vector<ReturnLine>& lines) {
  std::string columns;
  std::string values;
  std::map<std::string, std::string> by_place;
  for (const ReturnLine& line : lines) {
    if (line.place.starts_with(kField)) by_place[line.place] = line.figure;
  }
  for (const auto& [place, figure] : by_place) {
    columns += "," + place;
    values += "," + QuoteStr(figure);
  }
  Transaction transaction(main);
  main.Execute("Delete from YearlyLoanMast");
  main.Execute(fmt::format(
      "Insert into YearlyLoanMast (CompCode,year,FromDate,ToDate{}) values ({},{},{},{}{})",
      columns, QuoteStr(Codes(request)), QuoteStr(fmt::format("{:04}", request.period.to.year)),
      QuoteStr(Format(request.period.from, "yyyy-mm-dd")),
      QuoteStr(Format(request.period.to, "yyyy-mm-dd")), values));
  transaction.Commit();
}

}  // namespace

std::string LoansStatement(const YearlyFigure& figure, const YearlyRequest& request) {
  constexpr std::string_view kLoan = "lm.LoanID,lm.TrxDate,lm.CompCode,cm.CustName";
  const std::string rest = FromWhere(figure, request);
  if (figure.kind == FigureKind::collected) {
    return fmt::format("Select {0},count(*),sum({1}){2} group by {0} order by lm.TrxDate,lm.LoanID",
                       kLoan, Brings(figure, request), rest);
  }
  return fmt::format("Select {},{},{}{} order by lm.TrxDate,lm.LoanID", kLoan,
                     Replaced(figure.because, "{size}", SizeOf(request)), Brings(figure, request),
                     rest);
}

std::vector<ReturnLine> CountYearly(Connection& main, const YearlyRequest& request, bool left_over,
                                    const GoOn& go_on) {
  std::vector<const YearlyFigure*> figures;
  std::string walked;
  int statements = 1;
  for (const YearlyFigure& figure : YearlyFigures()) {
    if (figure.place.empty() && !left_over) continue;
    figures.push_back(&figure);
    if (InWalk(figure)) {
      walked += (walked.empty() ? "Select " : ",") + Counted(figure, request, true);
    } else {
      ++statements;
    }
  }
  std::vector<ReturnLine> lines;
  int done = 0;
  const ReadTransaction reading(main);  // all figures of one state of the books
  if (go_on && !go_on(done++, statements)) return {};
  const Recordset walk = main.Query(walked + LoansOfPeriod(request));
  std::size_t at = 0;
  for (const YearlyFigure* figure : figures) {
    std::string shown;
    if (InWalk(*figure)) {
      shown = Shown(*figure, walk.Field(at++));
    } else {
      if (go_on && !go_on(done++, statements)) return {};
      const Recordset own =
          main.Query("Select " + Counted(*figure, request, false) + FromWhere(*figure, request));
      shown = Shown(*figure, own.Field(0));
    }
    lines.push_back({std::string(figure->place), figure->name, IsCount(*figure), std::move(shown),
                     [figure, request](Connection& connection) {
                       return LoansOf(connection.Query(LoansStatement(*figure, request)));
                     }});
  }
  return lines;
}

bool MakeYearlyReturn(Session& session, Desk& desk, const YearlyRequest& request,
                      const std::string& amount, const std::string& security,
                      std::map<int, std::string>& parameters) {
  std::vector<ReturnLine> lines;
  bool whole = false;
  try {
    whole = RunStoppable(session, desk, session.MsgTitle, kCountingReturn, [&](const GoOn& go_on) {
      lines = CountYearly(session.Main(), request, false, go_on);
    });
    if (whole) Store(session.Main(), request, lines);
  } catch (const std::exception& failure) {
    LogRollback(session, session.MsgTitle, failure);
    const Caption words{"an error occur during process Lampiran B", "处理 Lampiran B 时出现错误"};
    desk.Message(MessageKind::critical, session.MsgTitle, session.In(Failed(words, failure)));
    return false;
  }
  if (!whole) {
    desk.Message(MessageKind::information, session.MsgTitle, session.In(kReturnStopped));
    return false;
  }
  int at = 0;
  parameters[++at] = Parameter("bii", amount);
  parameters[++at] = Parameter("jenisCagaran", security);
  for (const char* name : {"2Biv", "2Bvi", "2Civ", "2Cvi", "3A", "3B", "IntAmt"}) {
    for (const ReturnLine& line : lines) {
      if (line.place == name) parameters[++at] = Parameter(name, line.figure);
    }
  }
  desk.Message(MessageKind::information, session.MsgTitle,
               session.In({"Process Complete", "处理完毕"}));
  return true;
}

std::string YearlyFormula(const YearlyRequest& request) {
  return fmt::format(
      "{{YearlyLoanMast.CompCode}}={} And {{YearlyLoanMast.FromDate}}={} And "
      "{{YearlyLoanMast.ToDate}}={}",
      QuoteStr(Codes(request)), QuoteStr(Format(request.period.from, "yyyy-mm-dd")),
      QuoteStr(Format(request.period.to, "yyyy-mm-dd")));
}

}  // namespace kaunter
