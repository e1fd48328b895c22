#include "core/picture_file.h"

#include "core/photo_browse_frm.h"

namespace kaunter {

std::string ChoosePicture(Session& session, TextBox& box) {
  Desk& desk = box.screen().desk();
  PhotoBrowseFrm browse(session, desk);
  desk.ShowModal(browse);
  if (!browse.path().empty()) box.SetMark(false);
  return browse.path();
}

}  // namespace kaunter
