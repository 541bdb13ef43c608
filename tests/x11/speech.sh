#!/bin/bash
# What a screen-reader user hears, taken off the real accessibility bus: a
# press of Return must reach the bus as "<number>, <call>", as a polite
# announcement where Qt has the event (6.8 and later), and as the current
# number's new description everywhere.
#
# usage: speech.sh <calloquin executable> <board check tool> <Qt version>
if [ -z "${CALLOQUIN_SESSION_BUS:-}" ]; then
  command -v dbus-run-session >/dev/null || { echo "SKIP: dbus-run-session is not installed"; exit 77; }
  exec env CALLOQUIN_SESSION_BUS=1 dbus-run-session -- bash "$0" "$@"
fi
program=$1
check=$2
qt=$3
. "$(dirname "$0")/lib.sh"
launcher=/usr/libexec/at-spi-bus-launcher
[ -x "$launcher" ] || { echo "SKIP: at-spi2-core is not installed"; exit 77; }
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || { echo "SKIP: python3-pyatspi is not installed"; exit 77; }

"$launcher" --launch-immediately &
launcher_pid=$!
on_exit() { kill "$launcher_pid" "${listener_pid:-}" 2>/dev/null; }

/usr/bin/python3 "$(dirname "$0")/listen.py" 60 >"$work/heard" 2>"$work/listen.log" &
listener_pid=$!
until_ok 100 grep -q '^listening' "$work/heard" || fail "the listener did not start: $(cat "$work/listen.log")"

export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
start "$program"
sleep 1  # the program's objects are registered on the bus
press Return
# The number and its call as the program shows them, read off the bus.
said() { grep -q "^description Current number|[0-9]*, " "$work/heard"; }
until_ok 100 said || fail "no description of the current number reached the bus: $(cat "$work/heard")"
call=$(grep -m1 "^description Current number|" "$work/heard" | cut -d'|' -f2-)
echo "heard the description: $call"

if [ "$(printf '%s\n' 6.8 "$qt" | sort -V | head -n1)" = 6.8 ]; then
  until_ok 100 grep -qxF "announcement $call" "$work/heard" \
    || fail "Qt $qt: no announcement \"$call\" on the bus: $(cat "$work/heard")"
  echo "heard the announcement: $call"
fi
press ctrl+q
ended_with 0 "Ctrl+Q"
echo "PASS"
