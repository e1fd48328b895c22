// The boxes of the collateral and the property behind it, on the loan and on its application.
#pragma once

#include "screen/control.h"

namespace kaunter {

struct PropertyBoxes {
  // Without a frame they stand on the page that is being declared.
  explicit PropertyBoxes(Screen& on, Frame* in = nullptr) : screen(on), frame(in) {}

  Screen& screen;
  Frame* frame;
  ComboBox CollateralID{screen, "CollateralID", {"Collateral Type", "抵押品种类"}, {}, frame};
  TextBox Memo2{screen, "Memo2", {"Collateral Desc", "抵押品说明"}, Kind::text, frame};
  TextBox Memo4{screen, "Memo4", {"Collateral Market Value", "抵押品市价"}, Kind::money, frame};
  TextBox ForceSalesAmt{
      screen, "ForceSalesAmt", {"Force Sales Value", "拍卖价"}, Kind::money, frame};
  TextBox ValuerName{screen, "ValuerName", {"Name of Valuer", "估价师"}, Kind::text, frame};
  TextBox ValuerFrom{screen, "ValuerFrom", {"Valuer From", "估价公司"}, Kind::text, frame};
  TextBox ValuationDate{screen, "ValuationDate", {"Valuation Date", "估价日期"}, Kind::date, frame};
  TextBox PropertyStatus{
      screen, "PropertyStatus", {"Property Status", "产业状态"}, Kind::text, frame};
  TextBox PropertyAdd1{screen, "PropertyAdd1", {"Property Address", "产业地址"}, Kind::text, frame};
  TextBox PropertyType{screen, "PropertyType", {"Property Type", "产业种类"}, Kind::text, frame};
  TextBox BuiltUpArea{screen, "BuiltUpArea", {"Built Up Area", "建筑面积"}, Kind::text, frame};
  TextBox LandArea{screen, "LandArea", {"Land Area", "地面积"}, Kind::text, frame};
  TextBox LandStatus{screen, "LandStatus", {"Land Status", "地契状态"}, Kind::text, frame};
  TextBox LeaseHoldExpDate{
      screen, "LeaseHoldExpDate", {"Leasehold Expiry", "租契期满"}, Kind::date, frame};
  TextBox ExpectRental{screen, "ExpectRental", {"Expected Rental", "预计租金"}, Kind::money, frame};
  TextBox TitleType{screen, "TitleType", {"Title Type", "地契种类"}, Kind::text, frame};
  TextBox TitleNo{screen, "TitleNo", {"Title No", "地契号码"}, Kind::text, frame};
  TextBox Mukim{screen, "Mukim", {"Mukim", "区"}, Kind::text, frame};
  TextBox LotNoPTNo{screen, "LotNoPTNo", {"Lot / PT No", "地段号码"}, Kind::text, frame};
  TextBox District{screen, "District", {"District", "县"}, Kind::text, frame};
  TextBox SectionNo{screen, "SectionNo", {"Section No", "段号"}, Kind::text, frame};
  TextBox State{screen, "State", {"State", "州"}, Kind::text, frame};
  TextBox PurchasePrice{screen, "PurchasePrice", {"Purchase Price", "买价"}, Kind::money, frame};
  TextBox PropertyLand{screen, "PropertyLand", {"Property Land", "产业用地"}, Kind::text, frame};
  TextBox BumiPrice{screen, "BumiPrice", {"Bumi Price", "土著价"}, Kind::money, frame};
  TextBox Construction{screen, "Construction", {"Construction", "建筑"}, Kind::text, frame};
  TextBox InsuranceComp{
      screen, "InsuranceComp", {"Insurance Company", "保险公司"}, Kind::text, frame};
  TextBox SumInsured{screen, "SumInsured", {"Sum Insured", "保额"}, Kind::money, frame};
  TextBox MRTA{screen, "MRTA", {"MRTA", "房贷保险"}, Kind::text, frame};
};

}  // namespace kaunter
