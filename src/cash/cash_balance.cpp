#include "cash/cash_balance.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/amounts.h"
#include "core/record.h"
#include "core/values.h"

namespace kaunter {

CashPair& CashPair::operator+=(const CashPair& other) {
  cash += other.cash;
  bank += other.bank;
  return *this;
}

const std::array<CashEffect, 6>& CashEffects() {
  static constexpr std::array<CashEffect, 6> kEffects = {{{"Cash In", 1, 0},
                                                          {"Cash Out", -1, 0},
                                                          {"Bank In", 0, 1},
                                                          {"Bank Out", 0, -1},
                                                          {"Cash to Bank", -1, 1},
                                                          {"Bank to Cash", 1, -1}}};
  return kEffects;
}

std::optional<CashPair> EffectOf(std::string_view tran_type, Money amount) {
  for (const CashEffect& effect : CashEffects()) {
    if (SameText(effect.TranType, tran_type)) {
      return CashPair{effect.cash * amount, effect.bank * amount};
    }
  }
  return std::nullopt;
}

CashPair ReadBalances(Connection& main, std::string_view comp_code) {
  const Recordset row = main.Query("SELECT CashInHand,CashInBank FROM CompMast WHERE CompCode=" +
                                   QuoteStr(comp_code));
  if (row.Eof()) return {};
  return {Sen(row, "CashInHand"), Sen(row, "CashInBank")};
}

CashPair ApplyToBalances(Connection& main, std::string_view comp_code, std::string_view tran_type,
                         Money amount) {
  const auto moved = EffectOf(tran_type, amount);
  if (!moved) {
    throw std::invalid_argument(fmt::format("\"{}\" is no type of a movement", tran_type));
  }
  // The server adds: two desktops at once move the pair by both amounts.
  ExecuteOnRow(main,
               fmt::format("UPDATE CompMast SET CashInHand=isnull(CashInHand,0)+{},"
                           "CashInBank=isnull(CashInBank,0)+{} WHERE CompCode={}",
                           moved->cash.ToText(), moved->bank.ToText(), QuoteStr(comp_code)),
               comp_code);
  return ReadBalances(main, comp_code);
}

void LockBalances(Connection& main, std::string_view comp_code) {
  // Changes nothing: a row that is written is the writer's until his transaction ends.
  main.Execute("UPDATE CompMast SET CashInHand=CashInHand WHERE CompCode=" + QuoteStr(comp_code));
}

void StoreBalances(Connection& main, std::string_view comp_code, const CashPair& pair) {
  main.Execute(fmt::format("UPDATE CompMast SET CashInHand={},CashInBank={} WHERE CompCode={}",
                           pair.cash.ToText(), pair.bank.ToText(), QuoteStr(comp_code)));
}

std::string PairLiterals(const CashPair& pair) {
  return pair.cash.ToText() + "," + pair.bank.ToText();
}

}  // namespace kaunter
