// The yearly return and New Lampiran over 1,000, 10,000 and 100,000 loans, beside a plain program
// that runs the same statements; and how they grow.
#include <fmt/format.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "compliance/new_lampiran.h"
#include "compliance/yearly_return.h"
#include "platform/sql/translator/translate.h"

namespace kaunter {
namespace {

// The days of this office lie scattered over its tables: once they are larger than the engine's
// cache a walk by date reads most rows anew, for a plain program too.
constexpr double kScattered = 2.5;

constexpr const char* kPc = "PC-01";
constexpr const char* kLampiran = "NewLampiran.rpt";

// Loans of every kind that a figure asks for, made within fourteen years, with three payments each.
struct ReturnOffice : LargeOffice {
  explicit ReturnOffice(int count) : LargeOffice(count / 2, count), loans(count), plain(file()) {
    Connection& main = session.Main();
    main.BeginTrans();
    const auto by_digit = [](const char* digits, std::initializer_list<const char*> values) {
      std::string text = "CASE " + std::string(digits);
      int at = 0;
      for (const char* value : values) text += fmt::format(" WHEN '{}' THEN {}", at++, value);
      return text + " ELSE '' END";
    };
    main.Execute(fmt::format(
        "UPDATE CustMast SET AreaCode={},CustRace={},Employer={},OldCode={},CustCompIncome={}",
        by_digit("RIGHT(CustID,1)", {"'COMPANY'", "'PERSONAL'", "'PERSONAL'", "'PERSONAL'",
                                     "'PERSONAL'", "'PERSONAL'", "'PERSONAL'", "'PERSONAL'"}),
        by_digit("RIGHT(CustID,1)",
                 {"''", "'MELAYU'", "'CINA'", "'INDIA'", "'IBAN'", "'BUKAN WARGANEGARA'"}),
        by_digit("SUBSTRING(CustID,6,1)",
                 {"'Government'", "'Private'", "'Own Business'", "'Unemployment'", "'Student'"}),
        by_digit("SUBSTRING(CustID,6,1)", {"'Bumi'", "'Non Bumi'", "'Foreigner'"}),
        "CASE SUBSTRING(CustID,5,1) WHEN '0' THEN 400 WHEN '1' THEN 900 WHEN '2' THEN 4000 WHEN "
        "'3' THEN 9000 ELSE 12000 END"));
    main.Execute("UPDATE LoanMast SET TotLoanInt=600");
    for (int number = 1; number <= 3; ++number) {
      main.Execute(fmt::format(
          "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt,ChargeAmt,DiscAmt) SELECT "
          "LoanID+'-{0:03}',LoanID,CompCode,DATEADD(month,{0},TrxDate),430.30,3,0 FROM LoanMast",
          number));
    }
    main.CommitTrans();
    main.SetTrace([this](std::string_view, std::string_view sql) {
      std::vector<std::string> single;
      sql::SplitBatch(sql, &single);
      sent.insert(sent.end(), single.begin(), single.end());
    });
    Yearly();
    yearly = InPlainWords(std::exchange(sent, {}), file());
    Lampiran();
    lampiran = InPlainWords(std::exchange(sent, {}), file());
    main.SetTrace({});
  }

  void Yearly() { CountYearly(session.Main(), {period, true, false}, true, {}); }
  void Lampiran() { StageNewLampiran(session, quiet, period, kPc, kLampiran); }

  int loans;
  ReturnPeriod period{{"HQ", "AB"}, {2010, 1, 1}, {2023, 12, 31}};
  SilentDesk quiet;
  Plain plain;
  std::vector<std::string> sent, yearly, lampiran;
};

bool Bench() {
  bool good = true;
  std::unique_ptr<ReturnOffice> before;
  for (const int loans : {1'000, 10'000, 100'000}) {
    auto office = std::make_unique<ReturnOffice>(loans);
    const int runs = loans > 10'000 ? 2 : 5;
    const auto ten_times = [&](void (ReturnOffice::*work)()) {
      for (int i = 0; i < 10; ++i) (before.get()->*work)();
    };
    good &= Compare(
        {fmt::format("{} loans, the yearly figures / their statements", loans), 1.5, runs},
        [&] { office->Yearly(); }, [&] { office->plain.Run(office->yearly); });
    if (before) {
      good &= Compare(
          {"  growth per loan", kScattered, runs}, [&] { office->Yearly(); },
          [&] { ten_times(&ReturnOffice::Yearly); });
    }
    good &= Compare(
        {fmt::format("{} loans, New Lampiran / its statements", loans), 3, runs},
        [&] { office->Lampiran(); }, [&] { office->plain.Run(office->lampiran); });
    if (before) {
      good &= Compare(
          {"  growth per loan", 1.5, runs}, [&] { office->Lampiran(); },
          [&] { ten_times(&ReturnOffice::Lampiran); });
    }
    before = std::move(office);
  }
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
