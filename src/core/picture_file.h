// Choosing a picture of a record: a photo, a logo, a letterhead.
#pragma once

#include <string>

namespace kaunter {

class Session;
class TextBox;

// Asks for the file on behalf of the box, on the screen PhotoBrowseFrm; "" when none was chosen.
std::string ChoosePicture(Session& session, TextBox& box);

}  // namespace kaunter
