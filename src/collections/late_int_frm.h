// LateIntfrm, "Late Interest": works the late interest of a day through and notes the day as done.
// It writes no charge: the figures serve nobody but the run itself, which thereby proves that every
// overdue row can be charged. Charges are posted by the daily batch alone. The screen speaks
// English whatever the language in force.
#pragma once

#include "core/session_screen.h"

namespace kaunter {

class LateIntfrm : public SessionScreen {
 public:
  LateIntfrm(Session& session, Desk& desk);

  void Load() override;

  TextBox LateIntDate{*this, "LateIntDate", {"Previous Process Date"}, Kind::date};
  TextBox TrxDate{*this, "TrxDate", {"Date"}, Kind::date};
  Button SaveCmd{*this, "SaveCmd", {"&Process"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close"}, ButtonRole::cancel};

 private:
  void ShowLastDate();
  void Process();
  // Notes a day as the one done last.
  void NoteDate(const std::string& date);
  // Works out the charge of each overdue row and lets it go.
  void TryOverdueRows();
  // False when it failed, which has then been told.
  bool Run(const std::function<void()>& work);
};

}  // namespace kaunter
