// SessionScreen: a screen that works within a session and speaks under the title of the menu entry
// in use.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/session.h"
#include "screen/screen.h"

namespace kaunter {

class SessionScreen : public Screen {
 public:
  // Takes the language of the session, and its handling of failures.
  SessionScreen(std::string name, Caption title, Session& session, Desk& desk);

  // The one gate of all screens, from wherever they are opened: core/screen_rights.
  bool MayOpen() override;

 protected:
  Session& session() const { return session_; }
  Connection& main() const { return session_.Main(); }

  // MsgText takes the text of the language in force; the title is MsgTitle.
  void Tell(MessageKind kind, const Caption& text);
  // A refusal: critical, the control marked and given the focus. Always false, so that a check may
  // end with it.
  bool Refuse(Control& control, const Caption& text);
  // A code that nothing is found by stays in its box, to be mended, though the screen has cleared
  // itself. Not for a record that may not be used: its code would be taken for a chosen one.
  bool RefuseCode(TextBox& box, const Caption& text);
  bool Refuse(const Caption& text);
  bool Confirm(const Caption& text);
  // The same before something is deleted or given up: Enter alone says no.
  bool ConfirmLoss(const Caption& text);
  // Runs a write in a transaction of the main connection and commits. A failure rolls back, is
  // logged under `what` with its description, told as `text` (critical), and gives false.
  bool Attempt(std::string_view what, const Caption& text, const std::function<void()>& write);
  // The same under the hourglass, for a record that another desktop may have changed or deleted
  // while it was shown (RowChanged, RowNotFound): that is told behind `text`.
  bool AttemptOnRecord(std::string_view what, const Caption& text,
                       const std::function<void()>& write);
  // Nothing was typed, or the person agrees to lose it: what a record screen answers to
  // RequestClose.
  bool MayDiscard(bool changed);
  // The same before another record takes the place of the one shown.
  bool MayLeaveRecord(bool changed);
  // The box of a record's key is left. The key that is shown is no act; another one goes to `open`,
  // which asks before it takes what is typed away; none begins a new record, once that is agreed.
  void LeaveKey(TextBox& key, const std::string& shown, bool changed,
                const std::function<void(std::string id)>& open,
                const std::function<void()>& start_new);

 private:
  // What becomes of a failure that an act let through: rollback of what is still open, a log line,
  // and the message. What was typed stays in the boxes.
  void TellFailure(const std::exception& failure);

  Session& session_;
  std::uint64_t kept_before_ = 0;  // by the main connection when the act began
};

// Items of a list from the first column of a query.
void FillItems(ComboBox& box, Connection& connection, const std::string& sql);
// The rows of a query, a field a column in its order, money and dates as the grid's columns show
// them. Fields past the last column are left out; one redraw.
void FillGrid(Grid& grid, Recordset rows);
// One such row, for a grid that is put together from several queries.
std::vector<std::string> ShownRow(const Grid& grid, const Recordset& row);
// The companies that the signed-in user may use.
void FillCompanies(ComboBox& box, Session& session);

}  // namespace kaunter
