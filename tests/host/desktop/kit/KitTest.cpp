// The kit's classes as a nib makes them, on a screen.
#include "host/desktop/kit/Kit.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <regex>

#include "host/desktop/kit/PaintedWidget.h"
#include "host/desktop/kit/QtColor.h"
#include "host/desktop/windowing/WidgetViews.h"
#include "platform/host/VELGaugeViewMultiple.h"
#include "platform/host/VELGraphArrays.h"
#include "platform/host/VELGraphMultiple.h"
#include "platform/host/VELMenuBarText.h"
#include "platform/host/VELModuleNameStatusBarView.h"
#include "support/NibInBundle.h"

namespace vel::test {

constexpr const char* kUi = R"(
<widget class="VELColor" name="color"/>
<widget class="VELGraphArrays" name="history"/>
<widget class="VELGraphArraysMultiple" name="histories"/>
<widget class="VELGraphMultiple" name="graph">
  <property name="history" stdset="0"><string>histories</string></property>
</widget>
<widget class="VELGaugeViewMultiple" name="gauges"/>
<widget class="VELMenuBarText" name="text"/>
<widget class="VELModuleNameStatusBarView" name="name"/>)";

struct Kit : testing::Test {
  Kit() {
    EXPECT_EQ(bundle.problems, std::vector<std::string>());
    for (View* view : std::initializer_list<View*>{gauges, text, name}) {
      view->setFrameSize({1.0, 22.0});
      view->setDidDraw([this](DrawingContext&) { ++paintings; });
    }
    root->resize(300, 22);
  }

  /// How often the kit's views have painted themselves since.
  int paintingsAfter(const std::function<void()>& change) {
    for (int i = 0; i < 10; ++i) {
      if (i == 5) {
        paintings = 0;
        change();
      }
      QCoreApplication::processEvents();
    }
    return paintings;
  }

  NibInBundle bundle{registerKit};
  std::unique_ptr<Nib> nib = bundle.load(uiWith(kUi));
  VELGaugeViewMultiple* gauges = nib->outlet<VELGaugeViewMultiple>("gauges");
  VELMenuBarText* text = nib->outlet<VELMenuBarText>("text");
  VELModuleNameStatusBarView* name = nib->outlet<VELModuleNameStatusBarView>("name");
  VELColor* color = nib->outlet<VELColor>("color");
  QWidget* root = widgetOf(nib->outlet<View>("view"));
  int paintings = 0;
};

TEST_F(Kit, ShowsViewsOfTheirOwnWidthAndNothingElse) {
  EXPECT_NE(nib->outlet<VELGraphArrays>("history"), nullptr);
  EXPECT_NE(nib->outlet<VELGraphArraysMultiple>("histories"), nullptr);
  root->show();
  for (const QWidget* child : root->findChildren<QWidget*>()) {
    EXPECT_EQ(child->isVisible(), dynamic_cast<const PaintedWidget*>(child) != nullptr)
        << child->objectName().toStdString();
  }
  gauges->setNumberOfGauges(8);
  const double eight = gauges->frame().size.width;
  gauges->setFrameSize({5.0, 30.0});
  EXPECT_EQ(gauges->frame().size, (Size{eight, 30.0}));
  gauges->setNumberOfGauges(2);
  EXPECT_LT(gauges->frame().size.width, eight);
  EXPECT_EQ(text->frame().size.width, 0.0);
}

TEST_F(Kit, GaugesRepaintOnlyForWhatCanBeSeen) {
  gauges->setNumberOfGauges(8);
  root->show();
  const auto paintingsAt = [this](float percent) {
    return paintingsAfter([=, this] { gauges->currentValueForGaugeAtIndex(percent, 7); });
  };
  for (const int style : {1, 2, 3, 4}) {
    SCOPED_TRACE(style);
    gauges->setGaugeDefinedType(style);
    paintingsAt(50.0F);
    EXPECT_EQ(paintingsAt(50.4F), 0);
    EXPECT_EQ(paintingsAt(80.0F), 1);
    const Color shade{0.1 * style, 0.0, 0.0};
    const std::function<void()> changes[] = {[&] {
                                               for (int i = 0; i < 8; ++i) {
                                                 gauges->currentValueForGaugeAtIndex(
                                                     float(style % 2 * 50 + i), i);
                                               }
                                             },
                                             [&] { gauges->innerColorForGaugeAtIndex(shade, 7); },
                                             [&] { gauges->outerColor().set(shade); },
                                             [&] { gauges->setAlphaValue(1.0 - 0.1 * style); }};
    for (const auto& change : changes) {
      EXPECT_EQ(paintingsAfter(change), 1);
    }
  }
  root->hide();
  EXPECT_EQ(paintingsAt(20.0F), 0);
}

