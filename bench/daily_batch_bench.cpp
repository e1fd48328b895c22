// The daily batch over an office with 100,000 overdue rows, beside a plain program that inserts the
// same charges, known beforehand, in transactions of the same size; then how it grows with the days
// that were posted before.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "collections/daily_batch.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr DateTime kFirstDay{2024, 2, 1};
constexpr std::size_t kRowsAtOnce = 1000;

// Loans of twelve rows, of which five are overdue.
struct LateOffice : LargeOffice {
  LateOffice(int number, int loans) : LargeOffice(1'000 + number, loans) {
    session.clock.Set({2030, 1, 1, 9, 0, 0});
    Connection& main = session.Main();
    main.BeginTrans();
    main.Execute("UPDATE LoanMast SET LoanStatus='ACTIVE',LateChargePerDay=18,LoanBal=5163.60");
    for (int row = 1; row <= 12; ++row) {
      main.Execute(fmt::format(
          "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,Payment) SELECT "
          "{0},LoanID,CustID,DATEADD(month,{0},'2023-08-15'),430.30,400,0 FROM LoanMast",
          row));
    }
    main.Execute("UPDATE SchMast SET DueDate=DATEADD(year,10,DueDate) WHERE SchID>5");
    main.CommitTrans();
  }
  void Post(int day) { RunDailyBatch(session.Main(), kFirstDay.AddDays(day), "DailyBatch", {}); }
};

struct Charge {
  std::string loan;
  std::string customer;
  std::string company;
  int row;
  std::string due;
};

std::vector<Charge> ChargesOf(LateOffice& office) {
  std::vector<Charge> charges;
  Recordset row = office.session.Main().Query(
      "SELECT s.LoanID,l.CustID,l.CompCode,s.SchID,s.DueDate FROM SchMast as s INNER JOIN LoanMast "
      "as l on s.LoanID=l.LoanID WHERE s.SchID<=5 ORDER BY s.LoanID,s.SchID");
  for (; !row.Eof(); row.MoveNext()) {
    charges.push_back({row.Field(0).ToText(), row.Field(1).ToText(), row.Field(2).ToText(),
                       CLng(row.Field(3).ToText()), row.Field(4).ToText()});
  }
  return charges;
}

// The inserts alone: no row is looked for, nothing is worked out, no total is summed.
class PlainInserts {
 public:
  PlainInserts(const std::string& file, std::vector<Charge> charges)
      : plain_(file),
        charges_(std::move(charges)),
        insert_(std::move(plain_.Prepare(
            {"INSERT INTO ChargeMast (ChargeID,TrxDate,BatchDate,LoanID,CustID,CompCode,DueDate,"
             "LateAmt,LateInt,ChargeAmt,OrgAmt,ChargeDesc,UserID,DateCreated,PType) VALUES "
             "(?,?,?,?,?,?,?,430.3,18.0,0.21,0,'Late Interest','DailyBatch','2024-01-31 "
             "09:00:00','Batch')"})[0])) {}

  void Post(int day) {
    const DateTime date = kFirstDay.AddDays(day);
    const std::string text = date.ToCanonical();
    for (std::size_t i = 0; i < charges_.size(); ++i) {
      if (i % kRowsAtOnce == 0) plain_.Query(i == 0 ? "BEGIN IMMEDIATE" : "COMMIT;");
      if (i % kRowsAtOnce == 0 && i > 0) plain_.Query("BEGIN IMMEDIATE");
      const Charge& charge = charges_[i];
      const std::string id = BatchChargeID(charge.loan, std::to_string(charge.row), date);
      int place = 0;
      for (const std::string* value :
           {&id, &text, &text, &charge.loan, &charge.customer, &charge.company, &charge.due}) {
        sqlite3_bind_text(insert_.get(), ++place, value->c_str(), -1, SQLITE_STATIC);
      }
      plain_.Query(insert_.get());
    }
    plain_.Query("COMMIT");
  }

 private:
  Plain plain_;
  std::vector<Charge> charges_;
  sql::SqliteStatement insert_;
};

bool BesidePlainInserts() {
  constexpr int kLoans = 20'000;
  LateOffice ours(0, kLoans);
  LateOffice theirs(1, kLoans);
  const std::vector<Charge> charges = ChargesOf(theirs);
  PlainInserts plain(theirs.file(), charges);
  int our_day = 0;
  int their_day = 0;
  double best = 0;
  Measure measure{"post 100,000 overdue rows / plain inserts", 0, 3};
  const bool good = Compare(
      measure,
      [&] {
        const double ms = Time([&] { ours.Post(our_day++); }).wall;
        best = best == 0 ? ms : std::min(best, ms);
      },
      [&] { plain.Post(their_day++); });
  fmt::print("{} rows a day: {:.0f} rows a second\n", charges.size(),
             static_cast<double>(charges.size()) / best * 1000);
  return good;
}

Times Best(int count, const std::function<void()>& work) {
  Times best{1e9, 1e9};
  for (int i = 0; i < count; ++i) {
    const Times took = Time(work);
    best = {std::min(best.wall, took.wall), std::min(best.cpu, took.cpu)};
  }
  return best;
}

// How a day grows with what was charged before: the totals of the loans that it charges are summed
// anew. The plain inserts grow too: a row's charges fill a page of the key after a month or so, and
// then each row's next one goes to a page of its own.
bool Growth() {
  constexpr int kLoans = 100;
  constexpr int kDays = 5;
  LateOffice ours(2, kLoans);
  LateOffice theirs(3, kLoans);
  PlainInserts plain(theirs.file(), ChargesOf(theirs));
  int our_day = 0;
  int their_day = 0;
  for (const int history : {5, 30, 90, 180, 360}) {
    while (our_day < history) ours.Post(our_day++);
    while (their_day < history) plain.Post(their_day++);
    const Times our_best = Best(kDays, [&] { ours.Post(our_day++); });
    const Times their_best = Best(kDays, [&] { plain.Post(their_day++); });
    fmt::print(
        "500 rows after {:3} days: {:7.2f} ms, processor {:6.2f} ms, plain inserts {:6.2f}\n",
        history, our_best.wall, our_best.cpu, their_best.cpu);
  }
  return true;
}

}  // namespace
}  // namespace kaunter

int main() {
  return kaunter::RunBench([] { return kaunter::BesidePlainInserts() && kaunter::Growth(); });
}
