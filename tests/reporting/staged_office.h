// An office whose movements are written straight into its tables, and the staged rows of a report
// as lines of text.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reporting/staged_reports.h"
#include "tests/core/office.h"

namespace kaunter {

struct StagedOffice {
  StagedOffice() {
    office.session.CurrentLevel = 4;
    office.session.MsgTitle = "Cash Book Report";
    office.Run("INSERT INTO CompMast (CompCode,CompDesc) VALUES ('KL','Kuala Lumpur')");
    AddCustomer("C1", "HQ", "Tan Ah Kow");
  }

  Session& session() { return office.session; }
  Connection& main() { return office.session.Main(); }
  void Run(const std::string& sql) { main().Execute(sql); }

  void AddCustomer(const std::string& id, const std::string& company, const std::string& name) {
    Run(
        fmt::format("INSERT INTO CustMast (CustID,CompCode,CustName,AreaCode,CompCatCode) VALUES "
                    "({},{},{},'PERSONAL','NIL')",
                    QuoteStr(id), QuoteStr(company), QuoteStr(name)));
  }
  // Dates are yyyy-mm-dd, amounts plain figures.
  void AddLoan(const std::string& id, const std::string& date, const std::string& amount,
               const std::string& interest = "0", const std::string& company = "HQ",
               const std::string& customer = "C1") {
    Run(fmt::format(
        "INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanAmt2,PayOutAmt,"
        "TotLoanInt,LoanTypeID,LoanType,OldLoanCode) VALUES ({},{},{},{},{},{}+1,{}-2,{},'MONTH',"
        "'Unsecured',{})",
        QuoteStr(id), QuoteStr(customer), QuoteStr(company), QuoteStr(date), amount, amount, amount,
        interest, QuoteStr("old" + id)));
  }
  void AddDrawdown(const std::string& sid, const std::string& loan, const std::string& date,
                   const std::string& amount, const std::string& company = "HQ",
                   const std::string& bank = "", const std::string& cheque = "") {
    Run(fmt::format(
        "INSERT INTO DrawDownMast (SID,LoanID,TrxDate,CompCode,DrawDownAmt,Bank,ChqNo,UserID) "
        "VALUES ({},{},{},{},{},{},{},'AMY')",
        QuoteStr(sid), QuoteStr(loan), QuoteStr(date), QuoteStr(company), amount, QuoteStr(bank),
        QuoteStr(cheque)));
  }
  // `set` is what its row has else: "PayAmt=50,Bank='PBB'".
  void AddPayment(const std::string& id, const std::string& loan, const std::string& date,
                  const std::string& set = {}) {
    Run(fmt::format(
        "INSERT INTO PaymentMast "
        "(PayID,LoanID,CustID,CompCode,PayDate,PayAmt,IntPay,CapPay,IntAmt,ChargeAmt,CollectorAmt,"
        "DiscAmt,TopUpAmt,PayExtra,CollectInfoID,Bank,ChqNo,Memo1,NewLoanBal,UserID) VALUES "
        "({},{},'C1','HQ',{},0,0,0,0,0,0,0,0,0,'CASH','','','',0,'BOB')",
        QuoteStr(id), QuoteStr(loan), QuoteStr(date)));
    if (!set.empty())
      Run(fmt::format("UPDATE PaymentMast SET {} WHERE PayID={}", set, QuoteStr(id)));
  }
  void AddCharge(const std::string& id, const std::string& loan, const std::string& date,
                 const std::string& ptype, const std::string& amount,
                 const std::string& description = "", const std::string& due = "2024-01-31",
                 const std::string& batch_date = "", const std::string& company = "HQ") {
    Run(fmt::format(
        "INSERT INTO ChargeMast (ChargeID,LoanID,CompCode,TrxDate,DueDate,BatchDate,PType,"
        "ChargeAmt,ChargeDesc) VALUES ({},{},{},{},{},{},{},{},{})",
        QuoteStr(id), QuoteStr(loan), QuoteStr(company), QuoteStr(date), QuoteStr(due),
        QuoteStr(batch_date.empty() ? date : batch_date), QuoteStr(ptype), amount,
        QuoteStr(description)));
  }
  void AddExpense(const std::string& date, const std::string& debit, const std::string& credit,
                  const std::string& description, const std::string& company = "HQ",
                  const std::string& bank = "", const std::string& cheque = "") {
    Run(fmt::format(
        "INSERT INTO PersonalExp (CompCode,UserID,TrxDate,TrxDesc,DebitAmt,CreditAmt,Bank,ChqNo) "
        "VALUES ({},'EVE',{},{},{},{},{},{})",
        QuoteStr(company), QuoteStr(date), QuoteStr(description), debit, credit, QuoteStr(bank),
        QuoteStr(cheque)));
  }
  void AddScheduleRow(const std::string& loan, int row, const std::string& due,
                      const std::string& capital, const std::string& interest) {
    Run(fmt::format(
        "INSERT INTO SchMast (SchID,LoanID,CustID,DueDate,CapitalAmt,InterestAmt) VALUES "
        "({},{},'C1',{},{},{})",
        row, QuoteStr(loan), QuoteStr(due), capital, interest));
  }

  // The staged rows of a PC and report, a row a line, fields parted by " | "; with `columns` like
  // "recordid,s1,c1".
  std::vector<std::string> Rows(const StagedRun& run, const std::string& columns) {
    std::vector<std::string> lines;
    const Recordset rows = main().Query(
        fmt::format("SELECT {} FROM MasterReport WHERE pcname={} AND reportname={} ORDER BY "
                    "recordid,d1,c1",
                    columns, QuoteStr(run.pcname), QuoteStr(run.report_name)));
    for (const auto& row : rows.rows()) {
      std::string line;
      for (const Value& field : row) line += (&field == &row.front() ? "" : " | ") + field.ToText();
      lines.push_back(line);
    }
    return lines;
  }
  std::string Scratch() {
    return office.Lines("SELECT * FROM MasterReport ORDER BY 1,2,3,4,24,25", "|");
  }

  Office office{Office::State::patched};
  SilentDesk& desk = office.desk;
};

inline StagedFilter Companies(std::vector<std::string> codes) {
  return {"Company Code", "{LoanMast.CompCode}", std::move(codes)};
}

inline StagedRun RunOf(const std::string& report, const std::string& from, const std::string& to) {
  return {report, "PC-01", from, to, "", "", {}};
}

}  // namespace kaunter
