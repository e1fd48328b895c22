// An office that began with an older version: a column that came later is NULL in the rows of that
// time, where a row of today has 0 or an empty text. Every report prints the same of both.
#include <gtest/gtest.h>

#include <map>

#include "core/values.h"
#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

struct Printed {
  std::size_t rows = 0;
  // Of each column of the query its amounts added up, and how many texts are not empty.
  std::map<std::string, std::string> columns;
  bool operator==(const Printed&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Printed& printed) {
  out << printed.rows << " rows";
  for (const auto& [column, sum] : printed.columns) out << ' ' << column << '=' << sum;
  return out;
}

Printed Print(ReportOffice& office, const std::string& file) {
  ReportJob job;
  job.Connect = &office.Of(file);
  job.ReportFileName = test::SourceDir() + "/reports/" + file;
  // The letter of a settlement quotes what the screen worked out.
  job.ParameterFields = {{0, "SettleAmt;0;True"}, {1, "SettleDate;;True"}};
  const ReportRun run = RunWholeReport(job);
  Printed printed{run.rows.RowCount(), {}};
  for (std::size_t i = 0; i < run.rows.columns().size(); ++i) {
    Money sum;
    int texts = 0;
    for (const auto& row : run.rows.rows()) {
      if (row[i].AsDate() != nullptr) continue;
      if (row[i].AsText() == nullptr) {
        sum += MoneyOf(row[i]);
      } else if (!Trim(NullToEmpty(row[i])).empty()) {
        ++texts;
      }
    }
    printed.columns[run.rows.columns()[i].name] =
        fmt::format("{}/{}", ShowMoney(Value(sum)), texts);
  }
  return printed;
}

std::map<std::string, Printed> PrintAll(ReportOffice& office) {
  std::map<std::string, Printed> all;
  for (const auto& entry : std::filesystem::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string file = entry.path().filename().string();
    all[file] = Print(office, file);
  }
  return all;
}

void ForgetWhatIsEmpty(ReportOffice& office) {
  for (const char* table :
       {"CustMast", "RefererMast", "LoanMast", "SchMast", "SchMast2", "PaymentMast", "ChargeMast",
        "DrawDownMast", "CashBook", "PersonalExp", "CompMast", "FollowUpMast", "ChqMast",
        "SalesmanMast", "SupplierTrans", "SupplierMast", "AppMast", "AppMastLink"}) {
    const Recordset none = office.main().Query(fmt::format("SELECT * FROM {} WHERE 1=0", table));
    for (const Column& column : none.columns()) {
      const char* empty = column.type == FieldType::kMoney  ? "0"
                          : column.type == FieldType::kText ? "''"
                                                            : nullptr;
      if (empty == nullptr) continue;
      office.Run(
          fmt::format("UPDATE {0} SET [{1}]=NULL WHERE [{1}]={2}", table, column.name, empty));
    }
  }
}

TEST(OldOffice, NullCountsAsNothing) {
  ReportOffice office;
  const auto before = PrintAll(office);
  ForgetWhatIsEmpty(office);
  ASSERT_EQ(ScalarQuery(office.main(), "SELECT COUNT(*) FROM SchMast WHERE Payment IS NULL"),
            ScalarQuery(office.main(), "SELECT COUNT(*) FROM SchMast WHERE isnull(Payment, 0)=0"));
  for (const auto& [file, printed] : before) EXPECT_EQ(Print(office, file), printed) << file;
}

}  // namespace
}  // namespace kaunter
