// What the movements of the cash book do to a company's two running balances: CashInHand and
// CashInBank of CompMast, in ringgit.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/money.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct CashPair {
  Money cash;
  Money bank;
  bool operator==(const CashPair&) const = default;
  CashPair& operator+=(const CashPair& other);
};

// The movements, and whether they add to (1), take from (-1) or leave (0) each balance.
struct CashEffect {
  std::string_view TranType;
  int cash = 0;
  int bank = 0;
};
const std::array<CashEffect, 6>& CashEffects();

// What a movement adds to the pair. A negative amount moves it the other way. Nothing for a type
// that is none of the six.
std::optional<CashPair> EffectOf(std::string_view tran_type, Money amount);

// The pair as it is stored; 0 and 0 for a company without a row.
CashPair ReadBalances(Connection& main, std::string_view comp_code);
// Moves the company's pair and gives it as it is then. Inside the caller's transaction no other
// desktop comes between. Throws std::invalid_argument for a type that is none, SqlError for a
// company that is gone.
CashPair ApplyToBalances(Connection& main, std::string_view comp_code, std::string_view tran_type,
                         Money amount);
// Holds the company's balances until the open transaction ends: whoever else moves them waits.
void LockBalances(Connection& main, std::string_view comp_code);
void StoreBalances(Connection& main, std::string_view comp_code, const CashPair& pair);

// The pair as two literals with a comma between.
std::string PairLiterals(const CashPair& pair);

}  // namespace kaunter
