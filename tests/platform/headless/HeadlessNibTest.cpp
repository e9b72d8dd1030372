// Nibs whole and broken.
#include "platform/headless/HeadlessNib.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessWidgets.h"
#include "platform/host/VELGraphArrays.h"
#include "support/TemporaryDirectory.h"

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

using Items = std::vector<TaggedItems::Item>;

TEST(HeadlessNib, ReadsWhatTheFileSays) {
  Reading reading(inView(R"(
    <property name='geometry'><rect><x>-1</x><y>2</y><width>3</width><height>4</height></rect></property>
    <layout class='QVBoxLayout'><item><widget class='QCheckBox' name='check'>
      <property name='text'><string>a &lt;<!-- --> b</string></property>
      <property name='checked'><bool>true</bool></property>
      <property name='visible'><bool>false</bool></property></widget></item></layout>
    <widget class='QLabel' name='label'><property name='text'><string>l</string></property></widget>
    <widget class='QComboBox' name='popUp'>
      <property name='tags' stdset='0'><stringlist><string>5</string><string>-6</string></stringlist></property>
      <property name='currentIndex'><number>1</number></property>
      <item><property name='text'><string>p</string></property></item>
      <item><property name='text'><string>q</string></property></item></widget>
    <widget class='QComboBox' name='fresh'>
      <property name='tags' stdset='0'><stringlist><string>7</string></stringlist></property><item/></widget>
    <widget class='QComboBox' name='empty'/>
    <widget class='Matrix' name='matrix'><widget class='QWidget'><widget class='QRadioButton' name='r'>
      <property name='tag' stdset='0'><number>8</number></property>
      <property name='checked'><bool>true</bool></property></widget></widget>
      <widget class='Matrix' name='inner'><widget class='QRadioButton'>
        <property name='tag' stdset='0'><number>9</number></property></widget></widget>
      <widget class='QRadioButton'><property name='tag' stdset='0'><number>10</number></property></widget></widget>
    <widget class='QRadioButton' name='lone'/>
    <widget class='VELGraphMultiple' name='load'>
      <property name='history' stdset='0'><string>graphs</string></property></widget>
    <widget class='VELGraphArraysMultiple' name='graphs'/>
    <widget class='VELTextFieldKillApp' name='process'><property name='text'><string>-</string></property></widget>
    <widget class='VELColor' name='color'/><widget class='VELGraphArrays' name='graph'/>
    <widget class='VELModuleNameStatusBarView' name='name'/>)"));
  ASSERT_EQ(reading.problems, std::vector<std::string>{});
  HeadlessNib& nib = *reading.nib;
  EXPECT_EQ(nib.outlet<View>("view")->frame(), (Rect{{-1, 2}, {3, 4}}));
  EXPECT_EQ(nib.outlet<HeadlessButton>("check")->title(), "~a < b");
  EXPECT_EQ(nib.outlet<Button>("check")->state(), 1);
  EXPECT_TRUE(nib.outlet<View>("check")->isHidden() && !nib.outlet<View>("label")->isHidden());
  EXPECT_EQ(nib.outlet<HeadlessTextField>("label")->stringValue(), "~l");
  EXPECT_EQ(nib.outlet<HeadlessPopUpButton>("popUp")->items().all(),
            (Items{{"~p", 5}, {"~q", -6}}));
  EXPECT_EQ(nib.outlet<PopUpButton>("popUp")->selectedTag(), -6);
  EXPECT_EQ(nib.outlet<PopUpButton>("fresh")->selectedTag(), 7);
  EXPECT_EQ(nib.outlet<PopUpButton>("empty")->selectedTag(), std::nullopt);
  EXPECT_EQ(nib.outlet<HeadlessMatrix>("matrix")->items().all(), (Items{{"", 8}, {"", 10}}));
  EXPECT_EQ(nib.outlet<Matrix>("matrix")->selectedTag(), 8);
  EXPECT_EQ(nib.outlet<Matrix>("inner")->selectedTag(), std::nullopt);
  // A graph may come before its history.
  EXPECT_EQ(nib.outlet<VELGraphMultiple>("load")->history(),
            nib.outlet<VELGraphArraysMultiple>("graphs"));
  EXPECT_EQ(nib.outlet<VELTextFieldKillApp>("process")->stringValue(), "~-");
  EXPECT_TRUE(nib.outlet<View>("lone") && nib.outlet<VELGraphArrays>("graph"));
  // Neither a layout nor an object without a face counts.
  const auto& subviews = nib.outlet<HeadlessView<View>>("view")->subviews();
  ASSERT_EQ(subviews.size(), 10U);
  EXPECT_EQ(subviews[0], nib.outlet<View>("check"));
  EXPECT_EQ(subviews[9], nib.outlet<View>("name"));
  EXPECT_EQ(nib.outlet<HeadlessMatrix>("matrix")->subviews()[1], nib.outlet<View>("inner"));

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
  const auto popUp = [](const std::string& rest) {
    return inView("<widget class='QComboBox' name='p'><item/>" + rest + "</widget>");
  };
  const auto tags = [](const std::string& tag) {
    return "<property name='tags'><stringlist><string>" + tag + "</string></stringlist></property>";
  };
  const auto width = [](const std::string& element) {
    return inView("<property name='geometry'><rect><x>0</x><y>0</y><height>1</height>" + element +
                  "</rect></property>");
  };
  const auto graph = [](const std::string& name) {
    return inView("<widget class='VELGraphMultiple' name='g'>\n<property name='history'><string>" +
                  name + "</string></property></widget>");
  };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "N.ui:1: No document element found"},
      {"<ui>\n<widget>\n</ui>", "N.ui:3: Start-end tags mismatch"},
      {"\n<html/>", "N.ui:2: not a <ui> document"},
      {"<ui/>", "N.ui:1: <ui> without a <widget>"},
      {inView("\n<widget name='view'/>"), R"(N.ui:4: two objects are named "view")"},
      {radio(""), R"(N.ui:4: radio button "r" has no tag)"},
      {radio("<property name='tag'><number>2147483648</number></property>"),
       R"(N.ui:4: "tag" is out of range: 2147483648)"},
      {popUp(""), R"(N.ui:3: pop-up "p" has 1 items but 0 tags)"},
      {popUp("<item/>" + tags("")), R"(N.ui:3: tag is no integer: "")"},
      {popUp(tags("9223372036854775808")), R"(N.ui:3: tag is out of range: 9223372036854775808)"},
      {popUp(tags("1") + "<property name='currentIndex'><number>1</number></property>"),
       R"(N.ui:3: "currentIndex" is out of range: 1)"},
      {width("<width>-1</width>"), R"(N.ui:3: "width" is out of range: -1)"},
      {width(""), R"(N.ui:3: "width" is no integer: "")"},
      {inView("<widget class='VELGraphMultiple' name='g'/>"),
       R"(N.ui:3: VELGraphMultiple "g" has no property "history")"},
      {graph("h"), R"(N.ui:4: history "h" of VELGraphMultiple "g" is missing, )"
                   "expected a VELGraphArraysMultiple"},
      {graph("view"), R"(N.ui:4: history "view" of VELGraphMultiple "g" is a QWidget, )"
                      "expected a VELGraphArraysMultiple"},
      {inView("<property name='visible'><bool>yes</bool></property>"),
       R"(N.ui:3: "visible" is neither true nor false: "yes")"},
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

TEST(HeadlessNibLoader, LoadsFromItsBundle) {
  const TemporaryDirectory directory;
  const std::string& path = directory.path;
  std::filesystem::create_directories(path + "/en.lproj");
  std::filesystem::create_directories(path + "/Folder.ui");
  std::ofstream(path + "/Info.strings") << "identifier=x;";
  std::ofstream(path + "/en.lproj/Localizable.strings") << "yes=Yes;";
  std::ofstream(path + "/Good.ui") << inView(
      "<widget class='QCheckBox' name='b'><property "
      "name='text'><string>yes</string></property></widget>");
  std::ofstream(path + "/Bad.ui") << "<ui>";
  std::vector<std::string> problems;
  const auto bundle = Bundle::open(path, Locale(".", {"en"}), problems);
  HeadlessNibLoader loader([&](std::string problem) { problems.push_back(std::move(problem)); });
  const auto good = loader.load(*bundle, "Good");
  ASSERT_NE(good, nullptr);
  EXPECT_EQ(good->outlet<HeadlessButton>("b")->title(), "Yes");
  for (const char* name : {"Bad", "None", "Folder"}) {
    EXPECT_EQ(loader.load(*bundle, name), nullptr);
  }
  EXPECT_EQ(problems, (std::vector<std::string>{path + "/Bad.ui:1: Start-end tags mismatch",
                                                path + "/None.ui: No such file or directory",
                                                path + "/Folder.ui: Is a directory"}));
}

TEST(HeadlessWidgets, FitTheirWidth) {
  HeadlessMenuBarText text;
  text.setFrameSize({5, 22});
  text.setTextString("5 \u20ac\U0001f600");
  EXPECT_EQ(text.frame().size, (Size{28, 22}));
}

}  // namespace vel::test
