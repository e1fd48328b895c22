// AboutFrm, "About This Office": what support asks first, to be copied into a letter.
#pragma once

#include "core/session_screen.h"
#include "upkeep/about.h"

namespace kaunter {

class AboutFrm : public SessionScreen {
 public:
  AboutFrm(Session& session, Desk& desk);

  Grid DG{*this,
          "DG",
          {"This Office", "本资料库"},
          {{{"What", "项目"}, Kind::text, 12}, {{"Is", "内容"}, Kind::memo, 30}}};
  Grid SlowDG{*this,
              "SlowDG",
              {"Slow Statements Today", "今日较慢的语句"},
              {{{"Statement", "语句"}, Kind::memo, 40},
               {{"Times", "次数"}, Kind::integer, 6},
               {{"Longest ms", "最长毫秒"}, Kind::integer, 8},
               {{"Total ms", "合计毫秒"}, Kind::integer, 8}}};
  Label PrivacyLBL{*this,
                   "PrivacyLBL",
                   {"No name, number or text of a customer stands here: it may be sent to support.",
                    "其中没有顾客的姓名、号码或文字，可以发给支援人员。"}};
  Button CopyCmd{*this, "CopyCmd", {"C&opy As Text", "复制为文字(&O)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void Copy();

  AboutOffice about_;
};

}  // namespace kaunter
