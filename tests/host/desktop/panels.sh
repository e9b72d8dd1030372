#!/usr/bin/env bash
# The panels of velbar: where they open, what closes them, which one it is, and what they cost while they are closed.
#   panels.sh PROGRAM
source "$(dirname "$0")/common.sh"

# A machine that stands still, with a thousand processes, so that readings of them stand out.
machine=$scratch/machine
mkdir -p "$machine"/{sys,proc/{1001..2000}}
printf 'cpu%s 60 0 40 100 0 0 0 0\n' '' 0 1 >"$machine/proc/stat"
echo "btime $((EPOCHSECONDS - 1000))" >>"$machine/proc/stat"
echo '0.50 0.40 0.30 1/1234 1' >"$machine/proc/loadavg"
# process PID NAME TICKS: one that was started with the machine and has used so many ticks.
process() {
  printf '%d (%s) S 1 1 1 0 -1 4194304 0 0 0 0 %d 0 0 0 20 0 1 0 100 10000000 1000%s\n' \
    "$@" "$(printf ' 0%.0s' {25..52})" >"$machine/proc/$1/stat"
}
for pid in {1001..2000}; do
  process $pid worker 100
done
startOnMachine() { start --proc "$machine/proc" --sys "$machine/sys" "$@"; }
barIsThere() { isThere Velbar && bar=$(windowNamed Velbar); }
panelIsThere() { isThere CPU && panel=$(windowNamed CPU); }
panelIsGone() { isGone CPU; }
# hangsFrom WINDOW EDGE: the panel of the size that is expected, next to the edge of the window, flush on the right.
hangsFrom() {
  local x y width height panelX panelY panelWidth panelHeight
  read -r x y width height < <(geometry "$1")
  read -r panelX panelY panelWidth panelHeight < <(geometry "$panel")
  ((panelHeight == expectedHeight && panelX + panelWidth == x + width)) || return 1
  if [[ $2 == below ]]; then ((panelY == y + height)); else ((panelY + panelHeight == y)); fi
}

startServer 1000x700
xmessage -name other -geometry +50+400 other &
await "another window" isThere other
other=$(windowNamed other)
startOnMachine --interval 0.1
await "the bar" barIsThere

# Closed, a panel has no process read.
reads() { awk '$1 == "syscr:" { print $2 }' "/proc/$velbar/io"; }
hasRead() { (($(reads) >= $1)); }
before=$(reads)
await "some refreshes" hasRead $((before + 60))
(($(reads) < before + 1000)) || fail "processes are read though no panel is open"

# By mouse: a click opens it, the next closes it.
expectedHeight=282
point "$bar"
xdotool click 1
await "the panel" panelIsThere
await "the panel below the item" hangsFrom "$bar" below
await "the keyboard on the panel" hasFocus "$panel"
hasProperty -id "$panel" _NET_WM_STATE SKIP_TASKBAR || fail "the panel is in taskbars"
before=$(reads)
await "processes to be read" hasRead $((before + 3000))
for _ in 1 2; do
  point "$bar"
  xdotool click 1
  await "the panel to close at a click" panelIsGone
  xdotool click 1
  await "the panel again" panelIsThere
done
xdotool windowactivate --sync "$other"
await "the panel to close with another window chosen" panelIsGone
before=$(reads)
await "some refreshes" hasRead $((before + 60))
(($(reads) < before + 1000)) || fail "processes are read though the panel has been closed"

# By keyboard, which goes back to the bar.
xdotool windowfocus --sync "$bar" key Return
await "the panel by Return" panelIsThere
await "the keyboard on the panel" hasFocus "$panel"
xdotool key Escape
await "the panel to close by Escape" panelIsGone
await "the keyboard on the bar" hasFocus "$bar"
xdotool key space
await "the panel by Space" panelIsThere

# The rows show the processes, and one is marked that the keyboard is on.
await "the keyboard on the panel" hasFocus "$panel"
before=$(picture "$panel")
process 1500 busy 50000
await "the busy process" looksOtherThan "$panel" "$before"
before=$(picture "$panel")
xdotool key Tab
await "the first row to be marked" looksOtherThan "$panel" "$before"
# Pids of another machine mean nothing here: a message says so.
xdotool key Return
await "the message" isThere 'End Process'
panelIsThere || fail "the panel has closed with the message"
xdotool key Escape
await "the message to close" isGone 'End Process'
await "the keyboard back on the panel" hasFocus "$panel"

# The menu has the choice of panels, one takes the place of the other, and the preferences follow.
point "$bar"
xdotool click 3
await "the menu" eval '[[ -n $(menuWindow) ]]'
xdotool key c
expectedHeight=78
await "the compact panel in place of the other" eval 'panelIsThere && hangsFrom "$bar" below'
await "the choice to be kept" isSet panel 0 org.velbar.host
await "the keyboard back on the panel" hasFocus "$panel"
xdotool key Escape
await "the panel to close by Escape" panelIsGone
"$program" --preferences 2>/dev/null
await "the preferences" isThere 'Velbar Preferences'
preferences=$(windowNamed 'Velbar Preferences')
xdotool windowactivate --sync "$preferences" key ctrl+shift+Tab alt+p End
await "the choice of the preferences" isSet panel 1 org.velbar.host
before=$(picture "$preferences")
point "$bar"
xdotool click 3
await "the menu" eval '[[ -n $(menuWindow) ]]'
xdotool key c
await "the preferences to follow" looksOtherThan "$preferences" "$before"
isSet panel 0 org.velbar.host || fail "the menu's choice is not kept"
stop TERM

# Above a bar at the bottom, on the screen as a whole wherever that goes, with a graph.
printf '%s\n' '[org.velbar.host]' 'panel = 7' '[org.velbar.cpu]' 'showGraph = 1' >"$settings"
expectedHeight=316
startOnMachine --bar --edge bottom --panel
await "the wide bar" barIsThere
await "the panel at the start" panelIsThere
await "the panel above the bar" hangsFrom "$bar" above
xrandr --setmonitor '*left' 500/100x700/100+0+0 screen --setmonitor right 500/100x700/100+500+0 none >/dev/null
await "the bar on the left screen" isAt "$bar" '0 676 500 24'
await "the panel on the left screen" hangsFrom "$bar" above
xrandr --delmonitor left
xrandr --delmonitor right
await "the bar on the whole screen" isAt "$bar" '0 676 1000 24'
await "the panel on the whole screen" hangsFrom "$bar" above
xdotool windowactivate --sync "$other"
await "the panel to close" panelIsGone
"$program" --panel 2>/dev/null || fail "status of a second start with --panel"
await "the panel of the first" panelIsThere
stop TERM

# From the system tray.
trayer --edge bottom --height 22 --widthtype request >/dev/null 2>&1 &
await "the tray" isThere panel
tray=$(windowNamed panel)
startOnMachine --tray
hasIcon() { [[ $(xwininfo -tree -id "$tray") == *velbar* ]]; }
await "the icon" hasIcon
for _ in 1 2; do
  # Two clicks at one place would be a double click.
  point "$tray"
  xdotool mousemove_relative -- -5 0 click 1
  await "the panel of the icon" panelIsThere
  isAboveTray() {
    read -r x y width height < <(geometry "$panel")
    ((x >= 0 && x + width <= 1000 && y + height <= 700 && y + height >= 670))
  }
  await "the panel near the icon" isAboveTray
  xdotool mousemove_relative 10 0 click 1
  await "the panel of the icon to close" panelIsGone
done
stop TERM

[[ ! -s $scratch/errors ]] || fail "said on standard error:" "$(<"$scratch/errors")"
