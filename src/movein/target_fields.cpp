#include "movein/target_fields.h"

#include "core/texts.h"

namespace kaunter {
namespace {

constexpr bool kStored = true;
constexpr bool kOnTheWay = false;

using enum TargetKind;

// clang-format off
std::vector<TargetField> CustomerFields() {
  return {
      {"TheirCode", {"Their Code", "原有编号"}, text, kOnTheWay, "", "",
       "code custcode customercode custid customerid kod kodpelanggan nopelanggan accno "
       "account 编号 客户编号 顾客编号 oldcode"},
      {"CustName", {"Customer Name", "顾客姓名"}, text, kStored, "", "",
       "name custname customername nama namapelanggan borrower peminjam 姓名 名字 顾客姓名"},
      {"CustNickName", {"Nick Name", "别名"}, text, kStored, "", "", "nickname alias 别名"},
      {"AreaCode", {"Personal / Company", "个人／公司"}, text, kStored, "", "PERSONAL|COMPANY",
       "type custtype kind jenis"},
      {"CustNIC", {"New IC", "新身份证"}, new_ic, kStored, "", "",
       "ic icno newic nric nic mykad nokp kp nokpbaru kpbaru 身份证 新身份证"},
      {"CustOIC", {"Old IC", "旧身份证"}, text, kStored, "", "", "oldic nokplama kplama 旧身份证"},
      {"CustOthIC", {"Other IC", "其他证件"}, text, kStored, "", "",
       "passport otheric pasport 护照 其他证件"},
      {"TrxDate", {"Date", "日期"}, day, kStored, "", "", "date regdate joindate tarikh 日期"},
      {"CustStatus", {"Status", "状态"}, text, kStored, "", "ACTIVE|BAD DEBT|BLACKLIST|REJECT|KIV|AMLA",
       "status 状态"},
      {"DOB", {"Date of Birth", "出生日期"}, day, kStored, "", "",
       "dob birthdate dateofbirth tarikhlahir 出生日期"},
      {"CustGender", {"Gender", "性别"}, text, kStored, "", "MALE|FEMALE", "gender sex jantina 性别"},
      {"CustRace", {"Race", "种族"}, text, kStored, "", "CustRaceMast.CustRaceID", "race bangsa 种族"},
      {"MaritalStatus", {"Marital Status", "婚姻状况"}, text, kStored, "", "",
       "marital maritalstatus statusperkahwinan 婚姻状况"},
      {"WargaNegara", {"Citizenship", "国籍"}, text, kStored, "", "",
       "citizenship nationality warganegara 国籍"},
      {"CustChild", {"Children", "子女人数"}, whole, kStored, "", "", "children anak 子女"},
      {"CompNo", {"Co. Reg. No", "公司注册号码"}, text, kStored, "", "", "compno regno ssm rocno 公司注册号码"},
      {"OldCode", {"Bumi / Non Bumi", "土著／非土著"}, text, kStored, "", "Bumi|Non Bumi",
       "bumi bumiputra 土著"},
      {"CompCatCode", {"Company Category", "公司类别"}, text, kStored, "", "CampanyCategory.CompCatCode",
       "category companycategory 公司类别"},
      {"CustAdd1", {"Address", "地址"}, text, kStored, "", "",
       "address address1 add1 addr addr1 alamat alamat1 地址"},
      {"CustAdd2", {"Address 2", "地址 2"}, text, kStored, "", "", "address2 add2 addr2 alamat2"},
      {"CustAdd3", {"Address 3", "地址 3"}, text, kStored, "", "", "address3 add3 addr3 alamat3"},
      {"CustPostCode", {"Post Code", "邮区"}, text, kStored, "", "", "postcode zip poskod 邮编 邮区"},
      {"CustCity", {"City", "城市"}, text, kStored, "", "", "city town bandar 城市"},
      {"CustState", {"State", "州"}, text, kStored, "", "", "state negeri 州"},
      {"CustHP1", {"Mobile 1", "手机 1"}, text, kStored, "", "",
       "hp mobile handphone hp1 mobile1 phone telefonbimbit nohp 手机 电话"},
      {"CustHP2", {"Mobile 2", "手机 2"}, text, kStored, "", "", "hp2 mobile2 手机2"},
      {"CustTel1", {"Tel 1", "电话 1"}, text, kStored, "", "", "tel tel1 telephone notel 住家电话"},
      {"email", {"E-mail", "电邮"}, text, kStored, "", "", "email emel 电邮"},
      {"HouseStatus", {"House", "房屋"}, text, kStored, "", "", "house housestatus"},
      {"JobType", {"Job Type", "职业种类"}, text, kStored, "", "NIL|Government|Private|Own Business|Unemployment|Student",
       "jobtype"},
      {"Employer", {"Employer", "雇主"}, text, kStored, "", "", "employer majikan 雇主"},
      {"CustComp", {"Company", "公司名称"}, text, kStored, "", "", "company companyname syarikat 公司"},
      {"CustCompPos", {"Position", "职位"}, text, kStored, "", "",
       "position job occupation pekerjaan jawatan 职业 职位"},
      {"CustCompIncome", {"Monthly Income", "月入"}, money, kStored, "", "",
       "income salary gaji pendapatan 收入 月入"},
      {"CustCompAdd1", {"Company Address", "公司地址"}, text, kStored, "", "",
       "companyaddress officeaddress"},
      {"CustCompTel1", {"Company Tel", "公司电话"}, text, kStored, "", "", "companytel officetel"},
      {"CustSpouseName", {"Spouse Name", "配偶姓名"}, text, kStored, "", "",
       "spouse spousename pasangan 配偶"},
      {"CustSpouseNIC", {"Spouse New IC", "配偶新身份证"}, new_ic, kStored, "", "",
       "spouseic spousenric"},
      {"CustSpouseHP1", {"Spouse Mobile", "配偶手机"}, text, kStored, "", "", "spousehp spousemobile"},
      {"BankAccNo", {"Bank Account No", "银行户口"}, text, kStored, "", "",
       "bankacc bankaccount bankaccno noakaun 银行户口"},
      {"BankCagaran", {"Bank", "银行"}, text, kStored, "", "", "bank bankname 银行"},
      {"CreditLimit", {"Credit Limit", "信用额"}, money, kStored, "", "", "creditlimit 信用额"},
      {"CreditLimitType", {"Credit Limit Type", "信用额种类"}, text, kStored, "", "Full Settled|Outstanding",
       ""},
      {"Remark", {"Remark", "备注"}, text, kStored, "", "", "remark remarks note notes catatan 备注"},
  };
}

std::vector<TargetField> LoanFields() {
  return {
      {"OldLoanCode", {"Their Loan No", "原有贷款编号"}, text, kStored, "", "",
       "loanno loancode loanid loan agreementno nopinjaman pinjaman kodpinjaman 贷款编号"},
      {"Customer", {"Customer Code or IC", "顾客编号或身份证"}, text, kOnTheWay, "", "",
       "code custcode customercode custid customerid customer kod kodpelanggan nopelanggan ic "
       "icno nric nokp borrower 顾客编号 客户编号 身份证"},
      {"TrxDate", {"Loan Date", "贷款日期"}, day, kStored, "", "",
       "date loandate disbursed tarikh tarikhpinjaman 贷款日期 日期"},
      {"LoanAmt", {"Loan Amount", "贷款额"}, money, kStored, "", "",
       "amount loanamount loanamt principal capital pokok jumlah jumlahpinjaman 贷款额 本金"},
      {"InsRate", {"Interest Rate % p.a.", "年利率 %"}, rate, kStored, "", "",
       "rate interest interestrate intrate kadar kadarfaedah 利率 年利率"},
      {"LoanTerm", {"Loan Term", "贷款期数"}, whole, kStored, "", "",
       "term terms months tenure tempoh bulan instalments installments 期数"},
      {"NextDueDate", {"First Due Date", "首期到期日"}, day, kStored, "", "",
       "firstdue firstduedate duedate nextdue tarikhbayaran 首期 到期日"},
      {"InstallmentAmt", {"Installment Amt", "每期金额"}, money, kStored, "", "",
       "instalment installment instalmentamt monthly monthlypayment ansuran 每期 每期金额"},
      {"LoanTypeID", {"Loan Type", "还款方式"}, text, kStored, "MONTH", "LoanTypeMast.LoanTypeID",
       "loantype repayment"},
      {"LoanType", {"Repayment / Collateral", "抵押"}, text, kStored, "Unsecured", "Secured|Unsecured",
       "secured collateral"},
      {"DragLoan", {"Loan Scheme", "贷款方案"}, text, kStored, "Personal Loan", "Personal Loan|Flexi Loan",
       "scheme skim 方案"},
      {"LoanPurpose", {"Interest Method", "利息算法"}, text, kStored, "FLAT", "FLAT|REDUCING",
       "method interestmethod"},
      {"LoanTerm2", {"Grace Period", "宽限期数"}, whole, kStored, "0", "", "grace graceperiod"},
      {"LateChargePerDay", {"Late Int Rate PA", "逾期年利率 %"}, rate, kStored, "", "",
       "laterate lateinterest"},
      {"OfferDays", {"Offer Days", "宽限天数"}, whole, kStored, "", "", "offerdays"},
      {"LoanStatus", {"Loan Status", "贷款状态"}, text, kStored, "ACTIVE", "ACTIVE|CLOSED",
       "status loanstatus 状态"},
      {"LoanGroupID", {"Loan Group", "贷款组别"}, text, kStored, "", "LoanGroupMast.LoanGroupID",
       "group loangroup"},
      {"Balance", {"Balance in Their Books", "原账结余"}, money, kOnTheWay, "", "",
       "balance bal outstanding baki 结余 余额"},
      {"CollateralID", {"Collateral Type", "抵押品种类"}, text, kStored, "", "CollateralMast.CollateralID",
       "collateraltype"},
      {"Memo2", {"Collateral Desc", "抵押品说明"}, text, kStored, "", "", "collateraldesc"},
      {"Memo4", {"Collateral Market Value", "抵押品市价"}, money, kStored, "", "", "collateralvalue"},
      {"ProcessFee", {"Processing Fee", "手续费"}, money, kStored, "", "", "processfee processingfee"},
      {"DepositAmt", {"Stamp Fee", "印花税"}, money, kStored, "", "", "stamp stampfee stampduty"},
      {"DepositAmt2", {"Others", "其他"}, money, kStored, "", "", "deposit"},
      {"LegalFee", {"Legal Fee", "律师费"}, money, kStored, "", "", "legalfee"},
      {"SalesmanID", {"Salesman", "业务员"}, text, kStored, "", "SalesmanMast.SalesmanID",
       "salesman agent"},
      {"Bank", {"Bank", "银行"}, text, kStored, "", "", "bank"},
      {"AgreementNo", {"Agreement No", "合约号码"}, text, kStored, "", "", "agreement noperjanjian"},
      {"StampingDate", {"Stamping Date", "盖印日期"}, day, kStored, "", "", "stampingdate"},
      {"GuarantorName", {"Guarantor Name", "担保人姓名"}, text, kStored, "", "",
       "guarantor guarantorname penjamin 担保人"},
      {"GuarantorNIC", {"Guarantor New IC", "担保人新身份证"}, new_ic, kStored, "", "",
       "guarantoric guarantornric penjaminkp"},
      {"GuarantorHP1", {"Guarantor Mobile", "担保人手机"}, text, kStored, "", "",
       "guarantorhp guarantormobile"},
      {"GuarantorRelationship", {"Guarantor Relationship", "担保人关系"}, text, kStored, "", "", ""},
      {"GuarantorName2", {"Guarantor 2 Name", "担保人 2 姓名"}, text, kStored, "", "",
       "guarantor2 guarantorname2 penjamin2"},
      {"GuarantorNIC2", {"Guarantor 2 New IC", "担保人 2 新身份证"}, new_ic, kStored, "", "",
       "guarantoric2 guarantornric2"},
      {"AMLACode", {"Loan Purpose (AML/CFT)", "贷款用途"}, text, kStored, "", "", "purpose tujuan 用途"},
      {"Memo1", {"Remark", "备注"}, text, kStored, "", "", "remark remarks note notes catatan 备注"},
  };
}

std::vector<TargetField> PaymentFields() {
  return {
      {"Loan", {"Loan No", "贷款编号"}, text, kOnTheWay, "", "",
       "loanno loancode loanid loan nopinjaman pinjaman kodpinjaman 贷款编号"},
      {"ReceiptNo", {"Receipt No", "收据号码"}, text, kStored, "", "",
       "receipt receiptno resit noresit orno or 收据 收据号码"},
      {"PayDate", {"Date", "付款日"}, day, kStored, "", "",
       "date paydate paymentdate tarikh tarikhbayar 日期 付款日期"},
      {"TotPay", {"Total Received", "收款总额"}, money, kOnTheWay, "", "",
       "amount total totalpaid paid received payment bayaran jumlah 金额 付款额"},
      {"PayAmt", {"Towards the Loan", "还入贷款"}, money, kStored, "", "",
       "instalment installment principalpaid ansuran 分期"},
      {"IntAmt", {"Late Interest Paid", "逾期利息付款"}, money, kStored, "", "",
       "late lateinterest penalty denda 逾期利息"},
      {"PayExtra", {"Extra Capital (Flexi)", "额外本金"}, money, kStored, "", "", "extra extracapital"},
      {"DiscAmt", {"Discount", "折扣"}, money, kStored, "", "", "discount diskaun 折扣"},
      {"CollectorAmt", {"Collector Fee", "收账费"}, money, kStored, "", "", "collectorfee"},
      {"CollectInfoID", {"Collection Type", "收款方式"}, text, kStored, "", "",
       "method paymode paymentmode mode cara 方式"},
      {"Bank", {"Bank Code", "银行"}, text, kStored, "", "", "bank 银行"},
      {"ChqNo", {"Cheque No", "支票号码"}, text, kStored, "", "", "cheque chequeno chqno 支票"},
      {"AMLACode", {"Source of Fund (AML/CFT)", "资金来源"}, text, kStored, "", "", "source"},
      {"Memo1", {"Remark", "备注"}, text, kStored, "", "", "remark remarks note notes catatan 备注"},
  };
}
// clang-format on

}  // namespace

std::string_view MoveKindName(MoveKind kind) {
  static constexpr std::array<std::string_view, 3> kNames = {"customers", "loans", "payments"};
  return kNames[static_cast<std::size_t>(kind)];
}

Caption MoveKindCaption(MoveKind kind) {
  static const std::array<Caption, 3> captions = {
      {{"Customers", "顾客"}, {"Loans", "贷款"}, {"Payments", "付款"}}};
  return captions[static_cast<std::size_t>(kind)];
}

std::string_view TableOf(MoveKind kind) {
  static constexpr std::array<std::string_view, 3> kTables = {"CustMast", "LoanMast",
                                                              "PaymentMast"};
  return kTables[static_cast<std::size_t>(kind)];
}

std::string_view KeyOf(MoveKind kind) {
  static constexpr std::array<std::string_view, 3> kKeys = {"CustID", "LoanID", "PayID"};
  return kKeys[static_cast<std::size_t>(kind)];
}

const std::vector<TargetField>& TargetFields(MoveKind kind) {
  static const std::array<std::vector<TargetField>, 3> fields = {CustomerFields(), LoanFields(),
                                                                 PaymentFields()};
  return fields[static_cast<std::size_t>(kind)];
}

const TargetField* FindTarget(MoveKind kind, std::string_view column) {
  for (const TargetField& field : TargetFields(kind)) {
    if (SameText(field.column, column)) return &field;
  }
  return nullptr;
}

}  // namespace kaunter
