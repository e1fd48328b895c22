// Each body, to the byte.
#include "einvoice/einvoice_row.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace kaunter {
namespace {

using namespace einvoice_column;

InvoiceRow Row(const std::string& amount, const std::string& tin) {
  InvoiceRow row(kColumns);
  row[kID] = "PAY-1";
  row[kTaxCode] = "06";
  row[kDescription] = "Interest";
  row[kAmount] = amount;
  row[kQty] = "1";
  row[kTin] = tin;
  row[kCustTypeID] = "800101105533";
  row[kCustType] = "NRIC";
  row[kTaxName] = "陈大文 & Co";
  row[kPhone] = "+60123456789";
  row[kEmail] = "t@mail.example";
  row[kAddress] = "7, Jalan Tiga";
  row[kPostcode] = "43000";
  row[kCity] = "Kajang";
  row[kState] = "10";
  row[kCountry] = "MYS";
  row[kUuid] = "OWN-UUID";
  row[kOldUuid] = "OLD-UUID";
  return row;
}

TEST(EInvoiceRow, TheBodyIsTheOfficesToTheByte) {
  const struct {
    const char* amount;
    const char* tin;
    const char* sent;
    const char* key;
  } cases[] = {{"1,000.00", "IG1", "1000", "GetEInvAPIInv"},
               {"1,000.50", "", "1000.5", "GetEInvAPIConsolidated"},
               {"0.00", "IG1", "0", "GetEInvAPIInv"},
               {"", "", "0", "GetEInvAPIConsolidated"},
               {"-1,234,567.89", "IG1", "1234567.89", "GetEInvAPICN"},
               {"-0.05", "", "0.05", "GetEInvAPICN"}};
  for (const auto& one : cases) {
    std::string body = R"({"documents":[{"document_number":"PAY-1","document_currency": "MYR",)";
    if (*one.amount == '-') {
      body += R"("e_invoice_references": [{"reference_number":"OWN-UUID","uuid":"OLD-UUID"}],)";
    }
    body += "SUPPLIER,";
    if (*one.tin != '\0') {
      body += R"("customer": {"tin":"IG1","identity_number":"800101105533","identity_type":"NRIC",)"
              R"("bank_account": "","sst": "","registration_name":"陈大文 & Co",)"
              R"("telephone":"+60123456789","email":"t@mail.example","address": {)"
              R"("postal_code":"43000","city":"Kajang","state_code":"10","country_code":"MYS",)"
              R"("addresses": ["7, Jalan Tiga"]}},)";
    }
    body += fmt::format(
        R"("tax": {{"tax_amount": 0,"category":"06"}},"total_tax_exclusive":{0},)"
        R"("total_tax_inclusive":{0},"total_payable":{0},"items": [{{"id": "1","quantity":1,)"
        R"("total_amount_excluding_tax":{0},"classification_code": {1},"unit_price":{0},)"
        R"("tax": {{"tax_amount": 0,"percent": 0,"category":"06"}}}}]}}]}})",
        one.sent,
        *one.tin != '\0' ? R"("016","description":"Interest")" : R"("004","description":"PAY-1")");
    const InvoiceRow row = Row(one.amount, one.tin);
    EXPECT_EQ(SubmitBody(row, "SUPPLIER,"), body);
    EXPECT_EQ(SubmitAddressKey(row), one.key);
  }
  // A quote in a name is not escaped: the service takes the document for no JSON.
  InvoiceRow row = Row("1.00", "IG1");
  row[kTaxName] = R"(Tan "Ah" Kow)";
  EXPECT_NE(SubmitBody(row, "").find(R"("registration_name":"Tan "Ah" Kow",)"), std::string::npos);
}

}  // namespace
}  // namespace kaunter
