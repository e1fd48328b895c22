// Every statement of the business, as statements/*.sql holds them, runs on each engine: on a fresh
// office that has the base tables and then takes the patches.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/sql/translator/translate.h"
#include "tests/platform/support/test_engine.h"
#include "tests/support/places.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;
using testing::Engine;

struct Block {
  std::string label;
  std::string statement;
  std::string connection = "MainConn";
  bool alone = false;
  bool unpatched = false;
};

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<Block> ReadBlocks(const fs::path& path) {
  std::vector<Block> blocks;
  std::istringstream text(ReadFile(path) + "\n;;\n");
  Block block;
  for (std::string line; std::getline(text, line);) {
    if (line == ";;") {
      if (block.statement.find_first_not_of(" \n") != std::string::npos) blocks.push_back(block);
      block = Block{};
    } else if (line.starts_with("--- ")) {
      block.label = line.substr(4);
      block.alone = line.find(" @alone") != std::string::npos;
      block.unpatched = line.find(" @unpatched") != std::string::npos;
      const std::size_t connection = line.find("@conn=");
      if (connection != std::string::npos) {
        block.connection = line.substr(connection + 6, line.find(' ', connection) - connection - 6);
      }
    } else {
      block.statement += line + "\n";
    }
  }
  return blocks;
}

class Statements : public ::testing::TestWithParam<Engine> {
 protected:
  void SetUp() override { clock_.Set({2024, 1, 31, 10, 20, 30}); }

  Connection& On(const std::string& name) {
    std::unique_ptr<Connection>& connection = connections_[name];
    if (connection == nullptr) connection = databases_.Open(name, clock_);
    return *connection;
  }

  // The patches of a new office lie among the statements, in their order.
  void MakeOffice() {
    On("MainConn").Execute(ReadFile(source_ / "schema" / "base.sql"));
    for (const Block& block : ReadBlocks(statements_ / "other_connections.ddl")) Run(block, false);
    for (const Block& block : ReadBlocks(statements_ / "settings_and_patches.sql")) {
      Run(block, false);
    }
  }

  void Run(const Block& block, bool undo) {
    ++ran_;
    Connection& connection = On(block.connection);
    try {
      if (undo) connection.BeginTrans();
      connection.Query(block.statement);
    } catch (const SqlError& error) {
      ADD_FAILURE() << block.label << "\n" << error.number() << " " << error.what();
    }
    if (undo) connection.RollbackTrans();
  }

  const fs::path source_ = test::SourceDir();
  const fs::path statements_ = source_ / "tests" / "platform" / "sql" / "statements";
  Clock clock_;
  testing::TestDatabases databases_{GetParam()};
  std::map<std::string, std::unique_ptr<Connection>> connections_;
  int ran_ = 0;
};

TEST_P(Statements, AllRun) {
  MakeOffice();
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(statements_)) {
    if (entry.path().extension() == ".sql") files.push_back(entry.path());
  }
  ASSERT_FALSE(files.empty());
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.filename().string());
    const std::vector<Block> blocks = ReadBlocks(file);
    EXPECT_FALSE(blocks.empty()) << "no statements";
    for (const Block& block : blocks) {
      if (!block.unpatched) Run(block, block.alone);
    }
  }
  std::cout << ran_ << " statements\n";
}

INSTANTIATE_TEST_SUITE_P(Engines, Statements,
                         ::testing::Values(Engine::kEmbedded, Engine::kPostgresql),
                         [](const auto& engine) { return testing::EngineName(engine.param); });

}  // namespace
}  // namespace kaunter
