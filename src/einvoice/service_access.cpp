#include "einvoice/service_access.h"

#include <fmt/format.h>

#include "core/settings.h"
#include "core/values.h"
#include "einvoice/http_client.h"
#include "einvoice/json.h"
#include "einvoice/secret_mask.h"

namespace kaunter {

ServiceClient TinClient(Connection& main, std::string_view comp_code) {
  const std::string company = QuoteStr(comp_code);
  const std::string id =
      ScalarQuery(main, "SELECT MyTaxClientID FROM CompMast WHERE CompCode=" + company);
  if (id.empty()) return {ReadSetting(main, "Getclient_id"), ReadSetting(main, "Getclient_secret")};
  return {id,
          ScalarQuery(main, "SELECT MyTaxClientSecret FROM CompMast WHERE CompCode=" + company)};
}

std::string RequestToken(HttpClient& http, SecretMask& secrets, const std::string& url,
                         const ServiceClient& client, std::string_view scope,
                         std::string* refusal) {
  secrets.Add(client.id);
  secrets.Add(client.secret);
  const std::string body =
      fmt::format("grant_type=client_credentials{}{}&client_id={}&client_secret={}",
                  scope.empty() ? "" : "&scope=", scope, client.id, client.secret);
  const std::string reply = http.HttpSend("POST", url, body, {}, "form");
  const std::string token = Parse(reply).Item("access_token").ToText();
  secrets.Add(token);
  if (token.empty() && refusal != nullptr) *refusal = secrets.Hide(reply);
  return token;
}

}  // namespace kaunter
