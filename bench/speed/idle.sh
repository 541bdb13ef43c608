#!/usr/bin/env bash
# What the program and the sound server cost while nothing sounds, at a
# private PipeWire (pipewire-lib.sh) under a private Xvfb: CPU time of
# each over 20 s, with the caller off from start, and with the caller on
# 5 s after a press. Programs are measured one after the other in the
# same session.
#
# usage: bench/speed/idle.sh LABEL=PROGRAM...
set -euo pipefail
. "$(dirname "$0")/sound-lib.sh"
. "$repo/tests/sound/pipewire-lib.sh"
pipewire_up
ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
cpu_over() {  # seconds; prints the program's and the server's share of a core, in percent
  local a0 s0 a1 s1 hz
  hz=$(getconf CLK_TCK)
  a0=$(ticks "$app_pid"); s0=$(ticks "${pipewire_pids[0]}")
  sleep "$1"
  a1=$(ticks "$app_pid"); s1=$(ticks "${pipewire_pids[0]}")
  awk -v a="$((a1 - a0))" -v s="$((s1 - s0))" -v hz="$hz" -v t="$1" -v n="$(our_nodes)" \
    'BEGIN { printf "program %.2f%% server %.2f%% streams %d", 100 * a / hz / t, 100 * s / hz / t, n }'
}
for target in "$@"; do
  label=${target%%=*}
  start "${target#*=}"
  sleep 2
  echo "$label, caller off: $(cpu_over 20)"
  caller_switch
  press Return
  sleep 5
  echo "$label, caller on, from 5 s after a press: $(cpu_over 20)"
  kill "$app_pid"; wait "$app_pid" 2>/dev/null; app_pid=
done
