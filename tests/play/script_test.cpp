// The text of the language: words, quotes, comments, blocks.
#include "play/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "play/options.h"

namespace kaunter {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Script, Words) {
  struct Row {
    std::string line;
    std::vector<std::string> words;
  };
  const std::vector<Row> rows = {
      {"", {}},
      {"  \t ", {}},
      {"# set A 1", {}},
      {"  click   SaveCmd\t# and wait", {"click", "SaveCmd"}},
      {R"(set LoanID "LC 1")", {"set", "LoanID", "LC 1"}},
      {R"(set Memo "a\nb \"c\" \\d # no comment")",
       {"set", "Memo", "a\r\nb \"c\" \\d # no comment"}},
      {R"(set Memo "")", {"set", "Memo", ""}},
      {R"(set File C:\Photo\TIR#D0001.jpg)", {"set", "File", R"(C:\Photo\TIR#D0001.jpg)"}},
      {"set Bank #2", {"set", "Bank", "#2"}},
      {"type Bank #12 # twelve", {"type", "Bank", "#12"}},
      {"set Bank # 2", {"set", "Bank"}},
      {"set Bank #2nd", {"set", "Bank"}},
      {"click Save #1", {"click", "Save"}},
      {"set Check1(2) 1", {"set", "Check1(2)", "1"}},
  };
  for (const Row& row : rows) EXPECT_EQ(SplitScriptLine(row.line), row.words) << row.line;
}

TEST(Script, LinesThatDoNotParse) {
  for (const char* line : {"set A \"open", "set A \"back\\", "set A \"a\\tb\"", "set A \"a\"b",
                           "set A b\"c\"", "\""}) {
    EXPECT_THROW(SplitScriptLine(line), ScriptError) << line;
  }
}

TEST(Script, CommandsKnowTheirLines) {
  std::istringstream input("\xEF\xBB\xBF# first\r\n\r\nmenu A\r\nclose");
  ScriptReader reader(input);
  auto command = reader.Next();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->line, 3);
  EXPECT_THAT(command->words, ElementsAre("menu", "A"));
  command = reader.Next();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->line, 4);
  EXPECT_FALSE(reader.Next());
}

TEST(Script, ABlockEndsAtItsEnd) {
  std::istringstream input("  1 | a \n# note\n\n  end of the year | b\n end \nnext");
  ScriptReader reader(input);
  EXPECT_THAT(reader.ReadBlock(), ElementsAre("1 | a", "end of the year | b"));
  EXPECT_EQ(reader.Next()->line, 6);
  EXPECT_THROW(reader.ReadBlock(), ScriptError);
}

TEST(PlayOptions, TheCommandLine) {
  const PlayOptions options =
      ParsePlayOptions({"--database", "a.db", "--now", "2024-01-31 09:00:00", "--out", "paper",
                        "--computer", "FRONT", "-"});
  EXPECT_EQ(options.database, "a.db");
  EXPECT_EQ(options.out, "paper");
  EXPECT_EQ(options.computer, "FRONT");
  EXPECT_EQ(options.script, "-");
  const std::vector<std::vector<std::string>> refused = {
      {"--databse", "x"}, {"--out"}, {"a.play", "b.play"}, {"--now", "31-01-2024"}};
  for (const auto& arguments : refused) {
    EXPECT_THROW(ParsePlayOptions(arguments), UsageError) << arguments[0];
  }
}

}  // namespace
}  // namespace kaunter
