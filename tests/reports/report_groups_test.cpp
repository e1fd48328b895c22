// Groups three deep, subtotals, running figures, summaries, charts: what a list adds up.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "core/values.h"
#include "reports/report_chart.h"
#include "tests/reports/list_rows.h"

namespace kaunter {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr DateTime kDay{2024, 1, 31};
const std::string kColumns = "column \"Loan\" Loan text 20\ncolumn \"Paid\" Paid money 10 sum\n";
const std::string kGroups =
    "group Company \"Company {group}\"\ngroup Area \"Area {group}\"\ngroup Loan \"Loan {group}\"\n"
    "total \"All {count}\"\n";

std::vector<std::string> Printed(const std::string& lines, const std::vector<ListRow>& rows,
                                 bool chinese = false) {
  std::vector<std::string> all = LinesOf(LayOut(ListFile(lines, chinese), {}, RowsOf(rows)));
  all.pop_back();  // the foot
  return all;
}

// North stands in both companies: each has its own subtotal, even where the two touch.
TEST(ReportGroups, AnInnerValueThatComesAgainIsAnotherGroup) {
  EXPECT_THAT(Printed(kColumns + "group Company \"Company {group}\"\ngroup Area \"Area {group}, "
                                 "{count}, {Paid:sum}\"\ntotal \"All {count}\"\n",
                      {{"A", "South", "L1", kDay, "1"},
                       {"A", "North", "L2", kDay, "2"},
                       {"A", "North", "L3", kDay, "4.05"},
                       {"B", "North", "L4", kDay, "-8.10"},
                       {"B", "South", "L5", kDay, "16"}}),
              ElementsAre("", "Loan|Paid", "L1|1.00", "Area South, 1, 1.00|1.00", "L2|2.00",
                          "L3|4.05", "Area North, 2, 6.05|6.05", "Company A|7.05", "L4|-8.10",
                          "Area North, 1, -8.10|-8.10", "L5|16.00", "Area South, 1, 16.00|16.00",
                          "Company B|7.90", "All 5|14.95"));
}

// Against a second model: sums by the path of a group, in the order in which paths end.
TEST(ReportGroups, SubtotalsEqualThoseOfAPlainModel) {
  std::mt19937 random(20240131);
  for (int round = 0; round < 40; ++round) {
    std::vector<ListRow> rows;
    for (unsigned i = 0; i < 1 + random() % 120; ++i) {
      const auto letter = [&](unsigned of) {
        return std::string(1, static_cast<char>('A' + random() % of));
      };
      rows.push_back({letter(2), letter(3), letter(4), kDay,
                      std::to_string(static_cast<int>(random() % 20000) - 9000) + ".07"});
    }
    const auto key = [](const ListRow& row, int depth) {
      return row.company + (depth > 0 ? row.area : "") + (depth > 1 ? row.loan : "");
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const ListRow& a, const ListRow& b) { return key(a, 2) < key(b, 2); });
    std::map<std::string, Money> sums;
    for (const ListRow& row : rows) {
      for (int depth = 0; depth < 3; ++depth) sums[key(row, depth)] += Money::FromText(row.paid);
    }
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (int depth = 2; depth >= 0; --depth) {
        if (i + 1 < rows.size() && key(rows[i], depth) == key(rows[i + 1], depth)) continue;
        const std::string path = key(rows[i], depth);
        expected.push_back(std::string(depth == 0   ? "Company "
                                       : depth == 1 ? "Area "
                                                    : "Loan ") +
                           path.back() + "|" + ShowMoney(Value(sums[path])));
      }
    }
    // "always": a list of few rows may have one group only.
    std::string always = kGroups;
    for (auto at = always.find("}\"\ng"); at != std::string::npos;
         at = always.find("}\"\ng", at + 3))
      always.insert(at + 2, " always");
    always.insert(always.find("\ntotal"), " always");
    std::vector<std::string> printed;
    for (const std::string& line : Printed(kColumns + always, rows)) {
      if (line.starts_with("Company ") || line.starts_with("Area ") ||
          (line.starts_with("Loan ") && line != "Loan|Paid")) {
        printed.push_back(line);
      }
    }
    ASSERT_EQ(printed, expected) << "round " << round;
  }
}

