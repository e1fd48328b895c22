// The first start of a person on a PC that nobody has told which office it works on: the three
// roads to one. Nothing of a road is kept before it has led there.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/sql/server_source.h"
#include "screen/caption.h"

namespace kaunter {

class Clock;

// Neither settings nor an office in the person's own folder.
bool IsFirstStart();

// The settings file that a road writes, and what is told when it is done.
std::string FirstSettingsFile();

// A road that does not lead on, with the box to be mended ("" for none).
struct FirstStartRefused : std::runtime_error {
  FirstStartRefused(std::string control, Caption why)
      : std::runtime_error(why.english), box(std::move(control)), text(std::move(why)) {}
  std::string box;
  Caption text;
};

// --- the demo office, which lies ready beside the report files where a package brought it
bool DemoIsShipped();
std::string DemoFolder();  // of this person's copy
bool DemoIsThere();
// Copies it, unless it is there and is not to begin anew. Gives the settings file that opens it, on
// its own day. The settings of the person stay as they are: the next start asks again.
std::string TakeDemo(bool anew);

// --- an office on this PC
std::string NewOfficeFolder();  // where it lies when no other place is wished
std::string OfficeFileIn(const std::string& folder);
bool HoldsOffice(const std::string& folder);
// Makes the office, or takes the one that lies in the folder, and writes the settings.
void TakeOfficeIn(const std::string& folder, const Clock& clock);

// --- an office on a server
enum class ServerHolds { office, nothing };

// Reaches the database and looks what is in it; what is no office, and not empty, is refused.
ServerHolds TryServer(const ServerPlace& place, const Clock& clock);
// Makes the tables where there are none, and writes the settings.
void TakeServer(const ServerPlace& place, const Clock& clock);

}  // namespace kaunter
