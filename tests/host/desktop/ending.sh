#!/usr/bin/env bash
# A process that keeps a processor busy is the first in the expanded panel, and is ended from there. It has to be ten
# seconds old to be listed.
#   ending.sh PROGRAM
source "$(dirname "$0")/common.sh"

# Nobody's child, as what a desktop starts, and gone with the scratch directory at the latest.
cp "$(command -v dash)" "$scratch/burner"
("$scratch/burner" -c 'while [ -e "$0" ]; do :; done' "$scratch/burner" & echo $! >"$scratch/pid")
burner=$(<"$scratch/pid")
listed=$((EPOCHSECONDS + 12))
isEnded() { [[ ! -e /proc/$burner || $(<"/proc/$burner/stat") == *') Z '* ]]; }

startServer 1000x700
mkdir -p "${settings%/*}"
printf '%s\n' '[org.velbar.cpu]' 'cpuTop5Type = 1' >"$settings"
start --interval 0.5 --panel
await "the panel" isThere CPU
panel=$(windowNamed CPU)
await "the keyboard on the panel" hasFocus "$panel"
await "the process to be listed" eval '((EPOCHSECONDS > listed))'

# isAboutBurner: velbar holds the process, and no other, while it asks. Nothing else is ever confirmed here.
isAboutBurner() { [[ $(cat /proc/"$velbar"/fdinfo/* | grep ^Pid:) =~ ^Pid:[[:space:]]*$burner$ ]]; }
# ask: the question about the first row, by keyboard.
ask() {
  xdotool key Return
  await "the menu of the busy process" isAboutBurner
  xdotool key e
  await "the question" isThere 'End Process'
  await "the keyboard on the question" hasFocus "$(windowNamed 'End Process')"
  isAboutBurner || fail "the question is about another process"
}
xdotool key Tab
ask
xdotool key Return
await "the question to close" isGone 'End Process'
isEnded && fail "the process has been ended though the default is not to"
await "the keyboard back on the panel" hasFocus "$panel"
ask
before=$(picture "$panel")
xdotool key alt+e
await "the process to end" isEnded
await "the panel without it" looksOtherThan "$panel" "$before"
stop TERM
[[ ! -s $scratch/errors ]] || fail "said on standard error:" "$(<"$scratch/errors")"
