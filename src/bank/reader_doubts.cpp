#include "bank/reader_doubts.h"

#include <fmt/format.h>

#include "bank/taken_lines.h"
#include "core/amounts.h"
#include "core/values.h"

namespace kaunter {
namespace {

void AddSameLines(Connection& main, const ReaderRow& row, std::vector<ReaderDoubt>& doubts) {
  for (const TakenLine& other : SameLinesElsewhere(main, row.fingerprint, row.file)) {
    doubts.push_back({"line " + other.RefNo,
                      {fmt::format("The same line was taken as {}", other.RefNo),
                       fmt::format("同一行已以 {} 收取", other.RefNo)}});
  }
}

// A planned payment does not know what came in over the counter.
void AddLittleOpen(Connection& main, const ReaderRow& row, std::vector<ReaderDoubt>& doubts) {
  const Recordset instalment = main.Query(
      fmt::format("SELECT PayableAmt-Payment as [Open] FROM SchMast WHERE LoanID={} AND SchID={}",
                  QuoteStr(row.LoanID), row.row));
  if (instalment.Eof() || Sen(instalment, "Open") >= row.amount) return;
  const std::string open = ShowMoney(Sen(instalment, "Open"));
  doubts.push_back({"open " + open,
                    {fmt::format("Of instalment {} only {} is open", row.row, open),
                     fmt::format("第 {} 期只欠 {}", row.row, open)}});
}

// A payment that another line of its kind has made is other money: that line says so.
void AddSamePayments(Connection& main, const ReaderRow& row, const DateTime& day,
                     std::vector<ReaderDoubt>& doubts) {
  const char* const of_its_kind =
      row.source == ReaderSource::file
          ? "SELECT r.RefNo FROM PaymentReader as r WHERE r.PayID=p.PayID AND r.LineHash<>''"
          : "SELECT l.LoanID FROM PaymentList as l WHERE l.LoanID=p.LoanID AND l.PayID=p.PayID";
  for (Recordset paid = main.Query(fmt::format("SELECT p.PayID FROM PaymentMast as p WHERE "
                                               "p.LoanID={} AND p.PayDate={} AND p.PayAmt={} "
                                               "AND NOT EXISTS ({}) ORDER BY p.PayID",
                                               QuoteStr(row.LoanID), SqlDate(day),
                                               row.amount.ToText(), of_its_kind));
       !paid.Eof(); paid.MoveNext()) {
    const std::string id = paid.Field(0).ToText();
    doubts.push_back({"payment " + id,
                      {fmt::format("Payment {} has the same day and amount", id),
                       fmt::format("付款 {} 的日期和金额相同", id)}});
  }
}

}  // namespace

std::vector<ReaderDoubt> DoubtsOf(Connection& main, const ReaderRow& row, const DateTime& day) {
  std::vector<ReaderDoubt> doubts;
  // An open instalment is its own proof.
  if (row.source == ReaderSource::due) return doubts;
  AddSameLines(main, row, doubts);
  if (row.source == ReaderSource::planned) AddLittleOpen(main, row, doubts);
  AddSamePayments(main, row, day, doubts);
  return doubts;
}

}  // namespace kaunter
