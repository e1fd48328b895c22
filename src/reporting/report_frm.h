// ReportFrm: the criteria of one report, and its start. The caller leaves the file in ReportFile
// and the title in MsgTitle; a loan in HandOverLoanID is the only one that the report may show,
// days in HandOverDays are filled in, with the person's companies. A file of the office's own in
// CallerTag ("OwnReports/Mine.rpt") is printed with the criteria of ReportFile, in its place.
#pragma once

#include <string>
#include <vector>

#include "compliance/returns.h"
#include "core/session_screen.h"
#include "reporting/report_criteria.h"
#include "reporting/report_selection.h"
#include "reporting/staged_reports.h"
#include "screen/report_job.h"

namespace kaunter {

class ReportFrm : public SessionScreen {
 public:
  ReportFrm(Session& session, Desk& desk);

  Label LoanLBL{*this, "LoanLBL"};
  TextBox DateFrom{*this, "DateFrom", {"Date From", "日期由"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"Date To", "日期至"}, Kind::date};
  TextBox IDFrom{*this, "IDFrom", {"ID From", "编号由"}};
  Button SearchCmd1{*this, "SearchCmd1", {"Find &1", "查找 (&1)"}};
  TextBox IDTo{*this, "IDTo", {"ID To", "编号至"}};
  Button SearchCmd2{*this, "SearchCmd2", {"Find &2", "查找 (&2)"}};
  CheckBox Check1{*this, "Check1", {"With Photo", "附照片"}};
  CheckBox Check2{*this, "Check2", {"Summary", "总结"}};
  CheckBox Check3{*this, "Check3", {"Summary", "总结"}};
  CheckBox Check4{*this, "Check4", {"With Loan ID", "附贷款编号"}};
  Label NoteLBL{*this, "NoteLBL"};  // why something is greyed
  ComboBox ListCombo{*this, "ListCombo", {"Filter By", "筛选"}};
  Grid List1{*this, "List1", {}, {{{"Available", "可选"}}}};
  Button InSingle{*this, "InSingle", {"&Add >", "加入 > (&A)"}};
  Button InAll{*this, "InAll", {"Add A&ll >>", "全部加入 >> (&L)"}};
  Button OutSingle{*this, "OutSingle", {"< &Remove", "< 移出 (&R)"}};
  Button OutAll{*this, "OutAll", {"<< Remo&ve All", "<< 全部移出 (&V)"}};
  Grid List2{*this, "List2", {}, {{{"Selected", "已选"}}}};
  Label SelectedLbl{*this, "SelectedLbl"};  // what is chosen in all lists
  Button FiguresCmd{
      *this, "FiguresCmd", {"Fig&ures", "数字(&U)"}};  // of a return, with their loans
  Button SaveCmd{*this, "SaveCmd", {"&Print", "打印(&P)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  void Unload() override;

 private:
  // --- the criteria (report_frm.cpp)
  void OfferIds();
  void OfferOptionBoxes();
  void LockSelectedLoan(const std::string& loan_id);
  void FillDays(const DayRange& days);
  bool MayLieAhead() const;
  void LeaveDate(TextBox& box);
  void PickInto(TextBox& box);
  CheckBox& BoxOf(int number);

  // --- the filter lists (report_frm_lists.cpp)
  void LoadLists();
  std::vector<std::string> ValuesOf(const FilterSource& source);
  std::vector<std::string> Companies();
  // Moves the marked value, or all, of the list shown; `in` is from Available to Selected.
  void Move(bool in, bool all);
  void ShowList();

  // --- the print action (report_frm_print.cpp)
  bool Is(std::initializer_list<std::string_view> files) const { return IsOneOf(file_, files); }
  void Print();
  bool CheckAndSelect();
  bool DatesAreGood();
  bool IdsAreGood();
  bool CompanyIsChosen();
  bool BuildFormula();
  void ShowFigures();
  ReturnPeriod PeriodOfReturn() const;
  bool MakeYearly();
  bool MakeLampiran();
  bool PrepareByFile();
  void LayPhoto();
  void ChooseForm();
  bool SetParameters();
  bool Connect();
  bool StageByFile();
  void SetParametersByFile();
  void Start();
  StagedRun Run() const;

  // One filter list: what is chosen of it, and what is left to choose.
  struct ValueList {
    StagedFilter chosen;
    std::vector<std::string> available;
  };

  std::string file_;      // as the menu chose it
  std::string own_file_;  // of the office, which is printed in the place of that one
  std::string title_;     // of the report
  std::string pcname_;
  const ReportCriteria* criteria_ = nullptr;
  std::vector<ValueList> lists_;

  // Of the print in work.
  ReportJob job_;
  std::string form_;  // the file that is started
};

}  // namespace kaunter
