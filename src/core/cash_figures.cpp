#include "core/cash_figures.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/amounts.h"
#include "core/company_access.h"
#include "core/office_figures.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

// Of the movements from one day on and before another.
std::string Moved(const DateTime& from, const DateTime& to) {
  return fmt::format(
      "SUM(CASE WHEN TranDate>={} AND TranDate<{} THEN CASE WHEN TranType IN ('Cash In','Bank In') "
      "THEN TranAmt WHEN TranType IN ('Cash Out','Bank Out') THEN -TranAmt ELSE 0 END ELSE 0 END)",
      SqlDate(from), SqlDate(to));
}

class Positions {
 public:
  explicit Positions(Session& session) : session_(session) {}

  // Adds the columns of a statement that begins with the company.
  void Add(const std::string& sql, std::initializer_list<Money CashPosition::*> into) {
    for (Recordset rows = session_.Main().Query(sql); !rows.Eof(); rows.MoveNext()) {
      CashPosition& position = Of(NullToEmpty(rows.Field(0)));
      std::size_t column = 0;
      for (const auto member : into) position.*member += Sen(rows.Field(++column));
    }
  }

  std::vector<CashPosition> Taken() {
    std::erase_if(all_, [](const CashPosition& one) {
      CashPosition nothing;
      nothing.CompCode = one.CompCode;
      return one == nothing;
    });
    return std::move(all_);
  }

 private:
  CashPosition& Of(const std::string& company) {
    const auto known = std::ranges::find_if(
        all_, [&](const CashPosition& one) { return SameText(one.CompCode, company); });
    if (known != all_.end()) return *known;
    all_.push_back({company, {}, {}, {}, {}, {}, {}});
    return all_.back();
  }

  Session& session_;
  std::vector<CashPosition> all_;
};

}  // namespace

std::vector<CashPosition> ReadCashPositions(Session& session, const DateTime& today,
                                            CashAsked asked) {
  const DateTime day = today.DateOnly();
  const DateTime behind = day.AddDays(-kDaysBehind);
  const DateTime tomorrow = day.AddDays(1);
  const std::string ahead = SqlDate(day.AddDays(kOutlookDays));
  Positions positions(session);
  positions.Add("SELECT CompCode,CashInHand,CashInBank FROM CompMast" +
                    (" " + CompanyFilter(session, "CompCode")) + " ORDER BY CompCode",
                {&CashPosition::cash, &CashPosition::bank});
  positions.Add(
      fmt::format("SELECT CompCode,{},{} FROM CashBook WHERE TranDate>={} AND TranDate<{}{} GROUP "
                  "BY CompCode",
                  Moved(day, tomorrow), Moved(behind, day), SqlDate(behind), SqlDate(tomorrow),
                  AndCompany(session, "CompCode")),
      {&CashPosition::today, &CashPosition::week});
  if (asked.cheques) {
    positions.Add(
        fmt::format("SELECT l.CompCode,SUM(q.ChqAmt) FROM ChqMast as q INNER JOIN LoanMast as l ON "
                    "q.LoanID=l.LoanID WHERE q.ChqDate>={} AND q.ChqDate<{} AND q.ChqStatus='NEW' "
                    "AND isnull(q.PayID,'')=''{} GROUP BY l.CompCode",
                    SqlDate(day), ahead, AndCompany(session, "l.CompCode")),
        {&CashPosition::cheques});
  }
  if (asked.due) {
    positions.Add(fmt::format("SELECT l.CompCode,SUM({}) {} GROUP BY l.CompCode", kOpenAmount,
                              OpenRows(session, day, day.AddDays(kOutlookDays))),
                  {&CashPosition::due});
  }
  return positions.Taken();
}

}  // namespace kaunter
