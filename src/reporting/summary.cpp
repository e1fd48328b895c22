// Summary P and L, and balance sheet summary: a row a loan with its interest, charges and capital.
#include <fmt/format.h>

#include "core/session.h"
#include "core/values.h"
#include "reporting/staging.h"

namespace kaunter {
namespace {

class Summary {
 public:
  Summary(Connection& main, const StagedRun& run)
      : main_(main),
        run_(run),
        filter_(AndConditions(run.filters, "l.")),
        to_(NeededDate(run.date_to, "Date To")),
        from_literal_(SqlDate(NeededDate(run.date_from, "Date From"))),
        year_start_(SqlDate(DateTime{to_.year, 1, 1})),
        to_literal_(SqlDate(to_)) {}

  SummaryHead Head() const {
    return {"Todate;" + run_.date_to + ";True", fmt::format("YearEnd;31-12-{:04};True", to_.year),
            FilterTitle(run_.filters)};
  }

  void Work() {
    Loans();
    // l is the loan in these, but for the charges, which are filtered by their own company.
    Sums("c6",
         "SELECT s.LoanID,SUM(s.CapitalAmt) FROM SchMast as s INNER JOIN LoanMast as l on "
         "s.LoanID=l.LoanID WHERE l.TrxDate <= " +
             to_literal_,
         " GROUP BY s.LoanID");
    const char* interest =
        "SELECT s.LoanID,SUM(s.InterestAmt) FROM SchMast as s INNER JOIN LoanMast as l on "
        "s.LoanID=l.LoanID WHERE ";
    Sums("c2", interest + Between("s.DueDate", from_literal_), " GROUP BY s.LoanID");
    Sums("c3", interest + Between("s.DueDate", year_start_), " GROUP BY s.LoanID");
    const char* charges = "SELECT l.LoanID,SUM(l.ChargeAmt) FROM ChargeMast as l WHERE ";
    Sums("c4", charges + Between("l.TrxDate", from_literal_),
         " AND l.PType='Batch' GROUP BY l.LoanID");
    Sums("c5", charges + Between("l.TrxDate", year_start_),
         " AND l.PType='Batch' GROUP BY l.LoanID");
    Sums("c7",
         "SELECT p.LoanID,SUM(p.CapPay) FROM PaymentMast as p INNER JOIN LoanMast as l on "
         "p.LoanID=l.LoanID WHERE p.PayDate <= " +
             to_literal_,
         " GROUP BY p.LoanID");
  }

 private:
  std::string Between(std::string_view column, const std::string& from) const {
    return fmt::format("{0} >= {1} AND {0} <= {2}", column, from, to_literal_);
  }

  void Loans() {
    Batch batch;
    Recordset loan = main_.Query(fmt::format(
        "SELECT l.LoanID,l.LoanAmt,c.AreaCode FROM LoanMast as l INNER JOIN CustMast as c on "
        "l.CustID=c.CustID WHERE 1=1 {} AND l.TrxDate <={}",
        filter_, to_literal_));
    for (; !loan.Eof(); loan.MoveNext()) {
      batch.Add(fmt::format(
          "INSERT INTO MasterReport (pcname,reportname,recordid,s2,c1,c2,c3,c4,c5,c6,c7) VALUES "
          "({},{},{},{},{},0,0,0,0,0,0)",
          QuoteStr(run_.pcname), QuoteStr(run_.report_name), TextLiteral(loan.Field("LoanID")),
          TextLiteral(loan.Field("AreaCode")), AmountLiteral(loan.Field("LoanAmt"))));
    }
    batch.Send(main_);
  }

  // Each sum goes to its loan's row; a loan without a row takes none.
  void Sums(std::string_view column, const std::string& select, std::string_view group) {
    Batch batch;
    Recordset sum = main_.Query(select + filter_ + std::string(group));
    for (; !sum.Eof(); sum.MoveNext()) {
      batch.Add(fmt::format("UPDATE MasterReport set {}={}{}", column, AmountLiteral(sum.Field(1)),
                            OfRow(run_, NullToEmpty(sum.Field(0)))));
    }
    batch.Send(main_);
  }

  Connection& main_;
  const StagedRun& run_;
  std::string filter_;
  DateTime to_;
  std::string from_literal_;
  std::string year_start_;
  std::string to_literal_;
};

}  // namespace

bool StageSummary(Session& session, Desk& desk, const StagedRun& run, SummaryHead& head) {
  return Stage(session, desk, run, "an error occur during process Summary P&L",
               [&](Connection& main) {
                 Summary summary(main, run);
                 head = summary.Head();
                 summary.Work();
               });
}

}  // namespace kaunter
