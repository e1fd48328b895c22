// ReturnFiguresFrm, "Return Figures": counts a return without storing it and opens, for each of its
// figures, the loans that it was counted from. What no figure of a group takes is a line of its
// own, so that nothing is missing from a return without being seen. A caller may leave in
// HandOverSelection, a line each: the number of the return, its dates, its tick, its companies.
#pragma once

#include <optional>
#include <vector>

#include "compliance/returns.h"
#include "core/session_screen.h"
#include "core/stoppable.h"

namespace kaunter {

class ReturnFiguresFrm : public SessionScreen {
 public:
  ReturnFiguresFrm(Session& session, Desk& desk);

  ComboBox Return{*this, "Return", {"Return", "申报"}};
  TextBox DateFrom{*this, "DateFrom", {"Date From", "日期由"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "日期至"}, Kind::date};
  CheckBox Check1{*this, "Check1", {"Include Interest", "包括利息"}};
  Grid CompDG{*this,
              "CompDG",
              {"Companies", "公司"},
              {{{"Company", "公司"}, Kind::text, 8}, {{"Name", "名称"}, Kind::text, 20}}};
  Button CountCmd{*this, "CountCmd", {"C&ount", "计算(&O)"}, ButtonRole::primary};
  Grid FigureDG{*this,
                "FigureDG",
                {"Figures (open one for its loans)", "数字（打开可见其贷款）"},
                {{{"Place", "位置"}, Kind::text, 7},
                 {{"Figure", "项目"}, Kind::text, 30},
                 {{"In the Return", "申报数"}, Kind::money, 15}}};
  Label LoansLBL{*this, "LoansLBL"};
  Grid LoanDG{*this,
              "LoanDG",
              {"Loans behind the Figure", "此数字所含的贷款"},
              {{{"Loan Code", "贷款编号"}, Kind::text, 14},
               {{"Date", "日期"}, Kind::date, 11},
               {{"Company", "公司"}, Kind::text, 8},
               {{"Customer", "顾客"}, Kind::text, 26},
               {{"Because", "依据"}, Kind::text, 14},
               {{"Amount", "数额"}, Kind::money, 13}}};
  Button PrintCmd{*this, "PrintCmd", {"&Print the Loans", "打印贷款(&P)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  void Unload() override;

 private:
  void TakeHandOver();
  void Forget();
  void ForgetLoans();
  void ChooseReturn();
  std::optional<ReturnPeriod> Period();
  bool RunLong(const std::function<void(const GoOn&)>& work);
  void Count();
  void OpenFigure(int row);
  // "Loans made (field01)"
  Caption Named(const ReturnLine& line) const;
  void Print();

  std::vector<ReturnLine> lines_;  // a row of FigureDG each
  int opened_ = -1;
  std::vector<ReturnLoan> loans_;
};

}  // namespace kaunter
