#include "collections/ledger_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <unordered_map>

#include "collections/ledger_customer.h"
#include "collections/ledger_loan.h"
#include "core/values.h"
#include "loans/money_gate.h"
#include "platform/sql/transaction.h"
#include "platform/sql/waiting.h"

namespace kaunter {
namespace {

constexpr std::size_t kLoansAtOnce = 250;
// Between the commit of a payment and that of its replay, generously.
constexpr std::chrono::milliseconds kReplayTakes{1000};
constexpr int kLooks = 6;
constexpr int kSameLooks = 2;

using Row = std::vector<Value>;

std::int64_t Whole(const Value& value) {
  const std::int64_t* integer = value.AsInteger();
  return integer != nullptr ? *integer : CLng(value.ToText());
}

constexpr const char* kLoanColumns =
    "LoanID,CustID,DragLoan,SpecialSch,InsRate,InstallmentAmt2,LoanStatus,LoanAmt,LoanBal,CloseBal,"
    "TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,PayExtra,TotLoanInt,NextDueDate,"
    "LastPaymentDate,LastPaymentNo,PayOutAmt,SchChanged,LoanTerm,LoanTerm2";

// By its terms; "" where they tell no number.
std::string RowsWanted(const std::string& term, const std::string& grace) {
  if (!IsNumeric(term)) return "";
  return std::to_string(CLng(term) + (IsNumeric(grace) ? CLng(grace) : 0));
}

LedgerLoan ReadLoan(const Row& row) {
  LedgerLoan loan{
      .LoanID = row[0].ToText(),
      .CustID = NullToEmpty(row[1]),
      .terms = ReplayLoanOf(row[2], row[3]),
      .closed = SameText(NullToEmpty(row[6]), "CLOSED"),
      .terms_open = ReplayAmount(row[20]) <= Money(),
      .amended = NullToEmpty(row[21]) == "1",
      .rows_wanted = RowsWanted(NullToEmpty(row[22]), NullToEmpty(row[23])),
      .LoanAmt = ReplayAmount(row[7]),
      .LoanBal = ReplayAmount(row[8]),
      .CloseBal = ReplayAmount(row[9]),
      .TotPay = ReplayAmount(row[10]),
      .TotInt = ReplayAmount(row[11]),
      .TotCharge = ReplayAmount(row[12]),
      .TotCollectorAmt = ReplayAmount(row[13]),
      .TotDiscAmt = ReplayAmount(row[14]),
      .PayExtra = ReplayAmount(row[15]),
      .TotLoanInt = ReplayAmount(row[16]),
      .NextDueDate = ReplayDate(row[17]),
      .LastPaymentDate = ReplayDate(row[18]),
      .LastPaymentNo = NullToEmpty(row[19]),
      .lines = {},
      .payments = {},
      .backup = {},
      .late_paid = {},
      .charged = {},
      .credited = {},
  };
  loan.terms.InsRate = ReplayAmount(row[4]);
  loan.terms.Instalment = ReplayAmount(row[5]);
  return loan;
}

// Some loans, neighbours in the order of their numbers, with their rows.
class Portion {
 public:
  // `which` is a condition on LoanMast.
  Portion(Connection& main, std::vector<LedgerLoan> loans, const std::string& which)
      : main_(main),
        loans_(std::move(loans)),
        in_("LoanID IN (SELECT LoanID FROM LoanMast WHERE " + which + ")") {
    for (LedgerLoan& loan : loans_) by_id_[Lower(loan.LoanID)] = &loan;
    ReadLines();
    ReadPayments();
    ReadBackups();
    ReadCharges();
  }

  const std::vector<LedgerLoan>& loans() const { return loans_; }

 private:
  // The rows of a table come loan after loan; the first field is LoanID.
  template <typename Take>
  void ForEachRow(const std::string& sql, Take take) {
    const Recordset rows = main_.Query(sql);
    LedgerLoan* loan = nullptr;
    const std::string* id = nullptr;
    for (const Row& row : rows.rows()) {
      const std::string* of = row[0].AsText();
      if (of == nullptr) continue;
      if (id == nullptr || *of != *id) {
        const auto found = by_id_.find(Lower(*of));
        loan = found == by_id_.end() ? nullptr : found->second;
        id = of;
      }
      if (loan != nullptr) take(*loan, row);
    }
  }

