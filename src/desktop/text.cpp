#include "desktop/text.h"

namespace kaunter {

QString Plain(std::string_view caption) {
  const QString text = Q(caption);
  QString plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    // Chinese captions carry their accelerator in brackets behind the words.
    if (text[i] == u'(' && i + 3 < text.size() && text[i + 1] == u'&' && text[i + 3] == u')') {
      i += 3;
    } else if (text[i] == u'&') {
      if (i + 1 < text.size() && text[i + 1] == u'&') plain += text[i++];
    } else {
      plain += text[i];
    }
  }
  return plain.trimmed();
}

int CharacterCount(const QString& text) {
  int count = 0;
  for (const QChar c : text) {
    if (!c.isLowSurrogate()) ++count;
  }
  return count;
}

}  // namespace kaunter
