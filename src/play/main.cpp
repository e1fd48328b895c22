// kaunter-play: the program without its window, driven by a script. docs/play.md tells its
// language.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "platform/host.h"
#include "platform/installation.h"
#include "platform/process.h"
#include "play/application_program.h"
#include "play/options.h"
#include "play/runner.h"
#include "qtservices/headless.h"
#include "qtservices/report_output.h"
#include "reports/report_check.h"

namespace kaunter {
namespace {

int Play(const PlayOptions& options) {
  std::ifstream file;
  const bool from_file = !options.script.empty() && options.script != "-";
  if (from_file) {
    file.open(options.script);
    if (!file || std::filesystem::is_directory(options.script)) {
      std::cerr << "kaunter-play: the script " << options.script << " cannot be read\n";
      return Runner::kStopped;
    }
  }
  NameThisHost(options.computer);
  PlayDesk desk(std::cout);
  desk.SetRenderer(
      [&desk](const ReportJob& job, const std::string& path) {
        EnsureHeadlessGui();
        for (const Caption& left_out : RenderReport(job, path)) {
          desk.transcript().Note(left_out.In(job.Chinese));
        }
      },
      options.out);
  desk.SetLauncher(StartProgram);
  Application application({.app_path = options.app,
                           .database = options.database,
                           .settings = options.settings,
                           .now = options.now,
                           .trace = options.trace},
                          desk);
  ApplicationProgram program(application);
  ScriptReader reader(from_file ? static_cast<std::istream&>(file) : std::cin);
  Runner runner(program, desk, reader, std::cout, std::cerr);
  return runner.Run();
}

int CheckFolder(const std::string& folder) {
  const ReportCheck check = CheckReports(folder);
  if (check.files == 0) {
    std::cerr << "kaunter-play: there is no report file (.rpt) in " << folder << '\n';
    return Runner::kStopped;
  }
  for (const std::string& fault : check.faults) std::cout << fault << '\n';
  std::cout << "report files: " << check.files << ", faults: " << check.faults.size() << '\n';
  return check.faults.empty() ? Runner::kHeld : Runner::kExpectFailed;
}

}  // namespace
}  // namespace kaunter

int main(int argc, char** argv) {
  using namespace kaunter;
  SettleProcess();
  SetInstallation(InstallationAt(ProgramFolder(argv[0])));
  FindPluginsIn(ThisInstallation().programs);
  try {
    const PlayOptions options = ParsePlayOptions({argv + 1, argv + argc});
    if (options.help) {
      std::cout << PlayUsage();
      return Runner::kHeld;
    }
    if (!options.check_reports.empty()) return CheckFolder(options.check_reports);
    return Play(options);
  } catch (const UsageError& error) {
    std::cerr << "kaunter-play: " << error.what() << '\n' << PlayUsage();
  } catch (const std::exception& error) {
    std::cerr << "kaunter-play: " << error.what() << '\n';
  }
  return Runner::kStopped;
}
