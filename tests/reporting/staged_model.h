// A second model of the staged reports: an office as plain lists, and each report as one walk over
// them, without a statement.
#pragma once

#include <fmt/format.h>

#include <array>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/values.h"
#include "tests/reporting/staged_office.h"

namespace kaunter {

struct PlainOffice {
  struct Loan {
    std::string id, company, customer;
    DateTime date;
    Money amount, paid_out, interest;
  };
  struct Drawdown {
    std::string sid, loan, company, bank;
    DateTime date;
    Money amount;
  };
  struct Payment {
    std::string id, loan, company, bank;
    DateTime date;
    std::optional<Money> pay;  // PayAmt may be Null, and a sum with it
    Money int_amt, charge, collector, discount, top_up, interest_paid, capital_paid, extra, balance,
        top;
    int top_term = 0;
  };
  struct Charge {
    std::string id, loan, company, ptype;
    DateTime date;
    Money amount;
  };
  struct Due {
    std::string loan;
    DateTime date;
    Money capital, interest;
  };
  struct Expense {
    std::string company, bank;
    DateTime date;
    Money debit, credit;
  };
  std::vector<std::string> companies = {"HQ", "KL", "JB"};
  std::vector<Loan> loans;
  std::vector<Drawdown> drawdowns;
  std::vector<Payment> payments;
  std::vector<Charge> charges;
  std::vector<Due> schedule;
  std::vector<Expense> expenses;

  const Loan* Find(const std::string& id) const {
    for (const Loan& loan : loans) {
      if (loan.id == id) return &loan;
    }
    return nullptr;
  }
};

// An office of random movements around the first half of 2024, many of them on the days that a
// period begins or ends.
class RandomOffice {
 public:
  explicit RandomOffice(unsigned seed) : random_(seed) {
    for (int i = 0; i < 25; ++i) AddLoan(fmt::format("L{:02}", i));
    for (int i = 0; i < 40; ++i) {
      office_.expenses.push_back(
          {Company(), Bank(), Date(), Amount(), OneIn(3) ? Amount() : Money()});
    }
  }
  const PlainOffice& office() const { return office_; }

