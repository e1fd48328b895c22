// What lets the office in at the e-invoicing service is told nowhere: not by the program, its log
// or its trace, whatever the service says back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/einvoice/stand_in.h"
#include "tests/play/office.h"

namespace kaunter {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kSetUp = R"play(signin ADMIN zebrawindmill
sql "UPDATE CompMast SET ClientID='CL13NT+/own',ClientSecret='S3CR3T\"+/own',MyTaxClientID='CL13NT-tin',MyTaxClientSecret='S3CR3T\\\\tin' WHERE CompCode='HQ'"
sql "INSERT INTO ECustMast (CustID,TIN,CustName,State,Country) VALUES ('HQ','C1','Kaunter','10','MYS')"
sql "INSERT INTO Systemast (Param,Value) VALUES ('Getclient_id','CL13NT-maintainer'),('Getclient_secret','S3CR3T-maintainer')"
sql "INSERT INTO Systemast (Param,Value) VALUES ('GetTokenURL','@/token'),('GetTINURL','@/tin'),('GetTokenInv','@/token'),('GetEInvAPISelfBill','@/selfbill'),('GetEInvAPIInv','@/invoice'),('GetEInvAPIStatus','@/status'),('GetEInvAPICancel','@/cancel/')"
)play";

// A document through all that is said about it.
const std::string kJourney = R"(menu SelfBillMnu
set CompCode HQ
set SuppName Ali
set SuppIDType NRIC
set SuppIDNo 700101105533
click Command1
set SuppTin IG1
set SuppMiscCode 64921
set SuppAdd "7, Jalan Tiga"
set SuppPostCode 43000
set SuppCity Kajang
set SuppState 10
set SuppCountry MYS
set SuppTel +60123456789
cell vsd 1 Description Tea
cell vsd 1 "Class Code" 022
cell vsd 1 Amount 5
answer yes
click SaveCmd
describe
show Result
)";
const std::string kAfter = R"(click CmdStatus
answer yes
click SSCommand4
describe
)";

// A charge that goes out as an invoice.
const std::string kInvoice = R"play(close
sql "INSERT INTO ChargeMast (ChargeID,CompCode,CustID,TrxDate,PType,ChargeAmt) VALUES ('INV1','HQ','HQ0001','2024-01-05','Invoice',7); INSERT INTO ECustMast (CustID,TIN) VALUES ('HQ0001','IG2')"
sql "INSERT INTO DataExport (SID,SQLStatement) VALUES ('VKT-Individual','SELECT h.ChargeID AS eInvID,1 AS SeqNo,h.TrxDate,h.CustID,h.CompCode,h.LoanID,1 AS SchID,h.PType AS InvType,''06'' AS TaxType,h.ChargeDesc AS InvDesc,h.ChargeAmt AS InvAmt,1 AS Qty,e.TIN AS tin,e.CustTypeID,e.CustType,e.CustName,e.Phone,e.Email,e.Address,e.Postcode,e.City,e.State,e.Country FROM ChargeMast AS h INNER JOIN ECustMast AS e ON e.CustID=h.CustID WHERE h.CompCode=@CompCode AND h.TrxDate>=@FromDate AND h.TrxDate<=@ToDate')"
menu EInvMenu
set DateFrom 01-01-2024
set DateTo 31-01-2024
answer yes
click SaveCmd
tick vsd 1 1
answer yes
click CmdPrint
answer yes
click CmdStatus
show Msg
describe
show vsd
)play";

TEST(EInvoiceSecrets, StandInNoOutputLogOrTrace) {
  StandIn service;
  const struct {
    const char* plan;
    bool sent;
  } cases[] = {
      {"{}", true},
      {R"({"faults":[{"path":"/token","kind":"echo","times":0}]})", false},
      {R"({"faults":[{"path":"/selfbill","kind":"echo"},{"path":"/tin","kind":"echo"}]})", false},
      {R"({"faults":[{"path":"/status","kind":"echo"},{"path":"/cancel","kind":"echo"},
           {"path":"/invoice","kind":"echo"}]})",
       true},
      {R"({"faults":[{"path":"/selfbill","kind":"cut"},{"path":"/token","kind":"cut"}]})", false},
  };
  std::set<std::string> secrets = {"CL13NT", "S3CR3T"};
  for (const auto& c : cases) {
    Office office;
    office.trace = office.Path("trace.txt");
    service.Plan(c.plan);
    std::string set_up = kSetUp;
    for (std::size_t at = set_up.find('@'); at != set_up.npos; at = set_up.find('@')) {
      set_up.replace(at, 1, service.Url(""));
    }
    const Played played = office.Play(set_up + kJourney + (c.sent ? kAfter + kInvoice : ""));
    EXPECT_EQ(played.status, Runner::kHeld) << c.plan << played.err << played.out;
    for (const Asked& asked : service.Received()) {
      if (asked.bearer.size() > 20) secrets.insert(asked.bearer.substr(7));
    }
    const std::string log = office.Read("logs/log31-01-2024.log");
    EXPECT_THAT(log, HasSubstr(c.sent ? "Token - ***" : "")) << c.plan;
    for (const std::string& secret : secrets) {
      EXPECT_THAT(played.out, Not(HasSubstr(secret))) << c.plan;
      EXPECT_THAT(played.err, Not(HasSubstr(secret))) << c.plan;
      EXPECT_THAT(log, Not(HasSubstr(secret))) << c.plan;
      EXPECT_THAT(office.Read("trace.txt"), Not(HasSubstr(secret))) << c.plan;
    }
  }
  EXPECT_GT(secrets.size(), 4u);
}

}  // namespace
}  // namespace kaunter
