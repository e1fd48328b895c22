// ECustMast, "Customer Detial - E-Invocing": the tax identity of a customer, or of a company, kept
// under its number beside its own record.
#pragma once

#include <string>
#include <vector>

#include "core/record.h"
#include "core/record_right.h"
#include "core/session_screen.h"
#include "core/stored_row.h"
#include "einvoice/tin_lookup.h"

namespace kaunter {

class ECustMast : public SessionScreen {
 public:
  ECustMast(Session& session, Desk& desk);

  void Load() override;
  bool RequestClose() override;

  Label Who{*this, "Who"};
  ComboBox CustType{*this, "CustType", {"ID Type", "证件种类"}, {"NRIC", "PASSPORT", "BRN"}};
  TextBox CustTypeID{*this, "CustTypeID", {"ID No", "证件号码"}};
  Button Command1{*this, "Command1", {"Get &TIN", "取得税号(&T)"}};
  TextBox TIN{*this, "TIN", {"TIN", "税务编号"}};
  TextBox CustName{*this, "CustName", {"Registered Name", "注册名称"}};
  TextBox MISCCode{*this, "MISCCode", {"Misc Code", "行业代码"}};
  Label MiscName{*this, "MiscName"};
  TextBox Address{*this, "Address", {"Address", "地址"}, Kind::memo};
  TextBox PostCode{*this, "PostCode", {"Post Code", "邮政编码"}};
  TextBox City{*this, "City", {"City", "城市"}};
  ComboBox State{*this, "State", {"State", "州属"}, {}, true};
  Label StateName{*this, "StateName"};
  TextBox Country{*this, "Country", {"Country", "国家"}};
  Label CountryName{*this, "CountryName"};
  TextBox Phone{*this, "Phone", {"Phone", "电话"}};
  TextBox Email{*this, "Email", {"Email", "电邮"}};
  Button SaveCmd{*this, "SaveCmd", {"&Save", "储存(&S)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Close", "关闭(&C)"}, ButtonRole::cancel};

 private:
  // False for what is neither a customer nor a company, or not the person's.
  bool FindOwner();
  void FillStates();
  void Read();
  void FillFromCustomer();
  void FillFromCompany();
  void ShowNames();
  void GetTin();
  void PickState();

  // In the order in which they are told.
  bool CheckRequired();
  bool CheckFields();
  bool LeaveState();
  void Save();
  void Store(Recordset& written);
  Recordset Stored() const;

  Record record_;
  RecordRight right_;
  TinLookup tin_;
  std::string id_;         // of the customer, or the code of the company
  std::string comp_code_;  // whose customer it is, or the company itself
  bool is_company_ = false;
  bool has_row_ = false;
  StoredRow row_;
};

}  // namespace kaunter
