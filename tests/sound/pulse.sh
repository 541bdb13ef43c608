#!/bin/bash
# The voice through a real PulseAudio daemon, as Debian 12's KDE, Xfce,
# MATE and LXQt desktops run it, with no PipeWire anywhere: heard at its
# sink, then the daemon killed in a game (30 presses each shown and
# counted, the operator told once) and started again (the next press is
# heard), and Ctrl+Q ends the program at once.
#
# PulseAudio's package conflicts with PipeWire's PulseAudio service, which
# the other sound tests use, so its daemon is unpacked from the package
# into a cache folder; install-deps.sh installs the libraries it needs.
# Its sink is a pipe, read into a file: what it got is cut from that file
# around a press.
#
# usage: pulse.sh <calloquin executable> <board check tool> <cache folder>
program=$1
check=$2
cache=$3
for tool in apt-get dpkg-deb dbus-run-session sox lame; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
/usr/bin/python3 -c 'import numpy' 2>/dev/null || { echo "SKIP: python3-numpy is not installed"; exit 77; }
if [ -z "${CALLOQUIN_PRIVATE_BUS:-}" ]; then
  exec dbus-run-session -- env CALLOQUIN_PRIVATE_BUS=1 bash "$0" "$@"
fi
here=$(dirname "$0")
. "$here/../x11/lib.sh"
. "$here/pipewire-lib.sh"  # for the shared steps; no PipeWire is started
unset SDL_AUDIODRIVER PULSE_SERVER
resources=$(dirname "$(dirname "$program")")/Resources

. "$here/pulse-lib.sh"
on_exit() { pulse_down; }
# What the sink got from the press on: $1 numbers called after it.
press_heard_pulse() {
  local before number from
  before=$(board)
  from=$(stat -c %s "$work/sink.raw")
  press Return
  expect "$1" "$2"
  number=$(comm -13 <(echo "$before" | sort) <(board | sort) | head -n1)
  sleep 4.5  # the longest clip
  tail -c +$((from / 2 * 2 + 1)) "$work/sink.raw" >"$work/heard.raw"
  sox -t raw -r 44100 -e signed -b 16 -c 1 "$work/heard.raw" "$work/heard.wav"
  lame --quiet --decode "$resources/vocal$number.mp3" "$work/clip.wav"
  /usr/bin/python3 "$here/match.py" "$work/heard.wav" "$work/clip.wav" 0.75 >"$work/match.txt" \
    || fail "$2: the sink did not get the clip of $number ($(cat "$work/match.txt"))"
  echo "$2: heard $number at the sink, $(cat "$work/match.txt")"
}

: >"$work/sink.raw"
pulse_up
start "$program"
caller_switch
press_heard_pulse 1 "a press through PulseAudio"
# Killed while the output is still open from a clip: SDL goes on asking
# for sound at a lost device's pace, so the next clip "begins" into nothing.
press Return
expect 2 "a press just before PulseAudio goes"
sleep 0.3
pulse_down
presses_stuck 2 30 "PulseAudio gone" told
pulse_up
sleep 1
press_heard_pulse 33 "the first press once PulseAudio is back"
quits_at_once "PulseAudio back"
echo "PASS"
