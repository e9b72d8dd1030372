#!/usr/bin/env bash
# The live display in a real terminal: what it shows, and that it leaves the terminal as it was.
#   screen.sh PROGRAM SCRIPTED-MODULE
source "$(dirname "$0")/common.sh"

# A server, and with it a socket, of its own.
export TMUX_TMPDIR=$scratch
unset TMUX
terminal() { tmux -f /dev/null "$@"; }
cleanUp() {
  finish
  [[ ! -s $scratch/row ]] || kill -KILL -- "-$(<"$scratch/row")" 2>/dev/null || :
  terminal kill-server 2>/dev/null || :
}

# The shell in the terminal: it notes the terminal's state before and after the program and each command that it is
# given thereafter.
cat >"$scratch/shell" <<'SHELL'
#!/usr/bin/env bash
# shell HANGUP PROGRAM ARGUMENT...: HANGUP is what to do at the terminal's end.
trap "$1" HUP
# Opened once: a child that stops would interrupt the opening.
exec 5<>start
read -r <&5
printf 'before\n'
stty -g >stty.before
# end SIGNAL...: sends the stopped job these and returns its status. Waiting for a job that is still being told to go on
# would answer that it is stopped.
end() {
  local job signal
  job=$(jobs -p %1)
  for signal in "$@"; do kill -"$signal" %1; done
  while kill -0 "$job" 2>/dev/null; do :; done
  wait "$job"
}
set -m
"${@:2}"
while
  status=$?
  stty -g >stty.after
  echo $status >status
  read -r command <&5
do
  eval "$command" >/dev/null
done
SHELL

# open WxH HANGUP PROGRAM...: starts a program in a terminal of its own, with a directory and pipes of its own.
# Descriptor 3 is what it writes on the terminal.
number=0
open() {
  number=$((number + 1))
  place=$scratch/$number
  mkdir "$place"
  mkfifo "$place/start" "$place/output" "$place/status"
  exec 3<>"$place/output" 4<>"$place/status"
  terminal new-session -d -x "${1%x*}" -y "${1#*x}" -s test -c "$place" \
    "TERM=tmux-256color exec bash '$scratch/shell' '$2' ${*:3}"
  shell=$(terminal display-message -p -t test '#{pane_pid}')
  server=$(terminal display-message -p '#{pid}')
  terminal set-option -g status off
  terminal pipe-pane -o -t test "exec cat >'$place/output'"
  echo >"$place/start"
}

# The shell outlives its terminal, to tell the program's status.
shell=
server=
finish() {
  [[ -z $server ]] || kill -CONT "$server" 2>/dev/null || :
  terminal kill-session -t test 2>/dev/null || :
  [[ -z $shell ]] || kill -KILL "$shell" 2>/dev/null || :
}

# await TEXT: until the program has written it.
await() {
  local character written=
  while [[ $written != *"$1" ]]; do
    IFS= read -r -N 1 -t 10 character <&3 || fail "the display never showed $1" "$written"
    written+=$character
  done
}

screen() { terminal capture-pane -p -t test; }
state() { terminal display-message -p -t test '#{alternate_on} #{cursor_flag} #{cursor_x} #{cursor_y}'; }

# The program's process: the only child of the shell. Other processes end while they are looked at.
processId() {
  { cat /proc/[0-9]*/stat 2>/dev/null || :; } | sed -n "s/^\([0-9]*\) (velbar-tty) . $shell .*/\1/p"
}

# left STATUS: the program has ended with it and the terminal is as it was.
left() {
  local status
  read -r -t 10 -u 4 status || fail "$case: the program did not end"
  expect "$case: status" "$1" "$status"
  expect "$case: terminal settings" "$(<"$place/stty.before")" "$(<"$place/stty.after")"
}
leftScreen() {
  expect "$case: screen" $'before\n*' "$(screen)"
  expect "$case: alternate screen, cursor and its place" '0 1 0 1' "$(state)"
}

still=("$program" "${sound[@]}" --interval 3600)

