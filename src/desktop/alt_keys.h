// Alt with a letter is a command. One that no menu, button or box has does nothing: it is no text.
#pragma once

class QApplication;

namespace kaunter {

void LetAltTypeNothing(QApplication& qt);

}  // namespace kaunter
