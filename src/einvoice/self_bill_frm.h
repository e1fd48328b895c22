// SelfBillFrm, "Self-Bill Submission": a self-billed invoice with its items, kept and sent in one
// go. A document that has a uuid is with the service and is never sent again.
//
// Between the sending and the answer the document is marked (sending_marks): one whose answer is
// not known is sent again only by a person who is asked and says so.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"
#include "core/stored_row.h"
#include "einvoice/document_check.h"
#include "einvoice/invoice_service.h"
#include "einvoice/self_bill.h"
#include "einvoice/sending_marks.h"
#include "einvoice/tin_lookup.h"

namespace kaunter {

class SelfBillFrm : public SessionScreen {
 public:
  SelfBillFrm(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  TextBox SID{*this, "SID", {"Document No", "单据编号"}};
  TextBox InvoiceNo{*this, "InvoiceNo", {"Invoice No", "发票号码"}};
  TextBox TrxDate{*this, "TrxDate", {"Date", "日期"}, Kind::date};
  ComboBox CompCode{*this, "CompCode", {"Company Code", "公司"}};
  ComboBox SelfBillTaxCat{*this, "SelfBillTaxCat", {"Tax Code", "税务代码"}};
  TextBox SelfBillStatus{*this, "SelfBillStatus", {"Status", "状态"}};
  TextBox uuid{*this, "uuid", {"uuid", "uuid"}};
  Label UserLBL{*this, "UserLBL"};

  TextBox SuppName{*this, "SuppName", {"Company Name", "公司名称"}};
  ComboBox SuppIDType{*this, "SuppIDType", {"ID Type", "证件种类"}, {"NRIC", "PASSPORT", "BRN"}};
  TextBox SuppIDNo{*this, "SuppIDNo", {"ID No", "证件号码"}};
  TextBox SuppTin{*this, "SuppTin", {"Tin No", "税号"}};
  Button Command1{*this, "Command1", {"Get &TIN", "查税号(&T)"}};
  TextBox SuppMiscCode{*this, "SuppMiscCode", {"Misc Code", "行业代码"}};
  Label MiscName{*this, "MiscName"};
  TextBox SuppBankAcc{*this, "SuppBankAcc", {"Bank Account", "银行户口"}};
  TextBox SuppSST{*this, "SuppSST", {"SST No", "SST 号码"}};
  TextBox SuppAdd{*this, "SuppAdd", {"Address", "地址"}, Kind::memo};
  TextBox SuppPostCode{*this, "SuppPostCode", {"Post Code", "邮编"}};
  TextBox SuppCity{*this, "SuppCity", {"City", "城市"}};
  TextBox SuppState{*this, "SuppState", {"State Code", "州属代码"}};
  Label StateName{*this, "StateName"};
  TextBox SuppCountry{*this, "SuppCountry", {"Country Code", "国家代码"}};
  Label CountryName{*this, "CountryName"};
  TextBox SuppTel{*this, "SuppTel", {"Phone", "电话"}};
  TextBox SuppEmail{*this, "SuppEmail", {"Email", "电邮"}};

  Grid vsd{*this,
           "vsd",
           {"Items", "项目"},
           {{{"No", "序"}, Kind::integer, 4},
            {{"Class Code", "分类代码"}, Kind::text, 9, true},
            {{"Description", "说明"}, Kind::text, 34, true},
            {{"Qty", "数量"}, Kind::integer, 6, true},
            {{"Amount", "金额"}, Kind::money, 12, true},
            {{"Tax Category", "税务代码"}, Kind::text, 10, true},
            {{"Tax %", "税率 %"}, Kind::rate, 8, true},
            {{"Tax Amount", "税额"}, Kind::money, 11, true}}};
  TextBox SelfBillAmt{*this, "SelfBillAmt", {"Total Amount", "总额"}, Kind::money};
  TextBox SelfBillTaxAmt{*this, "SelfBillTaxAmt", {"Total Tax", "总税额"}, Kind::money};
  Grid CheckDG{*this,
               "CheckDG",
               {"The service would refuse", "服务会拒绝之处"},
               {{{"Field", "栏位"}, Kind::text, 10}, {{"What", "问题"}, Kind::text, 30}}};
  TextBox Result{*this, "Result", {"Reply", "答复"}, Kind::memo};

  Button SSCommand3{*this, "SSCommand3", {"Sea&rch", "查找(&R)"}};
  Button CmdStatus{*this, "CmdStatus", {"&Get Status", "查询状态(&G)"}};
  Button SSCommand4{*this, "SSCommand4", {"Cancel Self&bill", "作废单据(&B)"}, ButtonRole::danger};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  bool IsNew() const { return loaded_id_.empty(); }
  bool Changed() const;

  // --- showing a document
  void BindRecord();
  void BindChecks();
  void StartNew();
  void LeaveSID();
  // By value: the box that the number may come from is filled anew.
  void LoadBill(std::string id);
  bool ReadItems(const std::string& id);
  void KeepAsStored();
  void ShowNames();
  void ShowButtons();
  void ShowResult(const std::string& text);

  // --- the items
  // A line that something is typed in; the last line of the grid waits for the next one.
  bool IsLine(int row) const;
  int Lines() const;
  std::string Typed() const;
  void LeaveCell(int row, int column, const std::string& before);
  bool LeaveFigure(int row, int column);
  void PickCode();
  void RemoveLine();
  void KeepBlankLine();
  void SumUp();

  // As it is shown.
  SelfBill Bill() const;
  void ShowRemarks();

  // --- the save
  bool Check();
  bool CheckRequired();
  bool CheckItems();
  void Save();
  bool Store();
  void WriteItems(const std::string& id);
  Recordset ReadRow(const std::string& id);

  // --- the service
  bool LoadCompany();
  // The company's block, and a token where there is one to be had.
  bool Ready();
  void Submit();
  // False when it is not to be sent; with `given` when the service has it already.
  bool MaySend(const SendingMark& seen, std::string& given);
  std::string AskForUuid(const SendingMark& seen);
  StatusReply StatusOf(const std::string& of);
  std::string Ask(std::string_view method, const std::string& url, std::string_view body);
  // True when the service gave a uuid. `mark` is the one that was seen, and becomes the own.
  bool Send(SendingMark& mark, std::string& given);
  void Remember(SendingMark& mark, const std::string& given);
  bool KeepUuid(SendingMark& mark, const std::string& given);
  void AskStatus();
  void KeepStatus(const std::string& status);
  void CancelBill();
  void TellFailed(const Caption& words, const std::exception& failure);

  Record record_;
  RecordRight right_;
  InvoiceService service_;
  SendingMarks marks_;
  TinLookup tin_;
  StoredRow stored_, written_;
  std::unique_ptr<DocumentCheck> check_;
  std::string loaded_id_;  // "" for a new document
  std::string remembered_items_;
  std::string company_;  // whose block and token are at hand
  std::string company_block_;
  int entered_column_ = 0;
};

}  // namespace kaunter
