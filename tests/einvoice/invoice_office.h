// An office that submits to a stand-in of the service: company HQ with its tax identity, a few of
// the authority's codes, the addresses of the service.
#pragma once

#include <fmt/format.h>

#include <string>

#include "tests/core/office.h"
#include "tests/einvoice/stand_in.h"

namespace kaunter {

struct InvoiceOffice : Office {
  InvoiceOffice() : Office(State::patched) {
    session.CurrentCompCode = "HQ";
    session.CurrentLevel = 4;
    session.AllowDelete = true;
    Run("UPDATE CompMast SET ClientID='client-hq',ClientSecret='s3cr3t-hq' WHERE CompCode='HQ';"
        "DELETE FROM eState; DELETE FROM eCountry; DELETE FROM eMiscCode; DELETE FROM eClass;"
        "DELETE FROM eTax;"
        "INSERT INTO eState VALUES ('10','Selangor'),('14','Kuala Lumpur');"
        "INSERT INTO eCountry VALUES ('MYS','MALAYSIA');"
        "INSERT INTO eMiscCode VALUES ('64921','Money lending');"
        "INSERT INTO eClass VALUES ('004','Consolidated'),('016','Income');"
        "INSERT INTO eTax VALUES ('06','Not applicable');"
        "INSERT INTO ECustMast (CustID,TIN,MISCCode,Address,PostCode,City,State,Country,Phone,"
        "Email,CustType,CustTypeID,CustName) VALUES ('HQ','C1234567890','64921','1 Jalan "
        "Satu\r\nTaman Dua','50000','Kuala Lumpur','14','MYS','+60311112222','hq@office.example',"
        "'BRN','200801012344','Kaunter Credit Sdn Bhd')");
    for (const auto& [key, path] :
         {std::pair{"GetTokenURL", "/token"}, std::pair{"GetTINURL", "/tin"},
          std::pair{"GetTokenInv", "/token"}, std::pair{"GetEInvAPIInv", "/invoice"},
          std::pair{"GetEInvAPICN", "/creditnote"},
          std::pair{"GetEInvAPIConsolidated", "/consolidated"},
          std::pair{"GetEInvAPICancel", "/cancel/"}, std::pair{"GetEInvAPIStatus", "/status"},
          std::pair{"GetEInvAPISelfBill", "/selfbill"}}) {
      Run(fmt::format("INSERT INTO Systemast (Param,Value) VALUES ({},{})", QuoteStr(key),
                      QuoteStr(service.Url(path))));
    }
  }

  // The whole text log.
  std::string LogText() {
    std::string text;
    for (const std::string& line : Log()) text += line + "\n";
    return text;
  }

  StandIn service;
};

}  // namespace kaunter
