#include "collections/due_date_frm.h"

#include <fmt/format.h>

#include <utility>

#include "collections/refusals.h"
#include "core/boxes.h"
#include "core/company_access.h"
#include "core/open_for.h"
#include "core/picker.h"
#include "core/reading.h"
#include "core/values.h"

namespace kaunter {
namespace {

// Places in the grid.
constexpr int kLoan = 1, kOldCode = 2, kCustomer = 3, kName = 4;

const Caption kScheduleFailed{"An error occur during geting schedule record",
                              "阅读还款表时出现错误"};

}  // namespace

DueDateFrm::DueDateFrm(Session& session, Desk& desk)
    : SessionScreen("DueDateFrm", {"Due Date Inquiry", "到期日询问"}, session, desk) {
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onLeave = [this, box] { CheckDate(*box); };
  }
  CustID.max_length = LoanID.max_length = kKeyLength;
  OfferPicker(session, CustID, "CustPop", [this](const std::string& id) {
    CustID.SetText(id);
    LeaveCustomer();
  });
  CustID.onLeave = [this] { LeaveCustomer(); };
  OfferPicker(session, LoanID, "LoanPop", [this](const std::string& id) {
    LoanID.SetText(id);
    LeaveLoan();
  });
  LoanID.onLeave = [this] { LeaveLoan(); };
  LblCustName.onClick = [this] { OpenCustomer(this->session(), this->desk(), named_customer_); };
  CompaniesCheck.SetVisible(session.CurrentLevel < 4 && !session.AllowedCompanies.empty());
  DG.onOpen = [this](int row, int column) { Open(row, column); };
  SearchCmd.onClick = [this] { Search(); };
  CmdClear.onClick = [this] { Clear(); };
}

void DueDateFrm::Load() {
  const DayRange days = std::exchange(session().HandOverDays, {});
  if (days.empty()) return;
  DateFrom.SetText(days.from);
  DateTo.SetText(days.to);
  OwingCheck.SetChecked(true);
  CompaniesCheck.SetChecked(true);
  Search();
}

bool DueDateFrm::Read(const Caption& failed, const std::function<void()>& read) {
  return ReadOrTell(session(), *this, "Due Date Inquiry", failed, read);
}

// --- the boxes

bool DueDateFrm::CheckDate(TextBox& box) {
  return CheckDateBox(session(), box, {"Invalid date, Please Check!", "日期不正确，请检查！"});
}

std::string DueDateFrm::FindLoan(const std::string& typed) {
  const std::string key = QuoteStr(typed);
  for (const std::string& sql :
       {"SELECT LoanID FROM LoanMast WHERE LoanID=" + key,
        "SELECT LoanID FROM LoanMast WHERE OldLoanCode=" + key,
        "SELECT l.LoanID FROM CustMast as c INNER JOIN LoanMast as l ON c.CustID=l.CustID WHERE "
        "c.CustNIC=" +
            key}) {
    // Old codes and persons may be known to several companies: the first loan that is this person's
    // business counts.
    for (Recordset rows = main().Query(sql); !rows.Eof(); rows.MoveNext()) {
      const std::string id = NullToEmpty(rows.Field(0));
      const std::string company =
          ScalarQuery(main(), "SELECT CompCode FROM LoanMast WHERE LoanID=" + QuoteStr(id));
      if (MayUseCompany(session(), company)) return id;
    }
  }
  return {};
}

std::string DueDateFrm::FindCustomer(const std::string& typed) {
  const std::string key = QuoteStr(typed);
  for (const std::string& sql :
       {"SELECT CustID FROM CustMast WHERE CustID=" + key,
        "SELECT c.CustID FROM CustMast as c INNER JOIN LoanMast as l ON c.CustID=l.CustID WHERE "
        "l.OldLoanCode=" +
            key,
        "SELECT CustID FROM CustMast WHERE CustNIC=" + key}) {
    for (Recordset rows = main().Query(sql); !rows.Eof(); rows.MoveNext()) {
      const std::string id = NullToEmpty(rows.Field(0));
      if (MayNameCustomer(id)) return id;
    }
  }
  return {};
}

// As the picker offers them: a customer of the person's companies, or one with a loan there.
bool DueDateFrm::MayNameCustomer(const std::string& id) {
  const std::string key = QuoteStr(id);
  return MayUseCompany(session(),
                       ScalarQuery(main(), "SELECT CompCode FROM CustMast WHERE CustID=" + key)) ||
         !main()
              .Query("SELECT TOP 1 LoanID FROM LoanMast WHERE CustID=" + key +
                     AndCompany(session(), "CompCode"))
              .Eof();
}

void DueDateFrm::LeaveLoan() {
  const std::string typed = Trim(LoanID.text());
  LoanID.SetText(typed);
  if (SameText(typed, found_loan_)) return;
  found_loan_.clear();
  if (!typed.empty()) {
    if (!Read(kLoanReadFailed, [&] { found_loan_ = FindLoan(typed); })) return;
    if (found_loan_.empty()) {
      Refuse(LoanID, LoanNotFound(typed));
      return;
    }
    LoanID.SetText(found_loan_);
  }
  LoanID.SetMark(false);
  ShowName();
}

