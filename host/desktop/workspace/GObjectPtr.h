// What GLib hands out, owned.
#pragma once

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <memory>

namespace vel {

struct GObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct GFree {
  void operator()(gpointer memory) const { g_free(memory); }
};
using GText = std::unique_ptr<gchar, GFree>;

struct GStringsFree {
  void operator()(gchar** strings) const { g_strfreev(strings); }
};
using GStrings = std::unique_ptr<gchar*, GStringsFree>;

}  // namespace vel
