#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who it is for the tax authority, and where.
Layout ECustMastLayout() {
  return {"ECustMast",
          {980, 540},
          Down({Title("Who"), Across({Group({"Tax Identity", "税务资料"}, 1,
                                            {"CustType", "CustTypeID", "TIN", "CustName",
                                             "MISCCode", "MiscName", "Phone", "Email"}),
                                      Group({"Address", "地址"}, 1,
                                            {"Address", "PostCode", "City", "State", "StateName",
                                             "Country", "CountryName"})})}),
          {"Command1", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
