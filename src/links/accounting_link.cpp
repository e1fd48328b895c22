#include "links/accounting_link.h"

#include <fmt/format.h>

#include <exception>
#include <functional>

#include "core/data_access.h"
#include "core/log.h"
#include "core/session.h"
#include "core/sql_literals.h"
#include "core/telling.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

// Tells a failure under the operation's title and in the log.
bool Send(Session& session, Desk& desk, std::string_view title, std::string_view key,
          const std::function<void(Connection&)>& write) {
  if (!LinkIsOn(session)) return true;
  try {
    if (session.AED == nullptr) throw SqlError(4060, "the connection AED is not open");
    Transaction transaction(*session.AED);
    write(*session.AED);
    transaction.Commit();
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session, fmt::format("{} {}", title, key), failure);
    desk.Message(MessageKind::critical, title,
                 session.In(Failed(
                     "an error occur on linkage to accounting system", failure,
                     {"What was saved here stays saved, the accounting system lacks it. Mend "
                      "the cause, then save it once more.",
                      "这里储存的内容已保留，只是会计系统没有收到。请排除原因后再储存一次。"})));
    return false;
  }
}

}  // namespace

bool LinkIsOn(const Session& session) { return session.settings.LinkAcc == "1"; }

bool LinkAccSetupDone(Connection& main, std::initializer_list<std::string_view> link_ids) {
  std::string list;
  for (const std::string_view id : link_ids) list += (list.empty() ? "" : ",") + QuoteStr(id);
  return ScalarQuery(main, fmt::format("SELECT COUNT(*) FROM LinkAccMast WHERE LinkID in ({}) AND "
                                       "LinkAccCode=''",
                                       list)) == "0";
}

bool RequireLinkAccounts(Session& session, const Screen& screen,
                         std::initializer_list<std::string_view> link_ids) {
  while (LinkIsOn(session) && !LinkAccSetupDone(session.Main(), link_ids)) {
    session.MsgText = session.In({"Link Account not complete setup\nDo you want to setup now ?",
                                  "会计科目尚未设定完毕\n是否现在设定？"});
    if (!screen.desk().Ask(Heading(session, screen), session.MsgText)) return false;
    screen.desk().Show("LinkAccSetupfrm");
  }
  return true;
}

std::string LinkAccount(Connection& main, std::string_view link_id) {
  return ScalarQuery(
      main, fmt::format("SELECT LinkAccCode FROM LinkAccMast WHERE LinkID={}", QuoteStr(link_id)));
}

bool LinkDebtor(Session& session, Desk& desk, const LinkedParty& debtor) {
  return Send(session, desk, "Create / Edit Debtor", debtor.AccNo,
              [&](Connection& aed) { PutParty(aed, LinkSide::receivable, debtor); });
}

bool LinkARInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice) {
  return Send(session, desk, "Debtor Invoice", invoice.DocNo,
              [&](Connection& aed) { PutInvoice(aed, LinkSide::receivable, invoice); });
}

bool LinkARInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line) {
  return Send(session, desk, "Debtor Invoice", line.DocNo,
              [&](Connection& aed) { AddInvoiceLine(aed, LinkSide::receivable, line); });
}

bool LinkARCN(Session& session, Desk& desk, const LinkedCreditNote& note) {
  return Send(session, desk, "Debtor Credit Note", note.DocNo,
              [&](Connection& aed) { PutCreditNote(aed, LinkSide::receivable, note); });
}

bool LinkARPayment(Session& session, Desk& desk, const LinkedPayment& payment) {
  return Send(session, desk, "Debtor Payment", payment.DocNo,
              [&](Connection& aed) { PutPayment(aed, LinkSide::receivable, payment); });
}

bool LinkCreditor(Session& session, Desk& desk, const LinkedParty& creditor) {
  return Send(session, desk, "Creditor Profile", creditor.AccNo,
              [&](Connection& aed) { PutParty(aed, LinkSide::payable, creditor); });
}

bool LinkAPInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice) {
  return Send(session, desk, "Creditor Invoice", invoice.DocNo,
              [&](Connection& aed) { PutInvoice(aed, LinkSide::payable, invoice); });
}

bool LinkAPInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line) {
  return Send(session, desk, "Creditor Invoice Detail", line.DocNo,
              [&](Connection& aed) { AddInvoiceLine(aed, LinkSide::payable, line); });
}

// The titles of the two below say "Debtor" on the creditor's side: people know them so.
bool LinkAPCN(Session& session, Desk& desk, const LinkedCreditNote& note) {
  return Send(session, desk, "Debtor Credit Note", note.DocNo,
              [&](Connection& aed) { PutCreditNote(aed, LinkSide::payable, note); });
}

bool LinkAPPayment(Session& session, Desk& desk, const LinkedPayment& payment) {
  return Send(session, desk, "Debtor Payment", payment.DocNo,
              [&](Connection& aed) { PutPayment(aed, LinkSide::payable, payment); });
}

}  // namespace kaunter
