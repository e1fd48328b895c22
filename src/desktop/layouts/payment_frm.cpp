#include "desktop/layouts/layouts.h"

namespace kaunter {
namespace {

LayoutNode MoneyPage() {
  const LayoutNode money = Group({"Money", "款项"}, 1,
                                 {"PayAmt", "InstalAmt", "PayExtra", "IntAmt", "ChargeAmt",
                                  "CollectorAmt", Beside({"Memo5", "DiscAmt"}), "MPayment"});
  const LayoutNode how =
      Group({"How Paid", "付款方式"}, 1,
            {"CollectInfoID", "Bank", "ChqNo", "ReceiptNo", "LampiranStatus",
             Line({"SalesmanID", "SalesmanComm"}), Line({"TopAmt", "TopTerm"}), "TopUpAmt"});
  const LayoutNode instalment =
      Group({"Instalment", "分期"}, 2,
            {"SchID", "LastDueDate", "IntDate", "NextDueDate", Wide("PayableAmt"),
             Wide(Beside({"OutIntAmt", "IntChargeAmt"})), Wide(Beside({"OutDragAmt", "DragInt"}))});
  const LayoutNode loan =
      Group({"Loan", "贷款"}, 2,
            {"DragLoan", "LoanTerm", "LoanAmt", "LoanType", "AltCode", "PayOutAmt",
             Wide(Line({"InsRate", "LateChargePerDay", "OfferDays"}))});
  const LayoutNode amounts = Down({Across({money, how}, {7, 9}), Fields(1, {Wide("SplitLBL")})});
  return Down({Across({amounts, Down({instalment, loan})}, {16, 12}),
               Fields(1, {Wide(Line({"Memo1", "Memo2", "Memo3", "UserID", "CompCode"}))})});
}

}  // namespace

// Which loan, which day, how much: what the clerk types first stands above all pages, and beside it
// what the customer asks: how much is owed and what will be left.
Layout PaymentFrmLayout() {
  return {"PaymentFrm",
          {1342, 720},
          Down({Across({Thumbnail("CustPhoto"), Title("ModeLBL"),
                        Inside("Identity",
                               Fields(1, {Wide(Line({"LoanID", "PayDate", "TotPay", "PayID"})),
                                          Wide(Line({"CustName", "CustID", "PaymentStatus"}))}))},
                       {0, 0, 1}),
                Inside("Glance", Across({Figures({"OldLoanBal", "DragIntType", "WaivedAmt",
                                                  "ActPayable", "NewLoanBal"}),
                                         ButtonsHere({"ListCmd"})},
                                        {5, 1})),
                Tabs("SSTab1",
                     {Page("PaymentPage", MoneyPage()),
                      Page("BankPage", Fields(1, {"WithdrawDate", "BankOpenBal", "WithdrawAmt",
                                                  "RepaymentAmt", "BankinReturn", "BankCloseBal"})),
                      Page("ListPage", Fill("DG")),
                      Page("AmlPage", Down({Fields(1, {"AMLACode", "AMLAID", "AMLADesc"}),
                                            ButtonsHere({"SSCommand5", "SSCommand6"})}))})}),
          {"CmdPrev", "CmdNext", "CmdClear", "CmdPrint", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
