#include "host/terminal/LiveDisplay.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <cwchar>

#include "host/BootTime.h"
#include "host/Signals.h"

namespace vel {
namespace {

/// As "03:12".
std::wstring timeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<wchar_t, 8> text{};
  return {text.data(), std::wcsftime(text.data(), text.size(), L"%H:%M", &local)};
}

}  // namespace

void LiveDisplay::show(const CPUData& record) {
  source_.read(record, content_);
  shownAt_ = bootTime();
  if (chosen() == nullptr) {
    content_.chosen.clear();
  }
  paint();
}

void LiveDisplay::update() {
  source_.readViews(content_);
  paint();
}

void LiveDisplay::alert(const std::wstring& text) {
  content_.alert = timeOfDay() + L"  " + text;
  if (screen_.take()) {
    screen_.ringBell();
  }
}

void LiveDisplay::dismissAlert() {
  content_.alert.clear();
  paint();
}

void LiveDisplay::choose(int step) {
  if (!hasProcesses_ || content_.processes->entries.empty()) {
    return;
  }
  const auto& entries = content_.processes->entries;
  const ProcessEntry* const now = chosen();
  const auto count = static_cast<std::ptrdiff_t>(entries.size());
  const std::ptrdiff_t next = now != nullptr ? now - entries.data() + step
                              : step > 0     ? 0
                                             : count - 1;
  content_.chosen =
      next >= 0 && next < count ? entries[static_cast<std::size_t>(next)].pid : std::string();
  paint();
}

void LiveDisplay::unchoose() {
  content_.chosen.clear();
  paint();
}

const ProcessEntry* LiveDisplay::chosen() const {
  if (content_.chosen.empty() || !content_.processes) {
    return nullptr;
  }
  const auto& entries = content_.processes->entries;
  const auto row = std::find_if(entries.begin(), entries.end(),
                                [this](const auto& each) { return each.pid == content_.chosen; });
  return row != entries.end() ? &*row : nullptr;
}

void LiveDisplay::prompt(const std::wstring& text, const std::wstring& keys) {
  if (text != content_.prompt || keys != content_.promptKeys) {
    content_.prompt = text;
    content_.promptKeys = keys;
    paint();
  }
}

void LiveDisplay::showHelp(bool shown) {
  helpShown_ = shown;
  paint();
}

void LiveDisplay::resize() {
  screen_.fitToWindow();
  paint();
}

void LiveDisplay::stop() {
  screen_.giveBack();
  stopProcess(SIGTSTP);
}

void LiveDisplay::restore() {
  screen_.lose();
  paint();
}

void LiveDisplay::paint() {
  if (!screen_.take()) {
    panel_.setOnScreen(false);
    return;
  }
  const auto [columns, rows] = screen_.size();
  const Page page = layOut(content_, labels_, locale_, {columns, rows}, style_);
  hasProcesses_ = page.hasProcesses;
  if (!hasProcesses_) {
    content_.chosen.clear();
  }
  panel_.setOnScreen(page.hasProcesses && !helpShown_);
  screen_.paint(helpShown_ ? helpPage(style_.keys, labels_, columns, rows) : page.lines);
}

}  // namespace vel
