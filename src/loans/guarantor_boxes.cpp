#include "loans/guarantor_boxes.h"

#include <fmt/format.h>

namespace kaunter {

GuarantorBoxes::GuarantorBoxes(Screen& screen_in, int index_in, Frame& frame_in)
    : index(index_in),
      suffix(fmt::format("({})", index_in)),
      column_suffix(index_in == 0 ? "" : "2"),
      screen(screen_in),
      frame(&frame_in),
      Pic(screen_in, fmt::format("Pic{}", index_in + 1), {"Photo", "照片"}, Kind::text, frame),
      Photo(screen_in, "GuarantorPhoto" + suffix, {"Photo", "照片"}, frame) {}

std::vector<Control*> GuarantorBoxes::All() {
  return {&GuarantorName,         &GuarantorNIC,      &GuarantorOIC,       &GuarantorOthIC,
          &GuarantorRelationship, &GuarantorGender,   &GuarantorRace,      &GuarantorHP1,
          &GuarantorMN,           &GuarantorComp,     &GuarantorCompBiz,   &GuarantorCompPos,
          &GuarantorCompIncome,   &GuarantorCompAdd1, &GuarantorCompAdd2,  &GuarantorCompAdd3,
          &GuarantorCompPostCode, &GuarantorCompCity, &GuarantorCompState, &GuarantorCompTel1,
          &GuarantorCompFax1};
}

std::string GuarantorBoxes::Column(const Control& box, const std::string& suffix) {
  return box.name().substr(0, box.name().find('(')) + suffix;
}

void GuarantorBoxes::Bind(Record& record) {
  for (Control* box : All()) {
    const std::string column = Column(*box, column_suffix);
    if (box->type() == ControlType::combo_box) {
      record.Add(static_cast<ComboBox&>(*box), As::text, column);
    } else {
      auto& text = static_cast<TextBox&>(*box);
      record.Add(text, text.kind() == Kind::money ? As::money : As::text, column);
    }
  }
  record.Add(Pic);
}

}  // namespace kaunter
