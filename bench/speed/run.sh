#!/usr/bin/env bash
# Builds and runs the speed benchmarks and writes their figures into
# bench/RESULTS.md (between its figure markers). `make bench` runs this.
#
# usage: bench/speed/run.sh [build dir]     (default build/bench, Release)
# Quicker, rougher: GAMES=2 STARTS=6 bench/speed/run.sh
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
repo=$(cd "$here/../.." && pwd)
build=${1:-$repo/build/bench}
games=${GAMES:-6}     # games of 90 presses on each window
starts=${STARTS:-20}  # starts of each program
results=$repo/bench/RESULTS.md

"$repo/scripts/install-deps.sh"
"$repo/bench/install-deps.sh"
cmake -S "$repo" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCALLOQUIN_WERROR=ON -DCALLOQUIN_BENCH=ON \
  -DCALLOQUIN_CLIP_CACHE="$repo/build/clips" >/dev/null
cmake --build "$build" >/dev/null
cmake --build "$build" --target bench_programs >/dev/null

bin=$build/bench/speed
calloquin=$build/Calloquin/bin/calloquin
resources=$build/Calloquin/Resources
. "$(dirname "$0")/lib.sh"

# A server of its own for each window, so that none covers another. Sets
# display to the server's name (not echoed: a command substitution would
# wait for the server's end).
start_xvfb() {
  local name=$1
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/$name.display" >/dev/null 2>"$work/$name.xvfb.log" &
  pids+=($!)
  for _ in $(seq 100); do [ -s "$work/$name.display" ] && break; sleep 0.1; done
  [ -s "$work/$name.display" ] || { echo "Xvfb did not start" >&2; exit 1; }
  display=":$(cat "$work/$name.display")"
}

load_before=$(cut -d' ' -f1-3 /proc/loadavg)
cpu_before=($(head -1 /proc/stat))
t0=$(date +%s)

echo "== press to screen ($games games of 90 on each window, interleaved)"
start_xvfb bare; d_bare=$display
start_xvfb off; d_off=$display
start_xvfb on; d_on=$display
DISPLAY=$d_bare "$bin/bench_bare_window" 2>"$work/bare.log" & p_bare=$!; pids+=($p_bare)
DISPLAY=$d_off "$calloquin" 2>"$work/off.log" & p_off=$!; pids+=($p_off)
DISPLAY=$d_on "$calloquin" 2>"$work/on.log" & p_on=$!; pids+=($p_on)
"$bin/bench_xprobe" press --games "$games" \
  "display=$d_bare,name=Bare,ink=AAAAAA,pid=$p_bare" \
  "display=$d_off,name=Calloquin,flash=1,dialog=1,pid=$p_off" \
  "display=$d_on,name=Calloquin,caller=1,flash=1,dialog=1,pid=$p_on" | tee "$work/press.txt"
# SIGKILL: no orderly end is being measured here.
kill -9 "$p_bare" "$p_off" "$p_on"

echo "== start-up ($starts starts of each, alternating)"
# Calloquin is painted when its board shows its grey; the bare window when
# its label does.
board="35,31,611,428"
for ((i = 0; i < starts; i++)); do
  "$bin/bench_xprobe" startup --display "$d_bare" --name Bare --region 671,0,345,314 --colour AAAAAA --min 200 \
    -- "$bin/bench_bare_window" | sed 's/^/target=bare /' >>"$work/startup.txt"
  "$bin/bench_xprobe" startup --display "$d_off" --name Calloquin --region "$board" --colour AAAAAA --min 2000 \
    -- "$calloquin" 2>/dev/null | sed 's/^/target=calloquin /' >>"$work/startup.txt"
done

echo "== the handler in-process"
"$bin/bench_handler" "$calloquin" 20 | tee "$work/handler.txt"

echo "== the voice"
"$bin/bench_voice" "$resources" | tee "$work/voice.txt"

cpu_after=($(head -1 /proc/stat))
load_after=$(cut -d' ' -f1-3 /proc/loadavg)
elapsed=$(($(date +%s) - t0))

python3 "$here/report.py" "$work" "$results" \
  --load-before "$load_before" --load-after "$load_after" --elapsed "$elapsed" \
  --cpu-before "${cpu_before[*]}" --cpu-after "${cpu_after[*]}" --games "$games" --starts "$starts"
echo "== figures written to $results (${elapsed}s)"
