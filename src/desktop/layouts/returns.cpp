#include "desktop/layouts/layouts.h"

namespace kaunter {

// What is counted at the left, its figures beside it, the loans of the one that is open at the
// right.
Layout ReturnFiguresFrmLayout() {
  return {"ReturnFiguresFrm",
          {1330, 690},
          Down({Across({Down({Group({"What Is Counted", "计算范围"}, 1,
                                    {"Return", "DateFrom", "DateTo", "Check1"}),
                              Fill("CompDG")},
                             {0, 1}),
                        Fill("FigureDG"), Fill("LoanDG")},
                       {6, 10, 11}),
                Fields(1, {"LoansLBL"})},
               {1, 0}),
          {"PrintCmd", "CountCmd", "CancelCmd"}};
}

// The figures of the six years beside the change of status, the loans behind them below.
Layout NplLoanFrmLayout() {
  std::vector<FieldPlace> years = {Wide("CompCode")};
  for (int i = 0; i < 6; ++i) {
    const std::string place = "(" + std::to_string(i) + ")";
    years.emplace_back("NoLoan" + place);
    years.emplace_back("LoanAmt" + place);
  }
  return {"NPLLoanFrm",
          {1080, 680},
          Down({Across({Group({"Figures of the Return", "申报数字"}, 2, std::move(years)),
                        Down({Group({"Loan Status", "贷款状态"}, 1, {"Months", "LoanGroupID"}),
                              ButtonsHere({"UpdateCmd"})})},
                       {3, 2}),
                Fill("DG")},
               {0, 1}),
          {"PrintCmd", "SaveCmd", "CancelCmd"}};
}

Layout LampiranB1Layout() {
  return {"LampiranB1",
          {900, 620},
          Down({Fields(3, {"CompCode", "DateFrom", "DateTo"}), Fill("DG"), Fields(1, {"CountLBL"})},
               {0, 1, 0}),
          {"CmdPrint", "SaveCmd", "CancelCmd"}};
}

}  // namespace kaunter
