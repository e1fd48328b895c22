#include "cash/gold_purchase.h"

#include <fmt/format.h>

#include "core/amounts.h"
#include "core/sequences.h"
#include "core/values.h"

namespace kaunter {

// Whoever saves a list of sales stands in each of its lines, those that nothing was typed in too:
// that alone has changed nothing.
bool GoldPurchase::operator==(const GoldPurchase& other) const {
  if (header.rows() != other.header.rows() || items.RowCount() != other.items.RowCount()) {
    return false;
  }
  for (std::size_t column = 0; column < items.columns().size(); ++column) {
    if (SameText(items.columns()[column].name, "SoldUserID")) continue;
    for (std::size_t row = 0; row < items.RowCount(); ++row) {
      if (items.rows()[row][column] != other.items.rows()[row][column]) return false;
    }
  }
  return true;
}

GoldPurchase ReadGoldPurchase(Connection& main, std::string_view id) {
  const std::string key = QuoteStr(id);
  GoldPurchase purchase;
  purchase.header = main.Query("SELECT * FROM GoldTransmast WHERE LoanID=" + key);
  purchase.items =
      main.Query(fmt::format("SELECT * FROM LoanCollateral WHERE LoanID={} ORDER BY SeqNo", key));
  return purchase;
}

bool HoldGoldPurchase(Connection& main, std::string_view id) {
  return main.Execute("UPDATE GoldTransMast SET UserID=UserID WHERE LoanID=" + QuoteStr(id)) > 0;
}

std::vector<std::string> StoredSales(Recordset items) {
  std::vector<std::string> sales;
  for (; !items.Eof(); items.MoveNext()) {
    const std::string date = ShowDate(items.Field("SoldDate"));
    const Money amount = Sen(items, "SoldAmt");
    const std::string remarks = NullToEmpty(items.Field("SoldRemarks"));
    if (date.empty() && amount.IsZero() && remarks.empty()) continue;
    std::string sale = fmt::format("{} {}", NullToEmpty(items.Field("SeqNo")),
                                   NullToEmpty(items.Field("GoldDesc")));
    for (const std::string& part : {date, ShowMoney(amount), remarks}) {
      if (!part.empty()) sale += ", " + part;
    }
    sales.push_back(std::move(sale));
  }
  return sales;
}

std::string NextGoldNumber(Connection& main, std::string_view company) {
  return NextSeries(main, "B", company, false, [&main](const std::string& number) {
    return !main.Query("SELECT LoanID FROM GoldTransMast WHERE LoanID=" + QuoteStr(number)).Eof();
  });
}

}  // namespace kaunter
