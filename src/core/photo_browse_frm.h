// PhotoBrowseFrm: a person looks through the folders of the PC for a picture, and sees it before it
// is chosen.
#pragma once

#include <string>

#include "core/session_screen.h"

namespace kaunter {

class PhotoBrowseFrm : public SessionScreen {
 public:
  PhotoBrowseFrm(Session& session, Desk& desk);

  TextBox FolderName{*this, "FolderName", {"Folder", "文件夹"}};
  Grid DirList;
  Grid FileList;
  Picture Preview{*this, "Preview", {"Preview", "预览"}};
  TextBox FileName{*this, "FileName", {"Picture", "图片"}};
  Button OtherCmd{*this, "OtherCmd", {"&Browse...", "浏览(&B)..."}};
  Button OkCmd{*this, "OkCmd", {"&OK", "确定(&O)"}, ButtonRole::primary};
  Button CancelCmd{*this, "CancelCmd", {"&Cancel", "取消(&C)"}, ButtonRole::cancel};

  // Of the picture that was chosen; "" when none was.
  const std::string& path() const { return path_; }

  void Load() override;

 private:
  bool GoTo(const std::string& folder);
  void Choose(const std::string& file);
  void Accept();

  std::string folder_;
  std::string path_;
  static inline std::string last_folder_;  // where the last picture came from
};

}  // namespace kaunter
