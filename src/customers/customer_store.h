// What the customer screen asks of the database beyond its own row: look-ups, duplicates,
// neighbours, the delete with everything that hangs on a customer, the import from the linked
// database.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

class Session;

// The customer that a typed text means: by the old code of a loan of the company, else by old code
// together with an identity number. "" when there is none.
std::string FindCustomerByText(Connection& main, std::string_view text, std::string_view company);

struct OtherHolder {
  std::string cust_id;
  std::string name;
  std::string company;
};
// Another customer of the company with the same value in CustNIC, CustOIC or CustOthIC (`column`).
std::optional<OtherHolder> FindOtherHolder(Connection& main, std::string_view column,
                                           std::string_view value, std::string_view cust_id,
                                           std::string_view company);

// What a delete of the customer takes along.
struct CustomerHistory {
  int loans = 0;
  Money balance;
  int payments = 0;
};
CustomerHistory HistoryOf(Connection& main, std::string_view cust_id);

// Deletes the customer with all loans, schedules, payments, charges and drawdowns, in one
// transaction. Balances are not tested: who may delete a customer may delete the history. Throws
// SqlError; then nothing is gone.
void DeleteCustomer(Connection& main, std::string_view cust_id);

// The fields that an import fills, by column name. Throws SqlError.
const std::vector<std::string>& ImportedColumns();
std::map<std::string, std::string> ReadLinkedCustomer(Connection& linked, std::string_view cust_id);

}  // namespace kaunter
