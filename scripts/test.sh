#!/usr/bin/env bash
# Installs what is missing, builds Calloquin and runs every test. Each
# configuration is built once: a debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer, warnings as errors, that runs every test (X
# tests included), and the release build, which is the Debian package's
# own (packaging/build-deb.sh: from the release tarball, by
# dpkg-buildpackage; its tests are the ones just run), installed, played
# and removed. lintian and blhc, which check the package as a distribution
# would, are not run here: they and what they install (lintian brings 134
# packages) took some 30 s of this command, and CI runs them on each
# release's package built from the Build-Depends alone, the same bytes as
# this one; packaging/build-deb.sh runs them on a package by hand. The
# voice clips are spoken once, beside the install, for both builds; what
# makes the package and the tests' tools are installed beside the
# sanitizer build; the package's build begins beside it, once its tools
# are in, and with the fuzzer's minute goes on beside the tests, at the
# lowest priority. Each stage's time is printed at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
# Qt keeps caches for the life of the process: leaks are not looked for.
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

times=()
declare -A beside=()  # name: process group of a stage run beside the tests
report() {
  # A stage that failed leaves nothing running behind it.
  local pid
  for pid in "${beside[@]}"; do kill -- "-$pid" 2>/dev/null || true; done
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
# A stage begun beside the others, in its own process group (job control
# gives it one), its output kept in build/<name>.out until the stage that
# waits for it. Not in a session of its own: Linux shares the CPU fairly
# between sessions whatever their nice, so a build at nice 19 in its own
# session took a whole core from the tests.
begin() {  # name, command...
  local name=$1
  shift
  mkdir -p build
  set -m
  "$@" </dev/null >"build/$name.out" 2>&1 &
  beside[$name]=$!
  set +m
}
finish() {  # name
  local status=0
  wait "${beside[$1]}" || status=$?
  unset "beside[$1]"
  cat "build/$1.out"
  return "$status"
}

# The voice clips are spoken first, beside the rest of the install (dpkg
# keeps one core busy at most), into the cache that the build's presets
# share (build/clips): in the build, their step waits for its loudness
# meter, which Ninja compiles among the last.
mkdir -p build
export CALLOQUIN_APT_STAMP=$PWD/build/apt-lists-fetched
rm -f "$CALLOQUIN_APT_STAMP"
stage "install what speaks the voice clips" scripts/install-deps.sh --for-clips
rm -f build/clips-spoken build/package-tools-in
begin clips env CXX=clang++ sh -c 'out=$(mktemp -d) && sh tools/voice/cached-clips.sh caller/CallTable.h "$out" build/clips && rm -rf "$out" && : >build/clips-spoken'
stage "install what the build needs (the clips spoken beside it)" scripts/install-deps.sh --for-build
# The rest is installed beside the build, where no password is asked for
# (a job in the background can't be asked one): first what makes the
# package, then the tests' tools.
if [ "$(id -u)" -eq 0 ] || setsid sudo -n true </dev/null >/dev/null 2>&1; then
  begin install sh -c 'scripts/install-deps.sh --for-package && : >build/package-tools-in && scripts/install-deps.sh'
else
  stage "install the tests' tools" scripts/install-deps.sh
  : >build/package-tools-in
fi
# The package's build (from the tarball of the last commit, in
# build/debian) begins once what makes it is in and the clips are spoken,
# at the lowest priority: beside the sanitizer build and the tests it takes
# only the CPU they leave, the build's serial steps and the tests' waits.
# It takes the clips spoken at the start, from the same sources; a
# distribution's build of the package, and CI's from the Build-Depends
# alone, speak their own (CI checks that the two .debs are the same bytes).
begin debian sh -c 'until [ -e build/package-tools-in ] && [ -e build/clips-spoken ]; do sleep 1; done
  exec env DEB_BUILD_OPTIONS=nocheck CALLOQUIN_CLIP_CACHE="$PWD/build/clips" \
    nice -n 19 packaging/build-deb.sh --build-only build/debian'
stage "debug build under the sanitizers (the package's build begins beside it)" \
  sh -c "cmake --preset asan >/dev/null && cmake --build --preset asan -j $jobs"
finish clips
# Beside what follows, at the lowest priority: the tests bound how long the
# program may take to answer, and a machine busy with builds beside them
# must not make them fail. There, the package's build goes on, and the
# fuzzer's minute (the fuzzer is built with the sanitizer build, over its
# toolkit) takes only what even the package's build leaves: at nice 19
# beside it, it took half of that, some 25 s of CPU that the package's
# build then took at the end. It begins with the tests, which leave more
# idle than the last of the install, where the package's build is busy.
# The tests often wait, on X servers, sound servers and the program's
# timers: run two at once they left half the CPU idle, so twice as many as
# there are cores run at once.
[ -z "${beside[install]:-}" ] || stage "the rest of the tests' tools' install" finish install
begin fuzz chrt --idle 0 tests/fuzz/run.sh 60
stage "every test (the package's build beside them)" ctest --preset asan -j $((2 * jobs)) -LE soak
stage "the rest of the fuzzer's minute" finish fuzz
stage "the rest of the package's build" finish debian
stage "the .deb: installed with apt, played under Xvfb, removed" \
  packaging/test-deb.sh "$(ls build/debian/calloquin_*_"$(dpkg --print-architecture)".deb)" build/asan/tests/x11/board_check
