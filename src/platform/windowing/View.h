// What the module asks of a view, whichever toolkit draws it.
#pragma once

#include <functional>

#include "platform/windowing/DrawingContext.h"
#include "platform/windowing/Geometry.h"
#include "platform/windowing/NibObject.h"

namespace vel {

/// To be used on the main thread only.
class View : public NibObject {
 public:
  static constexpr const char* kNibClass = "QWidget";

  [[nodiscard]] virtual Rect frame() const = 0;
  virtual void setFrameOrigin(Point origin) = 0;
  virtual void setFrameSize(Size size) = 0;

  /// The view's own flag, whatever its window and the views above it do.
  [[nodiscard]] virtual bool isHidden() const = 0;
  virtual void setHidden(bool hidden) = 0;

  /// The opacity, from 0 to 1.
  virtual void setAlphaValue(double alpha) = 0;

  virtual void setNeedsDisplay() = 0;

  /// Called each time after the toolkit has drawn the view, to draw what else there is to see. One
  /// function; it is called no more once an empty one has been set.
  virtual void setDidDraw(std::function<void(DrawingContext&)> didDraw) = 0;

  /// Whether the window that shows the view is on screen; false for a view in no window.
  [[nodiscard]] virtual bool isWindowVisible() const = 0;
};

}  // namespace vel
