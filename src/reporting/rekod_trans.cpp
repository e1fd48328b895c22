// Rekod Transaksi: the loans made between two dates, each with what was paid on it up to the
// second.
#include <fmt/format.h>

#include "core/session.h"
#include "core/values.h"
#include "reporting/staging.h"
#include "screen/desk.h"

namespace kaunter {

bool StageRekodTrans(Session& session, Desk& desk, const StagedRun& run) {
  if (PickedList(run.filters, "CompCode") == nullptr) {
    desk.Message(MessageKind::critical, session.MsgTitle, "Company Code is require, please check");
    return false;
  }
  const bool staged =
      Stage(session, desk, run, "an error occur during process", [&](Connection& main) {
        const std::string from = SqlDate(NeededDate(run.date_from, "Date From"));
        const std::string to = SqlDate(NeededDate(run.date_to, "Date To"));
        main.Execute(fmt::format(
            "INSERT INTO MasterReport (pcname,reportname,recordid,S20,C1) SELECT {} ,{},LoanID,"
            "LoanID,0 FROM LoanMast WHERE TrxDate >= {} AND TrxDate <= {} AND {}",
            QuoteStr(run.pcname), QuoteStr(run.report_name), from, to, FilterAsSql(run.filters)));
        // Every row of the table, of all PCs and reports, on purpose: what a row gets depends on
        // its own S20 alone.
        main.Execute(fmt::format(
            "UPDATE MasterReport SET C1=(SELECT case when SUM(Payamt-DiscAmt) is null then 0 else "
            "SUM(Payamt-DiscAmt) end FROM paymentmast WHERE LoanID = MasterReport.S20 and PayDate "
            "<={})",
            to));
      });
  if (staged) desk.Message(MessageKind::information, session.MsgTitle, "Process Complete");
  return staged;
}

}  // namespace kaunter
