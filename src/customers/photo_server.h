// The copies of photos and documents on the office's FTP server, where other PCs find what was
// kept on this one: VKTPIC/<customer or loan>/<file>. Where the setting ftpAcc names no server,
// nothing leaves this PC and nothing is asked.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Screen;
class Session;

// Both wait for the end and tell a failure on behalf of the screen; false then. The kept file stays
// as it is: a copy that failed can be sent again by keeping the file once more.
bool SendPhoto(Session& session, const Screen& screen, std::string_view folder,
               std::string_view file);
// A file that lies on this PC already is not asked for.
bool FetchPhoto(Session& session, const Screen& screen, std::string_view folder,
                std::string_view file);

// The photos that a screen shows while records come and go. The first that the server does not have
// is told, the others are not; a server that does not answer is told, and asked no more.
class ShownPhotos {
 public:
  // Where the photo lies on this PC, once it has been fetched if it can be.
  std::string Path(Session& session, const Screen& screen, std::string_view folder,
                   std::string_view file);

 private:
  bool told_ = false;
  bool away_ = false;
};

// The scripts hold the password of the server: none stays.
void CleanFtpScripts(const Session& session);

}  // namespace kaunter
