// A document on its way to the service, as the columns of the submission screen hold it. Their
// numbers are fixed: bodies and records are told by them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/money.h"

namespace kaunter {

namespace einvoice_column {
enum : int {
  kNo,
  kID,
  kSeqNo,
  kDate,
  kCustID,
  kCustName,
  kCompCode,
  kLoanID,
  kSchID,
  kInvType,
  kTaxCode,
  kDescription,
  kAmount,
  kQty,
  kProceed,
  kTin,
  kCustTypeID,
  kCustType,
  kTaxName,  // the name as the authority knows it
  kPhone,
  kEmail,
  kAddress,
  kPostcode,
  kCity,
  kState,
  kCountry,
  kStatus,
  kUuid,
  kOldID,
  kOldUuid,
  kMsg,
  kColumns,
};
}  // namespace einvoice_column

using InvoiceRow = std::vector<std::string>;  // kColumns texts, as shown

Money AmountOf(const InvoiceRow& row);
// A credit note; 0 is an invoice.
bool IsCreditNote(const InvoiceRow& row);
bool NamesCustomer(const InvoiceRow& row);

// What is sent. `supplier` is the company's block. Nothing is escaped: a quote in a name goes out
// as it stands, and the service refuses the document.
std::string SubmitBody(const InvoiceRow& row, std::string_view supplier);
inline constexpr std::string_view kCancelBody = R"({"reason": "Invoice Cancel"})";
// The setting that holds the address for this document.
std::string_view SubmitAddressKey(const InvoiceRow& row);

}  // namespace kaunter
