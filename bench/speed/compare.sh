#!/usr/bin/env bash
# Before and after: start-up and peak memory of two builds of Calloquin,
# side by side in one run, against the bare window. Not part of `make bench`;
# used to record what a change to the product bought.
#
# usage: bench/speed/compare.sh <old calloquin> <new calloquin> [starts]
# Both executables need their bundle's Resources beside their bin folder.
# Run bench/speed/run.sh once first: it builds the probe and the bare window.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
repo=$(cd "$here/../.." && pwd)
old=$1 new=$2 starts=${3:-20}
bin=${BENCH_BIN:-$repo/build/bench/bench/speed}
. "$(dirname "$0")/lib.sh"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
d=":$(cat "$work/display")"

start() {  # label, name, region, min, program
  "$bin/bench_xprobe" startup --display "$d" --name "$2" --region "$3" --colour AAAAAA --min "$4" -- "$5" 2>/dev/null |
    sed "s/^/target=$1 /"
}
for ((i = 0; i < starts; i++)); do
  start bare Bare 671,0,345,314 200 "$bin/bench_bare_window"
  start old Calloquin 35,31,611,428 2000 "$old"
  start new Calloquin 35,31,611,428 2000 "$new"
done >"$work/startup.txt"
for t in bare old new; do
  grep "target=$t " "$work/startup.txt" | sed 's/.*startup_ms=\([0-9.]*\).*/\1/' | sort -n |
    awk -v t="$t" '{v[NR]=$1} END {m = NR % 2 ? v[(NR+1)/2] : (v[NR/2]+v[NR/2+1])/2; printf "startup %s median=%.1f ms (n=%d)\n", t, m, NR}'
done

# Peak memory: one game with the caller on, every clip opened.
for t in old new; do
  prog=$old; [ "$t" = new ] && prog=$new
  DISPLAY=$d "$prog" 2>/dev/null & p=$!
  "$bin/bench_xprobe" press --games 1 "display=$d,name=Calloquin,caller=1,flash=1,dialog=1,pid=$p" |
    sed "s/^/memory $t: /; s/target=[^ ]* //"
  kill -9 "$p"; wait "$p" 2>/dev/null || true
done
DISPLAY=$d "$bin/bench_bare_window" & p=$!
"$bin/bench_xprobe" press --games 1 "display=$d,name=Bare,ink=AAAAAA,pid=$p" | sed "s/^/memory bare: /; s/target=[^ ]* //"
kill -9 "$p"
