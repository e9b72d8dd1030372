#!/usr/bin/env bash
# Command lines, bundles and files that velbar refuses, with one line on standard error; and what it does without a display.
#   options.sh PROGRAM BUNDLE
source "$(dirname "$0")/common.sh"
installed=$2

# refuses STATUS PATTERN ARGUMENT...: without a display, but where the terminal's front would start.
refuses() {
  local status=0 output
  output=$(DISPLAY='' timeout 60 "$program" "${@:3}" 2>&1 >/dev/null) || status=$?
  [[ $status == "$1" && $output =~ ^velbar:\ $2$ ]] || fail "velbar ${*:3}: status $status" "expected: $2" "$output"
}
for edge in left '' Top; do
  refuses 2 "--edge: \"$edge\" is neither top nor bottom" --edge "$edge"
done
refuses 2 '--edge: expected once, as --edge EDGE' --edge
refuses 2 '--bar excludes --tray' --tray --bar
refuses 2 '--widget excludes --snapshot' --widget --snapshot "$scratch/out"
refuses 2 '--widget excludes --panel' --panel --widget
refuses 2 '--preferences excludes --panel' --panel --preferences
refuses 2 '--tray takes no value' --tray=yes
refuses 2 '--dynamic takes no value' --dynamic=yes
refuses 2 '--snapshot: "" is not a directory' --snapshot ''
refuses 2 '--interval: "0" is not a number of seconds from 0\.1 to 3600' --interval 0
refuses 2 'unknown option --trey' --trey
refuses 1 '/dev/null/x: Not a directory' --snapshot /dev/null/x
refuses 1 "/proc/self/panel-[a-z-]*\.png: cannot be written" --snapshot /proc/self

# The module's nibs: what is wrong, in which file.
# broken EDIT PATTERN: an edit of the menu-bar nib, for sed.
broken() {
  rm -rf "$scratch/bundle"
  cp -r "$installed" "$scratch/bundle"
  sed -i "$1" "$scratch/bundle/VELViewsController.ui"
  refuses 1 "$scratch/bundle/VELViewsController\.ui$2" --bundle "$scratch/bundle" --snapshot "$scratch/out"
}
broken 's/name="gaugeView"/name="gauge"/' ': outlet "gaugeView" is missing, expected a VELGaugeViewMultiple'
broken '0,/class="QCheckBox"/s//class="QLabel"/' ': outlet "showGauge" is a QLabel, expected a QCheckBox'
broken '$d' ':[0-9]+: .*'
rm "$scratch/bundle/VELViewsController.ui"
refuses 1 "$scratch/bundle/VELViewsController\.ui: No such file or directory" \
  --bundle "$scratch/bundle" --snapshot "$scratch/out"

help=$("$program" --help)
[[ -z $(awk 'length > 80' <<<"$help") ]] || fail "--help is too wide" "$help"
for word in --edge --bar --tray --widget --preferences --panel --snapshot --interval --debugfs --discrete \
  --integrated --dynamic settings.ini velbar-tty; do
  [[ $help == *"$word"* ]] || fail "--help does not mention $word"
done
for sink in '>/dev/full' '>&-'; do
  eval "\"\$program\" --help $sink 2>/dev/null" && fail "--help $sink is no trouble"
done

# Without a display the terminal's front takes over, with the options that it knows.
DISPLAY='' "$program" --tray --interval 0.1 --debugfs "$scratch" --integrated --discrete >"$scratch/out" 2>&1 &
await "the terminal's front" grep 'load ' "$scratch/out"
[[ $(<"$scratch/out") == "velbar: no display can be reached, starting in the terminal"*"cpu "* ]] || fail "$(<"$scratch/out")"
arguments=$(xargs -0 <"/proc/$!/cmdline")
[[ $arguments == */velbar-tty\ *" --interval 0.1"*" --debugfs $scratch --discrete --integrated" ]] || fail "$arguments"
kill $!

# Pictures need none: every style, sort of core, panel and page, light and dark.
DISPLAY='' "$program" --snapshot "$scratch/pictures" 2>"$scratch/errors" || fail "$(<"$scratch/errors")"
[[ ! -s $scratch/errors ]] || fail "$(<"$scratch/errors")"
for appearance in light dark; do
  count=$(ls "$scratch/pictures"/item-*-$appearance.png | wc -l)
  kinds=$(cat <(cksum "$scratch"/pictures/item-*-total-$appearance.png | cut -d' ' -f1) | sort -u | wc -l)
  ((count == 12 && kinds == 4)) || fail "$count $appearance items, of which $kinds differ"
  heights=$(identify -format '%h\n' "$scratch"/pictures/panel-*-$appearance.png | sort -n | xargs)
  [[ $heights == '78 116 116 282 316 316' ]] || fail "the $appearance panels' heights are $heights"
  kinds=$(cksum "$scratch"/pictures/preferences-[123]-$appearance.png | cut -d' ' -f1 | sort -u | wc -l)
  ((kinds == 3)) || fail "$kinds $appearance pages of the preferences"
done
[[ ! -e $settings ]] || fail "the pictures have written settings"
