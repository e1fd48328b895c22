// Saving and deleting on the customer screen: checks in the order in which the clerk meets them,
// then the write, whole or not at all.
#include <fmt/format.h>

#include "core/audit.h"
#include "core/boxes.h"
#include "core/log.h"
#include "core/password_screens.h"
#include "core/screen_rights.h"
#include "core/sequences.h"
#include "core/telling.h"
#include "core/values.h"
#include "customers/customer_checks.h"
#include "customers/customer_store.h"
#include "customers/new_cust_frm.h"
#include "links/accounting_link.h"
#include "platform/sql/transaction.h"

namespace kaunter {

bool NewCustFrm::MayEdit() {
  if (CustID.empty() || session().AllowEdit || edit_approved_) return true;
  edit_approved_ = ManagerOverride(
      session(), desk(),
      delete_mode_ ? DeleteRequest()
                   : Caption{"save customer " + CustID.text(), "储存顾客 " + CustID.text()});
  if (edit_approved_) return true;
  return Refuse({fmt::format("User {} Level not allow to edit or delete Customer record",
                             session().CurrentUserID),
                 fmt::format("{} 用户不可更改或删除顾客资料", session().CurrentUserID)});
}

void NewCustFrm::Save() {
  if (!MayEdit()) return;
  if (delete_mode_) {
    Delete();
    return;
  }
  if (!AddTypedReferrer() || !CheckBoxes()) return;
  if (!Confirm({"Confirm to save ?", "确定储存？"})) return;
  // A new customer has no number yet; Write sends it once it is stored.
  if (!CustID.empty()) SendToAccounts(CustID.text());
  Write();
}

bool NewCustFrm::AddTypedReferrer() {
  const bool typed = !RefererName.empty() &&
                     (referrer_row_ < 0 || RefLV.Cell(referrer_row_, 0) != RefererName.text());
  if (!typed || !Confirm({"Save Unsave Referrer ?", "储存未储存的介绍人？"})) return true;
  return AddReferrer();
}

bool NewCustFrm::CheckBoxes() {
  for (TextBox* date : {&TrxDate, &DOB, &CustSpouseDOB, &StartWorkDate, &EndWorkDate}) {
    date->SetText(Trim(date->text()));
  }
  const RecordTexts text = [this](std::string_view box) { return Find(box)->Text(); };
  const auto passes = [this](const std::optional<Refusal>& refusal) {
    return !refusal || Refuse(*Find(refusal->field), refusal->text);
  };
  if (!passes(CheckCustomerBoxes(text)) || !passes(CheckCustomerNumbers(text))) return false;
  for (const BlankFigure& blank : kCustomerBlanks) {
    FillBlank(static_cast<TextBox&>(*Find(blank.column)), blank.value);
  }
  return passes(CheckIdealBoxes(session().settings, text));
}

void NewCustFrm::Write() {
  const bool is_new = CustID.empty();
  std::string id = CustID.text();
  // From here on the customer is stored whole or not at all, the number included.
  try {
    Transaction transaction(main());
    if (is_new) {
      const std::string& prefix = session().settings.CompCode2;
      id = NextCustomerNumber(main(), prefix.empty() ? CompCode.text() : prefix);
      CustID.SetText(id);
      main().Execute(record_.InsertStatement());
    } else {
      ExecuteOnRow(main(), record_.UpdateStatement(id), id);
    }
    WriteLists(id);
    transaction.Commit();
  } catch (const std::exception& failure) {
    // A new customer's number went back with the rollback: the box must not go on showing it.
    if (is_new) CustID.Clear();
    LogRollback(session(), is_new ? std::string("New Customer") : id, failure);
    Tell(MessageKind::critical,
         Failed({fmt::format("An error occurs during saving customer\n{}", failure.what()),
                 fmt::format("储存顾客时发生错误\n{}", failure.what())},
                failure));
    return;
  }
  WriteAudit(session(), is_new ? "Create" : "Modify", "Customer", CompCode.text(), id,
             loaded_values_);
  WriteLog(session(), LogLine(session(), fmt::format(" - Customer ID {}", id)));
  if (is_new) SendToAccounts(id);
  KeepCardPhoto(id);
  const bool approved = edit_approved_;
  LoadCustomer(id);
  edit_approved_ = approved;
  ScreenSaved();
  Tell(MessageKind::information,
       {fmt::format("Customer ID {} saved", id), fmt::format("顾客编号 {} 已储存", id)});
}

// A failure is told and leaves the record as it is.
void NewCustFrm::SendToAccounts(const std::string& id) {
  const LinkedParty debtor = {.AccNo = id,
                              .CompanyName = CustName.text(),
                              .Desc2 = CustNickName.text(),
                              .IC = CustNIC.text(),
                              .Address1 = CustAdd1.text(),
                              .Address2 = CustAdd2.text(),
                              .Address3 = CustAdd3.text(),
                              .Address4 = CustCity.text(),
                              .Phone1 = CustTel1.text(),
                              .Phone2 = CustHP1.text(),
                              .Fax1 = CustFax.text(),
                              .EmailAddress = email.text()};
  if (LinkDebtor(session(), desk(), debtor)) return;
  desk().Message(MessageKind::warning, "Alert !!",
                 session().In({fmt::format("Debtor Code {} not linked", id),
                               fmt::format("顾客编号 {} 没有连接到会计系统", id)}));
}

void NewCustFrm::WriteLists(const std::string& id) {
  const std::string quoted = QuoteStr(id);
  main().Execute(fmt::format("Delete from RefererMast where CustID = {}", quoted));
  for (int row = 0; row < RefLV.RowCount(); ++row) {
    const auto& cell = RefLV.Row(row);
    std::string values = quoted;
    for (std::size_t i = 0; i < cell.size(); ++i) {
      values += "," + (RefLV.columns()[i].kind == Kind::money ? StripCommaOrZero(cell[i])
                                                              : QuoteStr(cell[i]));
    }
    main().Execute(
        fmt::format("INSERT INTO RefererMast "
                    "(CustID,RefererName,RefererNIC,RefererOIC,RefererRelationship,RefererComp,"
                    "RefererCompBiz,RefererCompPos,RefererCompIncome,RefererCompAdd1,"
                    "RefererCompAdd2,RefererCompAdd3,"
                    "RefererCompTel1,RefererCompFax1,RefererHP1,Refereremail) VALUES ({})",
                    values));
  }
  main().Execute(fmt::format("Delete from DocumentMast where CustID = {}", quoted));
  for (int row = 0; row < DocDG.RowCount(); ++row) {
    main().Execute(
        fmt::format("INSERT INTO DocumentMast "
                    "(CustID,DocNo,CompCode,DocDesc,DocName,UserID,DateCreated) VALUES "
                    "({},{},{},{},{},{},{})",
                    quoted, QuoteStr(DocDG.Cell(row, 0)), QuoteStr(CompCode.text()),
                    QuoteStr(DocDG.Cell(row, 1)), QuoteStr(DocDG.Cell(row, 2)),
                    QuoteStr(DocDG.Cell(row, 3)), SqlDateTime(DocDG.Cell(row, 4))));
  }
  main().Execute(
      fmt::format("DELETE FROM CheckListTrans WHERE CheckListType = 'CL' AND CustID={}", quoted));
  for (int row = 0; row < CheckListDG.RowCount(); ++row) {
    main().Execute(fmt::format(
        "INSERT INTO CheckListTrans "
        "(CheckListType,CustID,CheckListSeq,CheckListDesc,Detail,Checked,Remarks) "
        "VALUES ('CL',{},{},{},{},{},{})",
        quoted, row + 1, QuoteStr(CheckListDG.Cell(row, 0)), QuoteStr(CheckListDG.Cell(row, 1)),
        QuoteStr(CheckListDG.Cell(row, 2)), QuoteStr(CheckListDG.Cell(row, 3))));
  }
}

// The menu entry that deletes customers opens the button too.
void NewCustFrm::ShowDeleteRight() {
  const bool may = session().AllowDelete || delete_approved_ ||
                   !WhyClosed(session(), "NewCustFrm", "Delete Customer");
  CmdDelete.tip =
      may ? Caption()
          : Caption{
                "Needs the menu right \"Delete Customer\", the right \"Delete records\", or a "
                "manager's sign-in by the button beside it",
                "需要“删除顾客”功能或“删除资料”的权限，或由经理按旁边的按钮批准"};
  CmdDelete.SetEnabled(may);
  CmdAllowDelete.SetVisible(!may && !delete_mode_);
}

Caption NewCustFrm::DeleteRequest() const {
  return {fmt::format("delete customer {} {}", loaded_id_, CustName.text()),
          fmt::format("删除顾客 {} {}", loaded_id_, CustName.text())};
}

void NewCustFrm::AskManagerToDelete() {
  if (loaded_id_.empty()) {
    Refuse(CustID, {"Customer not found", "找不到顾客"});
    return;
  }
  delete_approved_ = ManagerOverride(session(), desk(), DeleteRequest(), CompCode.text());
  ShowDeleteRight();
  if (delete_approved_) FocusOn(CmdDelete);
}

void NewCustFrm::DeleteAfterPassword() {
  if (loaded_id_.empty()) {
    Refuse(CustID, {"Customer not found", "找不到顾客"});
    return;
  }
  if (!ConfirmOwnPassword(session(), desk(), DeleteRequest())) return;
  if (!ConfirmLoss({fmt::format("Confirm to delete customer {} {} ?", loaded_id_, CustName.text()),
                    fmt::format("确定删除顾客 {} {} ？", loaded_id_, CustName.text())})) {
    return;
  }
  Delete();
}

void NewCustFrm::Delete() {
  if (loaded_id_.empty()) {
    Refuse(CustID, {"Customer not found", "找不到顾客"});
    return;
  }
  const std::string id = loaded_id_;
  const std::string company = CompCode.text();
  const CustomerHistory going = HistoryOf(main(), id);
  const std::string balance = ShowMoney(Value(going.balance));
  if (going.loans > 0 &&
      !ConfirmLoss(
          {fmt::format("{} loan(s) with a balance of {} and {} payment(s) go with customer "
                       "{}. Delete ?",
                       going.loans, balance, going.payments, id),
           fmt::format("{3} 的 {0} 笔贷款（结余 {1}）和 {2} 笔付款将一并删除。确定？", going.loans,
                       balance, going.payments, id)})) {
    return;
  }
  DeleteCustomer(main(), id);
  WriteAudit(session(), "Delete", "Customer", company, id, loaded_values_);
  WriteLog(session(),
           LogLine(session(), fmt::format(" - Customer ID {} deleted, {} loans, balance {}", id,
                                          going.loans, balance)));
  StartNew();
  Tell(MessageKind::information,
       {fmt::format("Customer ID {} deleted", id), fmt::format("顾客编号 {} 已删除", id)});
}

}  // namespace kaunter
