// The tree of a statement: what the parser makes, the binder fills with types, and a writer writes
// out. Texts are views into the statement (or into names that the tree owns).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/function_table.h"
#include "platform/sql/translator/lexer.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

struct Select;
struct Source;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

enum class ExprKind : std::uint8_t {
  kLiteral,
  kNull,
  kColumn,
  kStar,     // t.* in a select list, until the parser has made an item of it
  kBinary,   // args: left, right; op
  kCompare,  // args: left, right; op
  kNegate,
  kPlus,  // unary +
  kAnd,   // any number of args
  kOr,
  kNot,
  kLike,      // args: text, pattern, [escape]
  kBetween,   // args: value, low, high
  kInList,    // args: value, items...
  kInSelect,  // args: value; select
  kExists,    // select
  kIsNull,
  kCase,        // args: [operand], (when, then)..., [else]
  kFunction,    // text is the name in lower case; args
  kAggregate,   // COUNT, SUM, AVG, MIN, MAX; args: one, none for COUNT(*)
  kWindow,      // text is the function; args: its own, partition, order
  kSubquery,    // select that stands for one value
  kConvert,     // args: value, [style]; target
  kCoerce,      // put in by the binder: args: value; target
  kCheckWidth,  // put in by the binder: a text that must fit its column
};

enum class Op : std::uint8_t {
  kNone,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kModulo,
  kConcat,  // + of two texts; decided by the binder
  kDatePlus,
  kEqual,
  kNotEqual,
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual
};

struct Expr {
  ExprKind kind = ExprKind::kNull;
  Op op = Op::kNone;
  bool negated = false;      // NOT LIKE, NOT IN, NOT BETWEEN, IS NOT NULL
  bool distinct = false;     // of an aggregate
  bool has_operand = false;  // CASE x WHEN
  bool has_else = false;
  TokenKind literal_kind = TokenKind::kEnd;
  std::uint16_t depth = 1;
  int literal = -1;            // its number among the statement's literals, -1 for a constant
  std::size_t place = 0;       // in the statement
  std::string_view text;       // literal, column or function
  std::string_view qualifier;  // of a column: the last part before the name
  std::vector<ExprPtr> args;
  std::unique_ptr<Select> select;
  Type target;  // kConvert, kCoerce
  // kWindow: how many args are its own and its partition's; of the rest, which descend.
  std::size_t own_args = 0;
  std::size_t partition_args = 0;
  std::vector<bool> descending;

  // By the binder:
  Type type;
  const Source* source = nullptr;  // of a column
  bool base_column = false;        // a column as its table declares it, with its collation
  Function function = Function::kNone;
  Conversion conversion = Conversion::kAsText;  // of a literal
  int scale = 0;                                // kAsDecimal
  int width = 0;                                // kAsText, kCheckWidth
  std::string_view column;                      // for messages
};

// A column that a source offers.
struct SourceColumn {
  std::string_view name;
  Type type;
  bool base = false;
};

// What a FROM clause makes visible under one name.
struct Source {
  std::string_view alias;                 // as exposed
  const CatalogueTable* table = nullptr;  // base table, else
  bool system = false;                    // the table is a view of INFORMATION_SCHEMA
  std::vector<SourceColumn> columns;      // of a derived table
};

enum class JoinKind : std::uint8_t { kInner, kLeft, kRight, kFull, kCross };

struct TableRef;
using TableRefPtr = std::unique_ptr<TableRef>;

struct TableRef {
  enum class Kind : std::uint8_t { kTable, kDerived, kJoin };
  Kind kind = Kind::kTable;
  JoinKind join = JoinKind::kInner;
  std::uint16_t depth = 1;
  std::size_t place = 0;
  std::string_view schema;  // dbo, INFORMATION_SCHEMA, sys
  std::string_view name;
  std::string_view alias;  // what was written; else the name
  std::vector<std::string_view> column_aliases;
  std::unique_ptr<Select> select;  // kDerived
  TableRefPtr left, right;         // kJoin
  ExprPtr on;
  Source source;                         // by the binder
  const Select* common_table = nullptr;  // by the binder: it names a WITH
};

