#include "einvoice/document_check.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/values.h"
#include "einvoice/invoice_service.h"

namespace kaunter {
namespace {

DocumentCheck::Codes Read(Connection& main, std::string_view table, std::string_view column) {
  DocumentCheck::Codes codes;
  for (Recordset rows = main.Query(fmt::format("SELECT {} FROM {}", column, table)); !rows.Eof();
       rows.MoveNext()) {
    codes.insert(NullToEmpty(rows.Field(0)));
  }
  return codes;
}

// A quote ends the text it stands in, a backslash begins a sign, a control sign may not stand
// there.
bool BreaksTheBody(std::string_view text) {
  return std::ranges::any_of(
      text, [](char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' '; });
}

}  // namespace

DocumentCheck::DocumentCheck(Connection& main)
    : states_(Read(main, "eState", "StateCode")),
      countries_(Read(main, "eCountry", "CountryCode")),
      taxes_(Read(main, "eTax", "TaxCode")),
      classes_(Read(main, "eClass", "ClassCode")),
      business_(Read(main, "eMiscCode", "MiscCode")) {}

void DocumentCheck::Missing(const Caption& field, const Tell& tell) {
  tell(field, {"is missing", "未填"});
}

void DocumentCheck::Text(const Caption& field, std::string_view text, bool required,
                         const Tell& tell) {
  if (text.empty() && required) Missing(field, tell);
  if (!BreaksTheBody(text)) return;
  tell(field, {"has a sign that makes the document invalid (\" \\ or a line end)",
               "含有使文件无效的符号（\" \\ 或换行）"});
}

void DocumentCheck::Code(const Caption& field, std::string_view code, const Codes& codes,
                         const Tell& tell) {
  Text(field, code, true, tell);
  if (code.empty() || codes.empty() || codes.contains(code)) return;
  tell(field, {fmt::format("{} is not in the table", code), fmt::format("{} 不在代码表中", code)});
}

void DocumentCheck::Party(const DocumentParty& party, const Tell& tell) const {
  const Caption id_type{"identity type", "身份类别"};
  const Caption phone{"phone", "电话"};
  const Caption email{"e-mail", "电邮"};
  Text({"TIN", "税号"}, party.tin, true, tell);
  Text({"identity number", "身份号码"}, party.id_no, true, tell);
  Text(id_type, party.id_type, true, tell);
  const bool known =
      party.id_type == "NRIC" || party.id_type == "PASSPORT" || party.id_type == "BRN";
  if (!party.id_type.empty() && !known) {
    tell(id_type, {"must be NRIC, PASSPORT or BRN", "必须是 NRIC、PASSPORT 或 BRN"});
  }
  Text({"name", "姓名"}, party.name, true, tell);
  Text(phone, party.phone, true, tell);
  if (!party.phone.empty() && !party.phone.starts_with("+6")) {
    tell(phone, {"must begin with +6", "必须以 +6 开头"});
  }
  Text(email, party.email, false, tell);
  if (!party.email.empty() && party.email.find('@') == std::string::npos) {
    tell(email, {"has no @", "没有 @"});
  }
  Text({"address", "地址"}, party.address, true, tell);
  Text({"postcode", "邮编"}, party.postcode, true, tell);
  Text({"city", "城市"}, party.city, true, tell);
  Code({"state", "州"}, party.state, states_, tell);
  Code({"country", "国家"}, party.country, countries_, tell);
}

void DocumentCheck::Company(Connection& main, std::string_view comp_code, const Tell& tell) const {
  const Recordset row = main.Query("SELECT * FROM ECustMast WHERE CustID=" + QuoteStr(comp_code));
  if (row.Eof()) return;
  const auto text = [&row](const char* column) { return NullToEmpty(row.Field(column)); };
  Party({text("TIN"), text("CustTypeID"), text("CustType"), text("CustName"), text("Phone"),
         text("Email"), AddressLine(text("Address")), text("Postcode"), text("City"), text("State"),
         text("Country")},
        tell);
  Code({"business code", "行业代码"}, text("MISCCode"), business_, tell);
}

}  // namespace kaunter
