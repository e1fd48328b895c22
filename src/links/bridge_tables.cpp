#include "links/bridge_tables.h"

#include <fmt/format.h>

#include "core/sql_literals.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::size_t kDescriptionCharacters = 50;

std::string Description(std::string_view text) {
  return QuoteStr(FirstCharacters(text, kDescriptionCharacters));
}

void DeleteDocument(Connection& aed, std::string_view table, std::string_view doc_no) {
  aed.Execute(fmt::format("DELETE FROM {} WHERE DocNO={}", table, QuoteStr(doc_no)));
}

}  // namespace

const BridgeNames& NamesOf(LinkSide side) {
  static constexpr BridgeNames kReceivable = {"TM_Debtor",      "TM_ARInvoice", "TM_ARInvoiceDTL",
                                              "TM_ARCN",        "TM_ARPayment", "DebtorCode",
                                              "SalesAccountNo", "DebitAccNo"};
  static constexpr BridgeNames kPayable = {"TM_Creditor",       "TM_APInvoice", "TM_APInvoiceDTL",
                                           "TM_APCN",           "TM_APPayment", "CreditorCode",
                                           "PurchaseAccountNo", "CreditAccNo"};
  return side == LinkSide::receivable ? kReceivable : kPayable;
}

void PutParty(Connection& aed, LinkSide side, const LinkedParty& party) {
  const char* table = NamesOf(side).party;
  aed.Execute(fmt::format("DELETE FROM {} WHERE AccNo={}", table, QuoteStr(party.AccNo)));
  aed.Execute(fmt::format(
      "INSERT INTO {} (AccNo,CompanyName,Desc2,IC,Address1,Address2,Address3,Address4,Phone1,"
      "Phone2,Fax1,EmailAddress) VALUES ({},{},{},{},{},{},{},{},{},{},{},{})",
      table, QuoteStr(party.AccNo), QuoteStr(party.CompanyName), QuoteStr(party.Desc2),
      QuoteStr(party.IC), QuoteStr(party.Address1), QuoteStr(party.Address2),
      QuoteStr(party.Address3), QuoteStr(party.Address4), QuoteStr(party.Phone1),
      QuoteStr(party.Phone2), QuoteStr(party.Fax1), QuoteStr(party.EmailAddress)));
}

void PutInvoice(Connection& aed, LinkSide side, const LinkedInvoice& invoice) {
  const BridgeNames& names = NamesOf(side);
  DeleteDocument(aed, names.invoice, invoice.DocNo);
  DeleteDocument(aed, names.invoice_lines, invoice.DocNo);
  aed.Execute(fmt::format("INSERT INTO {} (DocNo,DocDate,{},Total) VALUES ({},{},{},{})",
                          names.invoice, names.party_column, QuoteStr(invoice.DocNo),
                          SqlDate(invoice.DocDate), QuoteStr(invoice.Party),
                          invoice.Total.ToText()));
}

void AddInvoiceLine(Connection& aed, LinkSide side, const LinkedInvoiceLine& line) {
  const BridgeNames& names = NamesOf(side);
  aed.Execute(fmt::format("INSERT INTO {} (DocNo,{},Description,Amount) VALUES ({},{},{},{})",
                          names.invoice_lines, names.line_account, QuoteStr(line.DocNo),
                          QuoteStr(line.AccountNo), Description(line.Description),
                          line.Amount.ToText()));
}

void PutCreditNote(Connection& aed, LinkSide side, const LinkedCreditNote& note) {
  const BridgeNames& names = NamesOf(side);
  DeleteDocument(aed, names.credit_note, note.DocNo);
  aed.Execute(
      fmt::format("INSERT INTO {} (DocNo,DocDate,{},Description,{},ProjNo,Amount) VALUES "
                  "({},{},{},{},{},{},{})",
                  names.credit_note, names.party_column, names.note_account, QuoteStr(note.DocNo),
                  SqlDate(note.DocDate), QuoteStr(note.Party), Description(note.Description),
                  QuoteStr(note.AccNo), QuoteStr(note.ProjNo), note.Amount.ToText()));
}

void PutPayment(Connection& aed, LinkSide side, const LinkedPayment& payment) {
  const BridgeNames& names = NamesOf(side);
  DeleteDocument(aed, names.payment, payment.DocNo);
  aed.Execute(fmt::format(
      "INSERT INTO {} (DocNo,DocDate,{},Description,PaymentMethod,ChequeNo,PaymentAmount) VALUES "
      "({},{},{},{},{},{},{})",
      names.payment, names.party_column, QuoteStr(payment.DocNo), SqlDate(payment.DocDate),
      QuoteStr(payment.Party), Description(payment.Description), QuoteStr(payment.PaymentMethod),
      QuoteStr(payment.ChequeNo), payment.PaymentAmount.ToText()));
}

}  // namespace kaunter
