#!/usr/bin/env bash
# Command lines and bundles that velbar-tty refuses: one line on standard error, and the status.
#   options.sh PROGRAM SCRIPTED-MODULE
source "$(dirname "$0")/common.sh"

# refuses STATUS PATTERN ARGUMENT...
refuses() {
  local status=0 output
  output=$(timeout 10 "$program" "${@:3}" 2>&1 >"$scratch/out") || status=$?
  expect "status of ${*:3}" "$1" "$status"
  expect "message of ${*:3}" "velbar-tty: $2" "$output"
  [[ $output != *[[:cntrl:]]* ]] || fail "message of ${*:3} is more than a line" "$output"
  expect "output of ${*:3}" "" "$(<"$scratch/out")"
}

for value in nan inf 1e9 1e1 0x1 1s '' -1 0 0.09 3600.1 ' 1' '1 ' 1,5 x $'1\n2'; do
  refuses 2 '--interval: "[^"]*" is not a number of seconds from 0\.1 to 3600' --interval "$value"
  refuses 2 '--interval: (.*0\.1 to 3600|expected once, as --interval SECONDS)' --interval="$value"
done
for value in 0 -1 1.5 x '' 1e3 99999999999999999999; do
  refuses 2 '--count: "[^"]*" is not a number of refreshes, 1 or more' --count "$value"
done
refuses 2 '--interval: expected once, as --interval SECONDS' --interval
refuses 2 '--interval: expected once, as --interval SECONDS' --interval 1 --interval 2
refuses 2 '--count: expected once, as --count N' --count
refuses 2 '--once excludes --count' --once --count 3
for option in --proc --sys --debugfs; do
  refuses 2 "$option: \"/dev/null\" is not a directory" "$option" /dev/null
  refuses 2 "$option: \"\" is not a directory" "$option" ''
  refuses 2 "$option: expected once, as $option DIR" "$option"
done
refuses 2 'unknown option --interv' --interv 3
refuses 2 'unknown option -x' -x stray
refuses 2 'unexpected argument stray' stray --unknown
refuses 2 'unexpected argument --json' -- --json
for flag in --json --once --discrete --integrated --dynamic; do
  refuses 2 "$flag takes no value" "$flag=false"
done

bundle foreign '"contract" = "1";'
refuses 1 "$scratch/foreign/Info.strings: \"contract\" is \"1\", expected \"4\".*" --bundle "$scratch/foreign"
refuses 1 "$scratch/none: no such directory, expected a module bundle" --bundle "$scratch/none"
refuses 1 '/dev/null: not a directory, expected a module bundle' --bundle /dev/null
refuses 1 "$scratch/machine/Info.strings: .*, expected a module bundle" --bundle "$scratch/machine"
refuses 2 '--bundle: "" is not a directory' --bundle ''

bundle nib '"contract" = "4"; "gauges" = "1";'
sed -i 's/Text" name="text"/Text" name="txt"/' "$scratch/nib/Item.ui"
refuses 1 "$scratch/nib/Item.ui: outlet \"text\" is missing, expected a VELMenuBarText" --bundle "$scratch/nib"

# Libraries that would kill the program if they were mapped, and those of other machines (man 5 elf).
# broken FAULT: the bundle's library, to be spoilt beforehand, is refused.
bundle broken '"contract" = "4";'
library=$scratch/broken/module.so
broken() { refuses 1 "$library: $1, expected the module's shared library" --bundle "$scratch/broken"; }
spoil() {
  cp --remove-destination "$module" "$library"
  printf "$2" | dd of="$library" bs=1 seek="$1" conv=notrunc status=none
}
for size in 0 3 40 100 3000; do
  head -c "$size" "$module" >"$scratch/cut"
  mv "$scratch/cut" "$library"
  broken 'cut short'
done
spoil 18 '\xf3\xff'
broken 'for another kind of machine'
spoil 16 '\x01\x01'
broken 'not a shared library'
# The program headers' place, where adding their size exceeds 64 bits.
spoil 32 '\xf0\xff\xff\xff\xff\xff\xff\xff'
broken 'cut short'

expect "version" 'velbar-tty [0-9]+\.[0-9]+\.[0-9]+' "$("$program" --version)"
help=$("$program" --help)
[[ -z $(awk 'length > 80' <<<"$help") ]] || fail "--help is too wide" "$help"
for word in --interval --count --once --json --notify --bundle --proc --sys --debugfs --discrete --integrated --dynamic 'since the machine was started'; do
  [[ $help == *"$word"* ]] || fail "--help does not mention $word"
done
