#include "einvoice/einvoice_row.h"

#include "einvoice/json.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

// What a cell has lost is no amount.
Money AbsoluteAmount(const InvoiceRow& row) {
  const Money amount = AmountOf(row);
  return amount < Money() ? -amount : amount;
}

}  // namespace

Money AmountOf(const InvoiceRow& row) {
  return row[kAmount].empty() ? Money() : Money::FromText(row[kAmount]);
}

bool IsCreditNote(const InvoiceRow& row) { return AmountOf(row) < Money(); }
bool NamesCustomer(const InvoiceRow& row) { return !row[kTin].empty(); }

std::string_view SubmitAddressKey(const InvoiceRow& row) {
  if (IsCreditNote(row)) return "GetEInvAPICN";
  return NamesCustomer(row) ? "GetEInvAPIInv" : "GetEInvAPIConsolidated";
}

std::string SubmitBody(const InvoiceRow& row, std::string_view supplier) {
  const auto text = [&row](int column) { return JsonQuote(row[static_cast<std::size_t>(column)]); };
  const std::string amount = JsonMoney(AbsoluteAmount(row));
  const bool named = NamesCustomer(row);

  std::string body =
      R"({"documents":[{"document_number":)" + text(kID) + R"(,"document_currency": "MYR",)";
  if (IsCreditNote(row)) {
    // The document's own uuid, not the number of the one that it takes back: that is wanted.
    body += R"("e_invoice_references": [{"reference_number":)" + text(kUuid) + R"(,"uuid":)" +
            text(kOldUuid) + "}],";
  }
  body += supplier;
  if (named) {
    body += R"("customer": {"tin":)" + text(kTin) + R"(,"identity_number":)" + text(kCustTypeID) +
            R"(,"identity_type":)" + text(kCustType) +
            R"(,"bank_account": "","sst": "","registration_name":)" + text(kTaxName) +
            R"(,"telephone":)" + text(kPhone) + R"(,"email":)" + text(kEmail) +
            R"(,"address": {"postal_code":)" + text(kPostcode) + R"(,"city":)" + text(kCity) +
            R"(,"state_code":)" + text(kState) + R"(,"country_code":)" + text(kCountry) +
            R"(,"addresses": [)" + text(kAddress) + "]}},";
  }
  body += R"("tax": {"tax_amount": 0,"category":)" + text(kTaxCode) + "},";
  body += R"("total_tax_exclusive":)" + amount + R"(,"total_tax_inclusive":)" + amount +
          R"(,"total_payable":)" + amount + ",";
  body += R"("items": [{"id": "1","quantity":)" + row[kQty] + R"(,"total_amount_excluding_tax":)" +
          amount + R"(,"classification_code": )" +
          (named ? R"("016","description":)" + text(kDescription)
                 : R"("004","description":)" + text(kID)) +
          R"(,"unit_price":)" + amount + R"(,"tax": {"tax_amount": 0,"percent": 0,"category":)" +
          text(kTaxCode) + "}}]}]}";
  return body;
}

}  // namespace kaunter
