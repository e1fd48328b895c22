// A stored purchase of gold with its items, as it is read and as it was when it was read: a
// purchase that another desktop has changed, sold from or deleted meanwhile is told from one that
// still stands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

struct GoldPurchase {
  Recordset header;  // no row: there is no such purchase
  Recordset items;
  bool Exists() const { return header.RowCount() > 0; }
  bool operator==(const GoldPurchase& other) const;
};

GoldPurchase ReadGoldPurchase(Connection& main, std::string_view id);

// Inside a transaction: nobody else writes to the purchase or sells from it until that has ended.
// False when it is gone.
bool HoldGoldPurchase(Connection& main, std::string_view id);

// "2 Bracelet 916, 15-02-2024, 2,700.00": the items whose sale is stored.
std::vector<std::string> StoredSales(Recordset items);

// The next number of the company that no purchase has.
std::string NextGoldNumber(Connection& main, std::string_view company);

}  // namespace kaunter
