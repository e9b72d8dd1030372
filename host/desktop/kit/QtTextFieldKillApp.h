// The name of a process, from where the user can ask what it is and to end it.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "host/desktop/kit/DescribeProcess.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/desktop/kit/ProcessLabel.h"
#include "host/desktop/windowing/QtControls.h"
#include "platform/host/VELTextFieldKillApp.h"

namespace vel {

/// Offers nothing while it names no process: with a number below 1, without a text or with "-".
class QtTextFieldKillApp : public QtText<VELTextFieldKillApp> {
 public:
  /// Without a function it never offers, or tells, anything.
  QtTextFieldKillApp(ProcessLabel& label, OfferEnding offerEnding, DescribeProcess describeProcess);
  ~QtTextFieldKillApp() override;
  QtTextFieldKillApp(const QtTextFieldKillApp&) = delete;
  QtTextFieldKillApp& operator=(const QtTextFieldKillApp&) = delete;

  void setStringValue(std::string_view text) override;
  void setPID(std::int64_t pid) override;
  [[nodiscard]] std::int64_t pid() const override { return pid_; }

 private:
  void offerWhatThereIs();
  [[nodiscard]] bool isProcess() const;

  QPointer<ProcessLabel> label_;  ///< a window that goes first takes its widgets with it
  const OfferEnding offerEnding_;
  const DescribeProcess describeProcess_;
  std::int64_t pid_ = 0;
  std::chrono::nanoseconds shownAt_{0};
};

}  // namespace vel
