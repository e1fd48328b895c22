// Reminderfrm, "Reminder Letter": loans in arrears whose money has been drawn in full. Those that
// are ticked get their letter: the first reminder, or the second when a first one dunned for what
// is open and its time has passed. The letters of a kind are one print, a page a loan. After the
// prints one question decides whether their date goes on the loans, since a preview may have been
// looked at only; a print that failed leaves none. The screen speaks English whatever the language
// in force.
#pragma once

#include <string>
#include <vector>

#include "core/session_screen.h"

namespace kaunter {

class Reminderfrm : public SessionScreen {
 public:
  Reminderfrm(Session& session, Desk& desk);

  void Load() override;

  TextBox CalSearchTo{*this, "CalSearchTo", {"Next Due Date Before"}, Kind::date};
  Button SearchCmd{*this, "SearchCmd", {"&List"}};
  Grid vsd{*this,
           "vsd",
           {"Loans in Arrears"},
           {{{"Loan ID"}, Kind::text, 16},
            {{"Customer Name"}, Kind::text, 36},
            {{"Next Due Date"}, Kind::date, 14},
            {{"Reminder Date"}, Kind::date, 14}}};
  Label CountLBL{*this, "CountLBL"};
  Button SelectAllCmd{*this, "SelectAllCmd", {"Select &All"}};
  Button SelectNoneCmd{*this, "SelectNoneCmd", {"Select &None"}};
  Button SaveCmd{*this, "SaveCmd", {"&Process"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  // A reminder letter and the column that keeps its date.
  struct Letter {
    const char* file;
    const char* column;
    std::vector<std::string> loans;
  };
  bool CheckDate();
  void LeaveDate();
  bool List();
  void TickAll(bool on);
  void ShowCount();
  int Ticked() const;
  void Process();
  // Sorts the ticked loans under their letters; gives those that are not in arrears any more. A
  // loan whose first letter still gives it time is `early`.
  std::vector<std::string> Sort(Letter& first, Letter& second, std::vector<std::string>& early);
  // These give false when it went wrong, which has then been told.
  bool SendAll(const Letter& letter, std::vector<Letter>& printed);
  bool Print(const Letter& letter);
  bool KeepDates(const std::vector<Letter>& printed);
  bool ConfirmDates(const std::vector<Letter>& printed);

  std::string listed_date_;  // the date that the list was read for
};

}  // namespace kaunter
