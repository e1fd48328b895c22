// A loan's schedule in memory, for the replay to work on.
#pragma once

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "collections/ledger_loan.h"
#include "loans/replay.h"

namespace kaunter {

class RowsInMemory : public ReplayRows {
 public:
  explicit RowsInMemory(std::vector<LedgerLine> lines) : lines_(std::move(lines)) {}

  std::vector<ReplayLine> Lines() override {
    std::vector<ReplayLine> all;
    for (const LedgerLine& row : lines_) all.push_back(row.line);
    return all;
  }
  std::vector<ReplayLine> OpenLines() override {
    std::vector<ReplayLine> open;
    for (const LedgerLine& row : lines_) {
      if (row.line.Open()) open.push_back(row.line);
    }
    return open;
  }
  std::optional<ReplayLine> FirstOpenLine() override {
    for (const LedgerLine& row : lines_) {
      if (row.line.Open()) return row.line;
    }
    return std::nullopt;
  }
  void Derive(const ReplayLine& line, Money capital, Money interest, Money balance) override {
    SetAmounts(Row(line), capital, interest, balance);
  }
  void Pay(const ReplayLine& line, Money paid, Money capital, Money interest,
           Money balance) override {
    LedgerLine& row = Row(line);
    row.line.Payment = paid;
    row.line.CapitalPayment = capital;
    row.line.InterestPayment = interest;
    row.LoanBal = balance;
  }
  void SetBalanceAhead(const ReplayLine& line, Money balance) override {
    for (LedgerLine& row : lines_) {
      if (row.line.SchID > line.SchID) row.LoanBal = balance;
    }
  }
  void Cut(const ReplayLine& line, Money capital, Money interest, Money balance,
           Money extra) override {
    LedgerLine& row = Row(line);
    SetAmounts(row, capital, interest, balance);
    row.line.PayExtra = extra;
  }

  void Wipe(Money opening) {
    for (LedgerLine& row : lines_) {
      row.line.Payment = row.line.CapitalPayment = row.line.InterestPayment = Money();
      row.line.PayExtra = Money();
      row.LoanBal = opening;
    }
  }
  void TakeBackup(const std::vector<LedgerBackup>& backup) {
    for (const LedgerBackup& kept : backup) {
      for (LedgerLine& row : lines_) {
        if (row.line.SchID != kept.SchID) continue;
        row.line.PayableAmt = kept.PayableAmt;
        row.line.CapitalAmt = kept.CapitalAmt;
        row.line.InterestAmt = kept.InterestAmt;
        row.LoanBal = kept.LoanBal;
      }
    }
  }
  void SumPayables() {
    for (LedgerLine& row : lines_) row.line.PayableAmt = row.line.CapitalAmt + row.line.InterestAmt;
  }
  const std::vector<LedgerLine>& lines() const { return lines_; }

 private:
  LedgerLine& Row(const ReplayLine& line) {
    return *std::find_if(lines_.begin(), lines_.end(),
                         [&line](const LedgerLine& row) { return row.line.SchID == line.SchID; });
  }
  static void SetAmounts(LedgerLine& row, Money capital, Money interest, Money balance) {
    row.line.CapitalAmt = capital;
    row.line.InterestAmt = interest;
    row.line.PayableAmt = capital + interest;
    row.LoanBal = balance;
  }

  std::vector<LedgerLine> lines_;
};

}  // namespace kaunter
