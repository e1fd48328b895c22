// "Get TIN": the tax number of a person or company, asked of the service by identity. One lives as
// long as the screen that offers it, and with it the token and the count of failures.
#pragma once

#include <string>

#include "einvoice/http_client.h"
#include "einvoice/secret_mask.h"
#include "screen/caption.h"

namespace kaunter {

class Control;
class Screen;

class TinLookup {
 public:
  TinLookup(Session& session, Screen& screen);

  // The tax number; "" when there is none to be had, which has been told then. `comp_code` is whose
  // access is used; `id_type` and `id_no` are the boxes that name the identity.
  std::string Get(const std::string& comp_code, Control& id_type, Control& id_no);

 private:
  // False after it has told why there is none.
  bool HaveToken(const std::string& comp_code);
  std::string Ask(const std::string& comp_code, const std::string& id_type,
                  const std::string& id_no);
  void TellFailed(const Caption& words, const HttpFailure& failure);

  Session& session_;
  Screen& screen_;
  HttpClient http_;
  SecretMask secrets_;
  std::string token_;
  std::string token_company_;
  int failures_ = 0;
};

}  // namespace kaunter
