#include "desktop/layouts/layouts.h"

namespace kaunter {

// The loan and the call that is being written above, what was said before and who is to be called
// below.
Layout FollowupFrmLayout() {
  return {"FollowupFrm",
          {1280, 700},
          Down({Across({Group({"Loan", "贷款"}, 2,
                              {"HisLoanID", "CompCode", "HisCustID", "CustName", "Contact1",
                               "Contact2", "Contact3", "Contact4"}),
                        Group({"Call", "联络"}, 2,
                              {"HisStatus", "NextCall", Wide("HisRemarks"),
                               Wide(Line({"HisDate", "HisTime", "HisUserID"}))})},
                       {7, 6}),
                Across({Fill("FollowUpDG"),
                        Down({Fill("NextCallDG"), Across({Fields(1, {Line({"iLimit", "Label8"})}),
                                                          ButtonsHere({"Command6", "Command5"})},
                                                         {1, 0})})},
                       {7, 6})},
               {4, 7}),
          {"SearchCmd", "Command3", "Command4", "Command2", "SaveCmd", "CancelCmd"}};
}

// What is asked for above, what is open below.
Layout DueDateFrmLayout() {
  return {"DueDateFrm",
          {1180, 680},
          Down({Fields(3, {"DateFrom", "DateTo", "CustID", "LoanID", "OwingCheck", "CompaniesCheck",
                           Wide("LblCustName")}),
                Fill("DG"), Fields(1, {"StatusLBL"})}),
          {"CmdClear", "SearchCmd", "CancelCmd"}};
}

Layout ReminderfrmLayout() {
  return {
      "Reminderfrm",
      {900, 660},
      Down({Fields(1, {Line({"CalSearchTo", "SearchCmd"})}), Fill("vsd"), Fields(1, {"CountLBL"})}),
      {"SelectAllCmd", "SelectNoneCmd", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
