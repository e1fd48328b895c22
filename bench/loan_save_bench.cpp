// The save of a loan of 36 months end to end: the button pressed, the checks, the row with its
// totals, the schedule written twice, the loan loaded again; beside the statements that it sends,
// run by a plain program that keeps them prepared.
#include <fmt/format.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/large_office.h"
#include "bench/plain.h"
#include "bench/ratio.h"
#include "loans/new_loan_frm.h"

namespace kaunter {
namespace {

constexpr const char* kCustomer = "C000500";

// Says yes and expects nothing but the loan's number.
class AgreeingDesk : public StrictDesk {
 public:
  void Message(MessageKind kind, std::string_view title, std::string_view text) override {
    if (!text.ends_with("saved")) StrictDesk::Message(kind, title, text);
  }
  bool Ask(std::string_view, std::string_view) override { return true; }
};

void Fill(NewLoanFrm& screen) {
  screen.CmdNew.Click();
  screen.CustID.SetText(kCustomer);
  screen.CustID.Leave();
  screen.TrxDate.SetText("31-01-2024");
  screen.NextDueDate.SetText("29-02-2024");
  screen.LoanType.SetText("Unsecured");
  screen.DragLoan.SetIndex(0);
  screen.LoanPurpose.SetText("REDUCING");
  screen.LoanAmt.SetText("10,000.00");
  screen.InsRate.SetText("18");
  screen.LoanTerm.SetText("36");
  screen.LoanTerm2.SetText("0");
  screen.LoanTerm3.SetText("36");
  screen.LateChargePerDay.SetText("18");
  screen.Command3.Click();
}

// An office like the other three: one customer more makes no difference but the name of its folder.
struct LendingOffice : LargeOffice {
  explicit LendingOffice(int number) : LargeOffice(1'000 + number, 2'000) {
    session.Main().Execute(
        fmt::format("INSERT INTO NumberMast VALUES ('{}','901','000')", kCustomer));
  }
};

// With the screen open on it.
struct Counter {
  explicit Counter(int number) : office(number), screen(office.session, desk) {
    office.session.CallerTag = "New Loan";
    screen.Load();
  }
  void Save() { screen.SaveCmd.Click(); }

  LendingOffice office;
  AgreeingDesk desk;
  NewLoanFrm screen;
};

// The backup of a schedule goes as one text of two statements.
void Split(std::string_view text, std::vector<std::string>& statements) {
  const std::size_t end = text.find(";INSERT ");
  statements.emplace_back(text.substr(0, end));
  if (end != std::string_view::npos) statements.emplace_back(text.substr(end + 1));
}

// What each of the saves sends, one number of a loan behind the other, in SQLite's words.
std::vector<std::vector<std::string>> Sent(int saves) {
  Counter recorded(0);
  const LendingOffice played(1);
  std::vector<std::vector<std::string>> all;
  for (int i = 0; i < saves; ++i) {
    std::vector<std::string> sent;
    Fill(recorded.screen);
    recorded.office.session.Main().SetTrace(
        [&](std::string_view, std::string_view sql) { Split(sql, sent); });
    recorded.Save();
    recorded.office.session.Main().SetTrace({});
    all.push_back(InPlainWords(sent, played.file()));
  }
  return all;
}

bool Bench() {
  Measure measure{"save a loan of 36 months / plain", 1.5, 30};
  const auto words = Sent(measure.runs + 1);
  fmt::print("a save sends {} statements\n", words[0].size());
  Counter ours(2);
  const LendingOffice theirs(3);
  Plain plain(theirs.file());
  std::size_t turn = 0;
  std::vector<sql::SqliteStatement> prepared;
  measure.prepare = [&] {
    Fill(ours.screen);
    if (turn < words.size()) prepared = plain.Prepare(words[turn]);
  };
  return Compare(
      measure, [&] { ours.Save(); },
      [&] {
        for (const auto& statement : prepared) plain.Query(statement.get());
        ++turn;
      });
}

}  // namespace
}  // namespace kaunter

int main() { return kaunter::RunBench(kaunter::Bench); }
