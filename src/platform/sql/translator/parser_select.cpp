// The parser's SELECT.
#include <algorithm>
#include <string>

#include "platform/sql/sql_error.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/parser.h"

namespace kaunter::sql {

std::unique_ptr<Select> Parser::ParseSelect() {
  const Descent descent(*this);
  auto select = std::make_unique<Select>();
  const int outer_depth = deepest_;
  deepest_ = 0;
  if (Accept(Keyword::kWith)) {
    do {
      CommonTable& table = select->with.emplace_back();
      table.place = token_.begin;
      table.name = Name();
      if (At(Symbol::kOpen)) table.columns = NameList();
      Expect(Keyword::kAs);
      Expect(Symbol::kOpen);
      table.select = ParseSelect();
      Expect(Symbol::kClose);
    } while (Accept(Symbol::kComma));
  }
  select->cores.push_back(ParseCore());
  for (;;) {
    SetOp op = SetOp::kUnion;
    if (Accept(Keyword::kUnion)) {
      op = Accept(Keyword::kAll) ? SetOp::kUnionAll : SetOp::kUnion;
    } else if (Accept(Keyword::kExcept)) {
      op = SetOp::kExcept;
    } else if (At(Keyword::kIntersect)) {
      // It binds tighter than the others, and SQLite does not know that.
      if (!select->ops.empty()) NotSupported("INTERSECT behind another set operation");
      Advance();
      op = SetOp::kIntersect;
    } else {
      break;
    }
    select->ops.push_back(op);
    select->cores.push_back(ParseCore());
  }
  if (At(Keyword::kOrder)) select->order_by = ParseOrderBy();
  if (Accept(Keyword::kOption)) {  // hints for the optimizer change no result
    Expect(Symbol::kOpen);
    while (!At(Symbol::kClose)) {
      if (token_.kind == TokenKind::kEnd) SyntaxError();
      Advance();
    }
    Advance();
  }
  if (At(Keyword::kFor)) NotSupported("FOR XML and FOR BROWSE");
  CountDepth(deepest_ + 1);
  select->depth = static_cast<std::uint16_t>(deepest_);
  deepest_ = std::max(deepest_, outer_depth);
  return select;
}

SelectCore Parser::ParseCore() {
  SelectCore core;
  core.place = token_.begin;
  if (Accept(Symbol::kOpen)) {
    core.nested = ParseSelect();
    Expect(Symbol::kClose);
    return core;
  }
  Expect(Keyword::kSelect);
  core.distinct = Accept(Keyword::kDistinct);
  if (!core.distinct) Accept(Keyword::kAll);
  if (Accept(Keyword::kTop)) {
    const bool bracket = Accept(Symbol::kOpen);
    core.top = bracket ? ParseExpr() : ParseLiteral();
    if (bracket) Expect(Symbol::kClose);
    if (!bracket && core.top->literal_kind != TokenKind::kInteger) {
      Fail(102, "Incorrect syntax near 'TOP': it takes a whole number.", statement_,
           core.top->place);
    }
    core.top_percent = Accept(Keyword::kPercent);
    if (At(Keyword::kWith)) NotSupported("TOP ... WITH TIES");
  }
  do {
    core.items.push_back(ParseItem());
  } while (Accept(Symbol::kComma));
  if (Accept(Keyword::kInto)) {
    core.into_place = token_.begin;
    std::string_view schema;
    core.into = ObjectName(&schema);
  }
  if (At(Keyword::kFrom)) core.from = ParseFrom();
  if (Accept(Keyword::kWhere)) core.where = ParseExpr();
  if (Accept(Keyword::kGroup)) {
    Expect(Keyword::kBy);
    Accept(Keyword::kAll);
    do {
      core.group_by.push_back(ParseExpr());
    } while (Accept(Symbol::kComma));
    if (At(Keyword::kWith)) NotSupported("GROUP BY ... WITH ROLLUP");
  }
  if (Accept(Keyword::kHaving)) core.having = ParseExpr();
  return core;
}

SelectItem Parser::ParseItem() {
  SelectItem item;
  item.place = token_.begin;
  if (Accept(Symbol::kStar)) return item;
  // alias = expression
  const bool text_alias = token_.kind == TokenKind::kText && !token_.parameter;
  if ((AtName() || text_alias) && next_.symbol == Symbol::kEqual) {
    item.alias = token_.text;
    Advance();
    Advance();
    item.expr = ParseExpr();
    return item;
  }
  item.expr = ParseExpr();
  if (item.expr->kind == ExprKind::kStar) {
    item.star_qualifier = item.expr->qualifier;
    item.expr = nullptr;
    return item;
  }
  // 'alias' = expression came out as a comparison, which a select list cannot hold
  if (item.expr->kind == ExprKind::kCompare && item.expr->op == Op::kEqual &&
      item.expr->args[0]->kind == ExprKind::kLiteral &&
      item.expr->args[0]->literal_kind == TokenKind::kText) {
    item.alias = item.expr->args[0]->text;
    ExprPtr value = std::move(item.expr->args[1]);
    item.expr = std::move(value);
    return item;
  }
  item.alias = ParseAlias();
  return item;
}

std::string_view Parser::ParseAlias() {
  const bool as = Accept(Keyword::kAs);
  if (token_.kind == TokenKind::kText) {
    const std::string_view alias = token_.text;
    Advance();
    return alias;
  }
  if (as) return Name();
  return AtName() ? Name() : std::string_view{};
}

std::vector<TableRefPtr> Parser::ParseFrom() {
  Expect(Keyword::kFrom);
  std::vector<TableRefPtr> tables;
  do {
    tables.push_back(ParseJoined());
  } while (Accept(Symbol::kComma));
  return tables;
}

TableRefPtr Parser::ParseJoined() {
  constexpr int kMostJoins = 100;
  const Descent descent(*this);
  TableRefPtr left = ParseTable();
  for (;;) {
    JoinKind kind = JoinKind::kInner;
    const std::size_t place = token_.begin;
    if (Accept(Keyword::kCross)) {
      if (AtWord("apply")) NotSupported("APPLY");
      kind = JoinKind::kCross;
    } else if (Accept(Keyword::kInner)) {
      kind = JoinKind::kInner;
    } else if (At(Keyword::kLeft) || At(Keyword::kRight) || At(Keyword::kFull)) {
      kind = At(Keyword::kLeft)    ? JoinKind::kLeft
             : At(Keyword::kRight) ? JoinKind::kRight
                                   : JoinKind::kFull;
      Advance();
      Accept(Keyword::kOuter);
    } else if (At(Keyword::kOuter)) {
      NotSupported("APPLY");
    } else if (!At(Keyword::kJoin)) {
      return left;
    }
    Expect(Keyword::kJoin);
    auto join = std::make_unique<TableRef>();
    join->kind = TableRef::Kind::kJoin;
    join->join = kind;
    join->place = place;
    join->depth = static_cast<std::uint16_t>(left->depth + 1);
    if (join->depth > kMostJoins) {
      Fail(191, "Some part of your SQL statement is nested too deeply.", statement_, place);
    }
    join->left = std::move(left);
    // a JOIN b JOIN c ON .. ON ..: the inner join stands to the right
    join->right = ParseTable();
    if (kind != JoinKind::kCross) {
      while (At(Keyword::kInner) || At(Keyword::kJoin) || At(Keyword::kLeft) ||
             At(Keyword::kRight) || At(Keyword::kFull)) {
        NotSupported("a join without ON before the next one");
      }
      Expect(Keyword::kOn);
      join->on = ParseExpr();
    }
    left = std::move(join);
  }
}

TableRefPtr Parser::ParseTable() {
  auto table = std::make_unique<TableRef>();
  table->place = token_.begin;
  if (At(Symbol::kOpen)) {
    if (next_.keyword != Keyword::kSelect && next_.symbol != Symbol::kOpen) {
      Advance();  // (a JOIN b ON ..)
      TableRefPtr joined = ParseJoined();
      Expect(Symbol::kClose);
      return joined;
    }
    const Descent descent(*this);
    Advance();
    if (At(Symbol::kOpen)) {
      // ((select ..) union ..) or ((a join b) join c): decided by what stands innermost
      Lexer ahead = lexer_;
      Token token = next_;
      while (token.symbol == Symbol::kOpen) token = ahead.Next();
      if (token.keyword != Keyword::kSelect) {
        TableRefPtr joined = ParseJoined();
        Expect(Symbol::kClose);
        return joined;
      }
    }
    table->kind = TableRef::Kind::kDerived;
    table->select = ParseSelect();
    Expect(Symbol::kClose);
  } else {
    table->name = ObjectName(&table->schema);
    if (At(Symbol::kOpen) && next_.keyword == Keyword::kNone && next_.kind == TokenKind::kName) {
      SkipTableHint();
    }
  }
  ParseTableAlias(*table);
  SkipTableHint();
  return table;
}

void Parser::ParseTableAlias(TableRef& table) {
  const bool as = Accept(Keyword::kAs);
  if (as || AtName()) {
    table.alias = Name();
    if (table.kind == TableRef::Kind::kDerived && At(Symbol::kOpen)) {
      table.column_aliases = NameList();
    }
  } else if (table.kind == TableRef::Kind::kDerived) {
    SyntaxError();  // a derived table must have a name
  } else {
    table.alias = table.name;
  }
}

// WITH (NOLOCK), (NOLOCK): how rows are locked changes no result here.
void Parser::SkipTableHint() {
  constexpr std::string_view kHints[] = {"nolock",  "holdlock",       "updlock", "rowlock",
                                         "tablock", "tablockx",       "xlock",   "readpast",
                                         "paglock", "readuncommitted"};
  const bool with = At(Keyword::kWith) && next_.symbol == Symbol::kOpen;
  bool hint = false;
  for (const std::string_view known : kHints) {
    hint = hint ||
           (At(Symbol::kOpen) && next_.kind == TokenKind::kName && SameName(next_.text, known));
  }
  if (!with && !hint) return;
  if (with) Advance();
  Expect(Symbol::kOpen);
  do {
    Name();
  } while (Accept(Symbol::kComma));
  Expect(Symbol::kClose);
}

std::vector<OrderItem> Parser::ParseOrderBy() {
  Expect(Keyword::kOrder);
  Expect(Keyword::kBy);
  std::vector<OrderItem> items;
  do {
    OrderItem& item = items.emplace_back();
    item.expr = ParseExpr();
    if (item.expr->kind == ExprKind::kLiteral && item.expr->literal_kind == TokenKind::kInteger &&
        item.expr->literal < 0) {
      item.position = item.expr->text.size() < 6 ? std::stoi(std::string(item.expr->text)) : 99999;
    }
    item.descending = At(Keyword::kDesc);
    if (!Accept(Keyword::kDesc)) Accept(Keyword::kAsc);
  } while (Accept(Symbol::kComma));
  if (AtWord("offset")) NotSupported("OFFSET ... FETCH: use TOP");
  return items;
}

}  // namespace kaunter::sql
