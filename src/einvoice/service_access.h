// How the office gets in at the e-invoicing service: client ids with their secrets, and the tokens
// that it is given for them.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Connection;
class HttpClient;
class SecretMask;

struct ServiceClient {
  std::string id;
  std::string secret;
};

// For looking up tax numbers: the company's own, or where it has none those of the maintainer.
ServiceClient TinClient(Connection& main, std::string_view comp_code);

// Posts the request for a token, values as they stand, and gives the token of the reply, "" where
// it has none; it joins the secrets. What the service said instead goes to `refusal`, without
// secrets. Throws HttpFailure.
std::string RequestToken(HttpClient& http, SecretMask& secrets, const std::string& url,
                         const ServiceClient& client, std::string_view scope = {},
                         std::string* refusal = nullptr);

}  // namespace kaunter
