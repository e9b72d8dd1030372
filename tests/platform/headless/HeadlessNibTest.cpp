// Broken nibs; the views' own tests load whole ones.
#include "platform/headless/HeadlessNib.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessWidgets.h"

namespace vel::test {

struct Reading {
  explicit Reading(const std::string& text)
      : nib(HeadlessNib::fromText(
            text, "N.ui", [](std::string_view key) { return "~" + std::string(key); },
            [this](std::string problem) { problems.push_back(std::move(problem)); })) {}

  std::vector<std::string> problems;
  std::unique_ptr<HeadlessNib> nib;
};

static std::string inView(const std::string& widgets) {
  return "<ui>\n<widget class='QWidget' name='view'>\n" + widgets + "</widget></ui>";
}

TEST(HeadlessNib, TellsWhichOutletIsMissingOrAnother) {
  Reading reading(inView("<widget class='QComboBox' name='popUp'/>"));
  HeadlessNib& nib = *reading.nib;
  EXPECT_EQ(nib.outlet<PopUpButton>("popUp")->selectedTag(), std::nullopt);
  EXPECT_EQ(nib.outlet<Button>("popUp"), nullptr);
  EXPECT_EQ(nib.outlet<Button>("none"), nullptr);
  EXPECT_EQ(reading.problems, (std::vector<std::string>{
                                  R"(N.ui: outlet "popUp" is a QComboBox, expected a QCheckBox)",
                                  R"(N.ui: outlet "none" is missing, expected a QCheckBox)"}));
}

TEST(HeadlessNib, RefusesWhatIsBroken) {
  const auto radio = [](const std::string& tag) {
    return inView("<widget class='Matrix'>\n<widget class='QRadioButton' name='r'>" + tag +
                  "</widget></widget>");
  };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"<ui>\n<widget>\n</ui>", "N.ui:3: Start-end tags mismatch"},
      {"<ui/>", "N.ui:1: <ui> without a <widget>"},
      {inView("\n<widget name='view'/>"), R"(N.ui:4: two objects are named "view")"},
      {radio(""), R"(N.ui:4: radio button "r" has no tag)"},
      {radio("<property name='tag'><number>2147483648</number></property>"),
       R"(N.ui:4: "tag" is out of range: 2147483648)"},
      {inView("<widget class='QComboBox' name='p'><item/></widget>"),
       R"(N.ui:3: pop-up "p" has 1 items but 0 tags)"},
      {inView("<widget class='VELGraphMultiple' name='g'>\n"
              "<property name='history'><string>view</string></property></widget>"),
       R"(N.ui:4: history "view" of VELGraphMultiple "g" is a QWidget, )"
       "expected a VELGraphArraysMultiple"},
  };
  for (const auto& [text, problem] : cases) {
    SCOPED_TRACE(text);
    const Reading reading(text);
    EXPECT_EQ(reading.nib, nullptr);
    EXPECT_EQ(reading.problems, std::vector<std::string>{problem});
  }
}

TEST(HeadlessNib, NestsDeeperThanTheStack) {
  std::string text = "<ui>";
  for (const char* tag : {"<widget class='Matrix'>", "</widget>"}) {
    for (int i = 0; i < 200'000; ++i) {
      text += tag;
    }
  }
  EXPECT_NE(Reading(text + "</ui>").nib, nullptr);
}

}  // namespace vel::test
