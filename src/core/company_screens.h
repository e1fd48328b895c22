// CompCodeFrm keeps the lending companies, CompProfileFrm the one row that tells who the licensee
// is.
#pragma once

#include "core/record.h"
#include "core/session_screen.h"

namespace kaunter {

class CompCodeFrm : public SessionScreen {
 public:
  CompCodeFrm(Session& session, Desk& desk);

  Tab Pages{*this, "Pages"};
  Frame CompanyPage{*this, "CompanyPage", {"Company", "公司"}, &Pages};
  TextBox CompCode{*this, "CompCode", {"Company Code", "公司编号"}, Kind::text, &CompanyPage};
  TextBox CompDesc{*this, "CompDesc", {"Company Name", "公司名称"}, Kind::text, &CompanyPage};
  ComboBox AreaCode{*this, "AreaCode", {"Company Type", "公司种类"}, {}, &CompanyPage, true};
  TextBox Address{*this, "Address", {"Address", "地址"}, Kind::memo, &CompanyPage};
  TextBox PersonIncharge{
      *this, "PersonIncharge", {"Person in Charge", "负责人"}, Kind::text, &CompanyPage};
  TextBox ICNo{*this, "ICNo", {"IC No", "身份证"}, Kind::text, &CompanyPage};
  TextBox CompNo{*this, "CompNo", {"Co. Reg. No", "公司注册号码"}, Kind::text, &CompanyPage};
  TextBox LicenseNo{*this, "LicenseNo", {"License No", "执照号码"}, Kind::text, &CompanyPage};
  TextBox CompanyType{
      *this, "CompanyType", {"Business Type", "业务种类"}, Kind::text, &CompanyPage};
  TextBox Tel1{*this, "Tel1", {"Tel 1", "电话 1"}, Kind::text, &CompanyPage};
  TextBox Tel2{*this, "Tel2", {"Tel 2", "电话 2"}, Kind::text, &CompanyPage};
  TextBox Fax{*this, "Fax", {"Fax", "传真"}, Kind::text, &CompanyPage};
  TextBox HP1{*this, "HP1", {"Mobile 1", "手机 1"}, Kind::text, &CompanyPage};
  TextBox HP2{*this, "HP2", {"Mobile 2", "手机 2"}, Kind::text, &CompanyPage};
  TextBox email{*this, "email", {"E-mail", "电邮"}, Kind::text, &CompanyPage};
  TextBox SMSName{*this, "SMSName", {"SMS Name", "短讯名称"}, Kind::text, &CompanyPage};
  TextBox CashInHand{*this, "CashInHand", {"Cash in Hand", "手头现金"}, Kind::money, &CompanyPage};
  TextBox CashInBank{*this, "CashInBank", {"Cash in Bank", "银行存款"}, Kind::money, &CompanyPage};
  CheckBox SerialReceiptNo{
      *this, "SerialReceiptNo", {"Serial receipt numbers", "连续收据号码"}, &CompanyPage};
  TextBox LogoFile{*this, "LogoFile", {"Logo File", "标志文件"}, Kind::text, &CompanyPage};
  TextBox Letterhead{
      *this, "Letterhead", {"Letterhead File", "信头文件"}, Kind::text, &CompanyPage};
  Frame AmlPage{*this, "AmlPage", {"AML", "反洗钱"}, &Pages};
  CheckBox AMLA{*this, "AMLA", {"Screening on", "启用审查"}, &AmlPage};
  CheckBox AMLACheckIC{*this, "AMLACheckIC", {"Check IC", "审查身份证"}, &AmlPage};
  CheckBox AMLAWarning{*this, "AMLAWarning", {"Warn only", "只警告"}, &AmlPage};
  TextBox AMLALoan{*this, "AMLALoan", {"Loan Threshold", "贷款限额"}, Kind::money, &AmlPage};
  TextBox AMLAPayment{
      *this, "AMLAPayment", {"Payment Threshold", "付款限额"}, Kind::money, &AmlPage};
  TextBox AMLAOfficer{
      *this, "AMLAOfficer", {"Compliance Officer", "合规主任"}, Kind::text, &AmlPage};
  CheckBox DisableSTR{
      *this, "DisableSTR", {"No suspicious transaction reports", "不用可疑交易报告"}, &AmlPage};
  Frame TaxPage{*this, "TaxPage", {"E-Invoicing", "电子发票"}, &Pages};
  TextBox SQLPath{*this, "SQLPath", {"SQL Path", "SQL 路径"}, Kind::text, &TaxPage};
  TextBox ClientID{*this, "ClientID", {"Client ID", "客户编号"}, Kind::password, &TaxPage};
  TextBox ClientSecret{
      *this, "ClientSecret", {"Client Secret", "客户密钥"}, Kind::password, &TaxPage};
  TextBox MyTaxClientID{
      *this, "MyTaxClientID", {"Tax Client ID", "税务客户编号"}, Kind::password, &TaxPage};
  TextBox MyTaxClientSecret{
      *this, "MyTaxClientSecret", {"Tax Client Secret", "税务客户密钥"}, Kind::password, &TaxPage};
  Button ECust{*this, "ECust", {"Tax &Identity", "税务资料(&I)"}, ButtonRole::plain, &TaxPage};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CmdClear{*this, "CmdClear", {"C&lear", "清除(&L)"}};
  Button CmdDelete{*this, "CmdDelete", {"&Delete", "删除(&D)"}, ButtonRole::danger};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void LeaveCode();
  void LoadCompany(const std::string& code);
  bool MayDelete(const std::string& code);
  bool CheckAmount(TextBox& box);
  void Save();
  void Delete();
  void ClearAll();

  Record record_;
};

class CompProfileFrm : public SessionScreen {
 public:
  CompProfileFrm(Session& session, Desk& desk);

  TextBox CompanyName{*this, "CompanyName", {"Company Name", "公司名称"}};
  TextBox RegNo{*this, "RegNo", {"Registration No", "注册号码"}};
  TextBox LicenseNo{*this, "LicenseNo", {"License No", "执照号码"}};
  TextBox Tel{*this, "Tel", {"Tel", "电话"}};
  TextBox Fax{*this, "Fax", {"Fax", "传真"}};
  TextBox email{*this, "email", {"E-mail", "电邮"}};
  TextBox Address1{*this, "Address1", {"Address", "地址"}};
  TextBox Address2{*this, "Address2", {"Address 2", "地址 2"}};
  TextBox Address3{*this, "Address3", {"Address 3", "地址 3"}};
  TextBox PostCode{*this, "PostCode", {"Post Code", "邮区"}};
  TextBox City{*this, "City", {"City", "城市"}};
  TextBox State{*this, "State", {"State", "州"}};
  TextBox LogoFile{*this, "LogoFile", {"Logo File", "标志文件"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

  void Load() override;
  bool RequestClose() override;

 private:
  void Save();

  Record record_;
};

}  // namespace kaunter
