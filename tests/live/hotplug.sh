#!/usr/bin/env bash
# A processor of this machine goes offline and comes back while the program watches; needs root and a processor 1 that
# can be switched. Whatever happens, the machine gets its processor back.
#   hotplug.sh PROGRAM
source "$(dirname "$0")/common.sh"

switch=/sys/devices/system/cpu/cpu1/online
[[ -w $switch ]] || fail "$switch cannot be written"
atEnd() { echo 1 >"$switch"; }

exec {output}< <(exec "$program" --json --interval 0.3)
children+=($!)
last=$(($(processors_in_order | wc -l) - 1))

# sums PROCESSORS-RUNNING: after two refreshes (the first after a change is left out) every share lies in 0 to 1, and each
# running processor's add up to 1, the others' to 0.
sums() {
  local line i
  read -r -u "$output" line
  read -r -u "$output" line
  for ((i = 0; i <= last; ++i)); do
    for state in user system idle nice; do share "${state}CPUAll$i" "$line"; done |
      awk -v expected=$((i < $1)) '{ sum += $1; if ($1 < 0 || $1 > 1) bad = 1 }
        END { exit bad || sum < expected - 1e-5 || sum > expected + 1e-5 }' ||
      fail "$2: the shares of processor $i of $1 do not add up:" "$line"
  done
}

sums $((last + 1)) 'at the start'
echo 0 >"$switch"
sums "$last" 'while it is offline'
echo 1 >"$switch"
read -r -u "$output" _
read -r -u "$output" _ # has the processor again, with nothing yet to compare it with
sums $((last + 1)) 'when it is back'
# Away and back between two samples: the counters may have begun anew.
echo 0 >"$switch"
echo 1 >"$switch"
sums $((last + 1)) 'when it was away for a moment'
