// A desk that can turn pictures into JPEG files. Not every desk can: it says so by being one.
#pragma once

#include <string>

namespace kaunter {

class PictureDesk {
 public:
  enum class Made {
    done,
    no_picture,  // nothing that can be read, or several pages that one picture cannot hold
    too_large,   // more than may be held in memory
    not_written
  };

  virtual ~PictureDesk() = default;
  // In the best quality. May run on any thread.
  virtual Made MakeJpeg(const std::string& source, const std::string& target) = 0;
};

}  // namespace kaunter
