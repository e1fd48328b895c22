// A file is whole under its name or not there, whoever writes it at the same time.
#include "platform/whole_file.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <future>
#include <set>

#include "tests/platform/support/temp_folder.h"

namespace kaunter {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class WholeFile : public ::testing::Test {
 protected:
  std::string Read(const std::string& name) const {
    std::ifstream file(folder.File(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }
  testing::TempFolder folder;
};

TEST_F(WholeFile, AFullDiskLeavesTheFileThatWasThereAndNoOther) {
  const std::string path = folder.File("a.csv");
  WriteWholeFile(path, [](std::ostream& out) { out << "old"; });
  signal(SIGXFSZ, SIG_IGN);
  rlimit usual = {};
  getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit small = {100'000, usual.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_THROW(WriteWholeFile(path, [](std::ostream& out) { out << std::string(200'000, 'x'); }),
               std::runtime_error);
  setrlimit(RLIMIT_FSIZE, &usual);
  EXPECT_EQ(Read("a.csv"), "old");
  EXPECT_THAT(Names(), ElementsAre("a.csv"));
  EXPECT_EQ(FileNameOf("a/b:\"陈\"\n"), "a_b__陈__");
}

// Slow writers, each in the middle of the others' work.
TEST_F(WholeFile, WritersOfOneFileDoNotMeet) {
  std::vector<std::future<void>> writers;
  for (const char sign : {'a', 'b', 'c', 'd'}) {
    writers.push_back(std::async(std::launch::async, [this, sign] {
      for (int i = 0; i < 20; ++i) {
        WriteWholeFile(folder.File("one"), [sign](std::ostream& out) {
          for (int piece = 0; piece < 8; ++piece) out << std::string(5000, sign) << std::flush;
        });
      }
    }));
  }
  for (auto& writer : writers) EXPECT_NO_THROW(writer.get());
  EXPECT_EQ(Read("one"), std::string(40000, Read("one").front()));
  EXPECT_THAT(Names(), ElementsAre("one"));
}

TEST_F(WholeFile, WhatADeadWriterLeftGoesWithTheNextFileAfterADay) {
  const auto make = [this](const std::string& name, int hours) {
    std::ofstream(folder.File(name)) << "x";
    std::filesystem::last_write_time(
        folder.File(name),
        std::filesystem::file_time_type::clock::now() - std::chrono::hours(hours));
  };
  const std::string dead = FreeFileName(), at_work = FreeFileName();
  make(dead, 25);
  make(at_work, 23);
  make("kaunter-x.csv", 25);
  make("x.part", 25);
  WriteWholeFile(folder.File("one"), [](std::ostream& out) { out << "1"; });
  EXPECT_THAT(Names(), UnorderedElementsAre("one", at_work, "kaunter-x.csv", "x.part"));
}

}  // namespace
}  // namespace kaunter
