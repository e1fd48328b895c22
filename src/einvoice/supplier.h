// The company that sends documents: its block in their bodies, and its way in.
#pragma once

#include <string>

#include "einvoice/secret_mask.h"

namespace kaunter {

class HttpClient;
class Session;

struct EInvoiceSupplier {
  std::string text;   // "supplier": {...}, with the comma behind; "" for a company without identity
  std::string token;  // "" when there is none; requests then go out without
  std::string no_token_because;  // in the language in force; "" with a token
  SecretMask secrets;            // of the company's access
};

// Reads the identity of the company and asks the service for a token. Throws SqlError; a service
// that is away leaves the token empty.
EInvoiceSupplier LoadSupplier(Session& session, HttpClient& http, const std::string& comp_code);

}  // namespace kaunter
