// Letters: what a file may say, amounts in words, how paragraphs break into lines and letters into
// pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>

#include "reports/amount_in_words.h"
#include "reports/report_file.h"
#include "reports/report_layout.h"
#include "reports/text_width.h"
#include "tests/reports/list_rows.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

const std::string kTop = "query\nSELECT * FROM LoanMast WHERE {selection}\nend\nletter LoanID\n";

ReportFile Letter(const std::string& lines) { return ReportFile::Parse(kTop + lines, "t.rpt"); }

struct Loan {
  std::string id;
  std::string name;
  std::string amount;
};

Recordset Rows(const std::vector<Loan>& loans) {
  std::vector<std::vector<Value>> rows;
  for (const Loan& loan : loans) {
    rows.push_back({Value(loan.id), Value(loan.name), Value(Money::FromText(loan.amount)),
                    Value(DateTime{2024, 2, 29})});
  }
  return Recordset({{"LoanID", FieldType::kText},
                    {"CustName", FieldType::kText},
                    {"Amt", FieldType::kMoney, 0, 2},
                    {"DueDate", FieldType::kDate}},
                   std::move(rows));
}

std::string TextsOf(const ReportPage& page) {
  std::string all;
  for (const PageText& text : page.texts) all += text.text + "|";
  return all;
}

std::string FirstPage(const std::string& lines, const std::vector<Loan>& loans,
                      const ReportHeading& heading = {}) {
  return TextsOf(LayOut(Letter(lines), heading, Rows(loans)).pages.at(0));
}

void ExpectInside(const ReportDocument& document) {
  for (const ReportPage& page : document.pages) {
    for (const PageText& text : page.texts) {
      EXPECT_GE(text.x, 0) << text.text;
      EXPECT_LE(text.x + text.width, document.width_mm + 0.001) << text.text;
      EXPECT_LE(text.y + text.height, document.height_mm) << text.text;
      EXPECT_LE(TextWidth(text.text, text.points, text.bold), text.width) << text.text;
    }
  }
}

TEST(AmountInWords, SpellsRinggitAndSen) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "ZERO ONLY"},
      {"1", "ONE ONLY"},
      {"10", "TEN ONLY"},
      {"19.99", "NINETEEN AND SEN NINETY NINE ONLY"},
      {"21", "TWENTY ONE ONLY"},
      {"100", "ONE HUNDRED ONLY"},
      {"119", "ONE HUNDRED NINETEEN ONLY"},
      {"1000.50", "ONE THOUSAND AND SEN FIFTY ONLY"},
      {"10011", "TEN THOUSAND ELEVEN ONLY"},
      {"340600.40", "THREE HUNDRED FORTY THOUSAND SIX HUNDRED AND SEN FORTY ONLY"},
      {"1000000.10", "ONE MILLION AND SEN TEN ONLY"},
      {"999999999.995", "ONE BILLION ONLY"},
      {"-12.30", "MINUS TWELVE AND SEN THIRTY ONLY"},
      {"-0.004", "ZERO ONLY"},
      {"922337203685477.5807",
       "NINE HUNDRED TWENTY TWO TRILLION THREE HUNDRED THIRTY SEVEN BILLION TWO HUNDRED THREE "
       "MILLION SIX HUNDRED EIGHTY FIVE THOUSAND FOUR HUNDRED SEVENTY SEVEN AND SEN FIFTY EIGHT "
       "ONLY"},
  };
  for (const auto& [amount, words] : cases) {
    EXPECT_EQ(AmountInWords(Money::FromText(amount)), std::string("RINGGIT MALAYSIA ") + words);
  }
  EXPECT_EQ(AmountInWords(Money::FromText("0.88")), "SEN EIGHTY EIGHT ONLY");
  EXPECT_EQ(AmountInWords(Money::FromText("-0.05")), "MINUS SEN FIVE ONLY");
}

