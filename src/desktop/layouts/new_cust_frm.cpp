#include "desktop/layouts/layouts.h"

namespace kaunter {

// Who it is stands above all pages. The first page tells what a counter asks first, the second what
// he owes; then work, family and papers.
Layout NewCustFrmLayout() {
  const LayoutNode customer = Across(
      {Down({Group({"Identity", "身份"}, 1,
                   {"CustID", "CompCode", "TrxDate", "AreaCode", "CustStatus", "CustName",
                    "CustNickName", "CustNIC", "CustOIC", "CustOthIC"}),
             ButtonsHere({"cmdCardReader", "CmdSTR"})}),
       Group({"Person", "个人"}, 1,
             {"DOB", "CustGender", "CustRace", "MaritalStatus", Line({"WargaNegara", "CustChild"}),
              "MotherName", "PreLanguage", "Academic", "CompNo", "OldCode", "CompCatCode"}),
       Group({"Contact", "联络"}, 1,
             {"CustHP1", "CustHP2", "CustTel1", "CustTel2", "CustFax", "email",
              Stacked({"CustAdd1", "CustAdd2", "CustAdd3"}), Line({"CustPostCode", "CustCity"}),
              "CustState"})});
  const LayoutNode loans =
      Down({Fields(1, {"OpenLoansChk"}), Fill("LoanDG"),
            Figures({"SumLoanBal", "SumLoanAmt", "SumPayOutAmt", "SumTopUpAmt", "SumProfit"})});
  const LayoutNode work = Across(
      {Group({"Work", "工作"}, 1,
             {"JobType", "Employer", "CustComp", "CustCompBiz", "CustCompPos", "CustCompIncome",
              "StartWorkDate", "EndWorkDate", "SalaryDate"}),
       Group({"Employer's Address", "雇主地址"}, 1,
             {Stacked({"CustCompAdd1", "CustCompAdd2", "CustCompAdd3"}), "CustCompPostCode",
              "CustCompTel1", "CustCompTel2", "CustCompFax"}),
       Group({"Second Work", "第二工作"}, 1, {"CustCompName2", "CustCompPos2", "CustCompWork2"})});
  const LayoutNode home = Down(
      {Fields(2, {"HouseStatus", "HouseLiving", "CustVehicleNo", "CustVehicleModel", "Remark"})});
  const LayoutNode spouse = Across(
      {Down({Group({"Spouse", "配偶"}, 1,
                   {"CustSpouseName", "CustSpouseNIC", "CustSpouseOIC", "CustSpouseDOB",
                    "CustSpouseGender", "CustSpouseRace", "CustSpouseHP1", "CustSpouseemail"}),
             ButtonsHere({"cmdSpouseCardReader"})}),
       Group({"Work", "工作"}, 1,
             {"CustSpouseComp", "CustSpouseCompBiz", "CustSpouseCompPos", "CustSpouseCompIncome",
              "CustSpouseCompTel1", "CustSpouseCompFax1"}),
       Group({"Work Address", "工作地址"}, 1,
             {Stacked({"CustSpouseCompAdd1", "CustSpouseCompAdd2", "CustSpouseCompAdd3"}),
              Line({"CustSpouseCompPostCode", "CustSpouseCompCity"}), "CustSpouseCompState"})});
  const LayoutNode bank = Down(
      {Across({Group({"Bank", "银行"}, 1,
                     {"BankCagaran", "BankAccNo", "BankTransferName", "ATMCardNo", "ATMPinNo"}),
               Group({"Credit", "信用额"}, 1, {"CreditLimit", "CreditLimitType"}),
               Group({"Loan Application", "贷款申请"}, 1,
                     {"AppID", "AppType", "Relationship", "CmdLinkApp"})}),
       Fill("AppDG")});
  const LayoutNode referrers =
      Down({Across({Fields(1, {"RefererName", "RefererRelationship", "RefererNIC", "RefererOIC",
                               "RefererHP1"}),
                    Fields(1, {"Refereremail", "RefererComp", "RefererCompBiz", "RefererCompPos",
                               "RefererCompIncome"}),
                    Fields(1, {Stacked({"RefererCompAdd1", "RefererCompAdd2", "RefererCompAdd3"}),
                               "RefererCompTel1", "RefererCompFax1"})}),
            ButtonsHere({"AddEditCmd", "RemoveRefCmd", "cmdRefererCardReader"}), Fill("RefLV")});
  const LayoutNode papers = Down(
      {Across({Fields(1, {"DocDesc"}), ButtonsHere({"AddDocCmd", "RemoveDocCmd", "OpenDocCmd"})}),
       Across({Fill("DocDG"), Fill("DocPreview")}, {3, 1}), Fields(1, {Wide("DocStrip")}),
       Across({Fields(1, {"SendBar"}), ButtonsHere({"StopSendCmd", "SendAgainCmd"})}, {5, 1})});
  return {
      "NewCustFrm",
      {1342, 720},
      Down({Across({Inside("Glance", Across({Thumbnail("Photo"), Title("GlanceLBL"),
                                             Fields(1, {"CreditBar"})},
                                            {0, 3, 2})),
                    Fields(1, {"SearchText"})},
                   {5, 2}),
            Tabs("Pages",
                 {Page("CustomerPage", customer), Page("LoanPage", loans), Page("WorkPage", work),
                  Page("ContactPage", home), Page("SpousePage", spouse), Page("BankPage", bank),
                  Page("RefererPage", referrers), Page("DocumentPage", papers),
                  Page("PhotoPage",
                       Down({Fields(2, {"Pic1", "Pic2", "Pic3", "Pic4", "Pic5", "Pic6"}),
                             ButtonsHere({"CmdWebCam"}), Fields(1, {Wide("PhotoStrip")}),
                             Fill("PhotoPreview")})),
                  Page("CheckListPage", Fill("CheckListDG"))})}),
      {"CmdPrev", "CmdNext", "CmdNew", "CmdClear", "CmdNewLoan", "CmdLoan", "CmdPay", "CmdBuyGold",
       "ECust", "CmdDelete", "CmdAllowDelete", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
