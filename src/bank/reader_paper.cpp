#include "bank/reader_paper.h"

#include <fmt/format.h>

#include <filesystem>

#include "core/session_report.h"
#include "core/staged_rows.h"
#include "core/values.h"
#include "platform/host.h"
#include "platform/sql/transaction.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::size_t kColumn = 500;  // of a text of MasterReport

void Stage(Session& session, const std::vector<ReaderPaperLine>& lines) {
  Connection& main = session.Main();
  const std::string pc = ThisHostName();
  Transaction transaction(main);
  DropStagedRows(main, pc, kReaderPaper);
  Batch batch;
  int number = 0;
  for (const auto& [row, fate, why] : lines) {
    // A line without a loan is of the office that read it.
    const std::string& company = row->CompCode.empty() ? session.CurrentCompCode : row->CompCode;
    batch.Add(fmt::format(
        "INSERT INTO MasterReport (pcname,reportname,recordid,s1,s2,s3,s5,s6,s7,s8,c1,d1) VALUES "
        "({},{},{},{},{},{},{},{},{},{},{},{})",
        QuoteStr(pc), QuoteStr(kReaderPaper), QuoteStr(fmt::format("{:06}", ++number)),
        QuoteStr(row->LoanID), QuoteStr(row->CustName), QuoteStr(company),
        QuoteStr(FirstCharacters(why, kColumn)), QuoteStr(row->PayID),
        QuoteStr(std::to_string(static_cast<int>(fate))), QuoteStr(row->RefNo),
        row->amount.ToText(), row->date ? SqlDate(*row->date) : "null"));
    batch.SendWhenFull(main);
  }
  batch.Send(main);
  transaction.Commit();
}

}  // namespace

void PrintReaderPaper(Session& session, Desk& desk, const std::string& source,
                      const std::vector<ReaderPaperLine>& lines) {
  Stage(session, lines);
  ReportJob job = SessionReport(session, kReaderPaper);
  job.SelectionFormula = StagedFormula(ThisHostName(), kReaderPaper);
  job.ReportTitle = source;
  desk.Print(job);
}

std::string FailedLinesName(const std::string& path, const DateTime& now) {
  const std::filesystem::path file(path);
  return fmt::format("{}-failed-{}{}", file.stem().string(), Format(now, "ddmmyy-hhnnss"),
                     file.extension().string());
}

}  // namespace kaunter
