// Where the files of a customer lie: photos and scanned documents, in the Photo folder of this PC.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/file_store.h"
#include "screen/caption.h"

namespace kaunter {

class Screen;
class Session;

// Copies a chosen file into the folder of a customer or loan under a new name and gives that name;
// the file stands there whole or not at all. Throws std::runtime_error for a name without an ending
// ("Invalid filename"), for an empty file and for one that cannot be copied.
std::string KeepFile(const Session& session, std::string_view folder, const std::string& source,
                     std::string_view new_stem);
// What the new name of a photo begins with, "pic1-20240131093000" for the place pic1: what another
// PC has fetched under a name stays true.
std::string NewPhotoStem(Session& session, std::string_view place);
// As KeepFile for a document: a picture becomes a JPEG file on the way, except one that is called
// .jpg or .pdf. What a PC would run when it is opened is refused. Windows stay painted meanwhile.
std::string KeepDocument(Session& session, const Screen& screen, std::string_view folder,
                         const std::string& source, std::string_view new_stem);

// Why a kept file cannot be handed to the program that shows it; nothing when it can.
std::optional<Caption> WhyNotOpened(const std::string& path);

// What may happen when a file of this name is opened: whoever can write a row of documents must not
// be able to start a program on another desk.
enum class Opening {
  shown,   // it is shown or heard
  asked,   // nobody knows: the person decides
  refused  // a program
};
Opening OpeningOf(std::string_view name);

}  // namespace kaunter
