#include "collections/late_int_frm.h"

#include <fmt/format.h>

#include "collections/late_interest.h"
#include "core/amounts.h"
#include "core/boxes.h"
#include "core/values.h"
#include "screen/hourglass.h"

namespace kaunter {
namespace {

std::string LastDate(Connection& main) {
  return ScalarQuery(main, "SELECT [Value] FROM Systemast WHERE ID='LateIntDate'");
}

}  // namespace

LateIntfrm::LateIntfrm(Session& session, Desk& desk)
    : SessionScreen("LateIntfrm", {"Late Interest"}, session, desk) {
  LateIntDate.SetLocked(true);
  TrxDate.max_length = kDateLength;
  TrxDate.onLeave = [this] { CheckDateBox(this->session(), TrxDate, {"Invalid Date"}); };
  SaveCmd.onClick = [this] { Process(); };
}

void LateIntfrm::Load() { ShowLastDate(); }

void LateIntfrm::ShowLastDate() { LateIntDate.SetText(ShowDate(LastDate(main()))); }

bool LateIntfrm::Run(const std::function<void()>& work) {
  return Attempt("Late Interest", {"an error occur during process late interest charges"}, work);
}

void LateIntfrm::NoteDate(const std::string& date) {
  main().Execute(
      fmt::format("UPDATE Systemast SET [Value]={} WHERE ID='LateIntDate'", SqlDate(date)));
}

void LateIntfrm::Process() {
  if (!RequireDate(session(), TrxDate, {"Date is required"}, {"Invalid Date"})) return;
  if (LastDate(main()).empty()) {
    const std::string before = ShowDate(DateTime::FromDisplay(TrxDate.text())->AddMonths(-1));
    if (!Confirm({fmt::format("Previous process date not found, Auto defauld to {}", before)})) {
      Tell(MessageKind::critical,
           {"Process Aborted!\nPlease contact vendor for more information, thanks"});
      return;
    }
    if (!Run([&] { NoteDate(before); })) return;
  }
  const bool done = Run([this] {
    const Hourglass busy(desk());
    TryOverdueRows();
    NoteDate(TrxDate.text());
  });
  if (done) ShowLastDate();
}

void LateIntfrm::TryOverdueRows() {
  for (Recordset rows = main().Query(fmt::format(
           "SELECT s.LoanID,l.LateChargePerDay,s.PayableAmt-s.Payment as BalDue FROM SchMast as s "
           "INNER JOIN LoanMast as l on s.LoanID=l.LoanID WHERE l.LateChargePerDay > 0 AND "
           "s.PayableAmt-s.Payment > 0 AND s.DueDate <= {} ORDER BY LoanID,SchID",
           SqlDate(TrxDate.text())));
       !rows.Eof(); rows.MoveNext()) {
    DayCharge(Sen(rows.Field("BalDue")), CDbl(NullToEmpty(rows.Field("LateChargePerDay"))));
  }
}

}  // namespace kaunter
