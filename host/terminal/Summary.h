// The display's layout as plain text, as tall as its content.
#pragma once

#include <utility>

#include "host/terminal/Content.h"
#include "host/terminal/Display.h"
#include "host/terminal/Layout.h"
#include "host/terminal/Output.h"

namespace vel {

class Summary : public Display {
 public:
  /// `size` is the most it takes.
  Summary(const Output& output, ContentSource& source, const Labels& labels, const Locale& locale,
          LayoutSize size, LayoutStyle style)
      : output_(output),
        source_(source),
        labels_(labels),
        locale_(locale),
        size_(size),
        style_(std::move(style)) {}

  void show(const CPUData& record) override;

 private:
  const Output& output_;
  ContentSource& source_;
  const Labels& labels_;
  const Locale& locale_;
  const LayoutSize size_;
  const LayoutStyle style_;
  Content content_;
};

}  // namespace vel
