#!/usr/bin/env bash
# What velbar-tty writes where there is no terminal, and how it ends.
#   output.sh PROGRAM SCRIPTED-MODULE
source "$(dirname "$0")/common.sh"

run() { timeout 20 "$program" "$@"; }

share='[ 0-9]{3}\.[0-9] %  '
line="cpu ${share}user ${share}system ${share}nice ${share}idle ${share}load( [ 0-9]{2,}\.[0-9]{2}){3}"
line+="  tasks +[0-9]+  threads +[0-9]+  up [0-9a-z: ]+"

# The installed bundle and the machine itself.
mapfile -t lines < <(run --count 3 --interval 0.1)
expect "number of plain lines" 3 ${#lines[@]}
for text in "${lines[@]}"; do
  expect "plain line" "$line" "$text"
done

# The item is as the user has set it up.
mkdir -p "$XDG_CONFIG_HOME/velbar"
printf '%s\n' '[org.velbar.cpu]' 'showDisplay = 0' 'subItemsDisplayed = 4' '[org.velbar.host]' 'refreshInterval = 100' \
  >"$XDG_CONFIG_HOME/velbar/settings.ini"
text=$(run --once --interval 0.1)
expect "item of the settings" ' [[:alpha:]]{3}' "${text%%$'\n'*}"

# Without its own texts the program says so and goes on.
mkdir "$scratch/bin"
cp "$program" "$scratch/bin"
ln -s "$(dirname "$(dirname "$program")")"/lib* "$scratch"
status=0
text=$("$scratch/bin/${program##*/}" "${sound[@]}" --once --interval 0.1 2>"$scratch/errors") || status=$?
expect "status without texts" 0 $status
expect "warning without texts" "velbar-tty: $scratch/share/velbar/Info.strings: .*" "$(<"$scratch/errors")"
[[ $text == *Scr*50%*User*50.0\ %* && $text == *'Tasks 2 '* && $text != *$'\e'* && $text != *quit* ]] || fail "$text"

# In the words and the characters of the locale.
# glibc never frees the list of directories that it makes of LOCPATH.
echo leak:argz_add_sep >"$scratch/suppressions"
export LSAN_OPTIONS=suppressions=$scratch/suppressions:print_suppressions=0
localedef -i de_DE -f UTF-8 "$scratch/de_DE.UTF-8"
text=$(LOCPATH=$scratch LC_ALL=de_DE.UTF-8 run "${sound[@]}" --once --interval 0.1)
[[ $text == *'Nutzer     50,0 %  ███'*'Laufzeit 3 T 04:05'* ]] || fail "$text"
text=$(LC_ALL=C run "${sound[@]}" --once --interval 0.1)
[[ $text == *'User     50.0 %  ###'* && $text != *[^[:ascii:]]* ]] || fail "$text"

text=$(LC_ALL=C run --bundle "$scratch/cores" --once --interval 0.1)
expect "gauges in ASCII" ' Scr         75%  #{8}' "${text%%$'\n'*}"

# JSON, one object a refresh, in ASCII and without control characters whatever processes are called.
mapfile -t lines < <(run "${sound[@]}" --json --count 2 --interval 0.1)
expect "number of JSON lines" 2 ${#lines[@]}
for i in 0 1; do
  expect "JSON" "\{\"userCPU\":0\.5,.*\"tasksCount\":$((i + 1)),\"threadsCount\":null,.*\}" "${lines[i]}"
done
[[ ${lines[0]} == *'"name":"\u001b[31m\ufffd\n\""'* ]] || fail "${lines[0]}"
expect "number of objects with --once" 1 "$(run "${sound[@]}" --json --once --interval 0.1 | wc -l)"

# An alert is a line of its own, and not among the readings.
for format in '' --json; do
  text=$(run --bundle "$scratch/alert" $format --count 3 --interval 0.1 2>"$scratch/errors")
  expect "lines beside an alert $format" 3 "$(wc -l <<<"$text")"
  expect "alert $format" 'velbar-tty: CPU: <b>%s\?\? \[7\]' "$(<"$scratch/errors")"
done
# Sent where nobody is, it is a line all the same.
export DBUS_SESSION_BUS_ADDRESS=unix:path=$scratch/none
"$program" --bundle "$scratch/alert" --notify --interval 0.1 >/dev/null 2>"$scratch/errors" &
until grep -s 'no notification service' "$scratch/errors" >/dev/null; do ((SECONDS < 60)) || fail "nothing is sent"; done
kill $!
wait $! || fail "it ends badly"
expect "alert that cannot be sent" 'velbar-tty: CPU: .*' "$(sed '/no notification service/d' "$scratch/errors")"

# The installed bundle's processes are there from the first refresh on; in JSON with a point in every locale.
sed -i 's/^\[org.velbar.cpu\]$/&\ncpuTop5Type = 0/' "$XDG_CONFIG_HOME/velbar/settings.ini"
machineWith one two
printf 'Uid:\t0\t4123456\t0\t0\n' >"$scratch/busy/proc/102/status"
text=$(LOCPATH=$scratch LC_ALL=de_DE.UTF-8 run "${busy[@]}" --json --count 1)
row='"name":"two","pid":"102","avg cpu time":"20.0","share":0\.(19999|2)[0-9]*,"processes":1,"user":"4123456"'
[[ $text =~ '"topMemProcess":[{'$row'},{"name":"one",' ]] || fail "$text"
text=$(run "${busy[@]}" --once --interval 0.1)
[[ $text == *$'\n\n Top processes, average since start\n two '*102*20.0$'\n one '*10.0 ]] || fail "$text"

# A switching mode that has no effect or cannot be set is told of where one was asked for, the one that holds.
expect "a mode without two" 'velbar-tty: --discrete: this machine does not have two graphics processors .*' \
  "$(run "${busy[@]}" --once --discrete 2>&1 >"$scratch/out")"
twoGraphicsProcessors
expect "a mode without the badge" 'velbar-tty: --discrete: has no effect until the preferences show .* in use' \
  "$(run "${busy[@]}" --once --discrete 2>&1 >"$scratch/out")"
sed -i 's/^\[org.velbar.cpu\]$/&\ngfxGPU = 1/' "$XDG_CONFIG_HOME/velbar/settings.ini"
switch="$scratch/busy/sys/kernel/debug/vgaswitcheroo/switch"
while IFS='|' read -r arguments message; do
  text=$(run "${busy[@]}" $arguments --count 1 2>&1 >"$scratch/out")
  expect "message of $arguments" "$message" "$text"
done <<END
|
--integrated|velbar-tty: --integrated: $switch: No such file or directory; it takes a kernel with vga_switcheroo
--dynamic|velbar-tty: --dynamic: $scratch/busy/sys/.*/power/control: the kernel is to leave .*
--integrated --discrete --debugfs $scratch|velbar-tty: --discrete: $scratch/vgaswitcheroo/switch: No such file .*
END

# A reader that goes away ends the program at once, long before the next refresh.
run "${sound[@]}" --interval 3600 | head -n 1 >"$scratch/first"
expect "statuses of the pipe" '0 0' "${PIPESTATUS[*]}"

# A full disk, and no output at all.
for sink in '>/dev/full' '>&-'; do
  for arguments in '--json' '' '--version' '--help'; do
    status=0
    text=$(eval "run \"\${sound[@]}\" $arguments 2>&1 $sink") || status=$?
    expect "status of $arguments $sink" 1 $status
    expect "message of $arguments $sink" 'velbar-tty: standard output: [^:]+' "$text"
  done
done

# Asked to end, it ends well; what it was started to ignore stays ignored.
mkfifo "$scratch/fifo"
"$program" "${sound[@]}" >"$scratch/fifo" &
exec 3<"$scratch/fifo"
read -r -u 3
grep -qs 'it_interval: (0, 100000000)' /proc/$!/fdinfo/* || fail "the interval is not that of the settings"
kill -TERM $!
status=0
wait $! || status=$?
expect "status after SIGTERM" 0 $status
exec 3<&-
(trap '' HUP; exec "$program" "${sound[@]}" --interval 0.1 >"$scratch/fifo") &
exec 3<"$scratch/fifo"
read -r -u 3
kill -HUP $!
for _ in 1 2 3; do read -r -u 3 || fail "SIGHUP was not ignored"; done
exec 3<&-
wait $! || fail "status of a program whose reader has gone"
