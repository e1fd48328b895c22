#include "core/setup_frm.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/record.h"
#include "core/values.h"

namespace kaunter {

SetupFrm::SetupFrm(Session& session, Desk& desk)
    : SessionScreen("SetupFrm", {"Setup", "设定"}, session, desk),
      DG(*this, "DG", {"Codes", "编号"},
         {{{"Code", "编号"}, Kind::text, 30}, {{"Description", "说明"}, Kind::text, 50}}) {
  DG.onOpen = [this](int row, int) { Edit(row); };
  SaveCmd.onClick = [this] {
    SetupModifyFrm dialog(this->session(), this->desk(), *table_, SetupModifyFrm::Mode::add, {});
    this->desk().ShowModal(dialog);
    List();
  };
  Command1.onClick = [this] { Edit(DG.current_row()); };
}

void SetupFrm::Load() {
  table_ = FindCodeTable(session().MsgTitle);
  if (table_ == nullptr) {
    throw std::runtime_error(fmt::format("There is no code table \"{}\".", session().MsgTitle));
  }
  SetTitle(table_->caption);
  if (!table_->more.empty()) {
    DG.SetColumns({{{"Name", "姓名"}, Kind::text, 40},
                   {{"IC", "身份证"}, Kind::text, 20},
                   {{"Power of Attorney No", "授权书号码"}, Kind::text, 20}});
  }
  List();
}

void SetupFrm::List() {
  std::string columns = table_->code + "," + table_->description;
  for (const std::string& column : table_->more) columns += "," + column;
  FillGrid(DG, main().Query(fmt::format("SELECT {} FROM {} ORDER BY {}", columns, table_->table,
                                        table_->code)));
}

void SetupFrm::Edit(int row) {
  if (row < 0 || row >= DG.RowCount()) {
    Tell(MessageKind::critical, {"No amendment empty data", "不可更改空的资料"});
    return;
  }
  SetupModifyFrm dialog(session(), desk(), *table_, SetupModifyFrm::Mode::edit, DG.Cell(row, 0));
  desk().ShowModal(dialog);
  List();
}

SetupModifyFrm::SetupModifyFrm(Session& session, Desk& desk, const CodeTable& table, Mode mode,
                               std::string code)
    : SessionScreen("SetupModifyFrm", table.caption, session, desk),
      table_(table),
      mode_(mode),
      code_(std::move(code)) {
  SetupModifyMore.SetVisible(!table.more.empty());
  if (!table.more.empty()) {
    SetupModifyCode.SetCaption({"Name", "姓名"});
    SetupModifyDesc.SetCaption({"IC", "身份证"});
  }
  SetupModifyCode.onLeave = [this] {
    SetupModifyCode.SetText(Upper(Trim(SetupModifyCode.text())));
    // A person of whom there is a paper already is told at the save alone.
    if (mode_ == Mode::add && !SetupModifyCode.empty() && table_.more.empty()) CheckNewCode();
  };
  SaveCmd.onClick = [this] { Save(); };
  Command2.onClick = [this] { Delete(); };
}

void SetupModifyFrm::Load() {
  const Recordset row = main().Query(
      fmt::format("SELECT * FROM {} WHERE {}={}", table_.table, table_.code, QuoteStr(code_)));
  for (const Column& column : row.columns()) {
    if (SameText(column.name, table_.code)) SetupModifyCode.max_length = column.width;
    if (SameText(column.name, table_.description)) SetupModifyDesc.max_length = column.width;
    if (!table_.more.empty() && SameText(column.name, table_.more[0]))
      SetupModifyMore.max_length = column.width;
  }
  Command2.SetEnabled(mode_ == Mode::edit && MayDeleteCode(main(), table_, code_));
  if (mode_ == Mode::add) return;
  SetupModifyCode.SetText(code_);
  SetupModifyCode.SetLocked(true);
  if (!row.Eof()) {
    SetupModifyDesc.SetText(NullToEmpty(row.Field(table_.description)));
    if (!table_.more.empty()) SetupModifyMore.SetText(NullToEmpty(row.Field(table_.more[0])));
  }
  loaded_ = SetupModifyDesc.text() + SetupModifyMore.text();
  FocusOn(SetupModifyDesc);
}

bool SetupModifyFrm::Typed() const {
  return SetupModifyDesc.text() + SetupModifyMore.text() != loaded_ ||
         (mode_ == Mode::add && !SetupModifyCode.empty());
}

bool SetupModifyFrm::RequestClose() { return MayDiscard(Typed()); }

bool SetupModifyFrm::CheckNewCode() {
  const std::string code = SetupModifyCode.text();
  const Recordset same = main().Query(
      fmt::format("SELECT {1} FROM {0} WHERE {1}={2}", table_.table, table_.code, QuoteStr(code)));
  if (!same.Eof()) {
    return Refuse(SetupModifyCode,
                  {fmt::format("{} existed", code), fmt::format("{} 已存在", code)});
  }
  if (table_.table == "LoanTypeMast" && !IsNewLoanTypeCode(code)) {
    return Refuse(SetupModifyCode, {"Invalid code, should be in (NN)DAYS format, (NN) is numeric",
                                    "贷款类型不正确，应该是 (NN)DAYS 方式，(NN) 是数目"});
  }
  SetupModifyCode.SetMark(false);
  return true;
}

void SetupModifyFrm::Save() {
  SetupModifyCode.SetText(Upper(Trim(SetupModifyCode.text())));
  if (SetupModifyCode.empty()) {
    Refuse(SetupModifyCode, {"Code is required", "请输入编号"});
    return;
  }
  if (mode_ == Mode::add) {
    if (CheckNewCode()) Insert();
    return;
  }
  std::string assignments =
      fmt::format("{}={}", table_.description, QuoteStr(SetupModifyDesc.text()));
  for (const std::string& column : table_.more) {
    assignments += fmt::format(",{}={}", column, QuoteStr(SetupModifyMore.text()));
  }
  ExecuteOnRow(main(),
               fmt::format("UPDATE {} SET {} WHERE {}={}", table_.table, assignments, table_.code,
                           QuoteStr(code_)),
               code_);
  Close();
}

void SetupModifyFrm::Insert() {
  std::string columns = table_.code + "," + table_.description;
  std::string values = QuoteStr(SetupModifyCode.text()) + "," + QuoteStr(SetupModifyDesc.text());
  for (const std::string& column : table_.more) {
    columns += "," + column;
    values += "," + QuoteStr(SetupModifyMore.text());
  }
  for (const std::string& column : table_.zeroes) {
    columns += "," + column;
    values += ",0";
  }
  main().Execute(fmt::format("INSERT INTO {} ({}) VALUES ({})", table_.table, columns, values));
  // Ready for the next code.
  for (TextBox* box : {&SetupModifyCode, &SetupModifyDesc, &SetupModifyMore}) box->Clear();
  FocusOn(SetupModifyCode);
}

void SetupModifyFrm::Delete() {
  if (!ConfirmLoss(
          {fmt::format("Confirm to delete {} ?", code_), fmt::format("确定刪除 {} ？", code_)}))
    return;
  ExecuteOnRow(
      main(), fmt::format("DELETE FROM {} WHERE {}={}", table_.table, table_.code, QuoteStr(code_)),
      code_);
  Close();
}

}  // namespace kaunter
