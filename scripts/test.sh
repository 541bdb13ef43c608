#!/usr/bin/env bash
# Installs what is missing, builds Calloquin and runs every test. Each
# configuration is built once: a debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer, warnings as errors, that runs every test (X
# tests included), and the release build, which is the Debian package's
# own (packaging/build-deb.sh: from the release tarball, by
# dpkg-buildpackage, checked by lintian and blhc; its tests are the ones
# just run), installed, played and removed. The fuzzer's minute and the
# package's build run beside the tests, which mostly wait on X and the
# sound servers. Each stage's time is printed at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
# Qt keeps caches for the life of the process: leaks are not looked for.
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

times=() fuzz= deb_build=
report() {
  # A stage that failed leaves no fuzzer or package build behind (each in
  # its own process group).
  [ -n "$fuzz" ] && kill -- "-$fuzz" 2>/dev/null
  [ -n "$deb_build" ] && kill -- "-$deb_build" 2>/dev/null
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

# The package is built from the tarball of the last commit, in
# build/debian, on one core: the tests keep the other.
deb_start() {
  DEB_BUILD_OPTIONS="nocheck parallel=1" setsid packaging/build-deb.sh build/debian >build/debian.out 2>&1 &
  deb_build=$!
}
deb_wait() {
  local status=0
  wait "$deb_build" || status=$?
  deb_build=
  cat build/debian.out
  return "$status"
}

stage "install what is missing" scripts/install-deps.sh
stage "debug build under the sanitizers" sh -c "cmake --preset asan >/dev/null && cmake --build --preset asan -j $jobs"
fuzz_start
deb_start
stage "every test (the fuzzer's minute and the package's build begin beside them)" ctest --preset asan -j "$jobs" -LE soak
stage "the rest of the fuzzer's minute" fuzz_wait
stage "the rest of the package's build: dpkg-buildpackage, lintian, blhc" deb_wait
stage "the .deb: installed with apt, played under Xvfb, removed" \
  packaging/test-deb.sh "$(ls build/debian/calloquin_*_"$(dpkg --print-architecture)".deb)" build/asan/tests/x11/board_check
