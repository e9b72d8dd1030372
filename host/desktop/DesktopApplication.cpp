#include "host/desktop/DesktopApplication.h"

#include <QAccessibleWidget>
#include <QIcon>
#include <cstdlib>

#include "host/InstalledFiles.h"
#include "host/Report.h"
#include "host/desktop/kit/PaintedWidget.h"

namespace vel {
namespace {

const char* reportingProgram = "";

/// Its warnings are for the developers of programs.
void reportErrors(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  // Of this one it only warns, but ends the program.
  const bool serverHasGone = message.contains(u"X11 connection");
  if (type == QtCriticalMsg || type == QtFatalMsg || serverHasGone) {
    report(reportingProgram, message.toStdString());
  }
}

void setDefault(const char* variable, const char* value) {
  setenv(variable, value, 0);
}

void prepareEnvironment(DesktopApplication::Platform platform) {
  // Whatever the session prefers: a bar places itself, which the X server alone lets a window do.
  const bool display = platform == DesktopApplication::Platform::display;
  setenv("QT_QPA_PLATFORM", display ? "xcb" : "offscreen", 1);
  // Nothing here is painted with OpenGL, and its driver takes more memory than all the rest.
  setDefault("QT_XCB_GL_INTEGRATION", "none");
  // With shared memory Qt waits for the server before each painting; what changes here is a few
  // thousand pixels.
  setDefault("QT_XCB_NO_MITSHM", "1");
  // Qt's own event dispatcher wakes less than GLib's.
  setDefault("QT_NO_GLIB", "1");
}

/// For assistive technology, which looks for windows and texts: Qt takes any widget of no class of
/// its own for filling.
QAccessibleInterface* describe(const QString& className, QObject* object) {
  auto* widget = className == u"QWidget" ? qobject_cast<QWidget*>(object) : nullptr;
  if (widget == nullptr) {
    return nullptr;
  }
  if (widget->isWindow()) {
    return new QAccessibleWidget(widget, QAccessible::Window);
  }
  const bool isText =
      dynamic_cast<PaintedWidget*>(widget) != nullptr && !widget->accessibleName().isEmpty();
  return isText ? new QAccessibleWidget(widget, QAccessible::StaticText) : nullptr;
}

/// What has to happen before Qt starts. Returns `program`.
const char* prepared(const char* program, DesktopApplication::Platform platform) {
  reportingProgram = program;
  qInstallMessageHandler(reportErrors);
  prepareEnvironment(platform);
  return program;
}

}  // namespace

DesktopApplication::DesktopApplication(const char* program, Platform platform)
    : name_(prepared(program, platform)),
      values_{name_.data(), nullptr},
      qt_(count_, values_.data()) {
  QAccessible::installFactory(describe);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setDesktopFileName(QStringLiteral("org.velbar.Velbar"));
  QIcon::setThemeSearchPaths(QIcon::themeSearchPaths()
                             << QString::fromStdString(installedPath(VEL_ICONS_DIR)));
}

}  // namespace vel
