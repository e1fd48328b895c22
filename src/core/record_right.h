// The right to change or to delete the record that a screen shows: the user's own, or else a
// manager's word for it, asked once each for as long as the record stays on the screen. A word for
// a change is none for the delete.
#pragma once

#include <string_view>

#include "screen/caption.h"

namespace kaunter {

class Desk;
class Session;

class RecordRight {
 public:
  RecordRight(Session& session, Desk& desk) : session_(session), desk_(desk) {}

  // False after a manager, asked, has not agreed; the screen then refuses in its own words. `what`
  // tells the manager what for, `comp_code` for which company.
  bool MayChange(const Caption& what, std::string_view comp_code);
  bool MayDelete(const Caption& what, std::string_view comp_code);
  // Another record is shown.
  void Forget() { change_agreed_ = delete_agreed_ = false; }

 private:
  bool Ask(bool& agreed, const Caption& what, std::string_view comp_code);

  Session& session_;
  Desk& desk_;
  bool change_agreed_ = false;
  bool delete_agreed_ = false;
};

}  // namespace kaunter