void DueDateFrm::LeaveCustomer() {
  const std::string typed = Trim(CustID.text());
  CustID.SetText(typed);
  if (SameText(typed, found_customer_)) return;
  found_customer_.clear();
  if (!typed.empty()) {
    if (!Read(kCustomerReadFailed, [&] { found_customer_ = FindCustomer(typed); })) return;
    if (found_customer_.empty()) {
      Refuse(CustID, {fmt::format("Customer ID {} not found", typed),
                      fmt::format("找不到顾客编号 {}", typed)});
      return;
    }
    CustID.SetText(found_customer_);
  }
  CustID.SetMark(false);
  ShowName();
}

// The customer's name; with a loan alone, that of its customer.
void DueDateFrm::ShowName() {
  LblCustName.SetText("");
  named_customer_.clear();
  if (found_customer_.empty() && found_loan_.empty()) return;
  Read(kCustomerReadFailed, [this] {
    named_customer_ = !found_customer_.empty()
                          ? found_customer_
                          : ScalarQuery(main(), "SELECT CustID FROM LoanMast WHERE LoanID=" +
                                                    QuoteStr(found_loan_));
    LblCustName.SetText(ScalarQuery(
        main(), "SELECT CustName FROM CustMast WHERE CustID=" + QuoteStr(named_customer_)));
  });
}

// --- the inquiry

// A key that was refused when it was left, or never looked at, must not widen the list.
bool DueDateFrm::CheckKeys() {
  if (!SameText(Trim(CustID.text()), found_customer_)) LeaveCustomer();
  if (!SameText(CustID.text(), found_customer_)) return false;
  if (!SameText(Trim(LoanID.text()), found_loan_)) LeaveLoan();
  return SameText(LoanID.text(), found_loan_);
}

std::string DueDateFrm::Filter() const {
  // Nothing asked for, nothing listed.
  if (DateFrom.empty() && DateTo.empty() && CustID.empty() && LoanID.empty()) return " WHERE 1=2";
  std::string filter = " WHERE h.PayableAmt-h.Payment > 0 ";
  if (!CustID.empty()) filter += " AND h.CustID=" + QuoteStr(CustID.text());
  if (!LoanID.empty()) filter += " AND h.LoanID=" + QuoteStr(LoanID.text());
  if (!DateFrom.empty()) filter += " AND h.DueDate >= " + SqlDate(DateFrom.text());
  if (!DateTo.empty()) filter += " AND h.DueDate <= " + SqlDate(DateTo.text());
  if (OwingCheck.checked()) filter += " AND l.LoanBal > 0";
  // Below an administrator the home company alone, unless the person asks for all of theirs.
  if (CompaniesCheck.checked()) {
    filter += AndCompany(session(), "l.CompCode");
  } else if (session().CurrentLevel < 4) {
    filter += " AND l.CompCode=" + QuoteStr(session().CurrentCompCode);
  }
  return filter;
}

void DueDateFrm::Search() {
  if (!CheckDate(DateFrom) || !CheckDate(DateTo)) return;
  if (!CheckDateOrder(session(), DateFrom, DateTo) || !CheckKeys()) return;
  const std::string sql =
      "SELECT h.duedate,l.LoanID,l.OldLoanCode,l.CustID,c.CustName,h.PayableAmt,h.Payment,"
      "h.PayableAmt-h.Payment as Balance FROM (SchMast as h INNER JOIN LoanMast as l on "
      "l.LoanID=h.LoanID) INNER JOIN CustMast as c on h.CustID=c.CustID" +
      Filter() + " ORDER BY h.DueDate DESC";
  if (!Read(kScheduleFailed, [&] { FillGrid(DG, main().Query(sql)); })) return;
  const std::string count = session().In({fmt::format("{} record(s) found", DG.RowCount()),
                                          fmt::format("找到 {} 笔资料", DG.RowCount())});
  StatusLBL.SetText(count);
  if (session().status) session().status(count);
  SetTitle({"Due Date Inquiry On Due Loan Record", "到期日询问 到期贷款资料"});
}

void DueDateFrm::Clear() {
  for (TextBox* box : {&DateFrom, &DateTo, &CustID, &LoanID}) {
    box->Clear();
    box->SetMark(false);
  }
  OwingCheck.SetChecked(false);
  CompaniesCheck.SetChecked(false);
  found_loan_.clear();
  found_customer_.clear();
  ShowName();
  DG.Clear();
  StatusLBL.SetText("");
  FocusOn(DateFrom);
}

void DueDateFrm::Open(int row, int column) {
  if (column == kCustomer || column == kName) {
    OpenCustomer(session(), desk(), DG.Cell(row, kCustomer));
  } else if (column == kLoan || column == kOldCode) {
    OpenLoan(session(), desk(), DG.Cell(row, kLoan));
  }
}

}  // namespace kaunter
