// Choosing a picture of a record: a photo, a logo, a letterhead.
#pragma once

#include <string>

namespace kaunter {

class Session;
class TextBox;

// Asks for the file on behalf of the box. What is no file or no picture is told at the box; ""
// then, as when the choice is cancelled.
std::string ChoosePicture(Session& session, TextBox& box);

}  // namespace kaunter
