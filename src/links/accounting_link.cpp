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
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::size_t kDescriptionCharacters = 50;

std::string Description(std::string_view text) {
  return QuoteStr(FirstCharacters(text, kDescriptionCharacters));
}

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

// --- what receivables and payables have in common

bool SendParty(Session& session, Desk& desk, std::string_view title, std::string_view table,
               const LinkedParty& party) {
  return Send(session, desk, title, party.AccNo, [&](Connection& aed) {
    aed.Execute(fmt::format("DELETE FROM {} WHERE AccNo={}", table, QuoteStr(party.AccNo)));
    aed.Execute(fmt::format(
        "INSERT INTO {} (AccNo,CompanyName,Desc2,IC,Address1,Address2,Address3,Address4,Phone1,"
        "Phone2,Fax1,EmailAddress) VALUES ({},{},{},{},{},{},{},{},{},{},{},{})",
        table, QuoteStr(party.AccNo), QuoteStr(party.CompanyName), QuoteStr(party.Desc2),
        QuoteStr(party.IC), QuoteStr(party.Address1), QuoteStr(party.Address2),
        QuoteStr(party.Address3), QuoteStr(party.Address4), QuoteStr(party.Phone1),
        QuoteStr(party.Phone2), QuoteStr(party.Fax1), QuoteStr(party.EmailAddress)));
  });
}

void DeleteDocument(Connection& aed, std::string_view table, std::string_view doc_no) {
  aed.Execute(fmt::format("DELETE FROM {} WHERE DocNO={}", table, QuoteStr(doc_no)));
}

bool SendInvoice(Session& session, Desk& desk, std::string_view title, std::string_view table,
                 std::string_view party_column, const LinkedInvoice& invoice) {
  return Send(session, desk, title, invoice.DocNo, [&](Connection& aed) {
    DeleteDocument(aed, table, invoice.DocNo);
    DeleteDocument(aed, fmt::format("{}DTL", table), invoice.DocNo);
    aed.Execute(fmt::format("INSERT INTO {} (DocNo,DocDate,{},Total) VALUES ({},{},{},{})", table,
                            party_column, QuoteStr(invoice.DocNo), SqlDate(invoice.DocDate),
                            QuoteStr(invoice.Party), invoice.Total.ToText()));
  });
}

bool SendLine(Session& session, Desk& desk, std::string_view title, std::string_view table,
              std::string_view account_column, const LinkedInvoiceLine& line) {
  return Send(session, desk, title, line.DocNo, [&](Connection& aed) {
    aed.Execute(fmt::format("INSERT INTO {} (DocNo,{},Description,Amount) VALUES ({},{},{},{})",
                            table, account_column, QuoteStr(line.DocNo), QuoteStr(line.AccountNo),
                            Description(line.Description), line.Amount.ToText()));
  });
}

bool SendCreditNote(Session& session, Desk& desk, std::string_view title, std::string_view table,
                    std::string_view party_column, std::string_view account_column,
                    const LinkedCreditNote& note) {
  return Send(session, desk, title, note.DocNo, [&](Connection& aed) {
    DeleteDocument(aed, table, note.DocNo);
    aed.Execute(
        fmt::format("INSERT INTO {} (DocNo,DocDate,{},Description,{},ProjNo,Amount) VALUES "
                    "({},{},{},{},{},{},{})",
                    table, party_column, account_column, QuoteStr(note.DocNo),
                    SqlDate(note.DocDate), QuoteStr(note.Party), Description(note.Description),
                    QuoteStr(note.AccNo), QuoteStr(note.ProjNo), note.Amount.ToText()));
  });
}

bool SendPayment(Session& session, Desk& desk, std::string_view title, std::string_view table,
                 std::string_view party_column, const LinkedPayment& payment) {
  return Send(session, desk, title, payment.DocNo, [&](Connection& aed) {
    DeleteDocument(aed, table, payment.DocNo);
    aed.Execute(fmt::format(
        "INSERT INTO {} (DocNo,DocDate,{},Description,PaymentMethod,ChequeNo,PaymentAmount) VALUES "
        "({},{},{},{},{},{},{})",
        table, party_column, QuoteStr(payment.DocNo), SqlDate(payment.DocDate),
        QuoteStr(payment.Party), Description(payment.Description), QuoteStr(payment.PaymentMethod),
        QuoteStr(payment.ChequeNo), payment.PaymentAmount.ToText()));
  });
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

std::string LinkAccount(Connection& main, std::string_view link_id) {
  return ScalarQuery(
      main, fmt::format("SELECT LinkAccCode FROM LinkAccMast WHERE LinkID={}", QuoteStr(link_id)));
}

bool LinkDebtor(Session& session, Desk& desk, const LinkedParty& debtor) {
  return SendParty(session, desk, "Create / Edit Debtor", "TM_Debtor", debtor);
}

bool LinkARInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice) {
  return SendInvoice(session, desk, "Debtor Invoice", "TM_ARInvoice", "DebtorCode", invoice);
}

bool LinkARInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line) {
  return SendLine(session, desk, "Debtor Invoice", "TM_ARInvoiceDTL", "SalesAccountNo", line);
}

bool LinkARCN(Session& session, Desk& desk, const LinkedCreditNote& note) {
  return SendCreditNote(session, desk, "Debtor Credit Note", "TM_ARCN", "DebtorCode", "DebitAccNo",
                        note);
}

bool LinkARPayment(Session& session, Desk& desk, const LinkedPayment& payment) {
  return SendPayment(session, desk, "Debtor Payment", "TM_ARPayment", "DebtorCode", payment);
}

bool LinkCreditor(Session& session, Desk& desk, const LinkedParty& creditor) {
  return SendParty(session, desk, "Creditor Profile", "TM_Creditor", creditor);
}

bool LinkAPInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice) {
  return SendInvoice(session, desk, "Creditor Invoice", "TM_APInvoice", "CreditorCode", invoice);
}

bool LinkAPInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line) {
  return SendLine(session, desk, "Creditor Invoice Detail", "TM_APInvoiceDTL", "PurchaseAccountNo",
                  line);
}

// The titles of the two below say "Debtor" on the creditor's side: people know them so.
bool LinkAPCN(Session& session, Desk& desk, const LinkedCreditNote& note) {
  return SendCreditNote(session, desk, "Debtor Credit Note", "TM_APCN", "CreditorCode",
                        "CreditAccNo", note);
}

bool LinkAPPayment(Session& session, Desk& desk, const LinkedPayment& payment) {
  return SendPayment(session, desk, "Debtor Payment", "TM_APPayment", "CreditorCode", payment);
}

}  // namespace kaunter
