// The boxes of one guarantor: a control array, index 0 and 1. The columns of the second carry the
// suffix 2.
#pragma once

#include <string>
#include <vector>

#include "core/record.h"
#include "core/waiting_picture.h"
#include "screen/control.h"

namespace kaunter {

struct GuarantorBoxes {
  GuarantorBoxes(Screen& screen, int index, Frame& frame);
  // GuarantorName(1) to the column GuarantorName2, and so on; the file name of the photo to Pic1 or
  // Pic2.
  void Bind(Record& record);
  // The boxes with a column "Guarantor...": a TextBox or a ComboBox each.
  std::vector<Control*> All();
  // The column of a box of the set whose columns carry `suffix` ("" or "2").
  static std::string Column(const Control& box, const std::string& suffix);

  int index;           // 0, 1
  std::string suffix;  // of the control: "(0)", "(1)"
  std::string column_suffix;
  Screen& screen;
  Control* frame;
  TextBox GuarantorName{screen, "GuarantorName" + suffix, {"Name", "姓名"}, Kind::text, frame};
  TextBox GuarantorNIC{screen, "GuarantorNIC" + suffix, {"New IC", "新身份证"}, Kind::text, frame};
  TextBox GuarantorOIC{screen, "GuarantorOIC" + suffix, {"Old IC", "旧身份证"}, Kind::text, frame};
  TextBox GuarantorOthIC{
      screen, "GuarantorOthIC" + suffix, {"Other IC", "其他证件"}, Kind::text, frame};
  TextBox GuarantorRelationship{
      screen, "GuarantorRelationship" + suffix, {"Relationship", "关系"}, Kind::text, frame};
  ComboBox GuarantorGender{
      screen, "GuarantorGender" + suffix, {"Gender", "性别"}, {"MALE", "FEMALE"}, frame};
  ComboBox GuarantorRace{screen, "GuarantorRace" + suffix, {"Race", "种族"}, {}, frame};
  TextBox GuarantorHP1{screen, "GuarantorHP1" + suffix, {"Mobile", "手机"}, Kind::text, frame};
  TextBox GuarantorMN{
      screen, "GuarantorMN" + suffix, {"Membership No", "会员号码"}, Kind::text, frame};
  TextBox GuarantorComp{
      screen, "GuarantorComp" + suffix, {"Company", "公司名称"}, Kind::text, frame};
  TextBox GuarantorCompBiz{
      screen, "GuarantorCompBiz" + suffix, {"Business", "业务"}, Kind::text, frame};
  TextBox GuarantorCompPos{
      screen, "GuarantorCompPos" + suffix, {"Position", "职位"}, Kind::text, frame};
  TextBox GuarantorCompIncome{
      screen, "GuarantorCompIncome" + suffix, {"Monthly Income", "月入"}, Kind::money, frame};
  TextBox GuarantorCompAdd1{
      screen, "GuarantorCompAdd1" + suffix, {"Address", "地址"}, Kind::text, frame};
  TextBox GuarantorCompAdd2{
      screen, "GuarantorCompAdd2" + suffix, {"Address 2", "地址 2"}, Kind::text, frame};
  TextBox GuarantorCompAdd3{
      screen, "GuarantorCompAdd3" + suffix, {"Address 3", "地址 3"}, Kind::text, frame};
  TextBox GuarantorCompPostCode{
      screen, "GuarantorCompPostCode" + suffix, {"Post Code", "邮区"}, Kind::text, frame};
  TextBox GuarantorCompCity{
      screen, "GuarantorCompCity" + suffix, {"City", "城市"}, Kind::text, frame};
  TextBox GuarantorCompState{
      screen, "GuarantorCompState" + suffix, {"State", "州"}, Kind::text, frame};
  TextBox GuarantorCompTel1{
      screen, "GuarantorCompTel1" + suffix, {"Tel", "电话"}, Kind::text, frame};
  TextBox GuarantorCompFax1{
      screen, "GuarantorCompFax1" + suffix, {"Fax", "传真"}, Kind::text, frame};
  TextBox Pic;                                     // Pic1, Pic2: file name of the photo
  Picture Photo;                                   // GuarantorPhoto(0), (1)
  WaitingPicture card_photo{"guarantor", ".jpg"};  // of the card, until the loan is saved
  Button cmdCardReader{
      screen, "cmdCardReader" + suffix, {"Read MyKad", "读取身份证"}, ButtonRole::plain, frame};
  Button CmdGetGuarantor{screen,
                         "CmdGetGuarantor" + suffix,
                         {"Get Guarantor &Info", "取担保人资料(&I)"},
                         ButtonRole::plain,
                         frame};
};

}  // namespace kaunter
