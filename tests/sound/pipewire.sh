#!/bin/bash
# The voice through a real PipeWire, as on a desktop: a private PipeWire for
# this test alone (pipewire, wireplumber and pipewire-pulse, a null sink,
# inside a D-Bus session of its own; nothing of the machine's own session
# is touched). The program picks its sound output itself: nothing here
# chooses SDL's driver.
#   1. A press with the caller on puts that number's clip, sample for
#      sample, at the sink; the program speaks to PipeWire directly, not
#      through its PulseAudio service.
#   2. A server whose cycles are longer than the program's buffer (a
#      quantum fixed for music work, a minimum latency set against
#      crackles): the next press is heard whole all the same.
#   3. PipeWire killed between presses: the game goes on (each press shows
#      and counts its number, no report, nothing hangs), and once PipeWire
#      is back the next press is heard again.
#   4. PipeWire not there at the first clip: the operator is told once, the
#      game goes on, and when PipeWire comes the voice comes with it.
#
# usage: pipewire.sh <calloquin executable> <board check tool>
program=$1
check=$2
for tool in pipewire wireplumber pipewire-pulse pw-cli pw-record pw-dump dbus-run-session lame; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
/usr/bin/python3 -c 'import numpy' 2>/dev/null || { echo "SKIP: python3-numpy is not installed"; exit 77; }
if [ -z "${CALLOQUIN_PRIVATE_BUS:-}" ]; then
  exec dbus-run-session -- env CALLOQUIN_PRIVATE_BUS=1 bash "$0" "$@"
fi
here=$(dirname "$0")
. "$here/../x11/lib.sh"
. "$here/pipewire-lib.sh"
unset SDL_AUDIODRIVER  # the program's own choice, as on a desktop

resources=$(dirname "$(dirname "$program")")/Resources
# 1. The voice at the sink, through PipeWire's own protocol.
pipewire_up
start "$program"
caller_switch
press_heard 1 "a press with the caller on"
pw-dump | /usr/bin/python3 -c '
import json, sys
nodes = [o["info"]["props"] for o in json.load(sys.stdin)
         if o["type"].endswith(":Node") and o["info"]["props"].get("application.name") == "Calloquin"]
sys.exit(0 if nodes and all(p.get("client.api") != "pipewire-pulse" for p in nodes) else 1)' \
  || fail "the voice does not reach PipeWire directly: $(pw-dump | grep -c '"application.name": "Calloquin"') nodes"

# 2. The server's cycles made sixteen times the program's buffer.
pw-metadata -n settings 0 clock.force-quantum 2048 >/dev/null || fail "the quantum could not be fixed"
sleep 1  # the program sees the server's new pace within a fraction of a second
press_heard 2 "a press with the server's cycles longer than the buffer"

# 3. The server killed in a game, and back.
pipewire_down
for n in 3 4 5; do
  press Return
  expect "$n" "press $n with PipeWire gone"
done
dialog_up && fail "a dialog came with PipeWire gone"
[ "$(reports)" -eq 0 ] || fail "a failure was reported with PipeWire gone"
pipewire_up
press_heard 6 "the first press once PipeWire is back"
[ "$(reports)" -eq 0 ] || fail "a failure was reported"
quits_at_once "PipeWire back"

# 4. No server at the first clip; it comes later.
pipewire_down
start "$program"
caller_switch
press Return
until_ok 50 dialog_up || fail "the operator was not told that the voice can't be heard"
grep -q 'no sound output plays' "$work/program.log" || fail "no line on stderr about the missing sound output"
dismiss_notice "no server at the first clip"
expect 1 "a press without PipeWire"
pipewire_up
sleep 1  # the program looks for a device again at most once a second
press_heard 2 "the first press once PipeWire has come"
[ "$(reports)" -eq 0 ] || fail "a failure was reported"
quits_at_once "PipeWire come"
echo "PASS"
