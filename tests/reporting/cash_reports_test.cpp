// The expenses, the cash book and its balances, the suppliers' documents and the cash voucher: each
// file's rows and sums against plain statements or figures worked out by hand.
#include <gtest/gtest.h>

#include "reporting/report_criteria.h"
#include "tests/reporting/report_rows.h"

namespace kaunter {
namespace {

using report_rows::kPlain;
using report_rows::kSpecial;
using report_rows::Picked;
using report_rows::Rows;

// HQ begins with 10,000.00 in cash, pays 2,500.75 and 4,800.00, carries 1,000.00 to the bank; its
// balances end at 4,200.00 and 3,500.75. KL owes its bank 1,200.00.
struct CashOffice : ReportOffice {
  CashOffice() {
    Rows("CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CatCode)",
         {"'HQ','2024-01-10','Cash to Bank','Banked','',1000,4200,3500.75,'BANKING'"});
    Rows("CashBookCat (CatCode,CatDesc)", {"'BANKING','Carried to the bank'"});
    Run("UPDATE DrawDownMast SET Payee='Rajendran a/l Muthusamy',Remarks='By his order' WHERE "
        "SID='D2'");
    Rows("DrawDownMast (SID,LoanID,TrxDate,CompCode,DrawDownAmt)",
         {"'D5','L2','2023-12-20','HQ',500.25"});
    Rows("SupplierMast (SuppID,CompCode,SuppName,Tel1)",
         {"'S1','HQ','Syarikat Lelong Kenderaan Sentosa Sdn Bhd','03-21458899'"});
    Rows(
        "SupplierTrans (TransID,SuppID,LoanID,CustID,CompCode,TrxDate,TransDesc,TransType,TransAmt,"
        "UserID)",
        {"'SI1','S1','L4','C3','HQ','2024-01-04','Towing of the lorry','Invoice',450.50,'AMY'",
         "'SC1','S1','L4','C3','HQ','2024-01-09','Towed a shorter way','Credit Note',-50.50,'BOB'",
         "'SP1','S1','','','HQ','2024-01-15','Paid','Payment',-300,'AMY'",
         // A supplier that was deleted, in another company.
         "'SI2','S9','','','KL','2023-12-30','Stamps','Invoice',12.30,'EVE'"});
  }
};

void ExpectAll(const Rows& rows) {
  CashOffice office;
  ReportCheck check(office);
  for (const ReportExpectation& row : rows) check.Expect(row);
}

// The formula of a report's own criteria.
std::string Asked(const std::string& file, const std::string& from, const std::string& to,
                  std::vector<StagedFilter> filters = {}) {
  return FormulaOf(CriteriaOf(file).DateField, from, to, std::move(filters), file);
}

TEST(CashReports, Expenses) {
  for (const char* file : {"PersonalExpReport.rpt", "PersonalExpCreatedDate.rpt"}) {
    ExpectAll({{.file = file,
                .formula = "",
                .parameters = kPlain,
                .sums = {{"DebitAmt", "SELECT SUM(DebitAmt) FROM PersonalExp"},
                         {"CreditAmt", "SELECT SUM(CreditAmt) FROM PersonalExp"}},
                .count = "SELECT COUNT(*) FROM PersonalExp"},
               {.file = file,
                .formula = Asked(file, "01-01-2024", "04-01-2024",
                                 {Picked("{PersonalExp.CompCode}", {"HQ", "KL"}),
                                  Picked("{PersonalExp.CBCat}", {"LOAN"}),
                                  Picked("{PersonalExp.UserID}", {"EVE"})}) +
                           " and {PersonalExp.TrxID} >= '1' and {PersonalExp.TrxID} <= '1' ",
                .parameters = kPlain,
                .sums = {{"CreditAmt", "SELECT 1800"}},
                .count = "SELECT 1"}});
  }
  // The electricity of December was entered in January.
  ExpectAll({{.file = "PersonalExpCreatedDate.rpt",
              .formula = Asked("PersonalExpCreatedDate.rpt", "02-01-2024", "02-01-2024"),
              .parameters = kPlain,
              .sums = {{"CreditAmt", "SELECT 212.35"}},
              .count = "SELECT 1"}});
}

TEST(CashReports, CashBook) {
  // The Chinese file is a layout of its own, by category, and is looked at like the English one.
  for (const char* file : {"CashBook.rpt", "CashBookC.rpt"}) {
    ExpectAll({{.file = file,
                .formula = "",
                .parameters = kPlain,
                .sums = {{"CashIn", "SELECT 10000"},
                         {"CashOut", "SELECT 4800 + 1000"},
                         {"BankIn", "SELECT 2500.75 + 1000"},
                         {"BankOut", "SELECT 1200"}},
                .count = "SELECT COUNT(*) FROM CashBook",
                .twin = "-"},
               {.file = file,
                .formula = Asked(file, "01-01-2024", "31-01-2024",
                                 {Picked("{CashBook.CompCode}", {"HQ"}),
                                  Picked("{CashBook.TranType}", {"Cash Out", "Bank Out"}),
                                  Picked("{CashBook.CatCode}", {"LOAN"})}),
                .parameters = kPlain,
                .sums = {{"CashOut", "SELECT 4800"}, {"CashBal", "SELECT 5200"}},
                .count = "SELECT 1",
                .twin = "-"}});
  }
}

TEST(CashReports, BalancesOfTheCashBook) {
  const std::string later = Asked("CBBalance.rpt", "05-01-2024", "31-01-2024");
  const std::string before = Asked("CBBalance.rpt", "01-01-2024", "04-01-2024");
  ExpectAll({
      {.file = "CBBalance.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Forward", "SELECT 0"},
                {"AmtIn", "SELECT 10000 + 2500.75 + 1000"},
                {"AmtOut", "SELECT 4800 + 1000 + 1200"},
                {"Closing", "SELECT 4200 + 3500.75 - 1200"}},
       .count = "SELECT 2 * 2"},
      {.file = "CBBalance.rpt",
       .formula = later,
       .parameters = kPlain,
       .sums = {{"Forward", "SELECT 10000 + 2500.75"}, {"Closing", "SELECT 6500.75"}},
       .count = "SELECT 2 * 2"},
      // KL had no movement yet.
      {.file = "CBBalance.rpt",
       .formula = before,
       .parameters = kPlain,
       .sums = {{"Forward", "SELECT 0"}, {"Closing", "SELECT 12500.75"}},
       .count = "SELECT 2"},
      // What was carried to the bank made nobody richer.
      {.file = "CBImprovement.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"AmtIn", "SELECT 12500.75"},
                {"AmtOut", "SELECT 6000"},
                {"Improvement", "SELECT 6500.75"},
                {"Balance", "SELECT 4200 + 3500.75 - 1200"}},
       .count = "SELECT 2"},
      {.file = "CBImprovement.rpt",
       .formula = before,
       .parameters = kPlain,
       .sums = {{"Improvement", "SELECT 12500.75"}},
       .count = "SELECT 1"},
      {.file = "CBIncome.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Income", "SELECT SUM(TranAmt) FROM CashBook WHERE TranType LIKE '% In'"},
                {"AmtOut", "SELECT SUM(TranAmt) FROM CashBook WHERE TranType LIKE '% Out'"}},
       .count = "SELECT 3"},
      {.file = "CBIncome.rpt",
       .formula = later,
       .parameters = kPlain,
       .sums = {{"Income", "SELECT 0"}, {"Net", "SELECT -6000"}},
       .count = "SELECT 2"},
  });
}

