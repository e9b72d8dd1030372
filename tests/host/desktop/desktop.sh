#!/usr/bin/env bash
# velbar as a user meets it: a real X server and window manager, real keys and clicks, a real load.
#   desktop.sh PROGRAM
source "$(dirname "$0")/common.sh"

# isTopRight WINDOW: the strip hangs in the corner, as wide as its item.
isTopRight() {
  read -r x y width height < <(geometry "$1")
  ((y == 0 && height == 24 && width >= 8 && width < 400 && x + width == $2))
}

startServer 1000x700
start --interval 0.2
await "the bar" isThere Velbar
bar=$(windowNamed Velbar)
hasProperty -id "$bar" _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_DOCK || fail "the bar is no dock"
hasProperty -id "$bar" _NET_WM_STATE _NET_WM_STATE_ABOVE || fail "the bar does not stay on top"
await "the bar in its corner" isTopRight "$bar" 1000
[[ ! -e $settings ]] || fail "defaults have been written"

# A second start finds the first, however the display is written.
while IFS='|' read -r argument message; do
  DISPLAY=$DISPLAY.0 timeout 30 "$program" $argument 2>"$scratch/second" || fail "status of a second start"
  [[ $(<"$scratch/second") == "velbar: already running$message" ]] || fail "$(<"$scratch/second")"
done <<<$'|\n--dynamic|; --dynamic has no effect on it'

# Preferences by keyboard, each setting by its key.
xdotool windowfocus --sync "$bar" key ctrl+comma
await "the preferences" isThere 'Velbar Preferences'
preferences=$(windowNamed 'Velbar Preferences')
xdotool windowactivate --sync "$preferences"
key() { xdotool key --clearmodifiers "$@"; }

# change WHAT KEYS KEY VALUE: presses keys; the file and the bar follow.
change() {
  local before
  before=$(picture "$bar")
  key $2
  await "$3 = $4 after $1" isSet "$3" "$4"
  [[ $1 == panels:* || $1 == alerts:* ]] || await "the bar after $1" looksOtherThan "$bar" "$before"
}
change 'hiding the percentage' 'alt+h' showDisplay 0
isSet subItemsDisplayed 6 || fail "subItemsDisplayed is $(setting subItemsDisplayed), not 6"
change 'showing the percentage' 'alt+s' showDisplay 1
change 'the gauge away' 'alt+g' subItemsDisplayed 5
change 'the gauge back' 'alt+g' subItemsDisplayed 7
change 'the name away' 'alt+n' subItemsDisplayed 3
change 'panels: the graph' 'alt+l' showGraph 1
change 'panels: the ranking' 'alt+t Home' cpuTop5Type 0
change 'the style' 'alt+y End' gaugeType 3
change 'the style again' 'alt+y Home' gaugeType 0
change 'a gauge a processor' 'alt+c End' cpucoresdisplayed 2

# A busy processor turns its gauge red.
taskset -c 0 sh -c 'while :; do :; done' &
burner=$!
await "a red gauge for a busy processor" showsRed "$bar"
kill $burner

# By mouse: the menu's last entry but one is the preferences.
key Escape
await "the preferences to close" isGone 'Velbar Preferences'
# A menu that opens while the keyboard still goes from one window to another may close again.
xdotool windowfocus --sync "$bar"
point "$bar"
xdotool click 3
await "the menu" eval '[[ -n $(menuWindow) ]]'
menu=$(menuWindow)
read -r x y width height < <(geometry "$menu")
entry=$((height / 8))
# marks X Y: moves the pointer there, as a hand does, and sees the entry under it marked.
marks() {
  xdotool mousemove "$1" "$2" mousemove_relative 2 1
  (($(pixels "$menu" 'b > r + 80') > 200))
}
await "the entry to be marked" marks $((x + 30)) $((y + height - entry - entry / 2))
xdotool click 1
await "the preferences from the menu" isThere 'Velbar Preferences'
stop TERM

