// Every file of the criteria table, worked at the counter: which lists it offers with which values,
// which picker stands behind its numbers, and the formula and title of its print. The table is
// written down here a second time and the texts are put together by a second hand.
#include <map>
#include <set>

#include "core/values.h"
#include "platform/host.h"
#include "reports/selection_formula.h"
#include "tests/reporting/report_counter.h"

namespace kaunter {
namespace {

struct Row {
  const char* files;   // parted by "|"; a star stands for the two names of both languages
  const char* picker;  // "" without picker buttons
  const char* date;
  const char* id;     // "" when the numbers do not filter
  const char* lists;  // labels parted by "|", each with its field where it is not the loans' own
};

const Row kRows[] = {
    {"CustLoanList|BadDebtListing", "LoanPop", "LoanMast.TrxDate", "CustMast.CustID",
     "Company Code|Customer Status:CustMast.CustStatus|Loan Status|Collateral|Salesman"},
    {"CustMastList*|RefererList*", "CustPop", "CustMast.TrxDate", "CustMast.CustID",
     "Company Code:CustMast.CompCode|Customer Race|Customer Type|Company Category|"
     "Customer Status:CustMast.CustStatus|Salesman"},
    {"LoanMastList*|LoanMastList2*|LoanCollateral*|LoanGuarantorList*|LoanSchList*|AgingMonth|"
     "Loan Interest Report|CDD|LoanExceedThreshold",
     "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral Type|Collateral|"
     "User ID|Bank|Customer Type|Salesman"},
    {"ExpectedCollection", "LoanPop", "SchMast.DueDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral Type|Collateral|"
     "User ID|Bank|Customer Type|Salesman"},
    {"ChargeList", "LoanPop", "ChargeMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral Type|Collateral|"
     "Transaction Type:ChargeMast.PType|User ID|Bank|Customer Type|Salesman"},
    {"ARInvoice", "LoanPop", "ChargeMast.TrxDate", "LoanMast.LoanID",
     "Company Code:ChargeMast.CompCode"},
    {"LoanCreatedDate*", "LoanPop", "LoanMast.DateCreated", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral Type|Collateral|"
     "User ID|Bank|Salesman"},
    {"BuyGoldList*|SellGoldList*", "BuyGoldPop", "GoldTransMast.TrxDate", "GoldTransMast.LoanID",
     "Company Code:GoldTransMast.CompCode|User ID:GoldTransMast.UserID"},
    {"LoanCommList*", "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral|Bank|Salesman"},
    {"CustLoanMastList*", "CustPop", "CustMast.TrxDate", "CustMast.CustID",
     "Company Code|Race|Company Category|Collateral|Bank|Salesman"},
    {"StatementList", "LoanPop", "LoanMast.TrxDate", "", "Company Code"},
    {"SummaryPnL|SummaryBS", "", "LoanMast.TrxDate", "", "Company Code"},
    {"AccountReport*", "", "LoanMast.TrxDate", "", "Company Code|Bank"},
    {"PaymentList*|PaymentList2*|PaymentList3*|CDD2|PaymentExceedThreshold", "PaymentPop",
     "PaymentMast.PayDate", "PaymentMast.PayID",
     "Company Code:PaymentMast.CompCode|Company Category|Collection Type|Collateral|"
     "User ID:PaymentMast.UserID|Bank:PaymentMast.Bank|Customer Type|Salesman"},
    {"PaymentCreatedDate*", "PaymentPop", "PaymentMast.DateCreated", "PaymentMast.PayID",
     "Company Code:PaymentMast.CompCode|Company Category|Collection Type|Collateral|"
     "User ID:PaymentMast.UserID|Bank:PaymentMast.Bank|Salesman"},
    {"LateInterest*", "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID", ""},
    {"LoanPaymentList*", "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category|Collateral|Bank|Customer Type|"
     "Salesman"},
    {"PersonalExpReport*", "ExpPop", "PersonalExp.TrxDate", "PersonalExp.TrxID",
     "Company Code:PersonalExp.CompCode|Category:PersonalExp.CBCat|User ID:PersonalExp.UserID"},
    {"PersonalExpCreatedDate", "ExpPop", "PersonalExp.CreatedDate", "PersonalExp.TrxID",
     "Company Code:PersonalExp.CompCode|Category:PersonalExp.CBCat|User ID:PersonalExp.UserID"},
    {"FollowUpDetList*", "LoanPop", "FollowUpMast.HisDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Type Of Loan|Loan Status|Company Category|"
     "Follow Up Status:HisStatusMast.HisStatusID|Bank|Salesman"},
    {"DueDate*|DueDate2*|DueDate3*|DueDate4*|DueDate5*|Reminder", "LoanPop", "LoanMast.NextDueDate",
     "LoanMast.LoanID",
     "Company Code|Customer Race|Customer Type|Loan Type|Loan Status|Company Category|Collateral|"
     "Bank|Customer Type|Salesman"},
    {"Outstanding*|Outstanding2*", "LoanPop", "LoanMast.NextDueDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Loan Status|Company Category|Collateral|Bank"},
    {"ChqMastList*|LoanChqMastList*", "LoanPop", "Chqmast.ChqDate", "LoanMast.LoanID",
     "Company Code|Company Category"},
    {"CashBook*", "", "CashBook.TranDate", "",
     "Company Code:CashBook.CompCode|Trans Type:CashBook.TranType|Category:CashBook.CatCode"},
    {"LejarAkuan|RekodTrans|CashVoucher|Agree1", "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Get Know|Loan Status|Company Category"},
    {"Payment Receipt", "PaymentPop", "PaymentMast.PayDate", "PaymentMast.PayID",
     "Company Code:CustMast.CompCode|Customer Type"},
    {"DailyCollection*", "", "LoanMast.TrxDate", "", "Company Code:MasterReport.s10"},
    {"SuppTrans", "SuppTransPop", "SupplierTrans.TrxDate", "SupplierTrans.TransID",
     "Company Code:SupplierTrans.CompCode|Transaction Type:SupplierTrans.TransType|"
     "User ID:SupplierTrans.UserID"},
    {"OustandingInt*", "LoanPop", "LoanMast.TrxDate", "LoanMast.LoanID",
     "Company Code|Loan Type|Loan Status|Company Category"},
    {"AuditLogs", "", "TransLogs.TrxDate", "",
     "Company Code:TransLogs.ConmpCode|User ID:TransLogs.UserID|Audit Type:TransLogs.Type|"
     "Module:TransLogs.Module"},
    {"SMSCompList", "", "SMSList.DateSent", "SMSList.CustID",
     "Company Code:SMSList.CompCode|User ID:SMSList.UserID"},
    {"SMSHPList", "", "SMSList.DateSent", "",
     "Company Code:SMSList.CompCode|User ID:SMSList.UserID|SMS Status:SMSList.SMSStatus"},
    {"EInvoicing", "eInvPop", "EInvMast.TrxDate", "EInvMast.EInvID",
     "Company Code:EInvMast.CompCode"},
    {"CBBalance*|CBImprovement*|CBIncome*", "", "CashBook.TranDate", "", ""},
};

// The field of a label that names none.
const std::map<std::string, std::string> kLoanFields = {
    {"Company Code", "LoanMast.CompCode"},
    {"Loan Type", "LoanMast.LoanTypeID"},
    {"Get Know", "LoanMast.AdvertiseID"},
    {"Type Of Loan", "LoanMast.AdvertiseID"},
    {"Loan Status", "LoanMast.LoanGroupID"},
    {"Company Category", "CustMast.CompCatCode"},
    {"Collateral Type", "LoanMast.CollateralID"},
    {"Collateral", "LoanMast.LoanType"},
    {"User ID", "LoanMast.UserID"},
    {"Bank", "LoanMast.Bank"},
    {"Customer Type", "CustMast.AreaCode"},
    {"Customer Race", "CustMast.CustRace"},
    {"Race", "CustMast.CustRace"},
    {"Salesman", "LoanMast.SalesmanID"},
    {"Collection Type", "PaymentMast.CollectInfoID"}};

// What a list holds: the table and column of its rows, or its words.
const std::map<std::string, const char*> kTables = {
    {"Customer Race", "CustRaceMast.CustRaceID"},
    {"Race", "CustRaceMast.CustRaceID"},
    {"Customer Type", "AreaMast.AreaCode"},
    {"Loan Type", "LoanTypeMast.LoanTypeID"},
    {"Loan Status", "LoanGroupMast.LoanGroupID"},
    {"Company Category", "CampanyCategory.CompCatCode"},
    {"Get Know", "AdvertiseMast.AdvertiseID"},
    {"Type Of Loan", "AdvertiseMast.AdvertiseID"},
    {"Collateral Type", "CollateralMast.CollateralID"},
    {"User ID", "UserMast.UserID"},
    {"Bank", "BankMast.BankCode"},
    {"Salesman", "SalesmanMast.SalesmanID"},
    {"Collection Type", "CollectInfoMast.CollectInfoID"},
    {"Category", "CashBookCat.CatCode"},
    {"Follow Up Status", "HisStatusMast.HisStatusID"}};
const std::map<std::string, const char*> kWords = {
    {"Company Code", "HQ|KL"},
    {"Collateral", "Secured|Unsecured"},
    {"Customer Status", "ACTIVE|BAD DEBT|BLACKLIST|REJECT|KIV"},
    {"Trans Type", "Bank In|Bank Out|Cash In|Cash Out"},
    {"Transaction Type:ChargeMast.PType", "Batch|Batch Loan Interest|Invoice|Credit Note|Payment"},
    {"Transaction Type:SupplierTrans.TransType", "Invoice|Credit Note|Payment"},
    {"Audit Type", "Create|Modify|Delete|Log In|Log Out"},
    {"Module", "Customer|Loan|Payment|Expenses|User|Batch|Invoice|Credit Note"},
    {"SMS Status", "DONE|READ|FAIL"}};

std::vector<std::string> Parts(const std::string& text, char at) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, at);) parts.push_back(part);
  return parts;
}

