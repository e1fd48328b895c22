// The examples of docs/play.md are run as they stand, each on a new office.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/play/office.h"
#include "tests/support/places.h"

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
  const std::vector<Example> examples = ExamplesOf(test::SourceDir() + "/docs/play.md");
  ASSERT_GE(examples.size(), 4U) << "the page has lost its examples";
  for (const Example& example : examples) {
    const Played played = Office().Play(example.script);
    EXPECT_EQ(played.status, Runner::kHeld) << "the example on line " << example.line << "\n"
                                            << played.err << played.out;
  }
}

}  // namespace
}  // namespace kaunter
