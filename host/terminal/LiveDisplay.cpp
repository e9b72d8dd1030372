#include "host/terminal/LiveDisplay.h"

#include <array>
#include <csignal>
#include <ctime>
#include <cwchar>

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
  panel_.setOnScreen(page.hasProcesses && !helpShown_);
  screen_.paint(helpShown_ ? helpPage(style_.keys, labels_, columns, rows) : page.lines);
}

}  // namespace vel
