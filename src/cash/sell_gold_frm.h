// FrmSellGold, "Selling Gold": what became of the items that were bought. The items of a time are
// listed; date, amount and remarks of their sale are typed into the list and saved together.
//
// Whoever saves writes every line of the list. A line that another desktop has written since it was
// listed stops the save once and is shown as it stands.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/record_right.h"
#include "core/session_screen.h"

namespace kaunter {

class FrmSellGold : public SessionScreen {
 public:
  FrmSellGold(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox DateFrom{*this, "DateFrom", {"Bought From", "买入日期自"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"To", "至"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  Button CmdGo{*this, "CmdGo", {"&Go", "列出(&G)"}};
  Grid Vsd2{*this,
            "Vsd2",
            {"Items", "金饰"},
            {{{"Company", "公司"}, Kind::text, 7},
             {{"Purchase No", "买入编号"}, Kind::text, 9},
             {{"No", "序"}, Kind::integer, 4},
             {{"Date", "日期"}, Kind::date, 9},
             {{"Gold Type", "种类"}, Kind::text, 9},
             {{"Description", "说明"}, Kind::text, 18},
             {{"Qty", "件数"}, Kind::rate, 5},
             {{"Unit Price", "单价"}, Kind::money, 8},
             {{"Weight (g)", "重量（克）"}, Kind::rate, 9},
             {{"Estimate", "估价"}, Kind::money, 10},
             {{"Amount", "收购价"}, Kind::money, 10},
             {{"Remarks", "备注"}, Kind::text, 10},
             {{"Sold Amount", "卖出价"}, Kind::money, 11, true},
             {{"Sold Date", "卖出日期"}, Kind::date, 10, true},
             {{"Sold Remarks", "卖出备注"}, Kind::text, 14, true}}};
  Grid HandDG{*this,
              "HandDG",
              {"Gold in Hand", "库存黄金"},
              {{{"Company", "公司"}, Kind::text, 8},
               {{"Items", "件数"}, Kind::integer, 6},
               {{"Weight (g)", "重量（克）"}, Kind::rate, 10},
               {{"Cost", "成本"}, Kind::money, 12},
               {{"Oldest", "最早买入"}, Kind::date, 10}}};
  Grid ResultDG{*this,
                "ResultDG",
                {"Sold by Month", "每月卖出"},
                {{{"Month", "月份"}, Kind::text, 8},
                 {{"Items", "件数"}, Kind::integer, 6},
                 {{"Sold", "卖出"}, Kind::money, 12},
                 {{"Cost", "成本"}, Kind::money, 12},
                 {{"Result", "盈亏"}, Kind::money, 12}}};
  Button CmdPrint{*this, "CmdPrint", {"&Print", "打印(&P)"}};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  using Cells = std::vector<std::string>;

  void List();
  // The rows of the list as they are stored now.
  std::vector<Cells> Stored() const;
  void ShowFigures();
  void ShowTone(int row);
  void LeaveCell(int row, int column, const std::string& before);
  // Something is typed in the line that is not stored.
  bool IsTyped(int row) const;
  bool AnyTyped() const;
  void OpenPurchase(int row);
  void ClearAll();

  // What another desktop has done to a line since it was listed; nothing: the line is gone.
  struct News {
    int row = 0;
    std::optional<Cells> now;
  };
  std::vector<News> ReadNews() const;
  void Save();
  bool MayChangeSales();
  // Writes the lines; when there is news, that instead of anything.
  std::vector<News> Store();
  void Follow(const std::vector<News>& news);
  Caption TellNews(const News& news) const;
  void FollowRow(const News& news);
  void LogSales();
  void Print();

  RecordRight right_;
  std::string condition_;      // of the list, on GoldTransMast as g
  std::vector<Cells> listed_;  // as the lines were stored when they were listed
};

}  // namespace kaunter
