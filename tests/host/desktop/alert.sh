#!/usr/bin/env bash
# The CPU alert as a user meets it: a minute above the threshold, two minutes since the alert before, a real notification
# service, and none. Takes some four minutes.
#   alert.sh PROGRAM
source "$(dirname "$0")/common.sh"
source "$(dirname "$0")/notifications.sh"

startServer 1000x700
startNotifications

# Two programs with a name that neither markup nor a format may make anything of, each busy for some four tenths of the
# time. They are nobody's children, as what a desktop starts, and gone with the scratch directory at the latest. velbar sees
# a machine with no others, whatever else is busy.
machine=$scratch/machine
mkdir "$machine"
ln -s /proc/{stat,loadavg} "$machine"
name='<b>x<b> & %s'
cp "$BASH" "$scratch/$name"
for _ in 1 2; do
  ("$scratch/$name" -c 'while [[ -e $0 ]]; do for ((i = 0; i < 20000; ++i)); do :; done; read -r -t 0.05; done' \
    "$scratch/$name" <>"$scratch/never" & echo $! >>"$scratch/burners")
done
for burner in $(<"$scratch/burners"); do
  ln -s "/proc/$burner" "$machine"
done

mkdir -p "${settings%/*}"
printf '%s\n' '[org.velbar.cpu]' 'isNotifyMoreThan = 1' 'NotifyMoreThanValue = 10' 'NotifyTimeValueMoreThan = 1' >"$settings"
SECONDS=0
start --proc "$machine"
await "the bar" isThere Velbar

pause() { read -r -t "$1" <>"$scratch/never" || :; }
# staysAt COUNT UNTIL: no further notification until so many seconds after the start.
staysAt() {
  while ((SECONDS < $2)); do
    (($(shown) == $1)) || fail "a notification after $SECONDS seconds" "$(<"$scratch/shown")"
    pause 0.5
  done
}

staysAt 0 119
await "the alert" eval '(($(shown) > 0))'
((SECONDS <= 140)) || fail "the alert came after $SECONDS seconds"
first=$SECONDS
body=$(texts body)
[[ $body =~ ^'&lt;b&gt;x&lt;b&gt; &amp; %s ['([0-9]+)'] is using too much CPU'$ ]] || fail "the alert says: $body"
[[ -e $machine/${BASH_REMATCH[1]} ]] || fail "the alert is about another process: $body"
[[ $(texts summary) == 'CPU Usage' ]] || fail "the alert's title is $(texts summary)"

# The next has to wait for two minutes, and then there is neither service nor bus.
staysAt 1 $((first + 40))
kill -KILL $service $bus
# wakes: how often velbar has waited.
wakes() { awk '$1 == "voluntary_ctxt_switches:" { print $2 }' "/proc/$velbar/status"; }
goesOn() {
  local before
  before=$(wakes)
  await "some refreshes" eval "((\$(wakes) >= $before + 3))"
}
goesOn
while ((SECONDS < first + 119)); do
  [[ ! -s $scratch/errors ]] || fail "an alert after $SECONDS seconds" "$(<"$scratch/errors")"
  pause 0.5
done
await "the next alert, which cannot be shown" test -s "$scratch/errors"
[[ $(<"$scratch/errors") == 'velbar: no notification service: '* ]] || fail "$(<"$scratch/errors")"
goesOn
"$program" --preferences 2>/dev/null
await "the preferences" isThere 'Velbar Preferences'
stop TERM
(($(wc -l <"$scratch/errors") == 1)) || fail "said on standard error:" "$(<"$scratch/errors")"
