#include "links/sms_templatefrm.h"

#include <fmt/format.h>

#include <utility>

#include "core/boxes.h"
#include "core/log.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/sequences.h"
#include "core/values.h"
#include "links/sms_text.h"

namespace kaunter {
namespace {

const Caption kSaveFailed{"an error occur during saving SMS Template", "储存短讯范本时发生错误"};

}  // namespace

SMSTemplatefrm::SMSTemplatefrm(Session& session, Desk& desk)
    : SessionScreen("SMSTemplatefrm", {"SMS Template", "短讯范本"}, session, desk),
      record_("SMSMast", "TID") {
  record_.AddValue("TID", [this] { return QuoteStr(TID.text()); }).InsertOnly();
  record_.AddValue("TrxDate", [this] { return SqlDate(ServerNow(main(), false)); }).InsertOnly();
  record_.Add(TName).Add(SMSContent);
  record_.AddValue("UserID", [this] { return QuoteStr(this->session().CurrentUserID); })
      .InsertOnly();
  record_.AddValue("DateCreated", [this] { return SqlDateTime(ServerNow(main(), true)); })
      .InsertOnly();
  OfferPicker(session, TID, "SMSMastPop", [this](const std::string& id) { LoadTemplate(id); });
  TID.onLeave = [this] {
    LeaveKey(
        TID, loaded_id_, record_.Changed(), [this](std::string id) { LoadTemplate(std::move(id)); },
        [this] { StartNew(); });
  };
  SMSContent.onChange = [this] { ShowSize(); };
  SMSField.onPick = [this] {
    SMSContent.Insert(SMSField.text());
    SMSField.Clear();
  };
  SearchCmd.onClick = [this] { TID.onSearch(); };
  CmdDelete.onClick = [this] { Delete(); };
  CmdClear.onClick = [this] {
    if (MayLeaveRecord(record_.Changed())) StartNew();
  };
  SaveCmd.onClick = [this] { Save(); };
}

void SMSTemplatefrm::Load() {
  record_.TakeWidths(main());
  TID.max_length = kKeyLength;
  FillItems(SMSField, main(), "SELECT FieldID FROM SMSField");
  StartNew();
}

bool SMSTemplatefrm::RequestClose() { return MayDiscard(record_.Changed()); }

// --- showing a template

void SMSTemplatefrm::StartNew() {
  record_.Clear();
  TID.Clear();
  TID.SetMark(false);
  loaded_id_.clear();
  CmdDelete.SetEnabled(false);
  ShowSize();
  record_.Remember();
}

Recordset SMSTemplatefrm::Stored(const std::string& id) const {
  return main().Query("SELECT TID,TName,SMSContent FROM SMSMast WHERE TID=" + QuoteStr(id));
}

void SMSTemplatefrm::LoadTemplate(std::string id) {
  Recordset row;
  if (!ReadOrTell(session(), *this, "SMS Template " + id,
                  {"an error occur during reading SMS Template", "阅读短讯范本时出现错误"},
                  [&] { row = Stored(id); })) {
    return;
  }
  if (row.Eof()) {
    RefuseCode(TID, SmsTemplateNotFound(id));
    return;
  }
  if (!MayLeaveRecord(record_.Changed())) {
    TID.SetText(loaded_id_);
    return;
  }
  StartNew();
  record_.Load(row);
  as_read_.Take(row);
  loaded_id_ = NullToEmpty(row.Field("TID"));
  TID.SetText(loaded_id_);
  CmdDelete.SetEnabled(true);
  ShowSize();
  record_.Remember();
}

void SMSTemplatefrm::ShowSize() {
  const std::string& text = SMSContent.text();
  CountLBL.SetText(session().In(ShowSmsSize(MeasureSms(text))));
  UnknownLBL.SetText(session().In(ShowUnknown(text)));
}

// --- the save

bool SMSTemplatefrm::Check() {
  // A number typed and never found belongs to no template; numbers are drawn, not chosen.
  if (!SameText(TID.text(), loaded_id_)) return Refuse(TID, SmsTemplateNotFound(TID.text()));
  if (Trim(TName.text()).empty()) {
    return Refuse(TName, {"SMS Template Name is required", "请输入短讯范本名称"});
  }
  if (Trim(SMSContent.text()).empty()) {
    return Refuse(SMSContent, {"SMS Contents is required", "请输入短讯内容"});
  }
  return true;
}

void SMSTemplatefrm::Save() {
  if (!Check() || !Confirm({"Confirm to save SMS Tempalte ?", "确定储存短讯范本？"})) return;
  if (!Write(kSaveFailed, [this] { Store(); })) {
    TID.SetText(loaded_id_);  // a new number went back with the rollback
    return;
  }
  const std::string name = TName.text();
  const std::string id = TID.text();
  record_.Remember();
  LoadTemplate(id);
  WriteLog(session(), LogLine(session(), fmt::format("SMS Template {} saved", id)));
  Tell(MessageKind::information,
       {fmt::format("Template {}, saved", name), fmt::format("范本 {} 已储存", name)});
}

void SMSTemplatefrm::Store() {
  if (loaded_id_.empty()) {
    TID.SetText(NextSeries(main(), "S-", "", false,
                           [this](const std::string& number) { return !Stored(number).Eof(); }));
    main().Execute(record_.InsertStatement());
    return;
  }
  as_read_.Expect(Stored(loaded_id_), loaded_id_);
  ExecuteOnRow(main(), record_.UpdateStatement(loaded_id_), loaded_id_);
}

bool SMSTemplatefrm::Write(const Caption& failed, const std::function<void()>& write) {
  return AttemptOnRecord("SMS Template " + loaded_id_, failed, write);
}

// --- the delete

void SMSTemplatefrm::Delete() {
  if (loaded_id_.empty()) return;
  const std::string id = loaded_id_;
  if (!ConfirmLoss({fmt::format("Confirm to delete SMS template {} ?", id),
                    fmt::format("确定删除短讯范本 {} ？", id)})) {
    return;
  }
  const bool deleted =
      Write({"an error occur during deleting SMS Template", "删除短讯范本时发生错误"}, [&] {
        as_read_.Expect(Stored(id), id);
        ExecuteOnRow(main(), "DELETE FROM SMSMast WHERE TID=" + QuoteStr(id), id);
      });
  if (!deleted) return;
  WriteLog(session(), LogLine(session(), fmt::format("SMS Template {} deleted", id)));
  Tell(MessageKind::information,
       {fmt::format("SMS {} Template deleted", id), fmt::format("短讯范本 {} 已删除", id)});
  StartNew();
}

}  // namespace kaunter
