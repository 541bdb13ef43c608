#!/bin/bash
# The window's frame on a real Wayland compositor, weston's headless one,
# which draws no title bar for a program: left to itself, Qt would draw one
# with minimise, maximise and close. At the compositor's scales 1 and 2:
# - the window asks for one size only (its least and its largest are the
#   same), never for maximised or full screen, and never for a frame from
#   the compositor; its title is "Calloquin" and its app id names the
#   desktop entry (whose icon the desktop shows);
# - on the screen it is exactly that size, with nothing drawn around it;
#   its own title bar holds the title and one control, minimise.
#
# usage: frame.sh <calloquin executable>
program=$1
. "$(dirname "$0")/lib.sh"
need weston weston-screenshooter convert

# weston 10 names its backend by file and renders with --use-pixman; later
# ones take --backend=headless --renderer=pixman.
if weston --help 2>&1 | grep -q -- '--renderer'; then
  backend=(--backend=headless --renderer=pixman)
else
  backend=(--backend=headless-backend.so --use-pixman)
fi

# A screenshot as PPM in $work/$1.ppm (weston writes a PNG in the folder
# it is run in; --debug lets its screenshooter in).
shoot() {
  rm -rf "$work/shots" && mkdir "$work/shots"
  (cd "$work/shots" && weston-screenshooter >/dev/null 2>&1) || return 1
  convert "$work/shots/"*.png -depth 8 "$work/$1.ppm"
}

for scale in 1 2; do
  weston "${backend[@]}" --debug --socket="$WAYLAND_DISPLAY" --width=1280 --height=800 --scale="$scale" \
    --idle-time=0 >"$work/weston.log" 2>&1 &
  compositor_pid=$!
  until_ok 100 test -S "$XDG_RUNTIME_DIR/$WAYLAND_DISPLAY" || fail "weston did not start: $(tail -n 5 "$work/weston.log")"
  # The desktop is drawn once two screenshots in a row agree and show more
  # than one colour: on a loaded machine the shell's background and panel
  # may come later than two black screenshots 0.2 s apart.
  drawn_desk() { [ "$(convert "$work/desk.ppm" -format %k info:)" -gt 1 ]; }
  steady() { shoot before && sleep 0.2 && shoot desk && cmp -s "$work/before.ppm" "$work/desk.ppm" && drawn_desk; }
  until_ok 50 steady || fail "no steady screenshot of weston's desktop"

  WAYLAND_DEBUG=client start "$program"
  drawn() { grep -q 'set_window_geometry' "$work/program.log"; }
  until_ok 150 drawn || fail "scale $scale: no window"
  sleep 1  # the first frame reaches the screen
  protocol=$(grep -- ' -> ' "$work/program.log")
  size() { grep -oE "xdg_toplevel[@#][0-9]+\.set_$1_size\([0-9]+, [0-9]+\)" <<<"$protocol" | tail -n1 | grep -o '[0-9]*, [0-9]*'; }
  least=$(size min) largest=$(size max)
  [ -n "$least" ] && [ "$least" = "$largest" ] || fail "scale $scale: the window may be resized (least $least, largest $largest)"
  width=${least%,*} height=${least#*, }
  [ "$width" -eq 1036 ] && [ "$height" -gt 572 ] || fail "scale $scale: the window is ${width}x$height"
  grep -q 'set_title("Calloquin")' <<<"$protocol" || fail "scale $scale: no title \"Calloquin\""
  grep -q 'set_app_id("org.calloquin.calloquin")' <<<"$protocol" || fail "scale $scale: the app id does not name the desktop entry"
  ! grep -qE 'get_toplevel_decoration|set_maximized|set_fullscreen' <<<"$protocol" \
    || fail "scale $scale: the window asks for a frame, maximised or full screen: $(grep -E 'decoration|set_max|set_full' <<<"$protocol")"

  shoot window || fail "scale $scale: no screenshot"
  compare frame "$work/desk.ppm" "$work/window.ppm" "$width" "$height" "$scale" || fail "scale $scale: the frame"
  stop
  kill "$compositor_pid"
  wait "$compositor_pid" 2>/dev/null
  compositor_pid=
done
echo "PASS"
