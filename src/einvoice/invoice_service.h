// A conversation with the e-invoicing service on behalf of one company: the token that is got once
// and serves all requests after it, and the log of what was said. Credentials and token stand there
// as ***.
#pragma once

#include <string>
#include <string_view>

#include "einvoice/http_client.h"
#include "einvoice/secret_mask.h"
#include "einvoice/service_reply.h"
#include "screen/caption.h"

namespace kaunter {

// Each line end a blank: an address in a document.
std::string AddressLine(std::string_view text);

class InvoiceService {
 public:
  InvoiceService(Session& session, Desk& desk) : session_(session), http_(session, desk) {}

  // The company as documents name it, `"supplier": {...},`; "" when it has no tax identity, and
  // then no token is asked for. What keeps a token from coming is no failure: the requests go out
  // without one and the service refuses them.
  std::string LoadSupplier(const std::string& comp_code);
  // Of the company that was loaded; false when none comes.
  bool GetToken();
  bool has_token() const { return !token_.empty(); }
  // Why there is none.
  const Caption& token_trouble() const { return trouble_; }

  // A request with the token. Throws HttpFailure.
  std::string Send(std::string_view method, std::string_view url, std::string_view body);
  // The service did not take the token of the request that was answered last.
  bool TokenRefused() const { return http_.status() == kUnauthorised; }
  // The lines of a submission: its body, then the token and the reply.
  void LogBody(std::string_view body) const;
  void LogReply(std::string_view reply) const;
  std::string WithoutSecrets(std::string_view text) const { return mask_.Hide(text); }

  // Asks for the status of one document, with its lines in the log. Throws HttpFailure.
  StatusReply AskStatus(std::string_view uuid);

  HttpClient& http() { return http_; }

 private:
  static constexpr int kUnauthorised = 401;

  bool NoToken(Caption why);

  Session& session_;
  HttpClient http_;
  SecretMask mask_;
  std::string comp_code_;
  std::string token_;
  Caption trouble_;
};

}  // namespace kaunter
