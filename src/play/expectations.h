// The `expect` commands: each looks and changes nothing. One that does not hold throws
// ExpectFailure with what was expected and what was there.
#pragma once

#include <string>
#include <vector>

#include "play/play_context.h"

namespace kaunter {

class Expectations {
 public:
  explicit Expectations(PlayContext& context) : context_(context) {}

  // `words` is the whole command, "expect" first.
  void Run(const std::vector<std::string>& words);
  // Tells that a command other than `expect` ran: "expect title" then looks at the next message box
  // again, not at the one just expected.
  void Forget() { just_expected_ = nullptr; }

 private:
  using Words = std::vector<std::string>;
  struct Rule : CommandRule {
    void (Expectations::*run)(const Words& arguments);
  };
  static const std::vector<Rule>& Rules();
  static const Rule* FindRule(const Words& words);

  void Message(const Words& arguments);
  void Question(const Words& arguments);
  void Title(const Words& arguments);
  void NoMessage(const Words& arguments);
  void ControlText(const Words& arguments);
  void CellText(const Words& arguments);
  void RowCount(const Words& arguments);
  void Ticked(const Words& arguments);
  void WholeGrid(const Words& arguments);
  void Enabled(const Words& arguments);
  void Visible(const Words& arguments);
  void Locked(const Words& arguments);
  void Focus(const Words& arguments);
  void ScreenName(const Words& arguments);
  void Menu(const Words& arguments);
  void Panel(const Words& arguments);
  void Sql(const Words& arguments);
  void Report(const Words& arguments);
  void Formula(const Words& arguments);
  void Parameter(const Words& arguments);
  void Printer(const Words& arguments);

  void OldestText(bool question, const std::string& text);
  const ReportJob& LastReport() const;

  PlayContext& context_;
  const TranscriptEntry* just_expected_ = nullptr;
  const TranscriptEntry* last_expected_ = nullptr;
};

}  // namespace kaunter