TEST(ReportGroups, OneGroupAloneNeedsNoSubtotalUnlessAlways) {
  const std::vector<ListRow> one = {{"A", "N", "L1", kDay, "1"}, {"a ", "N", "L2", kDay, "2"}};
  EXPECT_THAT(Printed(kColumns + "group Company \"Company {group}\"\n", one),
              Not(Contains(HasSubstr("Company"))));
  EXPECT_THAT(Printed(kColumns + "group Company \"Company {group}\" always\n", one),
              Contains("Company A|3.00"));
  // An empty label gives none at all.
  EXPECT_THAT(Printed(kColumns + "group Loan \"\" heading \"{Loan} from {Company}\"\n", one),
              ElementsAre("", "Loan|Paid", "L1 from A", "L1|1.00", "L2 from a ", "L2|2.00"));
}

TEST(ReportGroups, ByMonthAndYearAcrossTheTurnOfTheYear) {
  const std::vector<ListRow> rows = {{"A", "", "L1", {2023, 12, 31}, "1"},
                                     {"A", "", "L2", {2024, 1, 1}, "2"},
                                     {"A", "", "L3", {2024, 1, 31}, "4"},
                                     {"A", "", "L4", {2024, 12, 1}, "8"}};
  EXPECT_THAT(Printed("summary \"Month\"\n" + kColumns +
                          "group Day by year \"{group}\"\ngroup Day by month \"{group}\"\n",
                      rows),
              ElementsAre("", "Month|Paid", "12-2023|1.00", "2023|1.00", "01-2024|6.00",
                          "12-2024|8.00", "2024|14.00"));
}

TEST(ReportGroups, ARunningFigureBeginsAnewWhereItIsTold) {
  const std::string columns =
      "column \"Lent\" Lent money 10 sum\ncolumn \"Balance\" running(Lent - Paid) money 10 last "
      "per "
      "Loan\ncolumn \"So far\" running(Lent-Paid) money 10 last\n";
  const std::vector<ListRow> rows = {{"A", "", "L1", kDay, "0", "100"},
                                     {"A", "", "L1", kDay, "30.10"},
                                     {"A", "", "L2", kDay, "0", "50"},
                                     {"A", "", "L2", kDay, "60"}};
  EXPECT_THAT(Printed(columns + "group Loan \"{group}\"\ntotal \"All\"\n", rows),
              ElementsAre("", "Lent|Balance|So far", "100.00|100.00|100.00", "0.00|69.90|69.90",
                          "L1|100.00|69.90|69.90", "50.00|50.00|119.90", "0.00|-10.00|59.90",
                          "L2|50.00|-10.00|59.90",
                          // Where the last loan ends says nothing about all of them.
                          "All|150.00|59.90"));
}

TEST(ReportGroups, LastShowsTheLastRowOfTheGroupAndBlankLeavesOutZero) {
  EXPECT_THAT(
      Printed(
          "column \"Loan\" Loan text 9\ncolumn \"Paid\" Paid money 9 last\ncolumn \"Lent\" Lent "
          "money 9 sum blank\ngroup Company \"{group}\"\n",
          {{"A", "", "L1", kDay, "7", "1"},
           {"A", "", "L2", kDay, "3", "0"},
           {"B", "", "L3", kDay, "5", "-1"}}),
      ElementsAre("", "Loan|Paid|Lent", "L1|7.00|1.00", "L2|3.00|", "A|3.00|1.00", "L3|5.00|-1.00",
                  "B|5.00|-1.00"));
}

