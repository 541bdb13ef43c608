#!/usr/bin/env bash
# Press to sound through PipeWire: from the key event to the clip's first
# samples at the sink, on a private PipeWire (server, session manager and
# PulseAudio service, a null sink) and a private Xvfb. For each program:
# one run of 60 presses (the median and 95th percentile are over all of
# them), and 10 more runs of one press each (the first press of a run, 11
# in all), and 3 runs whose one press comes after 30 s of silence with the
# caller on. Each press comes after 0.4 s of silence at the sink. The sink
# rests while nothing plays to it, as a desktop's does; 5 more runs of one
# press find it kept running by another stream at PipeWire's default cycle,
# as when another program plays. Programs are measured one after the other
# in the same session.
#
# usage: bench/speed/sound.sh LABEL=COMMAND...
#   e.g. bench/speed/sound.sh now=build/bench/Calloquin/bin/calloquin \
#          "pulse=env SDL_AUDIODRIVER=pulseaudio build/bench/Calloquin/bin/calloquin"
# Needs bench_xprobe (bench/speed/run.sh builds it) and the packages of
# scripts/install-deps.sh.
set -euo pipefail
. "$(dirname "$0")/sound-lib.sh"
. "$repo/tests/sound/pipewire-lib.sh"
pipewire_up
echo "PipeWire $(pipewire --version | sed -n "s/^Linked with libpipewire //p"), $(. /etc/os-release && echo "$PRETTY_NAME")"

# One run: the program, then the probe once its window is up.
run() {  # presses, wait before the first (ms), command...
  local presses=$1 wait=$2; shift 2
  "$@" 2>"$work/program.log" &
  app_pid=$!
  "$xprobe" sound --sink "$sink" ${busy_sink:+--busy-sink} --presses "$presses" --wait-ms "$wait" "display=$DISPLAY,name=Calloquin"
  local status=$?
  kill "$app_pid" 2>/dev/null
  wait "$app_pid" 2>/dev/null
  app_pid=
  return "$status"
}

for target in "$@"; do
  label=${target%%=*}
  read -r -a command <<<"${target#*=}"
  long=$(run 60 1500 "${command[@]}") || fail "$label: $long"
  firsts=$(sed -n 's/.* first=\([0-9.]*\).*/\1/p' <<<"$long")
  for _ in $(seq 10); do
    one=$(run 1 1500 "${command[@]}") || fail "$label: $one"
    firsts="$firsts $(sed -n 's/.* first=\([0-9.]*\).*/\1/p' <<<"$one")"
  done
  # The caller switched on, then 30 s of silence before the press.
  for _ in 1 2 3; do
    one=$(run 1 30000 "${command[@]}") || fail "$label: $one"
    echo "$label: the first press after 30 s of silence: $(sed -n 's/.* first=\([0-9.]*\).*/\1/p' <<<"$one") ms"
  done
  busy=
  for _ in $(seq 5); do
    one=$(busy_sink=1 run 1 1500 "${command[@]}") || fail "$label: $one"
    busy="$busy $(sed -n 's/.* first=\([0-9.]*\).*/\1/p' <<<"$one")"
  done
  echo "$label: the first press of a run, the sink kept running by another stream:$busy ms"
  /usr/bin/python3 - "$label" "$long" $firsts <<'EOF'
import statistics, sys
label, long, firsts = sys.argv[1], sys.argv[2], [float(x) for x in sys.argv[3:]]
fields = dict(f.split("=", 1) for f in long.split())
times = [float(x) for x in fields["all"].split(",")]
q = statistics.quantiles(times, n=20, method="inclusive")
print(f"{label}: {len(times)} presses: median {statistics.median(times):.1f} ms, 95th percentile {q[18]:.1f} ms, "
      f"max {max(times):.1f} ms; first press of {len(firsts)} runs: median {statistics.median(firsts):.1f} ms, "
      f"max {max(firsts):.1f} ms")
EOF
done
