// Messages, questions and single lines of input.
#pragma once

#include <QString>
#include <string_view>

#include "screen/desk.h"

class QWidget;

namespace kaunter {

void ShowMessage(QWidget* parent, MessageKind kind, std::string_view title, std::string_view text,
                 bool chinese);
// What Enter alone answers.
enum class Preset { yes, no };
bool AskYesNo(QWidget* parent, std::string_view title, std::string_view text, bool chinese,
              Preset preset = Preset::yes);
// "" when cancelled.
QString AskLine(QWidget* parent, std::string_view title, std::string_view text,
                std::string_view preset, bool chinese);

}  // namespace kaunter
