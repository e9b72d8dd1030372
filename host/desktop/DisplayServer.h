// The X server, beside Qt: what Qt cannot say or do.
#pragma once

#include <QRect>
#include <QWidget>
#include <string>

#include "host/desktop/Options.h"

namespace vel {

/// Whether the X server of DISPLAY can be reached.
bool isDisplayReachable();

/// Declares the window a dock, which belongs to every desktop. Before it is shown: Qt's own
/// attribute for it has no effect in all of its versions.
void makeDock(const QWidget& window);

/// Has taskbars and pagers leave the window out. Each time before it is shown: the window manager
/// forgets it with a window that is hidden.
void keepOffTaskbars(const QWidget& window);

/// Has the window manager keep `thickness` pixels of the screen's edge free for the window, over
/// the screen's width (Extended Window Manager Hints, _NET_WM_STRUT_PARTIAL). All in the X server's
/// pixels.
void reserveEdge(const QWidget& window, Edge edge, int thickness, const QRect& screen);

/// Has it keep nothing free.
void releaseEdge(const QWidget& window);

/// The X server of DISPLAY, however it is written: without the number of the screen. Empty if
/// there is no DISPLAY.
std::string displayName();

}  // namespace vel