TEST(ReportGroups, ASummaryHasTheSumsOfTheListAndNoRows) {
  EXPECT_THAT(
      Printed("summary \"Area\" \"地区\"\n" + kColumns +
                  "group Company \"Total {group}\" \"{group} 小计\" heading \"Of {group}\" "
                  "\"{group} 公司\"\ngroup Area \"{group} ({count})\"\ntotal \"All\" \"总计\"\n",
              {{"A", "N", "L1", kDay, "1"},
               {"A", "N", "L2", kDay, "2"},
               {"A", "S", "L3", kDay, "4"},
               {"B", "S", "L4", kDay, "8"}},
              true),
      ElementsAre("", "地区|Paid", "A 公司", "N (2)|3.00", "S (1)|4.00", "A 小计|7.00", "B 公司",
                  "S (1)|8.00", "B 小计|8.00", "总计|15.00"));
}

// --- groups and the edge of the page

std::vector<ListRow> ManyRows(int companies, int areas, int rows) {
  std::vector<ListRow> list;
  for (int c = 0; c < companies; ++c) {
    for (int a = 0; a < areas; ++a) {
      for (int i = 0; i < rows; ++i) {
        list.push_back(
            {"C" + std::to_string(c), "N" + std::to_string(a), "L" + std::to_string(i), kDay, "1"});
      }
    }
  }
  return list;
}

// Wherever the pages end: a heading has a row below it and a sum one above it, a page that begins
// within a group says in which, and no row is lost.
TEST(ReportGroups, AHeadingIsNeverTheLastLineOfAPage) {
  for (int rows = 1; rows <= 24; ++rows) {
    const std::vector<ListRow> list = ManyRows(6, 3, rows);
    const ReportDocument document = LayOut(
        ListFile("paper A5 landscape\n" + kColumns +
                 "group Company \"Sum {group}\" heading \"Company {group}\"\ngroup Area \"Sum "
                 "{group}\" heading \"Area {group}\"\n"),
        {}, RowsOf(list));
    std::size_t printed = 0;
    for (std::size_t p = 0; p < document.pages.size(); ++p) {
      std::vector<std::string> lines = LinesOf(document.pages[p]);
      EXPECT_EQ(lines.back(),
                "|Page " + std::to_string(p + 1) + " of " + std::to_string(document.pages.size()));
      lines.pop_back();
      const auto row = [](const std::string& line) {
        return line.starts_with("L") && line != "Loan|Paid";
      };
      printed += static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), row));
      EXPECT_FALSE(lines.back().starts_with("Company") || lines.back().starts_with("Area"))
          << rows << " rows a group, page " << p + 1 << ": " << lines.back();
      ASSERT_GT(lines.size(), 2u);
      if (p == 0) continue;
      // Title, head of the table, then what the page goes on with.
      const std::string& first = lines[2];
      EXPECT_FALSE(row(first) || first.starts_with("Sum"))
          << rows << " rows a group, page " << p + 1 << ": " << first;
      if (first.ends_with("(continued)")) {
        EXPECT_TRUE(first.starts_with("Company")) << first;
        EXPECT_TRUE(lines[3].starts_with("Area")) << lines[3];
      }
      for (const PageText& text : document.pages[p].texts) {
        EXPECT_LE(text.y + text.height, document.height_mm) << text.text;
      }
    }
    EXPECT_EQ(printed, list.size());
  }
}

TEST(ReportGroups, ANewPageForEachGroupLeavesNoEmptyPage) {
  const std::string lines = kColumns +
                            "group Company \"Sum {group}\" heading \"Company {group}\" new page\n"
                            "group Area \"\" heading \"Area {group}\" new page\n";
  const ReportDocument document = LayOut(ListFile(lines), {}, RowsOf(ManyRows(2, 2, 1)));
  ASSERT_EQ(document.pages.size(), 4u);
  // The second area is still the first company's.
  EXPECT_THAT(LinesOf(document.pages[1]), Contains("Company C0 (continued)"));
  EXPECT_THAT(LinesOf(document.pages[2]), Contains("Company C1"));
  EXPECT_THAT(LinesOf(document.pages[2]), Contains("Area N0"));
}