TEST_F(Kit, DigitsMoveNothing) {
  // Its digits differ in width, which those of hardly any other font do.
  widgetOf(text)->setFont(QFont("D050000L"));
  const auto image = [this](const char* percent) {
    text->setTextString(percent);
    EXPECT_EQ(text->stringValue(), percent);
    EXPECT_EQ(widgetOf(text)->accessibleName(), percent);
    return widgetOf(text)->grab().toImage();
  };
  const auto percentSign = [](const QImage& of) {
    return of.copy(of.width() * 5 / 6, 0, of.width() / 6, of.height());
  };
  const QImage ten = image("10%");
  for (const char* percent : {"11%", "14%", "17%", "18%"}) {
    const QImage other = image(percent);
    EXPECT_NE(other, ten) << percent;
    EXPECT_EQ(other.size(), ten.size()) << percent;
    EXPECT_EQ(percentSign(other), percentSign(ten)) << percent;
  }
  EXPECT_GT(image("<b>19%</b>").width(), ten.width() * 1.5);
  root->show();
  EXPECT_EQ(paintingsAfter([&] { text->setTextString("<b>19%</b>"); }), 0);
}

TEST_F(Kit, TheNameIsWholeAndFollowsTheColour) {
  name->setThreeLetterName("CPU");
  name->setColorObject(color);
  const QImage image = widgetOf(name)->grab().toImage();
  std::string rows;
  for (int y = 0; y < image.height(); ++y) {
    rows += image.copy(0, y, image.width(), 1) == image.copy(0, 0, image.width(), 1) ? ' ' : '#';
  }
  EXPECT_TRUE(std::regex_match(rows, std::regex(" +#{4,} +#{4,} +#{4,} +"))) << rows;
  root->show();
  color->statusLabelColor().set(redColor);
  EXPECT_NE(widgetOf(name)->grab().toImage(), image);
  name->setColorObject(nullptr);
  EXPECT_EQ(paintingsAfter([&] { color->statusLabelColor().set({0.0, 1.0, 0.0}); }), 0);
  {
    QtColor shortLived(*root);
    name->setColorObject(&shortLived);
  }
  name->setColorObject(color);
}

TEST_F(Kit, GraphShowsItsHistoryInTheSizeItIsGiven) {
  auto* graph = nib->outlet<VELGraphMultiple>("graph");
  graph->setFrameOrigin({40.0, 0.0});  // Beside the others.
  graph->setFrameSize({236.0, 30.0});
  graph->setDidDraw([this](DrawingContext&) { ++paintings; });
  EXPECT_EQ(graph->frame().size, (Size{236.0, 30.0}));
  root->show();
  const QImage empty = widgetOf(graph)->grab().toImage();
  nib->outlet<VELGraphArraysMultiple>("histories")->addNewValueForGraphAtIndex(50.0F, 0);
  EXPECT_EQ(paintingsAfter([&] { graph->setNeedsDisplay(); }), 1);
  EXPECT_NE(widgetOf(graph)->grab().toImage(), empty);
}

TEST_F(Kit, ColoursFollowThePalette) {
  const struct {
    QColor window;
    QColor label;
    std::int64_t style;
    double quarternaryAlpha;
  } cases[] = {{QColor(40, 42, 46), Qt::white, 1, 0.30},
               {QColor(244, 245, 246), Qt::black, 0, 0.25}};
  QWidget bar;
  bar.setAttribute(Qt::WA_SetPalette);
  widgetOf(gauges)->setParent(&bar);
  for (QWidget* asked : {root, &bar}) {
    for (const auto& [window, label, style, alpha] : cases) {
      SCOPED_TRACE(testing::Message() << "bar: " << (asked == &bar) << ", style " << style);
      QPalette palette;
      palette.setColor(QPalette::Window, window);
      palette.setColor(QPalette::WindowText, label);
      asked->setPalette(palette);
      const Color expected{label.redF(), label.greenF(), label.blueF(), 1.0};
      EXPECT_EQ(color->statusLabelColor().get(), expected);
      EXPECT_EQ(color->statusQuarternaryLabelColor().get(), expected.withAlpha(alpha));
      EXPECT_EQ(color->statusItemBackgroundStyle(), style);
    }
    color->refreshColorForView(*gauges);
  }
  nib.reset();
}

}  // namespace vel::test
