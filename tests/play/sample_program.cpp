#include "tests/play/sample_program.h"

#include <cctype>
#include <stdexcept>

#include "screen/report_job.h"
#include "screen/text.h"

namespace kaunter {
namespace {

class SampleMain : public Screen {
 public:
  explicit SampleMain(Desk& desk) : Screen("MainFrm", {"Sample"}, desk) {
    Label1.onClick = [this] { this->desk().Message(MessageKind::plain, "Slogan", "clicked"); };
  }
  Label Label1{*this, "Label1", {"Slogan"}};
  Label Label2{*this, "Label2", {"Nothing"}};
};

class SampleLogin : public Screen {
 public:
  SampleLogin(Desk& desk, SampleProgram& program)
      : Screen("UserLogin", {"User Login"}, desk), program_(program) {
    OKCmd.SetEnabled(false);
    UserID.onChange = [this] { OKCmd.SetEnabled(!UserID.empty()); };
    OKCmd.onClick = [this] { SignIn(); };
  }
  TextBox UserID{*this, "UserID", {"User ID"}};
  TextBox Password{*this, "Password", {"Password"}, Kind::password};
  Button OKCmd{*this, "OKCmd", {"&OK"}};

 private:
  void SignIn() {
    if (UserID.text() != "OWL" || Password.text() != "hoot") {
      desk().Message(MessageKind::critical, "User Login", "Invalid Password, Please check");
      return;
    }
    program_.signed_in = true;
    desk().Message(MessageKind::information, "User Login", "User OWL Sign in");
    Close();
  }
  SampleProgram& program_;
};

class SamplePicker : public Screen {
 public:
  explicit SamplePicker(Desk& desk) : Screen("PickFrm", {"Pick"}, desk) {
    DG.SetRows({{"A1"}, {"B2"}});
    DG.onOpen = [this](int row, int) {
      this->desk().Message(MessageKind::plain, "Pick", "picked " + DG.Cell(row, 0));
      Close();
    };
  }
  Grid DG{*this, "DG", {"Keys"}, {{"Key"}}};
};

// Notes its events in the label Log.
class SampleFrm : public Screen {
 public:
  explicit SampleFrm(Desk& desk) : Screen("SampleFrm", {"Sample Screen", "样本"}, desk) {
    LoanID.max_length = 8;
    LoanID.onEnter = [this] { Note("enter"); };
    LoanID.onChange = [this] { Note("change"); };
    LoanID.onLeave = [this] { LeaveLoanID(); };
    LoanID.onSearch = [this] { this->desk().Show("PickFrm"); };
    Locked1.SetLocked(true);
    Off.SetEnabled(false);
    Unseen.SetVisible(false);
    Bank.onPick = [this] { Note("pick " + Bank.text()); };
    Check1_2.onClick = [this] { Note("tick " + Check1_2.Text()); };
    Month.onClick = [this] { Note("month"); };
    SetUpGrid();
    SetUpButtons();
  }
  bool RequestClose() override {
    return Purpose.text() != "Wedding" || desk().Ask("Sample", "Discard changes ?");
  }

  TextBox LoanID{*this, "LoanID", {"&Loan ID"}};
  TextBox Memo{*this, "Memo", {"Memo"}, Kind::memo};
  TextBox Secret{*this, "Secret", {"Secret"}, Kind::password};
  TextBox Locked1{*this, "Locked1", {"Locked"}};
  TextBox Off{*this, "Off", {"Off"}};
  TextBox Unseen{*this, "Unseen", {"Unseen"}};
  ComboBox Bank{*this, "Bank", {"Bank"}, {"CIMB", "Maybank"}};
  ComboBox Purpose{*this, "Purpose", {"Purpose"}, {"Car"}, nullptr, true};
  CheckBox Check1_2{*this, "Check1(2)", {"Check"}};
  Tab Pages{*this, "Pages"};
  Frame Terms{*this, "Terms", {"&Terms"}, &Pages};
  Frame Notes{*this, "Notes", {"&Notes"}, &Pages};
  Option Day{*this, "Day", {"Day"}, &Terms};
  Option Month{*this, "Month", {"Month"}, &Terms};
  Grid DG{*this,
          "DG",
          {"Rows"},
          {{"No"},
           {{"Due Date", "到期"}, Kind::date},
           {"Amount", Kind::money, 10, true},
           {"Key", Kind::text, 0}}};
  Grid Plain{*this, "Plain", {"Plain"}, {{"Text"}}};
  Label Log{*this, "Log"};
  Button SaveCmd{*this, "SaveCmd", {"&Save"}};
  Button AskCmd{*this, "AskCmd", {"Ask"}};
  Button FailCmd{*this, "FailCmd", {"Fail"}};
  Button CloseCmd{*this, "CloseCmd", {"Close"}};
  Button PrintCmd{*this, "PrintCmd", {"Print"}};
  Button PickCmd{*this, "PickCmd", {"Pick"}};
  Button LoopCmd{*this, "LoopCmd", {"Loop"}};
  Button OpenCmd{*this, "OpenCmd", {"Open"}};