 private:
  int Up(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  bool OneIn(int n) { return Up(n) == 0; }
  Money Amount() { return Money::FromTenThousandths(100LL * (1 + Up(200'000))); }
  std::string Company() { return office_.companies[static_cast<std::size_t>(Up(3))]; }
  std::string Bank() { return std::array{"", "PBB", "MBB"}[static_cast<std::size_t>(Up(3))]; }
  DateTime Date() {
    DateTime date = OneIn(3)
                        ? std::array<DateTime, 4>{{{2024, 3, 1},
                                                   {2024, 2, 29},
                                                   {2024, 4, 15},
                                                   {2024, 4, 16}}}[static_cast<std::size_t>(Up(4))]
                        : DateTime{2023, 11, 1}.AddDays(Up(240));
    if (OneIn(8)) date.hour = 9;
    return date;
  }
  void AddLoan(const std::string& id) {
    const std::string company = Company();
    office_.loans.push_back({id, company, "C1", Date(), Amount(), Amount(), Amount()});
    for (int i = Up(4); i > 0; --i) {
      // A drawdown may stand under another company than its loan.
      office_.drawdowns.push_back({fmt::format("D{}{}", id, i), id, OneIn(5) ? Company() : company,
                                   Bank(), Date(), Amount()});
    }
    for (int i = Up(8); i > 0; --i) {
      PlainOffice::Payment p;
      p.id = fmt::format("{}-{:03}", id, i);
      p.loan = id;
      p.company = company;
      p.bank = Bank();
      p.date = Date();
      if (!OneIn(10)) p.pay = Amount();
      for (Money* amount : {&p.int_amt, &p.charge, &p.collector, &p.discount, &p.top_up,
                            &p.interest_paid, &p.capital_paid, &p.extra, &p.balance}) {
        if (OneIn(2)) *amount = Amount();
      }
      if (OneIn(4)) p.top = Amount();
      p.top_term = OneIn(3) ? 0 : 2;  // one without the other is no top-up
      office_.payments.push_back(p);
    }
    static const std::array kKinds = {
        "Batch",   "Batch",   "Batch",       "Batch Loan Interest",
        "Invoice", "Payment", "Credit Note", "Batch Term End Interest"};
    for (int i = Up(20); i > 0; --i) {
      const std::string kind = kKinds[static_cast<std::size_t>(Up(8))];
      Money amount = OneIn(6) ? Money() : Amount();
      if (kind == "Payment" || kind == "Credit Note") amount = -amount;
      office_.charges.push_back(
          {fmt::format("X{}{}", id, i), id, OneIn(5) ? Company() : company, kind, Date(), amount});
    }
    for (int i = Up(12); i > 0; --i) {
      office_.schedule.push_back({id, Date().DateOnly(), Amount(), Amount()});
    }
  }

  std::mt19937 random_;
  PlainOffice office_;
};

inline void Store(const PlainOffice& plain, StagedOffice& o) {
  o.main().BeginTrans();
  o.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('JB','Johor Bahru')");
  for (const auto& l : plain.loans) {
    o.AddLoan(l.id, l.date.ToCanonical(), l.amount.ToText(), l.interest.ToText(), l.company);
    o.Run(fmt::format("UPDATE LoanMast SET PayOutAmt={} WHERE LoanID={}", l.paid_out.ToText(),
                      QuoteStr(l.id)));
  }
  for (const auto& d : plain.drawdowns) {
    o.AddDrawdown(d.sid, d.loan, d.date.ToCanonical(), d.amount.ToText(), d.company, d.bank);
  }
  for (const auto& p : plain.payments) {
    o.AddPayment(
        p.id, p.loan, p.date.ToCanonical(),
        fmt::format(
            "PayAmt={},IntPay={},CapPay={},IntAmt={},ChargeAmt={},CollectorAmt={},DiscAmt={},"
            "TopUpAmt={},PayExtra={},Bank={},CompCode={},NewLoanBal={},TopAmt={},TopTerm={}",
            p.pay ? p.pay->ToText() : "null", p.interest_paid.ToText(), p.capital_paid.ToText(),
            p.int_amt.ToText(), p.charge.ToText(), p.collector.ToText(), p.discount.ToText(),
            p.top_up.ToText(), p.extra.ToText(), QuoteStr(p.bank), QuoteStr(p.company),
            p.balance.ToText(), p.top.ToText(), p.top_term));
  }
  for (const auto& c : plain.charges) {
    o.AddCharge(c.id, c.loan, c.date.ToCanonical(), c.ptype, c.amount.ToText(), "", "2024-01-31",
                "", c.company);
  }
  int row = 0;
  for (const auto& due : plain.schedule) {
    o.AddScheduleRow(due.loan, ++row, due.date.ToCanonical(), due.capital.ToText(),
                     due.interest.ToText());
  }
  for (const auto& e : plain.expenses) {
    o.AddExpense(e.date.ToCanonical(), e.debit.ToText(), e.credit.ToText(), "", e.company, e.bank);
  }
  o.main().CommitTrans();
}

// The question put to every report.
struct PlainRun {
  DateTime from, to;
  std::set<std::string> companies, banks;  // empty: all
  std::string first_loan, last_loan;       // empty: all

  bool Of(const std::string& company) const {
    return companies.empty() || companies.contains(company);
  }
  bool Through(const std::string& bank) const { return banks.empty() || banks.contains(bank); }
  bool Within(const std::string& loan) const {
    return first_loan.empty() || (loan >= first_loan && loan <= last_loan);
  }
  bool In(const DateTime& date) const { return date >= from && date <= to; }
};

// A row's amounts, c1 to c14, by its key.
using PlainAmounts = std::array<Money, 15>;
using PlainRows = std::multimap<std::string, PlainAmounts>;

inline PlainRows StatementModel(const PlainOffice& office, const PlainRun& run) {
  PlainRows rows;
  std::map<std::string, PlainAmounts> opening;
  std::map<std::string, PlainAmounts> months;
  const auto post = [&](const std::string& loan, const std::string& key, const DateTime& date,
                        std::initializer_list<std::pair<std::size_t, Money>> amounts) {
    if (date > run.to) return;
    PlainAmounts row;
    PlainAmounts& target = date < run.from ? opening[loan] : row;
    for (const auto& [column, amount] : amounts) target[column] += amount;
    if (date >= run.from) rows.emplace(key, row);
  };
  for (const auto& loan : office.loans) {
    if (!run.Of(loan.company) || !run.Within(loan.id)) continue;
    post(loan.id, loan.id + "-i", loan.date, {{1, loan.interest}, {7, loan.interest}});
    for (const auto& p : office.payments) {
      if (p.loan != loan.id) continue;
      const Money paid = p.pay ? *p.pay + p.int_amt + p.charge : Money();
      const Money kept = p.date < run.from ? p.discount : Money();
      post(loan.id, p.id, p.date,
           {{2, paid},
            {9, p.interest_paid},
            {10, p.capital_paid},
            {12, p.int_amt},
            {13, p.extra},
            {14, kept}});
      if (const Money top = p.top_term * p.top; !top.IsZero()) {
        post(loan.id, p.id + "+", p.date, {{1, top}, {8, top}});
      }
      if (p.date >= run.from && !p.discount.IsZero()) {
        post(loan.id, p.id + "*", p.date, {{2, p.discount}, {14, p.discount}});
      }
    }
    for (const auto& c : office.charges) {
      if (c.loan != loan.id || c.ptype == "Payment") continue;
      if (c.ptype != "Batch") {
        const bool credit = c.ptype == "Credit Note" && c.date >= run.from;
        post(loan.id, c.id, c.date, {{credit ? 2 : 1, c.amount}, {11, c.amount}});
      } else if (c.date < run.from) {  // whatever the end of the range
        opening[loan.id][1] += c.amount;
        opening[loan.id][11] += c.amount;
      } else if (c.date <= run.to && !c.amount.IsZero()) {
        PlainAmounts& month = months[fmt::format("{}{}{}", c.date.month, c.date.year, loan.id)];
        month[1] += c.amount;
        month[11] += c.amount;
      }
    }
  }
  for (const auto& d : office.drawdowns) {  // by their own company
    if (!run.Of(d.company) || !run.Within(d.loan)) continue;
    post(d.loan, d.loan, d.date, {{1, d.amount}, {8, d.amount}});
  }
  for (const auto& [key, amounts] : months) rows.emplace(key, amounts);
  for (const auto& loan : office.loans) {  // a loan made later has no row that could take anything
    if (run.Of(loan.company) && run.Within(loan.id) && loan.date <= run.to) {
      rows.emplace("#-" + loan.id, opening[loan.id]);
    }
  }
  return rows;
}

inline PlainRows SummaryModel(const PlainOffice& office, const PlainRun& run) {
  PlainRows rows;
  const DateTime year_start{run.to.year, 1, 1};
  for (const auto& loan : office.loans) {
    if (!run.Of(loan.company) || loan.date > run.to) continue;
    PlainAmounts row;
    row[1] = loan.amount;
    for (const auto& due : office.schedule) {
      if (due.loan != loan.id) continue;
      row[6] += due.capital;
      if (run.In(due.date)) row[2] += due.interest;
      if (due.date >= year_start && due.date <= run.to) row[3] += due.interest;
    }
    for (const auto& c : office.charges) {
      if (c.loan != loan.id || c.ptype != "Batch" || !run.Of(c.company)) continue;
      if (run.In(c.date)) row[4] += c.amount;
      if (c.date >= year_start && c.date <= run.to) row[5] += c.amount;
    }
    for (const auto& p : office.payments) {
      if (p.loan == loan.id && p.date <= run.to) row[7] += p.capital_paid;
    }
    rows.emplace(loan.id, row);
  }
  return rows;
}

inline PlainRows AccountModel(const PlainOffice& office, const PlainRun& run) {
  PlainRows rows;
  std::map<std::string, PlainAmounts> opening;
  for (const auto& company : office.companies) {
    if (run.Of(company)) opening[company] = {};
  }
  const auto wanted = [&](const auto& row) { return run.Of(row.company) && run.Through(row.bank); };
  for (const auto& d : office.drawdowns) {
    if (!wanted(d)) continue;
    if (d.date < run.from) opening[d.company][2] += d.amount;
    PlainAmounts row;
    row[2] = row[7] = d.amount;
    if (run.In(d.date)) rows.emplace(d.loan, row);
  }
  for (const auto& p : office.payments) {
    if (!wanted(p)) continue;
    PlainAmounts row;
    if (p.pay) row[3] = *p.pay + p.int_amt + p.collector + p.charge - p.discount;
    row[5] = -p.top_up;
    if (p.date < run.from) opening[p.company][3] += row[3];
    if (p.date < run.from) opening[p.company][5] += row[5];
    if (run.In(p.date)) rows.emplace(p.id, row);
  }
  for (std::size_t i = 0; i < office.expenses.size(); ++i) {
    const auto& e = office.expenses[i];
    if (!wanted(e)) continue;
    PlainAmounts row;
    row[4] = e.debit - e.credit;
    if (e.date < run.from) opening[e.company][4] += row[4];
    if (run.In(e.date)) rows.emplace(std::to_string(i + 1), row);
  }
  for (const auto& [company, amounts] : opening) rows.emplace("#-" + company, amounts);
  return rows;
}

inline PlainRows DailyModel(const PlainOffice& office, const PlainRun& run) {
  PlainRows rows;
  for (const auto& loan : office.loans) {
    PlainAmounts row;
    row[1] = loan.amount;
    row[2] = loan.paid_out;
    if (run.In(loan.date)) rows.emplace(loan.id, row);
  }
  for (const auto& p : office.payments) {
    PlainAmounts row;
    if (p.pay) row[3] = *p.pay + p.int_amt + p.charge + p.collector - p.top_up - p.discount;
    row[4] = p.balance;
    if (p.pay) row[5] = *p.pay;
    if (run.In(p.date)) rows.emplace(p.id, row);
  }
  return rows;
}

inline PlainRows RekodModel(const PlainOffice& office, const PlainRun& run) {
  PlainRows rows;
  for (const auto& loan : office.loans) {
    if (!run.Of(loan.company) || !run.In(loan.date)) continue;
    PlainAmounts row;
    for (const auto& p : office.payments) {
      if (p.loan == loan.id && p.date <= run.to && p.pay) row[1] += *p.pay - p.discount;
    }
    rows.emplace(loan.id, row);
  }
  return rows;
}

}  // namespace kaunter
