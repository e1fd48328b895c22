// The functions that each engine brings along give the same: two implementations of the same rules,
// one in C++ and one on the server, are asked the same questions.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/platform/support/test_engine.h"

namespace kaunter {
namespace {

using testing::Engine;

constexpr const char* kTables[] = {
    "create table T (K int NOT NULL PRIMARY KEY, Name nvarchar(40) NULL, Amt decimal(18, 2) NULL, "
    "Due datetime NULL, N int NULL)",
    "insert into T values (3,'Tan Ah Kow  ',983.335,'2024-01-31 23:59:58',-7)",
    "insert into T values (1,'a.b[c]_%',-0.005,'2024-02-29',0)",
    "insert into T values (2,'Łódź 陈大文',null,null,null)",
    "insert into T values (4,'',12345678901.25,'1999-12-31 12:00:00',2147483647)",
    "insert into T values (5,null,0,'1900-01-01',1)",
    "update T set Amt=Amt+1 where K=1",  // moves a row
};

// Each is asked of every row of T.
constexpr const char* kExpressions = R"(
len(Name); upper(Name); lower(Name); reverse(Name); left(Name,4); right(Name,3);
substring(Name,0,3); substring(Name,2,100); charindex('AH',Name); charindex('',Name);
charindex('o',Name,9); patindex('%[a-c]%',Name); patindex('%ah%',Name); patindex('tan%',Name);
replace(Name,'A','xy'); stuff(Name,2,3,'--'); stuff(Name,99,1,'x'); replicate(Name,2);
'['+space(3)+']'; ltrim(rtrim(Name)); ascii(Name); unicode(Name); char(K+70); str(Amt,12,2);
str(Amt,4); isnumeric(Name); isnumeric('1,234.5'); isdate(Name); isdate('2024-02-30'); Name+'|';
concat(Name,'|',N); isnull(Name,'none'); nullif(Name,'');
case when Name like 'TAN%' then 1 else 0 end; case when Name like '%[^a-z ]%' then 1 else 0 end;
case when Name like 'a.b![c]!_!%' escape '!' then 1 else 0 end;
case when Name like '%.b[[]c%' then 1 else 0 end; case when Name like '_' then 1 else 0 end;
case when Name like '%KOW' then 1 else 0 end; case when Name='TAN AH KOW' then 1 else 0 end;
case when Name>'b' then 1 else 0 end; round(Amt,1); round(Amt,-2); round(Amt,1,1); floor(Amt);
ceiling(Amt); abs(Amt); sign(Amt); Amt/3; Amt*1.5; Amt%7; N/2; N%4; abs(N); -Amt;
convert(int,Amt); convert(varchar(30),Amt); convert(varchar(30),N); convert(nvarchar(30),Due);
convert(varchar(5),Name); convert(decimal(18,1),Amt); convert(float,N);
cast('12.50' as decimal(9,2)); convert(varchar,convert(float,N)); year(Due); month(Due); day(Due);
datepart(week,Due); datepart(weekday,Due); datepart(quarter,Due); datepart(dayofyear,Due);
datepart(iso_week,Due); datepart(hour,Due); datename(weekday,Due); datename(month,Due);
dateadd(month,1,Due); dateadd(year,-1,Due); dateadd(hour,25,Due); dateadd(week,2,Due);
datediff(day,Due,'2024-03-01'); datediff(week,Due,'2024-03-03'); datediff(month,'2020-05-31',Due);
datediff(hour,Due,'2024-02-01'); eomonth(Due); eomonth(Due,1); Due+1.5; Due-1;
convert(datetime,N%1000); convert(datetime,'31/01/2024',103);
convert(datetime,'Jan 31 2024 1:05PM'); convert(datetime,'13:05'); getdate();
iif(N>0,'plus','other'); coalesce(Name,convert(varchar,N)); power(2,3); sqrt(16))";
constexpr int kStyles[] = {0,   1,   2,   3,   4,   5,   6,   7,   8,   10,  11,  12,
                           13,  14,  20,  21,  23,  100, 101, 102, 103, 104, 105, 106,
                           107, 108, 110, 111, 112, 113, 114, 120, 121, 126};

// Whole statements: the order of rows and of Null, groups, sums. Row 2 stays out where texts are
// ordered: the server orders foreign letters as a dictionary does, the embedded engine by their
// code.
constexpr const char* kStatements[] = {
    "select K from T",
    "update T set N=N where K<3;select @@rowcount",
    "update T set N=N where K<4;select @@rowcount",
    "update T set N=N where K<5;select @@rowcount",
    "select top 2 K from T",
    "select K from T order by Amt",
    "select K from T order by Due desc",
    "select K from T order by case when K>0 then 0 end",  // all equal: by primary key
    "select K from T where K<>2 order by Name desc,K",
    "select sum(Amt),avg(Amt),avg(N),min(Name),max(Due),count(Name),count(distinct N) from T",
    "select upper(Name)+'x',count(*) from T where K<>2 group by upper(Name)+'x' order by 2,1",
    "select K,(select top 1 K from T as u where u.K>T.K order by u.Amt) from T order by K",
    "select a.K,b.K from T as a left join T as b on b.K=a.K+2 order by b.K,a.K",
    "select a.K,b.K from T as a left join T as b on b.K=a.K+2 order by 1 desc",
    "select a.K,b.K from T as a right join T as b on b.K=a.K+2 order by a.K desc,b.K",
    "select a.K,b.K from T as a full join T as b on b.K=a.K+2 order by a.K,b.K desc",
    "select row_number() over (order by Amt desc),K from T order by 1",
    "select N from T where Name not like '%a%' or Name is null order by K",
    "select table_name from information_schema.tables where table_name='t'",
    "select column_name,is_nullable from information_schema.columns where table_name='T' order by "
    "ordinal_position",
};

std::string Ask(Connection& connection, const std::string& statement) {
  std::string text;
  try {
    const Recordset rows = connection.Query(statement);
    for (const auto& row : rows.rows()) {
      for (const Value& value : row) text += (value.IsNull() ? "Null" : value.ToText()) + "|";
      text += '\n';
    }
  } catch (const SqlError& error) {
    return fmt::format("error {}", error.number());
  }
  return text;
}

TEST(Engines, FunctionsAndOrdersAgree) {
  Clock clock;
  clock.Set({2024, 3, 15, 14, 5, 9});
  testing::TestDatabases files(Engine::kEmbedded), servers(Engine::kPostgresql);
  const auto embedded = files.Open("office", clock);
  const auto server = servers.Open("office", clock);
  for (const char* statement : kTables) {
    embedded->Execute(statement);
    server->Execute(statement);
  }
  const auto compare = [&](const std::string& statement) {
    const std::string here = Ask(*embedded, statement);
    EXPECT_EQ(Ask(*server, statement), here) << statement;
  };
  std::istringstream expressions(kExpressions);
  for (std::string expression; std::getline(expressions >> std::ws, expression, ';');) {
    compare(fmt::format("select K,{} from T order by K", expression));
  }
  for (const int style : kStyles) {
    compare(fmt::format("select K,convert(varchar(40),Due,{}) from T order by K", style));
  }
  for (const char* statement : kStatements) compare(statement);
}

// What another tool writes meets the same widths.
TEST(Engines, PostgresHoldsATextToItsColumnByItself) {
  const Clock clock;
  testing::TestDatabases servers(Engine::kPostgresql);
  const auto server = servers.Open("office", clock);
  server->Execute("create table W (K nvarchar(3) NULL, B bit NULL)");
  server->Execute("create table L (K nvarchar(9) NULL)");
  server->Execute("insert into L values ('four')");
  try {
    server->Execute("insert into W (K) select K from L");
    ADD_FAILURE() << "a text longer than its column went through";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), 2628);
  }
}

}  // namespace
}  // namespace kaunter
