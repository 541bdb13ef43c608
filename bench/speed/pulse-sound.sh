#!/usr/bin/env bash
# Press to sound through a real PulseAudio daemon (tests/sound/pulse-lib.sh),
# with no PipeWire: from the key event to the clip's first samples in the
# daemon's pipe sink, timed by the system clock. One run of 60 presses for
# each program, each after 0.4 s of silence, and 5 runs of one press.
#
# usage: bench/speed/pulse-sound.sh LABEL=COMMAND...   (BENCH_BIN: bench_xprobe's folder)
set -euo pipefail
. "$(dirname "$0")/sound-lib.sh"
sink=calloquin-test-sink cache=$repo/build/pulseaudio
export XDG_RUNTIME_DIR=$work/run
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
unset PULSE_SERVER PIPEWIRE_REMOTE PIPEWIRE_RUNTIME_DIR
PULSE_READER=none
. "$repo/tests/sound/pulse-lib.sh"
on_exit() { pulse_down; }
pulse_up
echo "PulseAudio $(LD_LIBRARY_PATH="$core:$modules" "$cache"/root/usr/bin/pulseaudio --version 2>/dev/null | awk '{print $2}'), $(. /etc/os-release && echo "$PRETTY_NAME")"
run() {  # presses, command...
  local presses=$1; shift
  "$@" 2>"$work/program.log" &
  app_pid=$!
  "$xprobe" sound --sink "fifo:$fifo" --presses "$presses" --wait-ms 1500 "display=$DISPLAY,name=Calloquin"
  local status=$?
  kill "$app_pid" 2>/dev/null; wait "$app_pid" 2>/dev/null; app_pid=
  return "$status"
}
for target in "$@"; do
  label=${target%%=*}
  read -r -a command <<<"${target#*=}"
  long=$(run 60 "${command[@]}") || fail "$label: $long"
  echo "$label: $(sed 's/ all=.*//' <<<"$long")"
  for _ in 1 2 3 4 5; do
    one=$(run 1 "${command[@]}") || fail "$label: $one"
    echo "$label, first press of a run: $(sed -n 's/.* first=\([0-9.]*\).*/\1/p' <<<"$one") ms"
  done
done
