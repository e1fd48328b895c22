// The e-invoicing reference tables and service settings, copied from the central database.
#pragma once

namespace kaunter {

class Session;
class Desk;

// What a refresh copies.
struct EInvoiceTables {
  bool settings = true;
  bool eState = true;
  bool eCountry = true;
  bool eMiscCode = true;
  bool eClass = true;
  bool eTax = true;
};

// Reads everything from the central database (data source "AMLA" of this PC) and only then replaces
// the local rows, in one transaction; a table that is not there yet is left out. True when the
// local rows are those of the central database.
//
// Without that data source on this PC it writes one log line and gives false: an office that sends
// no e-invoices needs none. With it, a failure is told and logged, and the local rows stay as they
// were.
bool RefreshEInvoiceCodeTables(Session& session, Desk& desk, const EInvoiceTables& tables);

}  // namespace kaunter
