#include "einvoice/invoice_service.h"

#include <fmt/format.h>

#include <utility>

#include "core/log.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/values.h"
#include "einvoice/json.h"
#include "einvoice/service_access.h"

namespace kaunter {
namespace {

// A quarrel of the service may be a page long.
constexpr std::size_t kShownReply = 200;

std::string Shortened(const std::string& text) {
  if (text.size() <= kShownReply) return text;
  std::size_t end = kShownReply;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + " ...";
}

}  // namespace

std::string AddressLine(std::string_view text) {
  std::string line;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool cr = text[at] == '\r';
    line += cr || text[at] == '\n' ? ' ' : text[at];
    if (cr && at + 1 < text.size() && text[at + 1] == '\n') ++at;
  }
  return line;
}

std::string InvoiceService::LoadSupplier(const std::string& comp_code) {
  comp_code_ = comp_code;
  token_.clear();
  trouble_ = {};
  const Recordset row = session_.Main().Query(fmt::format(
      "select ec.tin,ec.CustTypeID,ec.CustType,ec.MISCCode,em.MISCName,ec.CustName,ec.Phone,"
      "ec.Email,ec.Postcode,ec.City,ec.State,ec.Country,ec.Address from eCustMast as ec left outer "
      "join emisccode as em on ec.misccode=em.misccode WHERE CustID={}",
      QuoteStr(comp_code)));
  if (row.Eof()) return {};
  const auto field = [&row](std::string_view name) {
    return JsonQuote(NullToEmpty(row.Field(name)));
  };
  const std::string text =
      R"("supplier": {"tin":)" + field("tin") + R"(,"identity_number":)" + field("CustTypeID") +
      R"(,"identity_type":)" + field("CustType") + R"(,"msic_code":)" + field("MISCCode") +
      R"(,"business_activity":)" + field("MISCName") +
      R"(,"bank_account": "","sst": "","registration_name":)" + field("CustName") +
      R"(,"telephone":)" + field("Phone") + R"(,"email":)" + field("Email") +
      R"(,"address": {"postal_code":)" + field("Postcode") + R"(,"city":)" + field("City") +
      R"(,"state_code":)" + field("State") + R"(,"country_code":)" + field("Country") +
      R"(,"addresses": [)" + JsonQuote(AddressLine(NullToEmpty(row.Field("Address")))) + "]}},";
  GetToken();
  return text;
}

bool InvoiceService::NoToken(Caption why) {
  trouble_ = std::move(why);
  return false;
}

bool InvoiceService::GetToken() {
  token_.clear();
  const Recordset row = session_.Main().Query(
      "select ClientID,ClientSecret from CompMast where compcode=" + QuoteStr(comp_code_));
  const ServiceClient client =
      row.Eof() ? ServiceClient()
                : ServiceClient{NullToEmpty(row.Field(0)), NullToEmpty(row.Field(1))};
  const std::string url =
      ScalarQuery(session_.Main(), "SELECT Value FROM Systemast where Param='GetTokenInv'");
  if (client.id.empty()) {
    return NoToken({fmt::format("company {} has no Client ID", comp_code_),
                    fmt::format("公司 {} 没有客户编号", comp_code_)});
  }
  if (url.empty()) {
    return NoToken({"the setting GetTokenInv names no address for a token",
                    "设定 GetTokenInv 没有取得令牌的网址"});
  }
  try {
    std::string refusal;
    token_ = RequestToken(http_, mask_, url, client, {}, &refusal);
    if (token_.empty()) {
      const std::string said = Shortened(refusal);
      return NoToken({"the service gave none: " + said, "服务没有给令牌：" + said});
    }
  } catch (const HttpFailure& failure) {
    LogRollback(session_, "Get Token " + comp_code_, failure);
    return NoToken({failure.what(), failure.what()});
  }
  trouble_ = {};
  return true;
}

std::string InvoiceService::Send(std::string_view method, std::string_view url,
                                 std::string_view body) {
  return http_.HttpSend(method, url, body, token_, "json");
}

void InvoiceService::LogBody(std::string_view body) const {
  WriteLog(session_, LogLine(session_, body));
}

void InvoiceService::LogReply(std::string_view reply) const {
  for (const std::string& text : {"Token - " + token_, std::string(reply)}) {
    WriteLog(session_, LogLine(session_, WithoutSecrets(text)));
  }
}

StatusReply InvoiceService::AskStatus(std::string_view uuid) {
  const std::string url = ReadSetting(session_.Main(), "GetEInvAPIStatus");
  const std::string body = R"({"uuid": [)" + JsonQuote(uuid) + "]}";
  LogBody(body);
  const std::string reply = Send("post", url, body);
  WriteLog(session_, LogLine(session_, WithoutSecrets(reply)));
  return ReadStatusReply(reply);
}

}  // namespace kaunter
