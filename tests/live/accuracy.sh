#!/usr/bin/env bash
# The shares against an independent reading of /proc/stat around the same two moments, under known loads: all idle, one
# processor busy, all busy. Two ticks of difference are what the moments' distance may cost. A machine that is busy with
# other things can tear the moments further apart, so a load that disagrees is measured once more.
#   accuracy.sh PROGRAM
source "$(dirname "$0")/common.sh"

# ticks NAME STAT: user, system, idle and nice ticks of a line of /proc/stat (man 5 proc).
ticks() {
  awk -v name="$1" '$1 == name { print $2, $4 + $7 + $8 + $9, $5 + $6, $3 }' <<<"$2"
}

# compare WHAT NAME-IN-STAT KEY-SUFFIX
compare() {
  awk -v what="$1" -v shares="$(for state in user system idle nice; do share "${state}CPU$3" "$second"; done | xargs)" \
    -v from="$(ticks "$2" "$before")" -v to="$(ticks "$2" "$after")" 'BEGIN {
      split(shares, share); split(from, a); split(to, b)
      for (i = 1; i <= 4; ++i) { gained[i] = b[i] - a[i]; total += gained[i]; sum += share[i] }
      for (i = 1; i <= 4; ++i) {
        off = share[i] * total - gained[i]
        if (off > 2 || off < -2) bad = 1
      }
      if (bad || total <= 0 || sum < 0.99999 || sum > 1.00001) {
        printf "%s: shares %s of %d ticks, /proc/stat gained %d %d %d %d\n", what, shares, total,
          gained[1], gained[2], gained[3], gained[4]
        exit 1
      }
    }'
}

mapfile -t order < <(processors_in_order)

# measure LOAD: the processors to keep busy.
measure() {
  local processor i wrong=0
  children=()
  for processor in $1; do
    taskset -c "$processor" bash -c 'while :; do :; done' &
    children+=($!)
  done
  exec {output}< <(exec "$program" --json --interval 2 --count 2)
  read -r -u "$output" first
  before=$(</proc/stat)
  read -r -u "$output" second
  after=$(</proc/stat)
  exec {output}<&-
  if ((${#children[@]})); then
    kill "${children[@]}"
    wait "${children[@]}" 2>/dev/null || :
  fi
  children=()
  compare "busy: ${1:-none}; machine" cpu '' || wrong=1
  for i in "${!order[@]}"; do
    compare "busy: ${1:-none}; processor ${order[i]}" "cpu${order[i]}" "All$i" || wrong=1
  done
  return "$wrong"
}

for load in '' "${order[0]}" "${order[*]}"; do
  measure "$load" || measure "$load" || fail 'the shares do not agree'
done
