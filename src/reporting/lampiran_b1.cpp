#include "reporting/lampiran_b1.h"

#include <fmt/format.h>

#include "core/boxes.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/record.h"
#include "core/session_report.h"
#include "core/stoppable.h"
#include "core/telling.h"
#include "core/values.h"
#include "platform/host.h"
#include "reporting/report_selection.h"
#include "screen/report_job.h"

namespace kaunter {
namespace {

constexpr const char* kFile = "RekodTrans.rpt";

}  // namespace

LampiranB1::LampiranB1(Session& session, Desk& desk)
    : SessionScreen("LampiranB1", {"Lampiran B1", "Lampiran B1"}, session, desk) {
  DG.SetHasChecks(true);
  DG.onTick = [this](int row) { SaveTick(row); };
  CompCode.onPick = [this] { Forget(); };
  for (TextBox* box : {&DateFrom, &DateTo}) {
    box->max_length = kDateLength;
    box->onChange = [this] { Forget(); };
    box->onLeave = [this, box] { CheckDateBox(this->session(), *box); };
  }
  SaveCmd.onClick = [this] { Retrieve(); };
  CmdPrint.onClick = [this] { Print(); };
}

void LampiranB1::Load() {
  FillCompanies(CompCode, session());
  ChooseHome(session(), CompCode);
  const DateTime today = ServerTime(main());
  DateFrom.SetText(ShowDate(DateTime{today.year, today.month, 1}));
  DateTo.SetText(ShowDate(today.DateOnly()));
  Forget();
}

void LampiranB1::Unload() { DropStagedRows(main(), ThisHostName(), kFile); }

void LampiranB1::Forget() {
  DG.Clear();
  CountLBL.SetText({});
}

bool LampiranB1::Check() {
  if (CompCode.empty()) return Refuse(CompCode, {"Company Code is required", "请选择公司"});
  return RequireDate(session(), DateFrom, {"Date From is required", "请输入开始日期"}) &&
         RequireDate(session(), DateTo, {"Date To is required", "请输入结束日期"}) &&
         CheckDateOrder(session(), DateFrom, DateTo);
}

void LampiranB1::Retrieve() {
  if (!Check() || !Confirm({"Retrieve Loan ?", "列出贷款？"})) return;
  Forget();
  try {
    Recordset loans;
    const bool whole = RunStoppable(
        session(), desk(), session().In(title()), {"The loans are read ...", "正在读取贷款..."},
        [&](const GoOn&) {
          loans = main().Query(fmt::format(
              "SELECT l.LoanID,l.TrxDate,c.custname,l.loanamt,l.agreementprint from loanmast as l "
              "inner join custmast as c on l.custid=c.custid  where l.trxdate >= {} and l.TrxDate "
              "<= {} and l.CompCode={} order by l.trxdate",
              SqlDate(DateFrom.text()), SqlDate(DateTo.text()), QuoteStr(CompCode.text())));
        });
    if (!whole) return;
    FillGrid(DG, loans);
    for (int row = 0; row < DG.RowCount(); ++row) {
      const Value& printed = loans.rows()[static_cast<std::size_t>(row)][4];
      DG.SetTicked(row, CountsAsTrue(NullToEmpty(printed)));
    }
  } catch (const SqlError& failure) {
    LogRollback(session(), "Lampiran B1", failure);
    Tell(MessageKind::critical,
         Failed({"an error occur during get loan list", "读取贷款列表时出现错误"}, failure,
                kNotRead));
    Forget();
    return;
  }
  ShowCount();
}

void LampiranB1::ShowCount() {
  int printed = 0;
  for (int row = 0; row < DG.RowCount(); ++row) printed += DG.Ticked(row) ? 1 : 0;
  CountLBL.SetText(
      session().In({fmt::format("{} loans, {} with a printed agreement", DG.RowCount(), printed),
                    fmt::format("{} 笔贷款，{} 笔已打印合约", DG.RowCount(), printed)}));
}

// A tick that could not be saved is taken back.
void LampiranB1::SaveTick(int row) {
  const bool on = DG.Ticked(row);
  const bool saved = AttemptOnRecord(
      "Lampiran B1 - " + DG.Cell(row, 0),
      {"an error occur during saving the loan", "储存贷款时出现错误"}, [&] {
        ExecuteOnRow(main(),
                     fmt::format("Update LoanMast SET AgreementPrint={} where LoanID={}",
                                 on ? 1 : 0, QuoteStr(DG.Cell(row, 0))),
                     DG.Cell(row, 0));
      });
  if (saved) {
    WriteLog(session(), LogLine(session(), fmt::format("Lampiran B1 - {}, agreement printed: {}",
                                                       DG.Cell(row, 0), on ? "yes" : "no")));
  } else {
    DG.SetTicked(row, !on);
  }
  ShowCount();
}

void LampiranB1::Print() {
  if (!Check()) return;
  SelectionRequest request;
  request.file = kFile;
  request.DateField = "{LoanMast.TrxDate}";
  request.DateFrom = DateFrom.text();
  request.DateTo = DateTo.text();
  request.filters = {{"Company Code", "{LoanMast.CompCode}", {CompCode.text()}}};
  request.level = session().CurrentLevel;
  const auto selection = BuildSelectionFormula(request);
  StagedRun run;
  run.report_name = kFile;
  run.pcname = ThisHostName();
  run.date_from = DateFrom.text();
  run.date_to = DateTo.text();
  run.filters = request.filters;
  if (!selection || !StageRekodTrans(session(), desk(), run)) return;
  ReportJob job = SessionReport(session(), kFile);
  job.ReportTitle = selection->title;
  job.SelectionFormula = selection->formula + " AND " + StagedFormula(run.pcname, kFile);
  job.ParameterFields = {{0, "RptID;1;True"},
                         {1, fmt::format("ToDay;{};True", DateParameter(DateTo.text()))},
                         {2, "LastBal;1;True"},
                         {3, fmt::format("SchInt;{};True", session().settings.SchInt)}};
  WriteLog(session(), LogLine(session(), "Lampiran B1 - Report Printed"));
  desk().Print(job);
}

}  // namespace kaunter
