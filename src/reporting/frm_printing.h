// frmPrinting: the documents of one loan, ticked and printed together. The loan comes in
// HandOverLoanID, the kind of list ("loan", "gold") in CallerTag; opened without a loan, the screen
// asks for one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/session_screen.h"
#include "reporting/printing_list.h"
#include "screen/report_job.h"

namespace kaunter {

class frmPrinting : public SessionScreen {
 public:
  frmPrinting(Session& session, Desk& desk);

  TextBox LoanID{*this, "LoanID", {"Loan ID", "贷款编号"}};
  TextBox CustName{*this, "CustName", {"Customer", "顾客"}};
  CheckBox Check1{*this, "Check1", {"Select &All", "全选(&A)"}};
  Grid vsd;
  Option Option1{*this, "Option1", {"Send to Prin&ter", "送到打印机(&T)"}};
  Option Option2{*this, "Option2", {"Preview &On Screen", "荧幕预览(&O)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Print", "打印(&P)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  void LeaveLoanID();
  // False when the loan is not there or not this person's to see.
  bool ShowLoan(const std::string& loan_id);
  void ListDocuments();
  // Its report file does not lie beside the program: the row is grey and takes no tick.
  bool IsInstalled(const ListedDocument& document) const;
  void TickAll(bool on);

  void Print();
  void PrintDocument(const ListedDocument& document);
  bool TryToPrint(const ListedDocument& document, const ListedDocument& next);
  // False when the document is not printed after all.
  bool Prepare(const ListedDocument& document, ReportJob& job);
  // Something is overdue, and a second reminder has its first; else it is told or asked.
  bool MayDun(bool second);
  void OfferReminderDate(const Caption& question, std::string_view column);
  bool PrepareLateInvoice(ReportJob& job);
  void LayPhoto();
  void OpenStatement(const ListedDocument& document);

  std::string kind_;
  std::string loan_id_;  // of the documents shown
  std::vector<ListedDocument> documents_;
};

}  // namespace kaunter