TEST(WrapText, LosesNoSignAndKeepsTheWidth) {
  const std::string cases[] = {
      "The quick settlement of an overdue account saves everybody a letter like this one.",
      "HQ0001-001-B20240131HQ0001-001-B20240131HQ0001-001-B20240131HQ0001-001-B20240131 and more",
      "尊敬的顾客您的贷款分期付款已经逾期请于十四天内付清全部欠款以免产生更多的逾期利息",
      "Encik Müller-Ñandú, 收据 No. 7, RM 1,234,567.89",
  };
  const auto without_blanks = [](std::string text) {
    std::erase(text, ' ');
    return text;
  };
  for (const std::string& text : cases) {
    for (double width : {12.0, 30.0, 75.0}) {
      std::string joined;
      for (const std::string& line : WrapText(text, width, 9, true)) {
        EXPECT_LE(TextWidth(line, 9, true), width) << line;
        joined += line;
      }
      EXPECT_EQ(without_blanks(joined), without_blanks(text));
    }
  }
  EXPECT_TRUE(WrapText("", 50, 9, false).empty());
  EXPECT_EQ(WrapText("No. 12, Jalan Raja\r\n\r\n50050  Kuala Lumpur", 90, 9, false),
            (std::vector<std::string>{"No. 12, Jalan Raja", "", "50050 Kuala Lumpur"}));
}

TEST(Letter, FillsItsPlaces) {
  ReportHeading heading;
  heading.parameters["settleamt"] = "1,234.50";
  heading.parameters["settledate"] = "05-02-2024";
  heading.parameters["note"] = "as agreed";
  heading.today = "31-01-2024";
  const std::vector<Loan> loans = {{"L1", "Tan & 'Sons'", "100.10"}, {"L1", "", "0.90"}};
  const std::pair<const char*, const char*> cases[] = {
      {"{CustName:upper}, {DueDate:long}", "TAN & 'SONS', 29 February 2024"},
      {"RM {Amt}, in all RM {Amt:sum} of {count}", "RM 100.10, in all RM 101.00 of 2"},
      {"{Amt:sum:words}", "RINGGIT MALAYSIA ONE HUNDRED ONE ONLY"},
      {"{?SettleAmt:words}",
       "RINGGIT MALAYSIA ONE THOUSAND TWO HUNDRED THIRTY FOUR AND SEN FIFTY ONLY"},
      {"On {?SettleDate:long}[, {?Nothing:long}][, {?Note:words}]",
       "On 5 February 2024, as agreed"},
      {"[{?Nothing}] · {today}[ · tel. {?Nothing}]", "31-01-2024"},
  };
  for (const auto& [text, filled] : cases) {
    EXPECT_EQ(FirstPage(std::string("text \"") + text + "\"", loans, heading),
              std::string(filled) + "|");
  }
}

TEST(Letter, LeavesOutWhatIsEmpty) {
  const std::string lines = R"(head "{CustName}" "[Tel. {?Tel}]"
text "[Remarks: {?Memo}]"
lines "{?Fax}" "[ {?Tel} ]"
pair "Name" "{CustName}" "Phone" "{?Tel}"
pair "Fax" "{?Fax}"
amount "Late interest" "{?Late}"
amount "Discount" "{?Zero}"
amount "Fee" "{?Zero}" always
box "Paid" "{?Fax}"
text "End"
)";
  ReportHeading heading;
  heading.parameters["zero"] = "0.00";
  EXPECT_EQ(FirstPage(lines, {{"L1", "Tan", "1"}}, heading), "Tan|Name|Tan|Fee|0.00|End|");
}

// A pair whose first half is empty leaves no hole: the second half takes its place.
TEST(Letter, TheSecondPairMovesToTheFirst) {
  const ReportDocument document =
      LayOut(Letter("pair \"Name\" \"{CustName}\" \"Loan\" \"{LoanID}\"\n"), {},
             Rows({{"L1", "", "1"}, {"L2", "Tan", "2"}}));
  const std::vector<PageText>& alone = document.pages.at(0).texts;
  const std::vector<PageText>& both = document.pages.at(1).texts;
  ASSERT_TRUE(alone.at(0).text == "Loan" && both.at(0).text == "Name" && both.at(2).text == "Loan");
  EXPECT_EQ(alone[0].x, both[0].x);
  EXPECT_GT(both[2].x, both[0].x + 50);
}

