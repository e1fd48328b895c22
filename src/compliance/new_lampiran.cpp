#include "compliance/new_lampiran.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>

#include "core/amounts.h"
#include "core/session.h"
#include "core/staged_rows.h"
#include "core/stoppable.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

struct Band {
  Money from;
  Money to;
  Caption name;
};

const std::vector<Band>& Bands() {
  const auto money = [](const char* text) { return Money::FromText(text); };
  static const std::vector<Band> bands = {
      {Money(), money("500"), {"0 to 500", "0 至 500"}},
      {money("500.01"), money("1000"), {"500.01 to 1,000", "500.01 至 1,000"}},
      {money("1000.01"), money("5000"), {"1,000.01 to 5,000", "1,000.01 至 5,000"}},
      {money("5000.01"), money("10000"), {"5,000.01 to 10,000", "5,000.01 至 10,000"}},
      {money("10000.01"),
       Money::FromTenThousandths(INT64_MAX),
       {"from 10,000.01", "10,000.01 起"}}};
  return bands;
}

std::string MonthOf(const DateTime& day) { return fmt::format("{:04}{:02}", day.year, day.month); }

// The first days of the months that the period touches.
std::vector<DateTime> MonthsOf(const ReturnPeriod& period) {
  std::vector<DateTime> months;
  for (DateTime month{period.from.year, period.from.month, 1}; month <= period.to;
       month = month.AddMonths(1)) {
    months.push_back(month);
  }
  return months;
}

const std::string& CompanyOf(const ReturnPeriod& period) { return period.companies.at(0); }

std::string RowStatement(std::string_view pcname, std::string_view report, const std::string& id,
                         const std::string& month, int band, const std::string& company, int count,
                         const std::string& amount) {
  return fmt::format(
      "INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,c2,c1) VALUES "
      "({},{},{},{},{},{},{},{})",
      QuoteStr(pcname), QuoteStr(report), QuoteStr(id), QuoteStr(month),
      QuoteStr(std::to_string(band)), QuoteStr(company), count, amount);
}

}  // namespace

int IncomeBand(Money income, int before) {
  for (int band = 1; band <= kIncomeBands; ++band) {
    const Band& limits = Bands()[static_cast<std::size_t>(band - 1)];
    if (income >= limits.from && income <= limits.to) return band;
  }
  return before;
}

std::vector<LampiranLoan> LampiranLoans(Connection& main, const ReturnPeriod& period,
                                        std::string_view more) {
  Recordset rows = main.Query(fmt::format(
      "Select lm.LoanID,lm.TrxDate,lm.LoanAmt,lm.CompCode,cm.CustCompIncome{} from LoanMast as lm "
      "inner join CustMast as cm on lm.CustID = cm.CustID where (lm.CompCode = {} ) {}",
      more, QuoteStr(CompanyOf(period)), WithinText("lm.TrxDate", period)));
  std::vector<LampiranLoan> loans;
  loans.reserve(rows.RowCount());
  for (; !rows.Eof(); rows.MoveNext()) {
    const DateTime day = *rows.Field(1).AsDate();
    loans.push_back({NullToEmpty(rows.Field(0)), day, NullToEmpty(rows.Field(3)),
                     more.empty() ? "" : NullToEmpty(rows.Field(5)), Sen(rows.Field(4)),
                     Sen(rows.Field(2)), 1, MonthOf(day)});
  }
  std::ranges::sort(loans, [](const LampiranLoan& a, const LampiranLoan& b) {
    return a.TrxDate != b.TrxDate ? a.TrxDate < b.TrxDate : a.LoanID < b.LoanID;
  });
  int band = 1;
  for (LampiranLoan& loan : loans) loan.band = band = IncomeBand(loan.income, band);
  return loans;
}

namespace {

void Stage(Connection& main, const ReturnPeriod& period, std::string_view pcname,
           std::string_view report_name, const GoOn& go_on) {
  // Read before the write lock is taken: others go on meanwhile.
  const std::vector<LampiranLoan> loans = LampiranLoans(main, period);
  Transaction transaction(main);
  DropStagedRows(main, pcname, report_name);
  Batch batch;
  for (const DateTime& month : MonthsOf(period)) {
    for (int band = 1; band <= kIncomeBands; ++band) {
      batch.Add(RowStatement(pcname, report_name, fmt::format("{}{}", MonthOf(month), band),
                             MonthOf(month), band, CompanyOf(period), 0, "0"));
    }
  }
  for (std::size_t i = 0; i < loans.size(); ++i) {
    const LampiranLoan& loan = loans[i];
    if (!go_on(static_cast<int>(i), static_cast<int>(loans.size()))) return;
    batch.Add(RowStatement(pcname, report_name, loan.LoanID, loan.month, loan.band, loan.CompCode,
                           1, loan.LoanAmt.ToText()));
    batch.SendWhenFull(main);
  }
  batch.Send(main);
  transaction.Commit();
}

}  // namespace

bool StageNewLampiran(Session& session, Desk& desk, const ReturnPeriod& period,
                      std::string_view pcname, std::string_view report_name) {
  const bool whole = RunStoppable(
      session, desk, session.MsgTitle, kCountingReturn,
      [&](const GoOn& go_on) { Stage(session.Main(), period, pcname, report_name, go_on); });
  desk.Message(MessageKind::information, session.MsgTitle,
               session.In(whole ? Caption{"Process Complete", "处理完毕"} : kReturnStopped));
  return whole;
}

std::vector<ReturnLine> LampiranLines(Connection& main, const ReturnPeriod& period) {
  const auto loans = std::make_shared<std::map<std::string, std::vector<ReturnLoan>>>();
  const auto place_of = [](const std::string& month, int band) {
    return fmt::format("{}-{}", month, band);
  };
  for (const LampiranLoan& loan : LampiranLoans(main, period, ",cm.CustName")) {
    (*loans)[place_of(loan.month, loan.band)].push_back({loan.LoanID, loan.TrxDate, loan.CompCode,
                                                         loan.CustName, ShowMoney(loan.income),
                                                         loan.LoanAmt});
  }
  std::vector<ReturnLine> lines;
  for (const DateTime& day : MonthsOf(period)) {
    for (int band = 1; band <= kIncomeBands; ++band) {
      const Caption& name = Bands()[static_cast<std::size_t>(band - 1)].name;
      const std::string place = place_of(MonthOf(day), band);
      lines.push_back(
          {place,
           {fmt::format("{:02}-{}, monthly income {}", day.month, day.year, name.english),
            fmt::format("{:02}-{}，月收入 {}", day.month, day.year, name.chinese)},
           true,
           std::to_string((*loans)[place].size()),
           [loans, place](Connection&) { return loans->at(place); }});
    }
  }
  return lines;
}

}  // namespace kaunter
