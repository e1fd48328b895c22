// Binder: gives every name its column and every expression its type, puts in the conversions that
// the server would make by itself, and refuses what it would refuse, with its number.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/translator/ast.h"
#include "platform/sql/translator/translate.h"

namespace kaunter::sql {

class Binder {
 public:
  Binder(const Catalogue& catalogue, Statement& statement)
      : catalogue_(catalogue), statement_(statement) {}

  // Throws SqlError.
  void Bind();

 private:
  enum class Clause { kItems, kWhere, kOn, kGroupBy, kHaving, kOrderBy, kSet, kValues };

  struct Scope {
    std::vector<const Source*> sources;
    const Scope* parent = nullptr;
    SelectCore* core = nullptr;
    Clause clause = Clause::kItems;
    bool in_aggregate = false;
  };

  [[noreturn]] void Refuse(int number, std::string_view words, std::size_t place) const;

  // binder.cpp: statements
  void BindInsert();
  void BindInsertSelect();
  void AssignItems(Select& select);
  void BindUpdate();
  void BindDelete();
  void BindTarget(Scope& scope, bool alone);
  void BindCreateTable();
  void BindCreateIndex();
  void BindAlterAdd();
  void BindDefault(ColumnDefinition& column);
  const CatalogueTable* Table(std::string_view name, std::size_t place, int number) const;
  const CatalogueColumn* Column(const CatalogueTable& table, std::string_view name) const;
  std::size_t Place(std::size_t column) const;

  // binder_select.cpp
  void BindSelect(Select& select, const Scope* parent, bool top_level);
  void BindCore(SelectCore& core, Scope& scope);
  void BindNested(SelectCore& core, const Scope* parent);
  void BindFrom(TableRef& table, Scope& scope);
  void BindNamedTable(TableRef& table);
  void BindDerived(TableRef& table, const Scope* parent);
  void AddSource(const Source& source, std::size_t place, Scope& scope) const;
  void SetDerivedColumns(Source& source, const Select& select,
                         const std::vector<std::string_view>& names, std::string_view alias,
                         std::size_t place) const;
  void BindItems(SelectCore& core, Scope& scope);
  void ExpandStar(SelectCore& core, std::size_t item, const Scope& scope);
  void BindTop(SelectCore& core, Scope& scope);
  void BindOrder(Select& select, Scope& scope);
  void FindOrderPosition(OrderItem& order, const SelectCore& core) const;
  void MatchUnion(Select& select) const;
  void CheckGrouping(const SelectCore& core);
  void CheckGrouped(const Expr& expr, const SelectCore& core, std::string_view clause);
  void CheckGroupedSelect(const Select& select, const SelectCore& core, std::string_view clause);
  static bool IsSingleRow(const Select& select);
  static void ExpandItems(SelectCore& core);

  // binder_expr.cpp
  void BindValue(Expr& expr, Scope& scope);
  void BindCondition(Expr& expr, Scope& scope);
  void BindLiteral(Expr& expr) const;
  void BindColumn(Expr& expr, const Scope& scope) const;
  bool ResolveIn(Expr& expr, const Scope& scope) const;
  bool ResolveFrom(Expr& expr, const Source& source) const;
  void BindBinary(Expr& expr, Scope& scope);
  void BindCase(Expr& expr, Scope& scope);
  void BindFunction(Expr& expr, Scope& scope);
  void BindChoice(Expr& expr, Scope& scope);  // isnull, coalesce, nullif, iif
  void BindConvert(Expr& expr, Scope& scope);
  void BindSubquery(Expr& expr, Scope& scope);
  void BindLike(Expr& expr, Scope& scope);
  void BindIn(Expr& expr, Scope& scope);

  // binder_aggregates.cpp
  void BindAggregate(Expr& expr, Scope& scope);
  const Scope& OwnerOf(const Expr& aggregate, const Scope& scope) const;
  void CheckAggregatePlace(const Expr& aggregate, const Scope& owner, const Scope& scope) const;
  void SetAggregateType(Expr& expr, std::string_view name) const;
  void BindWindow(Expr& expr, Scope& scope);

  // binder_types.cpp
  void Coerce(ExprPtr& expr, const Type& target) const;
  bool CoerceLiteral(Expr& expr, const Type& target) const;
  void CutTo(ExprPtr& expr, const Type& target) const;
  void Compare(ExprPtr& left, ExprPtr& right) const;
  void Assign(ExprPtr& expr, const Type& target, std::string_view column) const;
  void CheckConvertible(const Type& from, const Type& to, std::size_t place) const;
  static Type Common(const Type& a, const Type& b);
  static Type Arithmetic(Op op, const Type& a, const Type& b);

  const Catalogue& catalogue_;
  Statement& statement_;
  std::vector<const CommonTable*> common_tables_;
};

// The views of INFORMATION_SCHEMA, as tables; null for another name.
const CatalogueTable* FindSystemTable(std::string_view name);

// True for two bound expressions that mean the same; `literals` tells whether it took the value of
// a literal to decide.
bool SameExpr(const Expr& a, const Expr& b, bool* literals);

// "nvarchar", "int" ...: a type in messages.
std::string_view TypeLabel(const Type& type);

}  // namespace kaunter::sql
