// The figures of the main window as controls: tables that a face draws as cards and charts and a
// script reads. Opening a row opens the screen or report behind it.
//
// A figure is there for those whose rights reach something behind it; for others its statement is
// not even sent. The figures are read at the sign-in and by the Refresh button. At the return from
// a screen they are read again only where that is done before anybody notices (`patience`): in a
// large office they keep the time at which they were read.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/menu.h"
#include "core/office_figures.h"
#include "core/session_screen.h"

namespace kaunter {

class HomeFigures {
 public:
  HomeFigures(SessionScreen& screen, Session& session, MainMenu& menu);

  Grid DueDG;       // today, the week
  Grid AgeDG;       // a row a band, then all that is behind
  Grid CollectDG;   // a row a month
  Grid DisburseDG;  // a row a month
  Grid OverdueDG;   // the loans that are most behind
  Label FiguresTime;
  Button RefreshCmd;

  // Opens a menu entry; a loan.
  std::function<void(std::string_view entry)> choose;
  std::function<void(const std::string& loan_id)> open_loan;
  // A face that would rather read the parts while it is idle, one at a time, takes them here; it
  // calls each within the screen's guard. Without it they are read at once.
  std::function<void(std::function<void()> part)> later;
  // Longest full reading, in milliseconds, that is repeated at each return from a screen.
  double patience = 150;

  // The person has signed in or out: what may be seen, and the reading of it.
  void SignedIn();
  void SignedOut();
  void Refresh();
  // Back from a screen.
  void Returned();
  // The words of the language in force.
  void ShowAll();

  const OfficeFigures& figures() const { return figures_; }
  // Every part has been read.
  bool ready() const { return next_part_ == parts_.size(); }
  // The entry that a table opens: the first of its roads that can be chosen; null for none.
  const MenuEntry* Road(const Grid& grid) const;
  // The office has neither loans that are open nor money that moved.
  bool Empty() const;

 private:
  struct Part {
    std::vector<Grid*> grids;
    void (*read)(Session&, OfficeFigures&);
  };
  void ReadNext(unsigned run);
  bool Wanted(const Part& part) const;
  void ShowDue();
  void ShowAges();
  void ShowMonths(Grid& grid, const Year& year);
  void ShowOverdue();

  SessionScreen& screen_;
  Session& session_;
  MainMenu& menu_;
  std::vector<Part> parts_;
  OfficeFigures figures_;
  std::string read_at_;
  std::size_t next_part_;
  unsigned run_ = 0;  // a reading that another one has overtaken ends
  double spent_ = 0;  // milliseconds of the reading so far
};

}  // namespace kaunter
