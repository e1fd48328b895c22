// The file that asks a bank to debit the accounts of customers: a header, a line for each debit, a
// footer with counts and sums, in fields of fixed width. docs/bank-files.md tells its fields.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/date_time.h"
#include "platform/money.h"
#include "platform/sql/connection.h"
#include "screen/caption.h"

namespace kaunter {

// The identifiers that a bank gives an office, in the order of their keys "DD-00" to "DD-05".
inline constexpr std::size_t kDebitIdentifiers = 6;
using DebitSetup = std::array<std::string, kDebitIdentifiers>;
enum DebitIdentifier : std::size_t { kHeaderID, kDetailID, kFooterID, kSender, kReceiver, kPayee };

std::string DebitSetupKey(std::size_t index);
// Longest text that the place of an identifier in the file takes; none where it has no width.
std::optional<std::size_t> DebitIdentifierWidth(std::size_t index);

// What is stored of them, [Value] in the order of their keys. Throws SqlError.
Recordset StoredDebitSetup(Connection& main);
// Nothing when none is stored, or not all six. Throws SqlError.
std::optional<DebitSetup> ReadDebitSetup(Connection& main);

// As they stand in the list; Amt is its shown text ("1,234.50").
struct Debit {
  std::string LoanID;
  std::string CustName;
  std::string BankAccNo;
  std::string BankTransferName;
  std::string Amt;
};

// The number in the last four signs of an account number; nothing where they are no number.
std::optional<int> AccountTail(const std::string& account);

// "<payee><receiver><ddmmyy>01.DIF"
std::string DebitFileName(const DebitSetup& setup, const DateTime& now);

// The bytes of the file, or which line and field cannot be written and why. Nothing is cut but a
// customer's name. Lines end as the bank has had them so far, with a carriage return and a line
// feed, whatever machine writes the file.
std::variant<std::string, Caption> DebitFile(const DebitSetup& setup,
                                             const std::vector<Debit>& debits, const DateTime& now,
                                             const DateTime& debit_day);

}  // namespace kaunter
