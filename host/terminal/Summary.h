// The display's layout as plain text, as tall as its content.
#pragma once

#include "host/terminal/Display.h"
#include "host/terminal/Layout.h"
#include "host/terminal/Output.h"
#include "platform/kernel/Kernel.h"

namespace vel {

class Summary : public Display {
 public:
  /// `item` is the module's, null for none; `size` is the most it takes.
  Summary(const Output& output, View* item, Kernel& kernel, const Labels& labels,
          const Locale& locale, LayoutSize size, LayoutStyle style)
      : output_(output),
        itemView_(item),
        running_(kernel),
        labels_(labels),
        locale_(locale),
        size_(size),
        style_(style) {}

  void show(const CPUData& record) override;

 private:
  const Output& output_;
  View* const itemView_;
  RunningProcessors running_;
  const Labels& labels_;
  const Locale& locale_;
  const LayoutSize size_;
  const LayoutStyle style_;
  Item item_;
  Readings readings_;
};

}  // namespace vel
