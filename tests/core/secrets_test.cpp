#include "core/secrets.h"

#include "gtest/gtest.h"

namespace kaunter {
namespace {

TEST(SecretsTest, AreNotShown) {
  const struct {
    const char* sql;
    const char* shown;
  } kCases[] = {
      {"SELECT UserID FROM UserMast WHERE UserID='A' AND UserDept=N'5E''BE' AND 1=1",
       "SELECT UserID FROM UserMast WHERE UserID='A' AND UserDept='***' AND 1=1"},
      {"UPDATE CompMast SET [ClientSecret] = 'x',SQLPath='y',MyTaxClientSecret='z'",
       "UPDATE CompMast SET [ClientSecret] = '***',SQLPath='y',MyTaxClientSecret='***'"},
      {"INSERT INTO CustMast (CustID,ATMPinNo,CustName) VALUES "
       "(left('ab,c',2),'1234','Tan'),('B',99,'')",
       "INSERT INTO CustMast (CustID,ATMPinNo,CustName) VALUES "
       "(left('ab,c',2),'***','Tan'),('B','***','')"},
      {"INSERT INTO Systemast (Param,Value) VALUES ('SMSPassword','x')",
       "INSERT INTO Systemast (Param,Value) VALUES ('SMSPassword','***')"},
      {"INSERT INTO Systemast (Param,Value) VALUES ('Getclient_id','x')",
       "INSERT INTO Systemast (Param,Value) VALUES ('Getclient_id','***')"},
      {"UPDATE CompMast SET ClientID='x',MyTaxClientID='y',CompDesc='z'",
       "UPDATE CompMast SET ClientID='***',MyTaxClientID='***',CompDesc='z'"},
      {"UPDATE Systemast SET Value='Data Source=a;Password=b' WHERE Param='LinkDB'",
       "UPDATE Systemast SET Value='***' WHERE Param='LinkDB'"},
      {"UPDATE CustMast SET CustBusiness='SECRET',CustName='Password'",
       "UPDATE CustMast SET CustBusiness='SECRET',CustName='Password'"},
      {"UPDATE UserMast SET UserDept='5EBE",
       "(a statement that does not parse and names a secret)"},
      {"SELECT 'kept'", "SELECT 'kept'"},
  };
  for (const auto& c : kCases) EXPECT_EQ(WithoutSecrets(c.sql), c.shown);
}

}  // namespace
}  // namespace kaunter
