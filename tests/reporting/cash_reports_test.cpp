// The expenses, the cash book and its balances, the suppliers' documents and the cash voucher: each
// file's rows and sums against plain statements or figures worked out by hand.
#include <gtest/gtest.h>

#include "reporting/report_criteria.h"
#include "tests/reporting/report_office.h"

namespace kaunter {
namespace {

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
    Rows("GoldTransMast (LoanID,CompCode,CustID,TrxDate,TotAmt,OtherAmt,PayAmt,UserID)",
         {"'B0001','HQ','C1','2024-01-05',3400.50,-20.50,3380,'AMY'",
          // Its items are gone.
          "'B0002','HQ','C2','2024-01-20',0,0,15,'BOB'",
          "'B0003','KL','C9','2023-12-30',70,0,70,''"});
    Rows(
        "LoanCollateral (LoanID,SeqNo,CompCode,CustID,GoldID,GoldDesc,Qty,Weight,TotalAmt,LoanAmt,"
        "SoldDate,SoldAmt)",
        {"'B0001',2,'HQ','C1','NIL','Bracelet with the clasp of another one',1,10.4250,2606.25,"
         "2500,'2024-02-10',2700",
         "'B0001',3,'HQ','C1','G999','Two rings',2,4.5,0,900.50,NULL,0",
         "'B0003',1,'KL','C9','NIL','Coin',1,0.3333,70,70,'2023-12-31',64.55"});
  }
};

// The formula of a report's own criteria.
std::string Asked(const std::string& file, const std::string& from, const std::string& to,
                  const std::string& lists = {}) {
  return FormulaOf(CriteriaOf(file).DateField, from, to, lists, file);
}

TEST(CashReports, Expenses) {
  for (const char* file : {"PersonalExpReport.rpt", "PersonalExpCreatedDate.rpt"}) {
    ExpectAll<CashOffice>(
        {Row(file,
             {{"DebitAmt", "SELECT SUM(DebitAmt) FROM PersonalExp"},
              {"CreditAmt", "SELECT SUM(CreditAmt) FROM PersonalExp"}},
             "SELECT COUNT(*) FROM PersonalExp"),
         Row(file, {{"CreditAmt", "1800"}}, "1",
             Asked(file, "01-01-2024", "04-01-2024",
                   "PersonalExp.CompCode=HQ|KL; PersonalExp.CBCat=LOAN; PersonalExp.UserID=EVE") +
                 " and {PersonalExp.TrxID} >= '1' and {PersonalExp.TrxID} <= '1' ")});
  }
  ExpectAll<CashOffice>(
      {Row("ExpenseVoucher.rpt",
           {{"PaidOut", "SELECT SUM(CreditAmt) FROM PersonalExp"}, {"TakenIn", "45.20"}},
           "SELECT COUNT(*) FROM PersonalExp", "", kPlain, "-"),
       Row("ExpenseVoucher.rpt", {{"PaidOut", "212.35"}}, "1", "{PersonalExp.TrxID} = 3", kPlain,
           "-")});
  // The electricity of December was entered in January.
  ExpectAll<CashOffice>({Row("PersonalExpCreatedDate.rpt", {{"CreditAmt", "212.35"}}, "1",
                             Asked("PersonalExpCreatedDate.rpt", "02-01-2024", "02-01-2024"))});
}

TEST(CashReports, CashBook) {
  // The Chinese file is a layout of its own, by category, and is looked at like the English one.
  for (const char* file : {"CashBook.rpt", "CashBookC.rpt"}) {
    ExpectAll<CashOffice>({Row(file,
                               {{"CashIn", "10000"},
                                {"CashOut", "4800 + 1000"},
                                {"BankIn", "2500.75 + 1000"},
                                {"BankOut", "1200"}},
                               "SELECT COUNT(*) FROM CashBook", "", kPlain, "-"),
                           Row(file, {{"CashOut", "4800"}, {"CashBal", "5200"}}, "1",
                               Asked(file, "01-01-2024", "31-01-2024",
                                     "CashBook.CompCode=HQ; CashBook.TranType=Cash Out|Bank Out; "
                                     "CashBook.CatCode=LOAN"),
                               kPlain, "-")});
  }
}

// The rows hold; the balances of the two companies were never moved.
TEST(CashReports, Recalculation) {
  ExpectAll<CashOffice>(
      {Row("CashBookRecalc.rpt",
           {{"CashBal", "0"}, {"CashShould", "4200"}, {"BankShould", "3500.75 - 1200"}}, "2", "",
           kPlain, "-"),
       Row("CashBookRecalc.rpt", {{"BankShould", "-1200"}}, "1", "{CompMast.CompCode}='KL'", kPlain,
           "-")});
}

