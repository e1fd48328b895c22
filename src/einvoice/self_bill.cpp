#include "einvoice/self_bill.h"

#include <fmt/format.h>

#include "einvoice/invoice_service.h"
#include "einvoice/json.h"

namespace kaunter {
namespace {

std::string Quoted(std::string_view name, std::string_view value) {
  return JsonQuote(name) + ":" + JsonQuote(value);
}

std::string Amount(std::string_view name, Money value) {
  return JsonQuote(name) + ":" + JsonMoney(value);
}

std::string Supplier(const SelfBill& bill) {
  return R"("supplier": {)" + Quoted("tin", bill.SuppTin) + "," +
         Quoted("identity_number", bill.SuppIDNo) + "," + Quoted("identity_type", bill.SuppIDType) +
         "," + Quoted("msic_code", bill.SuppMiscCode) + "," +
         Quoted("bank_account", bill.SuppBankAcc) + "," + Quoted("sst", bill.SuppSST) + "," +
         Quoted("registration_name", bill.SuppName) + "," + Quoted("telephone", bill.SuppTel) +
         "," + Quoted("email", bill.SuppEmail) + R"(,"address": {)" +
         Quoted("postal_code", bill.SuppPostCode) + "," + Quoted("city", bill.SuppCity) + "," +
         Quoted("state_code", bill.SuppState) + "," + Quoted("country_code", bill.SuppCountry) +
         R"(,"addresses": [)" + JsonQuote(AddressLine(bill.SuppAdd)) + "]}},";
}

// The party's name alone changes: a company may call itself a supplier.
std::string Customer(std::string_view company) {
  constexpr std::string_view kParty = R"("supplier")";
  return company.starts_with(kParty) ? R"("customer")" + std::string(company.substr(kParty.size()))
                                     : std::string(company);
}

std::string Item(const SelfBillItem& item, std::size_t number) {
  return Quoted("id", std::to_string(number)) + R"(,"quantity":)" + item.SelfBillQty + "," +
         Amount("total_amount_excluding_tax", item.SelfBillAmt) + "," +
         Quoted("classification_code", item.SelfBillClassCode) + "," +
         Quoted("description", item.SelfBillDesc) + "," + Amount("unit_price", item.SelfBillAmt) +
         R"(,"tax": {)" + Amount("tax_amount", item.SelfBillTaxAmt) + "," +
         Amount("percent", item.SelfBillTaxPer) + "," + Quoted("category", item.SelfBillTaxCat) +
         "}}";
}

}  // namespace

std::string SelfBillBody(const SelfBill& bill, std::string_view company) {
  const Money payable = bill.SelfBillAmt + bill.SelfBillTaxAmt;
  std::string body = R"({"documents":[{)" + Quoted("document_number", bill.SID) +
                     R"(,"document_currency": "MYR",)" + Supplier(bill) + Customer(company) +
                     R"("tax": {)" + Amount("tax_amount", bill.SelfBillTaxAmt) + "," +
                     Quoted("category", bill.SelfBillTaxCat) + "}," +
                     Amount("total_tax_exclusive", bill.SelfBillAmt) + "," +
                     Amount("total_tax_inclusive", payable) + "," +
                     Amount("total_payable", payable) + R"(,"items": [)";
  for (std::size_t i = 0; i < bill.items.size(); ++i) {
    body += (i == 0 ? "{" : ",{") + Item(bill.items[i], i + 1);
  }
  return body + "]}]}";
}

}  // namespace kaunter
