#include "core/user_frm.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

#include "core/boxes.h"
#include "core/card_boxes.h"
#include "core/identity.h"
#include "core/log.h"
#include "core/menu_list.h"
#include "core/password.h"
#include "core/picker.h"
#include "core/sign_in.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {
namespace {

constexpr int kAdministrator = 4;

const Caption kInvalidStart{"Invalid Time Start", "开始时间不正确"};
const Caption kInvalidEnd{"Invalid Time End", "结束时间不正确"};

bool IsPasswordText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  });
}

bool FitsTimeMask(std::string_view text) {
  constexpr std::string_view kMask = "##:##";
  if (text.size() != kMask.size()) return false;
  for (std::size_t i = 0; i < kMask.size(); ++i) {
    if (kMask[i] == '#' ? text[i] < '0' || text[i] > '9' : text[i] != kMask[i]) return false;
  }
  return true;
}

}  // namespace

UserFrm::UserFrm(Session& session, Desk& desk, std::vector<MenuEntry> menu)
    : SessionScreen("UserFrm", {"User Management", "用户管理"}, session, desk),
      LS1(*this, "LS1", {"Menu entries", "功能"},
          {{{"Menu", "功能"}, Kind::text, 18},
           {{"Caption", "名称"}, Kind::text, 40},
           {{"No", "号码"}, Kind::integer, 6}},
          &MenuPage),
      menu_(std::move(menu)),
      record_("UserMast", "UserID") {
  record_.Add(UserID)
      .Add(UserName)
      .Add(UserLevel)
      .AddValue("UserDept", [this] { return QuoteStr(PasswordToStore()); })
      .Add(Special, As::number_flag)
      .Add(FollowUpFlag, As::number_flag)
      .Add(CompCode)
      .Add(AccessLoan, As::number_flag)
      .Add(AccessPayment, As::number_flag)
      .Add(gcc2)
      .AddValue("DateCreated", [this] { return SqlDateTime(ServerNow(main(), true)); })
      .InsertOnly()
      .Add(UserDOB, As::birth_date)
      .Add(UserNIC)
      .Add(UserOIC)
      .Add(UserGender)
      .Add(UserRace)
      .Add(UserAdd1)
      .Add(UserAdd2)
      .Add(UserAdd3)
      .Add(UserPostCode)
      .Add(UserCity)
      .Add(UserState)
      .Add(UserHP1)
      .Add(UserHP2)
      .Add(TimeStart)
      .Add(TimeEnd)
      .Add(Pic1)
      .Add(AllowDelete, As::number_flag)
      .Add(AllowEdit, As::number_flag)
      .Add(AllowDisc, As::number_flag)
      .Add(AllowCreditLimit, As::number_flag);
  LS1.SetHasChecks(true);
  UserNIC.mask = kNewIcMask;
  TimeStart.mask = TimeEnd.mask = "##:##";
  UserID.onLeave = [this] { LeaveUserID(); };
  OfferPicker(session, UserID, "UserPop", [this](const std::string& id) {
    if (MayLeaveRecord(Typed())) LoadUser(id);
  });
  UserNIC.onLeave = [this] { LeaveNewIc(); };
  cmdCardReader.onClick = [this] { ReadCard(); };
  UserDOB.onLeave = [this] {
    if (!UserDOB.empty() && !IsDate(UserDOB.text())) Refuse(UserDOB, kInvalidDate);
  };
  TimeStart.onLeave = [this] { LeaveTime(TimeStart, kInvalidStart); };
  TimeEnd.onLeave = [this] { LeaveTime(TimeEnd, kInvalidEnd); };
  SelectAllCmd.onClick = [this] { TickAll(true); };
  SelectNoneCmd.onClick = [this] { TickAll(false); };
  SaveCmd.onClick = [this] { Save(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(Typed())) ClearAll();
  };
  CmdDelete.onClick = [this] { Delete(); };
}

