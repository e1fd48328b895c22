// The payment figures of an application, the checks of its save in their order, and the write.
#include <fmt/format.h>

#include <stdexcept>

#include "core/log.h"
#include "core/sequences.h"
#include "core/telling.h"
#include "core/values.h"
#include "loans/calc_payment.h"
#include "loans/loan_app_frm.h"
#include "platform/sql/transaction.h"

namespace kaunter {

bool LoanAppFrm::CalculatePayment() {
  const struct {
    TextBox& box;
    Caption text;
  } blanks[] = {
      {LoanAmt, {"Loan Amount is required", "请输入贷款金额"}},
      {InsRate, {"Interest Rate is required", "请输入利率"}},
      {LoanTerm, {"Loan Term is required", "请输入贷款期数"}},
      {LoanTerm3, {"Bullet Term is required", "请输入只付利息期数"}},
      {NextDueDate, {"Expected Installment Date is required", "请输入预计还款日"}},
  };
  for (const auto& blank : blanks) {
    if (blank.box.empty()) return Refuse(blank.box, blank.text);
  }
  if (!CheckTyped(LoanTerm3) || !CheckTyped(NextDueDate)) return false;
  LoanTerms terms;
  terms.DragLoan = DragLoan.index() == 1 ? LoanScheme::kFlexi : LoanScheme::kPersonal;
  terms.LoanPurpose = LoanPurpose.index() == 1 ? InterestMethod::kReducing : InterestMethod::kFlat;
  terms.secured = LoanType.index() == 0;
  terms.LoanTypeID = LoanTypeID.text();
  terms.LoanAmt = LoanAmt.text();
  terms.InsRate = InsRate.text();
  terms.LoanTerm = terms.LoanTerm3 = LoanTerm.text();
  // The application keeps its interest-only part in LoanTerm3; the loan will keep it in LoanTerm2.
  terms.LoanTerm2 = LoanTerm3.text();
  std::variant<PaymentFigures, Refusal> outcome;
  try {
    outcome = CalcPayment(terms, session().settings.RoundedInstallment);
  } catch (const std::overflow_error&) {
    return Refuse(LoanAmt, {"Loan Amount or Interest Rate is too large", "贷款金额或利率过大"});
  }
  if (auto* refusal = std::get_if<Refusal>(&outcome)) {
    if (refusal->field == "LoanTerm2") refusal->field = LoanTerm3.name();
    return RefuseWith(*refusal);
  }
  const auto& figures = std::get<PaymentFigures>(outcome);
  InstallmentAmt.SetText(ShowMoney(figures.InstallmentAmt));
  LastPayment.SetText(ShowMoney(figures.LastPayment));
  LoanBal.SetText(ShowMoney(figures.LoanBal));
  return true;
}

// --- the checks

bool LoanAppFrm::CheckRequired() {
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is required", "请选择公司"});
  if (TrxDate.empty()) return Refuse(TrxDate, {"Application Date is required", "请输入申请日期"});
  if (LoanAmt2.empty()) return Refuse(LoanAmt2, {"Property Amount is required", "请输入产业价"});
  if (TopUpAmt.empty()) TopUpAmt.SetText("0.00");
  if (LoanAmt.empty()) return Refuse(LoanAmt, {"Loan Amount is required", "请输入贷款金额"});
  if (TermInt.empty()) TermInt.SetText("0.00");
  if (InsRate.empty()) {
    return Refuse(InsRate, {"Interest Rate % p.a. is required", "请输入年利率 %"});
  }
  if (LoanTerm.empty()) return Refuse(LoanTerm, {"Loan Tenure is required", "请输入贷款期数"});
  if (InstallmentAmt.empty()) {
    return Refuse(InstallmentAmt, {"Installment Amount is required", "请输入每期金额"});
  }
  return true;
}

bool LoanAppFrm::CheckCollateral() {
  if (!SameText(LoanType.text(), "Secured")) return true;
  if (property.CollateralID.empty()) {
    return Refuse(property.CollateralID, {"Collateral Type is required", "请选择抵押品种类"});
  }
  if (property.Memo2.empty()) {
    return Refuse(property.Memo2, {"Collateral Description is required", "请输入抵押品说明"});
  }
  if (property.Memo4.empty()) {
    return Refuse(property.Memo4, {"Collateral Market Value is required", "请输入抵押品市价"});
  }
  return true;
}

// A new application starts undecided whatever was chosen; of one that stands, nobody carries both
// levels.
bool LoanAppFrm::CheckDecision() {
  if (loaded_id_.empty()) {
    AppStatus.SetIndex(0);
    AppStatus2.SetIndex(0);
    DecideFirst();
    DecideFinal();
    return true;
  }
  if (!ApprovedUser.empty() && SameText(ApprovedUser.text(), ApprovedUser2.text())) {
    return Refuse(AppStatus2,
                  {"Recommended User cannot same as Approval User", "推荐人与批准人不可相同"});
  }
  // The recommendation may have been taken back behind the approval.
  const bool too_early = AppStatus2.enabled() && ApprovedTooEarly();
  if (too_early) DecideFinal();
  return !too_early;
}

// What no column can hold; and an application belongs to somebody.
bool LoanAppFrm::CheckFigures() {
  for (TextBox* box : TypedFigures()) {
    if (!CheckTyped(*box)) return false;
  }
  if (!loaded_id_.empty()) return true;
  if (CustID.empty()) return Refuse(CustID, {"Customer Code is requried", "请输入顾客编号"});
  return FindPerson(CustID, CustName);
}

bool LoanAppFrm::Save() {
  if (!CheckRequired() || !CheckCollateral() || !CheckDecision() || !CheckFigures()) return false;
  if (!Confirm({"Confirm to save application ?", "确定储存申请？"})) return false;
  std::string id = loaded_id_;
  try {
    Transaction transaction(main());
    if (id.empty()) {
      id = NextSeries(main(), "AP", CompCode.text(), false, [this](const std::string& number) {
        // The star marks an application out of use; its number stays taken.
        return !ScalarQuery(main(), fmt::format("SELECT AppID FROM AppMast WHERE AppID IN ({},{})",
                                                QuoteStr(number), QuoteStr(number + "*")))
                    .empty();
      });
    }
    Write(id);
    transaction.Commit();
  } catch (const std::exception& failure) {
    LogRollback(session(), "Save Application", failure);
    return Refuse(Failed({fmt::format("An error occur during save application: {}", failure.what()),
                          fmt::format("储存申请时发生错误：{}", failure.what())},
                         failure));
  }
  Tell(MessageKind::information, {"Application saved", "申请已储存"});
  LoadApplication(id);
  return true;
}

// --- the write

void LoanAppFrm::Write(const std::string& id) {
  if (loaded_id_.empty()) {
    drawn_id_ = id;
    main().Execute(record_.InsertStatement());
    main().Execute(fmt::format(
        "Insert INTO AppMastLink (AppID,CustID,AppType,Relationship) VALUES ({},{},'Applicant','')",
        QuoteStr(id), QuoteStr(CustID.text())));
  } else {
    // A decision made on another desktop since the load, or a loan made of it, would be undone.
    const std::string stored = StoredDecision(id);
    if (!stored.empty() && stored != loaded_decision_) {
      throw std::runtime_error(session().In(
          {fmt::format("Application {} was changed meanwhile, Please load it again", id),
           fmt::format("申请 {} 已被更改，请重新载入", id)}));
    }
    ExecuteOnRow(main(), record_.UpdateStatement(id), id);
  }
  WriteLines(id);
}

void LoanAppFrm::WriteLines(const std::string& id) {
  const std::string key = QuoteStr(id);
  main().Execute("DELETE FROM AppHist WHERE AppID=" + key);
  int sequence = 0;
  for (int row = 0; row < vsd.RowCount() - 1; ++row) {
    main().Execute(fmt::format(
        "INSERT AppHist (AppID,AppSeq,TrxDate,AppDesc,UserID,DateCreated) VALUES ({},{},{},{},{},"
        "{})",
        key, ++sequence, SqlDate(vsd.Cell(row, 0)), QuoteStr(vsd.Cell(row, 1)),
        QuoteStr(vsd.Cell(row, 2)), SqlDateTime(vsd.Cell(row, 3))));
  }
  main().Execute("DELETE FROM MRTAMast WHERE AppID=" + key);
  sequence = 0;
  for (int row = 0; row < vsdd.RowCount() - 1; ++row) {
    main().Execute(fmt::format(
        "INSERT MRTAMast (AppID,AppSeq,MRTAName,MRTASumInsured,MRTAPremium) VALUES ({},{},{},{},"
        "{})",
        key, ++sequence, QuoteStr(vsdd.Cell(row, 0)), StripCommaOrZero(vsdd.Cell(row, 1)),
        StripCommaOrZero(vsdd.Cell(row, 2))));
  }
}

}  // namespace kaunter
