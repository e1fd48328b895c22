#include "office_tool/command.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace kaunter {
namespace {

TEST(OfficeCallTest, WhatDoesNotFitIsNamed) {
  const struct {
    std::vector<std::string> arguments;
    const char* told;
  } cases[] = {
      {{}, "no command is given"},
      {{"--database", "a.db"}, "no command is given"},
      {{"tidy"}, "\"tidy\" is no command"},
      {{"--fast", "check"}, "unknown option --fast"},
      {{"check", "--fast"}, "check knows no option --fast"},
      {{"check", "all"}, "check takes no \"all\""},
      {{"check", "--database"}, "--database needs a value"},
      {{"--now", "noon", "check"}, "noon"},
  };
  for (const auto& c : cases) {
    try {
      ParseOfficeCall(c.arguments, {});
      ADD_FAILURE() << c.told;
    } catch (const CompanionRefused& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.told));
    }
  }
}

}  // namespace
}  // namespace kaunter
