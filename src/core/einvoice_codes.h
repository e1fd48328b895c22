// The e-invoicing reference tables and service settings, copied from the central database.
#pragma once

#include <string_view>

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
  bool whole() const { return settings && eState && eCountry && eMiscCode && eClass && eTax; }
};

// The tables of codes, with the column of the code and that of its name.
struct EInvoiceCodes {
  bool EInvoiceTables::*wanted;
  std::string_view table, code, name;
};
inline constexpr EInvoiceCodes kCodeTables[] = {
    {&EInvoiceTables::eState, "eState", "StateCode", "StateName"},
    {&EInvoiceTables::eCountry, "eCountry", "CountryCode", "CountryName"},
    {&EInvoiceTables::eMiscCode, "eMiscCode", "MiscCode", "MiscName"},
    {&EInvoiceTables::eClass, "eClass", "ClassCode", "ClassName"},
    {&EInvoiceTables::eTax, "eTax", "TaxCode", "TaxName"}};

// Reads everything from the central database (data source "AMLA" of this PC) and only then replaces
// the local rows, in one transaction; a table that is not there yet is left out. True when the
// local rows are those of the central database.
//
// Without that data source on this PC it writes one log line and gives false: an office that sends
// no e-invoices needs none. With it, a failure is told and logged, and the local rows stay as they
// were.
bool RefreshEInvoiceCodeTables(Session& session, Desk& desk, const EInvoiceTables& tables);

// A patch marks that a refresh is due behind it, and the refresh takes the mark away with its rows:
// a start that was cut between the two, or did not reach the central database, is made good by the
// next one that names it.
inline constexpr std::string_view kMarkRefreshDue =
    "INSERT INTO Systemast (Param,Value) SELECT 'EInvCodesDue','1' WHERE NOT EXISTS (SELECT Param "
    "FROM Systemast WHERE Param='EInvCodesDue')";
void RefreshIfDue(Session& session, Desk& desk);

}  // namespace kaunter
