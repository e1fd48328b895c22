#include "compliance/yearly_return.h"

#include <fmt/format.h>

#include <optional>

#include "core/amounts.h"
#include "core/log.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/cancel_offer.h"
#include "screen/hourglass.h"

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
    case FigureKind::listed:
      break;
  }
  return AmountOf(request.with_interest);
}

std::string FromWhere(const YearlyFigure& figure, const YearlyRequest& request) {
  const ReturnPeriod& period = request.period;
  const std::string companies = CompaniesText(period.companies);
  const std::string condition = Replaced(figure.condition, "{size}", SizeOf(request));
  if (figure.kind == FigureKind::collected) {
    return fmt::format(
        " from (Paymentmast as pm inner join LoanMast as lm on pm.loanid = lm.loanid) inner join "
        "CustMast as cm on lm.CustID = cm.CustID where{}{}{}",
        companies, WithinText("pm.PayDate", period),
        figure.earlier ? " and lm.TrxDate < " + TimeText(period.from) + " " : "");
  }
  return fmt::format(
      " from LoanMast as lm {} join CustMast as cm on lm.CustID = cm.CustID where{}{}{}",
      figure.without_customer ? "left outer" : "inner", companies, WithinText("lm.TrxDate", period),
      condition);
}

bool IsCount(const YearlyFigure& figure) {
  return figure.kind == FigureKind::count || figure.kind == FigureKind::listed;
}

std::string Counted(Connection& main, const YearlyFigure& figure, const YearlyRequest& request) {
  const Recordset rows = main.Query(FigureStatement(figure, request));
  if (figure.kind == FigureKind::listed) return std::to_string(rows.RowCount());
  const Value& value = rows.Field(0);
  if (figure.kind == FigureKind::count) return value.IsNull() ? "0" : value.ToText();
  return ShowMoney(value);
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

std::string FigureStatement(const YearlyFigure& figure, const YearlyRequest& request) {
  const std::string rest = FromWhere(figure, request);
  switch (figure.kind) {
    case FigureKind::count:
      return "Select Count(lm.LoanID)" + rest;
    case FigureKind::listed:
      return "Select lm.loanid" + rest;
    case FigureKind::collected:
      return fmt::format("Select Sum({}){}", Brings(figure, request), rest);
    case FigureKind::amount:
    case FigureKind::interest:
      break;
  }
  return fmt::format("Select SUM({}){}", Brings(figure, request), rest);
}

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
                                    const ReturnProgress& progress) {
  std::vector<ReturnLine> lines;
  const int total = static_cast<int>(YearlyFigures().size());
  int done = 0;
  Transaction transaction(main);  // all figures of one state of the books
  for (const YearlyFigure& figure : YearlyFigures()) {
    if (progress && !progress(done++, total)) return {};
    if (figure.place.empty() && !left_over) continue;
    lines.push_back({std::string(figure.place), figure.name, IsCount(figure),
                     Counted(main, figure, request), [&figure, request](Connection& connection) {
                       return LoansOf(connection.Query(LoansStatement(figure, request)));
                     }});
  }
  transaction.Commit();
  return lines;
}

bool MakeYearlyReturn(Session& session, Desk& desk, const YearlyRequest& request,
                      const std::string& amount, const std::string& security,
                      std::map<int, std::string>& parameters) {
  std::vector<ReturnLine> lines;
  try {
    const Hourglass hourglass(desk);
    const auto bar = desk.Progress(session.MsgTitle);
    CancelOffer* const offer = OfferCancel(*bar, session.In({"Stop", "停止"}));
    lines = CountYearly(session.Main(), request, false, [&](int done, int total) {
      bar->SetRange(total);
      bar->SetPosition(done);
      return offer == nullptr || !offer->Cancelled();
    });
    if (!lines.empty()) Store(session.Main(), request, lines);
  } catch (const std::exception& failure) {
    LogRollback(session, session.MsgTitle, failure);
    const Caption words{"an error occur during process Lampiran B", "处理 Lampiran B 时出现错误"};
    desk.Message(MessageKind::critical, session.MsgTitle, session.In(Failed(words, failure)));
    return false;
  }
  if (lines.empty()) {
    desk.Message(MessageKind::information, session.MsgTitle,
                 session.In({"Stopped: nothing was changed", "已停止：没有更改"}));
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
