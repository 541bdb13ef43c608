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
k=1
inputs=
graph=
maps=
while [ "$k" -le 90 ]; do
  f=$dir/vocal$k.mp3
  if [ ! -f "$f" ]; then
    echo "missing: $f"
    exit 1
  fi
  inputs="$inputs -i $f"
  graph="${graph}[$((k - 1)):a]ebur128=framelog=verbose[m$k];"
  maps="$maps -map [m$k]"
  k=$((k + 1))
done

# One ffmpeg for all 90: it decodes every clip, reports each one's length
# and runs one loudness meter per clip. (framelog=verbose keeps the
# per-frame lines out at the default log level; framelog=quiet makes this
# ffmpeg print a summary of zeros.)
# shellcheck disable=SC2086 # the lists are meant to split; paths have no blanks
report=$(ffmpeg -hide_banner -nostats $inputs -filter_complex "${graph%;}" $maps -f null - 2>&1) || {
  echo "$report" | tail -n 20
  exit 1
}

# Lengths, from the input headers, in input order: "Duration: 00:00:01.63".
echo "$report" | sed -n 's/^ *Duration: \([0-9:.]*\),.*/\1/p' \
  | awk -F: '{ s = $1 * 3600 + $2 * 60 + $3; n++
               if (s < 1 || s > 4.5) { printf "vocal%d.mp3 is %.2f s long, not 1 to 4.5 s\n", n, s; bad = 1 } }
             END { if (n != 90) { print "read " n " lengths, not 90"; bad = 1 } exit bad }' || status=1

# Loudness, one summary per meter: "[Parsed_ebur128_<i> @ ...] Summary:",
# then "I: -20.1 LUFS". ffmpeg builds the graph twice and the first one,
# torn down before any audio, reports too: the last summary of a meter wins.
echo "$report" | awk '
  /Parsed_ebur128_[0-9]+ .*Summary:/ { match($0, /Parsed_ebur128_[0-9]+/); i = substr($0, RSTART + 15, RLENGTH - 15) + 1; next }
  i && /^ *I: / { if (!(i in l)) n++; l[i] = $2 + 0; i = 0 }
  END {
    if (n != 90) { print "read " n " loudness values, not 90"; exit 1 }
    lo = hi = 1
    for (k = 1; k <= 90; k++) { if (l[k] < l[lo]) lo = k; if (l[k] > l[hi]) hi = k }
    printf "loudness %.1f to %.1f LUFS (vocal%d.mp3 to vocal%d.mp3), spread %.1f LU\n", l[lo], l[hi], lo, hi, l[hi] - l[lo]
    if (l[hi] - l[lo] > 0.5) { print "loudness spread exceeds 0.5 LU"; exit 1 }
    if (l[lo] < -20.5 || l[hi] > -19.5) { print "loudness strays more than 0.5 LU from -20 LUFS"; exit 1 }
  }' || status=1

exit $status
