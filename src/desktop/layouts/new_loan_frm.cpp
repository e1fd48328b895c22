#include "desktop/layouts/layouts.h"

namespace kaunter {
namespace {

LayoutNode LoanPage() {
  const LayoutNode loan =
      Group({"Loan", "贷款"}, 1,
            {"TrxDate", "OldLoanCode", "LoanTypeID", "LoanType", "DragLoan", "LoanPurpose",
             "DragIntType", "LoanGroupID", "LoanStatus", "LoanDuration"});
  const LayoutNode terms =
      Group({"Terms", "条件"}, 1,
            {"LoanAmt", "LoanAmt2", "Label51", "TopUpAmt", Beside({"InsRate", "IntType"}),
             "InsRate2", "LoanTerm", Line({"LoanTerm2", "LoanTerm3"}), "NextDueDate",
             "FirstPayment", "InstallmentAmt", "LastPayment", "InstallmentAmt2", "LastPayment2"});
  const LayoutNode fees = Group({"Fees", "费用"}, 1,
                                {"ProcessFee", "DepositAmt", "LegalFee", "TermInt", "OathsAmt",
                                 "DepositAmt2", "MiscAmt", "PayOutAmt2", "NextCall", "Memo1"});
  const LayoutNode late =
      Group({"Late Interest", "逾期利息"}, 1,
            {"LateChargePerDay", "OfferDays", "StopInt", "EndTermIntDate", "SpecialSch"});
  const LayoutNode sales =
      Group({"Sales", "销售"}, 1,
            {"SalesmanID", "SalesmanComm", "AdvertiseID", "Introducer", "IntroducerAmt"});
  // What reckons the terms stands under them.
  return Across(
      {Down({Across({loan, terms}, {11, 10}),
             ButtonsHere({"Command3", "Command5", "Command9", "Command8", "SSCommand3"})}),
       Across({fees, Down({late, sales})})},
      {11, 10});
}

LayoutNode Payments() {
  return Down({Fill("vsd4"),
               Figures({"LoanBal", "CloseBal", "IntBal", "TotPay", "TotInt", "TotDiscAmt"}),
               Figures({"TotCharge", "TotCollectorAmt", "TotLoanInt", "LastPaymentDate",
                        "LastPaymentNo", "OrgDueDate"}),
               ButtonsHere({"CmdSettle"})});
}

LayoutNode Guarantor(const std::string& suffix, const std::string& pic) {
  const auto of = [&](const char* box) { return "Guarantor" + (box + suffix); };
  // Ten of the person, ten of the work, which go below them where there is no room for both.
  return Fields(2, {of("Name"),
                    of("NIC"),
                    of("OIC"),
                    of("OthIC"),
                    of("Relationship"),
                    Line({of("Gender"), of("Race")}),
                    of("HP1"),
                    of("MN"),
                    pic,
                    Line({"CmdGetGuarantor" + suffix, "cmdCardReader" + suffix}),
                    of("Comp"),
                    of("CompBiz"),
                    of("CompPos"),
                    of("CompIncome"),
                    of("CompAdd1"),
                    of("CompAdd2"),
                    of("CompAdd3"),
                    Line({of("CompPostCode"), of("CompCity")}),
                    of("CompState"),
                    Line({of("CompTel1"), of("CompFax1")})});
}

LayoutNode Guarantors() {
  return Down(
      {Across({Inside("Guarantor1", Guarantor("(0)", "Pic1")),
               Inside("Guarantor2", Guarantor("(1)", "Pic2"))}),
       Across({Inside("SecondApplicant",
                      Fields(1, {Wide(Line({"CustID2", "CustName2", "CustNIC2", "CustAdd12"}))})),
               Thumbnail("GuarantorPhoto(0)"), Thumbnail("GuarantorPhoto(1)")},
              {1, 0, 0})});
}

LayoutNode Collateral() {
  return Across(
      {Group({"Collateral", "抵押品"}, 1,
             {"CollateralID", "Memo2", "OwnerName", "Memo4", "ForceSalesAmt", "ValuerName",
              "ValuerFrom", "ValuationDate", "PurchasePrice", "BumiPrice"}),
       Group({"Property", "产业"}, 1,
             {"PropertyAdd1", "PropertyType", "PropertyStatus", "BuiltUpArea", "LandArea",
              "LandStatus", "LeaseHoldExpDate", "ExpectRental", "PropertyLand", "Construction"}),
       Down(
           {Group({"Title", "地契"}, 1,
                  {"TitleType", "TitleNo", "LotNoPTNo", "SectionNo", "Mukim", "District", "State"}),
            Group({"Insurance", "保险"}, 1, {"InsuranceComp", "SumInsured", "MRTA"})})});
}

LayoutNode Documents() {
  return Across({Fields(1, {"AgreementNo", "AgreementPrint", "StampingDate", "NumberToText",
                            "Memo3", "Memo5"}),
                 Fill("Vsd2")});
}

}  // namespace

// Which loan and whose, and how it stands, above all pages; then its terms, what was paid, and the
// papers.
Layout NewLoanFrmLayout() {
  return {
      "NewLoanFrm",
      {1342, 720},
      Down({Across({Thumbnail("CustPhoto"), Title("LoanLBL"),
                    Inside("Identity", Fields(1, {Wide(Line({"LoanID", "CustID", "CustName",
                                                             "CompCode", "CreditLimit"}))}))},
                   {0, 0, 1}),
            Inside("Glance", Across({Title("BalanceLBL"), Title("NextDueLBL"), Title("ArrearsLBL"),
                                     Title("CreditLBL"), Fill("InstalmentBar")},
                                    {8, 8, 12, 10, 15})),
            Tabs("SSTab1",
                 {Page("LoanPage", LoanPage()),
                  Page("SchedulePage",
                       Down({Fields(1, {"SchChanged"}), Fill("vsd3"), Title("ScheduleTotalLBL")})),
                  Page("PaymentPage", Payments()),
                  Page("ChargesPage", Across({Fill("ChargesDG"), Fill("ChargesDG2")})),
                  Page("DrawDownPage", Across({Down({Fill("DrawDownDG"), Figures({"PayOutAmt"}),
                                                     ButtonsHere({"CmdDrawDown"})}),
                                               Fill("vsd")})),
                  Page("GuarantorPage", Guarantors()), Page("PropertyPage", Collateral()),
                  Page("BankPage",
                       Across({Group({"Bank", "银行"}, 1,
                                     {"Bank", "BankBranch", "BankBook", "ATMCardNo", "ATMPinNo"}),
                               Inside("SIDetail",
                                      Fields(1, {"SIBank", "SIBankBranch", "SIBankContactPerson",
                                                 "SIBankContactNo", "SIBankNo", "SIBankAmt",
                                                 "SIBankDate"}))})),
                  Page("DocumentPage", Documents()),
                  Page("AmlPage", Down({Fields(1, {"AMLACode", "AMLAID", "AMLADesc"}),
                                        ButtonsHere({"SSCommand5", "SSCommand6"})}))})}),
      {"CmdPrev", "CmdNext", "CmdNew", "CmdClear", "CmdPrint", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
