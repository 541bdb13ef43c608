# A private PipeWire, as a desktop runs it: the server, its session manager
# and its PulseAudio service, with one null sink ($sink) that is heard at
# its monitor. Everything lives under $work: the sockets, the settings and
# the session manager's state, so nothing of the machine's own sound is
# touched. Source it inside a D-Bus session of its own (dbus-run-session),
# after $work exists; pipewire_down on exit is the caller's.
sink=calloquin-test-sink
export XDG_RUNTIME_DIR=$work/run XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
unset PULSE_SERVER PIPEWIRE_REMOTE PIPEWIRE_RUNTIME_DIR
# No device of the machine's: neither the sound cards nor cameras nor
# Bluetooth (WirePlumber 0.4 reads Lua, 0.5 SPA-JSON).
mkdir -p "$XDG_CONFIG_HOME/wireplumber/main.lua.d" "$XDG_CONFIG_HOME/wireplumber/wireplumber.conf.d"
cat >"$XDG_CONFIG_HOME/wireplumber/main.lua.d/51-calloquin-test.lua" <<'LUA'
alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
LUA
cat >"$XDG_CONFIG_HOME/wireplumber/wireplumber.conf.d/51-calloquin-test.conf" <<'CONF'
wireplumber.profiles = {
  main = {
    monitor.alsa = disabled
    monitor.alsa-midi = disabled
    monitor.bluez = disabled
    monitor.v4l2 = disabled
    monitor.libcamera = disabled
  }
}
CONF

# The graph's cycles no shorter than its default of 1024 frames: the server
# and the program get no real-time priority here, and on a machine busy
# with a build beside the tests, cycles of a few milliseconds are missed and
# the clip reaches the sink in pieces. How soon a clip sounds is the
# benchmark's to measure, at the voice's own short cycles (it sets
# pw_min_quantum to the server's floor).
mkdir -p "$XDG_CONFIG_HOME/pipewire/pipewire.conf.d"
echo "context.properties = { default.clock.min-quantum = ${pw_min_quantum:-1024} }" \
  >"$XDG_CONFIG_HOME/pipewire/pipewire.conf.d/51-calloquin-test.conf"

