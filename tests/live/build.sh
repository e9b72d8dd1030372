#!/usr/bin/env bash
# A build of many short compilers, started in an interactive shell in a real terminal: it is first in the list of processes,
# under its own name, with all that its compilers use. The shell that started it is busy too, and has a row of its own.
#   build.sh PROGRAM
source "$(dirname "$0")/common.sh"

scratch=$(mktemp -d)
# A server, and with it a socket, of its own.
export TMUX_TMPDIR=$scratch XDG_CONFIG_HOME=$scratch LC_ALL=C.UTF-8
unset TMUX MAKEFLAGS MAKELEVEL
atEnd() {
  tmux kill-server 2>/dev/null || :
  # What is ending may still write there.
  rm -rf "$scratch" 2>/dev/null || rm -rf "$scratch"
}
mkdir "$scratch/velbar"
printf '%s\n' '[org.velbar.cpu]' 'cpuTop5Type = 1' >"$scratch/velbar/settings.ini"

# Compilers of some ten milliseconds, as a rule starts them: by a shell.
cat >"$scratch/compiler" <<'COMPILER'
#!/bin/sh
i=0
while [ $i -lt 10000 ]; do i=$((i + 1)); done
COMPILER
cat >"$scratch/Makefile" <<'MAKEFILE'
targets := $(addprefix t,$(shell seq 100000))
all: $(targets)
$(targets):
	@sh ./compiler && :
MAKEFILE
tmux -f /dev/null new-session -d -x 80 -y 24 -c "$scratch" 'exec bash --norc -i'
shell=$(tmux display-message -p '#{pane_pid}')
tmux send-keys "make -j$(nproc) & echo \$! >make.pid; while :; do :; done" Enter

# used PID: CPU seconds of a process and of its children that have ended, man 5 proc.
used() {
  local text
  text=$(<"/proc/$1/stat")
  awk -v hz="$(getconf CLK_TCK)" '{ print ($12 + $13 + $14 + $15) / hz }' <<<"${text##*) }"
}
# row NAME PID: the share of one core that the row with this name and pid has, nothing if there is none.
row() {
  grep -o '{"name":"[^}]*}' <<<"$refresh" |
    sed -n "s/^{\"name\":\"$1\",\"pid\":\"$2\",.*\"avg cpu time\":\"\([-0-9.]*\)%\".*/\1/p" |
    awk '{ print $1 / 100 }'
}

# agrees ROW SHARE BEFORE AFTER: a tenth of a core is what the moments' distance and the compilers of a moment may cost.
agrees() {
  awk -v share="$2" -v used="$(awk -v from="$3" -v to="$4" -v i=$interval 'BEGIN { print (to - from) / i }')" \
    'BEGIN { exit !(used > 0 && share > 0.9 * used - 0.1 && share < 1.1 * used + 0.1) }' ||
    wrong="$1: ${2:-no row}, and used from $3 to $4 seconds in $interval"
}
# Whatever else is running has less than a build that takes more than half of the machine.
isFirst() {
  [[ $(grep -o '{"name":"[^}]*}' <<<"$refresh" | head -n 1) == *'"pid":"'"$make"'"'* ]] ||
    awk -v share="$1" -v processors="$(nproc)" 'BEGIN { exit !(share < processors / 2 + 0.1) }' ||
    wrong="the build is not first"
}

# The list is of processes that have run for 10 seconds. Its shares are of the last interval, as is what is measured here.
# A machine that is busy with other things can tear the two apart, so what disagrees is measured once more.
interval=4
exec {output}< <(exec "$program" --json --interval $interval --count 5)
children+=($!)
for _ in 1 2 3; do
  read -r -u "$output" refresh
done
[[ -s $scratch/make.pid ]] || fail 'the build has not started' "$(tmux capture-pane -p)"
make=$(<"$scratch/make.pid")
for _ in 1 2; do
  makeBefore=$(used "$make")
  shellBefore=$(used "$shell")
  read -r -u "$output" refresh
  wrong=
  agrees make "$(row make "$make")" "$makeBefore" "$(used "$make")"
  agrees 'the shell' "$(row bash "$shell")" "$shellBefore" "$(used "$shell")"
  isFirst "$(row make "$make")"
  [[ -n $wrong ]] || exit 0
done
fail "$wrong" "$refresh"
