#include "core/pickers.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/values.h"

namespace kaunter {
namespace {

// The instalments of one loan.
std::string OfLoan(std::string_view loan_id) { return "LoanID =" + QuoteStr(loan_id); }

// The loan screen takes over what both levels have approved and no loan was made of yet. Its extra
// is "LOAN" and the customer.
constexpr std::string_view kForLoan = "LOAN";

std::string ReadyForLoan(std::string_view extra) {
  return extra.starts_with(kForLoan)
             ? "AppStatus='Approved' AND AppStatus2='Approved' AND LoanID=''"
             : "";
}

// Whose application it is; those that the customer has part in come first.
std::string ApplicantColumns(std::string_view extra) {
  if (!extra.starts_with(kForLoan) || extra == kForLoan) return {};
  return fmt::format(
      "CustID,(SELECT c.CustName FROM CustMast as c WHERE c.CustID=AppMast.CustID) as [CustName],"
      "case when AppMast.CustID={0} or exists (SELECT k.AppID FROM AppMastLink as k WHERE "
      "k.AppID=AppMast.AppID AND k.CustID={0}) then 0 else 1 end as [{1}]",
      QuoteStr(Trim(extra.substr(kForLoan.size()))), kOwnFirst);
}

Picker Customers() {
  return {.name = "CustPop",
          .title_word = {"Customer", "客户"},
          .columns =
              "a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,"
              "a.CustStatus,(case when (a.TotLoan<=0) then 'NO LOAN' when a.TotLoanBal <= 0 "
              "then 'SETTLED' else 'OWING' end) as [AA],a.Remark",
          .source = "LoanMast as l right outer join CustMast as a on l.CustID=a.CustID",
          .key = "a.CustID",
          .group_by =
              "a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,a.TrxDate,"
              "a.CustStatus,a.TotLoan,a.TotLoanBal,a.Remark",
          .sorts = {"a.CustID", "a.CustName", "a.CustNIC", "a.CustOIC", "a.CompCode", "a.TrxDate",
                    "a.CustStatus"},
          .searched = {"a.CustID", "a.CustName", "a.CustNIC", "a.CustOIC", "a.CustOthIC",
                       "l.OldLoanCode"},
          .keys_first = true,
          .numbers = {"a.CustNIC", "a.CustHP1", "a.CustHP2", "a.CustTel1", "a.CustTel2"},
          .company = "a.CompCode",
          .also_company = "l.CompCode",
          .area = "a.AreaCode"};
}

Picker CustomersByIdentity() {
  return {.name = "ICPop",
          .title_word = {"Customer IC", "客户身份证"},
          .columns = "CustID, CustName, CustNIC, CustOIC, TrxDate, TotLoan, TotLoanBal",
          .source = "CustMast",
          .key = "CustID",
          .searched = {"CustID", "CustName", "CustNIC", "CustOIC"},
          .keys_first = true,
          .numbers = {"CustNIC", "CustHP1", "CustHP2", "CustTel1", "CustTel2"}};
}

Picker LinkedCustomers() {
  return {.name = "LinkDB",
          .columns =
              "CustID,CustName,CustNIC,CustOIC,CustOthIC,CompCode,TrxDate,CustStatus,AA,"
              "Remark",
          .source =
              "(SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,a.CustOthIC,a.CompCode,"
              "a.TrxDate,a.CustStatus,(case when a.TotLoanBal <= 0 then 'SETTLED' else "
              "'OWING' end) as [AA],a.Remark FROM CustMast as a inner join LoanMast as l on "
              "l.CustID=a.CustID union SELECT a.CustID,a.CustName,a.CustNIC,a.CustOIC,"
              "a.CustOthIC,a.CompCode,a.TrxDate,a.CustStatus,'NO LOAN' as [AA],a.Remark FROM "
              "CustMast as a left outer join LoanMast as l on l.CustID=a.CustID WHERE "
              "l.LoanID is null) as c",
          .key = "CustID",
          .searched = {"CustName", "CustNIC", "CustOIC", "CustOthIC"},
          .linked = true};
}

Picker Companies() {
  return {.name = "CompPop",
          .title_word = {"Company", "公司"},
          .columns =
              "CompCode [Company Code], CompDesc [Company Name], AreaCode [Company Type], "
              "PersonInCharge [Person Incharge]",
          .source = "CompMast",
          .key = "CompCode",
          .searched = {"CompCode", "CompDesc"},
          .paged = false};
}

Picker Users() {
  return {.name = "UserPop",
          .title_word = {"User Management", "用户管理"},
          .columns = "UserID,UserName,CompCode,UserLevel",
          .source = "UserMast",
          .key = "UserID",
          .searched = {"UserID", "UserName"},
          .paged = false};
}

Picker Loans() {
  return {.name = "LoanPop",
          .title_word = {"Loan", "贷款"},
          .columns =
              "L.LoanID,L.CompCode,C.CustName,C.CustNIC,L.TrxDate,L.LoanAmt,"
              "convert(varchar,L.InstallmentAmt) +' X '+l.LoanTerm as [LoanTerm],L.LoanBal,"
              "case when l.DragLoan='0' then 'Personal Loan' else '' end as [LoanScheme],"
              "case when L.LoanType='Unsecured' then 'J' else 'K' end as [LoanType],"
              "l.PayOutAmt as [Drawdown],L.LoanGroupID",
          .source = "LoanMast as L inner join CustMast as C on L.CustID=C.CustID",
          .key = "L.LoanID",
          .sorts = {"L.LoanID", "L.CompCode", "C.CustName", "C.CustNIC", "L.TrxDate", "L.LoanAmt",
                    "L.LoanBal", "L.LoanGroupID"},
          .searched = {"L.LoanID", "L.OldLoanCode", "C.CustName", "C.CustNIC", "C.CustOIC"},
          .keys_first = true,
          .numbers = {"C.CustNIC", "C.CustHP1", "C.CustHP2", "C.CustTel1", "C.CustTel2"},
          .company = "L.CompCode",
          .loan_group = "L.LoanGroupID",
          .loan_type = "L.LoanTypeID",
          .loan_balance = "L.LoanBal"};
}

Picker Instalments() {
  return {.name = "SchPop",
          .title_word = {"Schedule", "还款时间表"},
          .columns =
              "SchID,LoanID,DueDate,CapitalAmt,InterestAmt,PayableAmt,CapitalPayment,"
              "InterestPayment,Payment,LateInt",
          .source = "SchMast",
          .key = "SchID",
          .extra = OfLoan,
          .paged = false};
}

Picker Payments() {
  return {.name = "PaymentPop",
          .title_word = {"Payment", "付款"},
          .columns =
              "p.PayID, p.CompCode, c.CustName, p.PayDate, p.PayAmt, p.IntAmt, p.ChargeAmt, "
              "p.CollectorAmt, p.NextDueDate, p.PaymentStatus",
          .source = "PaymentMast as p inner join CustMast as c on p.CustID=c.CustID",
          .key = "p.PayID",
          .searched = {"p.PayID", "p.ReceiptNo", "c.CustName", "c.CustNIC"},
          .keys_first = true,
          .numbers = {"c.CustNIC", "c.CustHP1", "c.CustHP2", "c.CustTel1", "c.CustTel2"},
          .company = "p.CompCode",
          .collect_info = "p.CollectInfoID"};
}

Picker Settlements() {
  Picker picker = Payments();
  picker.name = "SettlePop";
  picker.columns += ", p.Settlement";
  picker.condition = "p.Settlement='1'";
  return picker;
}

Picker GoldPurchases() {
  return {.name = "BuyGoldPop",
          .columns = "L.LoanID,L.CompCode,C.CustName,L.TrxDate,L.PayAmt,C.CustNIC",
          .source = "GoldTransMast as L inner join CustMast as C on L.CustID=C.CustID",
          .key = "L.LoanID",
          .searched = {"L.LoanID", "C.CustName", "C.CustNIC"},
          .company = "L.CompCode"};
}

Picker Expenses() {
  return {.name = "ExpPop",
          .columns = "TrxID,TrxDate,CompCode,TrxDesc,DebitAmt,CreditAmt,CBCat",
          .source = "PersonalExp",
          .key = "TrxID",
          .searched = {"TrxID", "TrxDesc", "CBCat"},
          .company = "PersonalExp.CompCode"};
}

// A row that another screen posted cannot be picked.
Picker CashBookRows() {
  return {.name = "CashBookPop",
          .columns = "DocID,CompCode,TranDate,TranAmt,TranType,TranDesc,TranMemo",
          .source = "CashBook",
          .key = "DocID",
          .condition = "CBType='M'",
          .order = "TranDate",
          .searched = {"DocID", "TranDesc", "TranMemo"},
          .company = "CashBook.CompCode"};
}

Picker Charges() {
  return {.name = "InvPop",
          .columns = "ChargeID,TrxDate,LoanID,CompCode,ChargeAmt,ChargeDesc,PType",
          .source = "ChargeMast",
          .key = "ChargeID",
          .searched = {"ChargeID", "LoanID", "ChargeDesc"},
          .company = "ChargeMast.CompCode"};
}

Picker Suppliers() {
  return {.name = "SuppPop",
          .columns = "SuppID,TrxDate,CompCode,SuppName,Add1,Tel1",
          .source = "SupplierMast",
          .key = "SuppID",
          .searched = {"SuppID", "SuppName"},
          .company = "SupplierMast.CompCode"};
}

Picker SupplierTransactions() {
  return {.name = "SuppTransPop",
          .columns = "TransID,TrxDate,CompCode,TransType,TransDesc,TransAmt",
          .source = "SupplierTrans",
          .key = "TransID",
          .searched = {"TransID", "TransDesc", "TransType"},
          .company = "SupplierTrans.CompCode"};
}

// A star in the number marks an application as out of use.
Picker Applications() {
  return {.name = "AppPop",
          .columns =
              "AppID,TrxDate,NextDueDate,LoanAmt2,TopUpAmt,LoanAmt,TermInt,DragLoan,InsRate,"
              "LoanTerm,InstallmentAmt,ApprovedUser,ApprovedUser2",
          .source = "AppMast",
          .key = "AppID",
          .condition = "NOT AppID Like '%*%'",
          .searched = {"AppID", "CustID"},
          .company = "AppMast.CompCode",
          .extra = ReadyForLoan,
          .extra_columns = ApplicantColumns};
}

Picker MessageTemplates() {
  return {.name = "SMSMastPop",
          .columns = "TID,TName,SMSContent,UserID",
          .source = "SMSMast",
          .key = "TID",
          .searched = {"TID", "TName", "SMSContent"}};
}

Picker SuspiciousTransactions() {
  return {.name = "AMLAPop",
          .columns =
              "AMLATrans.TrxID,AMLATrans.TrxDate,AMLATrans.Name1,AMLATrans.Nationality,"
              "AMLATrans.NRIC",
          .source = "AMLATrans",
          .key = "AMLATrans.TrxID",
          .searched = {"AMLATrans.Name1", "AMLATrans.Name2", "AMLATrans.Name3", "AMLATrans.NRIC",
                       "AMLATrans.OldIC"},
          .company = "AMLATrans.CompCode"};
}

// A code of the e-invoice tables with its name.
Picker Codes(std::string name, std::string table, const std::string& code,
             const std::string& code_name) {
  return {.name = std::move(name),
          .columns = code + "," + code_name,
          .source = std::move(table),
          .key = code,
          .searched = {code, code_name}};
}

// All but one that is not to be chosen.
std::string OtherThanState(std::string_view code) {
  return code.empty() ? "" : "StateCode<>" + QuoteStr(code);
}

Picker States() {
  Picker picker = Codes("eStatePop", "eState", "StateCode", "StateName");
  picker.extra = OtherThanState;
  return picker;
}

Picker EInvoices() {
  return {.name = "eInvPop",
          .columns =
              "eInvID,eInvMast.TrxDate,CustMast.CustName,InvDesc,InvAmt,uuid,"
              "LHDNStatus MiscName",
          .source = "EInvMast left Outer join  CustMast on EinvMast.CustID=CustMast.CustID",
          .key = "eInvID",
          .searched = {"eInvID", "CustMast.CustName", "InvDesc"},
          .company = "eInvMast.CompCode"};
}

Picker SelfBills() {
  return {.name = "SelfBillPop",
          .columns =
              "SID,InvoiceNo,TrxDate,SuppName,SelfBillTaxAmt,SelfBillAmt,SelfBillStatus,"
              "SuppTin,uuid",
          .source = "SelfBillMast",
          .key = "SID",
          .searched = {"SID", "InvoiceNo", "SuppName", "SuppTin"},
          .company = "SelfBillMast.CompCode"};
}

// No table stands behind the kutu lists: they open and are empty.
Picker Kutu(std::string name) {
  return {.name = std::move(name), .title_word = {"Kutu", "会"}, .key = "KutuCode", .paged = false};
}

}  // namespace

const std::vector<Picker>& AllPickers() {
  static const std::vector<Picker> pickers = {
      Customers(),
      CustomersByIdentity(),
      Companies(),
      Users(),
      Loans(),
      Instalments(),
      Payments(),
      Settlements(),
      GoldPurchases(),
      Expenses(),
      CashBookRows(),
      Charges(),
      Suppliers(),
      SupplierTransactions(),
      Applications(),
      MessageTemplates(),
      SuspiciousTransactions(),
      LinkedCustomers(),
      States(),
      Codes("eCountryPop", "eCountry", "CountryCode", "CountryName"),
      Codes("eMiscPop", "eMiscCode", "MiscCode", "MiscName"),
      Codes("eClassPop", "eClass", "ClassCode", "ClassName"),
      Codes("eTaxPop", "eTax", "TaxCode", "TaxName"),
      EInvoices(),
      SelfBills(),
      Kutu("KutuPop"),
      Kutu("KutuTransPop"),
  };
  return pickers;
}

const Picker& FindPicker(std::string_view name) {
  for (const Picker& picker : AllPickers()) {
    if (SameText(picker.name, name)) return picker;
  }
  throw std::invalid_argument(fmt::format("There is no search picker named \"{}\"", name));
}

const std::vector<SearchedTexts>& IndexedTexts() {
  static const std::vector<SearchedTexts> tables = {
      {"CustMast",
       {"CustID", "CustName", "CustNIC", "CustOIC", "CustOthIC"},
       {"CustNIC", "CustHP1", "CustHP2", "CustTel1", "CustTel2"}},
      {"LoanMast", {"LoanID", "OldLoanCode"}, {}},
      {"PaymentMast", {"PayID", "ReceiptNo"}, {}}};
  return tables;
}

}  // namespace kaunter
