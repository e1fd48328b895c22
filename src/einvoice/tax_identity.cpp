#include "einvoice/tax_identity.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/picker.h"
#include "core/session.h"
#include "core/telling.h"
#include "core/values.h"
#include "screen/control.h"

namespace kaunter {
namespace {

constexpr std::string_view kCountryPrefix = "+6";
constexpr std::string_view kMalaysia = "MYS";
constexpr std::size_t kPostCodeDigits = 5;

bool AllDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// The row of a code: the code as it is stored and its name.
Recordset CodeRow(Connection& main, const TaxCodeTable& of, std::string_view code) {
  return main.Query(fmt::format("SELECT {0},{1} FROM {2} WHERE {0}={3}", of.code, of.name, of.table,
                                QuoteStr(code)));
}

}  // namespace

const TaxCodeTable kTaxState{
    "eState", "StateCode", "StateName", "eStatePop", {"Invalid State Code", "州属代码不正确"}};
const TaxCodeTable kTaxCountry{"eCountry",
                               "CountryCode",
                               "CountryName",
                               "eCountryPop",
                               {"Invalid Country Code", "国家代码不正确"}};
const TaxCodeTable kTaxMiscCode{
    "eMiscCode", "MiscCode", "MiscName", "eMiscPop", {"Invalid Misc Code", "行业代码不正确"}};

bool CheckPhone(Session& session, TextBox& box) {
  std::string phone = Trim(box.text());
  std::erase(phone, '-');
  box.SetText(phone);
  if (phone.empty()) return true;
  const std::string_view digits = std::string_view(phone).substr(phone.starts_with('+') ? 1 : 0);
  const Caption invalid{"Invalid Phone format", "电话格式不正确"};
  if (digits.empty() || !AllDigits(digits)) return Refuse(session, box, invalid);
  if (!phone.starts_with(kCountryPrefix)) {
    return Refuse(
        session, box,
        {invalid.english + "\nExample : +60123456789", invalid.chinese + "\n例子：+60123456789"});
  }
  box.SetMark(false);
  return true;
}

bool CheckEmail(Session& session, TextBox& box) {
  box.SetText(Trim(box.text()));
  if (!box.empty() && box.text().find('@') == std::string::npos) {
    return Refuse(session, box, {"Invalid email", "电邮不正确"});
  }
  box.SetMark(false);
  return true;
}

bool CheckPostCode(Session& session, TextBox& box, std::string_view country) {
  box.SetText(Trim(box.text()));
  const std::string& code = box.text();
  const bool at_home = country.empty() || SameText(country, kMalaysia);
  if (!code.empty() && at_home && (code.size() != kPostCodeDigits || !AllDigits(code))) {
    return Refuse(session, box, {"Invalid Post Code", "邮政编码不正确"});
  }
  box.SetMark(false);
  return true;
}

template <typename Box>
bool CheckTaxCode(Session& session, Box& box, Label& name, const TaxCodeTable& of) {
  const std::string code = Trim(box.text());
  name.SetText({});
  if (code.empty()) {
    box.SetText({});
    return true;
  }
  const Recordset row = CodeRow(session.Main(), of, code);
  if (row.Eof()) return Refuse(session, box, of.invalid);
  box.SetText(NullToEmpty(row.Field(0)));
  name.SetText(NullToEmpty(row.Field(1)));
  box.SetMark(false);
  return true;
}

template bool CheckTaxCode(Session&, TextBox&, Label&, const TaxCodeTable&);
template bool CheckTaxCode(Session&, ComboBox&, Label&, const TaxCodeTable&);

void OfferTaxCode(Session& session, TextBox& box, Label& name, const TaxCodeTable& of) {
  box.onLeave = [&session, &box, &name, &of] { CheckTaxCode(session, box, name, of); };
  OfferPicker(session, box, std::string(of.picker), [&box](const std::string& chosen) {
    box.SetText(chosen);
    box.onLeave();
  });
}

std::string TaxCodeName(Connection& main, const TaxCodeTable& of, std::string_view code) {
  const Recordset row = CodeRow(main, of, code);
  return row.Eof() ? std::string() : NullToEmpty(row.Field(1));
}

std::string StateCodeOf(Connection& main, std::string_view state_name) {
  std::string name = Trim(state_name);
  if (name.empty()) return {};
  const auto code = [&main](const std::string& of) {
    return ScalarQuery(main, "SELECT StateCode FROM eState WHERE StateName=" + QuoteStr(of));
  };
  if (std::string found = code(name); !found.empty()) return found;
  // "W.P. LABUAN", as the record of a customer has it.
  constexpr std::string_view kShort = "W.P. ";
  if (!SameText(name.substr(0, kShort.size()), kShort)) return {};
  return code("Wilayah Persekutuan " + name.substr(kShort.size()));
}

}  // namespace kaunter
