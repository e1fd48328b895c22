#include "desktop/layouts/layouts.h"

namespace kaunter {

// Whom it is for, what it says and how the first one reads it above; the messages below.
Layout SMSfrmLayout() {
  return {"SMSfrm",
          {1260, 720},
          Down({Across({Group({"For Whom", "发送对象"}, 1,
                              {"SMSCat", "CompCode", "DateFrom", "DateTo", "LoanStatus",
                               "LoanType2", Line({"Option1", "Option2"}), "CustStatus", "CustRace",
                               "MMonth", "UserLevel", Line({"TextFileName", "Command4"})}),
                        Group({"Text", "内容"}, 1,
                              {Line({"TID", "SearchCmd1"}), "SMSContent", "SMSField", "CountLBL",
                               "UnknownLBL"}),
                        Group({"As the First One Reads It", "第一位收到的内容"}, 1, {"Preview"})},
                       {5, 6, 5}),
                Title("ResultLBL"), Fill("vsd")},
               {0, 0, 1}),
          {"CmdCheckAll", "CmdUncheckAll", "CmdPreview", "CmdClear", "SSCommand1", "SendCmd",
           "CancelCmd"}};
}

Layout LinkResendfrmLayout() {
  return {"LinkResendfrm",
          {1180, 660},
          Down({Fields(3, {"DateFrom", "DateTo", "CompCode"}), Title("ResultLBL"), Fill("DG")},
               {0, 0, 1}),
          {"CmdCheckAll", "CmdUncheckAll", "PrintCmd", "SendCmd", "ListCmd", "CancelCmd"}};
}

Layout SMSTemplatefrmLayout() {
  return {"SMSTemplatefrm",
          {760, 460},
          Group({"Template", "范本"}, 1,
                {"TID", "TName", "SMSContent", "SMSField", "CountLBL", "UnknownLBL"}),
          {"SearchCmd", "CmdDelete", "CmdClear", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