TEST(CashReports, Suppliers) {
  ExpectAll({{.file = "SuppTrans.rpt",
              .formula = "",
              .parameters = kPlain,
              .sums = {{"Invoiced", "SELECT 462.80"},
                       {"Credited", "SELECT 50.50"},
                       {"Paid", "SELECT 300"},
                       // 450.50, 400.00 and 100.00 of S1, 12.30 of S9
                       {"", "SELECT 962.80"}},
              .count = "SELECT COUNT(*) FROM SupplierTrans",
              .twin = "-"},
             {.file = "SuppTrans.rpt",
              .formula = Asked("SuppTrans.rpt", "01-01-2024", "10-01-2024",
                               {Picked("{SupplierTrans.CompCode}", {"HQ"}),
                                Picked("{SupplierTrans.TransType}", {"Invoice"}),
                                Picked("{SupplierTrans.UserID}", {"AMY"})}),
              .parameters = kPlain,
              .sums = {{"Invoiced", "SELECT 450.50"}},
              .count = "SELECT 1",
              .twin = "-"}});
}

// L5 was not paid out, so no voucher; L2 went out in two drawdowns; L4's drawdown is gone, and the
// loan itself says what was paid.
TEST(CashReports, VoucherForWhatWasPaidOut) {
  CashOffice office;
  office.Run("DELETE FROM DrawDownMast WHERE LoanID='L4'");
  ReportCheck check(office);
  for (const ReportExpectation& row :
       Rows{{.file = "CashVoucher.rpt",
       .formula = "",
       .parameters = kPlain,
       .sums = {{"Amount", "SELECT 4800 + 60000 + 500.25 + 1200 + 8000"}},
       .count = "SELECT 5",
       .twin = "-"},
            {.file = "CashVoucher.rpt",
            .formula = Asked(
                "CashVoucher.rpt", "01-12-2023", "31-12-2023",
                {Picked("{LoanMast.CompCode}", {"HQ"}), Picked("{LoanMast.LoanTypeID}", {"MONTH"}),
                 Picked("{LoanMast.AdvertiseID}", {"NIL"}),
                 Picked("{LoanMast.LoanGroupID}", {"PINJAMAN SEMASA"}),
                 Picked("{CustMast.CompCatCode}", {"FACT"})}),
            .parameters = kSpecial,
            .sums = {{"Amount", "SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID='L2'"}},
            .count = "SELECT 2",
            .twin = "-"}}) {
    check.Expect(row);
  }
}

}  // namespace
}  // namespace kaunter
