// The accounting link: documents and persons handed on to the accounting package, through the
// tables of a bridge program in the database AED. Which account takes which kind of money stands
// in LinkAccMast.
//
// Each operation takes away an earlier row of its key and writes the new one, so that saving a
// record again mends whatever the bridge lacks. An operation never throws: a failure is logged,
// told as "an error occur on linkage to accounting system", and gives false; the business record
// stands all the same. While the link is off nothing is sent and the answer is true.
//
// Dates are texts as boxes show them (dd-mm-yyyy). A description longer than 50 characters is cut.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "links/bridge_tables.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;
class Desk;
class Screen;

// The link is on for this PC and this session.
bool LinkIsOn(const Session& session);
// No account of the kinds is blank: LinkAccSetupDone(main, {"ARINV", "ARCN"}). Throws SqlError.
bool LinkAccSetupDone(Connection& main, std::initializer_list<std::string_view> link_ids);
// While the link is on no account of these kinds may be blank: the person is asked to set them up,
// until they are or he says no. Throws SqlError.
bool RequireLinkAccounts(Session& session, const Screen& screen,
                         std::initializer_list<std::string_view> link_ids);
// The account of a kind of money ("HP", "MRTA", "PD" ...), "" when there is none. Throws SqlError.
std::string LinkAccount(Connection& main, std::string_view link_id);

bool LinkDebtor(Session& session, Desk& desk, const LinkedParty& debtor);
// Takes away the lines of the invoice too.
bool LinkARInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice);
// Adds a line; takes none away.
bool LinkARInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line);
bool LinkARCN(Session& session, Desk& desk, const LinkedCreditNote& note);
bool LinkARPayment(Session& session, Desk& desk, const LinkedPayment& payment);

bool LinkCreditor(Session& session, Desk& desk, const LinkedParty& creditor);
bool LinkAPInvoice(Session& session, Desk& desk, const LinkedInvoice& invoice);
bool LinkAPInvoiceLine(Session& session, Desk& desk, const LinkedInvoiceLine& line);
bool LinkAPCN(Session& session, Desk& desk, const LinkedCreditNote& note);
bool LinkAPPayment(Session& session, Desk& desk, const LinkedPayment& payment);

}  // namespace kaunter