std::vector<std::string> FilesOf(const Row& row) {
  std::vector<std::string> files;
  for (std::string name : Parts(row.files, '|')) {
    const bool both = name.ends_with('*');
    if (both) name.pop_back();
    files.push_back(name + ".rpt");
    if (both) files.push_back(name + "C.rpt");
  }
  return files;
}

// Two codes in each table, put in backwards: the list sorts them. "Bank" has "Bank 1", "Bank 2".
void FillTables(ReportCounter& counter) {
  std::set<std::string> filled;
  for (const auto& [label, place] : kTables) {
    const auto dot = Parts(place, '.');
    if (!filled.insert(dot[0]).second) continue;
    counter.office.Run("DELETE FROM " + dot[0]);
    for (const char* code : {"2", "1"}) {
      counter.office.Run("INSERT INTO " + dot[0] + " (" + dot[1] + ") VALUES ('" + dot[1] + code +
                         "')");
    }
  }
}

struct Expected {
  std::vector<std::vector<std::string>> values;
  std::string formula, title;  // of the lists
};

Expected Of(const Row& row) {
  Expected expected;
  for (const std::string& list : Parts(row.lists, '|')) {
    const auto named = Parts(list, ':');
    const std::string& label = named[0];
    const std::string field = "{" + (named.size() == 2 ? named[1] : kLoanFields.at(label)) + "}";
    std::vector<std::string> values;
    if (const auto table = kTables.find(label); table != kTables.end()) {
      const std::string column = Parts(table->second, '.')[1];
      values = {column + "1", column + "2"};
    } else {
      values = Parts(kWords.contains(list) ? kWords.at(list) : kWords.at(label), '|');
    }
    std::string formula, title;
    for (const std::string& value : values) {
      formula += (formula.empty() ? " (" : " or ") + field + " = '" + value + "' ";
      title += (title.empty() ? " (" + label + " - " : " or ") + value;
    }
    expected.formula += (expected.formula.empty() ? "" : " and ") + formula + ") ";
    expected.title += (expected.title.empty() ? "" : ", ") + title + ") ";
    expected.values.push_back(values);
  }
  return expected;
}

