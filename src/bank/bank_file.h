// The payments in a bank's file, line by line as its layout says.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "bank/bank_layout.h"
#include "bank/bank_lines.h"
#include "platform/date_time.h"
#include "platform/money.h"
#include "screen/caption.h"

namespace kaunter {

struct BankLine {
  int number = 0;  // in the file, from 1
  std::optional<DateTime> date;
  std::optional<Money> amount;
  std::string reference;
  std::optional<Caption> fault;  // why it cannot be a payment, though it looks like one
  std::string fingerprint;  // the same for the same line of another file, whatever its encoding
  std::string raw;          // its bytes, with those of its end
};

class BankFile {
 public:
  // Throws BankFileRefused.
  BankFile(const BankLayout& layout, const std::string& path);
  // Called every hundred lines, whatever they hold; may throw to end the reading.
  std::function<void()> on_way;

  // The next line that is a payment, or would be one but for a fault; false behind the last. Throws
  // BankFileRefused, for a header without its day too.
  bool Next(BankLine& line);

  int percent() const { return lines_.percent(); }
  int passed_by() const {
    return passed_by_;
  }  // lines that are no payments, blank ones not counted
  const std::string& account() const { return account_; }
  // What the payments of a file of the same layout stand behind: mark, skipped lines, header.
  const std::string& head() const { return head_; }

 private:
  std::string Part(BankPart part) const;
  std::string At(const BankPlace& place) const;
  bool Counts() const;
  std::optional<DateTime> Day(bool in_header, std::string* shown) const;
  void ReadHeader();
  void Read(BankLine& line);

  const BankLayout layout_;
  BankLines lines_;
  std::vector<BankText> columns_;  // of the line in work
  std::optional<DateTime> day_;    // of the header
  std::string account_;
  std::string head_;
  bool header_read_ = false;
  int passed_by_ = 0;
};

// "<file name>-<line as 000>": the name of a line among those that were taken.
std::string BankLineRef(const std::string& path, int number);

}  // namespace kaunter
