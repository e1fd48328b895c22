// The button of the card reader on a screen: what the card says goes into the boxes of its group.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/card_values.h"

namespace kaunter {

class ComboBox;
class Control;
class Screen;
class Session;
class TextBox;

struct CardBox {
  CardField field;
  Control* box;  // a TextBox or a ComboBox
};

// The boxes of one person. Only those that are there are filled.
struct CardGroup {
  TextBox& name;
  TextBox& new_ic;
  TextBox* birth = nullptr;  // filled by the new IC when that is left
  std::vector<CardBox> others = {};
  ComboBox* race = nullptr;
  std::string photo_file = {};  // where the photo is to be written; empty where none is wanted
};

struct FilledCard {
  CardValues values;
  bool another = false;  // than the person who stood in the boxes
};

// Reads the card and fills the group; the new IC is left as if it had been typed. Where another
// person stands in the boxes, asks first, and then nothing of him stays in the group. Nothing where
// nothing was filled.
std::optional<FilledCard> ReadCardInto(Session& session, const CardGroup& group);

}  // namespace kaunter
