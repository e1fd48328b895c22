// The customer screen and the watch list: who stands on it is shown and stored as "AMLA". All of it
// sleeps while the office's setting AMLA is off.
#include <fmt/format.h>

#include "compliance/aml.h"
#include "core/audit.h"
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
  if (ScreenIdentity(session(), desk(), ic, passport, {}) == Screening::hit) {
    ShowListed();
  } else {
    CustStatus.SetEnabled(true);
  }
}

// Each number by itself, so that one does not hide another.
void NewCustFrm::ScreenSaved() {
  if (!session().settings.AMLA) return;
  FollowCompany();
  const std::string none;
  const struct {
    const std::string& ic;
    const std::string& passport1;
    const std::string& passport2;
  } checks[] = {
      {CustNIC.text(), none, none}, {none, CustOIC.text(), none}, {none, none, CustOthIC.text()}};
  for (const auto& check : checks) {
    const Screening found =
        ScreenIdentity(session(), desk(), check.ic, check.passport1, check.passport2);
    // The other numbers would only wait for the same server.
    if (found == Screening::away) return;
    if (found != Screening::hit) continue;
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

}  // namespace kaunter
