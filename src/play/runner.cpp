#include "play/runner.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "play/control_view.h"
#include "play/sql_text.h"
#include "screen/file_grid.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::string_view kSignInScreen = "UserLogin";
// A program that keeps opening screens while it is being closed would never end.
constexpr int kMostClosedAtEnd = 100;

}  // namespace

Runner::Runner(PlayProgram& program, PlayDesk& desk, ScriptReader& reader, std::ostream& out,
               std::ostream& troubles)
    : context_(program, desk, reader, out),
      hand_(desk),
      expectations_(context_),
      troubles_(troubles) {
  desk.SetHost(this);
}

Runner::~Runner() { context_.desk.SetHost(nullptr); }

const std::vector<Runner::Rule>& Runner::Rules() {
  using R = Runner;
  static const std::vector<Rule> rules = {
      {{"signin", 2, 2, "signin USER PASSWORD"}, &R::SignIn},
      {{"menu", 1, 1, "menu NAME"}, &R::Menu},
      {{"menus", 0, 0, "menus"}, &R::Menus},
      {{"set", 2, 2, "set C TEXT"}, &R::Set},
      {{"type", 2, 2, "type C TEXT"}, &R::Type},
      {{"leave", 1, 1, "leave C"}, &R::Leave},
      {{"click", 1, 1, "click C"}, &R::Click},
      {{"select", 2, 2, "select G ROW"}, &R::Select},
      {{"open", 2, 3, "open G ROW [COL]"}, &R::Open},
      {{"drop", 2, kAnyNumber, "drop G FILE..."}, &R::Drop},
      {{"cell", 4, 4, "cell G ROW COL TEXT"}, &R::Cell},
      {{"tick", 2, 3, "tick G ROW [1/0]"}, &R::Tick},
      {{"key", 2, 2, "key C KEY"}, &R::Key},
      {{"answer", 1, kAnyNumber, "answer TEXT..."}, &R::Answer},
      {{"sql", 1, 1, "sql STATEMENT"}, &R::Sql},
      {{"show", 1, 1, "show C"}, &R::Show},
      {{"messages", 0, 0, "messages"}, &R::Messages},
      {{"describe", 0, 0, "describe"}, &R::Describe},
      {{"now", 1, 1, "now \"yyyy-mm-dd hh:mm:ss\""}, &R::Now},
      {{"close", 0, 0, "close"}, &R::Close},
  };
  return rules;
}

// --- the course of a script

int Runner::Run() {
  if (context_.program.Start() != 0) {
    troubles_ << "kaunter-play: the program did not start\n";
    return kStopped;
  }
  Screen& main = context_.program.main_window();
  context_.program.SignIn();
  while (!main.closed() && !stopped_ && Step()) {
  }
  // A command behind the end of the program cannot be done, and is told so.
  if (main.closed() && !stopped_) Step();
  if (!main.closed()) ClosePersonally(main);
  context_.program.Exit();
  for (const PlayDesk::Reply& reply : context_.desk.replies()) {
    if (stopped_) break;
    Trouble(reply.line, "the reply \"" + OneLine(reply.text) + "\" was never asked for");
    status_ = kStopped;
  }
  return status_;
}

void Runner::RunUntilClosed(Screen& screen) {
  while (!screen.closed() && !stopped_ && Step()) {
  }
  if (!screen.closed()) ClosePersonally(screen);
}

// At the end of a script as a user would; after a stop without a question, since nobody answers.
void Runner::ClosePersonally(Screen& screen) {
  if (!stopped_ && !screen.TryClose()) {
    StopScript(screen.name() + " does not close at the end of the script");
  }
  screen.Close();
  if (!stopped_ && ++closed_at_end_ > kMostClosedAtEnd) {
    StopScript("screens keep opening at the end of the script");
  }
}

std::unique_ptr<Screen> Runner::MakeScreen(std::string_view name) {
  return context_.program.Make(name);
}

void Runner::StopScript(const std::string& why) {
  if (!stopped_) Trouble(line_, why);
  stopped_ = true;
  status_ = kStopped;
}