TEST(Letter, EachRecordBeginsItsOwnPage) {
  const ReportFile file = Letter(
      "title \"{LoanID}\"\ncolumn \"Due\" DueDate date 10\ncolumn \"Amount\" Amt money 10 sum\n"
      "total \"Sum of {count}\"\ntext \"Loan {LoanID}\"\nitems\nfoot \"Ours\"\n");
  const ReportDocument document =
      LayOut(file, {}, Rows({{"L1", "A", "1.10"}, {"l1", "A", "2.20"}, {"L2", "B", "5"}}));
  ASSERT_EQ(document.pages.size(), 2u);
  EXPECT_EQ(TextsOf(document.pages[0]),
            "Loan L1|Due|Amount|29-02-2024|1.10|29-02-2024|2.20|Sum of 2|3.30|Ours|");
  EXPECT_EQ(TextsOf(document.pages[1]), "Loan L2|Due|Amount|29-02-2024|5.00|Sum of 1|5.00|Ours|");
  EXPECT_EQ(TextsOf(LayOut(file, {}, Rows({})).pages.at(0)), "No rows for this selection.|");
}

TEST(Letter, ALongOneGoesOnWithItsTableHead) {
  const ReportFile file = Letter(
      "column \"Due\" DueDate date 10\ncolumn \"Amount\" Amt money 10 sum\ntotal \"Sum\"\n"
      "text \"Loan {LoanID}\"\nitems\nsign \"Manager\" \"Customer\"\n");
  std::vector<Loan> loans(120, {"L1", "A", "1.10"});
  loans.push_back({"L2", "B", "7"});
  const ReportDocument document = LayOut(file, {}, Rows(loans));
  ASSERT_EQ(document.pages.size(), 4u);
  std::string all;
  for (const ReportPage& page : document.pages) {
    all += TextsOf(page);
    EXPECT_EQ(std::count_if(page.texts.begin(), page.texts.end(),
                            [](const PageText& text) { return text.text == "Amount"; }),
              1);
  }
  std::size_t rows = 0;
  for (auto at = all.find("1.10|"); at != std::string::npos; at = all.find("1.10|", at + 1)) ++rows;
  EXPECT_EQ(rows, 120u);
  EXPECT_NE(all.find("Sum|132.00|"), std::string::npos);
  EXPECT_NE(all.find("Page 3 of 3|Loan L2|"), std::string::npos);  // a letter counts its own pages
  ExpectInside(document);
}

// Whatever the height of what stands before it, a head with its first row, a signature and a box
// stay whole, and a signature stands below something.
TEST(Letter, NothingIsCutAtTheFootOfAPage) {
  for (int space = 200; space <= 262; ++space) {
    const ReportFile file = Letter("space " + std::to_string(space) +
                                   "\ncolumn \"Amount\" Amt money 10\ntext \"{CustName}\"\n"
                                   "columns 1 1\nbox \"Paid\" \"{Amt}\"\nbeside\nsign \"Us\"\n"
                                   "across\nitems\nsign \"End\"\n");
    const ReportDocument document =
        LayOut(file, {}, Rows({{"L1", "A name that is long enough for a line", "1.10"}}));
    ExpectInside(document);
    for (const ReportPage& page : document.pages) {
      const std::string texts = TextsOf(page);
      const auto has = [&](const char* text) { return texts.find(text) != std::string::npos; };
      EXPECT_EQ(has("Paid|"), has("Us|")) << space;
      EXPECT_TRUE(!has("End|") || has("Amount|1.10|End|")) << space << texts;
      EXPECT_EQ(texts.ends_with("Amount|"), false) << space << texts;
    }
  }
}

