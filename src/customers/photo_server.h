// Photos and documents of this PC on their way to the office's server and back, as a screen tells
// of them. Where the setting ftpAcc names no server, nothing leaves this PC and nothing is asked.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "core/file_store.h"

namespace kaunter {

class Screen;
class Session;

// The file goes behind the windows; where nobody goes on meanwhile its end is waited for and told,
// false when it did not arrive. It stays on this PC and noted as unsent then.
bool SendPhoto(Session& session, const Screen& screen, std::string_view folder,
               std::string_view file);
// For a person who waits for it, behind a bar with a stop; a failure is told. A file that lies on
// this PC already is not asked for.
bool FetchPhoto(Session& session, const Screen& screen, std::string_view folder,
                std::string_view file);

// The photos that a screen shows while records come and go. They come behind the windows. The first
// that the server does not have is told, the others are not; a server that does not answer is told,
// and asked no more.
class ShownPhotos {
 public:
  // Where the photo lies on this PC, or will lie once it has been fetched; Tick tells when.
  std::string Path(Session& session, const Screen& screen, std::string_view folder,
                   std::string_view file);
  // Once a second: true when a photo has come that was asked for.
  bool Tick(Session& session, const Screen& screen);

 private:
  void Note(Session& session, const Screen& screen, const std::string& file,
            const FtpResult& result);

  std::set<FileStore::File> awaited_;
  bool told_ = false;
  bool away_ = false;
};

}  // namespace kaunter
