#include "reporting/report_picture.h"

#include <filesystem>

#include "core/session.h"
#include "customers/photo_server.h"
#include "platform/whole_file.h"

namespace kaunter {
namespace {

namespace fs = std::filesystem;

// A report that reads the place meanwhile finds the old picture or the new one.
void LayFile(const Session& session, const fs::path& source) {
  const fs::path folder = fs::path(session.AppPath) / "Image";
  const fs::path place = folder / "b1.bmp";
  fs::create_directories(folder);
  if (!fs::is_regular_file(source)) {
    fs::remove(place);
    return;
  }
  CopyWholeFile(source.string(), place.string());
}

}  // namespace

void LayReportPicture(Session& session, const Screen& screen, std::string_view cust_id,
                      const std::string& photo) {
  // A stored name is a text that somebody typed, and no way to other files.
  const bool named = IsPlainFileName(photo) && FetchPhoto(session, screen, cust_id, photo);
  const fs::path source = named ? fs::path(KeptPath(session, cust_id, photo)) : fs::path();
  if (!fs::is_regular_file(source)) {
    ClearReportPicture(session);
  } else {
    LayFile(session, source);
  }
}

void ClearReportPicture(const Session& session) {
  LayFile(session, fs::path(session.AppPath) / "b1.bmp");
}

}  // namespace kaunter
