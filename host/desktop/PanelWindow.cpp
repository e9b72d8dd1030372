#include "host/desktop/PanelWindow.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <utility>

#include "host/desktop/BorderColor.h"
#include "host/desktop/DisplayServer.h"

namespace vel {
namespace {

using namespace std::chrono_literals;

constexpr int kBorder = 1;

/// In points. A panel's lines have a height of their own, which larger letters do not fit.
constexpr int kLargestFont = 15;

/// When a dialog closes, the window manager takes a moment to give the keyboard back.
constexpr auto kFocusMayBeAway = 100ms;
/// A click may take the keyboard away before it is told to the item.
constexpr std::int64_t kOneClick = 250;  // milliseconds

/// Below the item, or above it where there is more room; flush with its left side, or with its
/// right one where that is too near to the edge. Within `room` in any case.
QPoint placeBeside(const QRect& item, const QSize& size, const QRect& room) {
  const int lastX = room.right() + 1 - size.width();
  const int lastY = room.bottom() + 1 - size.height();
  const int below = item.bottom() + 1;
  const int x = item.left() <= lastX ? item.left() : item.right() + 1 - size.width();
  const int y = below <= lastY ? below : item.top() - size.height();
  return {std::max(room.left(), std::min(x, lastX)), std::max(room.top(), std::min(y, lastY))};
}

}  // namespace

PanelWindow::PanelWindow(QWidget& panel, QWidget* bar, Actions actions)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      bar_(bar),
      actions_(std::move(actions)),
      screens_([this] { followItem(); }) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
  limitFont();
  focusIsAway_.setSingleShot(true);
  focusIsAway_.setInterval(kFocusMayBeAway);
  connect(&focusIsAway_, &QTimer::timeout, this, [this] {
    hide();
    focusWentAway_.start();
  });
  connect(qApp, &QGuiApplication::focusWindowChanged, this,
          [this](const QWindow* focused) { followFocus(focused); });
  hold(panel);
}

PanelWindow::~PanelWindow() {
  release();
}

void PanelWindow::limitFont() {
  if (fontInfo().pixelSize() > kLargestFont) {
    QFont largest = font();
    largest.setPixelSize(kLargestFont);
    setFont(largest);
  }
}

void PanelWindow::hold(QWidget& panel) {
  panel_ = &panel;
  panel.setParent(this);
  panel.move(kBorder, kBorder);
  panel.installEventFilter(this);
  panel.show();
}

/// In no window, the panel is on no screen.
void PanelWindow::release() {
  panel_->removeEventFilter(this);
  panel_->setParent(nullptr);
}

void PanelWindow::setPanel(QWidget& panel) {
  if (&panel == panel_) {
    return;
  }
  release();
  hold(panel);
  if (isVisible()) {
    place();
    actions_.opened();
  }
}

void PanelWindow::open() {
  if (!isVisible()) {
    barHadFocus_ = bar_ != nullptr && bar_->isActiveWindow();
    focusWentAway_.invalidate();
    item_ = actions_.itemPlace();
    place();
    keepOffTaskbars(*this);
    show();
    setFocus();
    actions_.opened();
  }
  raise();
  activateWindow();
}

void PanelWindow::toggle() {
  if (isVisible()) {
    hide();
  } else if (!focusWentAway_.isValid() || focusWentAway_.hasExpired(kOneClick)) {
    open();
  }
}

void PanelWindow::followItem() {
  if (isVisible()) {
    item_ = actions_.itemPlace();
    place();
  }
}

void PanelWindow::place() {
  const QScreen* screen = QGuiApplication::screenAt(item_.center());
  screen = screen != nullptr ? screen : QGuiApplication::primaryScreen();
  setFixedSize(panel_->size() + QSize(2 * kBorder, 2 * kBorder));
  if (screen != nullptr) {
    move(placeBeside(item_, size(), screen->availableGeometry()));
  }
}

void PanelWindow::followFocus(const QWindow* focused) {
  const auto belongsHere = [this](const QWindow& window) {
    return &window == windowHandle() || (bar_ != nullptr && &window == bar_->windowHandle()) ||
           window.type() == Qt::Dialog || window.type() == Qt::Popup;
  };
  if (!isVisible() || (focused != nullptr && belongsHere(*focused))) {
    focusIsAway_.stop();
  } else {
    focusIsAway_.start();
  }
}

bool PanelWindow::eventFilter(QObject* object, QEvent* event) {
  if (object == panel_ && event->type() == QEvent::Resize && isVisible()) {
    place();
  }
  return QWidget::eventFilter(object, event);
}

void PanelWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  painter.setPen(borderColor(palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
    closeByKey();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PanelWindow::hideEvent(QHideEvent* /*event*/) {
  focusIsAway_.stop();
}

/// The window manager gives the keyboard to another window than a bar.
void PanelWindow::closeByKey() {
  hide();
  if (barHadFocus_) {
    bar_->activateWindow();
  }
}

}  // namespace vel
