#!/bin/bash
# The real program in a damaged copy of its bundle: some clips deleted,
# corrupted or empty, all clips gone, the Resources folder gone, the last
# number's clip gone, the backdrop gone. It starts every time. With the
# caller on, the press of a number whose clip can't be had fails before the
# count moves: the number shows, a report is made (one line on stderr, a
# dialog that Return dismisses), and the next press calls the same number
# and fails again.
# With the caller off the game runs to its end, and No ends the program
# with status 0. One report per failing press, never a crash.
#
# usage: faults.sh <calloquin executable> <board check tool>
program=$1
check=$2
. "$(dirname "$0")/lib.sh"

bundle=$(dirname "$(dirname "$program")")
# The damaged clips: every ninth, so that the first of them comes early in
# the draw (at about the ninth press; its place is found by playing), after
# numbers whose clips play.
damaged=$(seq -f 'vocal%g.mp3' 9 9 90 | tr '\n' ' ')

# Copies the bundle and damages the copy with the given command, run in
# its Resources folder; starts the program from it.
start_damaged() {
  rm -rf "$work/bundle"
  mkdir -p "$work/bundle/bin"
  cp "$program" "$work/bundle/bin/"
  cp -r "$bundle/Resources" "$work/bundle/"
  (cd "$work/bundle/Resources" && eval "$1")
  start "$work/bundle/bin/$(basename "$program")"
}

# With the caller on, presses until a press fails; leaves $gone at the
# numbers called before it.
press_until_failure() {
  gone=0
  while :; do
    local before; before=$(reports)
    press Return
    settled() { [ "$(reports)" -gt "$before" ] || { no_dialog && expected=$((gone + 1)) && look; }; }
    until_ok 100 settled ||
      fail "$case: press $((gone + 1)) neither called a number nor failed (the board shows $called; $(state))"
    [ "$(reports)" -gt "$before" ] && return
    gone=$((gone + 1))
    [ "$gone" -lt 90 ] || fail "$case: no press failed in a whole game"
  done
}

# A failing press: exactly one more report, of a NilObjectException that
# names the clip and why, in a dialog that Return takes away; the number
# shows on the board.
failed_once() {
  until_ok 100 dialog_up || fail "$case: no dialog for the failure"
  [ "$(reports)" -eq "$1" ] || fail "$case: $(reports) reports, expected $1"
  tail -n1 "$work/program.log" | grep -q '^Calloquin: unhandled NilObjectException: ' \
    || fail "$case: the report is not a NilObjectException"
  tail -n1 "$work/program.log" | grep -q '\[The sound file vocal[0-9]*\.mp3 could not be opened: ' \
    || fail "$case: the report does not name the clip and why: $(tail -n1 "$work/program.log")"
  press Return
  until_ok 100 no_dialog || fail "$case: Return did not dismiss the report"
  expect $((gone + 1)) "$case: after the failure"
}

# Caller off: the failed number is called again and counted, the game runs
# to its end, and No ends the program with status 0. When the failed number
# is the last of the draw (one case in 90), calling it again is the 90th
# number itself, which brings the question at once.
finish_with_caller_off() {
  caller_switch
  local left=$((89 - gone))  # presses up to the 89th number, the failed one's included
  if [ "$left" -gt 0 ]; then
    # An operator's quick pace; the storm test covers the server's top speed.
    xdotool key --delay 20 --repeat "$left" Return
    expect 89 "$case: caller off, before the last number"
  fi
  press Return
  until_ok 100 dialog_up || fail "$case: no question after the 90th number"
  answer_no
  ended_with 0 "$case: No at the end"
  [ "$(reports)" -eq "$1" ] || fail "$case: reports with the caller off"
}

clip_case() {
  case=$1
  start_damaged "$2"
  caller_switch
  press_until_failure
  failed_once 1
  press Return  # the same number, and its clip is not looked for again
  failed_once 2
  finish_with_caller_off 2
  echo "ok: $case (failed at press $((gone + 1)))"
}

# The failure at the 90th press: the game is played with the caller off up
# to the 89th number, then the caller goes on and the last number's clip
# is gone.
last_clip_case() {
  case="last number's clip gone"
  start_damaged "rm vocal*.mp3"
  xdotool key --delay 0 --repeat 89 Return
  expect 89 "$case: caller off"
  caller_switch
  gone=89
  press Return
  failed_once 1
  press Return
  failed_once 2
  finish_with_caller_off 2
  echo "ok: $case"
}

backdrop_case() {
  case="backdrop gone"
  start_damaged "rm BingoOuter1*"
  caller_switch
  xdotool key --delay 0 --repeat 89 Return
  expect 89 "$case: caller on"
  press Return
  until_ok 100 dialog_up || fail "$case: no question after the 90th number"
  answer_no
  ended_with 0 "$case: No at the end"
  [ "$(reports)" -eq 0 ] || fail "$case: failures were reported"
  echo "ok: $case"
}

# Three lanes side by side, each on a server and in a folder of its own:
# most of a case is spent waiting on the screen after a press. Each lane
# has one of the cases whose failure comes somewhere in the draw.
lane1() {
  clip_case "clips deleted" "rm $damaged"
  clip_case "all clips gone" "rm vocal*.mp3"
}
lane2() {
  clip_case "clips corrupted" "for f in $damaged; do yes 'not a sound' | head -c 20000 >\$f; done"
  clip_case "Resources gone" "cd .. && rm -r Resources"
  last_clip_case
}
lane3() {
  clip_case "clips empty" "for f in $damaged; do : >\$f; done"
  backdrop_case
}
lanes=()
for lane in 1 2 3; do
  [ "$lane" -gt 1 ] && xserver
  mkdir "$work/lane$lane"
  (
    work=$work/lane$lane
    trap '[ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null' EXIT
    "lane$lane"
  ) >"$work/lane$lane.out" 2>&1 &
  lanes+=($!)
done
status=0
for lane in 1 2 3; do
  wait "${lanes[lane - 1]}" || status=1
  cat "$work/lane$lane.out"
done
[ "$status" -eq 0 ] || exit 1
echo "PASS"
