#include "platform/sql/connection.h"

#include <fmt/format.h>

#include "platform/sql/slow_sink.h"
#include "platform/sql/text.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

std::chrono::milliseconds slow_from{};
SlowSink slow_sink;

// From here to its end: one statement.
class Timed {
 public:
  Timed(std::string_view connection, std::string_view sql) : connection_(connection), sql_(sql) {}
  ~Timed() {
    if (!slow_sink) return;
    const auto took = std::chrono::steady_clock::now() - begun_;
    if (took < slow_from) return;
    try {
      slow_sink(connection_, sql_, std::chrono::duration_cast<std::chrono::milliseconds>(took));
    } catch (const std::exception&) {
      // What is noted about a statement never becomes its failure.
    }
  }
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;

 private:
  std::string_view connection_;
  std::string_view sql_;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
};

}  // namespace

void SetSlowSink(std::chrono::milliseconds from, SlowSink sink) {
  slow_from = from;
  slow_sink = std::move(sink);
}

const Value& Recordset::Field(std::string_view name) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (sql::SameName(columns_[i].name, name)) return Field(i);
  }
  throw std::out_of_range(fmt::format("the recordset has no field {}", name));
}

const Value& Recordset::Field(std::size_t position) const {
  if (position >= columns_.size()) {
    throw std::out_of_range(
        fmt::format("field {} of a recordset with {} fields", position, columns_.size()));
  }
  if (Eof()) {
    throw std::out_of_range(
        fmt::format("field {} is read behind the last row", columns_[position].name));
  }
  return rows_[row_][position];
}

void Connection::Announce(std::string_view sql) {
  if (IsWaiting()) throw std::logic_error(fmt::format("sent inside another statement: {}", sql));
  if (trace_) trace_(name_, sql);
  if (fault_) fault_(sql);
}

std::int64_t Connection::Execute(std::string_view sql) {
  if (reading_ && InTransaction()) {
    throw std::logic_error(fmt::format("written while the books are read: {}", sql));
  }
  Announce(sql);
  const Timed timed(name_, sql);
  const std::int64_t rows = DoExecute(sql);
  if (InTransaction()) {
    written_ = true;
  } else {
    ++kept_;
  }
  return rows;
}

Recordset Connection::Query(std::string_view sql) {
  Announce(sql);
  const Timed timed(name_, sql);
  return DoQuery(sql);
}

Recordset Connection::QueryOnly(std::string_view sql) {
  Announce(sql);
  const Timed timed(name_, sql);
  return DoQueryOnly(sql);
}

void Connection::LeaveStale() {
  if (InTransaction()) {
    RollbackTrans();
    if (stale_) stale_(name_);
  }
  written_ = false;
  reading_ = false;
}

void Connection::BeginTrans() {
  LeaveStale();
  Announce("BEGIN TRANSACTION");
  const Timed timed(name_, "BEGIN TRANSACTION");  // it may wait for another desktop
  DoBegin();
}

void Connection::BeginReading() {
  LeaveStale();
  Announce("BEGIN TRANSACTION");
  DoBeginReading();
  reading_ = true;
}

void Connection::CommitTrans() {
  if (InTransaction() && written_) BeforeCommit();
  Announce("COMMIT");
  if (!InTransaction()) {
    throw SqlError(3902, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  }
  const Timed timed(name_, "COMMIT");
  DoCommit();
  if (written_) ++kept_;
}

void Connection::RollbackTrans() {
  if (!InTransaction()) return;
  try {
    Announce("ROLLBACK");
  } catch (...) {
    // A played failure of the rollback must not leave the write lock behind: a real one is the end
    // of the connection, and the server then rolls back by itself.
    DoRollback();
    throw;
  }
  DoRollback();
}

}  // namespace kaunter
