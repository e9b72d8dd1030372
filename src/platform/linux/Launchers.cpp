// Programs that start others on somebody's behalf.
#include "platform/linux/Launchers.h"

#include <algorithm>
#include <array>

namespace vel {

namespace {

/// Sorted, and as long as the kernel keeps a command's name: 15 bytes.
constexpr std::array kLaunchers = std::to_array<std::string_view>({
    "Hyprland",
    "Thunar",
    "awesome",
    "bspwm",
    "budgie-panel",
    "budgie-wm",
    "cairo-dock",
    "caja",
    "cinnamon",
    "cinnamon-sessio",
    "compiz",
    "conmon",
    "containerd-shim",
    "cosmic-comp",
    "cosmic-panel",
    "cosmic-session",
    "dbus-broker-lau",
    "dbus-daemon",
    "dbus-launch",
    "dinit",
    "dmenu_run",
    "dwm",
    "enlightenment",
    "fluxbox",
    "fuzzel",
    "fvwm2",
    "fvwm3",
    "gdm",
    "gdm3",
    "gnome-panel",
    "gnome-session",
    "gnome-shell",
    "greetd",
    "herbstluftwm",
    "i3",
    "icewm",
    "init",
    "jwm",
    "kded5",
    "kded6",
    "kdeinit5",
    "kglobalaccel5",
    "klauncher",
    "krunner",
    "ksmserver",
    "labwc",
    "latte-dock",
    "lightdm",
    "login",
    "lxdm",
    "lxpanel",
    "lxqt-panel",
    "lxqt-runner",
    "lxqt-session",
    "lxsession",
    "ly-dm",
    "marco",
    "mate-panel",
    "mate-session",
    "metacity",
    "muffin",
    "mutter",
    "nautilus",
    "nemo",
    "niri",
    "openbox",
    "openrc-init",
    "pcmanfm",
    "plank",
    "plasma_session",
    "plasmashell",
    "polybar",
    "qtile",
    "river",
    "rofi",
    "runsv",
    "s6-supervise",
    "s6-svscan",
    "sddm",
    "slim",
    "sshd",
    "supervise-daemo",
    "supervisord",
    "sway",
    "swhkd",
    "sxhkd",
    "systemd",
    "thunar",
    "tint2",
    "tofi",
    "ulauncher",
    "waybar",
    "wayfire",
    "weston",
    "wofi",
    "xbindkeys",
    "xdm",
    "xfce4-appfinder",
    "xfce4-panel",
    "xfce4-session",
    "xfdesktop",
    "xfwm4",
    "xinit",
    "xmonad",
});
static_assert(std::is_sorted(kLaunchers.begin(), kLaunchers.end()));

/// What launchers' names begin with that go on in several ways. A plug-in of Xfce's panel is a
/// process of its own that starts programs for it.
constexpr std::array kLauncherPrefixes = std::to_array<std::string_view>(
    {"gdm-", "gnome-session-", "kwin_", "lightdm-", "panel-", "sshd-", "startplasma-"});

}  // namespace

std::string_view launcherFamily(std::string_view command) {
  for (const std::string_view prefix : kLauncherPrefixes) {
    if (command.starts_with(prefix)) {
      return prefix.substr(0, prefix.size() - 1);
    }
  }
  return std::binary_search(kLaunchers.begin(), kLaunchers.end(), command) ? command
                                                                           : std::string_view();
}

}  // namespace vel
