// The picture that a report shows beside its text: one file, Image/b1.bmp beside the program, which
// is laid there before the print.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Screen;
class Session;

// The photo of a customer, out of the folder of photos or fetched from the office's server on
// behalf of the screen; a customer without one, or whose file is gone, clears the place.
void LayReportPicture(Session& session, const Screen& screen, std::string_view cust_id,
                      const std::string& photo);
// Puts the office's own b1.bmp there when it has one, else leaves no picture.
void ClearReportPicture(const Session& session);

}  // namespace kaunter