// A customer whose address fills sheets does not stop the letters of the others.
TEST(Letter, WhatIsHigherThanAPageGoesOnOnTheNext) {
  std::string address;
  for (int i = 1; i <= 150; ++i) address += "Line" + std::to_string(i) + "\n";
  const ReportFile file = Letter(
      "text \"To\"\ncolumns 1 1\nlines \"{CustName}\"\nbeside\nbox \"Paid\" \"{Amt}\"\nacross\n"
      "text \"Goodbye\"\n");
  const ReportDocument document =
      LayOut(file, {}, Rows({{"L1", address, "1.10"}, {"L2", "Short", "7"}}));
  ASSERT_EQ(document.pages.size(), 4u);
  std::string all;
  for (const ReportPage& page : document.pages) all += TextsOf(page);
  for (int i = 1; i <= 150; ++i) {
    const std::string line = "Line" + std::to_string(i) + "|";
    EXPECT_NE(all.find(line), std::string::npos) << line;
    EXPECT_EQ(all.find(line), all.rfind(line)) << line;
  }
  EXPECT_NE(TextsOf(document.pages[0]).find("To|Line1|"), std::string::npos);
  EXPECT_NE(TextsOf(document.pages[2]).find("Goodbye|"), std::string::npos);
  EXPECT_NE(TextsOf(document.pages[3]).find("Short|"), std::string::npos);
  for (const ReportPage& page : document.pages) {
    double lowest = 0;
    for (const PageText& text : page.texts) lowest = std::max(lowest, text.y + text.height);
    EXPECT_LE(lowest, 297 - 15);
  }
  ExpectInside(document);
  // A picture is never parted.
  EXPECT_THROW(
      LayOut(Letter("columns 1 1\ntext \"a\"\nbeside\npicture \"" + std::string(test::SourceDir()) +
                    "/docs/pictures/home.png\" 40 400\nacross\n"),
             {}, Rows({{"L1", "A", "1"}})),
      std::runtime_error);
}

// What is signed stands on the page of the signature, whatever the height of what stands before.
TEST(Letter, WhatStaysTogetherGoesToTheNextPageTogether) {
  std::size_t pages = 0;
  for (int space = 200; space <= 262; ++space) {
    const ReportDocument document =
        LayOut(Letter("space " + std::to_string(space) +
                      "\ntogether\nheading \"Terms\"\ntext \"{CustName}\"\nsign \"Us\"\nacross\n"),
               {}, Rows({{"L1", "Agreed by all who are named here", "1"}}));
    ExpectInside(document);
    const std::string texts = TextsOf(document.pages.back());
    EXPECT_NE(texts.find("Terms|"), std::string::npos) << space;
    EXPECT_NE(texts.find("Us|"), std::string::npos) << space;
    pages = std::max(pages, document.pages.size());
  }
  EXPECT_EQ(pages, 2u);
}

TEST(Letter, NobodySignsWhereNobodyIsNamed) {
  const auto page = [](const std::string& name) {
    return LayOut(Letter("sign \"Manager\" \"[Guarantor {CustName}]\" \"\"\n"), {},
                  Rows({{"L1", name, "1"}}))
        .pages.at(0);
  };
  EXPECT_EQ(page("Tan").lines.size(), 3u);
  EXPECT_EQ(page("").lines.size(), 2u);  // a line without a name may be wished for
}

// A record whose joined table has no rows for it gets no line of blanks.
TEST(Letter, AnEmptyRowIsNoItem) {
  const std::string lines = "column \"Name\" CustName text 10\nitems\ntext \"End\"\n";
  const auto foot = [&](const std::vector<Loan>& loans) {
    return LayOut(Letter(lines), {}, Rows(loans)).pages.at(0).texts.back().y;
  };
  EXPECT_EQ(FirstPage(lines, {{"L1", "", "1"}}), "Name|End|");
  EXPECT_GT(foot({{"L1", "Tan", "1"}}), foot({{"L1", "", "1"}}) + 5);
}

