#include "desktop/layouts/layouts.h"

namespace kaunter {

Layout CompCodeFrmLayout() {
  const LayoutNode company =
      Across({Group({"Company", "公司"}, 1,
                    {"CompCode", "CompDesc", "AreaCode", "CompanyType", "CompNo", "LicenseNo",
                     "Address", "LogoFile", "Letterhead", "SerialReceiptNo"}),
              Group({"Contact", "联络"}, 1,
                    {"PersonIncharge", "ICNo", "Tel1", "Tel2", "Fax", "HP1", "HP2", "email",
                     "SMSName", "CashInHand", "CashInBank"})});
  const LayoutNode aml =
      Across({Group({"Screening", "审查"}, 1, {"AMLA", "AMLACheckIC", "AMLAWarning", "DisableSTR"}),
              Group({"Thresholds", "限额"}, 1, {"AMLALoan", "AMLAPayment", "AMLAOfficer"})});
  const LayoutNode tax = Down(
      {Fields(1, {"SQLPath", "ClientID", "ClientSecret", "MyTaxClientID", "MyTaxClientSecret"}),
       ButtonsHere({"ECust"})});
  return {"CompCodeFrm",
          {980, 600},
          Tabs("Pages", {Page("CompanyPage", company), Page("AmlPage", aml), Page("TaxPage", tax)}),
          {"CmdClear", "CmdDelete", "SaveCmd", "CancelCmd"}};
}

// Who the licensee is, beside where he is.
Layout CompProfileFrmLayout() {
  return {"CompProfileFrm",
          {},
          Across({Group({"Licensee", "持牌人"}, 1,
                        {"CompanyName", "RegNo", "LicenseNo", "Tel", "Fax", "email"}),
                  Group({"Address", "地址"}, 1,
                        {Stacked({"Address1", "Address2", "Address3"}), Line({"PostCode", "City"}),
                         "State", "LogoFile"})}),
          {"SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
