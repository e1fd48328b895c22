// The rows of a random loan (random_loans.h), written as a schedule and its payments are stored.
#pragma once

#include <string>
#include <vector>

#include "core/values.h"
#include "platform/sql/connection.h"
#include "tests/loans/random_loans.h"

namespace kaunter {

// In statements of 8, 4, 2 and 1 rows, which are always the same ones.
inline void StoreRows(Connection& main, const char* table, const std::string& id,
                      const std::vector<model::Row>& rows) {
  std::size_t at_once = 8;
  for (std::size_t first = 0; first < rows.size(); first += at_once) {
    while (first + at_once > rows.size()) at_once /= 2;
    std::string values;
    for (std::size_t i = first; i < first + at_once; ++i) {
      const model::Row& row = rows[i];
      values +=
          fmt::format("{}({},{},{},{},{},{})", values.empty() ? "" : ",", row.id, QuoteStr(id),
                      Text(row.due), Text(row.payable), Text(row.capital), Text(row.interest));
    }
    main.Execute(
        fmt::format("INSERT INTO {} (SchID,LoanID,DueDate,PayableAmt,CapitalAmt,InterestAmt) "
                    "VALUES {}",
                    table, values));
  }
}

inline void StorePayment(Connection& main, const std::string& id, const model::Payment& p) {
  main.Execute(fmt::format(
      "INSERT INTO PaymentMast (PayID,LoanID,PayDate,PayAmt,InstalAmt,PayExtra,IntAmt,ChargeAmt,"
      "CollectorAmt,DiscAmt,Memo5,TopAmt,TopTerm) VALUES ({},{},{},{},{},{},{},{},{},{},{},{},{})",
      QuoteStr(p.id), QuoteStr(id), Text(p.date), Text(p.instalment + p.extra), Text(p.instalment),
      Text(p.extra), Text(p.late), Text(p.charge), Text(p.collector), Text(p.discount),
      Text(p.calculated), Text(p.top), p.top_term));
}

}  // namespace kaunter
