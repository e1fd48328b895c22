#include "qtservices/pdf_text.h"

#include <QFont>
#include <QHash>
#include <QList>
#include <QRawFont>
#include <QString>

namespace kaunter {
namespace {

constexpr char16_t kFirstRadical = 0x2E80;
constexpr char16_t kLastRadical = 0x2FD5;
constexpr char16_t kFirstIdeograph = 0x4E00;
constexpr char16_t kLastIdeograph = 0x9FFF;

using Letters = QHash<char16_t, char16_t>;

QString Range(char16_t first, char16_t last) {
  QString text;
  for (char16_t letter = first; letter <= last; ++letter) text += QChar(letter);
  return text;
}

// By what the font draws alike.
Letters TypedLetters() {
  QFont font("Noto Sans CJK SC");
  const QRawFont raw = QRawFont::fromFont(font);
  const auto signs_of = [&](const QString& text) { return raw.glyphIndexesForString(text); };
  const QString radicals = Range(kFirstRadical, kLastRadical);
  const QString ideographs = Range(kFirstIdeograph, kLastIdeograph);
  const QList<quint32> radical_signs = signs_of(radicals);
  const QList<quint32> ideograph_signs = signs_of(ideographs);
  QHash<quint32, char16_t> typed;
  for (qsizetype i = 0; i < ideograph_signs.size(); ++i) {
    if (ideograph_signs[i] != 0 && !typed.contains(ideograph_signs[i])) {
      typed.insert(ideograph_signs[i], ideographs[i].unicode());
    }
  }
  Letters letters = {{u'\t', u' '}};
  for (qsizetype i = 0; i < radical_signs.size(); ++i) {
    const auto found = typed.constFind(radical_signs[i]);
    if (radical_signs[i] != 0 && found != typed.constEnd()) {
      letters.insert(radicals[i].unicode(), *found);
    }
  }
  return letters;
}

}  // namespace

QByteArray WithTypedLetters(QByteArray part) {
  const qsizetype begin = part.indexOf("beginbfrange");
  if (begin < 0) return part;
  static const Letters letters = TypedLetters();
  // Lists only, "[<2F47> <5F20> ]": behind "<0001> <0009>" without a list stands the first of
  // letters that follow each other.
  bool in_list = false;
  for (qsizetype i = begin; i < part.size(); ++i) {
    if (part[i] == '[') in_list = true;
    if (part[i] == ']') in_list = false;
    if (!in_list || part[i] != '<' || i + 5 >= part.size() || part[i + 5] != '>') continue;
    const auto typed =
        letters.constFind(static_cast<char16_t>(part.mid(i + 1, 4).toUInt(nullptr, 16)));
    if (typed == letters.constEnd()) continue;
    part.replace(i + 1, 4, QByteArray::number(*typed, 16).rightJustified(4, '0').toUpper());
  }
  return part;
}

}  // namespace kaunter
