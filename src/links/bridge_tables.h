// The tables of the bridge, and how a person or a document stands in them. Each Put takes away an
// earlier row of its key and writes the new one. All throw SqlError.
//
// Dates are texts as boxes show them (dd-mm-yyyy). A description longer than 50 characters is cut.
#pragma once

#include <string>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

// Debtors or creditors.
enum class LinkSide { receivable, payable };

struct LinkedParty {
  std::string AccNo;  // CustID or SuppID
  std::string CompanyName;
  std::string Desc2;
  std::string IC;
  std::string Address1;
  std::string Address2;
  std::string Address3;
  std::string Address4;
  std::string Phone1;
  std::string Phone2;
  std::string Fax1;
  std::string EmailAddress;
};

struct LinkedInvoice {
  std::string DocNo;
  std::string DocDate;
  std::string Party;  // DebtorCode or CreditorCode
  Money Total;
};

struct LinkedInvoiceLine {
  std::string DocNo;
  std::string AccountNo;  // SalesAccountNo or PurchaseAccountNo
  std::string Description;
  Money Amount;
};

struct LinkedCreditNote {
  std::string DocNo;
  std::string DocDate;
  std::string Party;
  std::string Description;
  std::string AccNo;  // DebitAccNo or CreditAccNo
  std::string ProjNo;
  Money Amount;
};

struct LinkedPayment {
  std::string DocNo;
  std::string DocDate;
  std::string Party;
  std::string Description;
  std::string PaymentMethod;
  std::string ChequeNo;
  Money PaymentAmount;
};

void PutParty(Connection& aed, LinkSide side, const LinkedParty& party);
// Takes away the lines of the invoice too.
void PutInvoice(Connection& aed, LinkSide side, const LinkedInvoice& invoice);
// Adds a line; takes none away.
void AddInvoiceLine(Connection& aed, LinkSide side, const LinkedInvoiceLine& line);
void PutCreditNote(Connection& aed, LinkSide side, const LinkedCreditNote& note);
void PutPayment(Connection& aed, LinkSide side, const LinkedPayment& payment);

// The names of a side's tables and columns.
struct BridgeNames {
  const char* party;
  const char* invoice;
  const char* invoice_lines;
  const char* credit_note;
  const char* payment;
  const char* party_column;
  const char* line_account;
  const char* note_account;
};
const BridgeNames& NamesOf(LinkSide side);

}  // namespace kaunter
