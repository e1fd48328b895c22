// EInvFrm, "E-Invoicing": the income documents of a company go to the tax authority's service, or
// are cancelled there, one request each, and what came back is recorded before the next goes out.
//
// What is shown counts: ticks of rows that a filter hides send nothing. A document that was sent
// before, or may have been, goes out again only when the person says so.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "core/record_right.h"
#include "core/session_screen.h"
#include "einvoice/invoice_line.h"
#include "einvoice/invoice_service.h"
#include "einvoice/submission.h"

namespace kaunter {

class EInvFrm : public SessionScreen {
 public:
  EInvFrm(Session& session, Desk& desk);

  void Load() override;

  // How long a request that is under way is waited for once Stop was pressed: given up at once, its
  // document would count as unknown.
  std::chrono::milliseconds patience{5000};

  ComboBox CompCode{*this, "CompCode", {"Company", "公司"}};
  TextBox DateFrom{*this, "DateFrom", {"From Date", "开始日期"}, Kind::date};
  TextBox DateTo{*this, "DateTo", {"To Date", "结束日期"}, Kind::date};
  ComboBox SendType{*this, "SendType", {"Send", "发送"}, {"Submit", "Cancel"}};
  ComboBox SubmitMethod{*this, "SubmitMethod", {"Method", "方式"}, {"Individual", "Consolidated"}};
  Button SaveCmd{*this, "SaveCmd", {"&Process", "处理(&P)"}, ButtonRole::primary};
  Label TokenLBL{*this, "TokenLBL"};
  CheckBox C3{*this, "C3", {"Tick all without uuid", "勾选所有没有 uuid 的"}};
  ComboBox StateFilter{*this, "StateFilter", {"Show", "显示"}};
  Label ResultLBL{*this, "ResultLBL"};
  Grid vsd;
  TextBox Msg{*this, "Msg", {"Reply", "回复"}, Kind::memo};
  TextBox Checks{*this, "Checks", {"State and check list", "状态与检查"}, Kind::memo};
  Button CmdPrint{*this, "CmdPrint", {"&Export", "发送(&E)"}};
  Button CmdStatus{*this, "CmdStatus", {"Get &Status", "查询状态(&S)"}};
  Button CmdSettle{*this, "CmdSettle", {"Settle &Unknown", "处理不明单据(&U)"}};
  Button CmdClear{*this, "CmdClear", {"&Clear", "清除(&C)"}};
  Button CancelCmd{*this, "CancelCmd", {"C&lose", "关闭(&L)"}, ButtonRole::cancel};

 private:
  // Stops between documents, and during a request only when the service keeps silent.
  class Run;

  // What a figure of the main window counts: its days, company and method.
  void TakeHandOver();
  SendMode mode() const;
  void ChangeCompany();
  void ChangeSendType();
  void Clear();
  void ForgetLines();

  // --- the list
  void Process();
  bool ReadLines(const std::string& sid);
  void Refilter();
  void ShowCounts();
  void ShowLine(std::size_t line);
  void ShowCurrent();
  void TickAll(bool on);
  void OpenSource(int row, int column);
  InvoiceLine& LineOf(int row) { return lines_[shown_[static_cast<std::size_t>(row)]]; }

  // --- sending, in einv_frm_send.cpp
  void Export();
  // The rows that are ticked and shown, without those that the person does not want sent again.
  std::vector<std::size_t> TickedLines();
  // False when the run is to end.
  bool SendOne(Submission& submission, std::size_t line, Run& run);
  bool AgreeToNewToken(Run& run);
  void AskStatuses();
  // False when the service does not tell it.
  bool AskStatus(Submission& submission, InvoiceLine& line, std::vector<std::string>& unkept);
  // False for what is longer than its column.
  bool KeepIfItFits(InvoiceLine& line, const std::function<void()>& keep);
  bool TakeStatus(InvoiceLine& line, const StatusReply& reply);
  void SettleUnknown();
  bool SettleWithUuid(InvoiceLine& line, const std::string& uuid);
  void NoteSettled(const InvoiceLine& line, std::string_view as);

  InvoiceService service_;
  RecordRight right_;
  std::string supplier_;
  std::vector<InvoiceLine> lines_;
  std::vector<std::size_t> shown_;  // of the rows of the grid, in lines_
};

}  // namespace kaunter
