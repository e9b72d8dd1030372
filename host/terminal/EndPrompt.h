// The question before a row's processes are ended, and what has come of it, in the terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/session/EndWords.h"
#include "host/terminal/Keyboard.h"
#include "host/terminal/Labels.h"
#include "platform/host/CPUData.h"
#include "platform/linux/EndableApplication.h"
#include "platform/linux/LinuxKernel.h"

namespace vel {

/// One row at a time.
class EndPrompt {
 public:
  /// `kernel` and `labels` outlive this.
  EndPrompt(LinuxKernel& kernel, const Labels& labels, EndWords words)
      : kernel_(kernel), labels_(labels), words_(std::move(words)) {}

  /// Asks about that row of the list, or tells why not. `shownAt`: when it was shown
  /// (CLOCK_BOOTTIME).
  void ask(const ProcessEntry& row, std::chrono::nanoseconds shownAt);
  /// Tells that there is no row to ask about.
  void askForChoice();

  /// Whether the next key is the answer.
  [[nodiscard]] bool isAsking() const { return isAsking_; }
  /// Only two keys end anything. Returns whether it was one of them, after which
  /// `askAboutTheRest` is to be called shortly.
  bool answer(Key key);
  void askAboutTheRest();

  /// Takes away what has been told, but no question.
  void dismiss();

  /// Empty where there is nothing to say.
  [[nodiscard]] const std::wstring& text() const { return text_; }
  /// What the keys do, where it is a question.
  [[nodiscard]] std::wstring answers() const;

 private:
  void question();
  void tell(const std::vector<EndableApplication::Failure>& failures);

  LinuxKernel& kernel_;
  const Labels& labels_;
  const EndWords words_;
  std::optional<EndableApplication> application_;
  bool isAsking_ = false;
  std::wstring failures_;  ///< of the last answer
  std::wstring text_;
};

}  // namespace vel
