// Pictures of a report: a logo beside the program, a customer's photo.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "reports/report_document.h"
#include "reports/report_file.h"

namespace kaunter {

// The full path of a picture that a report names; "" when there is no such file, so that the paper
// is printed without it. A path that is not a full one begins at the report file, or at AppPath.
std::string PicturePath(const ReportFile& file, const std::string& named);

// The logo and the letterhead in the heads of papers. One that is not there or cannot be drawn is
// left out and told once, and the head says in letters whose paper it is.
class HeadPictures {
 public:
  // Without a measure each file that is there fills its room.
  HeadPictures(const ReportFile& file, const PictureMeasure& measure, ReportDocument& document);

  // The picture of this name, in AppPath, beside the report file or by its full path, as large as
  // the room allows, at its top left corner; nothing when there is none.
  std::optional<PagePicture> Find(const std::string& named, double width, double height);

 private:
  void Tell(const std::string& named, bool is_there);

  const ReportFile& file_;
  const PictureMeasure& measure_;
  ReportDocument& document_;
  std::set<std::string> told_;
};

}  // namespace kaunter
