#!/bin/sh
# Started where there is no display at all (a text console, SSH without X
# forwarding): one line that says Calloquin needs a graphical desktop, and
# status 1; no core dump, no advice to reinstall.
#
# usage: no-display.sh <calloquin executable>
run=$(mktemp -d)
out=$(env -u DISPLAY -u WAYLAND_DISPLAY -u WAYLAND_SOCKET -u QT_QPA_PLATFORM -u XDG_SESSION_TYPE \
  XDG_RUNTIME_DIR="$run" "$1" 2>&1)
status=$?
rmdir "$run"
[ "$status" -eq 1 ] || { echo "FAIL: status $status, not 1"; printf '%s\n' "$out"; exit 1; }
[ "$(printf '%s\n' "$out" | wc -l)" -eq 1 ] || { echo "FAIL: more than one line:"; printf '%s\n' "$out"; exit 1; }
case $out in
  *"needs a graphical desktop"*) echo "PASS: $out" ;;
  *) echo "FAIL: $out"; exit 1 ;;
esac
