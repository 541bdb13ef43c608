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

pipewire_pids=()
sink_ready() { pw-cli ls Node 2>/dev/null | grep -q "node.name = \"$sink\""; }
pipewire_up() {
  pipewire >>"$work/pipewire.log" 2>&1 &
  pipewire_pids=($!)
  until_ok 100 test -S "$XDG_RUNTIME_DIR/pipewire-0" || fail "pipewire did not start"
  wireplumber >>"$work/pipewire.log" 2>&1 &
  pipewire_pids+=($!)
  pipewire-pulse >>"$work/pipewire.log" 2>&1 &
  pipewire_pids+=($!)
  pw-cli create-node adapter "{ factory.name = support.null-audio-sink node.name = $sink
    media.class = Audio/Sink object.linger = true audio.position = [ FL FR ] }" >/dev/null \
    || fail "no null sink"
  until_ok 100 sink_ready || fail "the null sink did not appear"
  # The session manager has made it the default: streams go to it.
  until_ok 100 eval 'pw-metadata 0 default.audio.sink 2>/dev/null | grep -q "$sink"' \
    || fail "the null sink did not become the default"
}
# As when a desktop's sound server crashes or is restarted.
pipewire_down() {
  [ ${#pipewire_pids[@]} -gt 0 ] || return 0
  kill -9 "${pipewire_pids[@]}" 2>/dev/null
  wait "${pipewire_pids[@]}" 2>/dev/null
  pipewire_pids=()
  rm -f "$XDG_RUNTIME_DIR/pipewire-0" "$XDG_RUNTIME_DIR/pipewire-0.lock"
}
on_exit() { pipewire_down; }
