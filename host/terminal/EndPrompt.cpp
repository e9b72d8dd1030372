#include "host/terminal/EndPrompt.h"

#include <charconv>
#include <utility>
#include <variant>

#include "host/terminal/Text.h"

namespace vel {
namespace {

void appendSentence(std::wstring& text, const std::wstring& sentence) {
  text += (text.empty() || sentence.empty() ? L"" : L" ") + sentence;
}

/// 0 for none.
std::int64_t numberOf(const std::string& pid) {
  std::int64_t number = 0;
  std::from_chars(pid.data(), pid.data() + pid.size(), number);
  return number;
}

}  // namespace

void EndPrompt::ask(const ProcessEntry& row, std::chrono::nanoseconds shownAt) {
  const std::int64_t pid = numberOf(row.pid);
  auto opened = EndableApplication::open(kernel_, pid, shownAt);
  failures_.clear();
  if (const auto* problem = std::get_if<EndProblem>(&opened)) {
    tell({{row.name, pid, *problem}});
    text_ = failures_;
  } else {
    application_ = std::get<EndableApplication>(std::move(opened));
    question();
  }
}

void EndPrompt::askForChoice() {
  text_ = labels_.chooseFirst;
}

void EndPrompt::question() {
  text_ = failures_;
  appendSentence(text_, decode(words_.question(*application_, EndableApplication::Way::end)));
  appendSentence(text_, decode(words_.busiest(*application_)));
  if (application_->hasThisProcess()) {
    appendSentence(text_, decode(words_.consequence(*application_, EndableApplication::Way::end)));
  }
  isAsking_ = true;
}

std::wstring EndPrompt::answers() const {
  return isAsking_ ? L"y " + labels_.end + L"  f " + labels_.force + L"  n " + labels_.no
                   : std::wstring();
}

bool EndPrompt::answer(Key key) {
  isAsking_ = false;
  text_.clear();
  failures_.clear();
  if (key != Key::yes && key != Key::force) {
    application_.reset();
    return false;
  }
  const bool force = key == Key::force;
  const auto failures =
      application_->end(force ? EndableApplication::Way::force : EndableApplication::Way::end);
  if (failures.empty()) {
    text_ =
        decode(words_.text(force ? "“%1” has been forced to end." : "“%1” has been told to end.",
                           {application_->name()}));
  } else {
    tell(failures);
    text_ = failures_;
  }
  return true;
}

void EndPrompt::askAboutTheRest() {
  // Another question may have been asked meanwhile.
  if (isAsking_ || !application_) {
    return;
  }
  EndableApplication rest = application_->startedMeanwhile();
  if (rest.size() > 0) {
    application_ = std::move(rest);
    question();
  } else {
    application_.reset();
  }
}

void EndPrompt::tell(const std::vector<EndableApplication::Failure>& failures) {
  failures_.clear();
  for (const std::string& line : words_.failures(failures)) {
    appendSentence(failures_, decode(line));
  }
}

void EndPrompt::dismiss() {
  if (!isAsking_) {
    text_.clear();
    failures_.clear();
  }
}

}  // namespace vel
