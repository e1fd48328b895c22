#include "core/session_screen.h"

#include <fmt/format.h>

#include "core/company_access.h"
#include "core/log.h"
#include "core/record.h"
#include "core/screen_rights.h"
#include "core/stored_row.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/sql/transaction.h"
#include "screen/hourglass.h"

namespace kaunter {

SessionScreen::SessionScreen(std::string name, Caption title, Session& session, Desk& desk)
    : Screen(std::move(name), std::move(title), desk), session_(session) {
  SetChinese(session.ChineseFlag);
  onFailure = [this](const std::exception& failure) { TellFailure(failure); };
  onAct = [this] { kept_before_ = session_.MainConn ? main().kept() : 0; };
  onActed = [this] { RaiseLogTrouble(session_); };
}

bool SessionScreen::MayOpen() {
  const std::optional<Caption> why = WhyClosed(session_, name(), session_.CallerTag);
  if (why) Refuse(*why);
  return !why;
}

void SessionScreen::Tell(MessageKind kind, const Caption& text) {
  kaunter::Tell(session_, *this, kind, text);
}

bool SessionScreen::Refuse(Control& control, const Caption& text) {
  return kaunter::Refuse(session_, control, text);
}

bool SessionScreen::RefuseCode(TextBox& box, const Caption& text) {
  if (box.empty()) box.SetText(box.left_text());
  return Refuse(box, text);
}

bool SessionScreen::Refuse(const Caption& text) {
  Tell(MessageKind::critical, text);
  return false;
}

bool SessionScreen::Confirm(const Caption& text) {
  session_.MsgText = session_.In(text);
  return desk().Ask(Heading(session_, *this), session_.MsgText);
}

bool SessionScreen::ConfirmLoss(const Caption& text) {
  session_.MsgText = session_.In(text);
  return desk().AskBeforeLoss(Heading(session_, *this), session_.MsgText);
}

bool SessionScreen::Attempt(std::string_view what, const Caption& text,
                            const std::function<void()>& write) {
  try {
    Transaction transaction(main());
    write();
    transaction.Commit();
    return true;
  } catch (const std::exception& failure) {
    LogRollback(session_, what, failure);
    Tell(MessageKind::critical, FailedOrRefused(text, failure));
    return false;
  }
}

bool SessionScreen::AttemptOnRecord(std::string_view what, const Caption& text,
                                    const std::function<void()>& write) {
  std::string gone;
  std::string changed;
  const bool written = Attempt(what, text, [&] {
    const Hourglass busy(desk());
    try {
      write();
    } catch (const RowNotFound& failure) {
      gone = failure.key();
      throw;
    } catch (const RowChanged& failure) {
      changed = failure.key();
      throw;
    }
  });
  if (!gone.empty()) {
    Tell(MessageKind::information,
         {fmt::format("{} is not there any more: another desktop has deleted it. What is typed "
                      "here stays until it is cleared.",
                      gone),
          fmt::format("{} 已不存在：另一台电脑已把它删除。您输入的内容保留至清除为止。", gone)});
  }
  if (!changed.empty()) {
    Tell(MessageKind::information,
         {fmt::format("{} was changed on another desktop since it was opened here, and nothing was "
                      "written. What is typed here stays until it is cleared: load it again to see "
                      "it as it is now.",
                      changed),
          fmt::format("{} 打开之后已被另一台电脑更改，因此未写入任何资料。您输入的内容保留至清除为"
                      "止：请重新载入查看现况。",
                      changed)});
  }
  return written;
}

bool SessionScreen::MayDiscard(bool changed) {
  return !changed || desk().AskBeforeLoss(
                         title().In(chinese()),
                         session_.In({"Close without saving the changes ?", "不储存更改就关闭？"}));
}

bool SessionScreen::MayLeaveRecord(bool changed) {
  return !changed ||
         desk().AskBeforeLoss(title().In(chinese()),
                              session_.In({"Leave this record without saving the changes ?",
                                           "不储存更改就离开此资料？"}));
}

void SessionScreen::LeaveKey(TextBox& key, const std::string& shown, bool changed,
                             const std::function<void(std::string id)>& open,
                             const std::function<void()>& start_new) {
  std::string id = Trim(key.text());
  key.SetText(id);
  if (SameText(id, shown)) {
    key.SetMark(false);
  } else if (!id.empty()) {
    open(std::move(id));
  } else if (MayLeaveRecord(changed)) {
    start_new();
  } else {
    key.SetText(shown);
  }
}

void SessionScreen::TellFailure(const std::exception& failure) {
  if (session_.MainConn && main().InTransaction()) {
    try {
      main().RollbackTrans();
    } catch (const std::exception&) {
      // The connection is gone; the first failure is the one to tell.
    }
  }
  LogRollback(session_, name(), failure);
  desk().Hourglass(false);
  const bool kept = session_.MainConn && main().kept() != kept_before_;
  desk().Message(
      MessageKind::critical, session_.MsgTitle.empty() ? session_.ProgramTitle : session_.MsgTitle,
      session_.In(Failed({failure.what()}, failure, kept ? kEarlierKept : kNothingKept)));
}

void FillItems(ComboBox& box, Connection& connection, const std::string& sql) {
  std::vector<std::string> items;
  for (Recordset rows = connection.Query(sql); !rows.Eof(); rows.MoveNext()) {
    items.push_back(NullToEmpty(rows.Field(0)));
  }
  box.SetItems(std::move(items));
}

std::vector<std::string> ShownRow(const Grid& grid, const Recordset& row) {
  const std::size_t count = std::min(grid.columns().size(), row.columns().size());
  std::vector<std::string> cells;
  cells.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const Value& value = row.Field(i);
    switch (grid.columns()[i].kind) {
      case Kind::money:
        cells.push_back(ShowMoney(value));
        break;
      case Kind::date:
        cells.push_back(ShowDate(value));
        break;
      default:
        cells.push_back(NullToEmpty(value));
        break;
    }
  }
  return cells;
}

void FillGrid(Grid& grid, Recordset rows) {
  std::vector<std::vector<std::string>> shown;
  for (; !rows.Eof(); rows.MoveNext()) shown.push_back(ShownRow(grid, rows));
  grid.SetRows(std::move(shown));
}

void FillCompanies(ComboBox& box, Session& session) {
  std::vector<std::string> items;
  for (Recordset rows = session.Main().Query("SELECT CompCode FROM CompMast ORDER BY CompCode");
       !rows.Eof(); rows.MoveNext()) {
    const std::string code = NullToEmpty(rows.Field(0));
    if (MayUseCompany(session, code)) items.push_back(code);
  }
  box.SetItems(std::move(items));
}

}  // namespace kaunter
