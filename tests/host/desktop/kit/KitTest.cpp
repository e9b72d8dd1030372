// The kit's classes as a nib makes them, on a screen.
#include "host/desktop/kit/Kit.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>

#include "support/NibInBundle.h"
#include "host/desktop/kit/PaintedWidget.h"
#include "host/desktop/kit/QtColor.h"
#include "host/desktop/windowing/QtView.h"
#include "platform/host/VELGaugeViewMultiple.h"
#include "platform/host/VELGraphArrays.h"
#include "platform/host/VELMenuBarText.h"
#include "platform/host/VELModuleNameStatusBarView.h"

namespace vel::test {

constexpr const char* kUi = R"(
<widget class="VELColor" name="color"/>
<widget class="VELGraphArrays" name="history"/>
<widget class="VELGraphArraysMultiple" name="histories"/>
<widget class="VELGaugeViewMultiple" name="gauges"/>
<widget class="VELMenuBarText" name="text"/>
<widget class="VELModuleNameStatusBarView" name="name"/>)";

QWidget& qtWidget(NibObject* view) {
  return dynamic_cast<QtWidgetOwner&>(*view).widget();
}

struct Kit : testing::Test {
  Kit() {
    registerKit(bundle.loader);
    nib = bundle.load(uiWith(kUi));
    EXPECT_EQ(bundle.problems, std::vector<std::string>());
    gauges = nib->outlet<VELGaugeViewMultiple>("gauges");
    text = nib->outlet<VELMenuBarText>("text");
    name = nib->outlet<VELModuleNameStatusBarView>("name");
    color = nib->outlet<VELColor>("color");
    root = &qtWidget(nib->outlet<View>("view"));
    for (View* view : std::initializer_list<View*>{gauges, text, name}) {
      view->setFrameSize({1.0, 22.0});
      view->setDidDraw([this] { ++paintings; });
    }
    root->resize(300, 22);
  }

  /// How often the kit's views have painted themselves since.
  int paintingsAfter(const std::function<void()>& change) {
    const auto settle = [] {
      for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents();
      }
    };
    settle();
    paintings = 0;
    change();
    settle();
    return paintings;
  }
  QImage grab(NibObject* view) { return qtWidget(view).grab().toImage(); }

  NibInBundle bundle;
  std::unique_ptr<Nib> nib;
  VELGaugeViewMultiple* gauges = nullptr;
  VELMenuBarText* text = nullptr;
  VELModuleNameStatusBarView* name = nullptr;
  VELColor* color = nullptr;
  QWidget* root = nullptr;
  int paintings = 0;
};

TEST_F(Kit, ShowsViewsAndNothingElse) {
  EXPECT_NE(nib->outlet<VELGraphArrays>("history"), nullptr);
  EXPECT_NE(nib->outlet<VELGraphArraysMultiple>("histories"), nullptr);
  root->show();
  for (const QWidget* child : root->findChildren<QWidget*>()) {
    EXPECT_EQ(child->isVisible(), dynamic_cast<const PaintedWidget*>(child) != nullptr)
        << child->objectName().toStdString();
  }
}

TEST_F(Kit, GaugesRepaintOnlyForWhatCanBeSeen) {
  gauges->setNumberOfGauges(8);
  root->show();
  const auto value = [this](float percent, std::int64_t index) {
    return [=, this] { gauges->currentValueForGaugeAtIndex(percent, index); };
  };
  for (const int style : {1, 2, 3, 4}) {
    SCOPED_TRACE(style);
    gauges->setGaugeDefinedType(style);
    paintingsAfter(value(50.0F, 7));
    EXPECT_EQ(paintingsAfter(value(50.4F, 7)), 0);
    EXPECT_EQ(paintingsAfter(value(80.0F, 7)), 1);
    EXPECT_EQ(paintingsAfter([&] {
                for (int i = 0; i < 8; ++i) {
                  gauges->currentValueForGaugeAtIndex(float(10 * i + style), i);
                  gauges->innerColorForGaugeAtIndex({0.1 * i, 0.1 * style, 0.0}, i);
                }
              }),
              1);
    EXPECT_EQ(paintingsAfter([&] { gauges->outerColor().set({0.1 * style, 0.0, 0.0}); }), 1);
    EXPECT_EQ(paintingsAfter([&] { gauges->setAlphaValue(1.0 - 0.1 * style); }), 1);
  }
  root->hide();
  EXPECT_EQ(paintingsAfter(value(20.0F, 7)), 0);
}

