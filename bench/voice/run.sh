#!/bin/sh
# Scores the voice's clips with the recogniser, clean and in babble.
#
#   bench/voice/run.sh [clip folder] [intelligibility.py options]
#
# The folder defaults to the dev build's clips. Installs what is missing
# first; the decoding runs at the lowest priority, on two processes.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
clips=${1:-$root/build/dev/Calloquin/Resources}
[ $# -gt 0 ] && shift
"$root/bench/install-deps.sh"
exec nice -n 19 /usr/bin/python3 "$root/bench/voice/intelligibility.py" \
  "$@" "$root/caller/CallTable.h" "$clips"
