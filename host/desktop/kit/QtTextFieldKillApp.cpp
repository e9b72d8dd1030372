#include "host/desktop/kit/QtTextFieldKillApp.h"

#include <utility>

#include "host/BootTime.h"

namespace vel {

QtTextFieldKillApp::QtTextFieldKillApp(ProcessLabel& label, OfferEnding offerEnding,
                                       DescribeProcess describeProcess)
    : QtText(label),
      label_(&label),
      offerEnding_(std::move(offerEnding)),
      describeProcess_(std::move(describeProcess)) {
  label.setDetails(
      [this] { return describeProcess_ && isProcess() ? describeProcess_(pid_) : QString(); });
}

QtTextFieldKillApp::~QtTextFieldKillApp() {
  if (!label_.isNull()) {
    label_->setAction({});
    label_->setDetails({});
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
  const bool offers = offerEnding_ && isProcess();
  if (offers == label_->hasAction()) {
    return;
  }
  label_->setAction(offers ? ProcessLabel::Action([this](QPoint position) {
    offerEnding_({pid_, stringValue(), shownAt_, position});
  })
                           : ProcessLabel::Action());
}

bool QtTextFieldKillApp::isProcess() const {
  return pid_ >= 1 && !label_->text().isEmpty() && label_->text() != u"-";
}

}  // namespace vel
