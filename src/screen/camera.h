// A camera that is running, as a screen knows it. A Picture shows what it sees.
#pragma once

#include <string>

namespace kaunter {

class Camera {
 public:
  virtual ~Camera() = default;
  // What it sees now becomes a picture file of this name; false when it sees nothing.
  virtual bool Capture(const std::string& path) = 0;
  // The picture that it shows, for one that always shows the same; "" for one that moves.
  virtual std::string Still() const { return {}; }
};

}  // namespace kaunter
