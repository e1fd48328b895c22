// The office of the random histories at the payment counter: a customer with two loans, made anew
// for each history, and the comparison of every stored row with the second model.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/password_screens.h"
#include "loans/rebuild.h"
#include "platform/sql/transaction.h"
#include "tests/collections/counter_boxes.h"
#include "tests/core/office.h"
#include "tests/loans/bare_ledger.h"
#include "tests/loans/stored_loan.h"

namespace kaunter {

using counter::Answers;
using counter::Iso;
using counter::Loan;
using counter::Paid;
using model::Day;
using model::Sen;

class HistoryDesk : public SilentDesk {
 public:
  bool Ask(std::string_view, std::string_view text) override {
    if (text.find("Continue make payment") != std::string_view::npos) return answers.holiday;
    if (text.starts_with("Close without")) ++closings;
    const bool to_store = text.starts_with("Confirm to ") || text.starts_with("confirm to ");
    return !to_store || answers.confirm;
  }
  bool AskBeforeLoss(std::string_view title, std::string_view text) override {
    if (!text.starts_with("Interest Payment") && !text.starts_with("Extra Capital")) {
      return Ask(title, text);
    }
    asked.emplace_back(text);
    return text.starts_with("E") ? answers.extra : answers.credit;
  }
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    SilentDesk::Message(kind, title, text);
    if (!text.starts_with("Payment already made on the month")) told = text;
  }
  void ShowModal(Screen& screen) override {
    if (dynamic_cast<frmUserSignIn*>(&screen) != nullptr) session->OverrideOK = answers.manager;
  }
  Session* session = nullptr;
  Answers answers;
  std::string told;  // last
  std::vector<std::string> asked;
  int closings = 0;
};

// What is stored of a loan, and how the model tells it.
struct Place {
  const char* name;
  const char* sql;
  std::string (*should_be)(const Loan&);
  bool comes_back = true;  // with a payment that is taken back
};

// In the order of their keys; `line` gives each its own and its text.
inline std::string Lines(const auto& list, const auto& line) {
  std::map<decltype(line(list.front()).first), std::string> lines;
  for (const auto& one : list) lines.insert(line(one));
  std::string all;
  for (const auto& [key, text] : lines) all += text + "\n";
  return all;
}
inline std::string Schedule(const Loan& loan) {
  return Lines(loan.ledger.rows, [](const model::Row& row) {
    return std::pair(
        row.id, fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", row.id, Iso(row.due), row.payable,
                            row.capital, row.interest, row.paid, row.capital_paid,
                            row.interest_paid, row.balance, row.extra));
  });
}
inline std::string TakenOffRows(const Loan& loan) {
  std::string all;
  for (const auto& [row, off] : loan.reversed) {
    if (off.interest == 0 && off.capital == 0 && off.collector == 0 && off.late == 0) continue;
    all +=
        fmt::format("{}|{}|{}|{}|{}|\n", row, off.interest, off.capital, off.collector, off.late);
  }
  return all;
}
inline std::string Sums(const Loan& loan) {
  const model::StoredLoan& ledger = loan.ledger;
  const Paid* last = loan.paid.empty() ? nullptr : &loan.paid.back();
  Sen interest = 0;
  for (const model::Row& row : ledger.rows) interest += row.interest;
  return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|ACTIVE|\n", ledger.balance,
                     ledger.total_paid, loan.credited, ledger.total_charge, loan.charged,
                     ledger.total_discount, ledger.total_extra, interest, Iso(ledger.next_due),
                     last ? Iso(last->date) : "", last ? last->id : "", loan.group);
}
inline std::string Entries(const Loan& loan) {
  return Lines(loan.paid, [](const Paid& one) {
    return std::pair(one.id, one.Entry() + (one.changed ? "0" : "") + "|0|ACTIVE|C|HQ|");
  });
}
inline std::string Replayed(const Loan& loan) {
  return Lines(loan.paid, [](const Paid& p) {
    return std::pair(
        p.id, fmt::format("{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|{}|", p.id, Iso(p.date), p.pay,
                          p.instalment, p.extra, p.late, p.receipt, p.old_balance, p.new_balance,
                          p.interest_part, p.capital_part));
  });
}
inline std::string Charges(const Loan& loan) {
  return Lines(loan.charges, [](const counter::Charge& one) {
    return std::pair(one.id, fmt::format("{}|{}|{}|{}|{}|", one.id, Iso(one.date), one.amount,
                                         one.original, one.type));
  });
}
inline std::string Cheques(const Loan& loan) {
  return Lines(loan.cheques, [](const counter::Cheque& one) {
    return std::pair(one.no, fmt::format("{}|{}|{}|", one.no, one.pay_id,
                                         one.pay_id.empty() ? "" : Iso(one.date)));
  });
}

