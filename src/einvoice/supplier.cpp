#include "einvoice/supplier.h"

#include <fmt/format.h>

#include "core/log.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/values.h"
#include "einvoice/http_client.h"
#include "einvoice/json.h"
#include "einvoice/service_access.h"

namespace kaunter {
namespace {

// A line end, whichever way it was written, is one blank.
std::string OnOneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

std::string SupplierText(const Recordset& row) {
  const auto quoted = [&row](const char* column) {
    return JsonQuote(NullToEmpty(row.Field(column)));
  };
  return fmt::format(
      "\"supplier\": {{\"tin\":{},\"identity_number\":{},\"identity_type\":{},\"msic_code\":{},"
      "\"business_activity\":{},\"bank_account\": \"\",\"sst\": \"\",\"registration_name\":{},"
      "\"telephone\":{},\"email\":{},\"address\": {{\"postal_code\":{},\"city\":{},"
      "\"state_code\":{},\"country_code\":{},\"addresses\": [{}]}}}},",
      quoted("tin"), quoted("CustTypeID"), quoted("CustType"), quoted("MISCCode"),
      quoted("MISCName"), quoted("CustName"), quoted("Phone"), quoted("Email"), quoted("Postcode"),
      quoted("City"), quoted("State"), quoted("Country"),
      JsonQuote(OnOneLine(NullToEmpty(row.Field("Address")))));
}

void TakeToken(Session& session, HttpClient& http, const std::string& comp_code,
               EInvoiceSupplier& supplier) {
  const Recordset access = session.Main().Query(
      "select ClientID,ClientSecret from CompMast where compcode=" + QuoteStr(comp_code));
  const std::string url = ReadSetting(session.Main(), "GetTokenInv");
  const ServiceClient client =
      access.Eof() ? ServiceClient()
                   : ServiceClient{NullToEmpty(access.Field(0)), NullToEmpty(access.Field(1))};
  if (url.empty() || client.id.empty()) {
    supplier.no_token_because =
        session.In(url.empty() ? Caption{"The setting GetTokenInv names no address for a token.",
                                         "设定 GetTokenInv 没有取得令牌的网址。"}
                               : Caption{fmt::format("Company {} has no Client ID.", comp_code),
                                         fmt::format("公司 {} 没有客户编号。", comp_code)});
    return;
  }
  try {
    supplier.token = RequestToken(http, supplier.secrets, url, client);
    if (supplier.token.empty()) {
      supplier.no_token_because = session.In({"The service gave no token.", "服务没有给令牌。"});
    }
  } catch (const HttpFailure& failure) {
    LogRollback(session, "Get Token " + comp_code, failure);
    supplier.no_token_because = failure.what();
  }
}

}  // namespace

EInvoiceSupplier LoadSupplier(Session& session, HttpClient& http, const std::string& comp_code) {
  EInvoiceSupplier supplier;
  const Recordset row = session.Main().Query(
      "select ec.tin,ec.CustTypeID,ec.CustType,ec.MISCCode,em.MISCName,ec.CustName,ec.Phone,"
      "ec.Email,ec.Postcode,ec.City,ec.State,ec.Country,ec.Address from eCustMast as ec left outer "
      "join emisccode as em on ec.misccode=em.misccode WHERE CustID=" +
      QuoteStr(comp_code));
  if (row.Eof()) return supplier;
  supplier.text = SupplierText(row);
  TakeToken(session, http, comp_code, supplier);
  return supplier;
}

}  // namespace kaunter
