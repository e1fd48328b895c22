#include "desktop/layouts/layouts.h"

namespace kaunter {
namespace {

LayoutNode Terms() {
  return Inside(
      "F1",
      Down({Across({Group({"Application", "申请"}, 1,
                          {"CompCode", "TrxDate", "LoanAmt2", "TopUpAmt", "LoanAmt", "TermInt"}),
                    Group({"Scheme", "方案"}, 1,
                          {"LoanTypeID", "LoanType", "DragLoan", "LoanPurpose"}),
                    Group({"Repayment", "还款"}, 1,
                          {"InsRate", "LoanTerm", "LoanTerm3", "NextDueDate"})}),
            Across(
                {Figures({"InstallmentAmt", "LastPayment", "LoanBal"}), ButtonsHere({"Command3"})},
                {3, 1})}));
}

LayoutNode Property() {
  return Inside(
      "F2", Across({Group({"Collateral", "抵押品"}, 1,
                          {"CollateralID", "Memo2", "Memo4", "ForceSalesAmt", "PurchasePrice",
                           "BumiPrice", "ReminderDate", "ReminderDate2"}),
                    Group({"Property", "产业"}, 1,
                          {"PropertyAdd1", "PropertyType", "PropertyStatus", "BuiltUpArea",
                           "LandArea", "PropertyLand", "Construction", "ExpectRental"}),
                    Group({"Title", "地契"}, 1,
                          {"TitleType", "TitleNo", "LotNoPTNo", "SectionNo", "Mukim", "District",
                           "State", "LandStatus"}),
                    Group({"Valuation and Insurance", "估价与保险"}, 1,
                          {"LeaseHoldExpDate", "ValuerName", "ValuerFrom", "ValuationDate",
                           "InsuranceComp", "SumInsured", "MRTA"})}));
}

}  // namespace

// Whose application it is and how far it has come stand above all pages: who opens it comes to
// decide.
Layout LoanAppFrmLayout() {
  const LayoutNode persons =
      Down({Across({Fields(2, {"LinkCust", "LinkName", "LinkRelation", "LinkType"}),
                    ButtonsHere({"Command1"})},
                   {4, 1}),
            Fill("LinkDG")});
  const LayoutNode conditions =
      Across({Fields(1, {"ConditionLBL", "Opt1", "Opt2", "Opt3", "Opt4", "Opt5"}),
              Fields(1, {"OtherCond"})});
  return {
      "LoanAppFrm",
      {1342, 720},
      Down({Across({Title("StateLBL"),
                    Inside("Identity",
                           Fields(1, {Wide(Line({"AppID", "LoanID", "CustID", "CustName"}))}))},
                   {1, 4}),
            Inside("Decision", Fields(3, {"AppStatus", "AppStatus2", "ApprovedUser",
                                          "ApprovedUser2", "ApprovalDate", "ApprovalDate2"})),
            Tabs("SSTab1", {Page("TermsPage", Terms()), Page("PropertyPage", Property()),
                            Page("PersonPage", persons), Page("ConditionPage", conditions),
                            Page("HistoryPage", Fill("vsd")), Page("MrtaPage", Fill("vsdd"))})}),
      {"CmdNew", "CmdPrint", "SSCommand1", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
