// WatchListFrm, "Watch List Screening": takes a copy of the central watch list, screens all
// customers against it, and keeps what is decided about each who is like an entry. For a manager
// (level 3) and above: who is looked at must not hear of it.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "compliance/rescreening.h"
#include "core/session_screen.h"

namespace kaunter {

class WatchListFrm : public SessionScreen {
 public:
  WatchListFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;
  void Unload() override;

  Label CopyLBL{*this, "CopyLBL"};
  CheckBox UseCopy{
      *this,
      "UseCopy",
      {"Use the copy while the central database is away", "中央数据库无法连接时，柜台改用副本"}};
  Button CopyCmd{*this, "CopyCmd", {"&Take a Copy", "取得副本(&T)"}};
  Button ScreenCmd{
      *this, "ScreenCmd", {"&Screen All Customers", "核对所有顾客(&S)"}, ButtonRole::primary};
  Label RunLBL{*this, "RunLBL"};
  ComboBox Show{*this, "Show", {"Show", "显示"}};
  Grid HitDG{*this,
             "HitDG",
             {"Customers like an Entry", "与名单相似的顾客"},
             {{{"Kind", "种类"}, Kind::text, 8},
              {{"Company", "公司"}, Kind::text, 8},
              {{"Customer", "顾客"}, Kind::text, 10},
              {{"Name", "姓名"}, Kind::text, 20},
              {{"Ref No", "名单编号"}, Kind::text, 10},
              {{"Listed Name", "名单姓名"}, Kind::text, 20},
              {{"Because", "依据"}, Kind::text, 26},
              {{"Decision", "决定"}, Kind::text, 13},
              {{"By", "决定者"}, Kind::text, 8},
              {{"When", "时间"}, Kind::text, 12}}};
  TextBox Customer{*this, "Customer", {"Customer", "顾客"}, Kind::memo};
  TextBox Entry{*this, "Entry", {"Entry of the List", "名单资料"}, Kind::memo};
  TextBox Remark{*this, "Remark", {"Remark", "备注"}};
  Button HitCmd{*this, "HitCmd", {"It Is the &Person", "是此人(&P)"}};
  Button NoHitCmd{*this, "NoHitCmd", {"&Another Person", "不是此人(&A)"}};
  Button CustCmd{*this, "CustCmd", {"Open C&ustomer", "打开顾客(&U)"}};
  Button PrintCmd{*this, "PrintCmd", {"P&rint", "打印(&R)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  void ShowCopy();
  void ShowLastRun();
  void SwitchUse();
  void TakeCopy();
  bool MayReplace(std::size_t entries);
  bool Copy();
  void Forget();
  void ScreenAll();
  void FillHits();
  void ShowCounts();
  void ShowHit(int row);
  std::string Numbers(const std::vector<std::pair<Caption, std::string>>& numbers) const;
  WatchHit& HitOf(int row);
  std::vector<std::string> RowOf(const WatchHit& hit) const;
  void DecideOn(bool is_hit);
  bool ConfirmDecision(bool is_hit, const std::vector<int>& rows);
  void Print();

  std::vector<WatchHit> hits_;
  std::vector<std::size_t> shown_;  // positions in hits_, a row of HitDG each, and those past it
  std::size_t customers_ = 0;
  std::optional<WatchCopy> copy_;
  bool screened_ = false;
};

}  // namespace kaunter
