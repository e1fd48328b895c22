// Transaction: begun where it is made, rolled back where it is left without Commit. A rollback that
// fails is silent: the failure that led to it is the one to tell.
#pragma once

#include "platform/sql/connection.h"

namespace kaunter {

class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(connection) {
    connection_.BeginTrans();
  }
  ~Transaction() {
    if (committed_) return;
    try {
      connection_.RollbackTrans();
    } catch (const SqlError&) {
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  // Throws SqlError; the transaction is then rolled back as if it had not been called.
  void Commit() {
    connection_.CommitTrans();
    committed_ = true;
  }

 private:
  Connection& connection_;
  bool committed_ = false;
};

// ReadTransaction: the books of one moment, for as long as it lives.
class ReadTransaction {
 public:
  explicit ReadTransaction(Connection& connection) : connection_(connection) {
    connection_.BeginReading();
  }
  ~ReadTransaction() {
    try {
      connection_.RollbackTrans();
    } catch (const SqlError&) {
    }
  }
  ReadTransaction(const ReadTransaction&) = delete;
  ReadTransaction& operator=(const ReadTransaction&) = delete;

 private:
  Connection& connection_;
};

}  // namespace kaunter
