#include "reporting/report_criteria.h"

#include <algorithm>
#include <utility>

#include "core/values.h"

namespace kaunter {
namespace {

using Files = std::vector<std::string>;
using Filters = std::vector<ReportFilter>;

// "LoanMastList" gives LoanMastList.rpt and LoanMastListC.rpt.
Files BothLanguages(const Files& names) {
  Files files;
  for (const std::string& name : names) {
    files.push_back(name + ".rpt");
    files.push_back(name + "C.rpt");
  }
  return files;
}

Files Joined(Files files, const Files& more) {
  files.insert(files.end(), more.begin(), more.end());
  return files;
}

ReportFilter FromTable(Caption label, const char* field, const char* table, const char* column) {
  return {std::move(label), field, {.table = table, .column = column}};
}

ReportFilter OfWords(Caption label, const char* field, std::vector<std::string> words) {
  return {std::move(label), field, {.words = std::move(words)}};
}

// --- the filter lists; the field is that of the loan listings unless a report names another

ReportFilter Company(const char* field = "{LoanMast.CompCode}") {
  return {{"Company Code", "公司编号"}, field, {.companies = true}};
}
ReportFilter Race(Caption label) {
  return FromTable(std::move(label), "{CustMast.CustRace}", "CustRaceMast", "CustRaceID");
}
ReportFilter CustomerRace() { return Race({"Customer Race", "顾客种族"}); }
ReportFilter CustomerType() {
  return FromTable({"Customer Type", "顾客类别"}, "{CustMast.AreaCode}", "AreaMast", "AreaCode");
}
ReportFilter CustomerStatus() {
  return OfWords({"Customer Status", "顾客状态"}, "{CustMast.CustStatus}",
                 {"ACTIVE", "BAD DEBT", "BLACKLIST", "REJECT", "KIV"});
}
ReportFilter LoanType() {
  return FromTable({"Loan Type", "还款方式"}, "{LoanMast.LoanTypeID}", "LoanTypeMast",
                   "LoanTypeID");
}
ReportFilter LoanStatus() {
  return FromTable({"Loan Status", "贷款状态"}, "{LoanMast.LoanGroupID}", "LoanGroupMast",
                   "LoanGroupID");
}
ReportFilter CompanyCategory() {
  return FromTable({"Company Category", "公司类别"}, "{CustMast.CompCatCode}", "CampanyCategory",
                   "CompCatCode");
}
ReportFilter Advertisement(Caption label) {
  return FromTable(std::move(label), "{LoanMast.AdvertiseID}", "AdvertiseMast", "AdvertiseID");
}
ReportFilter GetKnow() { return Advertisement({"Get Know", "如何得知"}); }
ReportFilter CollateralType() {
  return FromTable({"Collateral Type", "抵押种类"}, "{LoanMast.CollateralID}", "CollateralMast",
                   "CollateralID");
}
ReportFilter Collateral() {
  return OfWords({"Collateral", "抵押"}, "{LoanMast.LoanType}", {"Secured", "Unsecured"});
}
ReportFilter User(const char* field = "{LoanMast.UserID}") {
  return FromTable({"User ID", "用户"}, field, "UserMast", "UserID");
}
ReportFilter Bank(const char* field = "{LoanMast.Bank}") {
  return FromTable({"Bank", "银行"}, field, "BankMast", "BankCode");
}
ReportFilter Salesman() {
  return FromTable({"Salesman", "业务员"}, "{LoanMast.SalesmanID}", "SalesmanMast", "SalesmanID");
}
ReportFilter CollectionType() {
  return FromTable({"Collection Type", "收款方式"}, "{PaymentMast.CollectInfoID}",
                   "CollectInfoMast", "CollectInfoID");
}
ReportFilter Category(const char* field) {
  return FromTable({"Category", "类别"}, field, "CashBookCat", "CatCode");
}
ReportFilter FollowUpStatus() {
  return FromTable({"Follow Up Status", "跟进状态"}, "{HisStatusMast.HisStatusID}", "HisStatusMast",
                   "HisStatusID");
}
ReportFilter TransactionType(const char* field, std::vector<std::string> words) {
  return OfWords({"Transaction Type", "交易类别"}, field, std::move(words));
}

// The lists of the loan listings; those of batch charges have the kind of charge behind Collateral.
Filters OfLoans(const Filters& behind_collateral = {}) {
  Filters filters = {Company(),         LoanType(),       GetKnow(),   LoanStatus(),
                     CompanyCategory(), CollateralType(), Collateral()};
  filters.insert(filters.end(), behind_collateral.begin(), behind_collateral.end());
  for (ReportFilter& filter : Filters{User(), Bank(), CustomerType(), Salesman()}) {
    filters.push_back(std::move(filter));
  }
  return filters;
}

Filters OfPayments(const Filters& behind_bank) {
  Filters filters = {
      Company("{PaymentMast.CompCode}"), CompanyCategory(),         CollectionType(), Collateral(),
      User("{PaymentMast.UserID}"),      Bank("{PaymentMast.Bank}")};
  filters.insert(filters.end(), behind_bank.begin(), behind_bank.end());
  filters.push_back(Salesman());
  return filters;
}

Filters OfExpenses() {
  return {Company("{PersonalExp.CompCode}"), Category("{PersonalExp.CBCat}"),
          User("{PersonalExp.UserID}")};
}

const char* const kLoanDate = "{LoanMast.TrxDate}";
const char* const kLoanID = "{LoanMast.LoanID}";

std::vector<ReportCriteria> CustomersAndLoans() {
  return {
      // The ID boxes pick loans but filter customers; offices type a customer there.
      {.files = {"CustLoanList.rpt", "BadDebtListing.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = "{CustMast.CustID}",
       .filters = {Company(), CustomerStatus(), LoanStatus(), Collateral(), Salesman()}},
      {.files = BothLanguages({"CustMastList", "RefererList"}),
       .picker = "CustPop",
       .DateField = "{CustMast.TrxDate}",
       .IDField = "{CustMast.CustID}",
       .filters = {Company("{CustMast.CompCode}"), CustomerRace(), CustomerType(),
                   CompanyCategory(), CustomerStatus(), Salesman()}},
      {.files = Joined(
           BothLanguages({"LoanMastList", "LoanMastList2", "LoanCollateral", "LoanGuarantorList",
                          "LoanSchList"}),
           {"AgingMonth.rpt", "Loan Interest Report.rpt", "CDD.rpt", "LoanExceedThreshold.rpt"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID,
       .filters = OfLoans()},
      {.files = {"ExpectedCollection.rpt"},
       .picker = "LoanPop",
       .DateField = "{SchMast.DueDate}",
       .IDField = kLoanID,
       .filters = OfLoans()},
      {.files = {"ChargeList.rpt"},
       .picker = "LoanPop",
       .DateField = "{ChargeMast.TrxDate}",
       .IDField = kLoanID,
       .filters =
           OfLoans({TransactionType("{ChargeMast.PType}", {"Batch", "Batch Loan Interest",
                                                           "Invoice", "Credit Note", "Payment"})})},
      {.files = {"ARInvoice.rpt"},
       .picker = "LoanPop",
       .DateField = "{ChargeMast.TrxDate}",
       .IDField = kLoanID,
       .filters = {Company("{ChargeMast.CompCode}")}},
      {.files = BothLanguages({"LoanCreatedDate"}),
       .picker = "LoanPop",
       .DateField = "{LoanMast.DateCreated}",
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), GetKnow(), LoanStatus(), CompanyCategory(),
                   CollateralType(), Collateral(), User(), Bank(), Salesman()}},
      {.files = BothLanguages({"BuyGoldList", "SellGoldList"}),
       .picker = "BuyGoldPop",
       .DateField = "{GoldTransMast.TrxDate}",
       .IDField = "{GoldTransMast.LoanID}",
       .filters = {Company("{GoldTransMast.CompCode}"), User("{GoldTransMast.UserID}")}},
      {.files = BothLanguages({"LoanCommList"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), GetKnow(), LoanStatus(), CompanyCategory(), Collateral(),
                   Bank(), Salesman()}},
      {.files = BothLanguages({"CustLoanMastList"}),
       .picker = "CustPop",
       .DateField = "{CustMast.TrxDate}",
       .IDField = "{CustMast.CustID}",
       .filters = {Company(), Race({"Race", "种族"}), CompanyCategory(), Collateral(), Bank(),
                   Salesman()}},
  };
}

std::vector<ReportCriteria> AccountsAndPayments() {
  return {
      {.files = {"StatementList.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .filters = {Company()}},
      {.files = {"SummaryPnL.rpt", "SummaryBS.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .ids = IdBoxes::hidden,
       .filters = {Company()}},
      {.files = BothLanguages({"AccountReport"}),
       .DateField = kLoanDate,
       .ids = IdBoxes::unused,
       .filters = {Company(), Bank()}},
      {.files = Joined(BothLanguages({"PaymentList", "PaymentList2", "PaymentList3"}),
                       {"CDD2.rpt", "PaymentExceedThreshold.rpt"}),
       .picker = "PaymentPop",
       .DateField = "{PaymentMast.PayDate}",
       .IDField = "{PaymentMast.PayID}",
       .filters = OfPayments({CustomerType()})},
      {.files = BothLanguages({"PaymentCreatedDate"}),
       .picker = "PaymentPop",
       .DateField = "{PaymentMast.DateCreated}",
       .IDField = "{PaymentMast.PayID}",
       .filters = OfPayments({})},
      // No company can be chosen, so below level 4 nobody prints these. That is wanted.
      {.files = BothLanguages({"LateInterest"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID},
      {.files = BothLanguages({"LoanPaymentList"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), GetKnow(), LoanStatus(), CompanyCategory(), Collateral(),
                   Bank(), CustomerType(), Salesman()}},
      {.files = BothLanguages({"PersonalExpReport"}),
       .picker = "ExpPop",
       .DateField = "{PersonalExp.TrxDate}",
       .IDField = "{PersonalExp.TrxID}",
       .filters = OfExpenses()},
      {.files = {"PersonalExpCreatedDate.rpt"},
       .picker = "ExpPop",
       .DateField = "{PersonalExp.CreatedDate}",
       .IDField = "{PersonalExp.TrxID}",
       .filters = OfExpenses()},
      {.files = BothLanguages({"FollowUpDetList"}),
       .picker = "LoanPop",
       .DateField = "{FollowUpMast.HisDate}",
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), Advertisement({"Type Of Loan", "贷款种类"}), LoanStatus(),
                   CompanyCategory(), FollowUpStatus(), Bank(), Salesman()}},
      {.files = Joined(BothLanguages({"DueDate", "DueDate2", "DueDate3", "DueDate4", "DueDate5"}),
                       {"Reminder.rpt"}),
       .picker = "LoanPop",
       .DateField = "{LoanMast.NextDueDate}",
       .IDField = kLoanID,
       .filters = {Company(), CustomerRace(), CustomerType(), LoanType(), LoanStatus(),
                   CompanyCategory(), Collateral(), Bank(), CustomerType(), Salesman()}},
      {.files = BothLanguages({"Outstanding", "Outstanding2"}),
       .picker = "LoanPop",
       .DateField = "{LoanMast.NextDueDate}",
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), LoanStatus(), CompanyCategory(), Collateral(), Bank()}},
      {.files = BothLanguages({"ChqMastList", "LoanChqMastList"}),
       .picker = "LoanPop",
       .DateField = "{Chqmast.ChqDate}",
       .IDField = kLoanID,
       .filters = {Company(), CompanyCategory()}},
      {.files = BothLanguages({"CashBook"}),
       .DateField = "{CashBook.TranDate}",
       .ids = IdBoxes::hidden,
       .filters = {Company("{CashBook.CompCode}"),
                   OfWords({"Trans Type", "进出类别"}, "{CashBook.TranType}",
                           {"Bank In", "Bank Out", "Cash In", "Cash Out"}),
                   Category("{CashBook.CatCode}")}},
  };
}

std::vector<ReportCriteria> PapersAndOthers() {
  return {
      {.files = {"LejarAkuan.rpt", "RekodTrans.rpt", "CashVoucher.rpt", "Agree1.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), GetKnow(), LoanStatus(), CompanyCategory()}},
      {.files = {"Payment Receipt.rpt"},
       .picker = "PaymentPop",
       .DateField = "{PaymentMast.PayDate}",
       .IDField = "{PaymentMast.PayID}",
       .filters = {Company("{CustMast.CompCode}"), CustomerType()}},
      {.files = BothLanguages({"DailyCollection"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .ids = IdBoxes::hidden,
       .filters = {Company("{MasterReport.s10}")}},
      {.files = {"SuppTrans.rpt"},
       .picker = "SuppTransPop",
       .DateField = "{SupplierTrans.TrxDate}",
       .IDField = "{SupplierTrans.TransID}",
       .filters = {Company("{SupplierTrans.CompCode}"),
                   TransactionType("{SupplierTrans.TransType}",
                                   {"Invoice", "Credit Note", "Payment"}),
                   User("{SupplierTrans.UserID}")}},
      {.files = BothLanguages({"OustandingInt"}),
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .IDField = kLoanID,
       .filters = {Company(), LoanType(), LoanStatus(), CompanyCategory()}},
      {.files = {"AuditLogs.rpt"},
       .picker = "LoanPop",
       .DateField = "{TransLogs.TrxDate}",
       .ids = IdBoxes::hidden,
       // The audit table spells the company's column so.
       .filters = {Company("{TransLogs.ConmpCode}"), User("{TransLogs.UserID}"),
                   OfWords({"Audit Type", "操作类别"}, "{TransLogs.Type}",
                           {"Create", "Modify", "Delete", "Log In", "Log Out"}),
                   OfWords({"Module", "模块"}, "{TransLogs.Module}",
                           {"Customer", "Loan", "Payment", "Expenses", "User", "Batch", "Invoice",
                            "Credit Note"})}},
      {.files = {"SMSCompList.rpt"},
       .picker = "CustPop",
       .DateField = "{SMSList.DateSent}",
       .IDField = "{SMSList.CustID}",
       .ids = IdBoxes::no_picker,
       .filters = {Company("{SMSList.CompCode}"), User("{SMSList.UserID}")}},
      {.files = {"SMSHPList.rpt"},
       .picker = "CustPop",
       .DateField = "{SMSList.DateSent}",
       .ids = IdBoxes::hidden,
       .filters = {Company("{SMSList.CompCode}"), User("{SMSList.UserID}"),
                   OfWords({"SMS Status", "短讯状态"}, "{SMSList.SMSStatus}",
                           {"DONE", "READ", "FAIL"})}},
      {.files = {"YearlyLoan.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .ids = IdBoxes::free_text,
       .filters = {Company()}},
      {.files = {"NewLampiran.rpt"},
       .picker = "LoanPop",
       .DateField = kLoanDate,
       .ids = IdBoxes::hidden,
       .filters = {Company()}},
      {.files = {"EInvoicing.rpt"},
       .picker = "eInvPop",
       .DateField = "{EInvMast.TrxDate}",
       .IDField = "{EInvMast.EInvID}",
       .filters = {Company("{EInvMast.CompCode}")}},
  };
}

struct OptionRow {
  Files files;
  OptionBox box;
};

// What a box cannot change stays greyed: its report has one form, and the text of its formula is
// fixed.
std::vector<OptionRow> OptionRows() {
  const Caption hide_settled{"Hide Settled Loan", "不显示已还清的贷款"};
  const Caption summary{"Summary", "总结"};
  const Caption settlement{"Settlement", "结清"};
  const Caption columns_60{"60 Columns", "60 栏"};
  const Caption with_reason{"With Reason only", "只限有理由的"};
  const Caption include_interest{"Include Interest", "包括利息"};
  const auto none = BoxEffect::none;
  return {
      {BothLanguages({"CustMastList", "RefererList"}), {1, {"With Photo", "附照片"}, false}},
      {{"CustLoanList.rpt"}, {1, hide_settled, true}},
      {Joined(BothLanguages({"LoanCreatedDate"}), {"BadDebtListing.rpt"}),
       {1, hide_settled, true, none}},
      {BothLanguages({"LoanMastList", "LoanMastList2", "LoanCollateral"}),
       {1, hide_settled, false}},
      {Joined(BothLanguages({"LoanGuarantorList"}),
              {"ExpectedCollection.rpt", "AgingMonth.rpt", "CDD.rpt"}),
       {1, hide_settled, false, none}},
      {BothLanguages({"LoanSchList"}), {1, {"Capital && Interest", "本金与利息"}, false}},
      {BothLanguages({"LoanSchList"}), {2, summary, false, none}},
      {BothLanguages({"LoanMastList2"}), {2, summary, false}},
      {{"LoanMastList.rpt"}, {2, {"As at", "截至"}, false}},
      {{"LoanExceedThreshold.rpt", "PaymentExceedThreshold.rpt"}, {1, with_reason, true}},
      {{"PaymentList.rpt"}, {1, settlement, false}},
      {BothLanguages({"PaymentList3", "Outstanding2"}), {2, summary, false}},
      {BothLanguages({"AccountReport"}), {1, {"No Opening", "不含期初"}, false}},
      {BothLanguages({"AccountReport"}), {2, {"Landscape", "横向"}, false}},
      {{"LejarAkuan.rpt"}, {1, columns_60, false}},
      {{"CashVoucher.rpt", "Agree1.rpt"}, {1, columns_60, false, none}},
      {{"LejarAkuan.rpt"}, {2, settlement, false}},
      {{"RekodTrans.rpt"}, {1, {"Without Interest", "不含利息"}, true, BoxEffect::fixed}},
      {{"RekodTrans.rpt"}, {2, {"Page Break by Month", "每月换页"}, false}},
      {{"RekodTrans.rpt"}, {3, {"Last Balance", "最后结余"}, false}},
      {{"RekodTrans.rpt"}, {4, {"With Loan ID", "附贷款编号"}, false}},
      {{"YearlyLoan.rpt"}, {1, include_interest, true}},
      {{"NewLampiran.rpt"}, {1, include_interest, true, none}},
      {{"SMSCompList.rpt"}, {1, summary, false}},
  };
}

bool Holds(const Files& files, std::string_view file) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& known) { return SameText(known, file); });
}

}  // namespace

const std::vector<ReportCriteria>& AllReportCriteria() {
  static const std::vector<ReportCriteria> all = [] {
    std::vector<ReportCriteria> rows;
    for (auto part : {CustomersAndLoans, AccountsAndPayments, PapersAndOthers}) {
      for (ReportCriteria& row : part()) rows.push_back(std::move(row));
    }
    return rows;
  }();
  return all;
}

const ReportCriteria& CriteriaOf(std::string_view file) {
  for (const ReportCriteria& row : AllReportCriteria()) {
    if (Holds(row.files, file)) return row;
  }
  // The balances of the cash book: dates alone.
  static const ReportCriteria without_row = {
      .DateField = "{CashBook.TranDate}", .ids = IdBoxes::unused, .CompanyRequired = false};
  return without_row;
}

std::vector<OptionBox> OptionBoxesOf(std::string_view file) {
  static const std::vector<OptionRow> rows = OptionRows();
  std::vector<OptionBox> boxes;
  for (const OptionRow& row : rows) {
    if (Holds(row.files, file)) boxes.push_back(row.box);
  }
  return boxes;
}

bool IsOneOf(std::string_view file, std::initializer_list<std::string_view> files) {
  return std::any_of(files.begin(), files.end(),
                     [&](std::string_view known) { return SameText(known, file); });
}

}  // namespace kaunter
