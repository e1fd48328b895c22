// Each engine behaves as SQL Server does wherever statements can see it. The expected rows
// and numbers are that server's documented rules.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/sql/transaction.h"
#include "tests/platform/support/error_number.h"
#include "tests/platform/support/test_engine.h"

namespace kaunter {
namespace {

using testing::Engine;
using ::testing::HasSubstr;

constexpr const char* kTables = R"(
create table LoanMast (LoanID nvarchar(20) NOT NULL PRIMARY KEY, CustID nvarchar(20) NULL,
  CompCode nvarchar(10) NULL, LoanAmt decimal(18, 2) NULL, PayOutAmt decimal(18, 2) NULL,
  InsRate decimal(18, 4) NULL, LoanTerm nvarchar(10) NULL, TrxDate datetime NULL,
  Memo1 nvarchar(max) NULL);
create table SchMast (SchID int NOT NULL, LoanID nvarchar(20) NOT NULL, DueDate datetime NULL,
  PayableAmt decimal(18, 2) NULL, Payment decimal(18, 2) NULL default 0,
  PRIMARY KEY (LoanID, SchID));
create table CustMast (CustID nvarchar(20) NOT NULL PRIMARY KEY, CustName nvarchar(10) NULL,
  DOB date NULL, CustChild int NULL);
create table NumberMast (CustID nvarchar(20) NOT NULL PRIMARY KEY, LoanNo nvarchar(10) NULL,
  PaymentNo int NULL);
create table CashBook (DocID int IDENTITY(1,1) NOT NULL PRIMARY KEY, CompCode nvarchar(10) NULL,
  TranAmt decimal(18, 2) NULL);
create table UserMast (UserID nvarchar(20) NOT NULL, UserName nvarchar(20) NOT NULL,
  DateCreated datetime NOT NULL default getdate());
create unique index UserName on UserMast (UserName);
insert into CustMast (CustID,CustName,DOB,CustChild) values ('C1','Tan Ah Kow','1980-05-01',2);
insert into CustMast (CustID,CustName,DOB,CustChild) values ('C2','陈大文',null,0);
insert into CustMast (CustID,CustName) values ('C3','Ali');
insert into LoanMast (LoanID,CustID,CompCode,LoanAmt,PayOutAmt,InsRate,LoanTerm,TrxDate)
  values ('L1','C1','HQ',3000,2850.50,1.5,'12','2024-01-31');
insert into LoanMast (LoanID,CustID,CompCode,LoanAmt,PayOutAmt,InsRate,LoanTerm,TrxDate)
  values ('L2','C2','KL',500.05,500.05,0.0625,'6','2024-02-29 10:30:00');
insert into SchMast values (1,'L1','2024-02-29',983.33,983.13);
insert into SchMast values (2,'L1','2024-03-31',983.33,0);
insert into SchMast values (10,'L1','2024-04-30',983.34,0);
insert into SchMast values (9,'L1','2024-05-31',0.1,0.1);
insert into SchMast values (1,'L2','2024-03-29',100.10,100.10);
insert into NumberMast values ('C1','005',7);
insert into UserMast (UserID,UserName) values ('U1','Ann');
)";

// Rows as lines, fields parted by "|", Null as "NULL".
std::string Show(const Recordset& rows) {
  std::string text;
  for (const auto& row : rows.rows()) {
    if (!text.empty()) text += '\n';
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text += '|';
      text += row[i].IsNull() ? "NULL" : row[i].ToText();
    }
  }
  return text;
}

// `run` is executed first; then `ask` gives `rows`, or one of the two is refused.
struct Case {
  Case(const char* to_run, const char* then_ask, const char* given, int refused = 0,
       const char* with = "")
      : run(to_run), ask(then_ask), rows(given), number(refused), piece(with) {}
  Case(const char* only_ask, const char* given) : Case("", only_ask, given) {}
  const char *run, *ask, *rows;
  int number;
  const char* piece;
};

Case Refused(int number, const char* piece, const char* run) {
  return {run, "", "", number, piece};
}
Case RefusedQuery(int number, const char* piece, const char* ask) {
  return {"", ask, "", number, piece};
}

class Behaviour : public ::testing::TestWithParam<Engine> {
 protected:
  Behaviour() {
    clock_.Set({2024, 3, 15, 14, 5, 9});
    db_ = Open("MainConn");
    db_->BeginTrans();
    db_->Execute(kTables);
    db_->CommitTrans();
  }
  std::unique_ptr<Connection> Open(const std::string& name) {
    return databases_.Open("office", clock_, name);
  }

  // Each case stands alone: its changes are rolled back.
  void Check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(fmt::format("{} / {}", c.run, c.ask));
      db_->BeginTrans();
      try {
        if (*c.run != '\0') db_->Execute(c.run);
        const std::string rows = *c.ask == '\0' ? "" : Show(db_->Query(c.ask));
        EXPECT_EQ(c.number, 0) << "not refused; rows: " << rows;
        if (c.number == 0) {
          EXPECT_EQ(rows, c.rows);
        }
      } catch (const SqlError& error) {
        EXPECT_EQ(error.number(), c.number) << error.what();
        if (c.number != 0) {
          EXPECT_THAT(error.what(), HasSubstr(c.piece));
        }
      }
      db_->RollbackTrans();
    }
  }

  std::string Ask(const char* sql) { return Show(db_->Query(sql)); }

  Clock clock_;
  testing::TestDatabases databases_{GetParam()};
  std::unique_ptr<Connection> db_;
};

