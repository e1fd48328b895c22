#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who signs in and how, beside what he may.
Layout UserFrmLayout() {
  const LayoutNode user = Across(
      {Group({"Sign In", "进入"}, 1,
             {"UserID", "UserName", "UserLevel", "UserDept", "UserDept2", "CompCode", "gcc2",
              Line({"TimeStart", "TimeEnd"})}),
       Inside("Rights", Fields(1, {"AccessLoan", "AccessPayment", "AllowEdit", "AllowDelete",
                                   "AllowDisc", "AllowCreditLimit", "FollowUpFlag", "Special"}))},
      {3, 2});
  const LayoutNode person =
      Across({Down({Group({"Person", "个人"}, 1,
                          {"UserNIC", "UserOIC", "UserDOB", "UserGender", "UserRace", "Pic1"}),
                    ButtonsHere({"cmdCardReader"})}),
              Group({"Contact", "联络"}, 1,
                    {Stacked({"UserAdd1", "UserAdd2", "UserAdd3"}),
                     Line({"UserPostCode", "UserCity"}), "UserState", "UserHP1", "UserHP2"})});
  return {
      "UserFrm",
      {940, 600},
      Tabs("Pages",
           {Page("UserPage", user), Page("PersonPage", person),
            Page("MenuPage", Down({Fill("LS1"), ButtonsHere({"SelectAllCmd", "SelectNoneCmd"})}))}),
      {"CmdClear", "CmdDelete", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
