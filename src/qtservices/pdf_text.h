// Which letters the signs of a PDF stand for, so that its text is found and copied.
#pragma once

#include <QByteArray>

namespace kaunter {

// Part of a PDF as it is written. Where it tells the letters of a font, a sign that two letters
// share is told to be the one that people type: the writer of the PDF takes the lower code, the
// radical 日 U+2F47 for 日 U+65E5. What it gives is as long as what it was given.
QByteArray WithTypedLetters(QByteArray part);

}  // namespace kaunter