// A word too many in one cell must not hide a figure or run into the next row.
TEST(Letter, ALongCellGrowsItsRow) {
  const ReportFile file =
      Letter("column \"Name\" CustName text 10\ncolumn \"Amount\" Amt money 90\nitems\n");
  const ReportDocument document =
      LayOut(file, {}, Rows({{"L1", "Legal fee of the second letter", "1"}, {"L1", "B", "2"}}));
  ExpectInside(document);
  const std::vector<PageText>& texts = document.pages.at(0).texts;
  const auto last = std::find_if(texts.begin(), texts.end(),
                                 [](const PageText& text) { return text.text == "letter"; });
  const auto next = std::find_if(texts.begin(), texts.end(),
                                 [](const PageText& text) { return text.text == "B"; });
  ASSERT_TRUE(last != texts.end() && next != texts.end()) << TextsOf(document.pages[0]);
  EXPECT_GE(next->y, last->y + 4);
}

TEST(Letter, CopiesShareASheetWhileTheyFit) {
  const std::string lines = "copies \"Customer\" \"Office\"\ntext \"{copy} {LoanID}\"\n";
  const std::vector<Loan> loans = {{"L1", "A", "1"}, {"L2", "B", "1"}};
  const ReportDocument two = LayOut(Letter(lines), {}, Rows(loans));
  ASSERT_EQ(two.pages.size(), 2u);
  EXPECT_EQ(TextsOf(two.pages[0]), "Customer L1|Office L1|");
  EXPECT_GT(two.pages[0].texts[1].y, 148.5);  // on the lower half
  const ReportDocument four = LayOut(Letter(lines + "space 140\n"), {}, Rows(loans));
  ASSERT_EQ(four.pages.size(), 4u);
  EXPECT_EQ(TextsOf(four.pages[3]), "Office L2|");
}

TEST(Letter, RefusesWithFileAndLine) {
  // kTop is four lines long.
  ExpectFaults(
      {
          {"text", "line 5: \"text\" takes 1 text(s)"},
          {"text \"a\" \"b\"", "line 5: \"text\" takes 1 text(s)"},
          {"text \"a\" fat", "line 5: \"fat\" is not known behind text"},
          {"rule \"a\"", "line 5: \"rule\" takes no text"},
          {"text \"a\" size big", "line 5: \"size\" needs a number"},
          {"space", "line 5: \"space\" needs 1 number"},
          {"columns 5", "line 5: \"columns\" needs 2 number"},
          {"pair \"a\" \"b\" \"c\"", "line 5: \"pair\" takes a label and a text"},
          {"text \"{Name\"", "line 5: a { is not closed"},
          {"text \"Name}\"", "line 5: a } stands without"},
          {"text \"[tel {Tel}\"", "line 5: a [ is not closed"},
          {"text \"a] b\"", "line 5: a ] stands without"},
          {"foot \"{Amt:wrods}\"", "line 5: \"wrods\" is no form"},
          {"text \"{Amt:words:sum}\"", "line 5: \"sum\" is no form"},
          {"text \"{}\"", "line 5: a place { } has no name"},
          {"rule\nmore \"a\"", "line 6: \"more\" goes on"},
          {"text \"a\"\nbeside", "line 6: \"beside\" stands without"},
          {"columns 1 1\nacross", "line 6: \"across\" stands without"},
          {"columns 1 1\nbeside\ncolumns 1 1", "line 7: \"columns\" and \"together\" do not go"},
          {"together\ncolumns 1 1", "line 6: \"columns\" and \"together\" do not go"},
          {"together\nbeside", "line 6: \"beside\" stands without"},
          {"together\npage", "line 6: a table, a cut and a new page"},
          {"together\ntext \"a\"", "not closed with \"across\""},
          {"columns 1 1\nitems", "line 6: a table, a cut and a new page"},
          {"columns 1 1\nbeside\ntext \"a\"", "not closed with \"across\""},
          {"text \"a\"\nfield \"a\" \"b\"", "line 6: this line belongs to a list"},
          {"items", "\"items\" needs a line \"column\""},
          {"column \"A\" Amt money 5\ntext \"a\"", "a line \"items\" must say"},
          {"", "the letter has no text"},
          {"when\ntext \"a\"", "line 5: \"when\" takes a column"},
          {"when A\nunless B", "line 6: \"unless\" stands within another"},
          {"text \"a\"\ndone", "line 6: \"done\" stands without"},
          {"together\nwhen A", "line 6: \"when\" does not go into"},
          {"when A\ntext \"a\"", "is not closed with \"done\""},
          {"margin 90", "line 5: the margin is at most"},
          {"paragraph \"a\"", "line 5: \"paragraph\" is not known"},
      },
      [](const std::string& text) { Letter(text); });
  ExpectFaults({{"query\n{selection}\nend\ncolumn \"A\" a text 5\ntext \"a\"\n",
                 "t.rpt, line 5: this line belongs to a letter"}},
               [](const std::string& text) { ReportFile::Parse(text, "t.rpt"); });
}

