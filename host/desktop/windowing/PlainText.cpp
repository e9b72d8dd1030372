#include "host/desktop/windowing/PlainText.h"

#include <QChar>
#include <QList>
#include <algorithm>

namespace vel {

namespace {

bool isHarmful(char32_t character) {
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:  // Holds what turns the direction.
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return false;
  }
}

}  // namespace

QString plainText(std::string_view utf8) {
  const auto isPrintableAscii = [](char byte) { return byte >= ' ' && byte <= '~'; };
  const auto size = static_cast<qsizetype>(utf8.size());
  if (std::all_of(utf8.begin(), utf8.end(), isPrintableAscii)) {
    return QString::fromLatin1(utf8.data(), size);
  }
  QList<uint> characters = QString::fromUtf8(utf8.data(), size).toUcs4();
  std::replace_if(characters.begin(), characters.end(), isHarmful,
                  uint{QChar::ReplacementCharacter});
  return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()),
                           characters.size());
}

}  // namespace vel
