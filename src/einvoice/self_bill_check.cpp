#include "einvoice/self_bill_check.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/values.h"
#include "einvoice/tax_identity.h"

namespace kaunter {
namespace {

const TaxCodeTable kTaxClass{"eClass", "ClassCode", "ClassName", "eClassPop", {}};
const TaxCodeTable kTaxCategory{"eTax", "TaxCode", "TaxName", "eTaxPop", {}};

const Caption kMissing{"is missing", "没有填写"};
const Caption kNoCode{"is not among the codes of the tax authority", "不在税局的代码之内"};
const Caption kBreaks{"has a sign that breaks the document (\" \\)", "有会破坏单据的符号（\" \\）"};

class Checker {
 public:
  Checker(Connection& main, const SelfBill& bill) : main_(main), bill_(bill) {}

  std::vector<SelfBillRemark> Run(const std::string& comp_code) {
    Company(comp_code);
    Supplier();
    if (bill_.items.empty()) Add({"Items", "项目"}, kMissing);
    for (std::size_t i = 0; i < bill_.items.size(); ++i) Item(bill_.items[i], i + 1);
    if (!bill_.items.empty() && bill_.SelfBillAmt <= Money()) {
      Add({"Total Amount", "总额"}, {"is not above 0", "不大于 0"});
    }
    return std::move(remarks_);
  }

 private:
  void Add(const Caption& field, const Caption& what) { remarks_.push_back({field, what}); }

  // Line ends of an address do not go out.
  static bool Breaks(std::string_view text) {
    return std::ranges::any_of(text, [](char c) {
      return c == '"' || c == '\\' ||
             (static_cast<unsigned char>(c) < ' ' && c != '\r' && c != '\n');
    });
  }

  bool Text(const Caption& field, const std::string& text, bool required = true) {
    if (text.empty()) {
      if (required) Add(field, kMissing);
      return false;
    }
    if (Breaks(text)) Add(field, kBreaks);
    return true;
  }

  void Code(const Caption& field, const std::string& code, const TaxCodeTable& table) {
    if (!Text(field, code)) return;
    const Recordset row = main_.Query(
        fmt::format("SELECT {0} FROM {1} WHERE {0}={2}", table.code, table.table, QuoteStr(code)));
    if (row.Eof()) Add(field, kNoCode);
  }

  void Company(const std::string& comp_code) {
    const Caption field{"Company Code", "公司"};
    if (!Text(field, comp_code)) return;
    const Recordset row = main_.Query(
        "SELECT TIN,CustTypeID,CustType,MISCCode,CustName,Phone,Email,Postcode,City,State,Country,"
        "Address FROM ECustMast WHERE CustID=" +
        QuoteStr(comp_code));
    if (row.Eof()) {
      Add(field, {"has no tax identity: enter it on the e-invoicing page of the company",
                  "没有税务身份：请在公司的电子发票资料输入"});
      return;
    }
    for (std::size_t i = 0; i < row.columns().size(); ++i) {
      const std::string& column = row.columns()[i].name;
      const Caption part{fmt::format("{} of company {}", column, comp_code),
                         fmt::format("公司 {} 的 {}", comp_code, column)};
      Text(part, NullToEmpty(row.Field(i)), !SameText(column, "Email"));
    }
  }

  void Supplier() {
    Text({"Company Name", "公司名称"}, bill_.SuppName);
    Text({"ID Type", "证件种类"}, bill_.SuppIDType);
    Text({"ID No", "证件号码"}, bill_.SuppIDNo);
    Text({"Tin No", "税号"}, bill_.SuppTin);
    Code({"Misc Code", "行业代码"}, bill_.SuppMiscCode, kTaxMiscCode);
    Text({"Bank Account", "银行户口"}, bill_.SuppBankAcc, false);
    Text({"SST No", "SST 号码"}, bill_.SuppSST, false);
    Text({"Address", "地址"}, bill_.SuppAdd);
    Text({"Post Code", "邮编"}, bill_.SuppPostCode);
    Text({"City", "城市"}, bill_.SuppCity);
    Code({"State Code", "州属代码"}, bill_.SuppState, kTaxState);
    Code({"Country Code", "国家代码"}, bill_.SuppCountry, kTaxCountry);
    if (Text({"Phone", "电话"}, bill_.SuppTel) && !bill_.SuppTel.starts_with("+6")) {
      Add({"Phone", "电话"}, {"does not begin with +6", "不是 +6 开头"});
    }
    if (Text({"Email", "电邮"}, bill_.SuppEmail, false) &&
        bill_.SuppEmail.find('@') == std::string::npos) {
      Add({"Email", "电邮"}, {"has no @", "没有 @"});
    }
    Code({"Tax Code", "税务代码"}, bill_.SelfBillTaxCat, kTaxCategory);
  }

  void Item(const SelfBillItem& item, std::size_t number) {
    const auto field = [number](const char* english, const char* chinese) {
      return Caption{fmt::format("Item {}: {}", number, english),
                     fmt::format("项目 {}：{}", number, chinese)};
    };
    Code(field("Class Code", "分类代码"), item.SelfBillClassCode, kTaxClass);
    Text(field("Description", "说明"), item.SelfBillDesc);
    Code(field("Tax Category", "税务代码"), item.SelfBillTaxCat, kTaxCategory);
    if (item.SelfBillQty != "1") {
      Add(field("Qty", "数量"),
          {"is not 1: the amount goes out as unit price", "不是 1：金额也会当作单价发出"});
    }
    const Money rate = item.SelfBillTaxPer * Money::FromText("0.01");
    const Money tax = Money::FromText(ShowMoney(item.SelfBillAmt * rate));
    if (tax != item.SelfBillTaxAmt) {
      Add(field("Tax Amount", "税额"),
          {fmt::format("is not {} % of the amount, {}", ShowMoney(item.SelfBillTaxPer),
                       ShowMoney(tax)),
           fmt::format("不是金额的 {} %，即 {}", ShowMoney(item.SelfBillTaxPer), ShowMoney(tax))});
    }
  }

  Connection& main_;
  const SelfBill& bill_;
  std::vector<SelfBillRemark> remarks_;
};

}  // namespace

std::vector<SelfBillRemark> CheckSelfBill(Connection& main, const SelfBill& bill,
                                          const std::string& comp_code) {
  return Checker(main, bill).Run(comp_code);
}

}  // namespace kaunter
