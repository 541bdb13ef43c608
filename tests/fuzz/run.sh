#!/bin/bash
# Runs the property-stream fuzzer of the sanitizer build (the asan preset,
# built first if needed) for the given number of seconds (60 unless told),
# from the window's 103 streams. Exits non-zero on any finding; the input
# that caused it is kept in build/fuzz/findings.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
cd "$root"
seconds=${1:-60}
out=$root/build/fuzz
bin=$root/build/asan/tests/fuzz

cmake --preset asan >/dev/null
cmake --build --preset asan --target property_stream_fuzz fuzz_seeds

rm -rf "$out/seeds" "$out/corpus"
mkdir -p "$out/seeds" "$out/corpus" "$out/findings"
"$bin/fuzz_seeds" "$out/seeds"
export ASAN_OPTIONS=detect_leaks=0  # Qt keeps caches for the life of the process
export UBSAN_OPTIONS=print_stacktrace=1
if ! "$bin/property_stream_fuzz" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$out/findings/" "$out/corpus" "$out/seeds" >"$out/fuzz.log" 2>&1; then
  tail -n 60 "$out/fuzz.log"
  echo "FAIL: the fuzzer found a fault; the input is in $out/findings"
  exit 1
fi
grep -E '^stat::number_of_executed_units|^#[0-9]+.*DONE' "$out/fuzz.log" | tail -n 2
echo "PASS: no finding in $seconds seconds"
