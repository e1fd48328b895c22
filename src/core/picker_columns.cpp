#include "core/picker_columns.h"

#include <algorithm>
#include <map>

#include "core/pickers.h"
#include "core/values.h"

namespace kaunter {
namespace {

const std::map<std::string, Caption, std::less<>>& Headings() {
  static const std::map<std::string, Caption, std::less<>> headings = {
      {"AA", {"Loan Status", "贷款状况"}},
      {"Add1", {"Address", "地址"}},
      {"AppID", {"Application", "申请编号"}},
      {"ApprovedUser", {"Approved By", "批准人"}},
      {"ApprovedUser2", {"Approved By 2", "批准人 2"}},
      {"CBCat", {"Category", "类别"}},
      {"CapitalAmt", {"Capital", "本金"}},
      {"CapitalPayment", {"Capital Paid", "已还本金"}},
      {"ChargeAmt", {"Charges", "费用"}},
      {"ChargeDesc", {"Description", "说明"}},
      {"ChargeID", {"Charge", "费用编号"}},
      {"ClassCode", {"Code", "代码"}},
      {"ClassName", {"Classification", "分类"}},
      {"CollectorAmt", {"Collector", "收款员"}},
      {"CompCode", {"Company", "公司"}},
      {"Company Code", {"Company Code", "公司代码"}},
      {"Company Name", {"Company Name", "公司名称"}},
      {"Company Type", {"Company Type", "公司类别"}},
      {"CountryCode", {"Code", "代码"}},
      {"CountryName", {"Country", "国家"}},
      {"CreditAmt", {"Credit", "贷方"}},
      {"CustID", {"Customer", "客户编号"}},
      {"CustNIC", {"New IC", "新身份证"}},
      {"CustName", {"Customer Name", "客户姓名"}},
      {"CustOIC", {"Old IC", "旧身份证"}},
      {"CustOthIC", {"Other ID", "其他证件"}},
      {"CustStatus", {"Status", "状态"}},
      {"DebitAmt", {"Debit", "借方"}},
      {"DocID", {"Cash Book No", "现金簿编号"}},
      {"DragLoan", {"Scheme", "贷款方案"}},
      {"Drawdown", {"Drawdown", "已提款"}},
      {"DueDate", {"Due Date", "到期日"}},
      {"InsRate", {"Rate %", "利率 %"}},
      {"InstallmentAmt", {"Installment", "每期金额"}},
      {"IntAmt", {"Late Interest", "迟还利息"}},
      {"InterestAmt", {"Interest", "利息"}},
      {"InterestPayment", {"Interest Paid", "已还利息"}},
      {"InvAmt", {"Amount", "金额"}},
      {"InvDesc", {"Description", "说明"}},
      {"InvoiceNo", {"Invoice No", "发票号码"}},
      {"KutuCode", {"Kutu Code", "会代码"}},
      {"LateInt", {"Late Interest", "迟还利息"}},
      {"LoanAmt", {"Loan Amount", "贷款金额"}},
      {"LoanAmt2", {"Amount Applied", "申请金额"}},
      {"LoanBal", {"Balance", "结余"}},
      {"LoanGroupID", {"Status", "状态"}},
      {"LoanID", {"Loan", "贷款编号"}},
      {"LoanScheme", {"Scheme", "贷款方案"}},
      {"LoanTerm", {"Term", "期数"}},
      {"LoanType", {"Type", "种类"}},
      {"MiscCode", {"Code", "代码"}},
      {"MiscName", {"Name", "名称"}},
      {"NRIC", {"New IC", "新身份证"}},
      {"Name1", {"Name", "姓名"}},
      {"Nationality", {"Nationality", "国籍"}},
      {"NextDueDate", {"Next Due Date", "下期到期日"}},
      {"PType", {"Type", "种类"}},
      {"PayAmt", {"Amount Paid", "付款金额"}},
      {"PayDate", {"Pay Date", "付款日期"}},
      {"PayID", {"Payment", "付款编号"}},
      {"PayableAmt", {"Payable", "应还金额"}},
      {"Payment", {"Paid", "已还"}},
      {"PaymentStatus", {"Status", "状态"}},
      {"Person Incharge", {"Person Incharge", "负责人"}},
      {"Remark", {"Remark", "备注"}},
      {"SID", {"Number", "编号"}},
      {"SMSContent", {"Message", "短讯内容"}},
      {"SchID", {"No", "期数"}},
      {"SelfBillAmt", {"Amount", "金额"}},
      {"SelfBillStatus", {"Status", "状态"}},
      {"SelfBillTaxAmt", {"Tax", "税额"}},
      {"Settlement", {"Settlement", "结清"}},
      {"StateCode", {"Code", "代码"}},
      {"StateName", {"State", "州属"}},
      {"SuppID", {"Supplier", "供应商编号"}},
      {"SuppName", {"Supplier Name", "供应商名称"}},
      {"SuppTin", {"Supplier TIN", "供应商税号"}},
      {"TID", {"Template", "范本编号"}},
      {"TName", {"Name", "名称"}},
      {"TaxCode", {"Code", "代码"}},
      {"TaxName", {"Tax", "税种"}},
      {"Tel1", {"Telephone", "电话"}},
      {"TermInt", {"Term Interest", "期利息"}},
      {"TopUpAmt", {"Top Up", "加额"}},
      {"TotLoan", {"Total Loan", "贷款总额"}},
      {"TotLoanBal", {"Total Balance", "总结余"}},
      {"TranAmt", {"Amount", "金额"}},
      {"TranDate", {"Date", "日期"}},
      {"TranDesc", {"Description", "说明"}},
      {"TranMemo", {"Memo", "备忘"}},
      {"TranType", {"Type", "种类"}},
      {"TransAmt", {"Amount", "金额"}},
      {"TransDesc", {"Description", "说明"}},
      {"TransID", {"Transaction", "交易编号"}},
      {"TransType", {"Type", "种类"}},
      {"TrxDate", {"Date", "日期"}},
      {"TrxDesc", {"Description", "说明"}},
      {"TrxID", {"Number", "编号"}},
      {"UserID", {"User", "用户"}},
      {"UserLevel", {"Level", "级别"}},
      {"UserName", {"User Name", "用户姓名"}},
      {"eInvID", {"E-Invoice", "电子发票"}},
      {"uuid", {"UUID", "UUID"}},
  };
  return headings;
}

constexpr int kMoneyScale = 2;
constexpr int kLongestName = 300;
constexpr int kNarrow = 10;
constexpr int kWide = 26;

Kind KindOf(const Column& column) {
  switch (column.type) {
    case FieldType::kMoney:
      return column.scale > kMoneyScale ? Kind::rate : Kind::money;
    case FieldType::kDate:
      return Kind::date;
    case FieldType::kInteger:
      return Kind::integer;
    case FieldType::kDouble:
      return Kind::rate;
    case FieldType::kText:
      // A remark may be shown cut, a name not.
      return column.width > kLongestName ? Kind::memo : Kind::text;
  }
  return Kind::text;
}

// A name needs more room than a code.
int WeightOf(const Column& column) {
  if (column.name == kOwnFirst) return 0;
  return column.type == FieldType::kText && column.width >= 100 ? kWide : kNarrow;
}

}  // namespace

Caption ColumnHeading(std::string_view column) {
  const auto found = Headings().find(column);
  return found == Headings().end() ? Caption(std::string(column)) : found->second;
}

std::vector<GridColumn> PickerColumns(const std::vector<Column>& columns) {
  std::vector<GridColumn> grid_columns;
  for (const Column& column : columns) {
    GridColumn& added =
        grid_columns.emplace_back(ColumnHeading(column.name), KindOf(column), WeightOf(column));
    added.name = column.name;
  }
  return grid_columns;
}

std::string PickerCell(const Value& value, const Column& column) {
  if (value.IsNull()) return {};
  if (value.AsDate() != nullptr) return ShowBirthDate(value);  // the rule that hides 1900 alone
  if (const Money* money = value.AsMoney()) {
    return Format(*money, column.scale > kMoneyScale ? "#,##0.00##" : "#,##0.00");
  }
  return value.ToText();
}

std::vector<std::vector<std::string>> PickerRows(const Recordset& rows) {
  std::vector<std::vector<std::string>> all;
  all.reserve(rows.RowCount());
  for (const std::vector<Value>& row : rows.rows()) {
    std::vector<std::string>& cells = all.emplace_back();
    cells.reserve(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
      cells.push_back(PickerCell(row[i], rows.columns()[i]));
    }
  }
  return all;
}

}  // namespace kaunter
