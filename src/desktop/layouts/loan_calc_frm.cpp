#include "desktop/layouts/layouts.h"

namespace kaunter {

// Terms left, what comes of them right, the table below with all the room that is left.
Layout LoanCalcfrmLayout() {
  return {
      "LoanCalcfrm",
      {1120, 700},
      Down({Across({Group({"Terms", "条件"}, 2,
                          {"LoanID", "CompCode", "CustName", "TrxDate", "LoanTypeID", "NextDueDate",
                           "DragLoan", "LoanAmt", "InsRate", "LoanTerm", "LoanTerm2"}),
                    Group({"Figures", "结果"}, 1,
                          {"InstallmentAmt", "InstallmentAmt2", "LastPayment", "LoanBal"})},
                   {5, 2}),
            Fill("SchDG"), Fields(1, {Wide("TotalLBL")})}),
      {"Command3", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
