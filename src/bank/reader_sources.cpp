#include "bank/reader_sources.h"

#include <fmt/format.h>

#include <utility>

#include "core/amounts.h"
#include "core/company_access.h"
#include "core/values.h"

namespace kaunter {
namespace {

std::optional<DateTime> Day(const Value& value) {
  const DateTime* const date = value.AsDate();
  if (date == nullptr) return std::nullopt;
  return date->DateOnly();
}

// Of a statement that gives LoanID, CustID, CustName, CompCode, Row, Day and Amount.
std::vector<ReaderRow> RowsOf(Recordset rows, ReaderSource source, const char* name) {
  std::vector<ReaderRow> all;
  all.reserve(rows.RowCount());
  for (; !rows.Eof(); rows.MoveNext()) {
    ReaderRow& row = all.emplace_back();
    row.source = source;
    row.LoanID = NullToEmpty(rows.Field("LoanID"));
    row.CustID = NullToEmpty(rows.Field("CustID"));
    row.CustName = NullToEmpty(rows.Field("CustName"));
    row.CompCode = NullToEmpty(rows.Field("CompCode"));
    row.row = CLng(ShowInt(rows.Field("Row")));
    row.date = Day(rows.Field("Day"));
    row.amount = Sen(rows, "Amount");
    row.RefNo = fmt::format("{}-{}-{:03}", name, row.LoanID, row.row);
  }
  return all;
}

}  // namespace

bool FindReaderLoan(Session& session, std::string_view loan_id, ReaderRow& row) {
  const Recordset loan = session.Main().Query(
      "SELECT l.LoanID,c.CustID,c.CustName,l.CompCode FROM LoanMast as l inner join CustMast as c "
      "on l.CustID=c.CustID WHERE l.LoanID=" +
      QuoteStr(loan_id));
  if (loan.Eof() || !MayUseCompany(session, NullToEmpty(loan.Field("CompCode")))) return false;
  row.LoanID = NullToEmpty(loan.Field("LoanID"));
  row.CustID = NullToEmpty(loan.Field("CustID"));
  row.CustName = NullToEmpty(loan.Field("CustName"));
  row.CompCode = NullToEmpty(loan.Field("CompCode"));
  return true;
}

std::vector<ReaderRow> PlannedPayments(Session& session, const DateTime& day) {
  // A payment that was deleted leaves its planned one to be taken again.
  return RowsOf(
      session.Main().Query(fmt::format(
          "SELECT TOP {} p.LoanID,c.CustID,c.CustName,l.CompCode,p.SeqNo as [Row],p.PayDate as "
          "[Day],p.PayAmt "
          "as [Amount] FROM PaymentList as p INNER JOIN LoanMast as l on p.LoanID=l.LoanID INNER "
          "JOIN CustMast as c on l.CustID=c.CustID LEFT OUTER JOIN SchMast as s on "
          "s.LoanID=p.LoanID AND s.SchID=p.SeqNo LEFT OUTER JOIN PaymentMast as m on "
          "m.PayID=p.PayID WHERE p.PayDate {} {} AND m.PayID is null AND l.LoanStatus='ACTIVE' AND "
          "(s.LoanID is null OR "
          "s.PayableAmt-s.Payment > 0){} ORDER BY p.LoanID,p.SeqNo",
          kMostReaderRows + 1, session.settings.PayToDate ? "<=" : "=", SqlDate(day),
          AndCompany(session, "l.CompCode"))),
      ReaderSource::planned, "Plan");
}

std::vector<ReaderRow> DueInstalments(Session& session, const DateTime& day) {
  std::vector<ReaderRow> rows = RowsOf(
      session.Main().Query(fmt::format(
          "SELECT TOP {} l.LoanID,c.CustID,c.CustName,l.CompCode,s.SchID as [Row],s.DueDate as "
          "[Day],"
          "s.PayableAmt-s.Payment as [Amount] FROM SchMast as s INNER JOIN LoanMast as l on "
          "s.LoanID=l.LoanID INNER JOIN CustMast as c on l.CustID=c.CustID WHERE "
          "l.loanGroupID='PINJAMAN SEMASA'  AND s.DueDate <= {} AND l.LoanBal > 0 and "
          "s.PayableAmt - s.Payment > 0 {} ORDER BY l.CompCode,l.LoanID,s.DueDate",
          kMostReaderRows + 1, SqlDate(day), AndCompany(session, "l.CompCode"))),
      ReaderSource::due, "Due");
  for (ReaderRow& row : rows) row.due = std::exchange(row.date, day);
  return rows;
}

}  // namespace kaunter
