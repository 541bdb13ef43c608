#!/usr/bin/env bash
# Press to screen while the voice is stuck: a private PipeWire with no
# session manager takes the voice's stream and never starts it. One window
# with the caller off and one with it on (each on an X server of its own),
# GAMES games of 90 presses on each, interleaved; each press timed from the
# key event to the big number drawn (bench_xprobe press).
#
# usage: bench/speed/stuck.sh PROGRAM   (BENCH_BIN: where bench_xprobe is)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
repo=$(cd "$here/../.." && pwd)
if [ -z "${CALLOQUIN_PRIVATE_BUS:-}" ]; then
  exec dbus-run-session -- env CALLOQUIN_PRIVATE_BUS=1 bash "$0" "$@"
fi
xprobe=${BENCH_BIN:-$repo/build/bench/bench/speed}/bench_xprobe
program=$1
set +e
. "$repo/tests/common.sh"
. "$repo/tests/sound/pipewire-lib.sh"
unset SDL_AUDIODRIVER
pids=()
on_exit() { kill "${pids[@]}" 2>/dev/null; pipewire_down; }
xvfb() {
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/$1.display" 2>/dev/null &
  pids+=($!)
  until_ok 100 test -s "$work/$1.display" || fail "Xvfb did not start"
}
pw_server; pw_pulse  # and no session manager
xvfb off; xvfb on
d_off=":$(cat "$work/off.display")" d_on=":$(cat "$work/on.display")"
DISPLAY=$d_off "$program" 2>"$work/off.log" & p_off=$!; pids+=($p_off)
DISPLAY=$d_on "$program" 2>"$work/on.log" & p_on=$!; pids+=($p_on)
"$xprobe" press --games "${GAMES:-1}" \
  "display=$d_off,name=Calloquin,flash=1,dialog=1,pid=$p_off" \
  "display=$d_on,name=Calloquin,caller=1,flash=1,dialog=1,pid=$p_on"
echo "stream of the window with the caller on: $(our_nodes) node(s) at the server"
grep -h Calloquin "$work/on.log"
