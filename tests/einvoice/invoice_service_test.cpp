// The company's block and token, and what the log keeps of a conversation.
#include "einvoice/invoice_service.h"

#include <gtest/gtest.h>

#include "tests/einvoice/invoice_office.h"

namespace kaunter {
namespace {

TEST(InvoiceService, ATokenIsThatOfTheCompany) {
  InvoiceOffice office;
  InvoiceService service(office.session, office.desk);
  EXPECT_NE(service.LoadSupplier("HQ"), "");
  EXPECT_TRUE(service.has_token());
  EXPECT_EQ(AddressLine("a\r\nb\rc\nd\n"), "a b c d ");

  // A company without tax identity asks for no token, and has none of the company before.
  EXPECT_EQ(service.LoadSupplier("AB"), "");
  EXPECT_FALSE(service.has_token());
  EXPECT_EQ(office.service.Received().size(), 1u);
}

TEST(InvoiceService, WithoutATokenItTellsWhyAndLeavesTheRefusalToTheService) {
  InvoiceOffice office;
  InvoiceService service(office.session, office.desk);
  const struct {
    const char* change;
    const char* why;
  } cases[] = {
      {"UPDATE CompMast SET ClientSecret='wrong'", "gave none: {\"message\":\"The client is not"},
      {"UPDATE Systemast SET Value='http://127.0.0.1:1/x' WHERE Param='GetTokenInv'", "127.0.0.1"},
      {"UPDATE Systemast SET Value='file:///etc/passwd' WHERE Param='GetTokenInv'", "http"},
      {"DELETE Systemast WHERE Param='GetTokenInv'", "GetTokenInv"},
      {"UPDATE CompMast SET ClientID=NULL", "Client ID"}};
  for (const auto& one : cases) {
    office.Run(one.change);
    EXPECT_NE(service.LoadSupplier("HQ"), "");
    EXPECT_FALSE(service.has_token());
    EXPECT_NE(service.token_trouble().english.find(one.why), std::string::npos)
        << service.token_trouble().english;
  }
  EXPECT_EQ(service.Send("PUT", office.service.Url("/cancel/X"), "{}"),
            R"({"message":"Unauthorized"})");
  EXPECT_TRUE(service.TokenRefused());
}

TEST(InvoiceService, TheLogKeepsBodyAndReplyAndNoSecret) {
  InvoiceOffice office;
  InvoiceService service(office.session, office.desk);
  service.LoadSupplier("HQ");
  const std::string token =
      service.Send("GET", office.service.Url("/tin?idType=BRN&idValue=7"), "");
  const std::string bearer = office.service.Received().back().bearer.substr(7);
  ASSERT_EQ(bearer.size(), 32u) << token;
  service.LogReply("a reply that names " + bearer + " and s3cr3t-hq");
  EXPECT_TRUE(service.AskStatus("NOSUCH").error);
  const std::string log = office.LogText();
  EXPECT_EQ(log.find(bearer), log.npos);
  EXPECT_EQ(log.find("s3cr3t"), log.npos);
  for (const char* line :
       {"[AMY] Token - ***\n", "[AMY] a reply that names *** and ***\n",
        "[AMY] {\"uuid\": [\"NOSUCH\"]}\n", "[AMY] {\"message\":\"No document"}) {
    EXPECT_NE(log.find(line), log.npos) << line << log;
  }
}

}  // namespace
}  // namespace kaunter