  void ReadLines() {
    ForEachRow(
        "SELECT LoanID,SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,"
        "InterestPayment,PayExtra,LoanBal FROM SchMast WHERE " +
            in_ + " ORDER BY LoanID,SchID",
        [](LedgerLoan& loan, const Row& row) {
          loan.lines.push_back({{.SchID = Whole(row[1]),
                                 .DueDate = ReplayDate(row[2]),
                                 .PayableAmt = ReplayAmount(row[3]),
                                 .CapitalAmt = ReplayAmount(row[4]),
                                 .InterestAmt = ReplayAmount(row[5]),
                                 .Payment = ReplayAmount(row[6]),
                                 .CapitalPayment = ReplayAmount(row[7]),
                                 .InterestPayment = ReplayAmount(row[8]),
                                 .PayExtra = ReplayAmount(row[9])},
                                ReplayAmount(row[10])});
        });
    const auto earlier = [](const LedgerLine& a, const LedgerLine& b) {
      return a.line.DueDate < b.line.DueDate;
    };
    for (LedgerLoan& loan : loans_) {
      if (!std::is_sorted(loan.lines.begin(), loan.lines.end(), earlier)) {
        std::stable_sort(loan.lines.begin(), loan.lines.end(), earlier);
      }
    }
  }

  void ReadBackups() {
    if (std::none_of(loans_.begin(), loans_.end(), NeedsBackup)) return;
    ForEachRow(
        "SELECT LoanID,SchID,PayableAmt,CapitalAmt,InterestAmt,LoanBal FROM SchMast2 WHERE " + in_ +
            " ORDER BY LoanID,SchID",
        [](LedgerLoan& loan, const Row& row) {
          loan.backup.push_back({Whole(row[1]), ReplayAmount(row[2]), ReplayAmount(row[3]),
                                 ReplayAmount(row[4]), ReplayAmount(row[5])});
        });
  }

  void ReadPayments() {
    ForEachRow(
        "SELECT LoanID,PayID,PayDate,IntAmt,ChargeAmt,DiscAmt,TopTerm,TopAmt,InstalAmt,PayExtra,"
        "Memo5,OldLoanBal,NewLoanBal,IntPay,CapPay,PayAmt,settlement FROM PaymentMast WHERE " +
            in_ + " ORDER BY LoanID,PayID",
        [](LedgerLoan& loan, const Row& row) {
          loan.payments.push_back({{.PayID = NullToEmpty(row[1]),
                                    .PayDate = ReplayDate(row[2]),
                                    .IntAmt = ReplayAmount(row[3]),
                                    .ChargeAmt = ReplayAmount(row[4]),
                                    .DiscAmt = ReplayAmount(row[5]),
                                    .TopTerm = ReplayAmount(row[6]),
                                    .TopAmt = ReplayAmount(row[7]),
                                    .InstalAmt = ReplayAmount(row[8]),
                                    .PayExtra = ReplayAmount(row[9]),
                                    .Memo5 = ReplayAmount(row[10])},
                                   {.OldLoanBal = ReplayAmount(row[11]),
                                    .NewLoanBal = ReplayAmount(row[12]),
                                    .IntPay = ReplayAmount(row[13]),
                                    .CapPay = ReplayAmount(row[14])},
                                   ReplayAmount(row[15]),
                                   NullToEmpty(row[16]) == "1"});
        });
  }

  void ReadCharges() {
    ForEachRow(
        "SELECT LoanID,SUM(CASE WHEN ChargeAmt > 0 THEN ChargeAmt ELSE 0 END),SUM(CASE WHEN "
        "ChargeAmt < 0 THEN ChargeAmt ELSE 0 END) FROM ChargeMast WHERE " +
            in_ + " AND PType <> 'Batch Loan Interest' GROUP BY LoanID ORDER BY LoanID",
        [](LedgerLoan& loan, const Row& row) {
          loan.charged = ReplayAmount(row[1]);
          loan.credited = ReplayAmount(row[2]);
        });
    ForEachRow("SELECT LoanID,ChargeID,ChargeAmt FROM ChargeMast WHERE " + in_ +
                   " AND PType='Payment' ORDER BY LoanID,ChargeID",
               [](LedgerLoan& loan, const Row& row) {
                 loan.late_paid.push_back({NullToEmpty(row[1]), ReplayAmount(row[2])});
               });
  }

