# What the end-to-end tests of velbar-tty share. To be sourced with the program and the scripted module as $1 and $2.
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
module=$2
scratch=$(mktemp -d)
# The settings are the tests' own.
export XDG_CONFIG_HOME=$scratch/config
# What is ending may still write a file while the directory is removed.
trap 'cleanUp; rm -rf "$scratch" 2>/dev/null || rm -rf "$scratch"' EXIT
cleanUp() { :; }

fail() {
  printf '%s\n' "$@"
  exit 1
}

# expect WHAT PATTERN TEXT: the whole text matches the extended regular expression.
expect() {
  [[ $3 =~ ^($2)$ ]] || fail "$1" "expected: $2" "found:    $3"
}

# bundle NAME INFO...: a bundle with the scripted module, its nib and further entries of Info.strings.
bundle() {
  mkdir -p "$scratch/$1"
  ln -sf "$module" "$scratch/$1/module.so"
  printf '%s\n' '"identifier" = "test"; "library" = "module.so";' "${@:2}" >"$scratch/$1/Info.strings"
  echo '<ui><widget class="QWidget" name="item"><widget class="VELMenuBarText" name="text"/>' \
    '<widget class="VELModuleNameStatusBarView" name="name"/><widget class="VELGaugeViewMultiple" name="gauges"/>' \
    '<widget class="QWidget" name="panel"/></widget></ui>' >"$scratch/$1/Item.ui"
}
bundle sound '"contract" = "4"; "processors" = "8"; "share" = "50"; "gauges" = "1";'
bundle alert '"contract" = "4"; "gauges" = "1"; "alert" = "<b>%s\U202e\U001b [7]";'
bundle cores '"contract" = "4"; "share" = "75"; "gauges" = "8";'

# A machine on which as many processors run as the scripted module has.
mkdir -p "$scratch"/machine/{proc,sys}
printf 'cpu%d 9 0 9 9\n' {0..7} >"$scratch/machine/proc/stat"
echo 'btime 1' >>"$scratch/machine/proc/stat"
sound=(--bundle "$scratch/sound" --proc "$scratch/machine/proc" --sys "$scratch/machine/sys")

# machineWith NAME...: "$scratch/busy", a machine with a processor and a process of each of these names, all of them old.
machineWith() {
  local pid=100 name
  mkdir -p "$scratch"/busy/{proc,sys}
  echo '1.00 0.50 0.25 1/9 1' >"$scratch/busy/proc/loadavg"
  printf '%s\n' 'cpu 9 0 9 9 0 0 0 0 0 0' 'cpu0 9 0 9 9 0 0 0 0 0 0' "btime $(($(date +%s) - 100000))" \
    >"$scratch/busy/proc/stat"
  for name; do
    pid=$((pid + 1))
    mkdir -p "$scratch/busy/proc/$pid"
    # Fields of man 5 proc. The CPU time, in hundredths of a second, is a tenth of the age for each that came before.
    printf '%s (%s) S 1 1 1 0 -1 0 0 0 0 0 %s 0 0 0 20 0 1 0 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 17 0 0 0 0 0 0\n' \
      $pid "$name" $(((pid - 100) * 1000000)) >"$scratch/busy/proc/$pid/stat"
  done
}
# twoGraphicsProcessors: gives that machine an integrated one, with the display, and a discrete one whose power is left on.
# There is no switch.
twoGraphicsProcessors() {
  local devices=$scratch/busy/sys/bus/pci/devices
  mkdir -p "$devices/0000:00:02.0/drm/card0/card0-eDP-1" "$devices/0000:01:00.0/power"
  echo 0x030000 | tee "$devices"/{0000:00:02.0,0000:01:00.0}/class >/dev/null
  echo enabled >"$devices/0000:00:02.0/drm/card0/card0-eDP-1/enabled"
  echo on >"$devices/0000:01:00.0/power/control"
}
busy=(--proc "$scratch/busy/proc" --sys "$scratch/busy/sys")
