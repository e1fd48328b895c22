// Writes what was planned for one customer: whole, with its loans rebuilt and its sums true, or not
// at all.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "movein/move_in_plan.h"

namespace kaunter {

// Inserts rows of a table from the texts of boxes; a column that is not told takes its default.
class RowInserter {
 public:
  RowInserter(Connection& main, std::string table);
  // Columns that the table does not have are passed over. Throws SqlError.
  void Insert(const Texts& texts);

 private:
  Connection& main_;
  std::string table_;
  std::map<std::string, FieldType, std::less<>> types_;
};

// Where a record came from, for the list of what was moved in.
struct MovedFrom {
  std::string customers;  // names of the files
  std::string loans;
  std::string payments;
};

class MoveWriter {
 public:
  MoveWriter(Session& session, std::string company, MovedFrom from, Staging& staging);

  // One transaction. Throws SqlError and std::runtime_error; then nothing of it is stored. False:
  // another desktop has taken one of its records, or changed its loan, meanwhile.
  bool Write(CustomerPlan& plan);

 private:
  void StoreCustomer(CustomerPlan& plan);
  void StoreLoan(LoanPlan& loan, const std::string& cust_id);
  bool StillAsPlanned(const LoanPlan& loan);
  void StorePayments(LoanPlan& loan, const std::string& cust_id);
  std::string DrawReceipt(const Payment& payment);
  void ChargeLateInterest(const Payment& payment);
  void Remember(MoveKind kind, const std::string& key, const std::string& id,
                const std::string& file, int line, bool again);

  Session& session_;
  Connection& main_;
  std::string company_;
  MovedFrom from_;
  Staging& staging_;
  RowInserter customers_;
  RowInserter loans_;
  std::string now_;  // as a literal
};

}  // namespace kaunter