TEST(ReportGroups, AChineseReportIsChineseToItsFoot) {
  const ReportDocument document =
      LayOut(ListFile("title \"Loans\" \"贷款\"\ncolumn \"Loan\" \"编号\" Loan text 9\n"
                      "group Company \"\" heading \"Company\" \"公司 {group}\"\n",
                      true),
             {}, RowsOf(ManyRows(1, 1, 60)));
  ASSERT_EQ(document.pages.size(), 2u);
  const std::vector<std::string> second = LinesOf(document.pages[1]);
  EXPECT_EQ(second[0], "贷款");
  EXPECT_EQ(second[1], "编号");
  EXPECT_EQ(second[2], "公司 C0（续）");
  EXPECT_EQ(second.back(), "|第 2 页，共 2 页");
}

// --- charts

// The figures at the bars add up to the column, also when small ones are taken together.
TEST(ReportChart, ItsFiguresAddUpToTheColumn) {
  std::vector<ListRow> rows;
  Money all;
  for (int i = 0; i < 200; ++i) {
    const std::string paid = std::to_string(i * 37 % 113 - 20) + ".0" + std::to_string(i % 10);
    rows.push_back({"C" + std::to_string(i % 17), "", "L", {2023, 1 + i % 12, 5}, paid});
    all += Money::FromText(paid);
  }
  for (const char* by : {"Company", "Day by month", "Day by year"}) {
    const ReportFile file =
        ListFile("column \"Loan\" Loan text 9\nchart \"By\" " + std::string(by) + " Paid\n");
    const ReportDocument document = LayOut(file, {}, RowsOf(rows));
    Money drawn;
    int bars = 0;
    for (const PageText& text : document.pages[0].texts) {
      const auto amount = Money::TryText(text.text);
      if (!amount || text.points != 8 || text.text.find('.') == std::string::npos) continue;
      drawn += *amount;
      ++bars;
    }
    EXPECT_EQ(drawn, all) << by;
    EXPECT_LE(bars, 12) << by;
  }
}

// What is below 0 has its bar left of the axis, as long as its share, and its figure is no other's.
TEST(ReportChart, AMonthBelowNothingIsDrawn) {
  ReportPage page;
  DrawChart(page, 0, 0, 180, "By month",
            {{"a", Money::FromText("30")}, {"b", Money::FromText("-10")}, {"c", Money()}});
  ASSERT_EQ(page.areas.size(), 2u);
  const double axis = page.lines.at(0).x1;
  EXPECT_NEAR(page.areas[0].x, axis, 0.001);
  EXPECT_NEAR(page.areas[1].x + page.areas[1].width, axis, 0.001);
  EXPECT_NEAR(page.areas[0].width, 3 * page.areas[1].width, 0.001);
  EXPECT_GT(page.areas[1].x, 180 * 0.24) << "over the label";
  for (const PageText& text : page.texts) EXPECT_LE(text.x + text.width, 180.001) << text.text;
  ReportPage below;
  DrawChart(below, 0, 0, 180, "All below", {{"a", Money::FromText("-10")}});
  EXPECT_EQ(below.areas.size(), 1u);
}

TEST(ReportChart, ABarOfNobodyHasAName) {
  const ReportFile file = ListFile("column \"Loan\" Loan text 9\nchart \"By\" Company Paid\n");
  const ReportDocument document = LayOut(file, {}, RowsOf({{"", "", "L", {2023, 1, 5}, "7.00"}}));
  const auto& texts = document.pages[0].texts;
  const auto amount = std::find_if(texts.begin(), texts.end(), [](const PageText& text) {
    return text.points == 8 && text.text == "7.00";
  });
  ASSERT_NE(amount, texts.end());
  EXPECT_EQ((amount - 1)->text, "-");
}

}  // namespace
}  // namespace kaunter
