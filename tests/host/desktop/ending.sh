#!/usr/bin/env bash
# A process that keeps a processor busy is the first in the expanded panel, and is ended from there with what it has
# started. It has to be ten seconds old to be listed.
#   ending.sh PROGRAM
source "$(dirname "$0")/common.sh"

# Nobody's child, as what a desktop starts, and gone with the scratch directory at the latest.
cp "$(command -v dash)" "$scratch/burner"
("$scratch/burner" -c 'while [ -e "$0" ]; do :; done & echo $! >"$0.child"; while [ -e "$0" ]; do :; done' \
  "$scratch/burner" & echo $! >"$scratch/pid")
burner=$(<"$scratch/pid")
listed=$((EPOCHSECONDS + 12))
isOver() { [[ ! -e /proc/$1 || $(<"/proc/$1/stat") == *') Z '* ]]; }
areOver() { isOver "$burner" && isOver "$(<"$scratch/burner.child")"; }

startServer 1000x700
mkdir -p "${settings%/*}"
printf '%s\n' '[org.velbar.cpu]' 'cpuTop5Type = 1' >"$settings"
start --interval 0.5 --panel
await "the panel" isThere CPU
panel=$(windowNamed CPU)
await "the keyboard on the panel" hasFocus "$panel"
await "the process to be listed" eval '((EPOCHSECONDS > listed))'

# isAboutBurner: the question's window says which process it is about. Nothing else is ever confirmed here.
isAboutBurner() { hasProperty -id "$(windowNamed 'End Process')" WM_WINDOW_ROLE "\"end-$burner\""; }
isMenuThere() { [[ -n $(menuWindow) ]]; }
# ask: the question about the first row, by keyboard; on a busy machine others may be the first for a while.
ask() {
  local left=20
  while
    await "the keyboard on the panel" hasFocus "$panel"
    xdotool key Return
    await "the menu of the busy process" isMenuThere
    xdotool key e
    await "the question" isThere 'End Process'
    await "the keyboard on the question" hasFocus "$(windowNamed 'End Process')"
    ! isAboutBurner
  do
    ((left-- > 0)) || fail "the question is about another process"
    xdotool key Escape
    await "the question to close" isGone 'End Process'
  done
}
xdotool key Tab
ask
xdotool key Return
await "the question to close" isGone 'End Process'
! isOver "$burner" || fail "the process has been ended though the default is not to"
await "the keyboard back on the panel" hasFocus "$panel"
ask
before=$(picture "$panel")
xdotool key alt+e
await "both processes to end" areOver
await "the panel without it" looksOtherThan "$panel" "$before"
stop TERM
[[ ! -s $scratch/errors ]] || fail "said on standard error:" "$(<"$scratch/errors")"
