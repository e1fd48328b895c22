#include "platform/sql/sqlite/sqlite_catalogue.h"

#include "platform/sql/text.h"

namespace kaunter::sql {

const CatalogueTable* SqliteCatalogue::FindTable(std::string_view name) const {
  const std::string key = LowerAscii(name);
  const auto found = tables_.find(key);
  if (found != tables_.end()) return found->second.get();
  if (find_ == nullptr) {
    find_ = Prepare(
        db_, "SELECT name FROM sqlite_schema WHERE type IN ('table','view') AND lower(name) = ?1",
        path_, true);
  }
  const ResetAtEnd reset(find_.get());
  sqlite3_bind_text(find_.get(), 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
  // A table that is missing is asked for again: another desktop may make it at any time.
  if (sqlite3_step(find_.get()) != SQLITE_ROW) return nullptr;
  return tables_.emplace(key, Load(ColumnText(find_.get(), 0))).first->second.get();
}

std::unique_ptr<CatalogueTable> SqliteCatalogue::Load(const std::string& name) const {
  auto table = std::make_unique<CatalogueTable>();
  table->name = name;
  if (columns_ == nullptr) {
    columns_ = Prepare(
        db_, "SELECT name, type, \"notnull\", dflt_value, pk, hidden FROM pragma_table_xinfo(?1)",
        path_, true);
  }
  const ResetAtEnd reset(columns_.get());
  sqlite3_bind_text(columns_.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
  std::map<int, std::string> key;
  while (sqlite3_step(columns_.get()) == SQLITE_ROW) {
    CatalogueColumn column;
    column.name = ColumnText(columns_.get(), 0);
    column.type = ParseType(ColumnText(columns_.get(), 1));
    const int key_position = sqlite3_column_int(columns_.get(), 4);
    if (key_position > 0) key[key_position] = column.name;
    column.nullable = sqlite3_column_int(columns_.get(), 2) == 0 && key_position == 0;
    column.has_default = sqlite3_column_type(columns_.get(), 3) != SQLITE_NULL;
    const int hidden = sqlite3_column_int(columns_.get(), 5);
    column.computed = hidden == 2 || hidden == 3;
    int identity = 0;
    if (sqlite3_table_column_metadata(db_, nullptr, name.c_str(), column.name.c_str(), nullptr,
                                      nullptr, nullptr, nullptr, &identity) == SQLITE_OK) {
      column.identity = identity != 0;
    }
    table->columns.push_back(std::move(column));
  }
  for (const auto& [position, column] : key) table->primary_key.push_back(column);
  return table;
}

}  // namespace kaunter::sql