inline constexpr Place kPlaces[] = {
    {"the schedule",
     "SELECT SchID,DueDate,PayableAmt,CapitalAmt,InterestAmt,Payment,CapitalPayment,"
     "InterestPayment,LoanBal,PayExtra FROM SchMast WHERE LoanID=? ORDER BY SchID",
     Schedule},
    {"what was taken off the rows",
     "SELECT SchID,IntChargeAmt,DragInt,DragIntPaid,IntAmt FROM SchMast WHERE LoanID=? AND "
     "(IntChargeAmt <> 0 OR DragInt <> 0 OR DragIntPaid <> 0 OR IntAmt <> 0) ORDER BY SchID",
     TakenOffRows, false},
    {"the sums",
     "SELECT LoanBal,TotPay,TotInt,TotCharge,TotCollectorAmt,TotDiscAmt,PayExtra,TotLoanInt,"
     "NextDueDate,LastPaymentDate,LastPaymentNo,LoanGroupID,LoanStatus FROM LoanMast WHERE "
     "LoanID=?",
     Sums},
    {"the top-up", "SELECT TopUpAmt FROM LoanMast WHERE LoanID=?",
     [](const Loan& loan) { return fmt::format("{}|\n", loan.topup); }, false},
    {"the payments",
     "SELECT PayID,SchID,PayDate,PayAmt,InstalAmt,PayExtra,IntAmt,ChargeAmt,DiscAmt,CollectorAmt,"
     "Memo5,TopAmt,TopTerm,TopUpAmt,ReceiptNo,ChqNo,Bank,CollectInfoID,LampiranStatus,PayableAmt,"
     "IntChargeAmt,DragInt,LastDueDate,NextDueDate,SalesmanComm,DeletePayID,settlement,"
     "PaymentStatus,CustID,CompCode FROM PaymentMast WHERE LoanID=? ORDER BY PayID",
     Entries, false},
    {"the replay",
     "SELECT PayID,PayDate,PayAmt,InstalAmt,PayExtra,IntAmt,ReceiptNo,OldLoanBal,NewLoanBal,"
     "IntPay,CapPay FROM PaymentMast WHERE LoanID=? ORDER BY PayID",
     Replayed},
    {"the charges",
     "SELECT ChargeID,TrxDate,ChargeAmt,OrgAmt,PType FROM ChargeMast WHERE LoanID=? ORDER BY "
     "ChargeID",
     Charges},
    {"the cheques", "SELECT ChqNo,PayID,PayDate FROM ChqMast WHERE LoanID=? ORDER BY SeqNo",
     Cheques},
};

class CounterOffice {
 public:
  // How often each check was made and each refusal met.
  std::map<std::string, std::int64_t> checked, told;

 protected:
  CounterOffice() : bare_(office_.folder.File("office.db")) {
    desk_.session = &office_.session;
    office_.session.CurrentLevel = 4;
    office_.session.CurrentCompCode = "HQ";
    office_.session.settings.TransLogs = false;
  }

  Connection& main() { return office_.session.Main(); }
  std::int64_t Between(std::int64_t least, std::int64_t most) {
    return random_.Between(least, std::max(least, most));
  }
  bool OneIn(int n) { return random_.OneIn(n); }
  template <typename List>
  auto& AnyOf(List& list) {
    return *(std::begin(list) + Between(0, static_cast<std::int64_t>(std::size(list)) - 1));
  }

  std::string Trail() const {
    std::string all = fmt::format("KAUNTER_HISTORY={}\n", number_);
    for (const std::string& step : steps_) all += "  " + step + "\n";
    return all;
  }
  void Note(std::string step) { steps_.push_back(std::move(step)); }
  void Fault(const std::string& what) {
    if (held_) ADD_FAILURE() << Trail() << what;
    held_ = false;
  }
  void Same(const std::string& what, const std::string& is, const std::string& should_be) {
    ++checked[what];
    if (is == should_be) return;
    // The first line that differs.
    const std::size_t same = static_cast<std::size_t>(
        std::mismatch(is.begin(), is.end(), should_be.begin(), should_be.end()).first - is.begin());
    const std::size_t line = is.rfind('\n', same == 0 ? 0 : same - 1);
    const std::size_t from = line == std::string::npos || same == 0 ? 0 : line + 1;
    const auto rest = [&](const std::string& text) {
      return text.substr(from, text.find('\n', same) - from);
    };
    Fault(fmt::format("{}:\n  {}\nshould be:\n  {}", what, rest(is), rest(should_be)));
  }

  // --- a customer with two loans

