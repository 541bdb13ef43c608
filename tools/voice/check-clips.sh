#!/bin/sh
# Checks the voice clips in a folder: all 90 there, each between 1 and 4.5
# seconds long (a press a second or so apart must not pile clips up), and
# their integrated loudness (EBU R128) within 0.5 LU of -20 LUFS and of each
# other, so that no number is louder than another in the hall.
#
#   check-clips.sh <folder>
set -eu

if [ $# -ne 1 ]; then
  echo "usage: $0 <folder>" >&2
  exit 2
fi
dir=$1
status=0

count=$(find "$dir" -maxdepth 1 -name 'vocal*.mp3' | wc -l)
if [ "$count" -ne 90 ]; then
  echo "expected 90 clips in $dir, found $count"
  status=1
fi
# Each clip decoded as a player decodes it, then measured (loudness.cpp:
# the build's LOUDNESS, or built here): one line "<LUFS> <seconds>" a clip,
# in order.
meter=$(mktemp -d "${TMPDIR:-/tmp}/calloquin-check.XXXXXX")
trap 'rm -rf "$meter"' EXIT
if [ -n "${LOUDNESS:-}" ]; then
  cp "$LOUDNESS" "$meter/loudness"
else
  "${CXX:-c++}" -O2 -std=c++20 -o "$meter/loudness" "$(dirname "$0")/loudness.cpp"
fi
k=1
while [ "$k" -le 90 ]; do
  f=$dir/vocal$k.mp3
  if [ ! -f "$f" ]; then
    echo "missing: $f"
    exit 1
  fi
  lame --quiet --decode "$f" "$meter/clip.wav" && "$meter/loudness" "$meter/clip.wav" >>"$meter/report" \
    || { echo "vocal$k.mp3 could not be decoded and measured"; exit 1; }
  k=$((k + 1))
done

awk '{ n++; l[n] = $1 + 0
       if ($2 < 1 || $2 > 4.5) { printf "vocal%d.mp3 is %.2f s long, not 1 to 4.5 s\n", n, $2; bad = 1 } }
  END {
    lo = hi = 1
    for (k = 1; k <= 90; k++) { if (l[k] < l[lo]) lo = k; if (l[k] > l[hi]) hi = k }
    printf "loudness %.1f to %.1f LUFS (vocal%d.mp3 to vocal%d.mp3), spread %.1f LU\n", l[lo], l[hi], lo, hi, l[hi] - l[lo]
    if (l[hi] - l[lo] > 0.5) { print "loudness spread exceeds 0.5 LU"; bad = 1 }
    if (l[lo] < -20.5 || l[hi] > -19.5) { print "loudness strays more than 0.5 LU from -20 LUFS"; bad = 1 }
    exit bad
  }' "$meter/report" || status=1

exit $status
