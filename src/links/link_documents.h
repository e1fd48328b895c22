// What the ledger says that the bridge must hold: the documents and persons behind its records,
// each as the screen that saved it sends it.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "links/bridge_tables.h"
#include "screen/caption.h"

namespace kaunter {

class Session;

// In the order in which they are sent: nobody's document before himself.
enum class LinkSource {
  customer,
  supplier,
  loan,
  drawdown,
  payment,
  charge,
  supplier_document,
  first = customer,
  last = supplier_document
};

enum class LinkKind { party, invoice, payment, credit_note };

struct LinkedDocument {
  LinkSource source = LinkSource::loan;
  LinkKind kind = LinkKind::invoice;
  LinkSide side = LinkSide::receivable;
  std::string DocNo;    // of a person his code
  std::string DocDate;  // dd-mm-yyyy; "" for a person
  std::string Party;
  std::string CompCode;
  std::string Name;  // of the party, for a list
  Money Amount;
  std::string Description;
  std::string AccNo;  // of a credit note
  std::string PaymentMethod;
  std::string ChequeNo;
  std::vector<LinkedInvoiceLine> lines;  // of an invoice
  LinkedParty person;
  // Need not be there: a discount of nothing. Where it is, its amount counts.
  bool optional = false;
};

// The account of a kind of money.
using LinkAccounts = std::function<std::string(std::string_view link_id)>;

// --- what a record of each kind sends

struct LoanToLink {
  std::string LoanID;
  std::string TrxDate;
  std::string CustID;
  std::string CustName;
  std::string Bank;
  bool flexi = false;
  // TermInt, DepositAmt, OathsAmt, LegalFee, ProcessFee, MiscAmt
  std::array<Money, 6> charges;
};
// The invoice of its charges, and their payment: they are taken from what is paid out. The capital
// is invoiced when it is drawn.
std::array<LinkedDocument, 2> DocumentsOf(const LoanToLink& loan, const LinkAccounts& accounts);

struct PaymentToLink {
  std::string PayID;
  std::string PayDate;
  std::string CustID;
  std::string CustName;
  std::string Bank;
  std::string ChqNo;
  Money received;  // towards the loan, late interest, charges and the collector together
  Money DiscAmt;
};
// The payment, and its discount.
std::array<LinkedDocument, 2> DocumentsOf(const PaymentToLink& payment,
                                          const LinkAccounts& accounts);

LinkedInvoice InvoiceOf(const LinkedDocument& document);
LinkedPayment PaymentOf(const LinkedDocument& document);
LinkedCreditNote CreditNoteOf(const LinkedDocument& document);

// Writes it whole, within the transaction of the caller. Throws SqlError.
void PutDocument(Connection& aed, const LinkedDocument& document);

// --- what is stored

Caption NameOf(LinkSource source);

// The documents behind the records of a source whose day lies between two days (dd-mm-yyyy, both
// included), of the companies that the person may see, or of one. Customers and suppliers are those
// registered then.
std::vector<LinkedDocument> ReadDocuments(Session& session, LinkSource source,
                                          const std::string& from, const std::string& to,
                                          const std::string& company);
// Those of some records, as they are now; none of one that is gone.
std::vector<LinkedDocument> ReadDocuments(Session& session, LinkSource source,
                                          const std::vector<std::string>& keys);

}  // namespace kaunter
