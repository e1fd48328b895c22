// A self-billed invoice: what the company writes on behalf of a supplier who issues none himself,
// and the document that goes out for it. The outside party is the supplier, the company the
// customer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/money.h"

namespace kaunter {

struct SelfBillItem {
  std::string SelfBillClassCode;
  std::string SelfBillDesc;
  std::string SelfBillQty;  // digits
  Money SelfBillAmt;
  std::string SelfBillTaxCat;
  Money SelfBillTaxPer;
  Money SelfBillTaxAmt;
};

// The names are those of the columns.
struct SelfBill {
  std::string SID;
  std::string SuppTin, SuppIDNo, SuppIDType, SuppMiscCode, SuppBankAcc, SuppSST;
  std::string SuppName, SuppTel, SuppEmail;
  std::string SuppAdd, SuppPostCode, SuppCity, SuppState, SuppCountry;
  std::string SelfBillTaxCat;
  Money SelfBillAmt;  // the sums of the items as the screen shows them
  Money SelfBillTaxAmt;
  std::vector<SelfBillItem> items;
};

// `company` is the block that invoices name the company with, `"supplier": {...},`. Nothing that
// was typed is escaped: that is wanted.
//
// What an item comes to stands as its price a unit too, whatever its quantity.
std::string SelfBillBody(const SelfBill& bill, std::string_view company);

}  // namespace kaunter
