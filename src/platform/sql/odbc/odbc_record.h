// What a transaction has asked and what it was answered, so that it can be asked once more on
// another connection: a save goes on there as if nothing had happened, when all answers are the
// same.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/odbc/odbc_session.h"

namespace kaunter::sql {

struct Asked {
  enum class Kind { kExecute, kQuery, kQueryOnly };
  Kind kind = Kind::kExecute;
  std::string_view sql;

  // For certain: it may be asked again whatever became of it.
  bool OnlyReads() const;
};

class TransactionRecord {
 public:
  using Send = std::function<OdbcOutcome(const Asked&)>;

  // Behind the beginning of a transaction that may be taken up.
  void Start();
  // None is open any more, or it has been told as lost.
  void End();
  // The answer, or the failure that left the transaction usable.
  void Keep(const Asked& asked, const OdbcOutcome& outcome);
  void Keep(const Asked& asked, const SqlError& failure);
  // All of it stands here; a very long transaction is not kept.
  bool Whole() const { return whole_; }
  // Asks everything again; true when all answers are what they were. Throws what `send` throws when
  // `lost` is true behind it.
  bool Repeat(const Send& send, const std::function<bool()>& lost) const;

 private:
  struct Entry {
    Asked::Kind kind;
    std::string sql;
    std::uint64_t answer;
  };
  void Keep(const Asked& asked, std::uint64_t answer);

  std::vector<Entry> entries_;
  std::size_t bytes_ = 0;
  bool whole_ = false;
};

}  // namespace kaunter::sql
