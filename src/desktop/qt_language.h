// The language of Qt's own windows: file dialog, print dialog, the menu of a text box.
#pragma once

namespace kaunter {

// Where Qt's translation is not installed, its windows stay English.
void SpeakQtIn(bool chinese);

}  // namespace kaunter
