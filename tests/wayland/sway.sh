#!/bin/bash
# The program as a native client of a real Wayland compositor, sway's
# headless one, with keys typed by wtype and screenshots by grim:
# - Return and keypad Enter call numbers, Escape does nothing, Ctrl+Q ends
#   the program with status 0;
# - at the display scales 1.25, 1.5 and 2, asked for through Qt or set on
#   the compositor's output, the window shows the layout of scale 1 (no
#   control moved, no text clipped), and at 2 its digits are drawn at the
#   screen's pixels, sharper than the picture at 1 stretched.
#
# usage: sway.sh <calloquin executable> <board check tool>
program=$1
check=$2
. "$(dirname "$0")/lib.sh"
need sway swaymsg wtype grim convert

# sway refuses to run as root: then it runs as nobody, in a runtime folder
# of nobody's that the program (as root) reaches all the same.
as_user=()
if [ "$(id -u)" -eq 0 ]; then
  chown nobody: "$XDG_RUNTIME_DIR"
  as_user=(setpriv --reuid=nobody --regid="$(id -g nobody)" --clear-groups)
fi
cat >"$work/sway.config" <<'EOF'
output HEADLESS-1 mode 2560x1600 scale 1
default_border none
default_floating_border none
EOF
"${as_user[@]}" env WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman HOME="$work" \
  sway -c "$work/sway.config" >"$work/sway.log" 2>&1 &
compositor_pid=$!
# sway names its sockets itself.
sway_up() {
  SWAYSOCK=$(ls "$XDG_RUNTIME_DIR"/sway-ipc.*.sock 2>/dev/null | head -n1)
  WAYLAND_DISPLAY=$(cd "$XDG_RUNTIME_DIR" && ls wayland-* 2>/dev/null | grep -v lock | head -n1)
  [ -n "$SWAYSOCK" ] && [ -n "$WAYLAND_DISPLAY" ]
}
until_ok 100 sway_up || fail "sway did not start: $(tail -n 5 "$work/sway.log")"
export SWAYSOCK WAYLAND_DISPLAY
until_ok 50 swaymsg -t get_outputs >/dev/null 2>&1 || fail "sway does not answer"

# The window's rectangle on the output, in the compositor's units.
rect() {
  swaymsg -t get_tree | /usr/bin/python3 -c '
import json, sys
def walk(n):
    if n.get("app_id") == "org.calloquin.calloquin" and n.get("visible"):
        r = n["rect"]
        print("%d,%d %dx%d" % (r["x"], r["y"], r["width"], r["height"]))
        sys.exit(0)
    for c in n.get("nodes", []) + n.get("floating_nodes", []):
        walk(c)
walk(json.load(sys.stdin))
sys.exit(1)'
}
# Starts the program and waits until its window stands still.
show() {
  start env "$@" "$program"
  until_ok 150 rect >/dev/null || fail "$*: no window"
  sleep 1
}
# The window at the output's own scale, as PPM in $work/$1.ppm.
shoot() { grim -g "$(rect)" "$work/$1.png" && convert "$work/$1.png" -depth 8 "$work/$1.ppm"; }

# Keys. wtype's keyboard arrives with its first key, and that key is lost,
# so the keys go in one call, behind a Shift that does nothing, with time
# for the program to take each.
called() { shoot board && "$check" "$work/board.ppm" | head -n1 | cut -d' ' -f2; }
show
[ "$(called)" = 0 ] || fail "numbers called before any key"
wtype -k Shift_L -s 500 -k Return -s 300 -k KP_Enter -s 300 -k Escape -s 300
until_ok 30 eval '[ "$(called)" = 2 ]' || fail "Return, keypad Enter and Escape called $(called) numbers, not 2"
echo "Return and keypad Enter called a number each, Escape none"
# A lost Ctrl+Q is typed again: the first that arrives ends the program.
for _ in 1 2 3; do
  wtype -k Shift_L -s 500 -M ctrl -k q -m ctrl
  until_ok 30 eval '! kill -0 $app_pid 2>/dev/null' && break
done
ended_with 0 "Ctrl+Q"
echo "Ctrl+Q ended the program with status 0"

# Scales, each against scale 1 in the same state.
show
shoot one
stop
for factor in 1.25 1.5 2; do
  show QT_SCALE_FACTOR=$factor
  shoot "qt$factor"
  stop
  compare layout "$work/one.ppm" "$work/qt$factor.ppm" || fail "Qt's scale factor $factor"
done
compare sharper "$work/qt2.ppm" "$work/one.ppm" || fail "Qt's scale factor 2"
for scale in 1.25 1.5 2; do
  swaymsg output HEADLESS-1 scale "$scale" >/dev/null
  show
  shoot "output$scale"
  stop
  compare layout "$work/one.ppm" "$work/output$scale.ppm" || fail "the output's scale $scale"
done
compare sharper "$work/output2.ppm" "$work/one.ppm" || fail "the output's scale 2"
echo "PASS"