TEST_P(Behaviour, TextIgnoresCaseAndTrailingBlanks) {
  Check({
      {"select LoanID from LOANMAST where loanid='l1 '", "L1"},
      {"select count(*) from CustMast where CustName='TAN AH KOW'", "1"},
      {"select CustID from CustMast where CustName=N'陈大文'", "C2"},
      {"select CustID from CustMast order by CustName", "C3\nC1\nC2"},
      {"select count(*) from LoanMast where upper(CompCode)='hq'", "1"},
      {"select count(*) from LoanMast where isnull(CompCode,'x')+'1'='HQ1'", "1"},
      {"select count(*) from LoanMast where (case when LoanID='L1' then 'A' else 'B' end)='a'",
       "1"},
      {"select count(*) from LoanMast where CompCode in ('hq','kl ')", "2"},
      {"insert into LoanMast (LoanID,CompCode) values ('L3','hq ')",
       "select count(*) from (select distinct CompCode from LoanMast) as x", "2"},
      {"insert into LoanMast (LoanID,CompCode) values ('L3','hq')",
       "select count(*) from LoanMast group by CompCode order by count(*)", "1\n2"},
      Refused(2627, "PRIMARY KEY", "insert into LoanMast (LoanID) values ('l1 ')"),
      Refused(2601, "UserName", "insert into UserMast (UserID,UserName) values ('U2','ANN')"),
      {"select CustID from CustMast where CustName like '%ah%'", "C1"},
      {"select CustID from CustMast where CustName like 't_n%'", "C1"},
      {"select CustID from CustMast where CustName like '[a-b]%'", "C3"},
      {"select CustID from CustMast where CustName like '[^a-b]%' order by CustID", "C1\nC2"},
      {"select CustID from CustMast where CustName like '陈%'", "C2"},
      {"select CustID from CustMast where CustName not like '%a%'", "C2"},
      {"select count(*) from CustMast where CustName like '*'", "0"},
      {"select len('ab  '), charindex('AH',CustName), replace(CustName,'AH','x') from CustMast "
       "where CustID='C1'",
       "2|5|Tan x Kow"},
      {"select left(CustName,3)+'-'+right(CustName,3) from CustMast where CustID='C1'", "Tan-Kow"},
      {"select CustName+null from CustMast where CustID='C1'", "NULL"},
      {"select char(65)+char(66)", "AB"},
  });
}

TEST_P(Behaviour, TextThatDoesNotFitIsRefused) {
  Check({
      Refused(2628, "CustName",
              "insert into CustMast (CustID,CustName) values ('C9','12345678901')"),
      Refused(2628, "CustName", "update CustMast set CustName='12345678901' where CustID='C1'"),
      Refused(2628, "CustName", "update CustMast set CustName=CustName+'x' where CustID='C1'"),
      {"update CustMast set CustName='1234567890   ' where CustID='C1'",
       "select CustName from CustMast where CustID='C1'", "1234567890"},
      {"update CustMast set CustName='陈陈陈陈陈陈陈陈陈陈' where CustID='C1'",
       "select len(CustName) from CustMast where CustID='C1'", "10"},
      {"update LoanMast set Memo1='a;b--c/*d''e[' where LoanID='L1'",
       "select Memo1 from LoanMast where LoanID='L1'", "a;b--c/*d'e["},
  });
}