# Started again, everything is as it was.
before=$(cat "$settings")
start --interval 0.2
await "the bar again" isThere Velbar
bar=$(windowNamed Velbar)
"$program" --preferences 2>/dev/null || fail "status of a second start with --preferences"
await "the preferences of the first" isThere 'Velbar Preferences'
[[ $(cat "$settings") == "$before" ]] || fail "a start has changed the settings"
preferences=$(windowNamed 'Velbar Preferences')
xdotool windowactivate --sync "$preferences"
change 'the name back' 'alt+n' subItemsDisplayed 7
key ctrl+Tab
change 'alerts: on' 'alt+o' isNotifyMoreThan 1
change 'alerts: the threshold' 'alt+m End' NotifyMoreThanValue 400
change 'alerts: the time' 'alt+f Home' NotifyTimeValueMoreThan 1
stop HUP

# Above 70 percent and not at it, and only the busy one: the first refresh shows the averages since the start of this
# machine of two processors.
mkdir -p "$scratch"/machine/{proc,sys}
for load in 70 71; do
  printf 'cpu%s %d 0 %d %d 0 0 0 0\n' '' $((load + 10)) 10 $((180 - load)) 0 $load 0 $((100 - load)) 1 10 10 80 \
    >"$scratch/machine/proc/stat"
  echo btime 1 >>"$scratch/machine/proc/stat"
  start --interval 3600 --proc "$scratch/machine/proc" --sys "$scratch/machine/sys"
  await "the bar of the still machine" isThere Velbar
  bar=$(windowNamed Velbar)
  isPainted() { (($(pixels "$bar" 'r < 90 && g < 90 && b < 90 || r > 200 && g < 110') > 140)); }
  await "the gauges of the still machine" isPainted
  red=$(pixels "$bar" "$isRed")
  ((load > 70 ? red > 50 && red < 80 : red == 0)) || fail "$red red pixels at $load percent"
  stop TERM
done

# The other edge, and a bar that keeps its place free.
start --bar --edge bottom
await "the wide bar" isThere Velbar
bar=$(windowNamed Velbar)
await "the wide bar at the bottom" isAt "$bar" '0 676 1000 24'
strut=$(xprop -id "$bar" _NET_WM_STRUT_PARTIAL)
[[ $strut == *'= 0, 0, 0, 24, 0, 0, 0, 0, 0, 0, 0, 999' ]] || fail "$strut"
await "the place kept free" eval '[[ $(xprop -root _NET_WORKAREA) == *"0, 0, 1000, 676"* ]]'
# Another screen layout: half of the server's screen is all there is.
half() { xrandr --setmonitor half 500/100x400/100+0+0 screen >/dev/null; }
whole() { xrandr --delmonitor half; }
half
await "the wide bar on the smaller screen" isAt "$bar" '0 376 500 24'
whole
await "the wide bar on the whole screen" isAt "$bar" '0 676 1000 24'
# Above another screen it keeps nothing free, which would be all of that screen.
xrandr --setmonitor '*upper' 1000/200x350/100+0+0 screen --setmonitor lower 1000/200x350/100+0+350 none >/dev/null
await "the wide bar on the upper screen" isAt "$bar" '0 326 1000 24'
keepsNothingFree() { ! hasProperty -id "$bar" _NET_WM_STRUT_PARTIAL =; }
await "the lower screen's room" keepsNothingFree
xrandr --delmonitor lower
xrandr --delmonitor upper
await "the wide bar at the bottom again" isAt "$bar" '0 676 1000 24'
keepsNothingFree && fail "the wide bar keeps nothing free"
stop TERM
start
await "the strip" isThere Velbar
bar=$(windowNamed Velbar)
await "the strip in its corner" isTopRight "$bar" 1000
half
await "the strip on the smaller screen" isTopRight "$bar" 500
whole
await "the strip back in its corner" isTopRight "$bar" 1000
stop TERM

start --widget
await "the widget" isThere Velbar
xdotool windowactivate --sync "$(windowNamed Velbar)" key alt+F4
endsWell || fail "status of a closed widget: $?"

# In the system tray, whose icons are small squares.
trayer --edge bottom --height 22 --widthtype request >/dev/null 2>&1 &
await "the tray" isThere panel
tray=$(windowNamed panel)
start --tray --interval 0.2
hasIcon() { [[ $(xwininfo -tree -id "$tray") == *velbar* ]]; }
await "the icon" hasIcon
isThere Velbar && fail "there is a bar beside the icon"
point "$tray"
xdotool click 3
await "the icon's menu" eval '[[ -n $(menuWindow) ]]'
key q
endsWell || fail "status after quitting by the menu: $?"

[[ ! -s $scratch/errors ]] || fail "said on standard error:" "$(<"$scratch/errors")"
