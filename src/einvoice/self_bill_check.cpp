#include "einvoice/self_bill_check.h"

#include <fmt/format.h>

#include "core/values.h"
#include "einvoice/invoice_service.h"

namespace kaunter {
namespace {

// The rounding of a shown amount.
Money TaxOf(const SelfBillItem& item) {
  const Money rate = item.SelfBillTaxPer * Money::FromText("0.01");
  return Money::FromText(ShowMoney(item.SelfBillAmt * rate));
}

void CheckItem(const DocumentCheck& check, const SelfBillItem& item, std::size_t number,
               const DocumentCheck::Tell& tell) {
  const auto field = [number](const char* english, const char* chinese) {
    return Caption{fmt::format("item {}: {}", number, english),
                   fmt::format("项目 {}：{}", number, chinese)};
  };
  DocumentCheck::Code(field("class code", "分类代码"), item.SelfBillClassCode, check.classes(),
                      tell);
  DocumentCheck::Text(field("description", "说明"), item.SelfBillDesc, true, tell);
  DocumentCheck::Code(field("tax category", "税务代码"), item.SelfBillTaxCat, check.taxes(), tell);
  if (item.SelfBillQty != "1") {
    tell(field("quantity", "数量"),
         {"is not 1: the amount goes out as unit price", "不是 1：金额也会当作单价发出"});
  }
  if (const Money tax = TaxOf(item); tax != item.SelfBillTaxAmt) {
    tell(field("tax amount", "税额"),
         {fmt::format("is not {} % of the amount, {}", ShowMoney(item.SelfBillTaxPer),
                      ShowMoney(tax)),
          fmt::format("不是金额的 {} %，即 {}", ShowMoney(item.SelfBillTaxPer), ShowMoney(tax))});
  }
}

}  // namespace

std::vector<SelfBillRemark> CheckSelfBill(Connection& main, const DocumentCheck& check,
                                          const SelfBill& bill, const std::string& comp_code) {
  std::vector<SelfBillRemark> remarks;
  const DocumentCheck::Tell tell = [&remarks](const Caption& field, const Caption& what) {
    remarks.push_back({field, what});
  };
  DocumentCheck::Text({"company", "公司"}, comp_code, true, tell);
  check.Party({bill.SuppTin, bill.SuppIDNo, bill.SuppIDType, bill.SuppName, bill.SuppTel,
               bill.SuppEmail, AddressLine(bill.SuppAdd), bill.SuppPostCode, bill.SuppCity,
               bill.SuppState, bill.SuppCountry},
              tell);
  DocumentCheck::Code({"business code", "行业代码"}, bill.SuppMiscCode, check.business(), tell);
  DocumentCheck::Text({"bank account", "银行户口"}, bill.SuppBankAcc, false, tell);
  DocumentCheck::Text({"SST", "SST"}, bill.SuppSST, false, tell);
  DocumentCheck::Code({"tax code", "税务代码"}, bill.SelfBillTaxCat, check.taxes(), tell);
  if (bill.items.empty()) DocumentCheck::Missing({"item", "项目"}, tell);
  for (std::size_t i = 0; i < bill.items.size(); ++i) {
    CheckItem(check, bill.items[i], i + 1, tell);
  }
  if (!bill.items.empty() && bill.SelfBillAmt <= Money()) {
    tell({"total amount", "总额"}, {"is not above 0", "不大于 0"});
  }
  check.Company(main, comp_code, [&](const Caption& field, const Caption& what) {
    tell({fmt::format("{}: {}", comp_code, field.english),
          fmt::format("{}：{}", comp_code, field.chinese)},
         what);
  });
  return remarks;
}

}  // namespace kaunter
