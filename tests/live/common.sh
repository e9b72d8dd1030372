# What the tests of the program on the machine at hand share. To be sourced with velbar-tty as $1.
set -euo pipefail

program=$1
children=()
trap '((${#children[@]} == 0)) || kill "${children[@]}" 2>/dev/null || :; atEnd' EXIT
atEnd() { :; }

fail() {
  printf '%s\n' "$@"
  exit 1
}

# The online processors in the order of the readings: by package, core and number.
processors_in_order() {
  local directory number
  for directory in /sys/devices/system/cpu/cpu[0-9]*; do
    number=${directory##*/cpu}
    grep -q "^cpu$number " /proc/stat || continue
    printf '%s %s %s\n' "$(cat "$directory/topology/physical_package_id" 2>/dev/null || echo 0)" \
      "$(cat "$directory/topology/core_id" 2>/dev/null || echo "$number")" "$number"
  done | sort -n -k1,1 -k2,2 -k3,3 | cut -d' ' -f3
}

# share KEY JSON: the number under a key, 0 if it is not there.
share() {
  local number
  number=$(grep -o "\"$1\":[-+.0-9e]*" <<<"$2") || number=:0
  printf '%s\n' "${number#*:}"
}
