// Where the writer of the embedded engine leaves the written form of a join or a grouping for a
// quicker one, the rows must be those of the written form.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/clock.h"
#include "platform/sql/data_source.h"

namespace kaunter {
namespace {

class WriterJoinsTest : public ::testing::Test {
 protected:
  WriterJoinsTest() {
    std::filesystem::remove(file_);
    db_ = OpenSqlite("MainConn", file_, true, clock_);
    for (const char* sql :
         {"create table C (ID nvarchar(10) NOT NULL PRIMARY KEY, N nvarchar(20), M decimal(18, 2))",
          "create table L (ID nvarchar(10) NOT NULL, S int NOT NULL, C nvarchar(10), "
          "T nvarchar(10), PRIMARY KEY (ID, S))",
          "insert into C values ('c1','One',1.5)", "insert into C values ('C2','Two',2)",
          "insert into C values ('C3','one',0)", "insert into L values ('L1',1,'C1','x')",
          "insert into L values ('l1',2,'c1 ','X')", "insert into L values ('L2',1,'C2','y')",
          "insert into L values ('L3',1,'C9','y')"}) {
      db_->Execute(sql);
    }
  }
  ~WriterJoinsTest() override {
    db_.reset();
    for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file_ + end);
  }

  // "a b|c d": fields by blanks, rows by bars, "-" for Null.
  std::string Rows(const std::string& sql) {
    std::string text;
    for (Recordset rows = db_->Query(sql); !rows.Eof(); rows.MoveNext()) {
      if (!text.empty()) text += '|';
      for (std::size_t i = 0; i < rows.columns().size(); ++i) {
        if (i > 0) text += ' ';
        text += rows.Field(i).IsNull() ? "-" : rows.Field(i).ToText();
      }
    }
    return text;
  }

 private:
  const std::string file_ =
      (std::filesystem::temp_directory_path() / ("kaunter-joins-" + std::to_string(getpid())))
          .string();
  Clock clock_;
  std::unique_ptr<Connection> db_;
};

TEST_F(WriterJoinsTest, RowsAreThoseOfTheWrittenForm) {
  const struct {
    const char* sql;
    const char* rows;
  } kCases[] = {
      // Rows of the right table without a partner stay; those of the left one go.
      {"select a.ID,l.ID from L as l right outer join C as a on l.C=a.ID order by a.ID,l.S",
       "c1 L1|c1 l1|C2 L2|C3 -"},
      // * keeps the order of the tables.
      {"select * from L as l right join C as a on l.C=a.ID and l.S=1 order by a.ID",
       "L1 1 C1 x c1 One 1.5|L2 1 C2 y C2 Two 2|- - - - C3 one 0"},
      {"select a.*,l.S from L as l right join C as a on l.C=a.ID and l.S=1 order by a.ID",
       "c1 One 1.5 1|C2 Two 2 1|C3 one 0 -"},
      // Joins within the join that is turned.
      {"select a.ID,k.T,l.S from (L as l inner join L as k on l.ID=k.ID) right join C as a on "
       "l.C=a.ID where a.ID<>'C2' order by a.ID,l.S,k.S",
       "c1 x 1|c1 X 1|c1 x 2|c1 X 2|C3 - -"},
      {"select a.ID,l.S,k.ID from L as l right join C as a on l.C=a.ID left join L as k on "
       "k.C=a.ID and k.S=2 order by a.ID,l.S",
       "c1 1 l1|c1 2 l1|C2 1 -|C3 - -"},
      // Grouped by a whole key: the other columns of that table follow.
      {"select a.ID,a.N,count(l.ID) from L as l right join C as a on l.C=a.ID group by a.ID,a.N,"
       "a.M order by a.ID",
       "c1 One 2|C2 Two 1|C3 one 0"},
      {"select a.N,max(l.S),(case when a.M<=0 then 'no' else 'yes' end) from L as l right join C "
       "as a on l.C=a.ID group by a.M,a.N,a.ID having a.M<2 order by a.N,a.ID",
       "One 2 yes|one - no"},
      // Groups of the rows that an outer join made up: all columns of their table are Null.
      {"select a.ID,a.N,count(*) from L as l left join C as a on l.C=a.ID group by a.ID,a.N order "
       "by a.ID",
       "- - 1|c1 One 2|C2 Two 1"},
      // A part of a key, or another table's column, parts groups.
      {"select ID,T,count(*) from L where S=1 group by ID,T order by ID", "L1 x 1|L2 y 1|L3 y 1"},
      {"select S,T,count(*) from L group by S,T order by S,T", "1 x 1|1 y 2|2 X 1"},
      {"select a.ID,l.T,count(*) from L as l inner join C as a on l.C=a.ID group by a.ID,a.N,l.T "
       "order by a.ID",
       "c1 x 2|C2 y 1"},
      // No key is grouped.
      {"select N,count(*) from C group by N order by N", "One 2|Two 1"},
  };
  for (const auto& c : kCases) EXPECT_EQ(Rows(c.sql), c.rows) << c.sql;
}

}  // namespace
}  // namespace kaunter
