// The widget kit as plain state.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessView.h"
#include "platform/host/VELColor.h"
#include "platform/host/VELGaugeViewMultiple.h"
#include "platform/host/VELGraphMultiple.h"
#include "platform/host/VELMenuBarText.h"
#include "platform/host/VELModuleNameStatusBarView.h"
#include "platform/host/VELTextFieldKillApp.h"

namespace vel {

class HeadlessColor : public VELColor {
 public:
  /// Another appearance of the menu bar.
  using VELColor::set;

  void refreshColorForView(View& view) override { ++refreshes_[&view]; }

  /// How often the colours have been asked for on behalf of the view.
  [[nodiscard]] int refreshes(const View& view) const;

 private:
  std::map<const View*, int> refreshes_;
};

/// A view that decides its own width: whoever sets its size sets the height.
template <typename Interface>
class HeadlessFittedView : public HeadlessView<Interface> {
 public:
  void setFrameSize(Size size) override {
    HeadlessView<Interface>::setFrameSize({fittingWidth_, size.height});
  }

 protected:
  void fitWidth(double width) {
    fittingWidth_ = width;
    HeadlessView<Interface>::setFrameSize({width, this->frame().size.height});
  }

 private:
  double fittingWidth_ = 0.0;
};

class HeadlessGaugeViewMultiple : public HeadlessFittedView<VELGaugeViewMultiple> {
 public:
  HeadlessGaugeViewMultiple() { fit(); }

  /// Of one gauge, in points.
  void setGaugeWidth(double width);

 protected:
  void layoutDidChange() override { fit(); }
  void contentDidChange() override { setNeedsDisplay(); }

 private:
  void fit() { fitWidth(static_cast<double>(gauges().size()) * gaugeWidth_); }

  double gaugeWidth_ = 16.0;
};

using HeadlessGraphMultiple = HeadlessView<VELGraphMultiple>;

class HeadlessTextFieldKillApp : public HeadlessText<VELTextFieldKillApp> {
 public:
  void setPID(std::int64_t pid) override { pid_ = pid; }
  [[nodiscard]] std::int64_t pid() const override { return pid_; }

 private:
  std::int64_t pid_ = 0;
};

/// In points, of a text in UTF-8.
using WidthOfText = std::function<double(std::string_view)>;

/// As a fixed-width font has it.
double widthInFixedFont(std::string_view text);

/// A view that is a text.
template <typename Interface>
class HeadlessFittedText : public HeadlessFittedView<Interface> {
 public:
  void setWidthOfText(WidthOfText widthOfText) {
    widthOfText_ = std::move(widthOfText);
    this->fitWidth(widthOfText_(text_));
  }

 protected:
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string_view text) {
    if (text != text_) {
      text_ = text;
      this->fitWidth(widthOfText_(text_));
      this->setNeedsDisplay();
    }
  }

 private:
  std::string text_;
  WidthOfText widthOfText_ = widthInFixedFont;
};

class HeadlessMenuBarText : public HeadlessFittedText<VELMenuBarText> {
 public:
  void setTextString(std::string_view text) override { setText(text); }
  [[nodiscard]] std::string stringValue() const override { return text(); }
};

class HeadlessModuleNameStatusBarView : public HeadlessFittedText<VELModuleNameStatusBarView> {
 public:
  /// Null for none.
  void setColorObject(VELColor* color) override { colorObject_ = color; }
  void setThreeLetterName(std::string_view name) override { setText(name); }

  [[nodiscard]] VELColor* colorObject() const { return colorObject_; }
  [[nodiscard]] const std::string& threeLetterName() const { return text(); }

 private:
  VELColor* colorObject_ = nullptr;
};

}  // namespace vel
