# A session bus with a real notification service, which writes down what it shows. To be sourced after common.sh.

# startNotifications: $bus and $service are their processes.
startNotifications() {
  # Without the machine's services, which a bus would start again.
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$scratch/bus
  cat >"$scratch/bus.conf" <<END
<busconfig><type>session</type><listen>$DBUS_SESSION_BUS_ADDRESS</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
END
  mkfifo "$scratch/address"
  dbus-daemon --config-file="$scratch/bus.conf" --nofork --nosyslog --print-address=3 3>"$scratch/address" 2>/dev/null &
  bus=$!
  read -r _ <"$scratch/address"
  printf '[global]\nmarkup = full\n' >"$scratch/dunstrc"
  stdbuf -oL dunst -conf "$scratch/dunstrc" -print >"$scratch/shown" 2>/dev/null &
  service=$!
  await "the notification service" dunstctl is-paused
}

# shown: how many notifications there have been.
shown() { awk '/^\tbody: / { ++n } END { print n + 0 }' "$scratch/shown"; }
# texts FIELD: theirs, "summary" or "body", as the service got them.
texts() { awk -F "'" -v field="$1:" '$1 ~ "^\t" field { print $2 }' "$scratch/shown"; }
