#!/usr/bin/env bash
# Installs the Debian packages that the speed benchmarks need beyond those of
# scripts/install-deps.sh, and only those that are missing: the X extensions
# that send keys and watch the screen, and the profilers used when a figure
# needs explaining. Runs apt-get as root, or through sudo. CI never runs it.
set -euo pipefail

packages=(
  # the press and start-up probes: XTest sends keys and clicks, XDamage says
  # when the window was drawn
  libx11-dev libxtst-dev libxdamage-dev libxfixes-dev
  # profiling
  linux-perf valgrind heaptrack
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "The benchmarks need these Debian packages: ${missing[*]}" >&2
  echo "Run this script as root (or install sudo) to install them." >&2
  exit 1
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