 private:
  void Note(const std::string& event) {
    Log.SetText(Log.Text().empty() ? event : Log.Text() + ", " + event);
  }
  void LeaveLoanID() {
    Note("leave");
    if (LoanID.text() != "BAD") return;
    desk().Message(MessageKind::critical, "Sample", "Loan not found\r\nTry again");
    FocusOn(LoanID);
  }
  void SetUpGrid() {
    DG.SetRows({{"1", "31-01-2024", "100.00", "K1"}, {"2", "29-02-2024", "", "K2"}});
    DG.SetHasChecks(true);
    DG.onRow = [this](int row) { Note("row " + std::to_string(row)); };
    DG.onOpen = [this](int row, int column) {
      Note("open " + std::to_string(row) + "," + std::to_string(column));
    };
    DG.onTick = [this](int row) { Note("ticked " + std::to_string(row)); };
    DG.onKey = [this](std::string_view key) { Note("key " + std::string(key)); };
    DG.onCellLeave = [this](int row, int column, const std::string& before) {
      if (DG.Cell(row, column) == "abc") DG.SetCell(row, column, before);
      Note("cell");
    };
  }
  void SetUpButtons() {
    SaveCmd.shortcut = "Ctrl+S";
    SaveCmd.onClick = [this] {
      if (!desk().Ask("Save", "Confirm to save ?")) return;
      desk().Message(MessageKind::information, "Save", "Saved");
    };
    AskCmd.onClick = [this] {
      Note(desk().Input("Name", "Your name"));
      Note(desk().PickFile("Picture", "", "Pictures (*.jpg)"));
      Note(desk().PickFolder("Folder", ""));
    };
    FailCmd.onClick = [] { throw std::runtime_error("server gone"); };
    CloseCmd.onClick = [this] { Close(); };
    PrintCmd.onClick = [this] {
      desk().Print({.ReportFileName = "C:\\Office\\LoanMastList.rpt",
                    .SelectionFormula = "{LoanMast.LoanID}='LC-1'",
                    .ReportTitle = "Loans",
                    .ParameterFields = {{0, "RptID;7;True"}}});
    };
    PickCmd.onClick = [this] {
      desk().Show("PickFrm");
      desk().Message(MessageKind::plain, "Sample", "picked and back");
    };
    LoopCmd.onClick = [this] {
      while (!desk().Ask("Loop", "Enough ?")) {
      }
    };
    OpenCmd.onClick = [this] {
      desk().Open("http://www.kaunter.example/");
      desk().Start("DailyBatch", {"31-01-2024"});
    };
  }
};

}  // namespace

Recordset SampleDatabase::DoQuery(std::string_view sql) {
  if (sql == "select getdate()") {
    return Recordset({{"now", FieldType::kDate}}, {{Value(now)}});
  }
  if (sql == "select * from Kinds") {
    return Recordset({{"a"}, {"b"}, {"c"}, {"d"}, {"e"}},
                     {{Value(), Value(Money::FromText("1234.5")), Value(Money::FromText("0.1234")),
                       Value(DateTime{2024, 1, 31}), Value("tab\there\r\nback\\slash")},
                      {Value(7), Value(2.5), Value(Money::FromText("-3")), Value(now), Value("")}});
  }
  if (sql == "update Nothing") return {};
  throw SqlError(208, "Invalid object name");
}

SampleProgram::SampleProgram(Desk& desk) : desk_(desk), main_(std::make_unique<SampleMain>(desk)) {}

SampleProgram::~SampleProgram() = default;

int SampleProgram::Start() {
  if (start_status != 0) desk_.Message(MessageKind::critical, "Sample", "No database");
  return start_status;
}

void SampleProgram::SignIn() {
  if (!sign_in_at_start) {
    sign_in_at_start = true;  // the first one belongs to the start
    return;
  }
  if (!sign_in_works) return;
  SampleLogin dialog(desk_, *this);
  desk_.ShowModal(dialog);
}

void SampleProgram::Exit() { desk_.Message(MessageKind::plain, "Sample", "exit"); }

std::unique_ptr<Screen> SampleProgram::Make(std::string_view screen_name) {
  if (SameName(screen_name, "SampleFrm")) return std::make_unique<SampleFrm>(desk_);
  if (SameName(screen_name, "PickFrm")) return std::make_unique<SamplePicker>(desk_);
  return nullptr;
}

std::vector<MenuLine> SampleProgram::Menus() {
  return {{"SampleMnu", "Sample", MenuState::shown},
          {"GreyMnu", "Grey", MenuState::greyed},
          {"HiddenMnu", "Hidden", MenuState::hidden},
          {"NoScreenMnu", "No screen", MenuState::shown},
          {"ExitMnu", "Exit", MenuState::shown}};
}

MenuState SampleProgram::StateOf(std::string_view menu_name) {
  for (const MenuLine& line : Menus()) {
    if (SameName(line.name, menu_name)) return line.state;
  }
  return MenuState::unknown;
}

void SampleProgram::ChooseMenu(std::string_view menu_name) {
  main_->Guard([&] {
    if (menu_name == "SampleMnu") desk_.Show("SampleFrm");
    if (menu_name == "NoScreenMnu") desk_.Show("NoFrm");
    if (menu_name == "ExitMnu") main_->Close();
  });
}

}  // namespace kaunter
