#include "host/desktop/kit/Kit.h"

#include <memory>
#include <utility>
#include <vector>

#include "host/desktop/kit/PaintedWidget.h"
#include "host/desktop/kit/ProcessLabel.h"
#include "host/desktop/kit/QtColor.h"
#include "host/desktop/kit/QtGauges.h"
#include "host/desktop/kit/QtGraphMultiple.h"
#include "host/desktop/kit/QtMenuBarText.h"
#include "host/desktop/kit/QtModuleNameStatusBarView.h"
#include "host/desktop/kit/QtTextFieldKillApp.h"
#include "platform/host/VELGraphArrays.h"

namespace vel {

namespace {

QWidget* makeHiddenWidget(QWidget* parent) {
  auto widget = std::make_unique<QWidget>(parent);
  widget->hide();  // On purpose: a parent that is shown leaves it hidden.
  return widget.release();
}

template <typename T>
void registerView(QtNibLoader& loader, std::vector<QtNibLoader::Reference> references = {}) {
  loader.registerClass(T::kNibClass,
                       {[](QWidget* parent) -> QWidget* {
                          return std::make_unique<PaintedWidget>(parent).release();
                        },
                        [](QWidget& widget) -> std::unique_ptr<NibObject> {
                          return std::make_unique<T>(dynamic_cast<PaintedWidget&>(widget));
                        },
                        std::move(references)});
}

bool setHistory(NibObject& graph, NibObject& referred) {
  auto* history = dynamic_cast<VELGraphArraysMultiple*>(&referred);
  if (history != nullptr) {
    dynamic_cast<VELGraphMultiple&>(graph).setHistory(history);
  }
  return history != nullptr;
}

}  // namespace

void registerKit(QtNibLoader& loader, OfferEnding offerEnding, DescribeProcess describeProcess) {
  registerView<QtGauges>(loader);
  registerView<QtGraphMultiple>(loader,
                                {{"history", VELGraphArraysMultiple::kNibClass, setHistory}});
  registerView<QtMenuBarText>(loader);
  registerView<QtModuleNameStatusBarView>(loader);
  loader.registerClass(
      VELTextFieldKillApp::kNibClass,
      {[](QWidget* parent) -> QWidget* { return std::make_unique<ProcessLabel>(parent).release(); },
       [offer = std::move(offerEnding), describe = std::move(describeProcess)](QWidget& widget) {
         return std::make_unique<QtTextFieldKillApp>(dynamic_cast<ProcessLabel&>(widget), offer,
                                                     describe);
       }});
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
