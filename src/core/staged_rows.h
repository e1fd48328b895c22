// The scratch table MasterReport: rows that a report cannot find by one query are written there
// under the name of this PC and of the report file, and the report reads only those.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Connection;

// The rows of this PC and report go. Throws SqlError.
void DropStagedRows(Connection& main, std::string_view pcname, std::string_view report_name);
// The selection formula that gives a report its own rows.
std::string StagedFormula(std::string_view pcname, std::string_view report_name);

// Statements that go to the server together.
class Batch {
 public:
  void Add(std::string_view statement) {
    text_ += statement;
    text_ += ';';
  }
  // Sends what has come together; nothing when that is nothing.
  void Send(Connection& connection);
  // The same once it is much.
  void SendWhenFull(Connection& connection);

 private:
  std::string text_;
};

}  // namespace kaunter
