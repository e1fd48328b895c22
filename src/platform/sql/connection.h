// Connection: one open data source, spoken to in T-SQL, whatever engine stands behind it.
//
// Execute and Query take one statement or a batch (statements parted by ";" or standing behind one
// another) and stop at the first failure, which is thrown as SqlError. No row is no error. Rows are
// copied before Query returns: no statement stays open behind a Recordset.
//
// Transactions: BeginTrans inside a transaction first rolls back what is still open (and tells the
// stale handler, which writes the log line); CommitTrans without one is an error; RollbackTrans
// bears finding none.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sql/value.h"

namespace kaunter {

class SqlError : public std::runtime_error {
 public:
  SqlError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  // The server's number (2627 primary key, 208 unknown table, 102 syntax ...); what() is the
  // description.
  int number() const { return number_; }

 private:
  int number_;
};

// The server was lost in a transaction (its number is 10054, as wherever a server is lost), and
// what is known of it.
class ServerLost : public SqlError {
 public:
  enum class Stored {
    nothing,
    unknown,  // it was being committed, and the server is not reached to ask
    earlier,  // told at the next save of the same connection, which is not begun
  };
  ServerLost(Stored stored, int number, const std::string& description)
      : SqlError(number, description), stored_(stored) {}
  Stored stored() const { return stored_; }

 private:
  Stored stored_;
};

enum class FieldType { kText, kInteger, kDouble, kMoney, kDate };

struct Column {
  std::string name;
  FieldType type = FieldType::kText;
  int width = 0;  // longest text the column takes; 0 when unbounded or unknown
  int scale = 0;  // decimals of a decimal column
};

// The rows of a query, read to the end, with a cursor that starts on the first.
class Recordset {
 public:
  Recordset() = default;
  Recordset(std::vector<Column> columns, std::vector<std::vector<Value>> rows)
      : columns_(std::move(columns)), rows_(std::move(rows)) {}

  bool Eof() const { return row_ >= rows_.size(); }
  void MoveNext() { ++row_; }
  void MoveFirst() { row_ = 0; }
  // Fields of the current row; by name without regard to case. An unknown name, a position past the
  // last column or a read at the end is a fault (std::out_of_range that names it).
  const Value& Field(std::string_view name) const;
  const Value& Field(std::size_t position) const;

  std::size_t RowCount() const { return rows_.size(); }
  const std::vector<Column>& columns() const { return columns_; }
  const std::vector<std::vector<Value>>& rows() const { return rows_; }

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<Value>> rows_;
  std::size_t row_ = 0;
};

class Connection {
 public:
  explicit Connection(std::string name) : name_(std::move(name)) {}
  virtual ~Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Rows touched by the last statement of the batch.
  std::int64_t Execute(std::string_view sql);
  // The rows of the last statement of the batch that gives rows.
  Recordset Query(std::string_view sql);
  // The same for a text that others may have written: it runs in a transaction that may not write
  // and is rolled back, without the lock that BeginTrans takes where an engine has one. Inside an
  // open transaction it sees what that has written, which then stands as it stood.
  Recordset QueryOnly(std::string_view sql);
  void BeginTrans();
  // One that reads: all its statements see the books of one moment, nobody is kept waiting, and a
  // write in it is a fault (std::logic_error). RollbackTrans ends it. On SQL Server the moment is
  // one where the database allows snapshots, and each statement's own where it does not.
  void BeginReading();
  void CommitTrans();
  void RollbackTrans();
  virtual bool InTransaction() const = 0;
  // From here on the loss of a server is borne as far as it can be, each time for as long as
  // `patience`: the connection is opened again, what was only asked is asked again, a transaction
  // is taken up where it stood, and a commit whose answer was lost is looked up: it leaves a mark
  // in the table SaveMark. What cannot be borne is told: ServerLost. An engine in this process is
  // never lost.
  virtual void OutliveServer(std::chrono::milliseconds /*patience*/) {}
  // How often something that stays was written: commits of transactions that wrote, and statements
  // outside of one.
  std::uint64_t kept() const { return kept_; }

  const std::string& name() const { return name_; }
  // For status lines and docs: "SQLite", "Microsoft SQL Server" ...
  virtual std::string EngineName() const = 0;

  // Called with each statement as it stands in T-SQL, before it runs; BEGIN, COMMIT and ROLLBACK
  // included.
  using TraceSink = std::function<void(std::string_view connection, std::string_view sql)>;
  void SetTrace(TraceSink sink) { trace_ = std::move(sink); }
  // Called when BeginTrans finds a transaction that somebody left open.
  void SetStaleHandler(std::function<void(std::string_view connection)> handler) {
    stale_ = std::move(handler);
  }
  // Called before each statement; may throw SqlError to play a failing engine. For fault tests.
  void SetFaultHook(std::function<void(std::string_view sql)> hook) { fault_ = std::move(hook); }

 protected:
  virtual std::int64_t DoExecute(std::string_view sql) = 0;
  virtual Recordset DoQuery(std::string_view sql) = 0;
  virtual Recordset DoQueryOnly(std::string_view sql) = 0;
  virtual void DoBegin() = 0;
  virtual void DoBeginReading() = 0;
  // Called inside a transaction that has written, before it is committed.
  virtual void BeforeCommit() {}
  virtual void DoCommit() = 0;
  virtual void DoRollback() = 0;

 private:
  void Announce(std::string_view sql);
  void LeaveStale();

  std::string name_;
  std::uint64_t kept_ = 0;
  bool written_ = false;  // in the open transaction
  bool reading_ = false;  // the open transaction only reads
  TraceSink trace_;
  std::function<void(std::string_view)> stale_;
  std::function<void(std::string_view)> fault_;
};

}  // namespace kaunter
