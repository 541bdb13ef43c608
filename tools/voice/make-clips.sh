#!/bin/sh
# Makes the 90 voice clips vocal1.mp3 .. vocal90.mp3 from the call table.
#
#   make-clips.sh <CallTable.h> <output folder>
#
# Each clip says the call, pauses as a caller would, and says the number
# the hall's way: a two-digit number by its digits and then whole ("Made In
# Heaven ... six and seven, sixty-seven"), a round ten with an "oh" ("three
# and oh, thirty"), a single digit on its own ("on its own, number seven").
# Said twice over, in two forms that must agree, a number survives chatter
# that takes one word of it. The voice is festival's HTS voice
# cmu_us_slt_arctic_hts. Each clip is trimmed of leading and trailing
# silence, brought to a common integrated loudness (EBU R128) so that no
# number booms or mumbles in the hall, and encoded by lame as mono 44.1 kHz
# constant-bitrate MP3. Everything runs offline, and the same table gives
# the same bytes.
set -eu

if [ $# -ne 2 ]; then
  echo "usage: $0 <CallTable.h> <output folder>" >&2
  exit 2
fi
table=$1
out=$2

# Target loudness in LUFS. Leaves headroom below full scale for the
# loudest calls, so levelling is gain alone; the only limiter (in $polish
# below) acts on the voice's one-sample pulses, not on its speech.
target=-20
# The pause between call and number, and between the number's two forms,
# in seconds: a caller lets the call land before the number, but in a
# noisy room a longer silence is only filled by the chatter, and a
# listener (or a recogniser) loses the thread across it.
pause=0.15
gap=0.08
# The number against the call: its loudness in dB. The number is what must
# carry through the room; the call only leads up to it. The number keeps
# the voice's own pace: drawn out, its words blur under heavy chatter (a
# slowed "one" glides into something like "nine").
lift=8
# What shapes each spoken part for a noisy room, as sox effects: a fast
# compressor (2:1 from -50 to -30 dB, 3.75:1 above; 2 ms attack, 20 ms
# release, short enough to act within a syllable) lifts the quiet
# consonants that chatter covers first ("s", "f", "th") towards the vowels
# around them. The voice starts a voiced sound after a stop's silence on a
# pulse one sample wide ("b" in "Number one"), which a 2 ms attack doesn't
# catch: the compressor keeps 6 dB of headroom for it, a limiter with no
# attack time (4:1 above -6 dB, which the compressed speech itself stays
# under) takes it down, and a low-pass at 12 kHz (the encoder keeps little
# above 15 anyway) rounds off the pulse and the limiter's own edge, so that
# nothing clips here or when a short part, in which the pulse stands out
# most, is levelled up. Each part is levelled afterwards, so the headroom
# costs no loudness. The compressor also lifts the last milliseconds of a
# part, which the trim left at -50 dB, to some -25 dB; the fades (3 ms in,
# 15 ms out) end each part on silence rather than on a click.
polish="compand 0.002,0.02 -80,-80,-50,-24,-30,-14,0,-6 -6 -90 0.002 compand 0,0.003 -90,-90,-6,-6,0,-4.5 0 -90 sinc -12k fade t 0.003 -0 0.015"
# The longest a clip may be, in seconds; a longer call is spoken faster.
longest=4.4
voice=voice_cmu_us_slt_arctic_hts

# The loudness meter (loudness.cpp): the build's own (LOUDNESS, compiled
# with the build's flags), or else built here for this run with $CXX.
cxx=${CXX:-c++}
for tool in festival sox lame ${LOUDNESS:+true} ${LOUDNESS:-"$cxx"}; do
  command -v "$tool" >/dev/null || { echo "$0: $tool is missing" >&2; exit 1; }
done

work=$(mktemp -d "${TMPDIR:-/tmp}/calloquin-voice.XXXXXX")
trap 'rm -rf "$work"' EXIT
trap 'exit 1' INT TERM
if [ -n "${LOUDNESS:-}" ]; then
  cp "$LOUDNESS" "$work/loudness"
else
  "$cxx" -O2 -std=c++20 -o "$work/loudness" "$(dirname "$0")/loudness.cpp"
fi

# The table is one C++ string constant written as adjacent literals; the
# calls hold letters, digits and blanks only, so gluing the literals
# together and splitting at "," is all the parsing needed.
sed -n '/kNicknameText/,/;/p' "$table" | grep -o '"[^"]*"' | tr -d '"\n' \
  | tr ',' '\n' >"$work/calls"
echo >>"$work/calls"
count=$(grep -c . "$work/calls")
if [ "$count" -ne 90 ]; then
  echo "$0: expected 90 calls in $table, found $count" >&2
  exit 1
fi

# What is shown is not always what should be heard: the display keeps the
# house spellings, the voice gets respellings that the synthesiser reads
# right ("OneDozen" is run together, "Goobye" would come out "goo-bee",
# "Valentines" as "valen-teens", "Torquay" as "tor-kay").
speakable() {
  sed -e 's/\([a-z]\)\([A-Z]\)/\1 \2/g' \
      -e 's/\bGoobye\b/Goodbye/' \
      -e "s/\\bValentines\\b/Valentine's/" \
      -e 's/\bTorquay\b/Torkey/'
}

# The number k in words, and its lead-in the hall's way: "Six and seven"
# before "Sixty-seven", "Three and oh" before "Thirty", "On its own" before
# "Number seven".
units="One Two Three Four Five Six Seven Eight Nine"
teens="Ten Eleven Twelve Thirteen Fourteen Fifteen Sixteen Seventeen Eighteen Nineteen"
tens="Twenty Thirty Forty Fifty Sixty Seventy Eighty Ninety"
nth() { shift "$1"; echo "$1"; }
lower() { echo "$1" | tr '[:upper:]' '[:lower:]'; }
# shellcheck disable=SC2086 # the word lists are meant to split
whole() {
  t=$(($1 / 10)) u=$(($1 % 10))
  if [ "$t" -eq 0 ]; then echo "Number $(lower "$(nth "$u" $units)")"
  elif [ "$t" -eq 1 ]; then nth $((u + 1)) $teens
  elif [ "$u" -eq 0 ]; then nth $((t - 1)) $tens
  else echo "$(nth $((t - 1)) $tens)-$(lower "$(nth "$u" $units)")"
  fi
}
# shellcheck disable=SC2086 # the word lists are meant to split
lead() {
  t=$(($1 / 10)) u=$(($1 % 10))
  if [ "$t" -eq 0 ]; then echo "On its own"
  elif [ "$u" -eq 0 ]; then echo "$(nth "$t" $units) and oh"
  else echo "$(nth "$t" $units) and $(lower "$(nth "$u" $units)")"
  fi
}

# What festival says for clip k: call, lead-in and number are three
# utterances, so each ends on a full cadence and the pauses between them
# are ours to set.
speech() {
  k=$1
  call=$(sed -n "${k}p" "$work/calls" | speakable)
  echo "(utt.save.wave (utt.synth (Utterance Text \"$call.\")) \"$work/call$k.wav\" 'riff)"
  echo "(utt.save.wave (utt.synth (Utterance Text \"$(lead "$k").\")) \"$work/lead$k.wav\" 'riff)"
  echo "(utt.save.wave (utt.synth (Utterance Text \"$(whole "$k").\")) \"$work/number$k.wav\" 'riff)"
}
# One festival run speaks every clip of a lane (below): the voice starts in
# a quarter of a second, and speaks a clip in a seventh.
speak() {  # clip numbers
  {
    echo "($voice)"
    # "One" said with a short, central vowel ("wun"), as most callers say it.
    # The voice's own full vowel glides up into the n, and under chatter that
    # glide is heard as the diphthong of "nine": with this, numbers ending in
    # 1 carry twice as often through babble.
    echo "(lex.add.entry '(\"one\" nil (((w ax n) 1))))"
    for k in "$@"; do speech "$k"; done
  } >"$work/speak$1.scm"
  festival -b "$work/speak$1.scm" >"$work/festival$1.log" 2>&1 || {
    cat "$work/festival$1.log" >&2
    exit 1
  }
}

# Integrated loudness of a file in LUFS (EBU R128), the file heard 1 + $2
# times over: a part such as "Legs." is shorter than the meter's 400 ms
# blocks, so a part is measured as a loop, which leaves its loudness as it
# is; a whole clip is measured once, as it will be heard. An MP3 is
# measured as a decoder plays it.
loudness() {
  from=$1
  case $1 in *.mp3) from=$1.wav && lame --quiet --decode "$1" "$from" ;; esac
  "$work/loudness" "$from" "$2" | cut -d' ' -f1
}

