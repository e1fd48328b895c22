#include "loans/loan_checks.h"

#include <fmt/format.h>

#include "core/boxes.h"
#include "core/settings.h"
#include "core/values.h"
#include "loans/schedule.h"

namespace kaunter {
namespace {

using Refused = std::optional<Refusal>;

constexpr bool kInPlace = true;

void FillBlank(LoanTexts& loan, std::string_view column, std::string_view text) {
  if (loan.Get(column).empty()) loan.Set(column, text);
}

Money AmountOf(const LoanTexts& loan, std::string_view column) {
  const std::string text = loan.Get(column);
  return text.empty() ? Money() : Money::FromText(text);
}

Refused CheckRequired(const LoanTexts& loan) {
  const Refusal required[] = {
      {"CompCode", {"Company Code is required", "请选择公司"}, kInPlace},
      {"LoanTypeID", {"Loan Type required", "请选择还款方式"}},
      {"LoanType", {"Collateral Type required", "请选择抵押种类"}},
      {"NextDueDate", {"Next due date required", "请输入下期到期日"}, kInPlace},
      {"CustID", {"Customer ID required", "请输入顾客编号"}},
      {"TrxDate", {"Loan Date required", "请输入贷款日期"}},
      {"LoanAmt", {"Loan Amount required", "请输入贷款额"}},
      {"InsRate", {"Interest Rate required", "请输入利率"}},
  };
  for (const Refusal& refusal : required) {
    if (loan.Get(refusal.field).empty()) return refusal;
  }
  return std::nullopt;
}

Refused CheckFirstInstalment(LoanTexts& loan) {
  FillBlank(loan, "PayOutAmt", "0");
  // The text "0" alone; "00" is the business of the box itself.
  const std::string term = loan.Get("LoanTerm");
  if (term.empty() || term == "0") {
    return Refusal{"LoanTerm", {"Loan Term required", "请输入贷款期数"}};
  }
  if (loan.Get("FirstPayment").empty()) {
    return Refusal{"FirstPayment", {"First Payment required", "请输入首期金额"}, kInPlace};
  }
  return std::nullopt;
}

Refused CheckCollateral(const LoanTexts& loan) {
  if (loan.Get("LoanType") != "Secured") return std::nullopt;
  if (loan.Get("CollateralID").empty()) {
    return Refusal{"CollateralID", {"Collateral Type required", "请选择抵押品种类"}, kInPlace};
  }
  // Told by its description, never by its value: loans without a value are lent.
  if (loan.Get("Memo2").empty()) {
    return Refusal{"Memo2", {"Collateral Desc required", "请输入抵押品说明"}, kInPlace};
  }
  return std::nullopt;
}

Refused CheckLateCharge(LoanTexts& loan) {
  FillBlank(loan, "InstallmentAmt", loan.Get("FirstPayment"));
  FillBlank(loan, "LastPayment", loan.Get("InstallmentAmt"));
  FillBlank(loan, "IntType", "$");
  if (loan.Get("LateChargePerDay").empty()) {
    return Refusal{"LateChargePerDay", {"Late Interest Rate PA required", "请输入逾期年利率"}};
  }
  FillBlank(loan, "OfferDays", "0");
  return std::nullopt;
}

Refused CheckGuarantorIncome(LoanTexts& loan) {
  const Refusal refusals[] = {
      {"GuarantorCompIncome", {"Guarantor Income required", "请输入担保人收入"}, kInPlace},
      {"GuarantorCompIncome2", {"Guarantor 2 Income required", "请输入担保人 2 收入"}, kInPlace}};
  for (const Refusal& refusal : refusals) {
    FillBlank(loan, refusal.field, "0");
    if (!IsNumeric(loan.Get(refusal.field))) return refusal;
  }
  return std::nullopt;
}

Refused CheckScheme(LoanTexts& loan) {
  const std::string scheme = loan.Get("DragLoan");
  if (!SameText(scheme, "Personal Loan") && !SameText(scheme, "Flexi Loan")) {
    return Refusal{"DragLoan", {"Scheme / Flexi Loan is require", "请选择贷款方案"}, kInPlace};
  }
  FillBlank(loan, "Bank", "CASH");
  FillBlank(loan, "ProcessFee", "0");
  FillBlank(loan, "AdvertiseID", "NIL");
  FillBlank(loan, "LoanGroupID", "PINJAMAN SEMASA");
  FillBlank(loan, "SalesmanID", "NIL");
  for (const char* amount : {"SalesmanComm", "IntroducerAmt", "DepositAmt", "DepositAmt2",
                             "TermInt", "OathsAmt", "LegalFee", "MiscAmt"}) {
    FillBlank(loan, amount, "0");
  }
  FillBlank(loan, "NextCall", loan.Get("NextDueDate"));
  FillBlank(loan, "TopUpAmt", "0.00");
  FillBlank(loan, "LoanAmt2", loan.Get("LoanAmt"));
  if (loan.Get("LoanTerm2").empty()) {
    return Refusal{"LoanTerm2", {"Grace Period is require", "请输入宽限期数"}, kInPlace};
  }
  loan.Set("InstallmentAmt2", loan.Get("InstallmentAmt"));
  loan.Set("LastPayment2", loan.Get("LastPayment"));
  loan.Set("PayOutAmt2", "0");
  loan.Set("InsRate2", loan.Get("InsRate"));
  return std::nullopt;
}

}  // namespace

Refused CheckLoanBoxes(LoanTexts& loan) {
  if (auto refusal = CheckRequired(loan)) return refusal;
  if (auto refusal = CheckFirstInstalment(loan)) return refusal;
  if (auto refusal = CheckCollateral(loan)) return refusal;
  if (auto refusal = CheckLateCharge(loan)) return refusal;
  if (auto refusal = CheckGuarantorIncome(loan)) return refusal;
  return CheckScheme(loan);
}

Refused CheckAlternateCode(Connection& main, std::string_view text, std::string_view loan_id,
                           std::string_view company_code) {
  if (text.empty()) return std::nullopt;
  const std::string code = QuoteStr(text);
  const std::string company = QuoteStr(company_code);
  const std::string statements[] = {
      fmt::format("SELECT a.LoanID, b.CustName FROM LoanMast as a inner join CustMast as b on "
                  "a.CustID=b.CustID WHERE a.LoanID <> {} and a.OldLoanCode={} AND a.CompCode = {}",
                  QuoteStr(loan_id), code, company),
      fmt::format("SELECT l.LoanID,c.CustName FROM LoanMast as l INNER JOIN CustMast as c ON "
                  "l.CustID=c.CustID WHERE l.LoanID={} AND l.CompCode = {}",
                  code, company),
      fmt::format("SELECT CustID,CustName FROM CustMast WHERE CustID={} AND CompCode = {}", code,
                  company)};
  for (const std::string& sql : statements) {
    const Recordset row = main.Query(sql);
    if (row.Eof()) continue;
    const std::string name = NullToEmpty(row.Field("CustName"));
    return Refusal{"OldLoanCode",
                   {fmt::format("{} is belong to {} Loan, Please check", text, name),
                    fmt::format("{} 是属于 {} 的贷款，请检查", text, name)}};
  }
  return std::nullopt;
}

Refused CheckLoanFigures(const LoanTexts& loan, const LoanTerms& terms) {
  for (const char* date : {"TrxDate", "NextDueDate"}) {
    if (!IsDate(loan.Get(date))) return Refusal{date, kInvalidDate};
  }
  if (auto refusal = CheckTerms(terms)) return refusal;
  const Refusal figures[] = {
      {"FirstPayment", {"Invalid First Payment Amount", "首期金额不正确"}},
      {"InstallmentAmt", {"Invalid Installment Amt Amount", "每期金额不正确"}},
      {"LastPayment", {"Invalid Last Payment Amount", "末期金额不正确"}}};
  for (const Refusal& refusal : figures) {
    if (!IsNumeric(loan.Get(refusal.field))) return refusal;
  }
  return std::nullopt;
}

Refused CheckSchedule(const LoanTerms& terms) {
  if (terms.DragLoan == LoanScheme::kFlexi && terms.LoanBal.empty()) {
    return Refusal{
        "Command3",
        {"Loan Balance is required, Please use Cal. Payment", "没有贷款结余，请先计算还款额"}};
  }
  try {
    ComputeSchedule(terms);
  } catch (const std::exception& error) {
    return Refusal{"",
                   {fmt::format("Schedule cannot be computed: {}", error.what()),
                    fmt::format("无法计算时间表：{}", error.what())}};
  }
  return std::nullopt;
}

std::optional<Caption> OddLowestRate(const Settings& settings, const LoanTexts& loan) {
  if (!SameText(loan.Get("DragLoan"), "Flexi Loan")) return std::nullopt;
  const Money lowest = Money::TryText(settings.LowInt).value_or(Money());
  if (AmountOf(loan, "InsRate") >= lowest) return std::nullopt;
  return Caption{fmt::format("Interest rate cannot lower than {}", ShowMoney(lowest)),
                 fmt::format("利率不可低于 {}", ShowMoney(lowest))};
}

std::optional<Caption> OddInstalmentTotal(const LoanTexts& loan) {
  const std::string term = loan.Get("LoanTerm");
  const double T = CDbl(term);
  const Money amount = AmountOf(loan, "LoanAmt");
  const Money contract =
      amount + Money::FromDouble((CDbl(amount) / 100) * (CDbl(AmountOf(loan, "InsRate")) / 12) * T);
  Money total = AmountOf(loan, "FirstPayment");
  if (term != "1") total += AmountOf(loan, "LastPayment");
  if (term != "1" && term != "2") {
    total += Money::FromDouble(T - 2) * AmountOf(loan, "InstallmentAmt");
  }
  if (total <= contract) return std::nullopt;
  return Caption{
      fmt::format("Total installment ({}) more than Loan amount + Interest ({})", ShowMoney(total),
                  ShowMoney(contract)),
      fmt::format("分期总额（{}）多于贷款额加利息（{}）", ShowMoney(total), ShowMoney(contract))};
}

std::optional<Caption> OddTotalRate(const LoanTexts& loan) {
  const double percent = (CDbl(AmountOf(loan, "InsRate")) / 12) * CDbl(loan.Get("LoanTerm"));
  if (percent <= 100) return std::nullopt;
  return Caption{fmt::format("Total Interest {}% are more than 100%", NumberText(percent)),
                 fmt::format("利息总额 {}% 超过 100%", NumberText(percent))};
}

}  // namespace kaunter