void UserFrm::Load() {
  record_.TakeWidths(main());
  UserDept.max_length = UserDept2.max_length = 50;
  FillItems(CompCode, main(), "SELECT CompCode FROM CompMast ORDER BY CompCode");
  FillItems(UserRace, main(), "SELECT CustRaceID FROM CustRaceMast ORDER BY CustRaceID");
  for (const MenuListEntry& entry : RightsList(session().AppPath, menu_)) {
    LS1.AddRow({entry.name, ShownCaption(entry, menu_, session().ChineseFlag),
                std::to_string(entry.number)});
  }
  record_.Remember();
}

bool UserFrm::Typed() const { return record_.Changed() || UserDept.text() != stored_hash_; }

bool UserFrm::RequestClose() { return MayDiscard(Typed()); }

void UserFrm::LeaveUserID() {
  UserID.SetText(Upper(Trim(UserID.text())));
  if (UserID.text() == "ADMIN") {
    Tell(MessageKind::critical, {fmt::format("No access for User ID {}", UserID.text()),
                                 fmt::format("用户 {} 不可进行", UserID.text())});
    UserID.Clear();
    FocusOn(UserID);
    return;
  }
  if (!UserID.empty()) LoadUser(UserID.text());
}

void UserFrm::LoadUser(const std::string& id) {
  const Recordset row =
      main().Query(fmt::format("SELECT * FROM UserMast WHERE UserID={}", QuoteStr(id)));
  if (row.Eof()) return;
  record_.Clear();
  stored_hash_ = NullToEmpty(row.Field("UserDept"));
  UserDept.SetText(stored_hash_);
  UserDept2.SetText(stored_hash_);
  record_.Load(row);
  TickRightsOf(id);
}

void UserFrm::TickRightsOf(const std::string& id) {
  TickAll(false);
  Recordset rights =
      main().Query(fmt::format("SELECT * FROM UserAccess WHERE UserID={}", QuoteStr(id)));
  for (; !rights.Eof(); rights.MoveNext()) {
    const std::string name = NullToEmpty(rights.Field("MenuList"));
    for (int row = 0; row < LS1.RowCount(); ++row) {
      if (SameText(LS1.Cell(row, 0), name)) LS1.SetTicked(row, true);
    }
  }
}

void UserFrm::TickAll(bool on) {
  for (int row = 0; row < LS1.RowCount(); ++row) LS1.SetTicked(row, on);
}

void UserFrm::ClearAll() {
  record_.Clear();
  stored_hash_.clear();
  UserDept.Clear();
  UserDept2.Clear();
  TickAll(false);
  FocusOn(UserID);
}

void UserFrm::LeaveNewIc() {
  UserNIC.SetText(MaskNewIc(Trim(UserNIC.text())));
  if (UserNIC.empty()) return;
  const auto birth = BirthDateOfIc(UserNIC.text());
  if (birth) {
    UserDOB.SetText(*birth);
  } else {
    Refuse(UserNIC, {"Invalid New IC, Please check", "新身份证不正确，请检查"});
  }
}

void UserFrm::ReadCard() {
  ReadCardInto(session(), {.name = UserName,
                           .new_ic = UserNIC,
                           .birth = &UserDOB,
                           .others = {{CardField::old_ic, &UserOIC},
                                      {CardField::gender, &UserGender},
                                      {CardField::add1, &UserAdd1},
                                      {CardField::add2, &UserAdd2},
                                      {CardField::add3, &UserAdd3},
                                      {CardField::postcode, &UserPostCode},
                                      {CardField::city, &UserCity},
                                      {CardField::state, &UserState}},
                           .race = &UserRace});
}

void UserFrm::LeaveTime(TextBox& box, const Caption& invalid) {
  box.SetText(Trim(box.text()));
  CheckTime(box, invalid);
}

// Hours and minutes of 00 are refused, both, on purpose.
bool UserFrm::CheckTime(TextBox& box, const Caption& invalid) {
  if (box.empty() || box.text() == ":" || box.text() == "__:__") {
    box.Clear();
    return true;
  }
  if (!FitsTimeMask(box.text())) return Refuse(box, invalid);
  const int hours = CLng(std::string_view(box.text()).substr(0, 2));
  const int minutes = CLng(std::string_view(box.text()).substr(3));
  if (hours < 1 || hours > 23) {
    return Refuse(box,
                  {"Invalid Hours, should be within 01 to 23", "小时不正确，应在 01 至 23 之间"});
  }
  if (minutes < 1 || minutes > 59) {
    return Refuse(box,
                  {"Invalid Minutes, should be within 01 to 59", "分钟不正确，应在 01 至 59 之间"});
  }
  box.SetMark(false);
  return true;
}

