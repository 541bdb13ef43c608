#!/bin/bash
# Builds the property-stream fuzzer with clang and runs it for the given
# number of seconds (60 unless told), from the window's 103 streams.
# Exits non-zero on any finding; the input that caused it is kept in
# build/fuzz/findings.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$root/build/fuzz
seconds=${1:-60}

CXX=clang++ cmake -S "$root/tests/fuzz" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j "$(nproc)"

rm -rf "$build/seeds" "$build/corpus"
mkdir -p "$build/seeds" "$build/corpus" "$build/findings"
"$build/fuzz_seeds" "$build/seeds"
export ASAN_OPTIONS=detect_leaks=0  # Qt keeps caches for the life of the process
export UBSAN_OPTIONS=print_stacktrace=1
if ! "$build/property_stream_fuzz" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$build/findings/" "$build/corpus" "$build/seeds" >"$build/fuzz.log" 2>&1; then
  tail -n 60 "$build/fuzz.log"
  echo "FAIL: the fuzzer found a fault; the input is in $build/findings"
  exit 1
fi
grep -E '^stat::number_of_executed_units|^#[0-9]+.*DONE' "$build/fuzz.log" | tail -n 2
echo "PASS: no finding in $seconds seconds"
