#!/usr/bin/env bash
# The badge and the alert of the graphics processor in use, on a machine of files: events come as udev sends them.
#   gpu.sh PROGRAM SENDER
# SENDER sends one event of a display.

# In a network of its own, where it may send events and no other program hears them.
if [[ -z ${VEL_IN_OWN_NETWORK:-} ]]; then
  ((EUID == 0)) || root=--map-root-user
  VEL_IN_OWN_NETWORK=1 exec unshare --net ${root:-} bash "$0" "$@"
fi
source "$(dirname "$0")/common.sh"
source "$(dirname "$0")/notifications.sh"
sender=$2

# In a container without udev libudev does not listen unless it finds this.
if [[ ! -e /run/udev/control ]] && mkdir -p /run/udev 2>/dev/null && touch /run/udev/control 2>/dev/null; then
  trap "rm /run/udev/control; $(trap -p EXIT | cut -d "'" -f 2)" EXIT
fi

sys=$scratch/sys
devices=$sys/bus/pci/devices
# put FILE TEXT: of a PCI device.
put() { mkdir -p "$devices/${1%/*}" && echo "$2" >"$devices/$1"; }
integrated=0000:00:02.0
discrete=0000:01:00.0
put $integrated/class 0x030000
put $integrated/vendor 0x8086
put $integrated/boot_vga 1
put $discrete/class 0x030000
put $discrete/vendor 0x10de
put $discrete/power/control auto
# drives PROCESSOR: it alone has a display.
drives() {
  put $integrated/drm/card1/card1-eDP-1/enabled "$([[ $1 == "$integrated" ]] && echo enabled || echo disabled)"
  put $discrete/drm/card0/card0-HDMI-A-1/enabled "$([[ $1 == "$discrete" ]] && echo enabled || echo disabled)"
}

startServer 1000x700
startNotifications
mkdir -p "${settings%/*}"
printf '%s\n' '[org.velbar.cpu]' 'gfxGPU = 1' 'gfxGPUCardSwitch = 1' >"$settings"

# badge: what the end of the item looks like, which is all that changes there.
badge() { import -silent -window "$bar" -depth 8 -gravity east -crop 16x+0+0 rgb:- | cksum; }
shows() { [[ $(badge) == "$1" ]]; }
showsOtherThan() { [[ $(badge) != "$1" ]]; }
hasShown() { (($(shown) == $1)); }

drives $integrated
start --sys "$sys"
await "the bar" isThere Velbar
bar=$(windowNamed Velbar)
await "a picture" eval '[[ $(pixels "$bar" "r < 128") != 0 ]]'
i=$(badge)

# A switch that two displays tell of.
drives $discrete
"$sender" && "$sender"
await "the badge of the discrete one" showsOtherThan "$i"
await "the notification" hasShown 1
drives $integrated
"$sender"
await "the badge of the integrated one" shows "$i"
await "the second notification" hasShown 2
# A card that is pulled out.
drives $discrete
"$sender"
await "the third notification" hasShown 3
rm -r "${devices:?}/$discrete"
"$sender"
await "the badge of the one that is left" shows "$i"
await "the fourth notification" hasShown 4
[[ $(texts summary | sort -u) == 'GPU Changed' ]] || fail "titles:" "$(texts summary)"
[[ $(texts body) == "$(printf '%s GPU card now in use\n' Discrete Integrated Discrete Integrated)" ]] ||
  fail "in this order:" "$(texts body)"
stop TERM
[[ ! -s $scratch/errors ]] || fail "$(<"$scratch/errors")"

# A mode that this kernel cannot set, of which the user is told once.
drives $integrated
put $discrete/class 0x030000
start --sys "$sys" --discrete
await "the hint" hasShown 5
stop TERM
[[ $(<"$scratch/errors") == "velbar: --discrete: $sys/kernel/debug/vgaswitcheroo/switch: No such file or directory"* ]] ||
  fail "$(<"$scratch/errors")"
(($(wc -l <"$scratch/errors") == 1)) || fail "$(<"$scratch/errors")"

# In a terminal the alert does not wait for the next refresh either.
"${program%/*}/velbar-tty" --json --interval 3600 --sys "$sys" >"$scratch/readings" 2>"$scratch/alerts" &
await "a refresh" test -s "$scratch/readings"
drives $discrete
"$sender"
await "the alert" test -s "$scratch/alerts"
[[ $(<"$scratch/alerts") == 'velbar-tty: GPU Changed: Discrete GPU card now in use' ]] || fail "$(<"$scratch/alerts")"
