#include "compliance/returns.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/staged_rows.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
std::string CompaniesText(const std::vector<std::string>& companies) {
  std::string codes;
  for (const std::string& code : companies) codes += (codes.empty() ? "" : ",") + QuoteStr(code);
  return fmt::format(" (lm.CompCode in ({}) ) ", codes);
}

std::string TimeText(const DateTime& day) {
  return fmt::format("{{ ts '{:04}-{:02}-{:02} 00:00:00' }}", day.year, day.month, day.day);
}

std::string WithinText(std::string_view column, const ReturnPeriod& period) {
  return fmt::format(" and {0} >= {1} and {0} <= {2} ", column, TimeText(period.from),
                     TimeText(period.to));
}

std::vector<ReturnLoan> LoansOf(Recordset rows) {
  std::vector<ReturnLoan> loans;
  loans.reserve(rows.RowCount());
  for (; !rows.Eof(); rows.MoveNext()) {
    const DateTime* date = rows.Field(1).AsDate();
    const Value& because = rows.Field(4);
    loans.push_back({NullToEmpty(rows.Field(0)),
                     date == nullptr ? std::nullopt : std::optional(*date),
                     NullToEmpty(rows.Field(2)), NullToEmpty(rows.Field(3)),
                     because.AsMoney() != nullptr ? ShowMoney(because) : NullToEmpty(because),
                     Sen(rows.Field(5))});
  }
  return loans;
}

void StageReturnLoans(Connection& main, std::string_view pcname,
                      const std::vector<ReturnLoan>& loans) {
  Transaction transaction(main);
  DropStagedRows(main, pcname, kReturnLoansFile);
  Batch batch;
  for (const ReturnLoan& loan : loans) {
    batch.Add(
        fmt::format("INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,c1,d1) VALUES "
                    "({},{},{},{},{},{},{},{})",
                    QuoteStr(pcname), QuoteStr(kReturnLoansFile), QuoteStr(loan.LoanID),
                    QuoteStr(loan.CustName), QuoteStr(loan.because), QuoteStr(loan.CompCode),
                    loan.amount.ToText(), loan.TrxDate ? SqlDateTime(*loan.TrxDate) : "null"));
    batch.SendWhenFull(main);
  }
  batch.Send(main);
  transaction.Commit();
}

}  // namespace kaunter
