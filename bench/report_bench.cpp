// The listing of loans, to its pages, a PDF and a CSV, in rows a second, beside a plain program
// that reads the very same rows; and how it grows from 1,000 to 100,000 loans.
#include <fmt/format.h>
#include <malloc.h>

#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "qtservices/headless.h"
#include "qtservices/report_output.h"
#include "reports/report_csv.h"
#include "reports/run_report.h"

namespace kaunter {
namespace {

// The most memory that the program has held since the last call, in megabytes.
double PeakMemory() {
  malloc_trim(0);
  std::ifstream status("/proc/self/status");
  std::string word;
  double peak = 0;
  while (status >> word) {
    if (word == "VmHWM:") status >> peak;
  }
  std::ofstream("/proc/self/clear_refs") << "5";
  return peak / 1024;
}

struct Listing {
  explicit Listing(int count)
      : loans(count),
        office(std::make_unique<LargeOffice>(count / 2, count)),
        plain(office->file()) {
    job.ReportFileName = KAUNTER_REPORTS "/LoanMastList.rpt";
    job.SelectionFormula = "{LoanMast.CompCode} <> ''";
    job.ReportTitle = "All companies";
    job.Connect = &office->session.Main();
    job.Company = "Kaunter Holdings";
    std::vector<std::string> sent;
    office->session.Main().SetTrace(
        [&](std::string_view, std::string_view sql) { sent.emplace_back(sql); });
    run = RunWholeReport(job);
    office->session.Main().SetTrace({});
    // The last statement is the report's query; before it stands the question for the time.
    statement = InPlainWords({sent.back()}, office->file()).back();
  }

  void Read() { plain.Query(statement); }
  void Pages() {
    run = {};
    run = RunWholeReport(job);
  }
  void Pdf() { WritePdf(run.document, File("list.pdf")); }
  void Csv() { WriteCsv(run, File("list.csv")); }
  std::string File(const std::string& name) const {
    return office->file().substr(0, office->file().rfind('/') + 1) + name;
  }

  int loans;
  std::unique_ptr<LargeOffice> office;
  Plain plain;
  ReportJob job;
  ReportRun run;
  std::string statement;
};

void Rate(const Listing& listing, const char* what, const std::function<void()>& work) {
  PeakMemory();
  const double wall = std::min(Time(work).wall, Time(work).wall);
  const double peak = PeakMemory();
  fmt::print("  {:<34} {:7.0f} ms {:9.0f} rows/s  peak {:4.0f} MB\n", what, wall,
             listing.loans * 1000.0 / wall, peak);
  std::fflush(stdout);
}

void Rates(Listing& listing) {
  fmt::print("{} loans, {} pages\n", listing.loans, listing.run.document.pages.size());
  Rate(listing, "a plain program reads the rows", [&] { listing.Read(); });
  Rate(listing, "read and laid out", [&] { listing.Pages(); });
  Rate(listing, "  to PDF", [&] { listing.Pdf(); });
  Rate(listing, "  to CSV", [&] { listing.Csv(); });
}

bool Bench() {
  EnsureHeadlessGui();
  bool good = true;
  {
    Listing small(1'000);
    Listing middle(10'000);
    Rates(small);
    Rates(middle);
    good &= Compare(
        {"10,000 loans laid out / read by a plain program", 4, 5}, [&] { middle.Pages(); },
        [&] { middle.Read(); });
    good &= Compare(
        {"their CSV / read by a plain program", 1, 5}, [&] { middle.Csv(); },
        [&] { middle.Read(); });
    good &= Compare(
        {"growth of pages, per loan, from 1,000 loans", 1.5, 5}, [&] { middle.Pages(); },
        [&] {
          for (int i = 0; i < 10; ++i) small.Pages();
        });
    good &= Compare(
        {"growth of the PDF, per loan, from 1,000 loans", 1.5, 3}, [&] { middle.Pdf(); },
        [&] {
          for (int i = 0; i < 10; ++i) small.Pdf();
        });
  }
  Listing half(50'000);
  Rates(half);
  half.run = {};
  Listing large(100'000);
  Rates(large);
  good &= Compare(
      {"growth of pages, per loan, from 50,000 loans", 1.5, 2}, [&] { large.Pages(); },
      [&] {
        for (int i = 0; i < 2; ++i) half.Pages();
      });
  return good;
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