bool UserFrm::CheckBeforeSave() {
  const bool new_password = UserDept.text() != stored_hash_;
  if (new_password && !IsPasswordText(UserDept.text())) {
    return Refuse(UserDept, {"Invalid password, use only 0-9, a-z and A-Z",
                             "密码不正确，只可用 0-9、a-z 和 A-Z"});
  }
  if (UserID.empty()) return Refuse(UserID, {"User ID required", "请输入用户编号"});
  if (UserLevel.empty()) return Refuse(UserLevel, {"Level required", "请选择级别"});
  if (UserDept.text() != UserDept2.text())
    return Refuse(UserDept2, {"Password mismatch", "密码不符"});
  if (UserDept.empty()) return Refuse(UserDept, {"Password required", "请输入密码"});
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is require", "请选择公司"});
  gcc2.SetText(AllowedList());
  return true;
}

UserRights UserFrm::TypedRights() const {
  UserRights rights;
  rights.level = UserLevel.text();
  rights.companies = CompaniesOf(CompCode.text(), gcc2.text());
  for (const Control* control : Children(&Rights)) {
    if (control->Text() == "1") rights.flags.insert(control->name());
  }
  rights.hash = PasswordToStore();
  rights.hours = TimeStart.text() + "-" + TimeEnd.text();
  for (int row = 0; row < LS1.RowCount(); ++row) {
    if (LS1.Ticked(row)) rights.menu.insert(Upper(LS1.Cell(row, 0)));
  }
  return rights;
}

std::string UserFrm::PasswordToStore() const {
  return UserDept.text() == stored_hash_ ? stored_hash_ : PasswordHash(UserDept.text());
}

// Whoever may open this screen could become an administrator otherwise: by a level, by a right that
// one lacks, or by the password of somebody who has it.
bool UserFrm::CheckLevels(const UserRights& stored) {
  const int level = ActingLevel(session(), StoredRights(main(), session().CurrentUserID));
  if (LevelNumber(stored.level) <= level) return true;
  return Refuse(UserID, {"You cannot change or delete a user whose level is above your own",
                         "不可更改或删除级别高于自己的用户"});
}

bool UserFrm::CheckGiven(const UserRights& stored, const UserRights& typed) {
  const UserRights own = StoredRights(main(), session().CurrentUserID);
  const int level = ActingLevel(session(), own);
  if (LevelNumber(typed.level) > level) {
    return Refuse(UserLevel, {"You cannot give a level above your own", "不可给予高于自己的级别"});
  }
  if (level >= kAdministrator) return true;
  if (const auto beyond = FirstBeyond(own, stored, typed)) {
    return RefuseBeyond(*beyond, {"You cannot give {}, since you do not have it yourself",
                                  "不可给予{}，因为您自己没有"});
  }
  const bool self = SameText(UserID.text(), session().CurrentUserID);
  if (self && typed.hours != stored.hours) {
    return Refuse(TimeStart, {"You cannot change your own hours", "不可更改自己的进入时间"});
  }
  if (self || typed.hash == stored.hash) return true;
  if (const auto beyond = FirstBeyond(own, {}, typed)) {
    return RefuseBeyond(*beyond,
                        {"You cannot set the password of a user who has {}, since you do not have "
                         "it yourself",
                         "不可更改有{}的用户的密码，因为您自己没有"});
  }
  return true;
}

bool UserFrm::RefuseBeyond(const RightBeyond& beyond, const Caption& text) {
  Control* control = &CompCode;
  Caption what{"company " + beyond.name, "公司 " + beyond.name};
  if (beyond.kind == RightBeyond::Kind::flag) {
    control = Find(beyond.name);
    what = control->caption();
  } else if (beyond.kind == RightBeyond::Kind::menu) {
    control = &LS1;
    for (int row = 0; row < LS1.RowCount(); ++row) {
      if (SameText(LS1.Cell(row, 0), beyond.name)) what = Caption(LS1.Cell(row, 1));
    }
  }
  return Refuse(*control, {fmt::format(fmt::runtime(text.english), '"' + what.english + '"'),
                           fmt::format(fmt::runtime(text.chinese), "“" + what.In(true) + "”")});
}

