# A PulseAudio daemon of its own, unpacked from its package into $cache
# (it conflicts with PipeWire's PulseAudio service, so it isn't installed;
# install-deps.sh installs the libraries it needs), with one sink ($sink):
# a pipe, read into $work/sink.raw, or by whoever reads $fifo when
# PULSE_READER is "none". Source it after $work, $sink and XDG_RUNTIME_DIR
# are set; exits 77 where the package can't be had (a builder with no
# network).
if [ ! -x "$cache/root/usr/bin/pulseaudio" ]; then
  mkdir -p "$cache"
  (cd "$cache" && apt-get download pulseaudio >/dev/null 2>&1) || { echo "SKIP: the pulseaudio package can't be had"; exit 77; }
  dpkg-deb -x "$cache"/pulseaudio_*.deb "$cache/root" || fail "the pulseaudio package could not be unpacked"
fi
modules=$(echo "$cache"/root/usr/lib/pulse-*/modules)
core=$(dirname "$(find "$cache/root/usr/lib" -name 'libpulsecore-*.so' | head -n1)")
# Its libraries are not among the package's Build-Depends (their names
# differ between releases), so a package build's tests do without it.
missing=$(LD_LIBRARY_PATH="$core:$modules" ldd "$cache/root/usr/bin/pulseaudio" | sed -n 's/^[[:space:]]*\([^ ]*\) => not found$/\1/p' | tr '\n' ' ')
[ -z "$missing" ] || { echo "SKIP: PulseAudio's daemon lacks libraries: $missing(scripts/install-deps.sh installs them)"; exit 77; }
fifo=$work/sink.fifo
mkfifo "$fifo"
cat >"$work/default.pa" <<PA
load-module module-native-protocol-unix
load-module module-pipe-sink file=$fifo format=s16le rate=44100 channels=1 sink_name=$sink use_system_clock_for_timing=yes
set-default-sink $sink
PA
pulse_pids=()
pulse_up() {
  pulse_pids=()
  if [ "${PULSE_READER:-}" != none ]; then
    cat "$fifo" >>"$work/sink.raw" &
    pulse_pids=($!)
  fi
  LD_LIBRARY_PATH="$core:$modules" "$cache/root/usr/bin/pulseaudio" -n -F "$work/default.pa" --dl-search-path="$modules" \
    --daemonize=no --exit-idle-time=-1 --use-pid-file=no --log-target=stderr >>"$work/pulse.log" 2>&1 &
  pulse_pids+=($!)
  until_ok 100 test -S "$XDG_RUNTIME_DIR/pulse/native" || fail "PulseAudio did not start ($(tail -n 3 "$work/pulse.log"))"
}
pulse_down() {
  kill -9 "${pulse_pids[@]}" 2>/dev/null
  wait "${pulse_pids[@]}" 2>/dev/null
  rm -f "$XDG_RUNTIME_DIR/pulse/native" "$XDG_RUNTIME_DIR/pulse/pid"
}
