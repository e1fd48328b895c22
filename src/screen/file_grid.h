// A grid onto which a person drops files, or pastes them or a picture.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "screen/grid.h"

namespace kaunter {

class FileGrid : public Grid {
 public:
  using Grid::Grid;
  // Full paths of what was dropped.
  std::function<void(const std::vector<std::string>& files)> onFiles;

  // The face's side: nothing where the person could not work on the grid.
  void Drop(const std::vector<std::string>& files) {
    if (onFiles && Editable() && !files.empty()) onFiles(files);
  }
};

}  // namespace kaunter
