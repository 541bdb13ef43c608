#!/bin/bash
# The keys through a real X server, on the real program: Return and keypad
# Enter call the next number whichever button has the focus, Escape does
# nothing, Return answers Yes to the question after the 90th number, and
# Ctrl+Q ends the run at once with status 0. The count of numbers called is
# read off screenshots: the board's yellow cells.
#
# usage: keys.sh <calloquin executable> <board check tool>
program=$1
check=$2
. "$(dirname "$0")/lib.sh"

start "$program"
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
until_ok 100 dialog_up || fail "no question after the 90th number"
press Return  # the default answer: Yes, a new game
expect 0 "after Yes"

focus "$wid"
press Return Return Return; expect 3 "in the new game"
press ctrl+q
ended_with 0 "Ctrl+Q"
echo "PASS"
