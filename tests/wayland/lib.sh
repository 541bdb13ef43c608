# Shared by the Wayland scripts: a headless compositor of the script's own
# (weston or sway), the program on it as a desktop starts it (no display
# or platform chosen for it, only the session's Wayland socket), and
# screenshots as PPM for the checks of compare.py.
. "$(dirname "${BASH_SOURCE[0]}")/../common.sh"
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export XDG_RUNTIME_DIR=$work/run XDG_SESSION_TYPE=wayland WAYLAND_DISPLAY=calloquin-test
unset DISPLAY QT_QPA_PLATFORM QT_SCALE_FACTOR WAYLAND_SOCKET SWAYSOCK
export SDL_AUDIODRIVER=dummy
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
compositor_pid=
on_exit() { [ -n "$compositor_pid" ] && kill "$compositor_pid" 2>/dev/null; }
need() {
  for tool in "$@"; do
    command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
  done
}
compare() { /usr/bin/python3 "$here/compare.py" "$@"; }

# The program, its stderr (with the Wayland protocol it speaks, when
# WAYLAND_DEBUG is set) in $work/program.log.
start() {
  : >"$work/program.log"
  "$@" 2>"$work/program.log" &
  app_pid=$!
}
stop() {
  [ -n "$app_pid" ] || return 0
  kill "$app_pid" 2>/dev/null
  wait "$app_pid" 2>/dev/null
  app_pid=
}
