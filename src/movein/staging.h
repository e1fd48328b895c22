// The lines of the files that are moved in, sorted by what belongs to what, in a database file of
// this PC that goes with it: however long they are, only the lines of one customer are in memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "movein/line_reader.h"
#include "platform/clock.h"
#include "platform/sql/connection.h"

namespace kaunter {

struct StagedLine {
  MoveKind kind = MoveKind::customers;
  int line = 0;
  std::string key;     // by which the line is known: their code, their loan number, the receipt
  std::string ic;      // of a customer, by which a loan may name him too
  std::string parent;  // the customer of a loan, the loan of a payment
  bool refused = false;
  Texts texts;
};

class Staging {
 public:
  explicit Staging(const Clock& clock);
  ~Staging();
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  void Add(const StagedLine& line);
  // Before the first question: what was added is there to be found.
  void Close();

  // The customers behind `line`, a page of them.
  std::vector<StagedLine> Customers(int behind);
  // Keys of the customers that loans name, or of the loans that payments name, and that no line of
  // the files is: the next behind `key`.
  std::optional<std::string> NextStranger(MoveKind kind, std::string_view behind);
  // The loans of a customer in the order of the file, the payments of a loan by their day.
  std::vector<StagedLine> LoansOf(std::string_view customer, std::string_view ic);
  std::vector<StagedLine> PaymentsOf(std::string_view loan);
  // The first line of the same key, where that is an earlier one; none for a line without a key.
  std::optional<StagedLine> Earlier(const StagedLine& line);
  // An earlier customer of the same identity number.
  std::optional<int> EarlierIc(const StagedLine& line);
  // Whether a payment of the files names it, refused or not.
  bool HasReceipt(std::string_view number);

 private:
  std::vector<StagedLine> Read(MoveKind kind, const std::string& where, const std::string& order,
                               int most);

  std::filesystem::path folder_;
  std::unique_ptr<Connection> lines_;
};

}  // namespace kaunter
