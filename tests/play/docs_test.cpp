// The examples of docs/play.md are run as they stand, each on a new office.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "play/application_program.h"
#include "play/runner.h"

namespace kaunter {
namespace {

struct Example {
  int line = 0;  // of its fence in the page
  std::string script;
};

std::vector<Example> ExamplesOf(const std::string& page) {
  std::vector<Example> examples;
  std::ifstream file(page);
  std::string line;
  bool inside = false;
  for (int number = 1; std::getline(file, line); ++number) {
    if (!inside && line == "```play") {
      examples.push_back({number, ""});
      inside = true;
    } else if (inside && line == "```") {
      inside = false;
    } else if (inside) {
      examples.back().script += line + "\n";
    }
  }
  return examples;
}

TEST(PlayPage, ItsExamplesHold) {
  const std::vector<Example> examples = ExamplesOf(KAUNTER_SOURCE_DIR "/docs/play.md");
  ASSERT_GE(examples.size(), 4U) << "the page has lost its examples";
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("kaunter-docs-" + std::to_string(::getpid()));
  for (const Example& example : examples) {
    const std::filesystem::path office = folder / std::to_string(example.line);
    std::filesystem::create_directories(office);
    std::ostringstream out;
    std::ostringstream err;
    std::istringstream script(example.script);
    PlayDesk desk(out);
    Application application({.app_path = office.string(),
                             .database = (office / "office.db").string(),
                             .settings = "",
                             .now = "2024-01-31 09:00:00",
                             .trace = ""},
                            desk);
    ApplicationProgram program(application);
    ScriptReader reader(script);
    Runner runner(program, desk, reader, out, err);
    EXPECT_EQ(runner.Run(), Runner::kHeld) << "the example on line " << example.line << "\n"
                                           << err.str() << out.str();
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kaunter
