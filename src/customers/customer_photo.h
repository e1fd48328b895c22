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
  void Show(Session& session, const std::string& cust_id);
  // Once a second.
  void Look();

 private:
  std::string cust_id_;
  std::string awaited_;  // the path of one that is under way
};

}  // namespace kaunter
