// The catalogue of an embedded database: tables and columns as they are declared in the file, read
// table by table when they are first asked for.
#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>

#include "platform/sql/sqlite/sqlite_statement.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

class SqliteCatalogue : public Catalogue {
 public:
  SqliteCatalogue(sqlite3* db, std::string path) : db_(db), path_(std::move(path)) {}

  const CatalogueTable* FindTable(std::string_view name) const override;
  // Forgets everything: the schema has changed.
  void Clear() { tables_.clear(); }

 private:
  std::unique_ptr<CatalogueTable> Load(const std::string& name) const;

  sqlite3* db_;
  std::string path_;
  // Kept prepared: a start of the program asks for some forty tables.
  mutable SqliteStatement find_;
  mutable SqliteStatement columns_;
  mutable std::map<std::string, std::unique_ptr<CatalogueTable>> tables_;  // names in lower case
};

}  // namespace kaunter::sql
