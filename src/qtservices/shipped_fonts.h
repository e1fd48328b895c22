// The fonts that came with the program: the papers are laid out with them.
#pragma once

namespace kaunter {

// Makes those of the folder "fonts" beside the program known to it; without such a folder the
// system's serve. Once, when there is an application.
void LoadShippedFonts();

}  // namespace kaunter
