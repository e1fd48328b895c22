// Each body, member by member as another reader of JSON takes it, and to the byte where the form is
// free.
#include "einvoice/einvoice_row.h"

#include <gtest/gtest.h>

#include "einvoice/invoice_service.h"
#include "tests/einvoice/invoice_office.h"

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

// What the service must find, written as the rule tells it.
std::string Expected(bool credit, bool named, const std::string& amount) {
  const std::string d = "documents[0].";
  std::string text = d + "document_number\t\"PAY-1\"\n" + d + "document_currency\t\"MYR\"\n";
  if (credit) {
    text += d + "e_invoice_references[0].reference_number\t\"OWN-UUID\"\n" + d +
            "e_invoice_references[0].uuid\t\"OLD-UUID\"\n";
  }
  const auto party = [&](const std::string& who, TextRows<2> members) {
    for (const auto& [name, value] : members) {
      text += d + who + "." + name + "\t\"" + value + "\"\n";
    }
  };
  party("supplier", {{"tin", "C1234567890"},
                     {"identity_number", "200801012344"},
                     {"identity_type", "BRN"},
                     {"msic_code", "64921"},
                     {"business_activity", "Money lending"},
                     {"bank_account", ""},
                     {"sst", ""},
                     {"registration_name", "Kaunter Credit Sdn Bhd"},
                     {"telephone", "+60311112222"},
                     {"email", "hq@office.example"},
                     {"address.postal_code", "50000"},
                     {"address.city", "Kuala Lumpur"},
                     {"address.state_code", "14"},
                     {"address.country_code", "MYS"},
                     {"address.addresses[0]", "1 Jalan Satu Taman Dua"}});
  if (named) {
    party("customer", {{"tin", "IG1"},
                       {"identity_number", "800101105533"},
                       {"identity_type", "NRIC"},
                       {"bank_account", ""},
                       {"sst", ""},
                       {"registration_name", "陈大文 & Co"},
                       {"telephone", "+60123456789"},
                       {"email", "t@mail.example"},
                       {"address.postal_code", "43000"},
                       {"address.city", "Kajang"},
                       {"address.state_code", "10"},
                       {"address.country_code", "MYS"},
                       {"address.addresses[0]", "7, Jalan Tiga"}});
  }
  text += d + "tax.tax_amount\t0\n" + d + "tax.category\t\"06\"\n";
  for (const char* total : {"total_tax_exclusive", "total_tax_inclusive", "total_payable"}) {
    text += d + total + "\t" + amount + "\n";
  }
  const std::string i = d + "items[0].";
  text += i + "id\t\"1\"\n" + i + "quantity\t1\n" + i + "total_amount_excluding_tax\t" + amount +
          "\n" + i + "classification_code\t\"" + (named ? "016" : "004") + "\"\n" + i +
          "description\t\"" + (named ? "Interest" : "PAY-1") + "\"\n" + i + "unit_price\t" +
          amount + "\n" + i + "tax.tax_amount\t0\n" + i + "tax.percent\t0\n" + i +
          "tax.category\t\"06\"";
  return text;
}

TEST(EInvoiceRow, TheServiceReadsEachMemberInItsOrder) {
  InvoiceOffice office;
  InvoiceService service(office.session, office.desk);
  const std::string supplier = service.LoadSupplier("HQ");
  const struct {
    const char* amount;
    const char* tin;
    const char* sent;
    const char* key;
    const char* path;
  } cases[] = {{"1,000.00", "IG1", "1000", "GetEInvAPIInv", "/invoice"},
               {"1,000.50", "", "1000.5", "GetEInvAPIConsolidated", "/consolidated"},
               {"0.00", "IG1", "0", "GetEInvAPIInv", "/invoice"},
               {"", "", "0", "GetEInvAPIConsolidated", "/consolidated"},
               {"-1,234,567.89", "IG1", "1234567.89", "GetEInvAPICN", "/creditnote"},
               {"-0.05", "", "0.05", "GetEInvAPICN", "/creditnote"}};
  int number = static_cast<int>(office.service.Received().size());
  for (const auto& one : cases) {
    const InvoiceRow row = Row(one.amount, one.tin);
    EXPECT_EQ(SubmitAddressKey(row), one.key);
    const std::string reply =
        service.Send("POST", office.service.Url(one.path), SubmitBody(row, supplier));
    EXPECT_EQ(UuidOf(reply).size(), 26u) << reply;
    EXPECT_EQ(office.service.Flat(number++),
              Expected(one.amount[0] == '-', one.tin[0] != '\0', one.sent))
        << one.amount;
  }
}

TEST(EInvoiceRow, TheBodyIsTheOfficesToTheByte) {
  EXPECT_EQ(
      SubmitBody(Row("-12.50", "IG1"), "SUPPLIER,"),
      R"({"documents":[{"document_number":"PAY-1","document_currency": "MYR",)"
      R"("e_invoice_references": [{"reference_number":"OWN-UUID","uuid":"OLD-UUID"}],SUPPLIER,)"
      R"("customer": {"tin":"IG1","identity_number":"800101105533","identity_type":"NRIC",)"
      R"("bank_account": "","sst": "","registration_name":"陈大文 & Co",)"
      R"("telephone":"+60123456789","email":"t@mail.example","address": {"postal_code":"43000",)"
      R"("city":"Kajang","state_code":"10","country_code":"MYS","addresses": ["7, Jalan Tiga"]}},)"
      R"("tax": {"tax_amount": 0,"category":"06"},"total_tax_exclusive":12.5,)"
      R"("total_tax_inclusive":12.5,"total_payable":12.5,"items": [{"id": "1","quantity":1,)"
      R"("total_amount_excluding_tax":12.5,"classification_code": "016",)"
      R"("description":"Interest","unit_price":12.5,"tax": {"tax_amount": 0,"percent": 0,)"
      R"("category":"06"}}]}]})");
  // A quote in a name is not escaped: the service takes the document for no JSON.
  InvoiceRow row = Row("1.00", "IG1");
  row[kTaxName] = R"(Tan "Ah" Kow)";
  EXPECT_NE(SubmitBody(row, "").find(R"("registration_name":"Tan "Ah" Kow",)"), std::string::npos);
}

}  // namespace
}  // namespace kaunter
