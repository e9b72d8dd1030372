# What the tests of velbar on a desktop share: an X server of their own with a window manager, a home of their own, and
# the eyes and hands of a user. To be sourced with the program as $1.
set -euo pipefail

program=$1
scratch=$(mktemp -d)
export HOME=$scratch XDG_CONFIG_HOME=$scratch/config XDG_RUNTIME_DIR=$scratch/runtime LC_ALL=C.UTF-8
export XDG_DATA_HOME=$scratch/data XDG_DATA_DIRS=/usr/local/share:/usr/share
# These libraries keep some memory for good.
printf 'leak:%s\n' libdbus-1.so libfontconfig >"$scratch/suppressions"
export LSAN_OPTIONS=suppressions=$scratch/suppressions:print_suppressions=0:log_path=$scratch/leaks
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_CURRENT_DESKTOP LANGUAGE
mkdir -m 700 "$XDG_RUNTIME_DIR"
settings=$XDG_CONFIG_HOME/velbar/settings.ini

trap 'jobs -p | xargs -r kill 2>/dev/null || :; wait 2>/dev/null || :; rm -rf "$scratch"' EXIT

fail() {
  printf '%s\n' "$@"
  cat "$scratch/openbox" 2>/dev/null || :
  if [[ -n ${VEL_PICTURE_OF_FAILURE:-} ]]; then
    import -window root "$VEL_PICTURE_OF_FAILURE" || :
  fi
  exit 1
}

# await WHAT COMMAND...: until the command succeeds. It is the longest that a busy machine may take, not what it takes.
await() {
  local what=$1 left=600
  shift
  until "$@" >/dev/null 2>&1; do
    ((left-- > 0)) || fail "waited in vain: $what"
    read -r -t 0.05 <>"$scratch/never" || :
  done
}
mkfifo "$scratch/never"
set -E
trap 'echo "line $LINENO: $BASH_COMMAND failed"' ERR

# hasProperty WINDOW... PROPERTY VALUE: WINDOW as xprop takes it. (A pipe into grep -q would end xprop by a signal.)
hasProperty() { [[ $(xprop "${@:1:$#-1}") == *"${!#}"* ]]; }

# startServer SIZE: an X server and a window manager.
startServer() {
  mkfifo "$scratch/display"
  Xvfb -displayfd 3 -screen 0 "$1x24" -noreset -nolisten tcp +extension RANDR 3>"$scratch/display" 2>/dev/null &
  read -r number <"$scratch/display"
  export DISPLAY=:$number
  openbox >"$scratch/openbox" 2>&1 &
  await "the window manager" xprop -root _NET_SUPPORTING_WM_CHECK
  await "the window manager's name" hasProperty -root _NET_SUPPORTED _NET_WM_STRUT_PARTIAL
}

# start ARGUMENT...: starts velbar; $velbar is its process.
start() {
  "$program" "$@" 2>>"$scratch/errors" &
  velbar=$!
}

# endsWell: waits for its end. Qt's thread for D-Bus, which ends with the program, sometimes leaves its record of a
# thread behind. It cannot be suppressed by name: its allocation shows no more than that it is Qt's.
endsWell() {
  local status=0 leaks=$scratch/leaks.$velbar
  wait "$velbar" || status=$?
  ((status != 0)) && [[ -s $leaks ]] || return $status
  if (($(grep -c '^Direct leak' "$leaks") == 1)) && [[ $(grep -A 2 '^Direct leak of 152 byte' "$leaks") == *libQt6Core* ]]; then
    return 0
  fi
  cat "$leaks"
  return $status
}

# stop SIGNAL: ends it, and says whether it ended well.
stop() {
  kill -"$1" "$velbar"
  endsWell || fail "velbar ended with status $? after SIG$1" "$(<"$scratch/errors")"
}

# windowNamed NAME: the first that is on screen. xdotool itself does not tell capitals from small letters.
windowNamed() {
  local window
  for window in $(xdotool search --onlyvisible --name "^$1\$"); do
    [[ $(xdotool getwindowname "$window") != "$1" ]] || { echo "$window" && return; }
  done
}
# menuWindow: the menu that is open; a window manager has no part in it.
menuWindow() {
  local window
  for window in $(xdotool search --onlyvisible --class velbar); do
    [[ $(xwininfo -id "$window") != *'Override Redirect State: yes'* ]] || { echo "$window" && return; }
  done
}
isThere() { [[ -n $(windowNamed "$1") ]]; }
isGone() { [[ -z $(windowNamed "$1") ]]; }

# point WINDOW: moves the pointer to its middle.
point() {
  local x y width height
  read -r x y width height < <(geometry "$1")
  xdotool mousemove $((x + width / 2)) $((y + height / 2))
}
hasFocus() { [[ $(xdotool getwindowfocus) == "$1" ]]; }

# geometry WINDOW: "x y width height" on the screen.
geometry() {
  xwininfo -id "$1" | awk '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
    $1 == "Width:" { w = $2 } $1 == "Height:" { h = $2 } END { print x, y, w, h }'
}
isAt() { [[ $(geometry "$1") == "$2" ]]; }

# setting KEY [BUNDLE]: the value in the file's section of the module, or of another bundle; empty if there is none.
setting() {
  awk -v key="$1" -v section="[${2:-org.velbar.cpu}]" '/^\[/ { inside = $0 == section } inside && $1 == key { print $3 }' \
    "$settings" 2>/dev/null || :
}
isSet() { [[ $(setting "$1" "${@:3}") == "$2" ]]; }

# pixels WINDOW CONDITION: how many pixels of the window hold it, an expression of awk in r, g and b (0 to 255).
pixels() {
  import -silent -window "$1" -depth 8 rgb:- | od -An -v -tu1 -w3 | awk "{ r = \$1; g = \$2; b = \$3 } $2 { ++n } END { print n + 0 }"
}
isRed='r > 200 && g < 110 && b < 110'
showsRed() { (($(pixels "$1" "$isRed") > 20)); }
showsNoRed() { (($(pixels "$1" "$isRed") == 0)); }
picture() { import -silent -window "$1" -depth 8 rgb:- | cksum; }
looksOtherThan() { [[ $(picture "$1") != "$2" ]]; }
