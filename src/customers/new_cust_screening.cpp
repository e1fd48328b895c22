// The customer screen and the watch list: who stands on it is shown and stored as "AMLA". All of it
// sleeps while the office's setting AMLA is off.
#include <fmt/format.h>

#include "compliance/aml.h"
#include "compliance/screening.h"
#include "compliance/suspicion.h"
#include "core/audit.h"
#include "core/screen_rights.h"
#include "core/values.h"
#include "customers/new_cust_frm.h"

namespace kaunter {

// The rules in force are those of the customer's company, whatever another screen looked at last.
void NewCustFrm::FollowCompany() { LoadAMLSettings(session(), CompCode.text()); }

void NewCustFrm::TidyBox(TextBox& box) {
  if (session().settings.AMLA) box.SetText(TidyText(box.text()));
}

void NewCustFrm::ScreenOnLeave(const std::string& ic, const std::string& passport) {
  if (!session().settings.AMLA) return;
  FollowCompany();
  // The save screens all numbers: while they are typed the line is waited for once.
  const ScreeningResult result =
      ScreenIdentity(session(), desk(), {ic, passport}, list_away_ ? Line::is_down : Line::try_it);
  list_away_ = list_away_ || result.line_down;
  if (result.found == Screening::hit) {
    ShowListed();
  } else {
    CustStatus.SetEnabled(true);
  }
}

// Each number by itself, so that one does not hide another; all of them in the time of one.
void NewCustFrm::ScreenSaved() {
  if (!session().settings.AMLA) return;
  FollowCompany();
  const std::string none;
  const auto results = LookUpIdentities(
      session(), {{CustNIC.text()}, {none, CustOIC.text()}, {none, none, CustOthIC.text()}});
  list_away_ = false;
  for (const ScreeningResult& result : results) {
    list_away_ = list_away_ || result.line_down;
    if (result.found != Screening::hit) continue;
    TellHit(desk(), result);
    ShowListed();
    if (ExecSql(session(), desk(),
                fmt::format("UPDATE CustMast SET CustStatus='AMLA' where CustID={}",
                            QuoteStr(loaded_id_)))) {
      record_.Remember();  // else the status is still to be saved
      WriteAudit(session(), "Modify", "Customer", CompCode.text(), loaded_id_, loaded_values_);
    }
  }
}

void NewCustFrm::ShowListed() {
  CustStatus.SetText("AMLA");
  CustStatus.SetEnabled(false);
  CustStatus.SetMark(true);
}

// As with a loan: only where the company takes part, and not while it has switched reports off.
void NewCustFrm::OfferReporting() {
  const bool takes_part = LoadAMLSettings(session(), CompCode.text());
  OfferShortcut(session(), CmdSTR, "AMLAFrm", {}, !loaded_id_.empty() && !session().aml.DisableSTR);
  if (!takes_part) CmdSTR.SetVisible(false);
}

void NewCustFrm::ReportSuspicion() {
  if (!Confirm(
          {"Confirm to report AML/CFT STR to Bank Negara ?", "确定向国家银行呈报可疑交易？"})) {
    return;
  }
  const std::string number =
      kaunter::ReportSuspicion(session(), desk(), {loaded_id_, CompCode.text(), {}, {}});
  if (number.empty() || !session().status) return;
  session().status(session().In({fmt::format("{} is recorded for {}", number, loaded_id_),
                                 fmt::format("{} 已为顾客 {} 记录", number, loaded_id_)}));
}

}  // namespace kaunter