TEST(CashReports, BalancesOfTheCashBook) {
  const std::string later = Asked("CBBalance.rpt", "05-01-2024", "31-01-2024");
  const std::string before = Asked("CBBalance.rpt", "01-01-2024", "04-01-2024");
  ExpectAll<CashOffice>({
      Row("CBBalance.rpt",
          {{"Forward", "0"},
           {"AmtIn", "10000 + 2500.75 + 1000"},
           {"AmtOut", "4800 + 1000 + 1200"},
           {"Closing", "4200 + 3500.75 - 1200"}},
          "2 * 2"),
      Row("CBBalance.rpt", {{"Forward", "10000 + 2500.75"}, {"Closing", "6500.75"}}, "2 * 2",
          later),
      // KL had no movement yet.
      Row("CBBalance.rpt", {{"Forward", "0"}, {"Closing", "12500.75"}}, "2", before),
      // What was carried to the bank made nobody richer.
      Row("CBImprovement.rpt",
          {{"AmtIn", "12500.75"},
           {"AmtOut", "6000"},
           {"Improvement", "6500.75"},
           {"Balance", "4200 + 3500.75 - 1200"}},
          "2"),
      Row("CBImprovement.rpt", {{"Improvement", "12500.75"}}, "1", before),
      Row("CBIncome.rpt",
          {{"Income", "SELECT SUM(TranAmt) FROM CashBook WHERE TranType LIKE '% In'"},
           {"AmtOut", "SELECT SUM(TranAmt) FROM CashBook WHERE TranType LIKE '% Out'"}},
          "3"),
      Row("CBIncome.rpt", {{"Income", "0"}, {"Net", "-6000"}}, "2", later),
  });
}

TEST(CashReports, Suppliers) {
  ExpectAll<CashOffice>({Row("SuppTrans.rpt",
                             {{"Invoiced", "462.80"},
                              {"Credited", "50.50"},
                              {"Paid", "300"},
                              // 450.50, 400.00 and 100.00 of S1, 12.30 of S9
                              {"", "962.80"}},
                             "SELECT COUNT(*) FROM SupplierTrans", "", kPlain, "-"),
                         Row("SuppTrans.rpt", {{"Invoiced", "450.50"}}, "1",
                             Asked("SuppTrans.rpt", "01-01-2024", "10-01-2024",
                                   "SupplierTrans.CompCode=HQ; SupplierTrans.TransType=Invoice; "
                                   "SupplierTrans.UserID=AMY"),
                             kPlain, "-")});
}

// B0002 lost its items and still counts with what was paid for it.
TEST(CashReports, Gold) {
  ExpectAll<CashOffice>(
      {Row("BuyGoldList.rpt",
           {{"LoanAmt", "3400.50 + 70"},
            {"Weight", "15.2583"},
            {"OtherAmt", "-20.50"},
            {"PayAmt", "SELECT SUM(PayAmt) FROM GoldTransMast"}},
           "3 + 1"),
       Row("BuyGoldList.rpt", {{"PayAmt", "3380"}}, "2",
           Asked("BuyGoldList.rpt", "01-01-2024", "31-01-2024",
                 "GoldTransMast.CompCode=HQ; GoldTransMast.UserID=AMY") +
               " and {GoldTransMast.LoanID} >= 'B0001' and {GoldTransMast.LoanID} <= 'B0001' "),
       Row("SellGoldList.rpt",
           {{"LoanAmt", "2500 + 70"}, {"SoldAmt", "2764.55"}, {"Result", "200 - 5.45"}}, "2"),
       Row("SellGoldList.rpt", {{"Result", "-5.45"}}, "1",
           Asked("SellGoldList.rpt", "01-12-2023", "31-12-2023")),
       Row("GoldVoucher.rpt", {{"LoanAmt", "3400.50"}, {"Qty", "3"}}, "2",
           "{GoldTransMast.LoanID} = 'B0001'")});
}

// L5 was not paid out, so no voucher; L2 went out in two drawdowns; L4's drawdown is gone, and the
// loan itself says what was paid.
TEST(CashReports, VoucherForWhatWasPaidOut) {
  CashOffice office;
  office.Run("DELETE FROM DrawDownMast WHERE LoanID='L4'");
  ReportCheck check(office);
  for (const ReportExpectation& row :
       Rows{Row("CashVoucher.rpt", {{"Amount", "4800 + 60000 + 500.25 + 1200 + 8000"}}, "5", "",
                kPlain, "-"),
            Row("CashVoucher.rpt",
                {{"Amount", "SELECT SUM(DrawDownAmt) FROM DrawDownMast WHERE LoanID='L2'"}}, "2",
                Asked("CashVoucher.rpt", "01-12-2023", "31-12-2023",
                      "LoanMast.CompCode=HQ; LoanMast.LoanTypeID=MONTH; LoanMast.AdvertiseID=NIL; "
                      "LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=FACT"),
                kSpecial, "-")}) {
    check.Expect(row);
  }
}

}  // namespace
}  // namespace kaunter
