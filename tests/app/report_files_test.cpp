// Every report that the program can start has its file, and every file is checked somewhere.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "app/menu_table.h"
#include "core/report_path.h"
#include "reporting/report_criteria.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

const fs::path kSource = test::SourceDir();

using Names = std::set<std::string>;

// "LoanMastListC.rpt" for "LoanMastList.rpt".
std::string ChineseName(const std::string& file) {
  return file.substr(0, file.size() - std::string(".rpt").size()) + "C.rpt";
}

// What the option boxes, the settings and the other screens start besides.
const Names& StartedOtherwise() {
  static const Names names = {
      "LoanMastList3.rpt",    "LoanMastListC3.rpt", "LoanMastList2S.rpt",
      "LoanMastList2CS.rpt",  "LoanSchList2.rpt",   "LoanSchListC2.rpt",
      "PaymentList3S.rpt",    "PaymentList3CS.rpt", "Outstanding2S.rpt",
      "Outstanding2CS.rpt",   "AccountReport2.rpt", "AccountReport2C.rpt",
      "AccountReport3.rpt",   "AgreeJ.rpt",         "AgreeK.rpt",
      "LejarAkuan60.rpt",     "RekodTrans2.rpt",    "Payment Receipt Old.rpt",
      "MyKadList.rpt",        "LoanCalcList.rpt",   "ApplicationForm.rpt",
      "ApplicationForm2.rpt", "LetterOffer.rpt",    "SettlementLetter.rpt",
      "Reminder2.rpt",        "LateInvoice.rpt",    "ARCreditNote.rpt",
      "LateInterestC.rpt",    "CashBookRecalc.rpt", "GoldVoucher.rpt",
      "ExpenseVoucher.rpt",   "NPL Report.rpt",     "ReturnLoans.rpt",
      "STR-BNM.rpt",          "PaymentReader.rpt",  "SMSCompListS.rpt",
      "MoveInList.rpt",       "WatchListHits.rpt",  "LinkResend.rpt"};
  return names;
}

// The files of a list of the printing desk: caption, file, field.
void AddPrintingList(const fs::path& list, Names& names) {
  std::ifstream file(list);
  std::string line;
  while (std::getline(file, line)) {
    const std::size_t from = line.find(',');
    const std::size_t to = line.find(',', from + 1);
    if (to == std::string::npos) continue;
    names.insert(line.substr(from + 1, to - from - 1));
  }
}

Names EveryReport() {
  Names names = StartedOtherwise();
  for (const MenuEntry& entry : MenuTable()) {
    if (entry.action != MenuAction::report && entry.action != MenuAction::direct_list) continue;
    names.insert(entry.target);
    if (entry.chinese_report) names.insert(ChineseName(entry.target));
  }
  for (const ReportCriteria& row : AllReportCriteria()) {
    names.insert(row.files.begin(), row.files.end());
  }
  for (const auto& list : fs::directory_iterator(kSource / "reports" / "ReportList")) {
    AddPrintingList(list.path(), names);
  }
  return names;
}

TEST(ReportFiles, EveryReportThatCanBeStartedHasAFile) {
  const Names every = EveryReport();
  ASSERT_GT(every.size(), 120u);
  for (const std::string& name : every) {
    EXPECT_TRUE(ReportFileExists((kSource / "reports" / name).string())) << name << " has no file";
  }
}

// The text of all tests that run report files.
std::string TestsThatPrint() {
  std::string all;
  for (const auto& entry : fs::recursive_directory_iterator(kSource / "tests")) {
    if (entry.path().extension() != ".cpp") continue;
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto holds = [&](const char* part) { return text.find(part) != std::string::npos; };
    const bool prints = holds("tests/reporting/report_office.h") || holds("RunWholeReport(");
    if (prints && entry.path().filename() != "report_files_test.cpp") all += text;
  }
  return all;
}

TEST(ReportFiles, EveryFileIsCheckedByATest) {
  const std::string tests = TestsThatPrint();
  for (const auto& entry : fs::directory_iterator(kSource / "reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string name = entry.path().filename().string();
    EXPECT_NE(tests.find('"' + name + '"'), std::string::npos) << name << " is in no test's table";
  }
}

TEST(ReportFiles, EveryFileCanBeStarted) {
  const Names every = EveryReport();
  for (const auto& entry : fs::directory_iterator(kSource / "reports")) {
    if (entry.path().extension() != ".rpt") continue;
    const std::string name = entry.path().filename().string();
    EXPECT_TRUE(every.contains(name)) << name << " is printed by nothing";
  }
}

}  // namespace
}  // namespace kaunter