TEST_P(Behaviour, DecimalsHoldExactlyTheirPlaces) {
  Check({
      {"update LoanMast set LoanAmt=1234.565 where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "1234.57"},
      {"update LoanMast set LoanAmt=-1234.565 where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "-1234.57"},
      {"update LoanMast set LoanAmt='1234.565' where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "1234.57"},
      {"update LoanMast set LoanAmt=LoanAmt*1.5/7 where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "642.86"},
      {"update LoanMast set LoanAmt=LoanAmt-2999.995 where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "0.01"},
      // What is rounded is the exact difference, not the binary one: 983.30-983.295 is 0.005.
      {"update SchMast set Payment=PayableAmt-983.325-983.33+983.33 where SchID=2",
       "select Payment from SchMast where SchID=2", "0.01"},
      {"update SchMast set Payment=(PayableAmt-983.325)*1.0 where SchID=2",
       "select Payment from SchMast where SchID=2", "0.01"},
      {"update SchMast set Payment=(PayableAmt-983.325)/1 where SchID=2",
       "select Payment from SchMast where SchID=2", "0.01"},
      {"update SchMast set Payment=PayableAmt-7866.60/8 where SchID=2",
       "select Payment from SchMast where SchID=2", "0.01"},
      {"update SchMast set Payment=983.325-PayableAmt where SchID=2",
       "select Payment,convert(decimal(18,2),PayableAmt-983.325) from SchMast where SchID=2",
       "-0.01|0.01"},
      {"update SchMast set Payment=PayableAmt*InsRate-1474.985 from SchMast,LoanMast where "
       "SchMast.LoanID=LoanMast.LoanID and SchID=2",
       "select Payment from SchMast where SchID=2", "0.01"},
      {"update SchMast set Payment=(select sum(PayableAmt-982.325) from SchMast where SchID=2)",
       "select distinct Payment from SchMast", "1.01"},
      {"select isnull(CustChild,1.5)+isnull(null,2.5) from CustMast where CustID='C3'", "3.5"},
      {"update LoanMast set LoanAmt=-0.004 where LoanID='L1'",
       "select LoanAmt from LoanMast where LoanID='L1'", "0"},
      {"select SchID from SchMast where PayableAmt-Payment=0.20", "1"},
      {"select PayableAmt-Payment from SchMast where LoanID='L1' and SchID=1", "0.2"},
      {"select count(*) from SchMast where PayableAmt-Payment<>0", "3"},
      {"select count(*) from SchMast where Payment<PayableAmt", "3"},
      {"select LoanID from LoanMast where PayOutAmt=LoanAmt", "L2"},
      {"select sum(PayableAmt) from SchMast where LoanID='L1'", "2950.1"},
      {"select sum(PayableAmt-Payment) from SchMast where SchID=9", "0"},
      {"select LoanID,sum(PayableAmt)-sum(Payment) from SchMast group by LoanID having "
       "sum(PayableAmt)-sum(Payment)>0",
       "L1|1966.87"},
      {"update LoanMast set PayOutAmt=(select sum(Payment) from SchMast where "
       "LoanID=LoanMast.LoanID)",
       "select PayOutAmt from LoanMast order by LoanID", "983.23\n100.1"},
      {"select InsRate from LoanMast order by LoanID", "1.5\n0.0625"},
      {"select LoanAmt/100 from LoanMast where LoanID='L1'", "30"},
      {"select PaymentNo/2 from NumberMast", "3"},
      {"select 7/2", "3"},
      {"select PaymentNo%4 from NumberMast", "3"},
      {"select convert(nvarchar(20),LoanAmt)+' X '+LoanTerm from LoanMast where LoanID='L1'",
       "3000.00 X 12"},
      {"select isnull(sum(Payment),0) from SchMast where LoanID='none'", "0"},
      {"select avg(SchID) from SchMast where LoanID='L1'", "5"},
      {"select round(12.345,2), round(-12.345,2)", "12.35|-12.35"},
      Refused(8115, "", "update LoanMast set LoanAmt=123456789012345678 where LoanID='L1'"),
      Refused(8115, "A", "create table D (A decimal(5, 2)); insert into D (A) values (1000)"),
      Refused(8115, "A", "create table D (A decimal(5, 2)); insert into D (A) values (-999.995)"),
      {"create table D (A decimal(5, 2), B bit); insert into D values (-999.994, 5)",
       "select A,B from D", "-999.99|1"},
      {"select 0*-1.5, -0.00, -1*LoanAmt+LoanAmt from LoanMast where LoanID='L1'", "0|0|0"},
      Refused(8114, "LoanAmt", "update LoanMast set LoanAmt='' where LoanID='L1'"),
      Refused(8114, "LoanAmt", "update LoanMast set LoanAmt='1,234.50' where LoanID='L1'"),
      Refused(8114, "", "insert into LoanMast (LoanID,LoanAmt) values ('L9','abc')"),
      Refused(8134, "zero", "update LoanMast set LoanAmt=LoanAmt/(LoanAmt-3000) where LoanID='L1'"),
  });
}

// Only money has these texts: a decimal shows all its places under every style.
// A million rows, whose sums of binary fractions drift by whole sen.
TEST_P(Behaviour, SumsOfManyRowsAreExact) {
  db_->Execute("create table N (K int NOT NULL PRIMARY KEY, V decimal(18, 2) NULL)");
  db_->BeginTrans();
  for (int k = 1; k <= 1000; ++k) {
    db_->Execute(fmt::format("insert into N values ({},{}*100000.01)", k, k));
  }
  db_->CommitTrans();
  Check({
      {"select sum(a.V),avg(a.V),sum(a.V*0.015),convert(decimal(18,2),sum(a.V/3)) from N as a,N as "
       "b",
       "50050005005000|50050005.005|750750075075|16683335001666.67"},
      {"select max(S),max(A),max(N) from (select sum(a.V) over (order by a.K,b.K) as S,avg(a.V) "
       "over (order by a.K,b.K) as A,avg(a.K) over (order by a.K,b.K) as N from N as a,N as b) as "
       "x",
       "50050005005000|50050005.005|500"},
      {"select sum(distinct a.V),avg(distinct a.V) from N as a,N as b", "50050005005|50050005.005"},
  });
}

TEST_P(Behaviour, MoneyHasItsOwnTexts) {
  Check({
      {"select convert(nvarchar,convert(money,150000),1)", "150,000.00"},
      {"select convert(nvarchar(30),cast('-1234567.895' as money),1)", "-1,234,567.90"},
      {"select convert(nvarchar,cast(-999.5 as money),1), convert(nvarchar,cast(-0.004 as "
       "money),1)",
       "-999.50|0.00"},
      {"select convert(nvarchar,cast(1000 as money)), cast(cast(1000.4567 as money) as nvarchar)",
       "1000.00|1000.46"},
      {"select convert(nvarchar,cast(1000.4567 as money),0), convert(nvarchar,cast(1000 as "
       "money),2)",
       "1000.46|1000.0000"},
      {"select convert(nvarchar,LoanAmt,1) from LoanMast where LoanID='L1'", "3000.00"},
      // Money stays money among integers, in sums and averages; beside a decimal it is a decimal.
      {"select convert(nvarchar,sum(convert(money,LoanAmt))*10,1) from LoanMast", "35,000.50"},
      {"select convert(nvarchar,avg(convert(money,LoanAmt)),2) from LoanMast", "1750.0250"},
      {"select convert(nvarchar,isnull(convert(money,null),5000),1)", "5,000.00"},
      {"select convert(nvarchar,convert(money,5000)+LoanAmt,1) from LoanMast where LoanID='L1'",
       "8000.0000"},
      {"select count(*) from LoanMast where convert(nvarchar,convert(money,null),1) is null", "2"},
      RefusedQuery(281, "9", "select convert(nvarchar,convert(money,5),9)"),
      Refused(257, "money", "update LoanMast set Memo1=convert(money,LoanAmt)"),
  });
}

// Thousands of drawn amounts against plain whole numbers.
TEST_P(Behaviour, RandomAmountsStayExact) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  const auto draw = [&random] {
    const auto size = static_cast<std::int64_t>(random() % 12);
    std::int64_t limit = 10;
    for (std::int64_t i = 0; i < size; ++i) limit *= 10;
    const auto thousandths =
        static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(limit));
    return random() % 2 == 0 ? thousandths : -thousandths;
  };
  const auto text = [](std::int64_t thousandths) {
    const std::int64_t size = thousandths < 0 ? -thousandths : thousandths;
    return fmt::format("{}{}.{:03}", thousandths < 0 ? "-" : "", size / 1000, size % 1000);
  };
  const auto sen = [](std::int64_t thousandths) {
    return (thousandths + (thousandths < 0 ? -5 : 5)) / 10;
  };
  db_->BeginTrans();
  db_->Execute("delete from SchMast");
  std::int64_t sum = 0, difference = 0;
  std::vector<std::pair<std::int64_t, std::int64_t>> rows;
  for (int i = 0; i < 2000; ++i) {
    const std::int64_t a = draw(), b = draw();
    rows.emplace_back(sen(a), sen(b));
    sum += sen(a);
    difference += sen(a) - sen(b);
    // A literal, and the same amount as an expression.
    db_->Execute(fmt::format(
        "insert into SchMast (SchID,LoanID,PayableAmt,Payment) values ({},'L9',{},{}*1)", i,
        text(a), text(b)));
  }
  const auto units = [](const Value& value) { return value.AsMoney()->ten_thousandths() / 100; };
  Recordset stored = db_->Query(
      "select PayableAmt,Payment,PayableAmt-Payment,PayableAmt+Payment from SchMast order by "
      "SchID");
  for (const auto& [a, b] : rows) {
    ASSERT_EQ(units(stored.Field(0)), a);
    ASSERT_EQ(units(stored.Field(1)), b);
    ASSERT_EQ(units(stored.Field(2)), a - b);
    ASSERT_EQ(units(stored.Field(3)), a + b);
    stored.MoveNext();
  }
  const Recordset sums = db_->Query("select sum(PayableAmt),sum(PayableAmt-Payment) from SchMast");
  EXPECT_EQ(units(sums.Field(0)), sum);
  EXPECT_EQ(units(sums.Field(1)), difference);
  // Each row finds itself by its own difference, written as a decimal, and a sen beside it parts
  // smaller from greater.
  for (int i = 0; i < 2000; i += 97) {
    const auto& [a, b] = rows[static_cast<std::size_t>(i)];
    for (const int beside : {-1, 0, 1}) {
      const std::string bound = text((a - b + beside) * 10);
      const Recordset row = db_->Query(
          fmt::format("select case when PayableAmt-Payment={0} then 1 else 0 end,case when "
                      "PayableAmt-Payment<>{0} then 1 else 0 end,case when PayableAmt-Payment<{0} "
                      "then 1 else 0 end,case when PayableAmt-Payment<={0} then 1 else 0 end,case "
                      "when PayableAmt-Payment>{0} then 1 else 0 end,case when "
                      "{0}<=PayableAmt-Payment then 1 else 0 end from SchMast where SchID={1}",
                      bound, i));
      EXPECT_EQ(Show(row), beside == 0   ? "1|0|0|1|0|1"
                           : beside == 1 ? "0|1|1|1|0|0"
                                         : "0|1|0|0|1|1")
          << a << " - " << b << " against " << bound;
    }
  }
  db_->RollbackTrans();
}

TEST_P(Behaviour, FieldsTakeTheirTypeFromTheColumn) {
  const Recordset rows = db_->Query(
      "select LoanAmt, PayOutAmt, TrxDate, LoanTerm, (select count(*) from SchMast) as N, "
      "LoanAmt-PayOutAmt as Diff from LoanMast where LoanID='L1'");
  ASSERT_NE(rows.Field("loanamt").AsMoney(), nullptr);
  EXPECT_EQ(rows.Field("LoanAmt").AsMoney()->ten_thousandths(), 30'000'000);
  EXPECT_EQ(rows.Field("PayOutAmt").AsMoney()->ten_thousandths(), 28'505'000);
  EXPECT_EQ(*rows.Field("TrxDate").AsDate(), (DateTime{2024, 1, 31, 0, 0, 0}));
  EXPECT_EQ(*rows.Field("LoanTerm").AsText(), "12");
  EXPECT_EQ(*rows.Field("N").AsInteger(), 5);
  EXPECT_EQ(rows.Field("Diff").AsMoney()->ten_thousandths(), 1'495'000);
  EXPECT_EQ(rows.columns()[3].width, 10);
  EXPECT_EQ(rows.columns()[0].scale, 2);
  EXPECT_THROW(rows.Field("Nothing"), std::out_of_range);
  EXPECT_TRUE(db_->Query("select LoanID from LoanMast where LoanID='none'").Eof());
}

TEST_P(Behaviour, NumbersMeetTexts) {
  Check({
      {"select SchID from SchMast where LoanID='L1' and SchID > '5' order by SchID", "9\n10"},
      {"select SchID from SchMast where LoanID='L1' and SchID <= 9 order by SchID desc", "9\n2\n1"},
      {"select count(*) from SchMast where SchID='01'", "2"},
      {"select CustID from NumberMast where LoanNo=5", "C1"},
      {"update NumberMast set LoanNo=LoanNo+1", "select LoanNo from NumberMast", "6"},
      {"update NumberMast set LoanNo=12", "select LoanNo+'x' from NumberMast", "12x"},
      {"select (LoanTerm-2)*LoanAmt from LoanMast where LoanID='L1'", "30000"},
      {"update NumberMast set PaymentNo='12'", "select PaymentNo from NumberMast", "12"},
      {"update NumberMast set PaymentNo=12.9", "select PaymentNo from NumberMast", "12"},
      {"update NumberMast set PaymentNo=''", "select PaymentNo from NumberMast", "0"},
      {"select count(*) from NumberMast where PaymentNo=''", "0"},
      {"insert into CustMast (CustID) values ('C4')",
       "select isnull(CustName,'0123456789abc')+'|',isnull(CustName,DOB)+'|' from CustMast where "
       "CustID='C4'",
       "0123456789||NULL"},
      {"select convert(bit,-0.5),convert(bit,256),convert(bigint,99999999999)", "1|1|99999999999"},
      RefusedQuery(8115, "int", "select convert(int,99999999999)"),
      RefusedQuery(8115, "int", "select convert(int,LoanAmt*1000000) from LoanMast"),
      RefusedQuery(8115, "int", "select convert(tinyint,PaymentNo-8) from NumberMast"),
      RefusedQuery(248, "int", "select convert(int,'99999999999')"),
      Refused(245, "PaymentNo", "update NumberMast set PaymentNo='x'"),
      Refused(245, "PaymentNo", "update NumberMast set PaymentNo='12.9'"),
      Refused(8115, "PaymentNo", "update NumberMast set PaymentNo=2147483648"),
      {"update NumberMast set PaymentNo=-2147483647", "select PaymentNo from NumberMast",
       "-2147483647"},
      RefusedQuery(245, "", "select count(*) from SchMast where SchID='x'"),
      {"update LoanMast set LoanTerm='x' where LoanID='L1'", "select 1", "1"},
      RefusedQuery(245, "", "select CustName-2 from CustMast"),
  });
}

TEST_P(Behaviour, Dates) {
  Check({
      {"select getdate()", "2024-03-15 14:05:09"},
      {"select DateCreated from UserMast", "2024-03-15 14:05:09"},
      {"select CURRENT_TIMESTAMP", "2024-03-15 14:05:09"},
      {"select LoanID from LoanMast where TrxDate='20240131'", "L1"},
      {"select LoanID from LoanMast where TrxDate={ ts '2024-01-31 00:00:00' }", "L1"},
      {"select LoanID from LoanMast where TrxDate='2024-01-31 00:00:00'", "L1"},
      {"select LoanID from LoanMast where TrxDate between '2024-02-01' and '2024-02-29'", ""},
      {"select LoanID from LoanMast where TrxDate>='2024-02-29' and TrxDate<'2024-03-01'", "L2"},
      {"select max(TrxDate) from LoanMast", "2024-02-29 10:30:00"},
      {"update LoanMast set TrxDate='' where LoanID='L1'",
       "select TrxDate from LoanMast where LoanID='L1'", "1900-01-01"},
      {"update CustMast set DOB='2024-01-31 10:00:00' where CustID='C1'",
       "select DOB from CustMast where CustID='C1'", "2024-01-31"},
      {"update LoanMast set Memo1='20240131' where LoanID='L1'",
       "select Memo1 from LoanMast where LoanID='L1'", "20240131"},
      Refused(242, "TrxDate", "update LoanMast set TrxDate='2024-02-30' where LoanID='L1'"),
      Refused(241, "TrxDate", "update LoanMast set TrxDate='soon' where LoanID='L1'"),
      {"select dateadd(month,1,TrxDate) from LoanMast where LoanID='L1'", "2024-02-29"},
      {"select dateadd(day,-1,'2024-03-01')", "2024-02-29"},
      {"select TrxDate+1 from LoanMast where LoanID='L1'", "2024-02-01"},
      {"select datediff(day,'2024-02-28','2024-03-01')", "2"},
      {"select datediff(month,TrxDate,'2024-03-01') from LoanMast where LoanID='L1'", "2"},
      {"select datepart(year,TrxDate), year(TrxDate), month(TrxDate), day(TrxDate) from LoanMast "
       "where LoanID='L1'",
       "2024|2024|1|31"},
      {"select datename(month,TrxDate) from LoanMast where LoanID='L1'", "January"},
      {"select convert(varchar(10),TrxDate,103), convert(varchar(10),TrxDate,105), "
       "convert(varchar(8),TrxDate,112), convert(varchar(19),TrxDate,120) from LoanMast where "
       "LoanID='L2'",
       "29/02/2024|29-02-2024|20240229|2024-02-29 10:30:00"},
      {"select convert(datetime,'29/02/2024',103)", "2024-02-29"},
      {"select LoanID from LoanMast order by TrxDate desc", "L2\nL1"},
  });
}

TEST_P(Behaviour, ShapesOfStatements) {
  Check({
      {"select top 1 LoanID from LoanMast order by LoanID desc", "L2"},
      {"select LoanID,(select top 1 SchID from SchMast as s where s.LoanID=l.LoanID order by SchID "
       "desc) from LoanMast as l order by LoanID",
       "L1|10\nL2|1"},
      {"select * from (select top 2 SchID from SchMast where LoanID='L1' order by SchID desc) as x "
       "order by SchID",
       "9\n10"},
      {"select s.LoanID,s.SchID,l.CustID from SchMast as s inner join LoanMast as l on "
       "l.LoanID=s.LoanID where SchID<3 order by LoanID,SchID",
       "L1|1|C1\nL1|2|C1\nL2|1|C2"},
      {"update SchMast set SchMast.Payment=LoanMast.LoanAmt from SchMast inner join LoanMast on "
       "LoanMast.LoanID=SchMast.LoanID where LoanMast.CompCode='KL'",
       "select Payment from SchMast where Payment>0 order by Payment", "0.1\n500.05\n983.13"},
      {"delete l from LoanMast as l left outer join SchMast as s on s.LoanID=l.LoanID and "
       "s.SchID=2 where s.LoanID is null",
       "select LoanID from LoanMast", "L1"},
      {"delete SchMast where LoanID='L1'", "select count(*) from SchMast", "1"},
      {"insert NumberMast (CustID,LoanNo) values ('C7','1')", "select count(*) from NumberMast",
       "2"},
      {"insert into SchMast select SchID+100,LoanID,DueDate,PayableAmt,0 from SchMast where "
       "LoanID='L2'",
       "select SchID from SchMast where LoanID='L2' order by SchID", "1\n101"},
      {"insert into SchMast (SchID,LoanID) values (50,'L1')",
       "select Payment,PayableAmt from SchMast where SchID=50", "0|NULL"},
      {"select [LoanID] as [The Loan] from [LoanMast] where [CompCode]='HQ'", "L1"},
      {"select CustID from CustMast union select CustID from LoanMast order by CustID",
       "C1\nC2\nC3"},
      {"select table_name from INFORMATION_SCHEMA.TABLES where TABLE_TYPE='BASE TABLE' and "
       "table_name='loanmast'",
       "LoanMast"},
      {"select count(distinct LoanID) from SchMast", "2"},
      {"select c.CustID,l.LoanID from CustMast as c left outer join LoanMast as l on "
       "l.CustID=c.CustID order by c.CustID",
       "C1|L1\nC2|L2\nC3|NULL"},
      {"select l.LoanID,c.CustID from LoanMast as l right outer join CustMast as c on "
       "l.CustID=c.CustID order by c.CustID",
       "L1|C1\nL2|C2\nNULL|C3"},
      {"select case when LoanAmt>1000 then 'big' else 'small' end as Size from LoanMast order by "
       "LoanID",
       "big\nsmall"},
      {"update LoanMast set LoanAmt=1; update LoanMast set LoanAmt=2 where LoanID='L1'",
       "select LoanAmt from LoanMast order by LoanID", "2\n1"},
      RefusedQuery(208, "Nothing", "select * from Nothing"),
      RefusedQuery(207, "Nothing", "select Nothing from LoanMast"),
      RefusedQuery(207, "nosuch", "select \"nosuch\" from LoanMast"),
      RefusedQuery(
          209, "LoanID",
          "select LoanID from SchMast inner join LoanMast on SchMast.LoanID=LoanMast.LoanID"),
      RefusedQuery(102, "", "select * from LoanMast where CompCode in ()"),
      RefusedQuery(105, "", "select 'open"),
      RefusedQuery(8120, "CustID", "select CustID,count(*) from LoanMast group by CompCode"),
      RefusedQuery(512, "more than 1", "select (select SchID from SchMast) from LoanMast"),
      RefusedQuery(195, "", "select nosuchfunction(1)"),
      Refused(213, "", "insert into NumberMast values ('C9')"),
      Refused(515, "UserName", "insert into UserMast (UserID) values ('U9')"),
      Refused(515, "UserName", "update UserMast set UserName=null"),
      // An aggregate over the outer query's column is the outer query's.
      {"select (select max(l.LoanAmt)) from LoanMast l", "3000"},
      {"select CompCode,(select max(l.LoanAmt)) from LoanMast l group by CompCode order by "
       "CompCode",
       "HQ|3000\nKL|500.05"},
      {"select count(*) from LoanMast l having (select sum(l.LoanAmt))=3500.05", "2"},
      {"select count(*) from LoanMast l having exists (select 1 from SchMast having "
       "count(l.LoanID)=2)",
       "2"},
      {"select 'one' from SchMast where LoanID='none' having 1=1 or 1=2", "one"},
      {"select 'one' from SchMast having 1=2 or 2=1", ""},
      {"select sum(l.LoanAmt)+(select sum(s.Payment) from SchMast s) from LoanMast l", "4583.38"},
  });
}

TEST_P(Behaviour, IdentityCountsOnAndNeverGoesBack) {
  for (int i = 0; i < 3; ++i)
    db_->Execute("insert into CashBook (CompCode,TranAmt) values ('HQ',1)");
  EXPECT_EQ(Ask("select DocID from CashBook order by DocID"), "1\n2\n3");
  EXPECT_EQ(db_->Execute("delete from CashBook where DocID>=2"), 2);
  db_->Execute("insert into CashBook (CompCode,TranAmt) values ('HQ',1)");
  EXPECT_EQ(Ask("select max(DocID) from CashBook"), "4");
  EXPECT_EQ(NumberOf(*db_, "insert into CashBook (DocID,CompCode) values (9,'HQ')"), 544);
}

TEST_P(Behaviour, RowsTouchedAreTold) {
  EXPECT_EQ(db_->Execute("update SchMast set Payment=0 where LoanID='L1'"), 4);
  EXPECT_EQ(db_->Execute("update SchMast set Payment=0 where LoanID='none'"), 0);
  EXPECT_EQ(db_->Execute("delete from SchMast where LoanID='L1';delete from NumberMast"), 1);
}

TEST_P(Behaviour, TheSchemaGoesBackWithTheTransaction) {
  db_->BeginTrans();
  db_->Execute("alter table LoanMast add AMLACode nvarchar(100), AMLAAmt decimal(18, 2)");
  db_->Execute("update LoanMast set AMLACode='', AMLAAmt=1.005 where AMLACode is null");
  db_->Execute(
      "create table AMLADesc (SID nvarchar(10) NOT NULL, AMLADesc nvarchar(100) NOT NULL, PRIMARY "
      "KEY (SID, AMLADesc))");
  EXPECT_EQ(Ask("select AMLAAmt from LoanMast where LoanID='L1'"), "1.01");
  EXPECT_EQ(Ask("select count(*) from AMLADesc"), "0");
  db_->RollbackTrans();
  EXPECT_EQ(NumberOf(*db_, "select count(*) from AMLADesc"), 208);
  EXPECT_EQ(NumberOf(*db_, "select AMLACode from LoanMast"), 207);
  EXPECT_EQ(Ask("select count(*) from LoanMast"), "2");
}

TEST_P(Behaviour, AlterColumnKeepsTheRowsAndTheRules) {
  db_->Execute("create index CustName on CustMast (CustName)");
  EXPECT_EQ(NumberOf(*db_, "update CustMast set CustName='12345678901' where CustID='C1'"), 2628);
  db_->Execute("alter table CustMast alter column CustName nvarchar(20)");
  EXPECT_EQ(NumberOf(*db_, "update CustMast set CustName='12345678901' where CustID='C1'"), 0);
  EXPECT_EQ(Ask("select CustID from CustMast where custname='ALI '"), "C3");
  // Narrower than what is there: refused, and nothing is changed.
  EXPECT_EQ(NumberOf(*db_, "alter table CustMast alter column CustName nvarchar(5)"), 2628);
  EXPECT_EQ(NumberOf(*db_, "update CustMast set CustName='1234567' where CustID='C2'"), 0);
  // Text to number and back.
  db_->Execute("alter table NumberMast alter column LoanNo int");
  EXPECT_EQ(Ask("select LoanNo+1 from NumberMast where LoanNo=5"), "6");
  db_->Execute("alter table LoanMast alter column LoanAmt nvarchar(30)");
  EXPECT_EQ(Ask("select LoanAmt+'x' from LoanMast where LoanAmt='3000.00'"), "3000.00x");
  EXPECT_EQ(NumberOf(*db_, "alter table CustMast alter column CustName int"), 245);
  EXPECT_EQ(NumberOf(*db_, "alter table CustMast alter column Nothing int"), 4924);
  EXPECT_EQ(NumberOf(*db_, "alter table CustMast alter column CustID nvarchar(90)"), 5074);
  // The default stays with its column.
  db_->Execute("alter table SchMast alter column Payment decimal(18, 4)");
  db_->Execute("insert into SchMast (SchID,LoanID) values (77,'L1')");
  EXPECT_EQ(Ask("select Payment from SchMast where SchID=77"), "0");
}

TEST_P(Behaviour, AStaleTransactionIsRolledBackAndTold) {
  std::vector<std::string> trace;
  int stale = 0;
  db_->SetTrace([&](std::string_view, std::string_view sql) { trace.emplace_back(sql); });
  db_->SetStaleHandler([&](std::string_view name) {
    EXPECT_EQ(name, "MainConn");
    ++stale;
  });
  db_->BeginTrans();
  db_->Execute("update NumberMast set PaymentNo=99");
  db_->BeginTrans();
  EXPECT_EQ(stale, 1);
  EXPECT_EQ(Ask("select PaymentNo from NumberMast"), "7");
  db_->CommitTrans();
  EXPECT_THROW(db_->CommitTrans(), SqlError);
  EXPECT_NO_THROW(db_->RollbackTrans());
  EXPECT_EQ(trace[0], "BEGIN TRANSACTION");
  EXPECT_EQ(trace[1], "update NumberMast set PaymentNo=99");
  EXPECT_EQ(trace[2], "ROLLBACK");
}

TEST_P(Behaviour, AFailureLeavesNoLockBehind) {
  const auto other = Open("Other");
  db_->SetFaultHook([](std::string_view sql) {
    if (sql.starts_with("update") || sql == "ROLLBACK") throw SqlError(1205, "played");
  });
  db_->BeginTrans();
  EXPECT_THROW(db_->Execute("update NumberMast set PaymentNo=99"), SqlError);
  EXPECT_THROW(db_->RollbackTrans(), SqlError);
  EXPECT_FALSE(db_->InTransaction());
  EXPECT_EQ(other->Execute("update NumberMast set PaymentNo=8"), 1);
}

TEST_P(Behaviour, TwoDesktopsSeeEachOther) {
  const auto other = Open("Other");
  const std::string all = "select * from NumberMast";
  EXPECT_EQ(Show(other->Query(all)), "C1|005|7");
  db_->Execute("alter table NumberMast add Extra nvarchar(5)");
  db_->Execute("update NumberMast set Extra='e'");
  EXPECT_EQ(Show(other->Query(all)), "C1|005|7|e");
  EXPECT_EQ(other->Execute("update NumberMast set Extra='f' where CustID='C1'"), 1);
  EXPECT_EQ(Ask("select Extra from NumberMast"), "f");
  // A column that is wider now, in a shape that the other one has kept.
  EXPECT_EQ(NumberOf(*other, "update NumberMast set Extra='123456'"), 2628);
  db_->Execute("alter table NumberMast alter column Extra nvarchar(9)");
  EXPECT_EQ(NumberOf(*other, "update NumberMast set Extra='123456'"), 0);
  // A reader sees the state before an open transaction of the other, and is not kept waiting.
  db_->BeginTrans();
  db_->Execute("update NumberMast set PaymentNo=50");
  EXPECT_EQ(Show(other->Query("select PaymentNo from NumberMast")), "7");
  db_->CommitTrans();
  EXPECT_EQ(Show(other->Query("select PaymentNo from NumberMast")), "50");
}

TEST_P(Behaviour, WhatOnlyReadsKeepsNothingAndWaitsForNobody) {
  const auto other = Open("Other");
  const std::string writes = "update NumberMast set PaymentNo=99; select PaymentNo from NumberMast";
  const auto try_to_write = [&] {
    try {
      db_->QueryOnly(writes);
    } catch (const SqlError&) {
      // An engine that can refuse does; the others take it back.
    }
  };
  try_to_write();
  EXPECT_FALSE(db_->InTransaction());
  other->BeginTrans();
  other->Execute("update NumberMast set PaymentNo=50");
  EXPECT_EQ(Show(db_->QueryOnly("select PaymentNo from NumberMast")), "7");
  other->CommitTrans();
  // Inside a transaction its own rows are seen, and go on standing.
  db_->BeginTrans();
  db_->Execute("update NumberMast set PaymentNo=51");
  try_to_write();
  EXPECT_EQ(Show(db_->QueryOnly("select PaymentNo from NumberMast")), "51");
  db_->CommitTrans();
  EXPECT_EQ(Show(other->Query("select PaymentNo from NumberMast")), "51");
  EXPECT_EQ(other->Execute("update NumberMast set PaymentNo=8"), 1);
}

TEST_P(Behaviour, WhoReadsSeesOneMomentAndKeepsNobodyWaiting) {
  const auto other = Open("Other");
  const std::string number = "select PaymentNo from NumberMast";
  {
    const ReadTransaction reading(*db_);
    EXPECT_EQ(Show(db_->Query(number)), "7");
    const Transaction writing(*other);  // a save that is never done
    EXPECT_EQ(other->Execute("update NumberMast set PaymentNo=8"), 1);
    EXPECT_EQ(Show(db_->Query(number)), "7");
  }
  {
    const ReadTransaction reading(*db_);
    EXPECT_EQ(Show(db_->Query(number)), "7");
    Transaction writing(*other);
    EXPECT_EQ(other->Execute("update NumberMast set PaymentNo=9"), 1);
    writing.Commit();
    EXPECT_EQ(Show(db_->Query(number + " where CustID='C1'")), "7");
    EXPECT_THROW(db_->Execute("update NumberMast set PaymentNo=1"), std::logic_error);
  }
  EXPECT_FALSE(db_->InTransaction());
  EXPECT_EQ(Show(db_->Query("select * from NumberMast")), "C1|005|9");
  EXPECT_EQ(db_->Execute("update NumberMast set PaymentNo=10"), 1);
}

TEST_P(Behaviour, ABatchStopsAtItsFirstFailure) {
  EXPECT_EQ(NumberOf(*db_,
                     "update NumberMast set PaymentNo=1;insert into LoanMast (LoanID) values "
                     "('L1');update NumberMast set PaymentNo=2"),
            2627);
  EXPECT_EQ(Ask("select PaymentNo from NumberMast"), "1");
}

INSTANTIATE_TEST_SUITE_P(Engines, Behaviour,
                         ::testing::Values(Engine::kEmbedded, Engine::kPostgresql),
                         [](const auto& engine) { return testing::EngineName(engine.param); });

}  // namespace
}  // namespace kaunter