case='sizes'
open 80x24 : "${still[@]}"
await help
mapfile -t lines < <(screen)
expect "$case: lines" 24 ${#lines[@]}
expect "$case: item" ' Scr         50%  █{30}▌·{30}' "${lines[0]}"
expect "$case: last processor" ' CPU 7    50\.0 %  █{30}▌·{30}' "${lines[13]}"
expect "$case: figures" ' Load - - -    Tasks 1    Threads -    Up 3d 04:05' "${lines[15]}"
expect "$case: keys" ' q quit  \? help' "${lines[23]}"
expect "$case: state" '1 0 .*' "$(state)"
terminal resize-window -t test -x 40 -y 12
await help
mapfile -t lines < <(screen)
expect "$case: two columns of processors" ' 0  50 % █{5}·{5}  4  50 % █{5}·{5}' "${lines[5]}"
expect "$case: keys" ' q quit  \? help' "${lines[11]}"
terminal resize-window -t test -x 2 -y 2
terminal resize-window -t test -x 100 -y 30
await help
expect "$case: after the smallest" ' Scr         50%  █+▌·+' "$(screen | head -n 1)"
terminal resize-window -t test -x 80 -y 24
await help

case='key q'
terminal send-keys -t test Up q
left 0
leftScreen
finish

for key in C-c 'C-\'; do
  case="key $key"
  open 80x24 : "${still[@]}"
  await help
  terminal send-keys -t test "$key"
  left 0
  leftScreen
  finish
done

case='SIGTERM while Ctrl-S holds the output'
open 80x24 : "$program" "${sound[@]}" --interval 0.1
await help
terminal send-keys -t test C-s
process=$(processId)
wakes() { sed -n 's/^voluntary_ctxt_switches:\t//p' "/proc/$process/status"; }
awaitRefreshes() {
  local enough=$(($(wakes) + 4))
  SECONDS=0
  until (($(wakes) >= enough)); do ((SECONDS < 10)) || fail "$case: it waits"; done
}
# It goes on refreshing meanwhile, rather than wait for the terminal.
awaitRefreshes
kill -TERM "$process"
left 0
leftScreen
finish

case='SIGTERM while the terminal reads nothing'
open 80x24 : "${still[@]}"
await help
process=$(processId)
kill -STOP "$server"
# Each has the whole screen sent anew; a few dozen of them fill what the kernel holds for the terminal.
for _ in {1..300}; do
  kill -WINCH "$process"
  wakes >/dev/null
done
kill -TERM "$process"
left 0
finish

case='Ctrl-Z'
open 80x24 : "${still[@]}"
await help
terminal send-keys -t test C-z
left 148
# Shells put a stopped program's prompt where its screen was left.
expect "$case: alternate screen and cursor" '0 1 .*' "$(state)"
echo fg >"$place/start"
await help
expect "$case: display after fg" ' Scr         50%  █+▌·+' "$(screen | head -n 1)"
terminal send-keys -t test q
left 0
finish

case='SIGTERM after Ctrl-Z'
open 80x24 : "${still[@]}"
await help
terminal send-keys -t test C-z
left 148
echo 'end TERM' >"$place/start"
left 0
expect "$case: alternate screen and cursor" '0 1 .*' "$(state)"
finish

# inBackground: opens a display, stops it and lets it go on in the background.
inBackground() {
  open 80x24 : "$program" "${sound[@]}" --interval 0.1
  await help
  terminal send-keys -t test C-z
  left 148
  process=$(processId)
  echo bg >"$place/start"
  left 0
  awaitRefreshes
  expect "$case: alternate screen and cursor" '0 1 .*' "$(state)"
}

case='from the background'
inBackground
echo fg >"$place/start"
await help
expect "$case: display after fg" ' Scr         50%  █+▌·+' "$(screen | head -n 1)"
terminal send-keys -t test q
left 0
finish

# What is typed is not for it, but stops it as it does any program in the background.
case='SIGTERM after typing while in the background'
inBackground
terminal send-keys -t test q Enter
SECONDS=0
until [[ $(<"/proc/$process/stat") == *') T '* ]]; do ((SECONDS < 10)) || fail "$case: it is not stopped"; done
echo 'end TERM CONT' >"$place/start"
left 0
finish

# With SIGHUP taken and with SIGHUP ignored, as nohup does.
for hangUp in : ''; do
  case="closed terminal, SIGHUP '$hangUp'"
  open 80x24 "$hangUp" "${still[@]}"
  await help
  terminal kill-pane -t test
  read -r -t 10 -u 4 status || fail "$case: the program did not end"
  expect "$case: status" 0 "$status"
  finish
done

case='gauges of a busy module'
open 80x24 : "$program" --bundle "$scratch/cores" --interval 3600
await help
[[ $(terminal capture-pane -p -e -t test) == *75%*$'\e[38;5;167m'▆▆▆▆▆▆▆▆$'\n'* ]] || fail "$case" "$(screen)"
finish

case='without colour'
open 80x24 : env NO_COLOR=1 "${still[@]}"
await help
[[ $(terminal capture-pane -p -e -t test) != *$'\e[3'[0-8]* ]] || fail "$case: there are colours"
finish

case='unknown terminal'
open 80x24 : env TERM=nonesuch "$program" "${sound[@]}" --count 1
await 04:05
left 0
expect "$case: lines" $'before\nvelbar-tty: the terminal type "nonesuch" is unknown, showing plain lines\ncpu .*' "$(screen)"
finish

# The installed bundle, with its processes, graph and settings.
case='keys'
machineWith first $'\e[31mred' '<b>%n' $'a\nb\tc' $'\xe2\x80\xae\xff\xc3\xff\xc3\xff\xc3\xff\xc3\xff\xc3\xff\xc3'
open 80x24 : "$program" "${busy[@]}" --interval 3600
await first
expect "$case: hints" ' q quit  t ranking  k end  c cores  g graph  a alert  \? help' "$(screen | tail -n 1)"
# seen TEXT: until a line of the screen is that, but for blanks at its end.
seen() {
  SECONDS=0
  until screen | sed 's/ *$//' | grep -xF -- "$1" >/dev/null; do ((SECONDS < 10)) || fail "$case: no $1" "$(screen)"; done
}
# setting KEY VALUE: until it is in the file.
setting() {
  SECONDS=0
  until grep -sx "$1 = $2" "$XDG_CONFIG_HOME/velbar/settings.ini" >/dev/null; do
    ((SECONDS < 10)) || fail "$case: $1 is not $2"
  done
}
seen ' Top processes, now'
terminal send-keys -t test t
setting cpuTop5Type 0
seen ' Top processes, average since start'
case='names of processes'
seen ' ?????????????         105     50.0'
seen ' a?b?c                 104     40.0'
seen ' <b>%n                 103     30.0'
seen ' ?[31mred              102     20.0'
seen ' first                 101     10.0'
case='keys'
terminal send-keys -t test g
setting showGraph 1
await Graph
terminal send-keys -t test c c
setting cpucoresdisplayed 2
terminal send-keys -t test '?'
seen ' Any key goes back.'
terminal send-keys -t test q
seen ' Top processes, average since start'
# Right as it comes while the program is held up, the console's F3, Home with Alt as some terminals send it.
terminal send-keys -t test -N 40 Right
terminal send-keys -t test -l $'\e[[C\e\e[H'
terminal send-keys -t test g
setting showGraph 0
terminal send-keys -t test -l qt
left 0
setting cpucoresdisplayed 2
setting cpuTop5Type 0
finish

# Without alerts there is nothing to set, and there is nothing below the least.
case='settings of the alert'
open 80x24 : "$program" "${busy[@]}" --interval 3600
await help
terminal send-keys -t test -l '>]a'
setting isNotifyMoreThan 1
terminal send-keys -t test -l '>]]['
setting NotifyMoreThanValue 40
setting NotifyTimeValueMoreThan 15
seen ' Alert 40 % 15 min'
terminal send-keys -t test -l '<<<<<<<'
setting NotifyMoreThanValue 10
terminal send-keys -t test -l a
setting isNotifyMoreThan 0
finish

# The badge, and why the mode cannot be set: with the next refresh, and when the screen is gone.
case='graphics processors'
twoGraphicsProcessors
open 80x24 : "$program" "${busy[@]}" --integrated --interval 3600
await '--integrated: has no effect'
await help
expect "$case: hints" ' q quit  t ranking  k end  c cores  g graph  v GPU  a alert  \? help' "$(screen | tail -n 1)"
terminal send-keys -t test -l nv
setting gfxGPUCardSwitch 1
setting gfxGPU 1
SECONDS=0
until [[ $(screen) == *' GPU alert'* ]]; do ((SECONDS < 10)) || fail "$case: no alert" "$(screen)"; done
terminal send-keys -t test c
await 'it takes a kernel'
expect "$case: item" ' CPU .* \[i\]' "$(screen | sed -n 2p)"
terminal send-keys -t test -l vq
left 0
expect "$case: what is left" $'before\nvelbar-tty: --integrated: has no .*/switch: No such file.*' "$(screen)"
setting gfxGPU 0
finish

case='alert'
open 80x24 : "$program" --bundle "$scratch/alert" --interval 0.1
await $'\a'
alert=' [0-2][0-9]:[0-5][0-9]  CPU: <b>%s\?\? \[7\]  x dismiss'
SECONDS=0
until [[ $(screen | head -n 1) =~ ^$alert$ ]]; do ((SECONDS < 10)) || fail "$case" "$(screen)"; done
expect "$case: item" ' Scr .*' "$(screen | sed -n 2p)"
terminal send-keys -t test x
until [[ $(screen | head -n 1) == ' Scr'* ]]; do ((SECONDS < 10)) || fail "$case: not dismissed" "$(screen)"; done
terminal send-keys -t test q
left 0
leftScreen
finish

# A row with three processes that have nothing to do with the test any more, as a desktop starts them.
case='ending'
setsid --fork bash -c 'sleep 1000 & echo $! >"$0/member"; sleep 1000 & echo $$ >"$0/row"; wait' "$scratch"
SECONDS=0
until [[ -s $scratch/row ]]; do ((SECONDS < 10)) || fail "$case: no row"; done
row=$(<"$scratch/row") member=$(<"$scratch/member")
isOver() { [[ ! -e /proc/$1 || $(<"/proc/$1/stat") == *') Z '* ]]; }
bundle ending '"contract" = "4"; "gauges" = "1";' "\"process\" = \"$row\";"
open 80x24 : "$program" --bundle "$scratch/ending" --interval 3600
chosen() { seen ">job               ×3  $(printf %7d "$row")      1.5"; }
seen ' first                       1        9'
terminal send-keys -t test k
seen ' Choose a process of the list first, with ↑ or ↓.'
terminal send-keys -t test Down Down
chosen
[[ $(terminal capture-pane -p -e -t test) == *$'>\e[7mjob '* ]] || fail "$case: not in reverse" "$(screen)"
terminal send-keys -t test Escape
seen " job               ×3  $(printf %7d "$row")      1.5"
terminal send-keys -t test Up
chosen
# asks: which of them is the busiest, if any is, it says in between.
asks() {
  local form=$'^ End “bash” and the 2 processes it started\\?( Busiest: “[a-z]+” \\(process [0-9]+\\)\\.\n)? +y end  f force  n no\n'
  SECONDS=0
  until [[ $(screen) =~ $form ]]; do ((SECONDS < 10)) || fail "$case: no question" "$(screen)"; done
}
terminal send-keys -t test k
asks
# None of these is an answer, least of all q.
terminal send-keys -t test q
SECONDS=0
until [[ $(screen) == ' Scr'* ]]; do ((SECONDS < 10)) || fail "$case: still asking" "$(screen)"; done
for key in n Enter k; do
  terminal send-keys -t test k
  asks
  terminal send-keys -t test $key
done
! isOver "$row" || fail "$case: unasked"
terminal send-keys -t test k
asks
terminal send-keys -t test y
seen ' “bash” has been told to end.'
SECONDS=0
until isOver "$row" && isOver "$member"; do ((SECONDS < 10)) || fail "$case: not ended" "$(screen)"; done
terminal send-keys -t test k
seen " “job” (process $row) has ended already."
terminal send-keys -t test q
left 0
finish

case='ending what is not here'
open 80x24 : "$program" "${busy[@]}" --interval 3600
seen ' first                 101     10.0'
terminal send-keys -t test -l $'\e[Bk'
seen ' “?????????????” (process 105) runs on another system or in another container'
terminal send-keys -t test q
left 0
finish

case='settings that cannot be written'
open 80x24 : "$program" "${busy[@]}" --interval 3600
seen ' Top processes, average since start'
mv "$XDG_CONFIG_HOME/velbar" "$scratch/settings"
touch "$XDG_CONFIG_HOME/velbar"
terminal send-keys -t test t
seen ' Top processes, now'
terminal send-keys -t test q
left 0
expect "$case: what is left" $'before\nvelbar-tty: .*settings.ini: cannot be written: .*' "$(screen)"
rm "$XDG_CONFIG_HOME/velbar"
mv "$scratch/settings" "$XDG_CONFIG_HOME/velbar"
finish

# unread: refreshes go on, and no process is read.
unread() {
  awaitRefreshes
  # That old, the time of the last reading is not left for later (man 8 mount, relatime).
  touch -a -d '2 days ago' "$scratch"/busy/proc/*/stat
  awaitRefreshes
  [[ -z $(find "$scratch"/busy/proc/ -path '*[0-9]/stat' -atime 0) ]] || fail "$case: they are read"
}

case='no room for processes'
open 80x12 : "$program" "${busy[@]}" --interval 0.1
await help
process=$(processId)
unread
terminal resize-window -t test -x 80 -y 24
seen ' first                 101     10.0'
case='help in front of the processes'
terminal send-keys -t test '?'
seen ' Any key goes back.'
unread
terminal send-keys -t test x
seen ' first                 101     10.0'
finish
