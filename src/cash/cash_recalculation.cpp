#include "cash/cash_recalculation.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <utility>

#include "core/amounts.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

// Rows of one statement: enough that the statement's own cost does not count, few enough that a
// stop is heard at once.
constexpr std::size_t kRowsAtOnce = 200;

Money AmountOf(const Value& value) {
  const Money* money = value.AsMoney();
  return money != nullptr ? *money : Sen(value);
}

void WriteRows(Connection& main, std::span<const CashDifference* const> rows) {
  std::string sql = "UPDATE CashBook SET CashBal=r.Cash,BankBal=r.Bank FROM CashBook INNER JOIN (";
  for (const CashDifference* row : rows) {
    if (row != rows.front()) sql += " UNION ALL ";
    fmt::format_to(std::back_inserter(sql), "SELECT {} AS DocID,{} AS Cash,{} AS Bank", row->DocID,
                   Show2dp(row->should_be.cash), Show2dp(row->should_be.bank));
  }
  main.Execute(sql + ") AS r ON CashBook.DocID=r.DocID");
}

}  // namespace

CashOpening ReadOpening(Connection& main, std::string_view comp_code) {
  CashOpening opening;
  const Recordset row =
      main.Query("SELECT CBOpenDate,CBOpenCash,CBOpenBank FROM CompMast WHERE CompCode=" +
                 QuoteStr(comp_code));
  if (row.Eof()) return opening;
  if (const DateTime* date = row.Field("CBOpenDate").AsDate()) opening.date = date->DateOnly();
  opening.pair = {Sen(row, "CBOpenCash"), Sen(row, "CBOpenBank")};
  return opening;
}

void StoreOpening(Connection& main, std::string_view comp_code, const CashOpening& opening) {
  main.Execute(
      fmt::format("UPDATE CompMast SET CBOpenDate={},CBOpenCash={},CBOpenBank={} WHERE CompCode={}",
                  opening.date ? SqlDate(*opening.date) : "null", opening.pair.cash.ToText(),
                  opening.pair.bank.ToText(), QuoteStr(comp_code)));
}

CashBookReport CompareCashBook(Connection& main, std::string_view comp_code,
                               const CashOpening& opening) {
  CashBookReport report;
  report.stored = ReadBalances(main, comp_code);
  report.should_be = opening.pair;
  bool in_a_row = false;
  const Recordset rows = main.Query(
      "SELECT DocID,TranDate,TranType,TranDesc,TranAmt,CashBal,BankBal FROM CashBook WHERE "
      "CompCode=" +
      QuoteStr(comp_code) + " ORDER BY TranDate,DocID");
  for (const std::vector<Value>& row : rows.rows()) {
    const CashPair stored{AmountOf(row[5]), AmountOf(row[6])};
    in_a_row = in_a_row || stored == report.stored;
    const DateTime* date = row[1].AsDate();
    if (opening.date && (date == nullptr || date->DateOnly() < *opening.date)) {
      ++report.before;
      continue;
    }
    ++report.walked;
    if (date == nullptr) ++report.undated;
    const Money amount = AmountOf(row[4]);
    const std::string* type = row[2].AsText();
    if (const auto moved = EffectOf(type == nullptr ? "" : *type, amount)) {
      report.should_be += *moved;
    } else {
      ++report.unknown_type;
    }
    if (stored == report.should_be) continue;
    CashDifference& difference = report.differences.emplace_back();
    difference.DocID = *row[0].AsInteger();
    if (date != nullptr) difference.TranDate = *date;
    difference.TranType = NullToEmpty(row[2]);
    difference.TranDesc = NullToEmpty(row[3]);
    difference.TranAmt = amount;
    difference.stored = stored;
    difference.should_be = report.should_be;
  }
  report.without_row = !in_a_row && report.stored != report.should_be;
  return report;
}

CashBookReport RecalculateCashBook(Connection& main, std::string_view comp_code,
                                   const CashOpening& opening, const CashProgress& progress) {
  Transaction transaction(main);
  // Who moves the balances now waits, and moves what is true.
  LockBalances(main, comp_code);
  CashBookReport report = CompareCashBook(main, comp_code, opening);
  // As they lie in the table: by date, each page of it would be fetched and written many times.
  std::vector<const CashDifference*> by_number;
  for (const CashDifference& one : report.differences) by_number.push_back(&one);
  std::ranges::sort(by_number, {}, &CashDifference::DocID);
  const std::span<const CashDifference* const> all = by_number;
  for (std::size_t done = 0; done < all.size(); done += kRowsAtOnce) {
    if (!progress(static_cast<std::int64_t>(done), static_cast<std::int64_t>(all.size()))) {
      report.complete = false;
      return report;
    }
    WriteRows(main, all.subspan(done, std::min(kRowsAtOnce, all.size() - done)));
  }
  StoreOpening(main, comp_code, opening);
  StoreBalances(main, comp_code, report.should_be);
  transaction.Commit();
  return report;
}

}  // namespace kaunter
