// A view as plain state, with its position in no display.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/headless/HeadlessTree.h"
#include "platform/windowing/View.h"

namespace vel {

/// Implements what `Interface` has of View. The rest of the state is for whoever looks at the view
/// in the user's place.
template <typename Interface>
class HeadlessView : public Interface, public HeadlessTree {
 public:
  [[nodiscard]] Rect frame() const override { return frame_; }
  void setFrameOrigin(Point origin) override { frame_.origin = origin; }
  void setFrameSize(Size size) override { frame_.size = size; }
  [[nodiscard]] bool isHidden() const override { return hidden_; }
  void setHidden(bool hidden) override { hidden_ = hidden; }
  void setAlphaValue(double alpha) override { alphaValue_ = alpha; }
  void setNeedsDisplay() override { ++displayRequests_; }
  void setDidDraw(std::function<void(DrawingContext&)> didDraw) override {
    didDraw_ = std::move(didDraw);
  }
  [[nodiscard]] bool isWindowVisible() const override { return windowVisible_; }

  [[nodiscard]] double alphaValue() const { return alphaValue_; }
  [[nodiscard]] std::uint64_t displayRequests() const { return displayRequests_; }
  void setWindowVisible(bool visible) { windowVisible_ = visible; }

  /// What a display does.
  void draw(DrawingContext& context) const {
    if (didDraw_) {
      didDraw_(context);
    }
  }

 private:
  Rect frame_;
  bool hidden_ = false;
  double alphaValue_ = 1.0;
  std::uint64_t displayRequests_ = 0;
  bool windowVisible_ = false;
  std::function<void(DrawingContext&)> didDraw_;
};

}  // namespace vel