std::string UserFrm::AllowedList() const {
  std::string list;
  std::istringstream lines(gcc2.empty() ? CompCode.text() : gcc2.text());
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    line = Trim(line);
    if (line.empty()) continue;
    const std::string known = ScalarQuery(
        main(), fmt::format("SELECT CompCode FROM CompMast WHERE CompCode={}", QuoteStr(line)));
    if (!known.empty()) list += (list.empty() ? "" : "\r\n") + Upper(line);
  }
  return list.empty() ? CompCode.text() : list;
}

void UserFrm::Save() {
  if (!CheckBeforeSave() || !CheckTime(TimeStart, kInvalidStart) ||
      !CheckTime(TimeEnd, kInvalidEnd))
    return;
  const UserRights stored = StoredRights(main(), UserID.text());
  const UserRights typed = TypedRights();
  if (!CheckLevels(stored) || !CheckGiven(stored, typed)) return;
  if (!Confirm({"Confirm to save ?", "确定储存？"})) return;
  Write(stored, typed);
}

void UserFrm::Write(const UserRights& stored, const UserRights& typed) {
  const std::string id = UserID.text();
  const std::string quoted = QuoteStr(id);
  const bool exists =
      !ScalarQuery(main(), fmt::format("SELECT UserID FROM UserMast WHERE UserID={}", quoted))
           .empty();
  const std::string statement = exists ? record_.UpdateStatement(id) : record_.InsertStatement();
  // From here on the user and the rights are stored whole or not at all.
  Transaction transaction(main());
  ExecuteOnRow(main(), statement, id);
  main().Execute(fmt::format("Delete from UserAccess where UserID = {}", quoted));
  for (int row = 0; row < LS1.RowCount(); ++row) {
    if (!LS1.Ticked(row)) continue;
    main().Execute(fmt::format("INSERT INTO UserAccess (UserID,MenuList,MenuNo) VALUES ({},{},{})",
                               quoted, QuoteStr(LS1.Cell(row, 0)), LS1.Cell(row, 2)));
  }
  transaction.Commit();
  WriteLog(session(), LogLine(session(), fmt::format(" - User ID {} saved", id)));
  LogChange(stored, typed);
  LoadUser(id);
  if (exists) {
    Tell(MessageKind::information, {"User ID updated", "用户已更新"});
  } else {
    Tell(MessageKind::information, {"User ID Saved", "用户已储存"});
  }
}

void UserFrm::LogChange(const UserRights& from, const UserRights& to) {
  const std::string change = TellChange(from, to);
  if (change.empty()) return;
  WriteLog(session(),
           LogLine(session(), fmt::format(" - {} changed user {}: {}", session().CurrentUserID,
                                          UserID.text(), change)));
}

void UserFrm::Delete() {
  if (UserID.empty()) {
    Refuse(UserID, {"User ID required", "请输入用户编号"});
    return;
  }
  const std::string id = UserID.text();
  if (!CheckLevels(StoredRights(main(), id))) return;
  if (!ConfirmLoss({fmt::format("Confirm to delete {} ?", id), fmt::format("确定刪除 {} ？", id)}))
    return;
  const std::string quoted = QuoteStr(id);
  Transaction transaction(main());
  ExecuteOnRow(main(), fmt::format("Delete from UserMast where UserID={}", quoted), id);
  main().Execute(fmt::format("Delete from UserAccess where UserID = {}", quoted));
  transaction.Commit();
  WriteLog(session(),
           LogLine(session(), fmt::format(" - {} deleted user {}", session().CurrentUserID, id)));
  ClearAll();
  Tell(MessageKind::information,
       {fmt::format("User ID {} deleted", id), fmt::format("用户 {} 已删除", id)});
}

}  // namespace kaunter
