#!/bin/bash
# The voice never holds up the game, in each state a desktop's sound can be
# in, with the caller on, on a private PipeWire (see pipewire-lib.sh):
#   1. PipeWire with no session manager yet (a desktop still starting): it
#      takes the voice's stream and never starts it. Then the session
#      manager and a sink come.
#   2. PipeWire and WirePlumber with no sink, without and with the
#      PulseAudio service; then a sink comes.
#   3. The one sink removed in a game, and added back.
# One state a run, so that the states run side by side. In each: 30
# presses each show and count their number, Ctrl+Q ends the program at
# once with status 0 (the game is played on while the voice is stuck, and
# ended from there), and once a sink is there the next press is heard,
# matched sample for sample against its clip.
#
# usage: states.sh <calloquin executable> <board check tool> <state>
#   state: no-session-manager, no-sink-no-pulse, no-sink or sink-removed
program=$1
check=$2
which=$3
for tool in pipewire wireplumber pipewire-pulse pw-cli pw-record pw-metadata dbus-run-session lame; do
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

# Plays on with the voice stuck, and ends the run from there.
stuck_then_quit() {
  start "$program"
  caller_switch
  presses_stuck 0 30 "$1" maybe
  quits_at_once "$1"
}
# The same state in a new run, stuck from its first clip: once the sink is
# there, the voice is heard.
stuck_then_heard() {
  start "$program"
  caller_switch
  presses_stuck 0 1 "$1" maybe
  "$2"
  sleep 4.5  # the clip of the press before, where it sounded, has ended
  press_heard 2 "$1: the first press with a sink"
  quits_at_once "$1, with a sink"
}

case $which in
  no-session-manager)
    state="no session manager"
    pw_server; pw_pulse; sink_up_later() { pw_session; sink_up; }
    stuck_then_quit "$state"
    stuck_then_heard "$state" sink_up_later ;;
  no-sink-no-pulse)
    state="no sink, no PulseAudio service"
    pw_server; pw_session
    stuck_then_quit "$state"
    stuck_then_heard "$state" sink_up ;;
  no-sink)
    state="no sink"
    pw_server; pw_session; pw_pulse
    stuck_then_quit "$state"
    stuck_then_heard "$state" sink_up ;;
  sink-removed)
    state="the sink removed in a game"
    pipewire_up
    start "$program"
    caller_switch
    press_heard 1 "$state: before"
    sink_down
    presses_stuck 1 30 "$state" maybe
    sink_up
    sleep 4.5
    press_heard 32 "$state: added back"
    quits_at_once "$state" ;;
  *) echo "usage: $0 <calloquin executable> <board check tool> <state>" >&2; exit 2 ;;
esac
echo "PASS"
