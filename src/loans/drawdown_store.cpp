#include "loans/drawdown_store.h"

#include <fmt/format.h>

#include "core/record.h"
#include "core/sequences.h"
#include "core/values.h"

namespace kaunter {

std::string NextReleaseNumber(Connection& main, std::string_view company) {
  return NextSeries(main, "DL", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT SID FROM DrawDownMast WHERE SID=" + QuoteStr(number)).Eof();
  });
}

void FollowReleases(Connection& main, std::string_view loan_id) {
  const std::string id = QuoteStr(loan_id);
  ExecuteOnRow(main,
               fmt::format("UPDATE LoanMast SET PayOutAmt=(SELECT SUM(DrawDownAmt) FROM "
                           "DrawDownMast WHERE LoanID={0}) WHERE LoanID={0}",
                           id),
               loan_id);
  main.Execute(
      fmt::format("UPDATE LoanMast SET LastDownDate=(SELECT MAX(TrxDate) FROM DrawDownMast WHERE "
                  "LoanID={0}) WHERE LoanID={0}",
                  id));
}

void AddOldRelease(Connection& main, const OldRelease& release, std::string_view user,
                   std::string_view now) {
  main.Execute(fmt::format(
      "INSERT INTO DrawDownMast (SID,LoanID,CustID,TrxDate,CompCode,DrawDownAmt,Payee,Bank,ChqNo,"
      "Remarks,UserID,DateCreated) VALUES ({},{},{},{},{},{},{},{},'','',{},{})",
      QuoteStr(NextReleaseNumber(main, release.CompCode)), QuoteStr(release.LoanID),
      QuoteStr(release.CustID), release.TrxDate, QuoteStr(release.CompCode),
      release.DrawDownAmt.ToText(), QuoteStr(release.Payee), QuoteStr(release.Bank), QuoteStr(user),
      now));
  FollowReleases(main, release.LoanID);
}

}  // namespace kaunter