  void MakeCustomer() {
    company_ = {};
    company_.receipts = static_cast<counter::Company::Receipts>(Between(0, 2));
    company_.check_holiday = OneIn(2);
    office_.session.settings.CheckHoliday = company_.check_holiday;
    office_.session.settings.ORYYMMDD = company_.receipts == counter::Company::Receipts::dated;
    Transaction transaction(main());
    for (const char* table : {"PaymentMast", "SchMast", "SchMast2", "LoanMast", "ChargeMast",
                              "NumberMast", "ChqMast", "CustMast", "HolidayMast"}) {
      main().Execute(fmt::format("DELETE FROM {}", table));
    }
    main().Execute(fmt::format("UPDATE CompMast SET SerialReceiptNo='{}'",
                               company_.receipts == counter::Company::Receipts::serial ? 1 : 0));
    main().Execute(
        "INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotTopUpAmt) "
        "VALUES ('C','HQ','Tan','ACTIVE',0,0,0)");
    for (const char* id : {"C-001", "C-002"}) MakeLoan(id);
    company_.holiday = model::PlusDays(company_.loans[0].lent, static_cast<int>(Between(20, 90)));
    main().Execute(
        fmt::format("INSERT INTO HolidayMast (HolidayDate,HolidayName) VALUES ({},'Raya')",
                    Text(company_.holiday)));
    for (Loan& loan : company_.loans) {
      RebuildLoan(main(), loan.id);
      loan.Rebuild();
    }
    transaction.Commit();
    RebuildCustomer(main(), "C");
  }

