#!/usr/bin/env bash
# Installs what is missing, builds Calloquin and runs every test: once in a
# debug build with warnings as errors, once under AddressSanitizer and
# UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

jobs=$(nproc)
echo "== debug build, all tests"
cmake --preset dev >/dev/null
cmake --build --preset dev -j "$jobs"
ctest --preset dev -j "$jobs" -LE soak
tests/fuzz/run.sh 60

echo "== the .deb: built, installed with apt, played under Xvfb, removed"
packaging/test-deb.sh build/dev/tests/x11/board_check

echo "== sanitizer build, all tests but those through an X server"
cmake --preset asan >/dev/null
cmake --build --preset asan -j "$jobs"
ctest --preset asan -j "$jobs" -LE 'x11|soak'
