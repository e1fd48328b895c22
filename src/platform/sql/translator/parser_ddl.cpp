// The parser's CREATE, DROP and ALTER.
#include <algorithm>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/parser.h"

namespace kaunter::sql {

void Parser::ParseCreate(Statement& statement) {
  Advance();
  if (At(Keyword::kTable)) {
    ParseCreateTable(statement);
    return;
  }
  statement.unique = Accept(Keyword::kUnique);
  if (!Accept(Keyword::kNonclustered)) Accept(Keyword::kClustered);
  if (!At(Keyword::kIndex)) NotSupported("CREATE of anything but tables and indexes");
  ParseCreateIndex(statement);
}

void Parser::ParseCreateTable(Statement& statement) {
  statement.kind = StatementKind::kCreateTable;
  Advance();
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  Expect(Symbol::kOpen);
  do {
    if (At(Symbol::kClose) && !statement.definitions.empty()) break;  // a comma too many is taken
    if (!ParseTableConstraint(statement)) {
      statement.definitions.push_back(ParseColumnDefinition());
    }
  } while (Accept(Symbol::kComma) || At(Keyword::kConstraint) || At(Keyword::kPrimary));
  Expect(Symbol::kClose);
  SkipStorage();
}

void Parser::ParseCreateIndex(Statement& statement) {
  statement.kind = StatementKind::kCreateIndex;
  Advance();
  statement.index = Name();
  Expect(Keyword::kOn);
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  Expect(Symbol::kOpen);
  do {
    IndexColumn& column = statement.index_columns.emplace_back();
    column.place = token_.begin;
    column.name = Name();
    column.descending = At(Keyword::kDesc);
    if (!Accept(Keyword::kDesc)) Accept(Keyword::kAsc);
  } while (Accept(Symbol::kComma));
  Expect(Symbol::kClose);
  if (AcceptWord("include")) NameList();
  if (At(Keyword::kWhere)) NotSupported("an index with WHERE");
  SkipStorage();
}

void Parser::SkipStorage() {
  for (;;) {
    if (At(Keyword::kWith) && next_.symbol == Symbol::kOpen) {
      Advance();
      Advance();
      while (!At(Symbol::kClose)) {
        if (token_.kind == TokenKind::kEnd) SyntaxError();
        Advance();
      }
      Advance();
    } else if ((At(Keyword::kOn) &&
                (next_.kind == TokenKind::kQuotedName || next_.keyword == Keyword::kPrimary)) ||
               AtWord("textimage_on")) {
      Advance();
      Advance();
    } else {
      return;
    }
  }
}

std::string Parser::TypeName() {
  if (!AtName()) SyntaxError();
  std::string type = LowerAscii(token_.text);
  Advance();
  if (type == "character" && AcceptWord("varying")) type = "varchar";
  if (!Accept(Symbol::kOpen)) return type;
  type += '(';
  for (;;) {
    if (token_.kind != TokenKind::kInteger && !AtWord("max")) SyntaxError();
    if (token_.text.size() > 5) {
      Fail(131, "The size given to the type exceeds the maximum allowed.", statement_,
           token_.begin);
    }
    type += AtWord("max") ? "max" : std::string(token_.text);
    Advance();
    if (!Accept(Symbol::kComma)) break;
    type += ", ";
  }
  Expect(Symbol::kClose);
  return type + ')';
}

ColumnDefinition Parser::ParseColumnDefinition() {
  ColumnDefinition column;
  column.place = token_.begin;
  column.name = Name();
  if (Accept(Keyword::kAs)) {
    column.computed = ParseExpr();
    AcceptWord("persisted");
  } else {
    const std::size_t place = token_.begin;
    column.declared = TypeName();
    column.type = ParseType(column.declared);
    if (column.type.kind == TypeKind::kUnknown) {
      Fail(2715, "Column, parameter, or variable: cannot find data type " + column.declared + ".",
           statement_, place);
    }
    const bool sizable = column.declared.find("char") != std::string::npos ||
                         column.declared.find("binary") != std::string::npos;
    if (sizable && column.declared.find('(') == std::string::npos) {
      column.declared += "(1)";
      column.type = ParseType(column.declared);
    }
  }
  for (;;) {
    if (Accept(Keyword::kConstraint)) {
      Name();
    } else if (Accept(Keyword::kNot)) {
      if (AcceptWord("for")) NotSupported("NOT FOR REPLICATION");
      Expect(Keyword::kNull);
      column.not_null = true;
    } else if (Accept(Keyword::kNull)) {
      column.null_given = true;
    } else if (Accept(Keyword::kDefault)) {
      column.default_value = ParseSum();
      if (At(Keyword::kWith) && next_.keyword == Keyword::kValues) {
        Advance();
        Advance();
        column.with_values = true;
      }
    } else if (Accept(Keyword::kIdentity)) {
      column.identity = true;
      if (Accept(Symbol::kOpen)) {
        for (int i = 0; i < 2; ++i) {
          if (token_.kind != TokenKind::kInteger) SyntaxError();
          if (token_.text != "1") NotSupported("an identity that does not count 1, 2, 3 ...");
          Advance();
          if (i == 0) Expect(Symbol::kComma);
        }
        Expect(Symbol::kClose);
      }
    } else if (Accept(Keyword::kPrimary)) {
      Expect(Keyword::kKey);
      if (!Accept(Keyword::kClustered)) Accept(Keyword::kNonclustered);
      column.primary_key = true;
      SkipStorage();
    } else if (Accept(Keyword::kUnique)) {
      if (!Accept(Keyword::kClustered)) Accept(Keyword::kNonclustered);
      column.unique = true;
      SkipStorage();
    } else if (Accept(Keyword::kCollate)) {
      Name();
    } else if (At(Keyword::kCheck) || At(Keyword::kReferences) || At(Keyword::kForeign)) {
      NotSupported("CHECK and FOREIGN KEY constraints");
    } else {
      return column;
    }
  }
}

void Parser::ParseKeyColumns(KeyConstraint& key) {
  if (!Accept(Keyword::kClustered)) Accept(Keyword::kNonclustered);
  Expect(Symbol::kOpen);
  do {
    key.columns.push_back(Name());
    if (!Accept(Keyword::kDesc)) Accept(Keyword::kAsc);
  } while (Accept(Symbol::kComma));
  Expect(Symbol::kClose);
  SkipStorage();
}

bool Parser::ParseTableConstraint(Statement& statement) {
  KeyConstraint key;
  key.place = token_.begin;
  const bool named = Accept(Keyword::kConstraint);
  if (named) key.name = Name();
  if (Accept(Keyword::kPrimary)) {
    Expect(Keyword::kKey);
    key.primary = true;
  } else if (!Accept(Keyword::kUnique)) {
    if (At(Keyword::kCheck) || At(Keyword::kForeign)) {
      NotSupported("CHECK and FOREIGN KEY constraints");
    }
    if (named) SyntaxError();
    return false;
  }
  ParseKeyColumns(key);
  statement.keys.push_back(std::move(key));
  return true;
}

void Parser::ParseDrop(Statement& statement) {
  Advance();
  std::string_view schema;
  if (Accept(Keyword::kTable)) {
    statement.kind = StatementKind::kDropTable;
    statement.table_place = token_.begin;
    statement.table = ObjectName(&schema);
    return;
  }
  if (!Accept(Keyword::kIndex)) NotSupported("DROP of anything but tables and indexes");
  // DROP INDEX t.i, or DROP INDEX i ON t
  statement.kind = StatementKind::kDropIndex;
  statement.table_place = token_.begin;
  statement.index = ObjectName(&statement.table);
  if (Accept(Keyword::kOn)) {
    statement.table_place = token_.begin;
    statement.table = ObjectName(&schema);
  }
  if (statement.table.empty()) SyntaxError();
}

void Parser::ParseAlter(Statement& statement) {
  Advance();
  if (!Accept(Keyword::kTable)) NotSupported("ALTER of anything but tables");
  std::string_view schema;
  statement.table_place = token_.begin;
  statement.table = ObjectName(&schema);
  if (At(Keyword::kWith)) {  // WITH CHECK, WITH NOCHECK
    Advance();
    Advance();
  }
  if (Accept(Keyword::kAdd)) {
    statement.kind = StatementKind::kAlterAdd;
    Accept(Keyword::kColumn);
    do {
      if (!ParseTableConstraint(statement)) {
        statement.definitions.push_back(ParseColumnDefinition());
      }
    } while (Accept(Symbol::kComma));
  } else if (Accept(Keyword::kAlter)) {
    statement.kind = StatementKind::kAlterColumn;
    Expect(Keyword::kColumn);
    statement.definitions.push_back(ParseColumnDefinition());
  } else if (Accept(Keyword::kDrop)) {
    statement.kind = StatementKind::kAlterDropColumn;
    if (At(Keyword::kConstraint)) NotSupported("DROP CONSTRAINT");
    Expect(Keyword::kColumn);
    do {
      ColumnDefinition& column = statement.definitions.emplace_back();
      column.place = token_.begin;
      column.name = Name();
    } while (Accept(Symbol::kComma));
  } else {
    SyntaxError();
  }
}

}  // namespace kaunter::sql
