#!/usr/bin/env bash
# Installs the Debian packages that the speed benchmarks need beyond those of
# scripts/install-deps.sh, and only those that are missing: the X extensions
# that send keys and watch the screen, PipeWire's library that listens at a
# sink, and the profilers used when a figure
# needs explaining, and the recogniser that scores the voice's clips in
# babble (bench/voice, which decodes them with ffmpeg); and g++, the
# compiler the speed figures were taken with since the first round (the
# presets use clang). CI never runs it.
set -euo pipefail
packages=(g++ libx11-dev libxtst-dev libxdamage-dev libxfixes-dev libpipewire-0.3-dev
  linux-perf valgrind heaptrack ffmpeg)
# Debian 13 has no Python binding of the recogniser: there the voice's
# intelligibility is not scored, and the speed benchmarks run all the same.
for p in python3-pocketsphinx pocketsphinx-en-us; do
  [ -n "$(apt-cache policy "$p" 2>/dev/null | sed -n 's/^  Candidate: //p' | grep -v '(none)')" ] && packages+=("$p")
done
exec "$(dirname "$0")/../scripts/install-deps.sh" "${packages[@]}"
