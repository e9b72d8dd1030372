# What the benchmarks beside other programs share: a desktop of their own, programs on it, and what those cost. To be
# sourced after scripts/setup.sh; "seconds" is how long to measure.
# shellcheck shell=bash

scratch=$(mktemp -d)
started=()
stop_all() {
  # The X server, which was the first, goes last.
  local i
  for ((i = ${#started[@]} - 1; i >= 0; --i)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
  rm -rf "$scratch"
}
trap stop_all EXIT
trap 'exit 1' INT TERM HUP

# A pause that starts no process: nothing is ever written here.
mkfifo "$scratch/never"
exec {never}<>"$scratch/never"
pause() { read -r -t "$1" -u "$never" || true; }

# await WHAT COMMAND...: until the command succeeds.
await() {
  local what=$1 left=1200
  shift
  until "$@" >/dev/null 2>&1; do
    ((left-- > 0)) || die "waited in vain for $what" "$(cat "$scratch"/*.log)"
    pause 0.05
  done
}

# A desktop without a session bus and without anybody's settings.
export HOME=$scratch LC_ALL=C.UTF-8
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_CURRENT_DESKTOP LANGUAGE

start_desktop() {
  local number
  mkfifo "$scratch/display"
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
  started+=($!)
  read -r -t 10 number <>"$scratch/display" || die "Xvfb does not start" "$(<"$scratch/xvfb.log")"
  export DISPLAY=:$number
  openbox >"$scratch/openbox.log" 2>&1 &
  started+=($!)
  await "the window manager" has_window_manager
}
has_window_manager() { [[ $(xprop -root _NET_SUPPORTED) == *_NET_WM_STRUT_PARTIAL* ]]; }

names=() pids=()

# measured NAME PROGRAM ARGUMENT...: starts it and waits for its window, which is then in $window.
measured() {
  local name=$1 config=$scratch/${#pids[@]}
  shift
  mkdir -p "$config"
  mkdir -m 700 "$config/runtime"
  env XDG_CONFIG_HOME="$config" XDG_RUNTIME_DIR="$config/runtime" "$@" >"$config.log" 2>&1 &
  pids+=($!)
  started+=($!)
  names+=("$name")
  await "the window of $name" has_window "$!" "$name"
}
# has_window PID TITLE: conky does not tell its PID.
has_window() {
  window=$(xdotool search --onlyvisible --any --pid "$1" --name "^measured $2\$" | head -n 1)
  [[ -n $window ]]
}

# The functions below run between the windows of a second and start no process, which would be noise.

# cpu_time PID: nanoseconds on a processor, all threads, in $time: Documentation/scheduler/sched-stats.rst.
cpu_time() {
  local task used
  time=0
  for task in /proc/"$1"/task/*; do
    read -r used _ <"$task/schedstat" || die "a program has ended:" "$(cat "$scratch"/*.log)"
    time=$((time + used))
  done
}

# wakeups PID: how often a thread has waited for something, all threads, in $count.
wakeups() {
  local task key value
  count=0
  for task in /proc/"$1"/task/*; do
    while read -r key value _; do
      if [[ $key == voluntary_ctxt_switches: ]]; then
        count=$((count + value))
      fi
    done <"$task/status"
  done
}

# Writes lines "<index of the program> <nanoseconds in this second>" to the file "times".
measure() {
  local i left next second previous=()
  for i in "${!pids[@]}"; do
    cpu_time "${pids[i]}"
    previous[i]=$time
  done
  next=${EPOCHREALTIME/[!0-9]/}
  for ((second = 0; second < seconds; ++second)); do
    next=$((next + 1000000))
    left=$((next - ${EPOCHREALTIME/[!0-9]/}))
    if ((left > 0)); then
      printf -v left '%d.%06d' $((left / 1000000)) $((left % 1000000))
      pause "$left"
    fi
    for i in "${!pids[@]}"; do
      cpu_time "${pids[i]}"
      echo "$i $((time - previous[i]))"
      previous[i]=$time
    done
  done >"$scratch/times"
}

# median I and mean I: microseconds.
median() {
  awk -v i="$1" '$1 == i { print $2 }' "$scratch/times" | sort -n |
    awk '{ all[NR] = $1 } END { printf "%.0f", (all[int((NR + 1) / 2)] + all[int(NR / 2) + 1]) / 2000 }'
}
mean() { awk -v i="$1" '$1 == i { sum += $2; ++n } END { printf "%.0f", sum / n / 1000 }' "$scratch/times"; }

# memory PID KEY: megabytes.
memory() { awk -v key="$2:" '$1 == key { printf "%.1f", $2 / 1024 }' "/proc/$1/status"; }
