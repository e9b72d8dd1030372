// Hostile texts, and how labels show them.
#include "host/desktop/windowing/PlainText.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QImage>
#include <string>

#include "host/desktop/windowing/QtControls.h"
#include "host/desktop/windowing/TextLabel.h"

namespace vel::test {

using namespace std::string_literals;

TEST(PlainText, IsOneHarmlessLine) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"<b>a & b</b> %n &amp;", "<b>a & b</b> %n &amp;"},
      {"größe 日本 مرحبا 😀", "größe 日本 مرحبا 😀"},
      {"a\nb\tc\r\x1b[31m\x7f", "a�b�c��[31m�"},
      {"a\0b"s, "a�b"},
      {"\u0085|\u2028|\u2029", "�|�|�"},
      {"evil\u202Etxt.exe\u202C", "evil�txt.exe�"},
      {"\u2066a\u2069\u200F\u200B", "�a���"},
      {"a\U000E0041", "a�"},
      {"a\xff\xc3", "a��"},
      {"\xed\xa0\x80", "���"}};
  for (const auto& [text, plain] : cases) {
    EXPECT_EQ(plainText(text).toStdString(), plain);
    TextLabel label;
    QtTextField field(label);
    field.setStringValue(text);
    EXPECT_EQ(field.stringValue(), text);
    EXPECT_EQ(label.text().toStdString(), plain);
    EXPECT_TRUE(text.empty() || label.textFormat() == Qt::PlainText);
  }
}

TEST(TextLabel, ElidesAtTheRightWhatDoesNotFit) {
  const QString text = "a <b>process</b> with a & and a long name";
  TextLabel label;
  label.setTextFormat(Qt::PlainText);
  label.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  const auto image = [&](const QString& shown, int width) {
    label.resize(width, 20);
    label.setText(shown);
    return label.grab().toImage();
  };
  const QString elided = label.fontMetrics().elidedText(text, Qt::ElideRight, 100);
  ASSERT_TRUE(elided.startsWith("a <b>"));
  const int fitting = label.fontMetrics().horizontalAdvance(text);
  const QImage whole = image(text, fitting);
  EXPECT_NE(whole, image(elided, fitting));
  EXPECT_NE(whole, image(text + '.', fitting));
  const QImage narrow = image(text, 100);
  EXPECT_EQ(narrow, image(elided, 100));
  EXPECT_EQ(whole, image(text, fitting));
  label.setPalette(Qt::red);
  EXPECT_NE(narrow, image(text, 100));
  label.setPalette({});
  EXPECT_EQ(narrow, image(text, 100));
  label.setFont(QFont("D050000L"));
  EXPECT_NE(narrow, image(text, 100));
}

}  // namespace vel::test