TEST_F(Kit, AViewFitsItsOwnWidth) {
  gauges->setNumberOfGauges(8);
  const double eight = gauges->frame().size.width;
  gauges->setFrameSize({5.0, 30.0});
  EXPECT_EQ(gauges->frame().size, (Size{eight, 30.0}));
  gauges->setNumberOfGauges(2);
  EXPECT_LT(gauges->frame().size.width, eight);
  EXPECT_EQ(text->frame().size.width, 0.0);
}

TEST_F(Kit, DigitsMoveNothing) {
  QImage before;
  for (char digit = '0'; digit <= '9'; ++digit) {
    SCOPED_TRACE(digit);
    text->setTextString(std::string("1") + digit + "%");
    EXPECT_EQ(qtWidget(text).accessibleName().toStdString(), text->stringValue());
    const QImage image = grab(text);
    const auto percentSign = [](const QImage& of) {
      return of.copy(of.width() - of.width() / 3, 0, of.width() / 3, of.height());
    };
    if (!before.isNull()) {
      EXPECT_EQ(image.size(), before.size());
      EXPECT_EQ(percentSign(image), percentSign(before));
      EXPECT_NE(image, before);
    }
    before = image;
  }
  const double plain = text->frame().size.width;
  text->setTextString("<b>19%</b>");
  EXPECT_GT(text->frame().size.width, plain * 1.5);
  root->show();
  EXPECT_EQ(paintingsAfter([&] { text->setTextString("<b>19%</b>"); }), 0);
}

/// The rows that have a pixel of another colour than their first one.
int rowsWithInk(const QImage& image, int first, int last) {
  int rows = 0;
  for (int y = first; y <= last; ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) != image.pixel(image.width() - 1, 0)) {
        ++rows;
        break;
      }
    }
  }
  return rows;
}

TEST_F(Kit, TheNameIsWholeAndFollowsTheColour) {
  name->setThreeLetterName("CPU");
  name->setColorObject(color);
  const QImage image = grab(name);
  EXPECT_EQ(rowsWithInk(image, 0, 0) + rowsWithInk(image, 21, 21), 0);
  EXPECT_GE(rowsWithInk(image, 1, 20), 15);
  EXPECT_LT(rowsWithInk(image, 1, 20), 20) << "the letters run together";

  root->show();
  color->statusLabelColor().set(redColor);
  EXPECT_NE(grab(name), image);
  name->setColorObject(nullptr);
  EXPECT_EQ(paintingsAfter([&] { color->statusLabelColor().set({0.0, 1.0, 0.0}); }), 0);
  {
    QtColor shortLived(*root);
    name->setColorObject(&shortLived);
  }
  name->setColorObject(color);
}

TEST_F(Kit, ColoursFollowThePalette) {
  struct Case {
    const char* name;
    QColor window;
    QColor label;
    std::int64_t style;
    double quarternaryAlpha;
  };
  const Case cases[] = {{"dark", QColor(40, 42, 46), Qt::white, 1, 0.30},
                        {"light", QColor(244, 245, 246), Qt::black, 0, 0.25}};
  QWidget bar;
  bar.setAttribute(Qt::WA_SetPalette);
  qtWidget(gauges).setParent(&bar);
  for (const bool barIsAsked : {false, true}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(testing::Message() << c.name << ", bar: " << barIsAsked);
      QPalette palette;
      palette.setColor(QPalette::Window, c.window);
      palette.setColor(QPalette::WindowText, c.label);
      (barIsAsked ? bar : *root).setPalette(palette);
      const Color label{c.label.redF(), c.label.greenF(), c.label.blueF(), 1.0};
      EXPECT_EQ(color->statusLabelColor().get(), label);
      EXPECT_EQ(color->statusQuarternaryLabelColor().get(), label.withAlpha(c.quarternaryAlpha));
      EXPECT_EQ(color->statusItemBackgroundStyle(), c.style);
    }
    color->refreshColorForView(*gauges);
  }
  nib.reset();
}

}  // namespace vel::test