# level <repeats> <lift> <from> <to> [effect ...]: brings a file to the
# target loudness plus lift dB, with any further arguments as sox effects
# for the end of the chain.
level() {
  measured=$(loudness "$3" "$1")
  [ -n "$measured" ] || { echo "$0: no loudness for $3" >&2; exit 1; }
  gain=$(awk -v t="$target" -v l="$2" -v m="$measured" 'BEGIN { printf "%.2f", t + l - m }')
  from=$3 to=$4
  shift 4
  sox -D "$from" "$to" gain "$gain" "$@"
}

# Silence at both ends of a spoken part, cut (the reverse trick trims the
# tail).
trim() {
  sox -D "$1" "$2" silence 1 0.01 -50d reverse silence 1 0.01 -50d reverse
}

# The voice doesn't speak its utterances equally loud ("Number" comes out
# some 10 dB above most calls), so each part is levelled on its own first,
# the call $lift dB under the number's two parts (the number is what must
# carry; the parts stay below full scale), and the joined clip once
# more as a whole, which is what the ear compares from one number to the
# next.
clip() {
  k=$1
  for part in call lead number; do
    trim "$work/$part$k.wav" "$work/$part$k-t.wav"
  done
  for part in call lead number; do
    # shellcheck disable=SC2086 # $polish is a list of effects
    sox -D "$work/$part$k-t.wav" "$work/$part$k-p.wav" $polish
    mv -f "$work/$part$k-p.wav" "$work/$part$k-t.wav"
  done
  # A clip longer than the limit has its call spoken faster, by as much as
  # it needs: the number keeps its pace.
  tempo=$(soxi -D "$work/call$k-t.wav" "$work/lead$k-t.wav" "$work/number$k-t.wav" \
    | awk -v p="$pause" -v g="$gap" -v l="$longest" '
        NR == 1 { c = $1 } NR > 1 { n += $1 }
        END { t = c / (l - p - g - n); if (t > 1) printf "tempo -s %.3f", t }')
  # shellcheck disable=SC2086 # $tempo is an effect and its argument, or none
  level 3 "-$lift" "$work/call$k-t.wav" "$work/call$k-l.wav" $tempo pad 0 "$pause"
  level 3 0 "$work/lead$k-t.wav" "$work/lead$k-l.wav" pad 0 "$gap"
  level 3 0 "$work/number$k-t.wav" "$work/number$k-l.wav"
  sox -D "$work/call$k-l.wav" "$work/lead$k-l.wav" "$work/number$k-l.wav" "$work/joined$k.wav"
  # At the rate every sound output takes as it is.
  level 0 0 "$work/joined$k.wav" "$work/clip$k.wav" rate -v 44100
  # The encoder's low-pass takes the top of the band, which the loudness
  # meter weighs most, and how much it takes moves with the level, a little
  # unevenly: the MP3 is measured as it will be played and encoded again
  # with its gain corrected (halving between a gain too low and one too high
  # once both are known), up to six times, and the nearest is kept.
  gain=0 best=99 low='' high=''
  for _ in 1 2 3 4 5 6; do
    sox -D "$work/clip$k.wav" "$work/final$k.wav" gain "$gain"
    # The LAME tag stays: it tells decoders the encoder's delay and padding,
    # so a clip starts on its first word.
    lame --quiet --nohist -m m -b 64 -q 2 "$work/final$k.wav" "$work/try$k.mp3"
    measured=$(loudness "$work/try$k.mp3" 0)
    [ -n "$measured" ] || { echo "$0: no loudness for vocal$k.mp3" >&2; exit 1; }
    off=$(awk -v t="$target" -v m="$measured" 'BEGIN { printf "%.2f", t - m }')
    if awk -v o="$off" -v b="$best" 'BEGIN { exit !(o * o < b * b) }'; then
      best=$off
      mv -f "$work/try$k.mp3" "$work/vocal$k.mp3"
    fi
    awk -v o="$off" 'BEGIN { exit !(o * o < 0.05 * 0.05) }' && break
    if awk -v o="$off" 'BEGIN { exit !(o > 0) }'; then low=$gain; else high=$gain; fi
    gain=$(awk -v g="$gain" -v o="$off" -v l="$low" -v h="$high" \
      'BEGIN { if (l != "" && h != "") printf "%.2f", (l + h) / 2; else printf "%.2f", g + o }')
  done
  mv -f "$work/vocal$k.mp3" "$out/vocal$k.mp3"
}

# The clips are independent: they are made in one lane per processor, lane
# l taking clips l, l + lanes, l + 2 lanes ..., each lane speaking its clips
# in one festival run and then shaping and encoding them. A lane waits for
# nobody, so no processor stands idle while another finishes a slow clip,
# or while festival speaks.
lanes=$(nproc 2>/dev/null || echo 2)
mkdir -p "$out"
pids=
lane=1
while [ "$lane" -le "$lanes" ] && [ "$lane" -le 90 ]; do
  (
    set -- $(seq "$lane" "$lanes" 90)
    speak "$@"
    for k in "$@"; do clip "$k"; done
  ) &
  pids="$pids $!"
  lane=$((lane + 1))
done
status=0
for pid in $pids; do
  wait "$pid" || status=1
done
exit "$status"
