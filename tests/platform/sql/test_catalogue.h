// A catalogue for the translator's tests: tables as CREATE TABLE and ALTER TABLE make them, without
// a database.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/text.h"
#include "platform/sql/translator/parser.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

class TestCatalogue : public Catalogue {
 public:
  // Takes the tables and columns of a batch; its other statements change nothing.
  void Apply(std::string_view batch) {
    std::vector<std::string> statements;
    SplitBatch(batch, &statements);
    for (const std::string& statement : statements) ApplyOne(statement);
  }

  const CatalogueTable* FindTable(std::string_view name) const override {
    for (const auto& [known, table] : tables_) {
      if (SameName(known, name)) return &table;
    }
    return nullptr;
  }

 private:
  static bool HasColumn(const CatalogueTable& table, std::string_view name) {
    return std::any_of(table.columns.begin(), table.columns.end(),
                       [&](const CatalogueColumn& column) { return SameName(column.name, name); });
  }

  void ApplyOne(const std::string& statement) {
    Parser parser(statement);
    const Statement tree = parser.Parse();
    if (tree.kind != StatementKind::kCreateTable && tree.kind != StatementKind::kAlterAdd) return;
    const CatalogueTable* known = FindTable(tree.table);
    // The first of that name stays: other connections have tables of the same name.
    if (known != nullptr && tree.kind == StatementKind::kCreateTable) return;
    CatalogueTable& table = tables_[known != nullptr ? known->name : std::string(tree.table)];
    if (table.name.empty()) table.name = tree.table;
    for (const ColumnDefinition& definition : tree.definitions) {
      if (HasColumn(table, definition.name)) continue;
      CatalogueColumn column;
      column.name = definition.name;
      column.type = definition.type;
      column.identity = definition.identity;
      column.computed = definition.computed != nullptr;
      if (column.computed) column.type = {TypeKind::kText, 50, 0, 0};
      table.columns.push_back(column);
      if (definition.primary_key) table.primary_key.emplace_back(definition.name);
    }
    for (const KeyConstraint& key : tree.keys) {
      if (!key.primary) continue;
      for (const std::string_view name : key.columns) table.primary_key.emplace_back(name);
    }
  }

  std::map<std::string, CatalogueTable> tables_;
};

}  // namespace kaunter::sql
