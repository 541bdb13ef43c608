#!/usr/bin/env bash
# Installs what is missing, builds Calloquin and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release
exec build/release/Calloquin/bin/calloquin "$@"