  Connection& main_;
  std::vector<LedgerLoan> loans_;
  std::string in_;
  std::unordered_map<std::string, LedgerLoan*> by_id_;
};

std::vector<LedgerLoan> ReadLoans(Connection& main, const std::string& which) {
  const Recordset rows = main.Query(
      fmt::format("SELECT {} FROM LoanMast WHERE {} ORDER BY LoanID", kLoanColumns, which));
  std::vector<LedgerLoan> loans;
  for (const Row& row : rows.rows()) loans.push_back(ReadLoan(row));
  return loans;
}

std::vector<LedgerFault> FaultsOfPortion(Connection& main, const std::string& which) {
  std::vector<LedgerFault> faults;
  const Portion portion(main, ReadLoans(main, which), which);
  for (const LedgerLoan& loan : portion.loans()) {
    auto found = FaultsOf(loan);
    std::move(found.begin(), found.end(), std::back_inserter(faults));
  }
  return faults;
}

// Once more, one by one.
std::vector<LedgerFault> LookAgain(Connection& main, const std::vector<LedgerFault>& suspected) {
  std::vector<LedgerFault> faults;
  const LedgerFault* before = nullptr;
  for (const LedgerFault& fault : suspected) {
    const bool seen = before != nullptr && before->SameBook(fault);
    before = &fault;
    if (seen) continue;
    auto found =
        fault.LoanID.empty() ? CheckCustomer(main, fault.CustID) : CheckLoan(main, fault.LoanID);
    std::move(found.begin(), found.end(), std::back_inserter(faults));
  }
  return faults;
}

// Those that stand still. While others save, a figure lags behind the counter for a moment: it is
// another one at the next look. Where they save without a pause some figure lags at every look, and
// one that never stood still is no fault yet.
std::vector<LedgerFault> Standing(Connection& main, const std::vector<LedgerFault>& suspected) {
  struct Seen {
    LedgerFault fault;
    int looks;
  };
  std::vector<Seen> seen;
  std::vector<LedgerFault> now = LookAgain(main, suspected);
  for (int look = 1; !now.empty(); ++look) {
    std::vector<Seen> again;
    for (const LedgerFault& fault : now) {
      const auto before = std::find_if(seen.begin(), seen.end(),
                                       [&](const Seen& one) { return one.fault == fault; });
      again.push_back({fault, before == seen.end() ? 1 : before->looks + 1});
    }
    seen = std::move(again);
    const bool all_stand = std::all_of(seen.begin(), seen.end(),
                                       [](const Seen& one) { return one.looks >= kSameLooks; });
    if (all_stand || look == kLooks) break;
    SleepActing(kReplayTakes);
    now = LookAgain(main, now);
  }
  std::vector<LedgerFault> faults;
  for (Seen& one : seen) {
    if (!now.empty() && one.looks >= kSameLooks) faults.push_back(std::move(one.fault));
  }
  return faults;
}

}  // namespace

std::optional<LedgerLoan> ReadLedgerLoan(Connection& main, std::string_view loan_id) {
  const std::string which = "LoanID=" + QuoteStr(loan_id);
  const Portion portion(main, ReadLoans(main, which), which);
  if (portion.loans().empty()) return std::nullopt;
  return portion.loans().front();
}

std::vector<LedgerFault> CheckLoan(Connection& main, std::string_view loan_id) {
  std::optional<Transaction> as_one;
  if (!main.InTransaction()) as_one.emplace(main);
  LockLoan(main, loan_id);
  return FaultsOfPortion(main, "LoanID=" + QuoteStr(loan_id));
}

std::vector<LedgerFault> CheckCustomer(Connection& main, std::string_view cust_id) {
  std::optional<Transaction> as_one;
  if (!main.InTransaction()) as_one.emplace(main);
  return FaultsOfCustomers(main, "CustID=" + QuoteStr(cust_id));
}

LedgerReport CheckCompany(Connection& main, std::string_view comp_code,
                          const std::function<bool(const LedgerProgress&)>& go_on) {
  const std::string of_company = "CompCode=" + QuoteStr(comp_code);
  std::vector<std::string> ids;
  const Recordset rows =
      main.Query("SELECT LoanID FROM LoanMast WHERE " + of_company + " ORDER BY LoanID");
  for (const Row& row : rows.rows()) ids.push_back(row[0].ToText());
  LedgerReport report;
  std::vector<LedgerFault> suspected;
  const auto suspect = [&suspected](std::vector<LedgerFault> found) {
    std::move(found.begin(), found.end(), std::back_inserter(suspected));
  };
  report.complete = true;
  for (std::size_t first = 0; first < ids.size(); first += kLoansAtOnce) {
    report.complete = go_on({report.loans, static_cast<int>(ids.size())});
    if (!report.complete) break;
    const std::size_t end = std::min(first + kLoansAtOnce, ids.size());
    suspect(FaultsOfPortion(main, fmt::format("{} AND LoanID >= {} AND LoanID <= {}", of_company,
                                              QuoteStr(ids[first]), QuoteStr(ids[end - 1]))));
    report.loans = static_cast<int>(end);
  }
  if (report.complete) {
    suspect(FaultsOfCustomers(
        main,
        fmt::format("({0} OR CustID IN (SELECT CustID FROM LoanMast WHERE {0}))", of_company)));
  }
  report.faults = main.InTransaction() ? std::move(suspected) : Standing(main, suspected);
  if (report.complete) go_on({report.loans, report.loans});
  return report;
}

}  // namespace kaunter