  void MakeLoan(const std::string& id) {
    Loan loan;
    loan.id = id;
    static constexpr const char* kTypes[] = {"MONTH", "MONTH", "WEEK", "DAILY", "14DAYS"};
    loan.type = AnyOf(kTypes);
    model::StoredLoan& ledger = loan.ledger;
    Day first{};
    do {
      ledger = DrawLoan(random_, id, {.rows = 5, .long_rows = 12, .payments = 0});
      first = ledger.rows.front().due;
    } while (first.year == 2000 && first.month == 1);  // a day before 2000 is shown as none
    for (std::size_t i = 0; loan.type != "MONTH" && i < ledger.rows.size(); ++i) {
      ledger.rows[i].due = loan.Step(first, static_cast<int>(i));
    }
    // A row that asks for nothing is the loan's own all the same.
    if (OneIn(3)) {
      model::Row& idle = AnyOf(ledger.rows);
      idle.payable = idle.capital = idle.interest = 0;
      for (model::Row& row : ledger.backup) {
        if (row.id == idle.id) row = idle;
      }
    }
    // As it is generated; a special one has figures of its own.
    if (ledger.backup.empty()) ledger.backup = ledger.rows;
    loan.lent =
        first.month == 1 ? Day{first.year - 1, 12, 20} : Day{first.year, first.month - 1, 20};
    loan.deposit = OneIn(2) ? 0 : Between(1, 500) * 100;
    loan.drawn = OneIn(15) ? 0 : ledger.amount;
    if (OneIn(4)) loan.group = "PINJAMAN TIDAK BERBAYAR";
    main().Execute(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,DragLoan,SpecialSch,LoanAmt,LoanAmt2,InsRate,"
        "InstallmentAmt2,LoanStatus,LoanGroupID,LoanTypeID,TrxDate,NextDueDate,PayOutAmt,"
        "DepositAmt2,TopUpAmt,LoanBal,SchChanged) VALUES "
        "('{}','C','HQ','{}','{}',{},{},{},{},'ACTIVE','{}','{}',{},'1999-01-01',{},{},0,0,'1')",
        id, ledger.scheme, ledger.special ? 1 : 0, Text(ledger.amount), Text(ledger.amount),
        Money::FromTenThousandths(ledger.rate4).ToText(), Text(ledger.instalment), loan.group,
        loan.type, Text(loan.lent), Text(loan.drawn), Text(loan.deposit)));
    StoreRows(main(), "SchMast", id, ledger.rows);
    StoreRows(main(), "SchMast2", id, ledger.backup);
    if (OneIn(2)) {
      loan.counted = true;
      main().Execute(fmt::format("Insert into NumberMast values ('{}','001','001')", id));
    }
    for (int i = 1; i <= static_cast<int>(Between(0, 2)); ++i) {
      loan.cheques.push_back({fmt::format("CHQ{}", i), "", Between(1, ledger.amount), {}});
      main().Execute(
          fmt::format("INSERT INTO ChqMast (LoanID,SeqNo,ChqNo,ChqBank,ChqAmt,PayID) VALUES "
                      "('{}',{},'CHQ{}','MBB',{},'')",
                      id, i, i, Text(loan.cheques.back().amount)));
    }
    company_.loans.push_back(loan);
    if (OneIn(2)) PostCharges(company_.loans.back());
  }

  void PostCharges(Loan& loan) {
    static constexpr const char* kTypes[] = {"Batch",   "Batch",       "Batch",
                                             "Invoice", "Credit Note", "Batch Loan Interest"};
    for (int i = static_cast<int>(Between(1, 3)); i > 0; --i) {
      counter::Charge charge{fmt::format("{}-B{}", loan.id, ++serial_), AnyDay(loan),
                             Between(1, 5000), 0, AnyOf(kTypes)};
      if (charge.type == "Credit Note") charge.amount = -charge.amount;
      loan.charges.push_back(charge);
      main().Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,LoanID,CustID,CompCode,TrxDate,DueDate,ChargeAmt,"
          "OrgAmt,PType) VALUES ('{}','{}','C','HQ',{},{},{},0,'{}')",
          charge.id, loan.id, Text(charge.date), Text(charge.date), Text(charge.amount),
          charge.type));
      Note(fmt::format("{} is charged {} on {} ({})", loan.id, counter::Shown(charge.amount),
                       Iso(charge.date), charge.type));
    }
  }

  Day AnyDay(const Loan& loan) {
    const int span =
        31 + static_cast<int>(loan.ledger.rows.size()) * (loan.type == "MONTH" ? 31 : 8);
    return model::PlusDays(loan.lent, static_cast<int>(Between(0, span)));
  }

  // --- what is stored, and what should be

  // Read anew only where the office has written since.
  const std::string& Everything() {
    const std::string version = bare_.Rows("PRAGMA data_version");
    if (version == version_) return everything_;
    version_ = version;
    everything_.clear();
    for (const char* table :
         {"SELECT * FROM PaymentMast", "SELECT * FROM SchMast", "SELECT * FROM LoanMast",
          "SELECT * FROM ChargeMast ORDER BY ChargeID", "SELECT * FROM CustMast",
          "SELECT * FROM NumberMast", "SELECT * FROM ChqMast", "SELECT * FROM SchMast2"}) {
      everything_ += bare_.Rows(table) + "\n";
    }
    return everything_;
  }

  // What a payment taken back must leave as it was.
  std::string StateOf(const Loan& loan) {
    std::string all = bare_.Rows("SELECT TotLoan,TotLoanBal FROM CustMast");
    for (const Place& place : kPlaces) {
      if (place.comes_back) all += bare_.Rows(place.sql, loan.id);
    }
    return all;
  }

  // At times rebuilt once more; with `touched`, that loan alone.
  void Compare(const Loan* touched = nullptr) {
    Sen lent = 0, balance = 0, topup = 0;
    std::map<std::string, std::string> numbers;
    bare_.Rows("BEGIN");  // one lock for all that is read
    for (const Loan& loan : company_.loans) {
      for (const Place& place : kPlaces) {
        Same(place.name, bare_.Rows(place.sql, loan.id), place.should_be(loan));
      }
      lent += loan.ledger.amount;
      balance += loan.ledger.balance;
      topup += loan.topup;
      if (loan.counted) numbers[loan.id] = fmt::format("{:03}", loan.next);
    }
    Same("the customer", bare_.Rows("SELECT TotLoan,TotLoanBal,TotTopUpAmt FROM CustMast"),
         fmt::format("{}|{}|{}|\n", lent, balance, topup));
    for (const auto& [key, at] : company_.counters) numbers[key] = std::to_string(at);
    std::string counters;
    for (const auto& [key, at] : numbers) counters += key + "|" + at + "|\n";
    Same("the counters", bare_.Rows("SELECT CustID,LoanNo FROM NumberMast ORDER BY CustID"),
         counters);
    AskIdentities(bare_, [this](const char* what, std::int64_t rows, const std::string& broken) {
      checked[what] += rows;
      if (!broken.empty()) Fault(fmt::format("{} does not hold: {}", what, broken));
    });
    bare_.Rows("COMMIT");
    if (held_ && OneIn(2)) RebuildAgain(touched);
  }

  void RebuildAgain(const Loan* touched) {
    const std::string before = Everything();
    bool rebuilt = false;
    Transaction transaction(main());
    for (const Loan& loan : company_.loans) {
      if ((touched != nullptr && touched != &loan) || loan.CutAnew()) continue;
      RebuildLoan(main(), loan.id);
      rebuilt = true;
    }
    transaction.Commit();
    if (!rebuilt) return;
    RebuildCustomer(main(), "C");
    Same("a second rebuild", Everything(), before);
  }

  Office office_{Office::State::patched};
  HistoryDesk desk_;
  BareFile bare_;
  Random random_{0};
  counter::Company company_;
  std::vector<std::string> steps_;
  std::string version_, everything_;
  std::uint64_t number_ = 0;
  int serial_ = 0;
  bool held_ = true;
};

}  // namespace kaunter
