#include "reports/report_company.h"

#include <fmt/format.h>

#include <vector>

#include "core/values.h"
#include "platform/sql/translator/lexer.h"

namespace kaunter {
namespace {

using sql::Keyword;
using sql::Symbol;
using sql::Token;
using sql::TokenKind;

struct OwnedTable {
  std::string_view name;
  std::string_view column = "CompCode";
  bool person = false;  // a customer may have loans in several companies: a record goes before him
};

// MasterReport has no column of its own for it: each report stages the company somewhere else.
constexpr OwnedTable kOwned[] = {{"LoanMast"},
                                 {"PaymentMast"},
                                 {"ChargeMast"},
                                 {"DrawDownMast"},
                                 {"AppMast"},
                                 {"CashBook"},
                                 {"PersonalExp"},
                                 {"GoldTransMast"},
                                 {"LoanCollateral"},
                                 {"SupplierTrans"},
                                 {"DocumentMast"},
                                 {"EInvMast"},
                                 {"SelfBillMast"},
                                 {"SMSList"},
                                 {"AMLATrans"},
                                 {"AMLADecision"},
                                 {"MonthlyMast"},
                                 {"YearlyLoanMast"},
                                 {"TransLogs", "ConmpCode"},
                                 {"CustMast", "CompCode", true},
                                 {"SupplierMast", "CompCode", true},
                                 {"MasterReport", ""}};

const OwnedTable* Owned(std::string_view name) {
  for (const OwnedTable& table : kOwned) {
    if (SameText(table.name, name)) return &table;
  }
  return nullptr;
}

bool IsName(const Token& token) {
  return (token.kind == TokenKind::kName && token.keyword == Keyword::kNone) ||
         token.kind == TokenKind::kQuotedName;
}

// Reads a statement up to a place in it and knows the tables that the place can reach.
class Reach {
 public:
  explicit Reach(std::string_view before) {
    sql::Lexer lexer(before);
    for (Token token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
      Take(token);
    }
    EndTable();
  }

  // "" when no table in reach has a company.
  std::string Column() const {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
      for (const bool person : {false, true}) {
        for (const Source& source : scope->tables) {
          const OwnedTable* table = Owned(source.name);
          if (table == nullptr || table->column.empty() || table->person != person) continue;
          return fmt::format("[{}].{}", source.alias.empty() ? source.name : source.alias,
                             table->column);
        }
      }
    }
    return {};
  }
  bool owned() const { return owned_; }

 private:
  struct Source {
    std::string name;
    std::string alias;
  };
  // What stands within a pair of brackets.
  struct Scope {
    std::vector<Source> tables;
    bool of_from = false;  // between FROM and what ends its list
  };

  void Take(const Token& token) {
    if (naming_ && TakeName(token)) return;
    Scope& scope = scopes_.back();
    if (token.symbol == Symbol::kOpen) {
      scopes_.emplace_back();
    } else if (token.symbol == Symbol::kClose) {
      if (scopes_.size() > 1) scopes_.pop_back();
    } else if (token.keyword == Keyword::kSelect) {
      scope = {};
    } else if (token.keyword == Keyword::kFrom || token.keyword == Keyword::kJoin ||
               (token.symbol == Symbol::kComma && scope.of_from)) {
      scope.of_from = true;
      BeginTable();
    } else if (token.keyword == Keyword::kWhere || token.keyword == Keyword::kGroup ||
               token.keyword == Keyword::kOrder || token.keyword == Keyword::kHaving) {
      scope.of_from = false;
    }
  }

  void BeginTable() {
    naming_ = true;
    as_alias_ = false;
    table_ = {};
  }

  // A word of "dbo.LoanMast AS l"; false when the table's name is over.
  bool TakeName(const Token& token) {
    if (token.symbol == Symbol::kDot) {
      table_.name.clear();
      return true;
    }
    if (token.keyword == Keyword::kAs) {
      as_alias_ = true;
      return true;
    }
    if (IsName(token)) {
      (as_alias_ || !table_.name.empty() ? table_.alias : table_.name) = token.text;
      return true;
    }
    EndTable();
    return false;
  }

  void EndTable() {
    if (naming_ && !table_.name.empty()) {
      owned_ = owned_ || Owned(table_.name) != nullptr;
      scopes_.back().tables.push_back(table_);
    }
    naming_ = false;
  }

  std::vector<Scope> scopes_{1};
  Source table_;
  bool naming_ = false;
  bool as_alias_ = false;
  bool owned_ = false;
};

}  // namespace

std::string CompanyColumn(std::string_view before) { return Reach(before).Column(); }

bool ReadsCompanies(std::string_view statement) { return Reach(statement).owned(); }

}  // namespace kaunter
