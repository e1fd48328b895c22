#include "reports/report_layout.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "reports/report_file.h"
#include "reports/run_report.h"
#include "reports/text_width.h"
#include "tests/reports/list_rows.h"

namespace kaunter {
namespace {

constexpr const char* kFile = R"(
paper A4 portrait
title "Table for {?Name}"
field "Rows" "{count}"
query
SELECT SchID, DueDate, PayableAmt FROM SchMast2 WHERE {selection}
end
column "No." SchID integer 10
column "Due" DueDate date 20
column "Payable" PayableAmt money 20 sum
group DueDate by year "Total {group}"
total "Grand total"
)";

Recordset Rows(int count, int first_year) {
  std::vector<std::vector<Value>> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({Value(i + 1), Value(DateTime{first_year, 1, 31}.AddMonths(i)),
                    Value(Money::FromText("983.33"))});
  }
  return Recordset({{"SchID", FieldType::kInteger},
                    {"DueDate", FieldType::kDate},
                    {"PayableAmt", FieldType::kMoney, 0, 2}},
                   std::move(rows));
}

// All texts of the document, page by page, each after a bar.
std::string Texts(const ReportDocument& document) {
  std::string all;
  for (const ReportPage& page : document.pages) {
    for (const PageText& text : page.texts) all += "|" + text.text;
  }
  return all;
}

bool Has(const std::string& all, const std::string& text) {
  return all.find("|" + text) != std::string::npos;
}

TEST(ReportLayout, TotalsEachYearOnlyWhenThereIsMoreThanOne) {
  const ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  ReportHeading heading;
  heading.parameters["name"] = "Lim & 'Sons'";
  const std::string one = Texts(LayOut(file, heading, Rows(12, 2024)));
  EXPECT_TRUE(Has(one, "Table for Lim & 'Sons'")) << one;
  EXPECT_FALSE(Has(one, "Total 2024")) << one;
  EXPECT_TRUE(Has(one, "Grand total|11,799.96")) << one;
  const std::string two = Texts(LayOut(file, heading, Rows(14, 2024)));
  EXPECT_TRUE(Has(two, "Total 2024|11,799.96")) << two;
  EXPECT_TRUE(Has(two, "Total 2025|1,966.66")) << two;
  EXPECT_TRUE(Has(two, "Grand total|13,766.62")) << two;
}

// A 0 is left out of rows and subtotals, and told in the grand total.
TEST(ReportLayout, ABlankZeroIsToldOnceOnly) {
  ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  file.columns[2].blank_zero = true;
  const Recordset rows({{"SchID", FieldType::kInteger},
                        {"DueDate", FieldType::kDate},
                        {"PayableAmt", FieldType::kMoney, 0, 2}},
                       {{Value(1), Value(DateTime{2023, 1, 31}), Value(Money())},
                        {Value(2), Value(DateTime{2024, 1, 31}), Value(Money())}});
  const std::string texts = Texts(LayOut(file, {}, rows));
  EXPECT_TRUE(Has(texts, "Total 2023|2|31-01-2024")) << texts;
  EXPECT_TRUE(Has(texts, "Grand total|0.00")) << texts;
}

// A figure is never cut: what its column has no room for gets smaller.
TEST(ReportLayout, ALongFigureIsWhole) {
  ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  file.columns[0].weight = 140;
  const Recordset rows(
      {{"SchID", FieldType::kInteger},
       {"DueDate", FieldType::kDate},
       {"PayableAmt", FieldType::kMoney, 0, 2}},
      {{Value(1), Value(DateTime{2024, 1, 31}), Value(Money::FromText("12.50"))},
       {Value(2), Value(DateTime{2024, 1, 31}), Value(Money::FromText("123456789.01"))}});
  const ReportDocument document = LayOut(file, {}, rows);
  std::map<std::string, double> points;
  for (const PageText& text : document.pages[0].texts) {
    points[text.text] = text.points;
    // A real font may be a little wider than the table of widths.
    if (text.align == TextAlign::right && text.text.ends_with('1')) {
      EXPECT_LE(TextWidth(text.text, text.points, text.bold), text.width * 0.95 + 0.001)
          << text.text;
    }
  }
  EXPECT_EQ(points.at("12.50"), 9);
  EXPECT_LT(points.at("123,456,789.01"), 9);
  EXPECT_LT(points.at("123,456,801.51"), 9);
}

TEST(ReportLayout, AGroupWithoutAValueGetsADash) {
  ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  file.groups[0].label = "Total {group}";
  file.groups[0].heading = "{DueDate}";
  const Recordset rows({{"SchID", FieldType::kInteger},
                        {"DueDate", FieldType::kDate},
                        {"PayableAmt", FieldType::kMoney, 0, 2}},
                       {{Value(1), Value(), Value(Money::FromText("5"))},
                        {Value(2), Value(DateTime{2024, 1, 31}), Value(Money::FromText("7"))}});
  const std::string texts = Texts(LayOut(file, {}, rows));
  EXPECT_TRUE(Has(texts, "Payable|-|1|")) << texts;
  EXPECT_TRUE(Has(texts, "Total -|5.00")) << texts;
  EXPECT_TRUE(Has(texts, "Total 2024|7.00")) << texts;
}

