// PaymentReaderfrm, "Payment Reader": the lines of a bank's text file, or of a list of planned or
// due payments, become payments in one pass. Before that each line tells what it will do to its
// loan; afterwards there is a paper of what was taken and what failed, and a file of what failed.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "bank/bank_layout.h"
#include "bank/reader_preview.h"
#include "bank/reader_row.h"
#include "core/session_screen.h"

namespace kaunter {

class StopBar;

class PaymentReaderfrm : public SessionScreen {
 public:
  PaymentReaderfrm(Session& session, Desk& desk);

  ComboBox Bank{*this, "Bank", {"Import Text File Bank", "文本文件银行"}};
  Button ReadCmd{*this, "ReadCmd", {"&Read Text File", "读取文本文件(&R)"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  Button ListCmd{*this, "ListCmd", {"Payment &List", "付款计划(&L)"}};
  Button DueCmd{*this, "DueCmd", {"Cheques on &Due", "到期支票(&D)"}};
  Grid DG{*this,
          "DG",
          {"Payments", "付款"},
          {{{"Date", "日期"}, Kind::date, 11},
           {{"Loan ID", "贷款编号"}, Kind::text, 14, true},
           {{"Customer ID", "顾客编号"}, Kind::text, 10},
           {{"Customer Name", "顾客姓名"}, Kind::text, 22},
           {{"Amount", "金额"}, Kind::money, 11},
           {{"Type", "方式"}, Kind::text, 6},
           {{"What Will Happen", "处理结果预览"}, Kind::text, 70},
           {{"Remarks", "备注"}, Kind::text, 10},
           {{"Payment ID", "付款编号"}, Kind::text, 10},
           {{"Error", "错误"}, Kind::text, 8},
           {{"Reference No", "参考号码"}, Kind::text, 10}}};
  Label TotalLBL{*this, "TotalLBL"};
  Button CmdCheckAll{*this, "CmdCheckAll", {"Select &All", "全选(&A)"}};
  Button CmdUncheckAll{*this, "CmdUncheckAll", {"Select &None", "全不选(&N)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Process", "处理(&P)"}, ButtonRole::primary};
  Button CmdPrint{*this, "CmdPrint", {"Prin&t", "打印(&T)"}};
  Button FailedCmd{*this, "FailedCmd", {"&Failed Lines", "失败的行(&F)"}};
  Button CmdClear{*this, "CmdClear", {"Cl&ear", "清除(&E)"}};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;

 private:
  // --- reading
  void ReadTextFile();
  std::vector<ReaderRow> LinesOf(const BankLayout& layout, const std::string& path,
                                 StopBar& progress);
  // `source` is told on the paper, before the date.
  void List(const Caption& question, const Caption& source,
            const std::function<std::vector<ReaderRow>(const DateTime& day)>& read);
  // Clears what stands there, looks at what `read` gives and shows it; false when it failed or was
  // stopped, which has then been told.
  bool Show(const Caption& failed,
            const std::function<std::vector<ReaderRow>(StopBar& progress)>& read);
  void Clear();

  // --- the list
  std::size_t Count() const { return rows_.size(); }
  std::vector<std::string> CellsOf(std::size_t index) const;
  RowTone ToneOfRow(std::size_t index) const;
  void ShowRow(std::size_t index);
  void TickAll(bool on);
  void Tick(int row);
  void ChangeLoan(int row, const std::string& before);
  void ShowTotal();
  void OpenPayment(int row);

  // --- processing
  void Process();
  bool ConfirmDoubted();
  void ProcessTicked();
  void RebuildBehind();
  void Rebuild(const ReaderRow& row);
  std::vector<std::size_t> Ticked() const;

  void Print();
  bool CannotStand(const ReaderRow& row, std::size_t index) const;
  void WriteFailedLines();

  std::vector<BankLayout> layouts_;
  std::vector<ReaderRow> rows_;  // a row of the grid each
  std::vector<ReaderOutlook> outlooks_;
  std::set<std::string> behind_;  // loans whose payments are stored and not replayed
  std::string source_;            // what was read, for the paper
  std::string path_;              // of the file
  std::string folder_;            // of the file read last
  std::string head_;              // what its payments stand behind
  std::string notes_;             // on what was passed by
};

}  // namespace kaunter
