// Nibs whole and broken, and how long their widgets live.
#include "host/desktop/windowing/QtNib.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFrame>
#include <QPointer>
#include <algorithm>
#include <iterator>
#include <tuple>

#include "host/desktop/windowing/QtView.h"
#include "host/desktop/windowing/WidgetViews.h"
#include "platform/windowing/Controls.h"
#include "support/NibInBundle.h"

namespace vel::test {

using Problems = std::vector<std::string>;

struct Gauge : QtView<View> {
  static constexpr const char* kNibClass = "Gauge";
  using QtView::QtView;
};

TEST(QtNib, FindsItsObjectsByNameAndType) {
  NibInBundle bundle;
  bundle.loader.registerClass("Gauge",
                              {[](QWidget* parent) { return new QFrame(parent); },
                               [](QWidget& widget) {
                                 EXPECT_EQ(widget.property("style"), 3);
                                 return std::make_unique<Gauge>(dynamic_cast<QFrame&>(widget));
                               }});
  const auto nib = bundle.load(uiWith(R"(
    <widget class="QCheckBox" name="box"/><widget class="QLabel" name="label"/>
    <widget class="Unknown" name="unknown">
      <widget class="Gauge" name="gauge">
        <property name="style" stdset="0"><number>3</number></property>
      </widget>
    </widget>
    <widget class="QComboBox" name="popUp"/><widget class="Matrix" name="matrix"/>
    <widget class="Line" name="line"/><widget class="QWidget"/><widget class="QWidget"/>)"));
  ASSERT_NE(nib, nullptr);
  EXPECT_TRUE(nib->outlet<Button>("box") && nib->outlet<TextField>("label") &&
              nib->outlet<PopUpButton>("popUp") && nib->outlet<Matrix>("matrix") &&
              nib->outlet<Gauge>("gauge") && nib->outlet<View>("unknown"));
  EXPECT_NE(dynamic_cast<QFrame*>(widgetOf(nib->outlet<View>("line"))), nullptr);
  EXPECT_EQ(bundle.problems, Problems());

  for (const char* name : {"popUp", "unknown", "nowhere"}) {
    EXPECT_EQ(nib->outlet<Button>(name), nullptr);
  }
  EXPECT_EQ(bundle.problems,
            (Problems{bundle.file + R"(: outlet "popUp" is a QComboBox, expected a QCheckBox)",
                      bundle.file + R"(: outlet "unknown" is a Unknown, expected a QCheckBox)",
                      bundle.file + R"(: outlet "nowhere" is missing, expected a QCheckBox)"}));
}

TEST(QtNib, TellsWhatIsWrong) {
  const auto popUp = [](const std::string& tag) {
    return uiWith(R"(<widget class="QComboBox" name="p"><property name="tags" stdset="0">
        <stringlist><string>)" +
                  tag + R"(</string></stringlist></property><item/>)" +
                  (tag.empty() ? "<item/>" : "") + "</widget>");
  };
  const struct {
    std::string ui;
    std::string problem;  ///< after the path
    bool loads = false;
  } cases[] = {
      {"", ": No such file or directory"},
      {"<ui version=\"4.0\">\n<gadget/></ui>", ":2: Unexpected element gadget"},
      {"<html/>", ": Invalid UI file: The root element <ui> is missing."},
      {R"(<ui version="4.0"><widget class="QWidget" name="View"/></ui>)",
       R"(: the root is named "View", expected "view")"},
      {popUp(""), R"(: pop-up "p" has 2 items but 1 tags)"},
      {popUp("1st"), R"(: pop-up "p" has the tag "1st", which is no integer)"},
      {uiWith(
           R"(<widget class="Matrix" name="m"><widget class="QRadioButton" name="c"/></widget>)"),
       R"(: radio button "c" has no tag)"},
      {uiWith(R"(<widget class="QLabel" name="x"><widget class="QWidget" name="x"/></widget>)"),
       R"(: two objects are named "x")"},
      {uiWith(R"(<layout class="Pile"/>)"), ": The layout type `Pile' is not supported.", true},
  };
  testing::internal::CaptureStderr();
  for (const auto& [ui, problem, loads] : cases) {
    SCOPED_TRACE(problem);
    NibInBundle bundle;
    EXPECT_EQ(bundle.load(ui) != nullptr, loads);
    EXPECT_EQ(bundle.problems, Problems{bundle.file + problem});
  }
  qWarning("caught no more");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "caught no more\n");
}

