// The statement of account over 5,000 loans with their movements, beside a plain program that runs
// the same statements on the raw engine; and how it grows from 500 loans.
#include <fmt/format.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "core/values.h"
#include "platform/sql/sqlite/sqlite_catalogue.h"
#include "platform/sql/sqlite/sqlite_literal.h"
#include "platform/sql/translator/translate.h"
#include "reporting/staged_reports.h"

namespace kaunter {
namespace {

// A year of movements on each loan, half of them before the period of the statement.
struct MovingOffice : LargeOffice {
  explicit MovingOffice(int loans) : LargeOffice(loans / 2, loans, 12) {
    session.clock.Set({2024, 12, 31, 9, 0, 0});
    Connection& main = session.Main();
    main.BeginTrans();
    main.Execute("UPDATE LoanMast SET TrxDate='2024-01-02',TotLoanInt=600");
    main.Execute(
        "INSERT INTO DrawDownMast (SID,LoanID,CompCode,TrxDate,DrawDownAmt) SELECT LoanID,LoanID,"
        "CompCode,TrxDate,LoanAmt FROM LoanMast");
    for (int month = 1; month <= 12; ++month) {
      main.Execute(fmt::format(
          "INSERT INTO PaymentMast (PayID,LoanID,CompCode,PayDate,PayAmt,IntAmt,ChargeAmt,IntPay,"
          "CapPay,DiscAmt,CollectInfoID,Bank,ChqNo) SELECT LoanID+'-{0:03}',LoanID,CompCode,"
          "'2024-{0:02}-15',430.30,1.20,0,30.30,400,{1},'CHEQUE','PBB','000123' FROM LoanMast",
          month, month % 6 == 0 ? "5" : "0"));
      if (month % 3 != 0) continue;
      main.Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,LoanID,CompCode,TrxDate,DueDate,PType,ChargeAmt,"
          "ChargeDesc) SELECT LoanID+'-V{0}',LoanID,CompCode,'2024-{0:02}-20','2024-{0:02}-20',"
          "'Invoice',12.50,'letter of demand' FROM LoanMast",
          month));
    }
    for (int day = 1; day <= 24; ++day) {  // two days late in each month
      const std::string date = fmt::format("2024-{:02}-{:02}", (day + 1) / 2, 16 + day % 2);
      main.Execute(fmt::format(
          "INSERT INTO ChargeMast (ChargeID,LoanID,CompCode,TrxDate,BatchDate,DueDate,PType,"
          "ChargeAmt) SELECT LoanID+'-B{0}',LoanID,CompCode,'{1}','{1}','{1}','Batch',0.35 FROM "
          "LoanMast",
          day, date));
    }
    main.CommitTrans();
  }
  bool Stage() {
    return StageStatement(session, desk,
                          {"StatementList.rpt", "PC-01", "01-07-2024", "31-12-2024", "", "", {}});
  }
};

// A plain program that knows every statement and its values beforehand, keeps one prepared for each
// shape, and only binds, runs and reads.
class PlainStatement {
 public:
  explicit PlainStatement(MovingOffice& office) : plain_(office.file()) {
    std::vector<std::string> sent;
    office.session.Main().SetTrace([&](std::string_view, std::string_view batch) {
      if (batch == "BEGIN TRANSACTION" || batch == "COMMIT") return;
      sql::SplitBatch(batch, &sent);
    });
    office.Stage();
    office.session.Main().SetTrace({});
    sql::SqliteCatalogue catalogue(plain_.handle(), office.file());
    for (const std::string& statement : sent) {
      sql::Shape shape = std::move(sql::SplitBatch(statement, nullptr).at(0));
      auto found = kept_.find(shape.key);
      if (found == kept_.end()) {
        auto translated = sql::Translate(statement, catalogue, sql::Dialect::kSqlite).at(0);
        auto prepared = std::move(plain_.Prepare({translated.text}).at(0));
        found = kept_.emplace(shape.key, Kept{std::move(translated), std::move(prepared)}).first;
      }
      calls_.push_back({&found->second, std::move(shape.literals)});
    }
  }

  void Run() {
    plain_.Query("BEGIN IMMEDIATE");
    for (const Call& call : calls_) {
      const auto& parameters = call.kept->translated.parameters;
      for (std::size_t i = 0; i < parameters.size(); ++i) {
        sql::BindLiteral(call.kept->prepared.get(), static_cast<int>(i) + 1,
                         call.literals[parameters[i].literal], parameters[i]);
      }
      plain_.Query(call.kept->prepared.get());
    }
    plain_.Query("COMMIT");
  }
  std::size_t size() const { return calls_.size(); }
  std::size_t shapes() const { return kept_.size(); }

 private:
  struct Kept {
    sql::Translated translated;
    sql::SqliteStatement prepared;
  };
  struct Call {
    Kept* kept;
    std::vector<std::string> literals;
  };
  Plain plain_;
  std::unordered_map<std::string, Kept> kept_;
  std::vector<Call> calls_;
};

bool Bench() {
  MovingOffice small(500);
  MovingOffice large(5'000);
  if (!small.Stage() || !large.Stage()) return false;
  PlainStatement plain(large);
  fmt::print("5,000 loans: {} statements of {} shapes, {} rows\n", plain.size(), plain.shapes(),
             ScalarQuery(large.session.Main(), "SELECT COUNT(*) FROM MasterReport"));
  bool good = Compare(
      {"statement of 5,000 loans / plain", 2.5, 5}, [&] { large.Stage(); }, [&] { plain.Run(); });
  good &= Compare(
      {"growth, per loan, from 500 loans", 1.5, 5}, [&] { large.Stage(); },
      [&] {
        for (int i = 0; i < 10; ++i) small.Stage();
      });
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
