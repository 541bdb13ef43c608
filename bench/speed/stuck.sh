#!/usr/bin/env bash
# Press to screen while the voice is stuck: a private PipeWire with no
# session manager takes the voice's stream and never starts it. One window
# with the caller off and one with it on (each on an X server of its own),
# GAMES games of 90 presses on each, interleaved; each press timed from the
# key event to the big number drawn (bench_xprobe press).
#
# usage: bench/speed/stuck.sh PROGRAM   (BENCH_BIN: where bench_xprobe is)
set -euo pipefail
. "$(dirname "$0")/sound-lib.sh"
. "$repo/tests/sound/pipewire-lib.sh"
program=$1
pids=()
on_exit() { kill "${pids[@]}" 2>/dev/null; pipewire_down; }
pw_server; pw_pulse  # and no session manager
d_off=$DISPLAY
xserver
d_on=$DISPLAY
DISPLAY=$d_off "$program" 2>"$work/off.log" & p_off=$!; pids+=($p_off)
DISPLAY=$d_on "$program" 2>"$work/on.log" & p_on=$!; pids+=($p_on)
"$xprobe" press --games "${GAMES:-1}" \
  "display=$d_off,name=Calloquin,flash=1,dialog=1,pid=$p_off" \
  "display=$d_on,name=Calloquin,caller=1,flash=1,dialog=1,pid=$p_on"
echo "stream of the window with the caller on: $(our_nodes) node(s) at the server"
grep -h Calloquin "$work/on.log"
