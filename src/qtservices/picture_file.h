// Picture files within bounds: one that would fill the memory is refused before it is read.
#pragma once

#include <QImage>
#include <QSize>
#include <string>

#include "screen/picture_desk.h"

namespace kaunter {

// No larger than the room, turned as its camera held it; null for what is no picture or too large
// to be read. A JPEG file of any size is read small at once. May run on any thread.
QImage ReadSmall(const std::string& path, QSize room);

// As PictureDesk tells.
PictureDesk::Made WriteAsJpeg(const std::string& source, const std::string& target);

}  // namespace kaunter
