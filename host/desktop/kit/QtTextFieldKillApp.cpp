#include "host/desktop/kit/QtTextFieldKillApp.h"

#include <utility>

#include "host/desktop/kit/BootTime.h"

namespace vel {

QtTextFieldKillApp::QtTextFieldKillApp(ProcessLabel& label, OfferEnding offerEnding)
    : QtText(label), label_(&label), offerEnding_(std::move(offerEnding)) {}

QtTextFieldKillApp::~QtTextFieldKillApp() {
  if (!label_.isNull()) {
    label_->setAction({});
  }
}

void QtTextFieldKillApp::setStringValue(std::string_view text) {
  QtText::setStringValue(text);
  offerWhatThereIs();
}

void QtTextFieldKillApp::setPID(std::int64_t pid) {
  pid_ = pid;
  shownAt_ = bootTime();
  offerWhatThereIs();
}

void QtTextFieldKillApp::offerWhatThereIs() {
  const bool isProcess =
      offerEnding_ && pid_ >= 1 && !label_->text().isEmpty() && label_->text() != u"-";
  if (isProcess == label_->hasAction()) {
    return;
  }
  label_->setAction(isProcess ? ProcessLabel::Action([this](QPoint position) {
    offerEnding_({pid_, stringValue(), shownAt_, position});
  })
                              : ProcessLabel::Action());
}

}  // namespace vel
