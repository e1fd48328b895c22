// What stands in somebody's files: cells, records, mappings.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <random>

#include "core/formats.h"
#include "movein/cell_values.h"
#include "movein/csv_reader.h"
#include "movein/file_trouble.h"
#include "movein/mapping.h"
#include "tests/core/office.h"

namespace kaunter {
namespace {

TEST(MoveInCells, Days) {
  using enum DayOrder;
  const struct {
    const char* cell;
    DayOrder order;
    const char* day;  // "" for none
  } cases[] = {
      {"31/01/2024", day_month_year, "31-01-2024"},
      {"1.2.24", day_month_year, "01-02-2024"},
      {"1-2-75", day_month_year, "01-02-1975"},
      {"02/01/2024", month_day_year, "01-02-2024"},
      {"24-02-01", year_month_day, "01-02-2024"},
      {"2024-02-01 00:00:00", day_month_year, "01-02-2024"},
      {"2024-02-01T12:30:00", month_day_year, "01-02-2024"},
      {"20240201", day_month_year, "01-02-2024"},
      {"01022024", day_month_year, "01-02-2024"},
      {"45323", day_month_year, "01-02-2024"},  // a spreadsheet's own number
      {"1 Feb 2024", day_month_year, "01-02-2024"},
      {"Ogos 17, 2023", day_month_year, "17-08-2023"},
      {"31/02/2024", day_month_year, ""},
      {"29/02/2023", day_month_year, ""},
      {"01/31/2024", day_month_year, ""},
      {"31/01", day_month_year, ""},
      {"soon", day_month_year, ""},
      {"12345678901234567890", day_month_year, ""},
      {"31/01/0024", day_month_year, ""},
  };
  for (const auto& one : cases) {
    const auto day = ReadDay(one.cell, one.order);
    const auto* date = std::get_if<DateTime>(&day);
    EXPECT_EQ(date != nullptr ? Format(*date, "dd-mm-yyyy") : "", one.day) << one.cell;
  }
}

TEST(MoveInCells, Amounts) {
  const struct {
    const char* cell;
    char decimal;
    const char* amount;  // "" for none
  } cases[] = {
      {"1,234.50", '.', "1234.5"},
      {"1.234,50", ',', "1234.5"},
      {"RM 1 234.50", '.', "1234.5"},
      {"rm1234.5", '.', "1234.5"},
      {"(50.00)", '.', "-50"},
      {"RM(50.00)", '.', "-50"},
      {"-50", '.', "-50"},
      {"50.00-", '.', "-50"},
      {"50.00 RM", '.', "50"},
      {"1'234'567", '.', "1234567"},
      {"18%", '.', "18"},
      {".5", '.', "0.5"},
      {"1234.500000", '.', "1234.5"},
      {"12.345", '.', ""},
      {"1,5", '.', ""},
      {"1.5", ',', ""},
      {"1,23,456", '.', ""},
      {"1,2345", '.', ""},
      {"1.2.3", '.', ""},
      {"twelve", '.', ""},
      {"12O0", '.', ""},
      {"RM", '.', ""},
      {"99999999999999999999", '.', ""},
      {"--5", '.', ""},
  };
  for (const auto& one : cases) {
    const auto amount = ReadAmount(one.cell, one.decimal, 2);
    const auto* money = std::get_if<Money>(&amount);
    EXPECT_EQ(money != nullptr ? money->ToText() : "", one.amount) << one.cell;
  }
}

std::vector<CsvRecord> ReadAll(const std::string& path, char separator = 0) {
  TextSource source(path, Encoding::automatic);
  CsvReader reader(source, separator);
  std::vector<CsvRecord> records;
  for (CsvRecord record; reader.Next(&record);) records.push_back(record);
  return records;
}

// Random cells, written by the rule that a quote opens a cell and is doubled inside it.
TEST(MoveInCells, RecordsComeAsTheyWereWritten) {
  const TempFolder folder;
  std::mt19937 random(5);
  const std::array<std::string, 10> pieces = {"a",  ",", ";",  "\t", "\"",
                                              "\n", " ", "钱", "é",  "0012"};
  for (int round = 0; round < 60; ++round) {
    const char separator = ",;\t|"[round % 4];
    std::string text = round % 3 == 0 ? fmt::format("sep={}\n", separator) : "";
    std::vector<CsvRecord> written;
    int line = text.empty() ? 1 : 2;
    for (int row = 0; row < 400; ++row) {
      CsvRecord record;
      record.line = line;
      for (int column = 0; column < 4; ++column) {
        std::string cell = column == 0 ? "x" : "";
        for (auto i = random() % 4; i > 0; --i) cell += pieces[random() % pieces.size()];
        std::string quoted = cell;
        for (std::size_t at = 0; (at = quoted.find('"', at)) != std::string::npos; at += 2) {
          quoted.insert(at, 1, '"');
        }
        text += (column > 0 ? std::string(1, separator) : "") + '"' + quoted + '"';
        line += static_cast<int>(std::count(cell.begin(), cell.end(), '\n'));
        record.cells.push_back(std::move(cell));
      }
      const bool blank_line = random() % 5 == 0;
      text += blank_line ? "\r\n\r\n" : "\n";
      line += blank_line ? 2 : 1;
      written.push_back(std::move(record));
    }
    std::ofstream(folder.File("a.csv"), std::ios::binary) << text;
    const auto read = ReadAll(folder.File("a.csv"), round % 3 == 0 ? 0 : separator);
    ASSERT_EQ(read.size(), written.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
      ASSERT_EQ(read[i].cells, written[i].cells) << round << " " << i;
      ASSERT_EQ(read[i].line, written[i].line) << round << " " << i;
    }
  }
}

TEST(MoveInCells, FilesThatCannotBeRead) {
  const TempFolder folder;
  const auto told = [&](const std::string& bytes, Encoding encoding) -> std::string {
    const std::string path = folder.File("bad.csv");
    std::ofstream(path, std::ios::binary) << bytes;
    try {
      TextSource source(path, encoding);
      CsvReader reader(source, ',');
      for (CsvRecord record; reader.Next(&record);) {
      }
      return "";
    } catch (const FileTrouble& trouble) {
      return trouble.text.english;
    }
  };
  using ::testing::HasSubstr;
  EXPECT_THAT(told("", Encoding::automatic), HasSubstr("is empty"));
  EXPECT_EQ(told("a", Encoding::automatic), "");
  EXPECT_THAT(told("a,b\nc,\xE9\n", Encoding::utf8), HasSubstr("Line 2: what stands there"));
  EXPECT_THAT(told("a,b\nc,d\n\"e,f\n", Encoding::utf8), HasSubstr("Line 3: a quote is opened"));
  EXPECT_THAT(told("a\n\"" + std::string(70000, 'x') + "\n", Encoding::utf8),
              HasSubstr("Line 2: a cell is longer"));
  EXPECT_THAT(told(std::string("a\0b", 3), Encoding::utf16le), HasSubstr("Line 1"));
  EXPECT_THROW(TextSource(folder.path(), Encoding::utf8), FileTrouble);
  EXPECT_THROW(TextSource(folder.File("none"), Encoding::utf8), FileTrouble);
}

// Whatever a file holds, it is read or told.
TEST(MoveInCells, AnyBytes) {
  const TempFolder folder;
  std::mt19937 random(17);
  const std::string_view likely =
      "0123456789.,-/()RM E+\"\n;\t\xC2\xA0\xFF\xFE\xB3\xC2=#abcfixed value kind";
  for (int round = 0; round < 3000; ++round) {
    std::string bytes;
    for (auto i = random() % 120 + 1; i > 0; --i) {
      bytes +=
          random() % 8 == 0 ? static_cast<char>(random() % 256) : likely[random() % likely.size()];
    }
    std::ofstream(folder.File("any.csv"), std::ios::binary) << bytes;
    try {
      TextSource source(folder.File("any.csv"), static_cast<Encoding>(round % 6));
      CsvReader reader(source, 0);
      for (CsvRecord record; reader.Next(&record);) {
        for (const std::string& cell : NamedHeadings(record.cells)) {
          ReadDay(cell, static_cast<DayOrder>(round % 3));
          ReadAmount(cell, round % 2 == 0 ? '.' : ',', 2);
        }
      }
    } catch (const FileTrouble&) {
    }
    try {
      ParseMapping(bytes);
    } catch (const FileTrouble&) {
    }
  }
}

TEST(MoveInMapping, IsGuessedAndComesBackFromItsFile) {
  const std::vector<std::string> headings =
      NamedHeadings({"Kod Pelanggan", " Nama ", "No. K/P", "Bangsa", "", "Nama", "Alamat"});
  EXPECT_EQ(headings, (std::vector<std::string>{"Kod Pelanggan", "Nama", "No. K/P", "Bangsa",
                                                "Column 5", "Nama (2)", "Alamat"}));
  Mapping mapping = GuessMapping(MoveKind::customers, headings);
  const auto column = [&](const char* field) {
    const FieldSource* const source = mapping.Find(field);
    return source == nullptr ? "" : source->column;
  };
  EXPECT_EQ(column("TheirCode"), "Kod Pelanggan");
  EXPECT_EQ(column("CustName"), "Nama");
  EXPECT_EQ(column("CustNIC"), "No. K/P");
  EXPECT_EQ(column("CustRace"), "Bangsa");
  EXPECT_EQ(column("CustAdd1"), "Alamat");
  EXPECT_EQ(mapping.Find("CustTel1"), nullptr);
  mapping.days = DayOrder::month_day_year;
  mapping.decimal = ',';
  mapping.separator = '\t';
  mapping.encoding = Encoding::gbk;
  mapping.fields["CustRace"].values["CINA = TIONGHUA"] = "CHINESE";
  mapping.fields["CustRace"].fixed = "MELAYU";
  const std::string text = MappingText(mapping);
  EXPECT_EQ(MappingText(ParseMapping("\xEF\xBB\xBF# of the old books\r\n" + text)), text);
  for (const char* bad : {"kind cars", "kind loans\ncolumn Nothing = A", "dates d-m-y", "decimal ;",
                          "separator x", "encoding ebcdic", "value CustRace", "what"}) {
    EXPECT_THROW(ParseMapping(bad), FileTrouble) << bad;
  }
}

}  // namespace
}  // namespace kaunter
