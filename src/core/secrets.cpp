#include "core/secrets.h"

#include <algorithm>
#include <vector>

#include "platform/sql/connection.h"
#include "platform/sql/text.h"
#include "platform/sql/translator/lexer.h"

namespace kaunter {
namespace {

using sql::Keyword;
using sql::Symbol;
using sql::Token;
using sql::TokenKind;

constexpr std::string_view kHidden = "'***'";
// What a setting's name or a column's holds when its value is a secret; UserDept is where a user's
// hash lies.
constexpr std::string_view kSecretWords[] = {"userdept", "password", "secret",
                                             "atmpin",   "clientid", "client_id"};

bool IsName(const Token& token) {
  return token.kind == TokenKind::kName || token.kind == TokenKind::kQuotedName;
}

bool IsLiteral(const Token& token) {
  return token.kind == TokenKind::kText || token.kind == TokenKind::kInteger ||
         token.kind == TokenKind::kDecimal;
}

std::vector<Token> Tokens(sql::Lexer& lexer) {
  std::vector<Token> tokens;
  for (Token token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
    tokens.push_back(token);
  }
  return tokens;
}

class Search {
 public:
  explicit Search(const std::vector<Token>& tokens) : tokens_(tokens) {}

  // Which tokens are secret.
  std::vector<bool> Run() {
    secret_.resize(tokens_.size());
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
      if (tokens_[i].keyword == Keyword::kInsert) Insert(i);
      if (IsName(tokens_[i]) && IsSecretName(tokens_[i].text)) Behind(i + 1);
      if (tokens_[i].kind == TokenKind::kText) Text(i);
    }
    return std::move(secret_);
  }

 private:
  bool Is(std::size_t i, Symbol symbol) const {
    return i < tokens_.size() && tokens_[i].symbol == symbol;
  }

  // UserDept='...', UserDept<>N'...'
  void Behind(std::size_t i) {
    if (!Is(i, Symbol::kEqual) && !Is(i, Symbol::kNotEqual)) return;
    if (i + 1 < tokens_.size() && IsLiteral(tokens_[i + 1])) secret_[i + 1] = true;
  }

  // A connection string with its password; and all texts of a statement that names a setting which
  // holds one, since the value may stand before and behind the name.
  void Text(std::size_t at) {
    const std::string text = sql::LowerAscii(tokens_[at].text);
    if (text.find("password=") != std::string::npos) secret_[at] = true;
    if (!text.ends_with("password") && !text.ends_with("secret") && !text.ends_with("client_id")) {
      return;
    }
    if (std::ranges::none_of(tokens_, [](const Token& token) {
          return IsName(token) && sql::SameName(token.text, "Systemast");
        })) {
      return;
    }
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
      if (i != at && tokens_[i].kind == TokenKind::kText) secret_[i] = true;
    }
  }

  // INSERT INTO t (a, UserDept, b) VALUES (..., '...', ...), (...)
  void Insert(std::size_t i) {
    while (i < tokens_.size() && !Is(i, Symbol::kOpen)) ++i;
    std::vector<std::size_t> places;
    std::size_t place = 0;
    for (++i; i < tokens_.size() && !Is(i, Symbol::kClose); ++i) {
      if (Is(i, Symbol::kComma)) ++place;
      if (IsName(tokens_[i]) && IsSecretName(tokens_[i].text)) places.push_back(place);
    }
    if (places.empty() || ++i >= tokens_.size() || tokens_[i].keyword != Keyword::kValues) return;
    int depth = 0;
    for (++i; i < tokens_.size() && (depth > 0 || Is(i, Symbol::kOpen) || Is(i, Symbol::kComma));
         ++i) {
      if (Is(i, Symbol::kOpen) && ++depth == 1) place = 0;
      if (Is(i, Symbol::kClose)) --depth;
      if (Is(i, Symbol::kComma) && depth == 1) ++place;
      if (depth > 0 && IsLiteral(tokens_[i]) && std::ranges::count(places, place) > 0) {
        secret_[i] = true;
      }
    }
  }

  const std::vector<Token>& tokens_;
  std::vector<bool> secret_;
};

}  // namespace

bool IsSecretName(std::string_view name) {
  const std::string lower = sql::LowerAscii(name);
  return std::ranges::any_of(
      kSecretWords, [&](std::string_view word) { return lower.find(word) != std::string::npos; });
}

std::string WithoutSecrets(std::string_view sql) {
  // Nearly every statement holds none.
  if (!IsSecretName(sql)) return std::string(sql);
  sql::Lexer lexer(sql);
  std::vector<Token> tokens;
  try {
    tokens = Tokens(lexer);
  } catch (const SqlError&) {
    return "(a statement that does not parse and names a secret)";
  }
  const std::vector<bool> secret = Search(tokens).Run();
  std::string shown;
  std::size_t at = 0;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!secret[i]) continue;
    shown += sql.substr(at, tokens[i].begin - at);
    shown += kHidden;
    at = tokens[i].end;
  }
  return shown + std::string(sql.substr(at));
}

std::string WithoutPasswords(std::string_view line) {
  constexpr std::string_view kQuoted = ") in: ";  // a refused statement stands behind it
  std::string shown(line);
  const std::size_t quoted = shown.find(kQuoted);
  if (quoted != std::string::npos) {
    const std::string statement = shown.substr(quoted + kQuoted.size());
    const std::string hidden = WithoutSecrets(statement);
    // The place that is shown before it could hold the secret too.
    if (hidden != statement) shown = shown.substr(0, shown.find(" (at ")) + " in: " + hidden;
  }
  for (const std::string_view key : {"pwd=", "password="}) {
    std::string lower = sql::LowerAscii(shown);
    for (std::size_t at = lower.find(key); at != std::string::npos; at = lower.find(key, at)) {
      at += key.size();
      const bool braced = at < lower.size() && lower[at] == '{';
      const std::size_t end =
          std::min(lower.find_first_of(braced ? "}" : ";'\" ", at), lower.size());
      shown.replace(at, end - at, "***");
      lower.replace(at, end - at, "***");
    }
  }
  return shown;
}

std::string WithoutLiterals(std::string_view sql) {
  std::string shown;
  sql::Lexer lexer(sql);
  std::size_t end = 0;
  bool list = false;  // behind a question mark and a comma
  try {
    for (Token token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
      const bool name_in_quotes = token.kind == TokenKind::kQuotedName && sql[token.begin] == '"';
      const bool hidden = IsLiteral(token) || token.kind == TokenKind::kFloat ||
                          token.kind == TokenKind::kBinary || name_in_quotes;
      const bool comma = token.symbol == Symbol::kComma && shown.ends_with('?');
      if (!(hidden && list)) {
        if (list) shown += ',';
        // A comment between two tokens is a text that somebody wrote.
        if (end > 0 && token.begin > end && !comma) shown += ' ';
        if (!comma) shown += hidden ? "?" : sql.substr(token.begin, token.end - token.begin);
      }
      list = comma;
      end = token.end;
    }
  } catch (const SqlError&) {
    return "(a statement that does not parse)";
  }
  return shown;
}

}  // namespace kaunter