void Runner::Trouble(int line, const std::string& text) {
  context_.out << std::flush;
  if (line > 0) troubles_ << "line " << line << ": ";
  troubles_ << text << '\n' << std::flush;
}

bool Runner::Step() {
  const std::optional<ScriptCommand> command = NextCommand();
  if (!command) return false;
  line_ = command->line;
  try {
    if (context_.program.main_window().closed()) throw ScriptError("the program has ended");
    Execute(*command);
  } catch (const ExpectFailure& failure) {
    Trouble(line_, failure.what());
    status_ = std::max(status_, kExpectFailed);
  } catch (const std::exception& failure) {
    StopScript(failure.what());
  }
  context_.out << std::flush;
  return !stopped_;
}

std::optional<ScriptCommand> Runner::NextCommand() {
  if (injected_) return std::exchange(injected_, std::nullopt);
  if (finished_) return std::nullopt;
  try {
    std::optional<ScriptCommand> command = context_.reader.Next();
    finished_ = !command;
    return command;
  } catch (const ScriptError& failure) {
    line_ = context_.reader.line();
    StopScript(failure.what());
    return std::nullopt;
  }
}

void Runner::Execute(const ScriptCommand& command) {
  if (command.words[0] == "expect") {
    expectations_.Run(command.words);
    return;
  }
  expectations_.Forget();
  const auto rule = std::find_if(Rules().begin(), Rules().end(), [&command](const Rule& candidate) {
    return candidate.name == command.words[0];
  });
  if (rule == Rules().end()) throw ScriptError("unknown command " + OneLine(command.words[0]));
  const Words arguments(command.words.begin() + 1, command.words.end());
  CheckArguments(*rule, arguments.size());
  (this->*rule->run)(arguments);
}

// --- the program

void Runner::SignIn(const Words& arguments) {
  if (!SameName(context_.Top().name(), kSignInScreen)) {
    RequireMainOnTop();
    // The dialog keeps the word until it is closed: it gets this command as its first.
    injected_ = ScriptCommand{line_, {"signin", arguments[0], arguments[1]}};
    context_.program.SignIn();
    if (std::exchange(injected_, std::nullopt)) {
      throw ScriptError("the sign-in dialog does not open");
    }
    return;
  }
  Set({"UserID", arguments[0]});
  Set({"Password", arguments[1]});
  Click({"OKCmd"});
}

void Runner::RequireMainOnTop() const {
  if (context_.desk.open_screens().empty()) return;
  throw ScriptError("the menu is covered by the open screen " + context_.Top().name());
}

void Runner::Menu(const Words& arguments) {
  const MenuState state = context_.program.StateOf(arguments[0]);
  if (state == MenuState::unknown) throw ScriptError("there is no menu entry " + arguments[0]);
  RequireMainOnTop();
  if (state == MenuState::hidden) throw ScriptError("menu entry " + arguments[0] + " is hidden");
  if (state == MenuState::greyed) throw ScriptError("menu entry " + arguments[0] + " is greyed");
  context_.program.ChooseMenu(arguments[0]);
}

void Runner::Menus(const Words&) {
  for (const MenuLine& menu : context_.program.Menus()) {
    context_.out << fmt::format("{} \"{}\" {}\n", menu.name, OneLine(menu.caption),
                                menu.state == MenuState::shown    ? "shown"
                                : menu.state == MenuState::greyed ? "greyed"
                                                                  : "hidden");
  }
}

void Runner::Now(const Words& arguments) {
  const auto now = DateTime::FromCanonical(arguments[0]);
  if (!now) {
    throw ScriptError("\"" + OneLine(arguments[0]) + "\" is no time: yyyy-mm-dd hh:mm:ss");
  }
  context_.program.SetNow(*now);
}

void Runner::Close(const Words&) { context_.Top().TryClose(); }

// --- controls

void Runner::Set(const Words& arguments) {
  Type(arguments);
  Screen& screen = context_.Top();
  // The text may have closed the screen, or opened and closed others.
  Control* control = screen.Find(arguments[0]);
  if (control != nullptr && !screen.closed()) hand_.LeaveControl(*control);
}

