// The column headings of every report file have room where they stand, in both languages and
// whatever a parameter leaves in the file.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/values.h"
#include "reports/report_file.h"
#include "reports/report_table.h"
#include "reports/report_texts.h"
#include "reports/text_width.h"
#include "tests/reporting/report_office.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

constexpr double kListMargin = 15;

using Readings = std::vector<std::map<std::string, std::string>>;

// The values that the lines "if" of a file and of the one that it is like ask for, by parameter.
void AskedFor(const fs::path& path, std::map<std::string, std::set<std::string>>& asked) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with("if ") && !line.starts_with("like ")) continue;
    const std::vector<ReportWord> words = ReportWords(Trim(line), false);
    if (words[0].text == "like") AskedFor(path.parent_path() / words[1].text, asked);
    if (words[0].text != "if" || words[1].text == "language") continue;
    auto& values = asked[Lower(words[1].text)];
    values.insert("none of them");
    for (std::size_t i = 3; i < words.size(); ++i) values.insert(words[i].text);
  }
}

// Each value of each parameter with each of the others.
Readings ReadingsOf(const fs::path& path) {
  std::map<std::string, std::set<std::string>> asked;
  AskedFor(path, asked);
  Readings readings(1);
  for (const auto& [name, values] : asked) {
    Readings more;
    for (const auto& reading : readings) {
      for (const std::string& value : values) {
        more.push_back(reading);
        more.back()[name] = value;
      }
    }
    readings = std::move(more);
  }
  return readings;
}

// Rows without any, of all columns that the table needs.
Recordset NoRowsOf(const ReportFile& file) {
  std::vector<Column> fields;
  for (const ReportColumn& column : file.columns) {
    if (!column.field.empty()) fields.push_back({column.field, FieldType::kText});
    if (!column.restart.empty()) fields.push_back({column.restart, FieldType::kText});
    for (const RunningTerm& term : column.running) fields.push_back({term.field, FieldType::kText});
  }
  if (file.IsLetter()) fields.push_back({file.letter.key, FieldType::kText});
  return Recordset(std::move(fields), {});
}

// The headings that are wider than their place, each with what it lacks.
std::string Cut(const ReportFile& file) {
  if (file.columns.empty()) return {};
  const double margin = file.IsLetter() ? file.letter.margin : kListMargin;
  const Recordset none = NoRowsOf(file);
  const ReportHeading heading;
  const ReportTexts texts(file.path, heading, none);
  ReportPage page;
  ReportTable(file, texts, none, margin, file.width_mm - 2 * margin).Head(page, 0);
  std::string cut;
  for (const PageText& text : page.texts) {
    const double lack = TextWidth(text.text, text.points, text.bold) - text.width;
    if (lack > 0) cut += fmt::format("\"{}\" lacks {:.1f} mm; ", text.text, lack);
  }
  return cut;
}

TEST(ReportHeadings, NoneIsCut) {
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() != ".rpt") continue;
    ++files;
    for (const auto& parameters : ReadingsOf(entry.path())) {
      for (const bool chinese : {false, true}) {
        ReportReading reading;
        reading.chinese = chinese;
        reading.parameters = parameters;
        EXPECT_EQ(Cut(ReportFile::Read(entry.path().string(), reading)), "")
            << entry.path().filename() << (chinese ? " Chinese" : " English");
      }
    }
  }
  EXPECT_GT(files, 50u);
  // The check sees what is wrong.
  ReportFile narrow = ReportFile::Parse(
      "query\nSELECT a FROM t WHERE {selection}\nend\ncolumn \"4-6 months\" a money 9\ncolumn "
      "\"Rest\" a text 91\n",
      "narrow.rpt");
  EXPECT_NE(Cut(narrow), "");
}

// A file with texts in both languages follows the session, whatever its name; the letters and forms
// that have one language only stay as they are.
TEST(ReportHeadings, APaperSpeaksTheLanguageOfTheSession) {
  const std::string kOneLanguage =
      "|ARCreditNote|ARInvoice|Agree1|AgreeJ|AgreeK|ApplicationForm|ApplicationForm2|CashVoucher|"
      "FilecoverJadualBayaranAkaun|LejarAkuan|LejarAkuan60|LetterOffer|LoanCalcList|Payment "
      "Receipt Old|Payment "
      "Receipt|RekodTrans|RekodTrans2|Reminder|Reminder2|SettlementLetter|filecovercagaran|";
  ReportOffice office;
  std::size_t one = 0;
  for (const auto& entry : fs::directory_iterator(test::SourceDir() + "/reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string name = entry.path().stem().string();
    const bool of_one = kOneLanguage.find("|" + name + "|") != std::string::npos;
    ReportJob job;
    job.Connect = name == "AuditLogs" ? &office.logs() : &office.main();
    job.ReportFileName = entry.path().string();
    job.ParameterFields = {{0, "SettleAmt;0;True"}, {1, "SettleDate;;True"}};
    for (const bool chinese : {false, true}) {
      job.Chinese = chinese;
      const ReportRun run = RunWholeReport(job);
      EXPECT_EQ(run.heading.printed_at.starts_with("打印于"),
                name == "CashBookC" || (chinese && !of_one))
          << name;
    }
    if (of_one) ++one;
  }
  EXPECT_EQ(one, 21u);
}

}  // namespace
}  // namespace kaunter
