// The figures of the main window as controls: tables that a face draws as cards and charts and a
// script reads. Opening a row opens the screen or report behind it, its days in HandOverDays.
//
// A figure is there for those whose rights reach something behind it; for others its statement is
// not even sent. A face that can wait (`later`) has the figures read at the sign-in and at each
// return: from a screen, from another program. A script reads them with the Refresh button, so that
// what it finds does not hang on when it looks.
#pragma once

#include <array>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/backup_watch.h"
#include "core/menu.h"
#include "core/session_screen.h"
#include "core/shared_figures.h"

namespace kaunter {

class HomeFigures {
 public:
  HomeFigures(SessionScreen& screen, Session& session, MainMenu& menu);

  Grid DueDG;       // today, the week
  Grid AgeDG;       // a row a band of days, then all loans that are behind
  Grid CollectDG;   // a row a month
  Grid DisburseDG;  // a row a month
  Grid OverdueDG;   // the loans that are most behind
  Grid CashDG;      // a row a company that has cash, then all of them
  Grid EInvDG;      // a row a company that submits e-invoices, then all of them
  Label FiguresTime;
  Label PostedLBL;  // up to which day the daily batch has posted late interest
  Label BackupLBL;  // when the last good backup is too old; else empty
  Button RefreshCmd;

  // Opens a menu entry; a loan.
  std::function<void(std::string_view entry)> choose;
  std::function<void(const std::string& loan_id)> open_loan;
  // Reads the lists that stand beside the figures.
  std::function<void()> read_lists;
  // How a face has the parts read, one at a time, each within the screen's guard and while nothing
  // else is going on: soon, or in a while.
  enum class When { soon, in_a_while };
  std::function<void(When when, std::function<void()> part)> later;
  // A full reading that took longer, in milliseconds, is not begun again at each return: that waits
  // until the person has stayed for a while.
  double patience = 150;
  // From so many milliseconds on, a reading is shared with the other desktops of a server, whether
  // there can be any or not; else from half a second.
  std::optional<double> worth_sharing;

  // The person has signed in or out: what may be seen, and the reading of it. Lists are read
  // before.
  void SignedIn();
  void SignedOut();
  void Refresh();
  // Back from a screen, or from another program.
  enum class Lists { stale, fresh };
  void Returned(Lists lists = Lists::stale);
  // The words of the language in force.
  void ShowAll();

  const OfficeFigures& figures() const { return reading_.office; }
  UnsentIncome AllUnsent() const;
  // Nothing is left to be read; the last reading failed.
  bool ready() const { return next_part_ == parts_.size(); }
  bool failed() const { return failed_; }
  // What the table shows has been read, and is not merely empty.
  bool Known(const Grid& grid) const;
  // A statement between those of a transaction would read what may never come true.
  bool MayRead() const;
  // The entry that a table opens: the first of its roads that can be chosen; null for none.
  const MenuEntry* Road(const Grid& grid) const;
  // The figures are there, and there is no loan.
  bool Empty() const;
  // The days that a row of a table counts.
  DayRange Days(const Grid& grid, int row) const;

 private:
  struct Part {
    std::vector<Grid*> grids;  // none: for everybody
    std::function<void(Session&, OfficeFigures&)> read;
    void (HomeFigures::*show)();  // null where the tables wait for another part
    bool known = false;
    bool Holds(const Grid& grid) const;
  };
  // Those of another desktop will do where they are fresh, or one's own are asked for.
  enum class Source { shared, own };
  void Begin(When when, Lists lists, Source source);
  void ReadNext(unsigned run);
  void Read(Part& part);
  std::string View() const;
  // True where another desktop is reading just now.
  bool LookForShared();
  void Share();
  void Forget();
  void Fail(const std::exception& failure);
  void ShowTime();
  void ReadSettings(const DateTime& now);
  void ShowPosted();
  void ShowDue();
  void ShowAges();
  void ShowCollected();
  void ShowDisbursed();
  void ShowOverdue();
  void ShowCash();
  void ShowIncome();
  // The income that waits is a figure only where e-invoices are submitted.
  void OfferIncome();
  void ShowMonths(Grid& grid, const Year& year);
  const MenuEntry* CashRoad(int column) const;
  DayRange CashDays(int column) const;
  DayRange Around(int from, int to) const;
  // The first of the roads that can be chosen; else the first that is within the rights; or null.
  const MenuEntry* First(std::span<const char* const> roads) const;
  std::array<const Grid*, 7> Grids() const {
    return {&DueDG, &AgeDG, &CollectDG, &DisburseDG, &OverdueDG, &CashDG, &EInvDG};
  }
  std::array<Grid*, 7> Grids() {
    return {&DueDG, &AgeDG, &CollectDG, &DisburseDG, &OverdueDG, &CashDG, &EInvDG};
  }

  SessionScreen& screen_;
  Session& session_;
  MainMenu& menu_;
  std::vector<Part> parts_;
  HomeReading reading_;
  std::vector<std::string> submitting_;
  std::optional<SharedFigures> shared_;
  Source source_ = Source::shared;
  bool own_ = false;  // what is shown has been read here
  DateTime begun_at_;
  std::string posted_;  // as the daily batch keeps it: yyyy-mm-dd
  Caption backup_;
  std::string read_at_;  // empty until a reading has come to its end
  bool failed_ = false;
  Lists lists_ = Lists::stale;
  std::size_t next_part_ = 0;
  unsigned run_ = 0;  // a reading that another one has overtaken ends
  double spent_ = 0;  // milliseconds of the reading so far
};

}  // namespace kaunter
