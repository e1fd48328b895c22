#include "reports/run_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "core/report_path.h"
#include "core/values.h"
#include "platform/sql/waiting.h"
#include "reports/report_query.h"

namespace kaunter {
namespace {

ReportReading ReadingOf(const ReportJob& job, bool chinese) {
  ReportReading reading;
  reading.chinese = chinese;
  for (const auto& [number, field] : job.ParameterFields) {
    const auto [name, value] = SplitParameter(field);
    if (!Trim(name).empty()) reading.parameters[Lower(Trim(name))] = value;
  }
  return reading;
}

Recordset ReadRows(const ReportFile& file, const ReportJob& job, const std::string& statement,
                   const ReportProgress& progress) {
  bool stopped = false;
  const MayStop stop([&] {
    stopped = stopped || (progress && !progress(ReportStage::reading, 0, 0));
    return stopped;
  });
  try {
    return job.Connect->QueryOnly(statement);
  } catch (const SqlError& error) {
    if (stopped) throw ReportStopped{};
    throw SqlError(error.number(), fmt::format("{}, the query that begins there: {}",
                                               file.query_line.Told(), error.what()));
  }
}

// A name that two companies have is nobody's: the pictures of one must not head a letter of
// another.
std::map<std::string, CompanyPictures> PicturesOfCompanies(Connection& main) {
  std::map<std::string, CompanyPictures> pictures;
  for (Recordset rows = main.Query("SELECT CompDesc,LogoFile,Letterhead FROM CompMast");
       !rows.Eof(); rows.MoveNext()) {
    const CompanyPictures own = {NullToEmpty(rows.Field("LogoFile")),
                                 NullToEmpty(rows.Field("Letterhead"))};
    const auto [place, first] = pictures.emplace(NullToEmpty(rows.Field("CompDesc")), own);
    if (!first) place->second = {};
  }
  return pictures;
}

ReportHeading HeadingOf(const ReportFile& file, const ReportJob& job,
                        const ReportParameters& parameters, const DateTime& now) {
  ReportHeading heading;
  heading.company = job.Company;
  // The plain listings hand over the company as their title.
  if (!SameText(Trim(job.ReportTitle), heading.company)) heading.subtitle = Trim(job.ReportTitle);
  heading.printed_at = file.words().Printed(Format(now, "dd-mm-yyyy hh:nn:ss"), job.PrintedBy);
  heading.today = Format(now, "dd-mm-yyyy");
  heading.parameters = ShownParameters(file, parameters, now);
  if (file.logo) heading.logo = ScalarQuery(*job.Connect, "SELECT LogoFile FROM CompanyProfile");
  if (!file.logo && file.AsksForPictures()) heading.pictures = PicturesOfCompanies(*job.Connect);
  return heading;
}

}  // namespace

std::pair<std::string, std::string> SplitParameter(const std::string& field) {
  const auto first = field.find(';');
  if (first == std::string::npos) return {field, {}};
  // The value may hold semicolons itself; the flag behind the last one is not part of it.
  const auto last = field.rfind(';');
  return {field.substr(0, first),
          last == first ? field.substr(first + 1) : field.substr(first + 1, last - first - 1)};
}

ReportRun RunWholeReport(const ReportJob& job, const ReportProgress& progress,
                         const PictureMeasure& measure) {
  // A slash and a backslash before the file's name mean the same.
  std::string wanted = job.ReportFileName;
  std::replace(wanted.begin(), wanted.end(), '\\', '/');
  const ReportPath found = FindReportFile(wanted);
  const ReportReading reading =
      ReadingOf(job, found.chinese || (job.Chinese && ReportFile::SpeaksChinese(found.path)));
  ReportRun run;
  run.file = ReportFile::Read(found.path, reading);
  run.file.folder = std::filesystem::path(wanted).parent_path().string();
  if (job.Connect == nullptr) {
    throw std::runtime_error("The report has no connection to read from.");
  }
  const DateTime now = ServerTime(*job.Connect);
  const std::string statement =
      ReportStatement(run.file, job.SelectionFormula, reading.parameters, now, job.Companies);
  run.heading = HeadingOf(run.file, job, reading.parameters, now);
  run.heading.measure = measure;
  run.rows = ReadRows(run.file, job, statement, progress);
  run.document = LayOut(run.file, run.heading, run.rows, progress);
  return run;
}

}  // namespace kaunter
