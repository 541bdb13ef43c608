#!/usr/bin/env bash
# Installs what is missing, builds Calloquin and runs every test. Each
# configuration is built once: a debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer, warnings as errors, that runs every test (X
# tests included), and a release build of the program alone, which becomes
# the .deb that is installed, played and removed. The fuzzer runs for a
# minute beside the tests and the release build. Each stage's time is
# printed at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
# Qt keeps caches for the life of the process: leaks are not looked for.
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

times=() fuzz=
report() {
  # A stage that failed leaves no fuzzer behind (its own process group).
  [ -n "$fuzz" ] && kill -- "-$fuzz" 2>/dev/null
  echo "== stage times"
  printf '  %s\n' "${times[@]}"
}
trap report EXIT
stage() {  # name, command...
  local name=$1 t=$SECONDS
  shift
  echo "== $name"
  "$@"
  times+=("$(printf '%4d s  %s' $((SECONDS - t)) "$name")")
}
# The fuzzer is built and run in the background from the start of the tests
# on: it needs one core for its minute, and the tests mostly wait on X.
fuzz_start() {
  setsid tests/fuzz/run.sh 60 >build/fuzz.out 2>&1 &
  fuzz=$!
}
fuzz_wait() {
  local status=0
  wait "$fuzz" || status=$?
  fuzz=
  cat build/fuzz.out
  return "$status"
}

stage "install what is missing" scripts/install-deps.sh
stage "debug build under the sanitizers" sh -c "cmake --preset asan >/dev/null && cmake --build --preset asan -j $jobs"
fuzz_start
stage "every test (the fuzzer's minute begins beside them)" ctest --preset asan -j "$jobs" -LE soak
stage "the release build" sh -c "cmake --preset release >/dev/null && cmake --build --preset release -j $jobs"
stage "the rest of the fuzzer's minute" fuzz_wait
stage "the .deb: built, installed with apt, played under Xvfb, removed" \
  packaging/test-deb.sh build/asan/tests/x11/board_check