TEST(Letter, TellsWhatOnlyTheRowsShow) {
  ExpectFaults(
      {
          {"text \"{CustNmae}\"", "line 5: the query gives no column \"CustNmae\""},
          {"text \"a\"\nfoot \"{CustNmae}\"", "line 6: the query gives no column"},
          {"columns 1 1\nbox \"a\" \"{Amt}\" size 900\nbeside\nacross",
           "line 8: what stands up to here is higher"},
      },
      [](const std::string& text) {
        LayOut(Letter(text), {}, Rows({{"L1", "A", "1"}}));
      });
}

std::string Damaged(std::string text, std::mt19937& random) {
  const auto any = [&](std::size_t below) { return random() % std::max<std::size_t>(below, 1); };
  static const std::string kSigns = "{}[]\"?:\n 019.-|#az";
  for (std::size_t i = 0; i <= any(4); ++i) {
    const std::size_t at = any(text.size());
    switch (any(4)) {
      case 0:
        text.erase(at, 1 + any(20));
        break;
      case 1:
        text.insert(at, 1, kSigns[any(kSigns.size())]);
        break;
      case 2:
        text.insert(at, text.substr(any(text.size()), any(60)));
        break;
      default:
        if (!text.empty()) text[at] = kSigns[any(kSigns.size())];
    }
  }
  return text;
}

// Whatever an office does to a file, it is told what is wrong or gets its paper.
TEST(ReportFile, ADamagedFileIsRefusedOrPrinted) {
  int printed = 0;
  int refused = 0;
  const auto text_of = [](const std::filesystem::path& path) {
    std::ifstream stream(path);
    return std::string{std::istreambuf_iterator<char>(stream), {}};
  };
  std::string words;  // of all files: one may be like another
  for (const auto& entry : std::filesystem::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() == ".rpt") words += text_of(entry.path());
  }
  // Rows that have every column that a file asks for.
  std::set<std::string> names;
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (!std::isalpha(static_cast<unsigned char>(words[at]))) continue;
    const std::size_t begin = at;
    while (at < words.size() && std::isalnum(static_cast<unsigned char>(words[at]))) ++at;
    names.insert(words.substr(begin, at - begin));
  }
  std::vector<Column> columns;
  for (const std::string& name : names) columns.push_back({name, FieldType::kMoney, 0, 2});
  const std::vector<Value> row(columns.size(), Value(Money::FromText("12.50")));
  const Recordset rows(columns, {row, row, row});
  for (const auto& entry : std::filesystem::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string text = text_of(entry.path());
    const ReportFile whole = ReportFile::Read(entry.path().string());
    ASSERT_FALSE(LayOut(whole, {}, rows).pages.empty());
    std::mt19937 random(20240131);
    for (int i = 0; i < 40; ++i) {
      const std::string damaged = Damaged(text, random);
      try {
        LayOut(ReportFile::Parse(damaged, test::SourceDir() + "/reports/t.rpt"), {}, rows);
        ++printed;
      } catch (const std::runtime_error& error) {
        ++refused;
        ASSERT_NE(std::string(error.what()).find("t.rpt"), std::string::npos) << damaged;
      }
    }
  }
  EXPECT_GT(printed, 100);
  EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace kaunter
