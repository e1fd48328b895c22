// Texts on their way between the house (UTF-8) and Qt.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kaunter {

inline QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string S(const QString& text) { return text.toStdString(); }

// A caption without its accelerator: "&Save" is "Save", "保存(&S)" is "保存", "P && L" is "P & L".
QString Plain(std::string_view caption);

// Characters as a person counts them: a pair of surrogates is one.
int CharacterCount(const QString& text);

}  // namespace kaunter