pipewire_pids=()
wireplumber_pid=
sink_ready() { pw-cli ls Node 2>/dev/null | grep -q "node.name = \"$sink\""; }
# The pieces of a desktop's sound, each on its own: the server, its
# session manager, its PulseAudio service, and the one sink.
pw_server() {
  pipewire >>"$work/pipewire.log" 2>&1 &
  pipewire_pids=($!)
  until_ok 100 test -S "$XDG_RUNTIME_DIR/pipewire-0" || fail "pipewire did not start"
}
pw_session() { wireplumber >>"$work/pipewire.log" 2>&1 & wireplumber_pid=$!; pipewire_pids+=($!); }
pw_pulse() { pipewire-pulse >>"$work/pipewire.log" 2>&1 & pipewire_pids+=($!); }
# The sink belongs to a client of its own, as a sound card's belongs to
# the session manager's monitor: when the client goes, so does the sink,
# as when speakers are unplugged.
sink_client=
sink_up() {
  local commands=$work/sink-client.$RANDOM
  mkfifo "$commands"
  pw-cli <"$commands" >>"$work/pipewire.log" 2>&1 &
  sink_client=$!
  pipewire_pids+=($!)
  exec 7>"$commands"
  # One line: pw-cli reads a command a line.
  echo "create-node adapter { factory.name = support.null-audio-sink node.name = $sink" \
    "media.class = Audio/Sink audio.position = [ FL FR ] }" >&7
  until_ok 100 sink_ready || fail "the null sink did not appear"
  # The session manager has made it the default: streams go to it.
  until_ok 300 eval 'session_kept; pw-metadata 0 default.audio.sink 2>/dev/null | grep -q "$sink"' \
    || fail "the null sink did not become the default ($(pw-metadata 0 default.audio.sink 2>&1 | tail -n1);" \
      "WirePlumber $(kill -0 "$wireplumber_pid" 2>/dev/null && echo runs || echo "has gone"); $(tail -n 5 "$work/pipewire.log"))"
}
sink_down() {
  kill "$sink_client"
  wait "$sink_client" 2>/dev/null
  exec 7>&-
  until_ok 100 eval '! sink_ready' || fail "the sink did not go"
}
# WirePlumber 0.4 (Debian 12) now and then crashes some time after a sink
# with streams linked to it went; a desktop's service manager starts it
# again, and so does this.
session_kept() {
  [ -n "${wireplumber_pid:-}" ] || return 0
  kill -0 "$wireplumber_pid" 2>/dev/null && return 0
  echo "(WirePlumber had crashed; started again, as a desktop's service manager would)"
  pw_session
}
pipewire_up() { pw_server; pw_session; pw_pulse; sink_up; }
# As when a desktop's sound server crashes or is restarted.
pipewire_down() {
  [ ${#pipewire_pids[@]} -gt 0 ] || return 0
  kill -9 "${pipewire_pids[@]}" 2>/dev/null
  wait "${pipewire_pids[@]}" 2>/dev/null
  pipewire_pids=()
  wireplumber_pid=
  rm -f "$XDG_RUNTIME_DIR/pipewire-0" "$XDG_RUNTIME_DIR/pipewire-0.lock"
}
on_exit() { pipewire_down; }

# The numbers on the board, one per line.
board() { import -window "$wid" -depth 8 "$work/board.ppm" 2>/dev/null && "$check" "$work/board.ppm" | tail -n +2; }

# Presses Return with the sink recorded, and checks that the clip of the
# number the press called is what the sink got. $1 is the count of numbers
# called after the press. Needs $resources and $here.
press_heard() {
  local before
  before=$(board)
  pw-record --target "$sink" --rate 44100 --channels 1 --format s16 "$work/heard.wav" 2>>"$work/pipewire.log" &
  local recorder=$!
  sleep 0.5  # the recorder is linked to the sink's monitor
  press Return
  expect "$1" "$2"
  local number
  number=$(comm -13 <(echo "$before" | sort) <(board | sort) | head -n1)
  sleep 4.5  # the longest clip
  kill -INT "$recorder"
  wait "$recorder"
  lame --quiet --decode "$resources/vocal$number.mp3" "$work/clip.wav"
  /usr/bin/python3 "$here/match.py" "$work/heard.wav" "$work/clip.wav" 0.75 >"$work/match.txt" \
    || fail "$2: the sink did not get the clip of $number ($(cat "$work/match.txt"))"
  echo "$2: heard $number at the sink, $(cat "$work/match.txt")"
}

# Ctrl+Q ends the program with status 0 within a second, by its own
# shutdown: the bound that ends a shutdown which never returns did not fire.
quits_at_once() {
  press ctrl+q
  until_ok 10 eval '! kill -0 $app_pid 2>/dev/null' || fail "$1: Ctrl+Q did not end the program within 1 s ($(state))"
  ended_with 0 "$1: Ctrl+Q"
  ! grep -q 'the shutdown did not finish' "$work/program.log" || fail "$1: the shutdown's bound ended the program"
}

# The notice's OK takes it away from over the board.
dismiss_notice() {
  focus "$(windows | grep -vx "$wid" | head -n1)"
  press Return
  until_ok 50 no_dialog || fail "$1: the notice did not close"
  focus "$wid"
}

# $2 presses from $1 numbers called on, with the voice lost: each shows and
# counts its number, the operator is told at most once, and nothing is
# reported as a failure. $4 is "told" where the program can see that no
# output plays (it must say so, 2 s after the first press), or "maybe"
# where the server takes the stream to no sink: the voice then plays as far
# as the program can tell, and nobody need be told.
presses_stuck() {  # called before, presses, what, told|maybe
  local n
  press Return
  expect $(($1 + 1)) "$3: press 1"
  if [ "$4" = told ]; then
    until_ok 50 dialog_up || fail "$3: the operator was not told that the voice can't be heard"
    dismiss_notice "$3"
  elif until_ok 30 dialog_up; then
    dismiss_notice "$3"
    echo "$3: told that the voice can't be heard"
  fi
  for n in $(seq $(($1 + 2)) $(($1 + $2))); do
    press Return
    expect "$n" "$3: press $((n - $1))"
  done
  no_dialog || fail "$3: told more than once"
  [ "$(reports)" -eq 0 ] || fail "$3: a failure was reported"
}

# The program's streams that the server runs: none while nothing sounds (a
# stream made ahead and left inactive costs the server nothing).
our_nodes() {
  pw-dump 2>/dev/null | /usr/bin/python3 -c '
import json, sys
print(sum(1 for o in json.load(sys.stdin) if o["type"].endswith(":Node")
          and o.get("info", {}).get("props", {}).get("application.name") == "Calloquin"
          and o["info"].get("state") == "running"))'
}
no_stream_within() {  # tenths of a second, what for
  until_ok "$1" eval '[ "$(our_nodes)" -eq 0 ]' || fail "$2: the server runs a stream of the program's"
}
