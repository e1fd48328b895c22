#include "upkeep/office_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "platform/sql/text.h"

namespace kaunter {
namespace {

using sql::WholeColumn;
using sql::WholeIndex;
using sql::WholeRow;
using sql::WholeTable;

constexpr std::size_t kRowsAtOnce = 500;
constexpr std::size_t kMostDifferences = 20;
constexpr std::size_t kLongestShown = 200;

// --- what is declared

std::string Lower(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += sql::LowerAscii(name) + ",";
  return text;
}

// An index counts by what it orders: the other engine may have cut its name.
std::multiset<std::string> Orders(const WholeTable& table) {
  std::multiset<std::string> orders;
  for (const WholeIndex& index : table.indexes) {
    std::string order = index.unique ? "unique " : "";
    for (const WholeIndex::Part& part : index.parts) {
      order += sql::LowerAscii(part.column) + (part.descending ? " desc," : ",");
    }
    orders.insert(order);
  }
  for (const auto& key : table.unique_keys) orders.insert("key " + Lower(key));
  return orders;
}

bool SameType(const sql::Type& a, const sql::Type& b) {
  return a.kind == b.kind && a.width == b.width && a.scale == b.scale &&
         (a.kind != sql::TypeKind::kInteger || a.precision == b.precision);
}

std::string DeclaredDifference(const WholeTable& a, const WholeTable& b) {
  if (a.columns.size() != b.columns.size()) return "other columns";
  for (std::size_t i = 0; i < a.columns.size(); ++i) {
    const WholeColumn& x = a.columns[i];
    const WholeColumn& y = b.columns[i];
    const bool same =
        x.name == y.name && x.identity == y.identity && x.computed == y.computed &&
        (!x.computed.empty() || (x.nullable == y.nullable && x.default_value == y.default_value &&
                                 SameType(x.type, y.type)));
    if (!same) return fmt::format("the column {} is another", x.name);
  }
  if (Lower(a.primary_key) != Lower(b.primary_key)) return "another primary key";
  if (Orders(a) != Orders(b)) return "other indexes";
  if (a.last_identity != b.last_identity) return "another number to go on from";
  return {};
}

// --- rows

std::string Shown(const std::optional<std::string>& field) {
  if (!field) return "NULL";
  const std::string text = field->substr(0, kLongestShown);
  return "'" + text + (text.size() < field->size() ? "...'" : "'");
}

std::string FieldDifference(const WholeTable& table, const WholeRow& a, const WholeRow& b) {
  const auto stored = table.Stored();
  std::string told = sql::RowName(table, a) + ":";
  for (std::size_t i = 0; i < stored.size(); ++i) {
    if (a[i] != b[i])
      told += fmt::format(" {} {} is {};", stored[i]->name, Shown(a[i]), Shown(b[i]));
  }
  told.pop_back();
  return told;
}

// A table that is read in the order of its keys.
class Side {
 public:
  Side(sql::WholeDatabase& database, const WholeTable& table, const sql::KeyOrder& order)
      : table_(table), order_(order), rows_(database.Rows(table, /*in_order=*/true)) {
    Next();
  }
  bool at_end() const { return at_end_; }
  const WholeRow& row() const { return row_; }
  void Next() {
    std::swap(row_, before_);
    at_end_ = !rows_->Next(&row_);
    // An engine whose order is not the agreed one would let a row that is missing pass for two
    // that differ; and a key twice is none.
    if (!at_end_ && read_++ > 0 && order_.Compare(before_, row_) > 0) {
      throw std::logic_error(fmt::format("{} comes behind its place", sql::RowName(table_, row_)));
    }
  }

 private:
  const WholeTable& table_;
  const sql::KeyOrder& order_;
  std::unique_ptr<sql::RowReader> rows_;
  WholeRow row_;
  WholeRow before_;
  std::int64_t read_ = 0;
  bool at_end_ = false;
};

void CompareRows(sql::WholeDatabase& from, sql::WholeDatabase& to, const WholeTable& from_table,
                 const WholeTable& to_table, const CopyGoOn& go_on,
                 std::vector<std::string>* differences) {
  const sql::KeyOrder order(from_table);
  Side a(from, from_table, order);
  Side b(to, to_table, order);
  std::int64_t asked = 0;
  std::int64_t done = 0;
  while ((!a.at_end() || !b.at_end()) && differences->size() < kMostDifferences) {
    const int side = a.at_end() ? 1 : b.at_end() ? -1 : order.Compare(a.row(), b.row());
    if (side < 0) {
      differences->push_back(sql::RowName(from_table, a.row()) + ": is missing in the copy");
      a.Next();
    } else if (side > 0) {
      differences->push_back(sql::RowName(to_table, b.row()) + ": is in the copy alone");
      b.Next();
    } else {
      if (a.row() != b.row()) {
        differences->push_back(FieldDifference(from_table, a.row(), b.row()));
      }
      a.Next();
      b.Next();
    }
    if (++done - asked == static_cast<std::int64_t>(kRowsAtOnce)) {
      go_on(CopyStep::compare, from_table.name, done - asked);
      asked = done;
    }
  }
  go_on(CopyStep::compare, from_table.name, done - asked);
}

}  // namespace

std::int64_t CopyTables(sql::WholeDatabase& from, sql::WholeDatabase& to,
                        const std::vector<WholeTable>& tables, const CopyGoOn& go_on) {
  std::int64_t copied = 0;
  std::vector<WholeRow> rows(kRowsAtOnce);
  for (const WholeTable& table : tables) {
    go_on(CopyStep::copy, table.name, 0);
    to.Create(table);
    // In the order of the keys: where the target keeps its keys beside the rows, both grow at
    // their ends.
    const auto reader = from.Rows(table, /*in_order=*/!table.primary_key.empty());
    for (std::size_t read = kRowsAtOnce; read == kRowsAtOnce;) {
      read = 0;
      while (read < kRowsAtOnce && reader->Next(&rows[read])) ++read;
      if (read == 0) break;
      to.Fill(table, std::span(rows).first(read));
      copied += static_cast<std::int64_t>(read);
      go_on(CopyStep::copy, table.name, static_cast<std::int64_t>(read));
    }
    to.Complete(table);
  }
  return copied;
}

std::vector<std::string> CompareTables(sql::WholeDatabase& from, sql::WholeDatabase& to,
                                       const std::vector<WholeTable>& from_tables,
                                       const std::vector<WholeTable>& to_tables,
                                       const CopyGoOn& go_on) {
  std::vector<std::string> differences;
  const auto find = [](const std::vector<WholeTable>& tables, const WholeTable& like) {
    return std::find_if(tables.begin(), tables.end(), [&](const WholeTable& table) {
      return sql::SameName(table.name, like.name);
    });
  };
  for (const WholeTable& table : to_tables) {
    if (find(from_tables, table) == from_tables.end()) {
      differences.push_back(table.name + ": is in the copy alone");
    }
  }
  for (const WholeTable& table : from_tables) {
    if (differences.size() >= kMostDifferences) break;
    const auto other = find(to_tables, table);
    if (other == to_tables.end()) {
      differences.push_back(table.name + ": is missing in the copy");
      continue;
    }
    go_on(CopyStep::compare, table.name, 0);
    const std::string declared = DeclaredDifference(table, *other);
    if (!declared.empty()) differences.push_back(table.name + ": " + declared);
    if (table.Stored().size() != other->Stored().size()) continue;
    CompareRows(from, to, table, *other, go_on, &differences);
  }
  return differences;
}

}  // namespace kaunter