TEST(ReportLayout, ARateShowsTheDecimalsThatItHas) {
  const auto shown = [](const char* rate) {
    return ShowCell(Value(Money::FromText(rate)), CellKind::rate);
  };
  EXPECT_EQ(shown("18"), "18.00");
  EXPECT_EQ(shown("16.5"), "16.50");
  EXPECT_EQ(shown("1.4583"), "1.4583");
}

TEST(ReportLayout, ALongTableKeepsEveryRowInsideItsPages) {
  const ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  const ReportDocument document = LayOut(file, {}, Rows(360, 2000));
  ASSERT_GT(document.pages.size(), 5u);
  int rows = 0;
  for (const ReportPage& page : document.pages) {
    int heads = 0;
    for (const PageText& text : page.texts) {
      EXPECT_GE(text.x, 0);
      EXPECT_LE(text.x + text.width, document.width_mm);
      EXPECT_LE(text.y + text.height, document.height_mm);
      if (text.text == "Payable") ++heads;
      if (text.text == "983.33") ++rows;
    }
    EXPECT_EQ(heads, 1);
  }
  EXPECT_EQ(rows, 360);
}

// A selection of any length is told whole before the table begins, and above the feet.
TEST(ReportLayout, ALongSelectionRunsOnToTheNextPage) {
  const ReportFile file = ReportFile::Parse(kFile, "test.rpt");
  for (int count = 30; count <= 1500; count += 10) {
    ReportHeading heading;
    std::string words;
    for (int i = 0; i < count; ++i) words += " LOAN-" + std::to_string(10000 + i);
    heading.subtitle = words.substr(1);
    const ReportDocument document = LayOut(file, heading, Rows(1, 2024));
    std::string told;
    for (const ReportPage& page : document.pages) {
      double last = 0;
      for (const PageText& text : page.texts) {
        const bool foot_line = text.y > document.height_mm - 16;
        if (!foot_line) last = std::max(last, text.y + text.height);
        if (text.text.starts_with("LOAN-") && text.text != heading.subtitle)
          told += " " + text.text;
      }
      EXPECT_LE(last, document.height_mm - 23) << count;
    }
    EXPECT_EQ(told, words) << count;
  }
}

TEST(ReportLayout, ANoteAloneOnItsPageHasNoTableHead) {
  ReportFile file =
      ReportFile::Parse(std::string(kFile) + "note \"Balances of today.\"\n", "t.rpt");
  int alone = 0;
  for (int count = 1; count <= 80; ++count) {
    const ReportDocument document = LayOut(file, {}, Rows(count, 2024));
    std::string last;
    for (const PageText& text : document.pages.back().texts) last += "|" + text.text;
    EXPECT_TRUE(Has(last, "Balances of today.")) << count;
    const bool table = Has(last, "983.33") || Has(last, "Grand total");
    EXPECT_EQ(Has(last, "Payable"), table) << count;
    if (!table) ++alone;
  }
  EXPECT_GT(alone, 0);
}

TEST(ReportLayout, AnEmptySelectionSaysSo) {
  EXPECT_TRUE(Has(Texts(LayOut(ReportFile::Parse(kFile, "t.rpt"), {}, Rows(0, 2024))),
                  "No rows for this selection."));
}

TEST(ReportFile, RefusesWithFileAndLine) {
  ExpectFaults(
      {
          {"paper A3 portrait", "t.rpt, line 1: paper is A4 or A5"},
          {"title \"open", "line 1: a text is not closed"},
          {"title \"x\"\nkolumn a", "line 2: \"kolumn\" is not known"},
          {"query\nSELECT 1", "does not end with a line \"end\""},
          {"query\nSELECT 1\nend\ncolumn \"A\" a text 5", "no {selection}"},
          {"column \"A\" a number 5", "line 1: \"number\" is no kind of column"},
          {"column \"A\" a text wide", "line 1: the width"},
          {"", "no query"},
      },
      [](const std::string& text) { ReportFile::Parse(text, "t.rpt"); });
  const ReportFile file =
      ReportFile::Parse(std::string(kFile) + "column \"X\" Missing text 5\n", "t.rpt");
  EXPECT_THROW(LayOut(file, {}, Rows(1, 2024)), std::runtime_error);
}

TEST(ReportFile, ParametersKeepTheirSemicolons) {
  EXPECT_EQ(SplitParameter("CustName;Tan; Ah Kow;True").second, "Tan; Ah Kow");
  EXPECT_EQ(SplitParameter("RptID;False;True").second, "False");
  EXPECT_EQ(SplitParameter("RptID").second, "");
}

}  // namespace
}  // namespace kaunter
