// What the user is asked before a row's processes are ended, and told of what comes of it.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/EndProblem.h"
#include "platform/linux/EndableApplication.h"

namespace vel {

/// In UTF-8, but for the names of processes, which are any bytes and stand in the texts as they
/// are: to be made harmless together with them.
class EndWords {
 public:
  using Application = EndableApplication;
  using Way = EndableApplication::Way;
  /// The user's text for a key.
  using Translate = std::function<std::string(const char* key)>;

  explicit EndWords(Translate translate) : translate_(std::move(translate)) {}

  /// Names what would be ended.
  [[nodiscard]] std::string heading(const Application& application) const;
  [[nodiscard]] std::string question(const Application& application, Way way) const;
  /// Which of several processes is the first and whose it is; empty for one, of which the question
  /// tells.
  [[nodiscard]] std::string first(const Application& application) const;
  /// Which of several processes is the busiest, empty if there is none.
  [[nodiscard]] std::string busiest(const Application& application) const;
  [[nodiscard]] std::string consequence(const Application& application, Way way) const;

  /// What could not be ended and why: a line for each, up to three, and how many more there are.
  [[nodiscard]] std::vector<std::string> failures(
      const std::vector<Application::Failure>& failures) const;

  /// With "%1" and so on in the text filled in.
  [[nodiscard]] std::string text(const char* key,
                                 std::initializer_list<std::string_view> values = {}) const;

 private:
  Translate translate_;
};

}  // namespace vel
