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

TEST(SecretsTest, ALineOfTheLogHasNoPassword) {
  const struct {
    const char* line;
    const char* shown;
  } kCases[] = {
      {"[AMY] Cannot open MainConn: Server=s;PWD=hush;Port=1",
       "[AMY] Cannot open MainConn: Server=s;PWD=***;Port=1"},
      {"Password={a;b};UID=x PWD=\"q\"", "Password=***};UID=x PWD=***\"q\""},
      {"A - Invalid column name (at 9, near 'UserDept='5EBE') in: UPDATE UserMast SET "
       "UserDept='5EBE22',X=1",
       "A - Invalid column name in: UPDATE UserMast SET UserDept='***',X=1"},
      {"A - Invalid (at 9, near 'X') in: UPDATE T SET X=1",
       "A - Invalid (at 9, near 'X') in: UPDATE T SET X=1"},
  };
  for (const auto& c : kCases) EXPECT_EQ(WithoutPasswords(c.line), c.shown);
}

TEST(SecretsTest, AStatementForSupportHasNoLiteral) {
  const struct {
    const char* sql;
    const char* shown;
  } kCases[] = {
      {"SELECT TOP 5 CustName  FROM CustMast WHERE CustNIC='800101-14-5555' AND CustName LIKE "
       "N'%Tan%'",
       "SELECT TOP ? CustName FROM CustMast WHERE CustNIC=? AND CustName LIKE ?"},
      {"SELECT 1 /* Tan Ah Kow */ -- his wife\nFROM [LoanMast]", "SELECT ? FROM [LoanMast]"},
      {"DELETE T WHERE A IN ('x', 'y',3) AND B=-2.50", "DELETE T WHERE A IN (?) AND B=-?"},
      {"INSERT INTO T (A,B,C) VALUES ('Tan',null,0x41)", "INSERT INTO T (A,B,C) VALUES (?,null,?)"},
      {"SELECT A AS 'Tan',\"Lim\" FROM T", "SELECT A AS ? FROM T"},
      {"SELECT 'Tan", "(a statement that does not parse)"},
  };
  for (const auto& c : kCases) EXPECT_EQ(WithoutLiterals(c.sql), c.shown);
}

}  // namespace
}  // namespace kaunter
