#include "compliance/aml.h"

#include <fmt/format.h>

#include <exception>
#include <vector>

#include "core/amounts.h"
#include "core/central_database.h"
#include "core/log.h"
#include "core/session.h"
#include "core/values.h"
#include "screen/control.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

bool IsOn(const Value& value) { return NullToEmpty(value) == "1"; }

// Null is no threshold of its own: every amount exceeds 0.00.

// What is looked up: one number, in the column of its kind.
struct Lookup {
  std::string_view number;
  std::string_view column;
  std::string_view kind;  // as the message names it
};

Lookup FirstOf(std::string_view ic, std::string_view passport1, std::string_view passport2) {
  if (!ic.empty()) return {ic, "NRIC", "IC"};
  return {passport1.empty() ? passport2 : passport1, "PassportNo", "Passport No"};
}

// The first entry of the list with the number, as the message tells it; "" when there is none.
std::string FindEntry(Connection& central, const Lookup& lookup) {
  const Recordset entry = central.Query(
      fmt::format("SELECT RefNo,Name,{0},OtherInformation FROM AMLAMast WHERE {0}={1}",
                  lookup.column, QuoteStr(lookup.number)));
  if (entry.Eof()) return {};
  return fmt::format("AML/CFT detected on {}: {}\n\nRef. No.: {}\n\nName: {}\n\n{}", lookup.kind,
                     NullToEmpty(entry.Field(lookup.column)), NullToEmpty(entry.Field("RefNo")),
                     NullToEmpty(entry.Field("Name")),
                     NullToEmpty(entry.Field("OtherInformation")));
}

// The number stands in the log, so that it can be looked up by hand.
void NoteAway(const Session& session, std::string_view number, std::string_view why) {
  try {
    WriteLog(session,
             LogLine(session, fmt::format(" - AML/CFT screening of {} not done: {}", number, why)));
  } catch (const std::exception&) {
    // A log that cannot be written must not stop the counter either.
  }
  if (session.status) {
    session.status(session.In({"AML/CFT screening not done: the central database is away",
                               "未能核对反洗钱名单：中央数据库无法连接"}));
  }
}

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

Screening ScreenIdentity(Session& session, Desk& desk, std::string_view ic,
                         std::string_view passport1, std::string_view passport2) {
  if (!session.settings.AMLA || !session.aml.AMLA || !session.aml.AMLACheckIC) {
    return Screening::clear;
  }
  const Lookup lookup = FirstOf(ic, passport1, passport2);
  if (lookup.number.empty()) return Screening::clear;
  std::string entry;
  try {
    if (!HasCentralDatabase(session)) {
      NoteAway(session, lookup.number, "no data source AMLA on this PC");
      return Screening::away;
    }
    entry = FindEntry(*OpenCentralDatabase(session), lookup);
  } catch (const std::exception& failure) {
    NoteAway(session, lookup.number, failure.what());
    return Screening::away;
  }
  if (entry.empty()) return Screening::clear;
  desk.Message(MessageKind::warning, "AML/CFT Screening", entry);
  return Screening::hit;
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
  Recordset rows = main.Query(
      fmt::format("select distinct(a.code) from (select distinct(amlacode) as [Code] from {} where "
                  "amlacode <> '' union all select distinct(amladesc) as [Code] from amladesc "
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
