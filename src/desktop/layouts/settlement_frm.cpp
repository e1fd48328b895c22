#include "desktop/layouts/layouts.h"

namespace kaunter {

// The loan and what is owed on it above, the three dates beside each other below.
Layout SettlementfrmLayout() {
  const auto date = [](Caption heading, const std::string& ending) {
    std::vector<FieldPlace> fields;
    for (const char* name : {"SettledDate", "NPayment", "EPayment", "OPayment", "SettledAmt"}) {
      fields.emplace_back(name + ending);
    }
    return Group(heading, 1, fields);
  };
  return {"Settlementfrm",
          {1060, 560},
          Down({Across({Group({"Loan"}, 2,
                              {"LoanID", "OldLoanCode", "CustName", "DragLoan", "TrxDate",
                               "LoanAmt", "LoanTerm", "InsRate", "InstallmentAmt", "LastPayment"}),
                        Group({"Owed"}, 1, {"NextDueDate", "LoanBal", "OthBal", "TotalBal"})},
                       {2, 1}),
                Across({date({"First Date"}, ""), date({"Second Date"}, "2"),
                        date({"Third Date"}, "3")})}),
          {"CmdPrint", "Command4", "CancelCmd"}};
}

// What is typed left, the loan right, its payments below.
Layout LoanSettlementfrmLayout() {
  return {"LoanSettlementfrm",
          {1060, 660},
          Down({Across({Group({"Settlement", "结清"}, 1,
                              {"PayID", "LoanID", "CustName", "PayDate", "Payment", "IntAmt",
                               "DiscAmt", "LoanBal"}),
                        Group({"Loan", "贷款"}, 1,
                              {"LoanAmt", "TrxDate", "LoanTerm", "LoanTypeID", "NextDueDate",
                               "TotPay", Line({"CompCode", "UserID"}), "PaymentStatus"})}),
                Fill("DG")}),
          {"CmdQuote", "CmdClear", "Command4", "Command1", "CancelCmd"}};
}

}  // namespace kaunter
