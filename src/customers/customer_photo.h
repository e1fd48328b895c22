// The photo of a customer beside his name, on a screen that is not about photos: it is there when
// it can be, waits for nothing, and tells nothing.
#pragma once

#include <string>

#include "screen/control.h"

namespace kaunter {

class Session;

class CustomerPhoto : public Picture {
 public:
  using Picture::Picture;

  // What lies on this PC at once; what the server has a little later, where a person sees it come.
  // `photo` is the name that his row tells.
  void Show(Session& session, const std::string& cust_id, const std::string& photo);
  // Once a second.
  void Look();

 private:
  std::string wanted_;   // path of the photo that is or will be shown
  std::string awaited_;  // the same while it is under way
};

}  // namespace kaunter
