# Shared by the sound benchmarks: a D-Bus session of their own, the tests'
# helpers with one private Xvfb (tests/x11/lib.sh; call xserver for more),
# and the probe. Source it first, with no arguments.
here=$(cd "$(dirname "$0")" && pwd)
repo=$(cd "$here/../.." && pwd)
if [ -z "${CALLOQUIN_PRIVATE_BUS:-}" ]; then
  exec dbus-run-session -- env CALLOQUIN_PRIVATE_BUS=1 bash "$0" "$@"
fi
xprobe=${BENCH_BIN:-$repo/build/bench/bench/speed}/bench_xprobe
set +e
check=/bin/true  # no board is read
. "$repo/tests/x11/lib.sh"
# The server's own floor: how soon a clip sounds at the voice's short
# cycles is what these measure (the tests hold the cycles longer).
pw_min_quantum=32
unset SDL_AUDIODRIVER
