#!/bin/bash
# The voice through a real PipeWire, as on a desktop: a private PipeWire for
# this test alone (pipewire, wireplumber and pipewire-pulse, a null sink,
# inside a D-Bus session of its own; nothing of the machine's own session
# is touched). The program picks its sound output itself: nothing here
# chooses SDL's driver.
#   1. A press with the caller on puts that number's clip, sample for
#      sample, at the sink; the program speaks to PipeWire directly, not
#      through its PulseAudio service.
#   2. A server whose cycles are longer than the voice's buffer: the
#      clip is heard whole.
#   3. PipeWire killed between presses: the game goes on (30 presses each
#      show and count their number, no report, nothing hangs), the operator is
#      told once, and once PipeWire is back the next press is heard again.
#   4. PipeWire not there at the first clip: the operator is told once, the
#      game goes on, and when PipeWire comes the voice comes with it.
# Parts 1 and 2 make one run (heard), 3 and 4 another (gone), so that the
# two run side by side.
#
# usage: pipewire.sh <calloquin executable> <board check tool> heard|gone
program=$1
check=$2
which=$3
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
case $which in
  heard)
    # 1. The voice at the sink, through PipeWire's own protocol; no stream of
    # the program's at the server before the first clip, nor from 3 s after
    # the last one ends (press_heard waits for the longest clip to end).
    pipewire_up
    start "$program"
    sleep 1  # the output has readied what it readies once the window is up
    no_stream_within 1 "before the first clip"
    caller_switch
    no_stream_within 1 "with the caller on, before the first clip"
    press Return
    expect 1 "the first press"
    until_ok 20 eval '[ "$(our_nodes)" -gt 0 ]' || fail "no stream of the program's at the server under its clip"
    pw-dump | /usr/bin/python3 -c '
import json, sys
nodes = [o["info"]["props"] for o in json.load(sys.stdin)
         if o["type"].endswith(":Node") and o["info"]["props"].get("application.name") == "Calloquin"]
sys.exit(0 if nodes and all(p.get("client.api") != "pipewire-pulse" for p in nodes) else 1)' \
      || fail "the voice does not reach PipeWire directly: $(pw-dump | grep -c '"application.name": "Calloquin"') nodes"
    sleep 4.5  # the longest clip
    no_stream_within 30 "3 s after the last clip"
    press_heard 2 "a press with the caller on"

    # 2. The server's cycles made sixteen times the voice's buffer (a quantum
    # fixed for music work, a minimum latency set against crackles): the stream
    # fills whatever each cycle asks for, and the clip is heard whole.
    pw-metadata -n settings 0 clock.force-quantum 2048 >/dev/null || fail "the quantum could not be fixed"
    sleep 1
    press_heard 3 "a press with the server's cycles longer than the buffer"

    ;;
  gone)
    # 3. The server killed in a game, and back.
    pipewire_up
    start "$program"
    caller_switch
    press_heard 1 "a press before PipeWire is killed"
    pipewire_down
    presses_stuck 1 30 "PipeWire gone" told
    pipewire_up
    press_heard 32 "the first press once PipeWire is back"
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
    sleep 1  # the program readies its driver within a second of the server's coming
    press_heard 2 "the first press once PipeWire has come"
    [ "$(reports)" -eq 0 ] || fail "a failure was reported"
    quits_at_once "PipeWire come"
    ;;
  *) echo "usage: $0 <calloquin executable> <board check tool> heard|gone" >&2; exit 2 ;;
esac
echo "PASS"
