// RecalcCashBookFrm, "Recalculate Cash Book Balance": shows what the balances of a company's cash
// book should be, and makes them so. The look writes nothing and can be printed.
#pragma once

#include <optional>
#include <string>

#include "cash/cash_recalculation.h"
#include "core/session_screen.h"

namespace kaunter {

class RecalcCashBookFrm : public SessionScreen {
 public:
  RecalcCashBookFrm(Session& session, Desk& desk);

  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  TextBox CBOpenDate{*this, "CBOpenDate", {"Opening Date", "期初日期"}, Kind::date};
  TextBox CBOpenCash{*this, "CBOpenCash", {"Opening Cash", "期初现金"}, Kind::money};
  TextBox CBOpenBank{*this, "CBOpenBank", {"Opening Bank", "期初银行"}, Kind::money};
  Label HintLBL{*this,
                "HintLBL",
                {"Cash and bank before the first movement of the opening date; without a date, "
                 "before the first row.",
                 "期初日期首笔进出之前的现金和银行结余；没有日期则为第一笔之前。"}};
  Button CheckCmd{*this, "CheckCmd", {"&Look Only", "只查看(&L)"}, ButtonRole::primary};
  Label ResultLBL{*this, "ResultLBL"};
  Grid DG{*this,
          "DG",
          {"Balances That Differ", "不符的结余"},
          {{{"No", "编号"}, Kind::integer, 8},
           {{"Date", "日期"}, Kind::date, 11},
           {{"Type", "种类"}, Kind::text, 13},
           {{"Description", "说明"}, Kind::text, 26},
           {{"Amount", "金额"}, Kind::money, 13},
           {{"Cash Stored", "现存现金"}, Kind::money, 13},
           {{"Cash Should Be", "现金应为"}, Kind::money, 14},
           {{"Bank Stored", "现存银行"}, Kind::money, 13},
           {{"Bank Should Be", "银行应为"}, Kind::money, 14}}};
  Button RecalcCmd{*this, "RecalcCmd", {"&Recalculate", "重算(&R)"}};
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void ShowOpening();
  bool OpeningTyped() const;
  // What the boxes say; nothing when a box was refused.
  std::optional<CashOpening> Opening();
  bool CheckAmount(TextBox& box);
  bool CheckCompany();
  // A manager's word is needed for another opening than the stored one.
  bool MayOpenWith(const CashOpening& opening);
  void Look();
  void Recalculate();
  void Print();
  void Show(const CashBookReport& report, const Caption& told);
  void Forget();

  CashOpening stored_opening_;
  CashOpening looked_opening_;  // of the last look
};

}  // namespace kaunter
