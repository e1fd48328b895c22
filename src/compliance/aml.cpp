#include "compliance/aml.h"

#include <fmt/format.h>

#include <vector>

#include "core/amounts.h"
#include "core/session.h"
#include "core/values.h"
#include "screen/control.h"

namespace kaunter {
namespace {

bool IsOn(const Value& value) { return NullToEmpty(value) == "1"; }

ThresholdDecision Judge(const AMLSettings& aml, Money amount, Money threshold,
                        std::string_view reason, std::string_view default_reason,
                        std::string_view what, std::string_view on_warning,
                        std::string_view on_blank) {
  using Act = ThresholdDecision::Act;
  if (!aml.AMLA || amount <= threshold) return {};
  if (!aml.AMLAWarning && !reason.empty()) return {};
  if (!aml.AMLAWarning && !default_reason.empty()) return {Act::take_default, {}};
  return {aml.AMLAWarning ? Act::warn : Act::demand_reason,
          fmt::format("AML/CFT Alert!\n{} Amount RM{} more than BNM Cash Threshold Amount RM{}\n{}",
                      what, ShowMoney(Value(amount)), ShowMoney(Value(threshold)),
                      aml.AMLAWarning ? on_warning : on_blank)};
}

}  // namespace

bool LoadAMLSettings(Session& session, std::string_view comp_code) {
  // The columns are there only where the screening was ever switched on.
  if (!session.settings.AMLA) return false;
  const Recordset company = session.Main().Query(
      fmt::format("SELECT AMLA,AMLACheckIC,AMLALoan,AMLAPayment,AMLAWarning,DisableSTR FROM "
                  "CompMast WHERE CompCode={}",
                  QuoteStr(comp_code)));
  if (company.Eof()) return false;
  session.aml = {.AMLA = IsOn(company.Field("AMLA")),
                 .AMLACheckIC = IsOn(company.Field("AMLACheckIC")),
                 .AMLALoan = Sen(company.Field("AMLALoan")),
                 .AMLAPayment = Sen(company.Field("AMLAPayment")),
                 .AMLAWarning = IsOn(company.Field("AMLAWarning")),
                 .DisableSTR = IsOn(company.Field("DisableSTR"))};
  return session.aml.AMLA;
}

std::string TidyText(std::string_view text) {
  std::string tidy;
  for (const char c : Trim(text)) {
    if (c != ' ' || tidy.back() != ' ') tidy += c;
  }
  return tidy;
}

void FillReasonCodes(ComboBox& box, Connection& main, std::string_view table, std::string_view sid,
                     bool with_blank) {
  std::vector<std::string> codes;
  if (with_blank) codes.emplace_back();
  // Not the empty text, asked so that an index answers it: hardly a row has a reason.
  Recordset rows = main.Query(
      fmt::format("select distinct(a.code) from (select distinct(amlacode) as [Code] from {} where "
                  "(amlacode > '' or amlacode < '') union all select distinct(amladesc) as [Code] "
                  "from amladesc "
                  "where sid= {}) as a",
                  table, QuoteStr(sid)));
  for (; !rows.Eof(); rows.MoveNext()) codes.push_back(NullToEmpty(rows.Field(0)));
  box.SetItems(std::move(codes));
}

ThresholdDecision JudgeLoan(const AMLSettings& aml, Money amount, std::string_view reason,
                            std::string_view default_reason) {
  return Judge(aml, amount, aml.AMLALoan, reason, default_reason, "Loan",
               "Please fill CDD Manually", "Please fill in the the Loan Purpose");
}

ThresholdDecision JudgePayment(const AMLSettings& aml, Money amount, std::string_view reason) {
  return Judge(aml, amount, aml.AMLAPayment, reason, {}, "Payment", "Please fill CDD Form Manually",
               "Please fill in the Source of Fund Explaination");
}

}  // namespace kaunter
