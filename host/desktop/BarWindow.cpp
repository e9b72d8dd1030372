#include "host/desktop/BarWindow.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "host/desktop/BorderColor.h"
#include "host/desktop/DisplayServer.h"

namespace vel {
namespace {

QRect inPixels(const QRect& points, double ratio) {
  // Qt leaves a screen's origin as the server has it.
  return {points.topLeft(), QSize(static_cast<int>(std::lround(points.width() * ratio)),
                                  static_cast<int>(std::lround(points.height() * ratio)))};
}

QRect desktopInPixels() {
  QRect all;
  for (const QScreen* screen : QGuiApplication::screens()) {
    all |= inPixels(screen->geometry(), screen->devicePixelRatio());
  }
  return all;
}

/// Whether another screen lies between this one and the desktop's edge. What is kept free counts
/// from there, and would take that screen's room.
bool isInnerEdge(const QScreen& screen, Edge edge) {
  QRect beyond = inPixels(screen.geometry(), screen.devicePixelRatio());
  const QRect desktop = desktopInPixels();
  if (edge == Edge::top) {
    beyond = QRect(QPoint(beyond.left(), desktop.top()), QPoint(beyond.right(), beyond.top() - 1));
  } else {
    beyond =
        QRect(QPoint(beyond.left(), beyond.bottom() + 1), QPoint(beyond.right(), desktop.bottom()));
  }
  // Neighbours may seem to share a pixel once their sizes are rounded.
  beyond.adjust(1, 1, -1, -1);
  const QList<QScreen*> screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(), [&](const QScreen* other) {
    return other != &screen &&
           beyond.intersects(inPixels(other->geometry(), other->devicePixelRatio()));
  });
}

}  // namespace

BarWindow::BarWindow(QWidget& item, Edge edge, bool fullWidth, Actions actions)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      item_(item),
      edge_(edge),
      fullWidth_(fullWidth),
      actions_(std::move(actions)),
      screens_([this] { place(); }) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setWindowTitle(QStringLiteral("Velbar"));
  setFocusPolicy(Qt::StrongFocus);
  makeDock(*this);
  item_.setParent(this);
  item_.installEventFilter(this);
  item_.show();
  place();
}

BarWindow::~BarWindow() {
  item_.removeEventFilter(this);
  item_.setParent(nullptr);
}

void BarWindow::bringUp() {
  show();
  raise();
}

void BarWindow::place() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) {
    return;
  }
  // A strip does not cover somebody else's bar. A bar's own place is among those that are taken.
  const QRect room = fullWidth_ ? screen->geometry() : screen->availableGeometry();
  const int width = fullWidth_ ? room.width() : item_.width();
  const int y = edge_ == Edge::top ? room.top() : room.bottom() + 1 - kHeight;
  setGeometry(room.right() + 1 - width, y, width, kHeight);
  placeItem();
  if (fullWidth_) {
    reservePlace(*screen);
  }
}

void BarWindow::placeItem() {
  item_.move(width() - item_.width(), (kHeight - item_.height()) / 2);
}

void BarWindow::reservePlace(const QScreen& screen) {
  if (isInnerEdge(screen, edge_)) {
    releaseEdge(*this);
    return;
  }
  const double ratio = screen.devicePixelRatio();
  reserveEdge(*this, edge_, static_cast<int>(std::lround(kHeight * ratio)),
              inPixels(screen.geometry(), ratio));
}

bool BarWindow::eventFilter(QObject* object, QEvent* event) {
  if (object == &item_ && event->type() == QEvent::Resize) {
    fullWidth_ ? placeItem() : place();
  }
  return QWidget::eventFilter(object, event);
}

/// The background, with a line towards the rest of the screen.
void BarWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  const QColor border = borderColor(palette());
  const double line = 1.0 / devicePixelRatioF();
  const double y = edge_ == Edge::top ? height() - line : 0.0;
  painter.fillRect(QRectF(0.0, y, width(), line), border);
  if (!fullWidth_) {
    painter.fillRect(QRectF(0.0, 0.0, line, height()), border);
  }
}

QRect BarWindow::itemPlace() const {
  const QRect item = item_.geometry();
  return {mapToGlobal(QPoint(item.x(), 0)), QSize(item.width(), height())};
}

QPoint BarWindow::menuPosition() const {
  const QRect place = itemPlace();
  return edge_ == Edge::top ? QPoint(place.left(), place.bottom() + 1) : place.topLeft();
}

void BarWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && item_.geometry().contains(event->position().toPoint())) {
    actions_.clickItem();
  }
}

void BarWindow::contextMenuEvent(QContextMenuEvent* /*event*/) {
  actions_.openMenu();
}

void BarWindow::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers() == Qt::ControlModifier;
  if (control && event->key() == Qt::Key_Comma) {
    actions_.openPreferences();
  } else if (control && event->key() == Qt::Key_Q) {
    actions_.quit();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
             event->key() == Qt::Key_Space) {
    actions_.clickItem();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void BarWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  // Quitting closes it, too.
  if (event->spontaneous()) {
    actions_.quit();
  }
}

}  // namespace vel
