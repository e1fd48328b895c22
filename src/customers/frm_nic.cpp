#include "customers/frm_nic.h"

#include <fmt/format.h>

#include "core/identity.h"
#include "core/values.h"

namespace kaunter {
namespace {

constexpr int kLongestIc = 50;

}  // namespace

frmNIC::frmNIC(Session& session, Desk& desk)
    : SessionScreen("frmNIC", {"Check IC", "查身份证"}, session, desk),
      DG(*this, "DG", {"Loans", "贷款"},
         {{{"Relation", "关系"}, Kind::text, 11},
          {{"Customer", "顾客"}, Kind::text, 26},
          {{"Company", "公司"}, Kind::text, 9},
          {{"Loan ID", "贷款编号"}, Kind::text, 15},
          {{"Cust Code", "顾客号码"}, Kind::text, 11},
          {{"Loan Date", "贷款日期"}, Kind::date, 11},
          {{"Next Due", "下期到期日"}, Kind::date, 11},
          {{"Loan Amount", "贷款金额"}, Kind::money, 12},
          {{"Balance", "结余"}, Kind::money, 12},
          {{"Status", "状态"}, Kind::text, 18}}) {
  CustIC.max_length = kLongestIc;
  CustIC.onLeave = [this] { CustIC.SetText(MaskNewIc(Trim(CustIC.text()))); };
  CmdGo.onClick = [this] { Go(); };
}

void frmNIC::Go() {
  CustIC.SetText(MaskNewIc(Trim(CustIC.text())));
  if (CustIC.empty()) {
    Refuse(CustIC, {"Customer IC is require", "请输入顾客身份证"});
    return;
  }
  CustIC.SetMark(false);
  const std::string ic = QuoteStr(CustIC.text());
  CustName.SetText(NameOf(ic));
  DG.Clear();
  AddRows(
      fmt::format(
          "(c.CustNIC={0} OR c.CustOIC={0} OR c.CustOthIC={0}) ORDER BY l.CompCode,l.TrxDate", ic),
      "Self Loan");
  AddRows(
      fmt::format(
          "(l.GuarantorNIC={0} OR l.GuarantorOIC={0} OR l.GuarantorNIC2={0} OR l.GuarantorOIC2={0} "
          "OR l.GuarantorOthIC={0} OR l.GuarantorOthIC2={0})",
          ic),
      "Guarantor");
}

std::string frmNIC::NameOf(const std::string& quoted_ic) {
  for (const char* look_up :
       {"SELECT TOP 1 CustName FROM CustMast WHERE CustNIC={0} OR CustOIC={0} OR CustOthIC={0}",
        "SELECT TOP 1 GuarantorName FROM LoanMast WHERE GuarantorNIC={0} OR GuarantorOIC={0} OR "
        "GuarantorOthIC={0}",
        "SELECT TOP 1 GuarantorName2 FROM LoanMast WHERE GuarantorNIC2={0} OR GuarantorOIC2={0} OR "
        "GuarantorOthIC2={0}"}) {
    const std::string name = ScalarQuery(main(), fmt::format(fmt::runtime(look_up), quoted_ic));
    if (!name.empty()) return name;
  }
  return {};
}

void frmNIC::AddRows(const std::string& condition, const std::string& relation) {
  Recordset rows = main().Query(fmt::format(
      "SELECT {} as "
      "[Relation],c.CustName,l.CompCode,l.LoanID,l.OldLoanCode,l.TrxDate,l.NextDueDate,l.LoanAmt,l."
      "LoanBal,"
      "l.LoanGroupID FROM LoanMast as l INNER JOIN CustMast as c ON l.CustID=c.CustID WHERE "
      "l.CompCode={} AND "
      "{}",
      QuoteStr(relation), QuoteStr(session().CurrentCompCode), condition));
  for (; !rows.Eof(); rows.MoveNext()) {
    DG.AddRow(ShownRow(DG, rows));
  }
}

}  // namespace kaunter
