#!/bin/sh
# Makes the 90 voice clips once for each table and script, and copies them
# into a build's Resources folder: the debug, release and benchmark builds
# of one checkout share them instead of speaking all 90 again.
#
#   cached-clips.sh <CallTable.h> <output folder> <cache folder>
set -eu
table=$1 out=$2 cache=$3
here=$(cd "$(dirname "$0")" && pwd)
key=$(cat "$table" "$here/make-clips.sh" "$here/loudness.cpp" | cksum | tr ' ' '-')
made=$cache/$key
mkdir -p "$cache"
# Two builds that reach this at once speak the clips once: the later waits
# for the first (where flock is there; elsewhere both speak, and either set
# will do).
if command -v flock >/dev/null 2>&1; then
  exec 9>"$cache/.lock"
  flock 9
fi
if [ ! -f "$made/vocal90.mp3" ]; then
  work=$(mktemp -d "$cache/.making.XXXXXX")
  trap 'rm -rf "$work"' EXIT
  sh "$here/make-clips.sh" "$table" "$work"
  [ -f "$made/vocal90.mp3" ] || { rm -rf "$made" && mv "$work" "$made"; }
fi
mkdir -p "$out"
cp "$made"/vocal*.mp3 "$out/"