struct SelectItem {
  ExprPtr expr;  // null for *
  std::string_view alias;
  std::string_view star_qualifier;
  std::size_t place = 0;
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
  int position = 0;  // of a select item, from 1: written, or found by the binder; 0 for none
};

// One SELECT between the UNIONs.
struct SelectCore {
  bool distinct = false;
  ExprPtr top;
  bool top_percent = false;
  std::vector<SelectItem> items;
  std::string_view into;
  std::size_t into_place = 0;
  std::vector<TableRefPtr> from;
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  ExprPtr having;
  std::unique_ptr<Select> nested;  // a bracketed select that is a part of a UNION
  std::size_t place = 0;
  // By the binder:
  std::vector<ResultColumn> columns;   // * expanded
  std::vector<std::size_t> item_of;    // of each column: its item
  std::vector<const Source*> sources;  // what FROM makes visible
  bool aggregated = false;             // GROUP BY, HAVING or an aggregate
};

enum class SetOp : std::uint8_t { kUnion, kUnionAll, kExcept, kIntersect };

struct CommonTable {
  std::string_view name;
  std::vector<std::string_view> columns;
  std::unique_ptr<Select> select;
  std::size_t place = 0;
};

struct Select {
  std::vector<CommonTable> with;
  std::vector<SelectCore> cores;
  std::vector<SetOp> ops;  // one less than cores
  std::vector<OrderItem> order_by;
  std::uint16_t depth = 1;  // of the deepest expression in it, its own level included
  bool single_row = false;  // by the binder: never more than one row
};

struct Assignment {
  std::string_view qualifier;
  std::string_view column;
  std::size_t place = 0;
  ExprPtr value;
  bool compound = false;       // c += value: the column is the first operand of `value`
  std::string_view canonical;  // by the binder
};

struct ColumnDefinition {
  std::string_view name;
  std::size_t place = 0;
  std::string declared;  // "nvarchar(50)", as the catalogue will see it
  Type type;
  bool not_null = false;
  bool null_given = false;
  bool identity = false;
  bool primary_key = false;
  bool unique = false;
  bool with_values = false;
  ExprPtr default_value;
  ExprPtr computed;
};

struct KeyConstraint {
  bool primary = false;
  std::string_view name;
  std::vector<std::string_view> columns;
  std::size_t place = 0;
};

struct IndexColumn {
  std::string_view name;
  bool descending = false;
  std::size_t place = 0;
};

enum class StatementKind : std::uint8_t {
  kSelect,
  kInsert,
  kUpdate,
  kDelete,
  kTruncate,
  kCreateTable,
  kCreateIndex,
  kDropTable,
  kDropIndex,
  kAlterAdd,
  kAlterColumn,
  kAlterDropColumn,
  kBegin,
  kCommit,
  kRollback,
  kNoop
};

struct Statement {
  StatementKind kind = StatementKind::kSelect;
  std::string_view text;
  std::unique_ptr<Select> select;  // kSelect; of an INSERT
  // INSERT, UPDATE, DELETE, DDL
  std::string_view table;
  std::size_t table_place = 0;
  std::vector<std::string_view> columns;  // of an INSERT
  std::vector<std::size_t> column_places;
  std::vector<std::vector<ExprPtr>> rows;
  bool default_values = false;
  std::vector<Assignment> assignments;
  std::vector<TableRefPtr> from;
  ExprPtr where;
  std::vector<ColumnDefinition> definitions;
  std::vector<KeyConstraint> keys;
  std::string_view index;
  std::vector<IndexColumn> index_columns;
  bool unique = false;
  // By the binder:
  const CatalogueTable* target = nullptr;
  const Source* target_source = nullptr;  // among `from`; null when the table stands alone
  TableRef own;                           // the table that stands alone
  std::vector<std::string_view> insert_columns;
  bool cacheable = true;
};

}  // namespace kaunter::sql
