#include "host/desktop/kit/Kit.h"

#include <memory>

#include "host/desktop/kit/PaintedWidget.h"
#include "host/desktop/kit/QtColor.h"
#include "host/desktop/kit/QtGauges.h"
#include "host/desktop/kit/QtMenuBarText.h"
#include "host/desktop/kit/QtModuleNameStatusBarView.h"
#include "platform/host/VELGraphArrays.h"

namespace vel {

namespace {

QWidget* makeHiddenWidget(QWidget* parent) {
  auto widget = std::make_unique<QWidget>(parent);
  widget->hide();  // On purpose: a parent that is shown leaves it hidden.
  return widget.release();
}

template <typename T>
void registerView(QtNibLoader& loader) {
  loader.registerClass(T::kNibClass,
                       {[](QWidget* parent) -> QWidget* {
                          return std::make_unique<PaintedWidget>(parent).release();
                        },
                        [](QWidget& widget) -> std::unique_ptr<NibObject> {
                          return std::make_unique<T>(dynamic_cast<PaintedWidget&>(widget));
                        }});
}

}  // namespace

void registerKit(QtNibLoader& loader) {
  registerView<QtGauges>(loader);
  registerView<QtMenuBarText>(loader);
  registerView<QtModuleNameStatusBarView>(loader);
  loader.registerClass(VELColor::kNibClass,
                       {makeHiddenWidget, [](QWidget& widget) -> std::unique_ptr<NibObject> {
                          return std::make_unique<QtColor>(widget);
                        }});
  loader.registerClass(VELGraphArrays::kNibClass, {makeHiddenWidget, [](QWidget& /*widget*/) {
                                                     return std::make_unique<VELGraphArrays>();
                                                   }});
  loader.registerClass(VELGraphArraysMultiple::kNibClass,
                       {makeHiddenWidget, [](QWidget& /*widget*/) {
                          return std::make_unique<VELGraphArraysMultiple>();
                        }});
}

}  // namespace vel
