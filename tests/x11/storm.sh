#!/bin/bash
# A storm of Return presses through a real X server, as fast as it takes
# them: every press either calls a number or, after the 90th, answers Yes,
# so 2,000 presses are 21 games of 90 numbers and their 21 Yes answers, and
# 89 numbers of the next game. None may be lost or doubled, nothing may
# fail, and the program must still answer: the 90th number asks, No ends it.
#
# usage: storm.sh <calloquin executable> <board check tool>
program=$1
check=$2
. "$(dirname "$0")/lib.sh"

start "$program"
presses=2000
xdotool key --delay 0 --repeat "$presses" Return || fail "xdotool did not deliver the presses"
expect $((presses % 91)) "after $presses presses"
no_dialog || fail "a dialog stands after the storm"
[ "$(reports)" -eq 0 ] || fail "failures were reported"

press Return
until_ok 100 dialog_up || fail "no question after the 90th number"
answer_no
ended_with 0 "No after the storm"
echo "PASS"
