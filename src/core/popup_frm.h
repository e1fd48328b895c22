// PopupFrm: the search dialog behind every look-up. It shows the rows of the picker named in
// PickerName, page by page, and leaves the key of the chosen row in CallerTag, or "" when nothing
// was chosen.
#pragma once

#include <memory>
#include <string>

#include "core/paging.h"
#include "core/picker_statement.h"
#include "core/pickers.h"
#include "core/session_screen.h"

namespace kaunter {

class PopupFrm : public SessionScreen {
 public:
  PopupFrm(Session& session, Desk& desk);

  TextBox SearchString{*this, "SearchString", {"Search", "搜索"}};
  Button SearchCmd{*this, "SearchCmd", {"Sea&rch", "搜索(&R)"}};
  ComboBox SortOrder{*this, "SortOrder", {"Sort By", "排序"}};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司代码"}};
  ComboBox AreaCode{*this, "AreaCode", {"Area Code", "地区"}};
  ComboBox LoanGroupID{*this, "LoanGroupID", {"Loan Status", "贷款状态"}};
  ComboBox LoanTypeID{*this, "LoanTypeID", {"Loan Repayment", "还款方式"}};
  ComboBox CollectInfoID{*this, "CollectInfoID", {"Collection Type", "收款方式"}};
  CheckBox HideLoanChk{*this, "HideLoanChk", {"Hide Settled Loan", "不显示已结清贷款"}};
  Grid DG{*this, "DG", {"", ""}, {}};
  ComboBox iLimit{*this,   "iLimit", {"Rows a Page", "每页行数"}, {"50", "100", "200", "500"},
                  nullptr, true};
  Button Command3{*this, "Command3", {"&Previous", "上一页(&P)"}};
  Label Label8{*this, "Label8"};
  Button Command2{*this, "Command2", {"&Next", "下一页(&N)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Select", "选择(&S)"}, ButtonRole::primary};
  Button Command1{*this, "Command1", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  // Fills the first page. A picker that does not exist, a statement or a connection that fails ends
  // the dialog with its error.
  void Load() override;

 private:
  void TakeHandOver();
  void OfferFilters();
  void OfferSorts();
  // Reads the page that ends with row `limit_from`, or leaves everything as it is when that fails.
  void ShowPage(int limit_from);
  Recordset ReadPage(int limit_from);
  Connection& Source();
  PickerFilter Filter() const;
  void Search();
  void Choose();
  void OnGridKey(std::string_view key);
  void OnSearchKey(std::string_view key);

  const Picker* picker_ = nullptr;
  std::string extra_;
  PageTurner pages_{session(), iLimit, Label8, [this](int limit_from) { ShowPage(limit_from); }};
  std::unique_ptr<Connection> linked_;  // open as long as the dialog is
};

}  // namespace kaunter
