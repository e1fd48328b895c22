#include "platform/sql/odbc/odbc_record.h"

#include "platform/sql/text.h"

namespace kaunter::sql {
namespace {

// A counter's save has some hundred statements; what moves whole offices is told as lost.
constexpr std::size_t kMostStatements = 20000;
constexpr std::size_t kMostBytes = 16 << 20;

class Digest {
 public:
  void Add(std::string_view text) {
    for (const char c : text) Step(static_cast<unsigned char>(c));
    Step(0x100);  // "ab","c" is not "a","bc"
  }
  void Add(std::uint64_t number) { Step(number); }
  std::uint64_t value() const { return value_; }

 private:
  void Step(std::uint64_t part) { value_ = (value_ ^ part) * 1099511628211U; }
  std::uint64_t value_ = 14695981039346656037U;
};

bool Has(std::string_view lower, std::string_view word) {
  return lower.find(word) != std::string_view::npos;
}

// The server's clock goes on; of a time that was asked for the day counts.
std::string Text(const Value& value, bool clock) {
  const std::string text = value.ToText();
  return clock && value.AsDate() != nullptr ? text.substr(0, text.find(' ')) : text;
}

std::uint64_t AnswerOf(std::string_view sql, const OdbcOutcome& outcome) {
  const bool clock = Has(LowerAscii(sql), "getdate()");
  Digest digest;
  digest.Add(static_cast<std::uint64_t>(outcome.affected));
  if (outcome.rows) {
    for (const auto& row : outcome.rows->rows()) {
      for (const Value& value : row) {
        digest.Add(value.IsNull() ? 1U : 2U);
        digest.Add(Text(value, clock));
      }
    }
  }
  return digest.value();
}

std::uint64_t AnswerOf(const SqlError& failure) {
  Digest digest;
  digest.Add("failure");
  digest.Add(static_cast<std::uint64_t>(failure.number()));
  return digest.value();
}

}  // namespace

bool Asked::OnlyReads() const {
  if (kind == Kind::kQueryOnly) return true;
  if (kind == Kind::kExecute) return false;
  const std::string lower = LowerAscii(sql);
  return lower.starts_with("select ") && !Has(lower, ";") && !Has(lower, "into") &&
         !Has(lower, "insert") && !Has(lower, "update") && !Has(lower, "delete");
}

void TransactionRecord::Start() {
  End();
  whole_ = true;
}

void TransactionRecord::End() {
  entries_.clear();
  bytes_ = 0;
  whole_ = false;
}

void TransactionRecord::Keep(const Asked& asked, const OdbcOutcome& outcome) {
  if (whole_) Keep(asked, AnswerOf(asked.sql, outcome));
}

void TransactionRecord::Keep(const Asked& asked, const SqlError& failure) {
  if (whole_) Keep(asked, AnswerOf(failure));
}

void TransactionRecord::Keep(const Asked& asked, std::uint64_t answer) {
  bytes_ += asked.sql.size();
  entries_.push_back({asked.kind, std::string(asked.sql), answer});
  if (entries_.size() > kMostStatements || bytes_ > kMostBytes) End();
}

bool TransactionRecord::Repeat(const Send& send, const std::function<bool()>& lost) const {
  for (const Entry& entry : entries_) {
    std::uint64_t answer = 0;
    try {
      answer = AnswerOf(entry.sql, send({entry.kind, entry.sql}));
    } catch (const SqlError& failure) {
      if (lost()) throw;
      answer = AnswerOf(failure);
    }
    if (answer != entry.answer) return false;
  }
  return true;
}

}  // namespace kaunter::sql
