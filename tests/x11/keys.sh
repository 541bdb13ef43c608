#!/bin/bash
# The keys through a real X server, on the real program: Return and keypad
# Enter call the next number whichever button has the focus, Escape does
# nothing, Return answers Yes to the question after the 90th number, and
# Ctrl+Q ends the run at once with status 0. The count of numbers called is
# read off screenshots: the board's yellow cells.
#
# usage: keys.sh <calloquin executable> <board check tool>
set -u
program=$1
check=$2
for tool in Xvfb xdotool import; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done

work=$(mktemp -d)
xvfb_pid= app_pid=
cleanup() {
  [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*"; exit 1; }

# Polls a command until it succeeds, for at most $1 tenths of a second.
until_ok() {
  local tries=$1; shift
  while ! "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.1
  done
}

# A free display, picked by the server itself.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
until_ok 100 test -s "$work/display" || fail "Xvfb did not start"
export DISPLAY=":$(cat "$work/display")"
unset QT_QPA_PLATFORM
export SDL_AUDIODRIVER=dummy

"$program" 2>"$work/program.log" &
app_pid=$!
find_window() { wid=$(xdotool search --onlyvisible --name '^Calloquin$' 2>/dev/null | head -n1); [ -n "$wid" ]; }
until_ok 150 find_window || fail "no window appeared"
xdotool windowfocus --sync "$wid"

called=-1 stray=0
look() {
  import -window "$wid" "$work/shot.png" 2>/dev/null || return 1
  read -r _ called _ stray < <("$check" "$work/shot.png") || return 1
  [ "$stray" -eq 0 ] || fail "yellow on the board outside any called cell ($stray pixels)"
  [ "$called" -eq "$expected" ]
}
expect() {
  expected=$1
  until_ok 100 look || fail "$2: expected $expected numbers called, the board shows $called"
}
press() { xdotool key "$@"; }

expect 0 "at the start"
n=0
# Tab walks the focus round the three buttons, so each key meets each one.
for button in 1 2 3; do
  press Return; n=$((n + 1)); expect $n "Return, focus stop $button"
  press KP_Enter; n=$((n + 1)); expect $n "keypad Enter, focus stop $button"
  press Tab
done
press Escape Return; n=$((n + 1)); expect $n "Escape, then Return"

# On to the end of the game; the 90th number brings the question.
for ((; n < 89; n++)); do press Return; done
expect 89 "before the last number"
press Return
# The question is a second window; the main window keeps the keyboard.
dialog_up() { [ "$(xdotool search --onlyvisible --name '^Calloquin$' 2>/dev/null | wc -l)" -gt 1 ]; }
until_ok 100 dialog_up || fail "no question after the 90th number"
press Return  # the default answer: Yes, a new game
expect 0 "after Yes"

xdotool windowfocus --sync "$wid"
press Return Return Return; expect 3 "in the new game"
press ctrl+q
until_ok 50 eval '! kill -0 $app_pid 2>/dev/null' || fail "Ctrl+Q did not end the program"
wait "$app_pid"
status=$?
app_pid=
[ "$status" -eq 0 ] || fail "Ctrl+Q ended the program with status $status"
echo "PASS"
