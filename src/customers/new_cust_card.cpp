// The reader of identity cards on the customer screen, for the customer, the spouse and a referrer.
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/card_boxes.h"
#include "core/session_report.h"
#include "core/settings.h"
#include "core/values.h"
#include "core/web_cam.h"
#include "customers/document_store.h"
#include "customers/new_cust_frm.h"
#include "screen/report_job.h"

namespace kaunter {

void NewCustFrm::BindCardReader() {
  cmdCardReader.onClick = [this] { ReadCustomerCard(); };
  CmdWebCam.onClick = [this] { TakePhoto(); };
  cmdSpouseCardReader.onClick = [this] {
    ReadCardInto(session(), {.name = CustSpouseName,
                             .new_ic = CustSpouseNIC,
                             .birth = &CustSpouseDOB,
                             .others = {{CardField::old_ic, &CustSpouseOIC},
                                        {CardField::gender, &CustSpouseGender}},
                             .race = &CustSpouseRace});
  };
  cmdRefererCardReader.onClick = [this] {
    ReadCardInto(
        session(),
        {.name = RefererName, .new_ic = RefererNIC, .others = {{CardField::old_ic, &RefererOIC}}});
  };
}

void NewCustFrm::ReadCustomerCard() {
  if (CompCode.empty()) {
    Refuse(CompCode, {"Please Select Company Code", "请选择公司"});
    return;
  }
  WaitingPicture photo("cust", ".jpg");
  const auto filled = ReadCardInto(session(), {.name = CustName,
                                               .new_ic = CustNIC,
                                               .birth = &DOB,
                                               .others = {{CardField::old_ic, &CustOIC},
                                                          {CardField::gender, &CustGender},
                                                          {CardField::add1, &CustAdd1},
                                                          {CardField::add2, &CustAdd2},
                                                          {CardField::add3, &CustAdd3},
                                                          {CardField::postcode, &CustPostCode},
                                                          {CardField::city, &CustCity},
                                                          {CardField::state, &CustState}},
                                               .race = &CustRace,
                                               .photo_file = photo.Reserve(session())});
  if (!filled) return;
  TidyBox(CustName);
  TidyBox(CustAdd1);
  const bool waited = !card_photo_.path().empty();
  card_photo_.Take(photo);
  if (!card_photo_.path().empty()) {
    Pic6.SetText(NewPhotoStem(session(), "pic6") + ".jpg");
  } else if (waited || filled->another) {
    Pic6.Clear();
  }
  OfferCardPaper(filled->values);
}

// The paper tells what the card says, whatever becomes of the record.
void NewCustFrm::OfferCardPaper(const CardValues& card) {
  if (ReadSetting(main(), "PrintMyKad") != "1") return;
  if (!desk().Ask(session().In({"Read MyKad", "读取身份证"}),
                  session().In({"Print MyKad Information ?", "打印身份证资料？"}))) {
    return;
  }
  const Recordset company = main().Query(fmt::format(
      "SELECT CompDesc,CompNo,Address FROM CompMast WHERE CompCode={}", QuoteStr(CompCode.text())));
  ReportJob job = SessionReport(session(), "MyKadList.rpt");
  job.SelectionFormula = "{CompMast.CompCode}=" + QuoteStr(CompCode.text());
  int number = 0;
  const auto hand_over = [&](std::string_view name, std::string value) {
    std::replace(value.begin(), value.end(), ';', ',');  // it would end there
    job.ParameterFields[number++] = fmt::format("{};{};True", name, value);
  };
  hand_over("Card", "1");
  for (const char* field : {"CompDesc", "CompNo", "Address"}) {
    hand_over(field, company.Eof() ? "" : NullToEmpty(company.Field(field)));
  }
  hand_over("Photo", card_photo_.path());
  for (const auto& [name, field] : {std::pair("CustName", CardField::name),
                                    {"CustNIC", CardField::new_ic},
                                    {"CustOIC", CardField::old_ic},
                                    {"CustGender", CardField::gender},
                                    {"CustRace", CardField::race},
                                    {"CustAdd1", CardField::add1},
                                    {"CustAdd2", CardField::add2},
                                    {"CustAdd3", CardField::add3},
                                    {"CustPostCode", CardField::postcode},
                                    {"CustCity", CardField::city},
                                    {"CustState", CardField::state}}) {
    hand_over(name, card[field]);
  }
  hand_over("DOB", DOB.text());
  desk().Print(job);
}

// Behind the save: a record is not given up for its picture.
void NewCustFrm::KeepCardPhoto(const std::string& id) {
  if (card_photo_.path().empty() || Pic6.text().empty()) return;
  try {
    SendPhoto(session(), *this, id,
              KeepFile(session(), id, card_photo_.path(),
                       std::filesystem::path(Pic6.text()).stem().string()));
  } catch (const std::exception& failure) {
    Tell(MessageKind::critical,
         {fmt::format("{}\nThe customer is saved without the picture of the card. Read it again.",
                      failure.what()),
          fmt::format("{}\n顾客已储存，但没有身份证照片。请再读取。", failure.what())});
  }
  card_photo_.Drop();
}

// The customer as he sits there now: the first photo, which stands at the head of the screen.
void NewCustFrm::TakePhoto() {
  if (!MayKeepPhoto(Pic1)) return;
  if (!Pic1.empty() && !ConfirmLoss({"A new photo takes the place of Picture 1. Go on ?",
                                     "新照片将取代照片 1。要继续吗？"})) {
    return;
  }
  WaitingPicture picture("tempimage", ".bmp", false);
  if (TakePicture(session(), *this, picture) && !picture.path().empty()) {
    KeepPhoto(Pic1, 1, picture.path());
  }
}

}  // namespace kaunter