// What the print of this file itself puts behind its formula, or in its place.
std::string Finished(const std::string& file, const std::string& formula) {
  const std::string pc = "'" + ThisHost().name + "'";
  const std::string staged =
      "{MasterReport.pcname}=" + pc + " And {MasterReport.ReportName} = '" + file + "'";
  if (file == "CustLoanList.rpt") return formula + " and {LoanMast.LoanBal} > 0";
  if (file == "LoanExceedThreshold.rpt") return formula + " and {LoanMast.AMLACode} <> '' ";
  if (file == "PaymentExceedThreshold.rpt") return formula + " and {PaymentMast.AMLACode} <> '' ";
  if (file == "RekodTrans.rpt") return formula + " AND " + staged;
  if (file.starts_with("DailyCollection")) {
    return formula + " and {masterreport.pcname} = " + pc + " And {MasterReport.ReportName} = '" +
           file + "'";
  }
  for (const char* replaced : {"AccountReport", "StatementList", "Summary"}) {
    if (file.starts_with(replaced)) return staged;
  }
  return formula;
}

TEST(CriteriaRows, EveryFileOffersItsListsAndPrintsItsFormula) {
  ReportCounter counter;
  Session& session = counter.office.session;
  session.CurrentLevel = 3;
  session.AllowedCompanies = "\"HQ\",\"KL\"";
  session.LogsConn =
      OpenSqlite("LogsConn", counter.office.folder.File("logs.db"), true, session.clock);
  session.smsconn =
      OpenSqlite("smsconn", counter.office.folder.File("sms.db"), true, session.clock);
  FillTables(counter);
  std::string picker;
  counter.desk.on_show = [&] {
    picker = session.PickerName;
    session.PickerName.clear();
    session.CallerTag = "B2";
  };
  int printed = 0;
  for (const Row& row : kRows) {
    const Expected expected = Of(row);
    const std::string period = std::string("{") + row.date + "}";
    for (const std::string& file : FilesOf(row)) {
      SCOPED_TRACE(file);
      ReportFrm& frm = counter.Open(file);
      frm.DateFrom.SetText("05-12-2023");
      frm.DateTo.SetText("31-01-2024");
      EXPECT_EQ(frm.SearchCmd1.visible(), *row.picker != '\0');
      EXPECT_EQ(frm.ListCombo.visible(), !expected.values.empty());
      std::string ids, ids_title;
      const bool numbers = frm.IDFrom.visible() && frm.IDFrom.Editable();
      if (numbers) frm.IDFrom.SetText("A1");
      picker.clear();
      frm.SearchCmd2.Click();
      EXPECT_EQ(picker, row.picker);
      if (*row.id != '\0') {
        ASSERT_TRUE(numbers);
        frm.IDTo.SetText("B2");
        const std::string field = std::string("{") + row.id + "}";
        ids = field + " >= 'A1' and " + field + " <= 'B2' ";
        ids_title = ", From A1 - B2";
      }
      for (std::size_t list = 0; list < expected.values.size(); ++list) {
        frm.ListCombo.PickIndex(static_cast<int>(list));
        ASSERT_EQ(frm.List1.RowCount(), static_cast<int>(expected.values[list].size())) << list;
        for (std::size_t value = 0; value < expected.values[list].size(); ++value) {
          EXPECT_EQ(frm.List1.Cell(static_cast<int>(value), 0), expected.values[list][value]);
        }
        frm.InAll.Click();
      }
      const ReportJob* job = counter.Print();
      if (file.starts_with("LateInterest")) {
        EXPECT_EQ(counter.Refusal(), "Paper: Company code is require");
        continue;
      }
      ASSERT_NE(job, nullptr) << counter.Refusal();
      ++printed;
      std::string formula = period + " >= DateTime (2023, 12, 5, 00, 00, 00) AND " + period +
                            " <= DateTime (2024, 1, 31, 23, 59, 59)";
      if (!ids.empty()) formula += " and " + ids;
      if (!expected.formula.empty()) formula += " and " + expected.formula;
      EXPECT_EQ(job->SelectionFormula, Finished(file, formula));
      EXPECT_NO_THROW(FormulaToCondition(job->SelectionFormula));
      EXPECT_EQ(job->Connect, file == "AuditLogs.rpt"   ? session.LogsConn.get()
                              : file.starts_with("SMS") ? session.smsconn.get()
                                                        : session.MainConn.get());
      EXPECT_EQ(job->ReportFileName.substr(0, session.AppPath.size() + 1), session.AppPath + "/");
      // The statement and the summaries take no formula, and name themselves.
      if (file == "StatementList.rpt") {
        EXPECT_EQ(job->ReportTitle, "");
      } else if (file.starts_with("Summary")) {
        EXPECT_EQ(job->ReportTitle, expected.title);
      } else {
        EXPECT_EQ(job->ReportTitle, "From 05-12-2023 to 31-01-2024" + ids_title +
                                        (expected.title.empty() ? "" : ", " + expected.title));
      }
      frm.Close();
    }
  }
  EXPECT_EQ(printed,
            96);  // all names of the table and of the cash book's balances, but LateInterest
  EXPECT_EQ(counter.office.Scalar("SELECT COUNT(*) FROM MasterReport"), "0");
}

TEST(CriteriaRows, AReturnWantsItsDatesAndItsCompany) {
  ReportCounter counter;
  for (const char* file : {"YearlyLoan.rpt", "NewLampiran.rpt"}) {
    ReportFrm& frm = counter.Open(file);
    counter.Print();
    EXPECT_EQ(counter.Refusal(), "Paper: Date From is required") << file;
    frm.DateFrom.SetText("01-01-2024");
    frm.DateTo.SetText("31-01-2024");
    counter.Print();
    EXPECT_EQ(counter.Refusal(), "Paper: Company Code is require, please check") << file;
  }
}

}  // namespace
}  // namespace kaunter
