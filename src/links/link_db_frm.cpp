#include "links/link_db_frm.h"

#include <fmt/format.h>

#include "core/values.h"
#include "platform/sql/connection.h"

namespace kaunter {

LinkDBfrm::LinkDBfrm(Session& session, Desk& desk)
    : SessionScreen("LinkDBfrm", {"Linked Database", "连接数据库"}, session, desk) {
  SaveCmd.onClick = [this] { Save(); };
}

void LinkDBfrm::Load() {
  const Recordset shape = main().Query("SELECT [Value] FROM Systemast WHERE 1=0");
  for (TextBox* box : {&LinkDB, &LinkDBContact}) {
    box->max_length = shape.columns()[0].width;
    box->SetText(ScalarQuery(main(), fmt::format("SELECT [Value] FROM Systemast WHERE Param={}",
                                                 QuoteStr(box->name()))));
  }
  remembered_ = LinkDB.text() + '\n' + LinkDBContact.text();
}

bool LinkDBfrm::RequestClose() {
  return MayDiscard(LinkDB.text() + '\n' + LinkDBContact.text() != remembered_);
}

void LinkDBfrm::Save() {
  if (!Confirm({"Confirm to save Link Code ?", "确定储存连接码？"})) return;
  const bool saved = Attempt(
      "Link Code", {"an error occur during saving Link Code", "储存连接码时发生错误"}, [this] {
        main().Execute(
            fmt::format("DELETE Systemast WHERE Param in ('LinkDB','LinkDBContact');"
                        "INSERT INTO Systemast ([Value],Param) Values ({},'LinkDB');"
                        "INSERT INTO Systemast ([Value],Param) Values ({},'LinkDBContact')",
                        QuoteStr(LinkDB.text()), QuoteStr(LinkDBContact.text())));
      });
  if (!saved) return;
  remembered_ = LinkDB.text() + '\n' + LinkDBContact.text();
  Tell(MessageKind::information, {"Link DB Code save", "连接码已储存"});
}

}  // namespace kaunter
