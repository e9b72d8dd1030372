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
  refuses 2 '--interval: .*0\.1 to 3600.*' --interval="$value"
done
for value in 0 -1 1.5 x '' 1e3 99999999999999999999; do
  refuses 2 '--count: "[^"]*" is not a number of refreshes, 1 or more' --count "$value"
done
refuses 2 '--interval: expected once, with SECONDS \(0\.1 to 3600\)' --interval
refuses 2 '--interval: expected once, with SECONDS \(0\.1 to 3600\)' --interval 1 --interval 2
refuses 2 '--count: expected once, with N \(1 or more\)' --count
refuses 2 '--once excludes --count' --once --count 3
for option in --proc --sys; do
  refuses 2 "$option: \"/dev/null\" is not a directory" "$option" /dev/null
  refuses 2 "$option: \"\" is not a directory" "$option" ''
  refuses 2 "$option: expected once, with DIR" "$option"
done
refuses 2 '.*--unknown' --unknown
refuses 2 '.*stray' stray
refuses 2 'json .*' --json=yes

bundle foreign '"contract" = "2";'
refuses 1 "$scratch/foreign/Info.strings: \"contract\" is \"2\", expected \"1\".*" --bundle "$scratch/foreign"
refuses 1 "$scratch/none/Info.strings: .*, expected a module bundle" --bundle "$scratch/none"

expect "version" 'velbar-tty [0-9]+\.[0-9]+\.[0-9]+' "$("$program" --version)"
help=$("$program" --help)
for word in --interval --count --once --json --bundle --proc --sys 'since the machine was started'; do
  [[ $help == *"$word"* ]] || fail "--help does not mention $word"
done