void Runner::Type(const Words& arguments) {
  Control& control = context_.FindControl(arguments[0]);
  Hand::RequireEditable(control);
  hand_.GoTo(control);
  if (control.screen().closed()) return;
  Hand::RequireEditable(control);
  hand_.Put(control, arguments[1]);
}

void Runner::Leave(const Words& arguments) {
  hand_.LeaveControl(context_.FindControl(arguments[0]));
}

void Runner::Click(const Words& arguments) { hand_.Click(context_.FindControl(arguments[0])); }

void Runner::Key(const Words& arguments) {
  hand_.Key(context_.FindControl(arguments[0]), arguments[1]);
}

// --- grids

Grid& Runner::GoToGrid(const std::string& name) {
  Grid& grid = context_.FindGrid(name);
  Hand::RequireActive(grid);
  hand_.GoTo(grid);
  return grid;
}

void Runner::Select(const Words& arguments) {
  Grid& grid = GoToGrid(arguments[0]);
  const int row = PlayContext::FindRow(grid, arguments[1]);
  grid.screen().Guard([&] { grid.Select(row); });
}

void Runner::Drop(const Words& arguments) {
  auto* grid = dynamic_cast<FileGrid*>(&GoToGrid(arguments[0]));
  if (grid == nullptr) throw ScriptError(arguments[0] + " takes no files");
  grid->screen().Guard([&] { grid->Drop({arguments.begin() + 1, arguments.end()}); });
}

void Runner::Open(const Words& arguments) {
  Grid& grid = GoToGrid(arguments[0]);
  const int row = PlayContext::FindRow(grid, arguments[1]);
  const int column = arguments.size() > 2 ? PlayContext::FindColumn(grid, arguments[2]) : 0;
  grid.screen().Guard([&] { grid.Open(row, column); });
}

void Runner::Cell(const Words& arguments) {
  Grid& grid = GoToGrid(arguments[0]);
  Hand::RequireEditable(grid);
  const int row = PlayContext::FindRow(grid, arguments[1]);
  const int column = PlayContext::FindColumn(grid, arguments[2]);
  bool edited = false;
  grid.screen().Guard([&] { grid.EnterCell(row, column); });
  grid.screen().Guard([&] {
    edited = grid.CellEditable(row, column);
    grid.Edit(row, column, arguments[3]);
  });
  if (!edited) {
    throw ScriptError(fmt::format("column {} of {} cannot be edited in row {}", arguments[2],
                                  grid.name(), arguments[1]));
  }
}

void Runner::Tick(const Words& arguments) {
  Grid& grid = GoToGrid(arguments[0]);
  Hand::RequireEditable(grid);
  const int row = PlayContext::FindRow(grid, arguments[1]);
  if (!grid.has_checks()) throw ScriptError(grid.name() + " has no check boxes");
  const bool on = arguments.size() < 3 || ParseSwitch(arguments[2], "a tick");
  grid.screen().Guard([&] { grid.Tick(row, on); });
}

// --- talk

void Runner::Answer(const Words& arguments) {
  for (const std::string& text : arguments) context_.desk.Queue({text, line_});
}

void Runner::Messages(const Words&) {
  for (const TranscriptEntry& entry : context_.desk.transcript().entries()) {
    context_.out << SameBreaks(entry.Line()) << '\n';
  }
}

void Runner::Show(const Words& arguments) {
  const Control& control = context_.FindControl(arguments[0]);
  const auto* grid = dynamic_cast<const Grid*>(&control);
  if (grid == nullptr) {
    context_.out << SameBreaks(PrintedText(control)) << '\n';
    return;
  }
  const std::vector<int> columns = VisibleColumns(*grid);
  context_.out << HeaderLine(*grid, columns) << '\n';
  for (int row = 0; row < grid->RowCount(); ++row) {
    context_.out << RowLine(*grid, row, columns) << '\n';
  }
}

void Runner::Describe(const Words&) {
  for (const Control* control : context_.Top().controls()) {
    context_.out << DescribeControl(*control) << '\n';
  }
}

void Runner::Sql(const Words& arguments) {
  const Recordset rows = context_.Ask(arguments[0]);
  for (const std::vector<Value>& row : rows.rows()) context_.out << SqlRowLine(row) << '\n';
}

}  // namespace kaunter
