#include "platform/sql/odbc/odbc_string.h"

#include <gtest/gtest.h>

#include "platform/sql/odbc/odbc_text.h"

namespace kaunter::sql {
namespace {

const OdbcInventory kMachine = {
    {"PostgreSQL Unicode", "FreeTDS", "ODBC Driver 17 for SQL Server",
     "ODBC Driver 18 for SQL Server", "SQLite3"},
    {{"office", "ODBC Driver 18 for SQL Server"}, {"Shelf", "SQLite3"}}};

struct Mapping {
  const char* what;
  const char* office;
  const char* local;
  const char* expected;
};

TEST(OdbcString, MapsWhatTheOfficeWrites) {
  const Mapping kTable[] = {
      {"a source of the machine",
       "Provider=MSDASQL.1;Password=p;Persist Security Info=True;User ID=Main;Data "
       "Source=office;Initial Catalog=Main",
       "", "DSN=office;UID=Main;PWD=p;DATABASE=Main"},
      {"no catalogue: the source's own database",
       "Provider=MSDASQL.1;Password=p$;Persist Security Info=True;User ID=aed;Data Source=AEDMTS",
       "", "DSN=AEDMTS;UID=aed;PWD=p$"},
      {"a password that would end the string", "Data Source=office;User ID=u;Password=\"a;b}c\"",
       "", "DSN=office;UID=u;PWD={a;b}}c}"},
      {"SQL Server by the newest driver",
       "Provider=SQLOLEDB.1;Password=p;Persist Security Info=True;User ID=sms;Initial "
       "Catalog=SMS;Data Source=10.0.0.5",
       "",
       "DRIVER=ODBC Driver 18 for SQL Server;SERVER=10.0.0.5;TrustServerCertificate=yes;UID=sms;"
       "PWD=p;DATABASE=SMS"},
      {"the signed-on Windows account",
       "provider=sqloledb;Integrated Security=SSPI;Server=srv\\x;Database=d", "",
       "DRIVER=ODBC Driver 18 for SQL Server;SERVER=srv\\x;TrustServerCertificate=yes;"
       "Trusted_Connection=yes;DATABASE=d"},
      {"a local text takes account and catalogue from the office",
       "Provider=MSDASQL.1;Password=p;User ID=Main;Data Source=x;Initial Catalog=Main",
       "Driver={PostgreSQL Unicode};Server=h;Port=5433;pqopt=own",
       "DRIVER=PostgreSQL Unicode;port=5433;pqopt=own;server=h;UID=Main;PWD=p;DATABASE=Main"},
      {"PostgreSQL: a dead line is noticed, and of several servers the one that leads is found",
       "Password=p;User ID=Main;Data Source=x", "Driver={PostgreSQL Unicode};Server=h,i",
       "DRIVER=PostgreSQL Unicode;server=h,i;pqopt=target_session_attrs=read-write "
       "keepalives_idle=5 keepalives_interval=2 keepalives_count=3 tcp_user_timeout=10000;"
       "UID=Main;PWD=p"},
      {"what a local text says itself holds",
       "Password=p;User ID=Main;Data Source=x;Initial Catalog=Main",
       "Driver=D;Server=h;UID=own;Database=own", "DRIVER=D;server=h;UID=own;DATABASE=own"},
      {"the audit database lies beside the text's own",
       "Password=p;User ID=Main;Data Source=x;Initial Catalog=Main-Logs",
       "Driver=D;UID=own;PWD=q;Database=own", "DRIVER=D;UID=own;PWD=q;DATABASE=own-Logs"},
      {"FreeTDS is held to one protocol", "Data Source=x;User ID=u;Password=p",
       "Driver=/lib/libtdsodbc.so;Server=h",
       "DRIVER=/lib/libtdsodbc.so;server=h;TDS_Version=7.4;UID=u;PWD=p"},
      {"SQLite: a file, never the office's catalogue",
       "Password=p;User ID=Main;Data Source=x;Initial Catalog=Main",
       "Driver=SQLite3;Database=/data/office.db", "DRIVER=SQLite3;DATABASE=/data/office.db"},
      {"SQLite: the audit file", "Data Source=x;Initial Catalog=main-LOGS",
       "Driver=SQLite3;Database=/data/a.b/office.db",
       "DRIVER=SQLite3;DATABASE=/data/a.b/office-Logs.db"},
      {"SQLite: a source of the machine",
       "User ID=Main;Password=p;Data Source=shelf;Initial Catalog=Main", "", "DSN=shelf"},
      {"SQLite: its audit source", "Data Source=shelf;Initial Catalog=Main-Logs", "",
       "DSN=shelf-Logs"},
      {"a text for ODBC itself", "Driver=D;Server=h;UID=u;PWD=p;Database=d", "",
       "DRIVER=D;server=h;UID=u;PWD=p;DATABASE=d"},
  };
  for (const Mapping& row : kTable) {
    EXPECT_EQ(OdbcString(ConnectionString::Parse(row.office), row.local, kMachine), row.expected)
        << row.what;
  }
}

TEST(OdbcString, TakesFreeTdsWhereMicrosoftsDriverIsMissing) {
  const auto office = ConnectionString::Parse("Provider=SQLOLEDB.1;User ID=u;Data Source=h");
  EXPECT_EQ(OdbcString(office, "", {{"SQLite3", "FreeTDS"}, {}}),
            "DRIVER=FreeTDS;SERVER=h;ClientCharset=UTF-8;TDS_Version=7.4;PORT=1433;UID=u");
}

TEST(OdbcString, RefusesWithWhatToDo) {
  const std::pair<const char*, const char*> kTable[] = {
      {"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=x.mdb", "Microsoft.Jet.OLEDB.4.0"},
      {"Provider=MSDASQL.1;Password=p", "no data source"},
      {"Provider=SQLOLEDB.1;Password=p", "no server"},
      {"Provider=SQLOLEDB.1;Data Source=h", "tdsodbc"},
  };
  for (const auto& [text, words] : kTable) {
    try {
      OdbcString(ConnectionString::Parse(text), "", {{"SQLite3"}, {}});
      ADD_FAILURE() << text;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.number(), 4060) << text;
      EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
    }
  }
}

TEST(OdbcString, TriesSeveralServersTheOtherWayRoundToo) {
  const auto tried = [](const std::string& text, int number) {
    std::string all;
    const auto open = [&](const std::string& each) {
      all += each + "|";
      throw SqlError(number, "");
    };
    EXPECT_THROW(OpenOneOf(text, open), SqlError);
    return all;
  };
  const std::string kTwo = "Server=a,b;UID=a,b;pqopt={target_session_attrs=read-write}";
  EXPECT_EQ(tried(kTwo, 4060),
            kTwo + "|Server=b,a;UID=a,b;pqopt={target_session_attrs=read-write}|");
  EXPECT_EQ(tried(kTwo, 18456), kTwo + "|");  // a wrong password counts once
  EXPECT_EQ(tried("Server=a,1433", 4060), "Server=a,1433|");
}

TEST(OdbcText, MarksTextsForSqlServer) {
  const std::pair<const char*, const char*> kTable[] = {
      {"SELECT 'a', 'b'", "SELECT 'a', 'b'"},
      {"INSERT T values ('陈','x',N'陈',n'陈')", "INSERT T values (N'陈','x',N'陈',n'陈')"},
      {"WHERE a='O''陈' and b=''", "WHERE a=N'O''陈' and b=''"},
      {"IN('陈','x''','é')", "IN(N'陈','x''',N'é')"},
      // Neither comments nor names are texts, whatever stands in them.
      {"SELECT [a'陈'], \"b'陈'\" -- '陈'\n,'陈' /* '陈' /* */ '陈' */",
       "SELECT [a'陈'], \"b'陈'\" -- '陈'\n,N'陈' /* '陈' /* */ '陈' */"},
      // The N of another word is no mark; a text without an end is the server's to refuse.
      {"SELECT 1 AS N '陈'", "SELECT 1 AS N N'陈'"},
      {"LIKE'陈%'", "LIKE N'陈%'"},
      {"= '陈", "= N'陈"},
  };
  for (const auto& [sql, expected] : kTable) EXPECT_EQ(MarkUnicodeTexts(sql), expected);
}

TEST(OdbcText, KeepsEveryCharacterAndReplacesBrokenOnes) {
  const std::string kWhole = "a é 陈 😀 \x7f";
  EXPECT_EQ(ToUtf8(ToUtf16(kWhole)), kWhole);
  EXPECT_EQ(ToUtf16("😀"), u"\xD83D\xDE00");
  // Cut, overlong, a lone surrogate, a stray byte.
  for (const char* broken : {"\xE9\x99", "\xC0\xAF", "\xED\xA0\x80", "\xFF"}) {
    EXPECT_NE(ToUtf16(std::string("x") + broken + "y").find(u'\xFFFD'), std::u16string::npos);
    EXPECT_EQ(ToUtf16(std::string("x") + broken + "y").back(), u'y');
  }
  EXPECT_EQ(ToUtf8(std::u16string(1, u'\xD83D')), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace kaunter::sql
