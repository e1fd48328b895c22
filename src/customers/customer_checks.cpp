#include "customers/customer_checks.h"

#include "core/boxes.h"
#include "core/identity.h"
#include "core/settings.h"
#include "core/values.h"

namespace kaunter {
namespace {

struct Required {
  const char* column;
  Caption text;
};

std::optional<Refusal> FirstBlank(std::initializer_list<Required> boxes, const RecordTexts& text) {
  for (const Required& box : boxes) {
    if (text(box.column).empty()) return Refusal{box.column, box.text};
  }
  return std::nullopt;
}

bool IsNumberOrEmpty(const std::string& text) { return text.empty() || IsNumeric(text); }

}  // namespace

std::optional<Refusal> CheckCustomerBoxes(const RecordTexts& text) {
  if (auto refusal = FirstBlank(
          {{"TrxDate", {"Date is required", "请输入日期"}},
           {"CustName", {"Custome Name is required", "请输入顾客姓名"}},
           {"CompCode", {"Company Code is required", "请选择公司"}},
           {"CustRace", {"Race is required", "请选择种族"}},
           {"CustGender", {"Gender is required", "请选择性别"}},
           {"AreaCode", {"Customer in Peronal or Corporate are required", "请选择个人或公司"}}},
          text)) {
    return refusal;
  }
  if (text("AreaCode") == "COMPANY") {
    if (auto refusal =
            FirstBlank({{"CompNo", {"Co. Reg. No is required", "请输入公司注册号码"}},
                        {"OldCode", {"Bumi / Non Bumi is required", "请选择土著或非土著"}},
                        {"Employer", {"Employer is required", "请输入雇主"}},
                        {"CompCatCode", {"Company Category is required", "请选择公司类别"}}},
                       text)) {
      return refusal;
    }
  }
  for (const char* date : {"TrxDate", "DOB", "CustSpouseDOB", "StartWorkDate", "EndWorkDate"}) {
    const std::string typed = text(date);
    if (!typed.empty() && !IsDate(typed)) return Refusal{date, kInvalidDate};
  }
  return std::nullopt;
}

std::optional<Refusal> CheckCustomerNumbers(const RecordTexts& text) {
  if (!IsNumberOrEmpty(text("CustCompIncome"))) {
    return Refusal{"CustCompIncome", {"Invalid Customer Income", "顾客收入不正确"}};
  }
  if (!IsNumberOrEmpty(text("CustSpouseCompIncome"))) {
    return Refusal{"CustSpouseCompIncome", {"Invalid Spouse Income", "配偶收入不正确"}};
  }
  return std::nullopt;
}

std::optional<Refusal> CheckIdealBoxes(const Settings& settings, const RecordTexts& text) {
  if (!settings.IDEAL) return std::nullopt;
  if (text("CustAdd1").empty()) return Refusal{"CustAdd1", {"Address is required"}};
  if (text("CustCompPos").empty()) return Refusal{"CustCompPos", {"Perkerjaan is required"}};
  if (text("CustHP1").empty() && text("CustHP2").empty() && text("CustTel1").empty() &&
      text("CustTel2").empty()) {
    return Refusal{"CustHP1", {"Mobile or telephone are required"}};
  }
  const std::string income = text("CustCompIncome");
  if (income.empty() || Money::FromText(income).IsZero()) {
    return Refusal{"CustCompIncome", {"Monthly Income are required"}};
  }
  return std::nullopt;
}

std::optional<Refusal> CheckNewIc(std::string_view column, std::string_view ic) {
  if (ic.empty() || BirthDateOfIc(ic)) return std::nullopt;
  return Refusal{std::string(column), {"Invalid New IC, Please check", "新身份证不正确，请检查"}};
}

}  // namespace kaunter