TEST(QtNib, ConnectsWhatAPropertyNames) {
  struct Graph : QtView<View> {
    using QtView::QtView;
    NibObject* gauge = nullptr;
  };
  // The gauge comes later, in the file and by its name.
  const auto graphOf = [](const std::string& property, const std::string& name) {
    return uiWith(R"(<widget class="Graph" name="graph"><property name=")" + property +
                  R"(" stdset="0"><string>)" + name + R"(</string></property>
      </widget><widget class="Gauge" name="z"/><widget class="QLabel" name="text"/>)");
  };
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"gauge", "z", nullptr},
      {"other", "z", R"(: Graph "graph" has no property "gauge")"},
      {"gauge", "Z", R"(: gauge "Z" of Graph "graph" is missing, expected a Gauge)"},
      {"gauge", "text", R"(: gauge "text" of Graph "graph" is a QLabel, expected a Gauge)"}};
  const auto makeWidget = [](QWidget* parent) { return new QWidget(parent); };
  for (const auto& [property, name, problem] : cases) {
    SCOPED_TRACE(name);
    NibInBundle bundle;
    bundle.loader.registerClass(
        "Gauge", {makeWidget, [](QWidget& widget) { return std::make_unique<Gauge>(widget); }});
    bundle.loader.registerClass(
        "Graph", {makeWidget,
                  [](QWidget& widget) { return std::make_unique<Graph>(widget); },
                  {{"gauge", "Gauge", [](NibObject& graph, NibObject& referred) {
                      return (dynamic_cast<Graph&>(graph).gauge = dynamic_cast<Gauge*>(&referred));
                    }}}});
    const auto nib = bundle.load(graphOf(property, name));
    ASSERT_EQ(nib != nullptr, problem == nullptr);
    EXPECT_EQ(bundle.problems, nib ? Problems() : Problems{bundle.file + problem});
    if (nib) {
      EXPECT_EQ(nib->outlet<Graph>("graph")->gauge, nib->outlet<Gauge>("z"));
    }
  }
}

TEST(QtNib, TextsComeFromTheBundle) {
  NibInBundle bundle;
  const auto nib = bundle.load(uiWith(R"(
    <widget class="QCheckBox" name="box">
      <property name="text"><string>text</string></property>
    </widget>
    <widget class="QLabel" name="fixed"><property name="text"><string notr="true">text</string></property></widget>
    <widget class="QLabel" name="untold"><property name="text"><string>Größe &lt;b> %1 %s</string></property></widget>
    <widget class="QComboBox" name="popUp">
      <property name="tags" stdset="0"><stringlist><string>1</string></stringlist></property>
      <item><property name="text"><string>item</string></property></item>
    </widget>)"),
                               "text=\"Größe\"; item=Eintrag; 1=2;");
  EXPECT_EQ(bundle.problems, Problems());
  ASSERT_NE(nib, nullptr);
  const auto property = [&](const char* name, const char* of) {
    return widgetOf(nib->outlet<View>(name))->property(of).toString();
  };
  EXPECT_EQ(property("box", "text"), "Größe");
  EXPECT_EQ(property("fixed", "text"), "text");
  EXPECT_EQ(property("untold", "text"), "Größe <b> %1 %s");
  EXPECT_EQ(property("popUp", "currentText"), "Eintrag");
  EXPECT_EQ(nib->outlet<PopUpButton>("popUp")->selectedTag(), 1);
  EXPECT_EQ(QCoreApplication::translate("Nib", "text"), "text");
}

/// In either order, with parts of the nib in a window of the host's.
TEST(QtNib, TakesItsWidgetsAlong) {
  for (const bool windowFirst : {false, true}) {
    SCOPED_TRACE(windowFirst);
    NibInBundle bundle;
    auto nib = bundle.load(uiWith(R"(
      <widget class="QWidget" name="panel"><widget class="QCheckBox" name="box"/></widget>
      <widget class="QWidget" name="alone"/>)"));
    auto window = std::make_unique<QWidget>();
    std::vector<QPointer<QWidget>> widgets;
    for (const char* name : {"view", "panel", "box", "alone"}) {
      auto* view = nib->outlet<View>(name);
      view->setDidDraw([](DrawingContext&) {});
      widgets.emplace_back(widgetOf(view));
    }
    widgets[1]->setParent(window.get());
    widgets[3]->setParent(nullptr);
    if (windowFirst) {
      window.reset();
      EXPECT_TRUE(widgets[1].isNull());
    }
    nib.reset();
    EXPECT_EQ(std::count(widgets.begin(), widgets.end(), nullptr), 4);
  }
}

TEST(QtNib, LoadsTheModulesNibsWithoutPluginsOfDesigner) {
  const QStringList paths = QCoreApplication::libraryPaths();
  ASSERT_FALSE(paths.isEmpty());
  Problems problems;
  QtNibLoader loader([&](const std::string& problem) { problems.push_back(problem); });
  const auto bundle = Bundle::open(VEL_RESOURCES, Locale(".", {"en"}), problems);
  for (const char* name : {"VELViewsController", "VELNCViewsController"}) {
    EXPECT_NE(loader.load(bundle.value(), name), nullptr);
  }
  EXPECT_EQ(problems, Problems());

  EXPECT_EQ(QCoreApplication::libraryPaths(), paths);
  std::ifstream maps("/proc/self/maps");
  const std::string text(std::istreambuf_iterator<char>(maps), {});
  EXPECT_NE(text.find("libQt6Widgets"), std::string::npos);
  EXPECT_EQ(text.find("libQt6Qml"), std::string::npos);
}

}  // namespace vel::test
