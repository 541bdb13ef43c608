# Shared by the X11 scripts: a private Xvfb, the program in it, the board
# read off screenshots. Source it after setting $check (the board tool).
# start takes a command: a program's path, or a function that execs one.
for tool in Xvfb xdotool import; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done

. "$(dirname "${BASH_SOURCE[0]}")/../common.sh"
xvfb_pids=()
stop_xservers() { [ ${#xvfb_pids[@]} -gt 0 ] && kill "${xvfb_pids[@]}" 2>/dev/null; }
trap 'stop_xservers; common_cleanup' EXIT

# -noreset: by default the server resets whenever its last client leaves,
# as happens between two starts of the program (each xdotool call is a
# client of its own); a start that falls into the reset finds no display.
# -r: no autorepeat. On a loaded machine xdotool can be held up between a
# key's press and its release for longer than the repeat delay, and the
# server would then type the key again by itself.
# A server going down removes its socket file, and can take that of a new
# server that has just picked the same display. So a script that runs
# servers side by side starts them all first and stops them all at its
# end, and where tests run side by side each has displays of its own:
# CALLOQUIN_X_DISPLAYS is the first of its ten. One of them taken by
# something else on the machine, or none given: the first free display.
xserver() {
  local fd=$work/display.${#xvfb_pids[@]} display= pid
  [ -n "${CALLOQUIN_X_DISPLAYS:-}" ] && display=:$((CALLOQUIN_X_DISPLAYS + ${#xvfb_pids[@]}))
  for display in $display ""; do
    Xvfb $display -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset -r 3>"$fd" 2>>"$work/xvfb.log" &
    pid=$!
    until_ok 100 eval 'test -s "$fd" || ! kill -0 $pid 2>/dev/null'
    test -s "$fd" && break
  done
  xvfb_pids+=($pid)
  test -s "$fd" || fail "Xvfb did not start ($(tail -n 3 "$work/xvfb.log"))"
  export DISPLAY=":$(cat "$fd")"
}
xserver
unset QT_QPA_PLATFORM
export SDL_AUDIODRIVER=dummy

windows() { xdotool search --onlyvisible --name '^Calloquin$' 2>/dev/null; }
find_window() { wid=$(windows | head -n1); [ -n "$wid" ]; }
# A question or a failure report stands: a second window.
dialog_up() { [ "$(windows | wc -l)" -gt 1 ]; }
no_dialog() { ! dialog_up; }

# Gives a window the focus and waits until it has it: within 10 s, for
# xdotool would wait for ever on a window that has gone (a program that
# died).
focus() {
  timeout 10 xdotool windowfocus --sync "$1" 2>/dev/null \
    || fail "the window $1 did not take the focus within 10 s ($(state))"
}
# Starts the program; its stderr goes to $work/program.log.
start() {
  : >"$work/program.log"
  "$1" 2>"$work/program.log" &
  app_pid=$!
  until_ok 150 find_window || fail "no window appeared"
  focus "$wid"
}
reports() { grep -c '^Calloquin: unhandled ' "$work/program.log"; }

called=-1
look() {
  # PPM: ImageMagick writes it in half the time of a PNG.
  import -window "$wid" -depth 8 "$work/shot.ppm" 2>/dev/null || return 1
  local stray
  read -r _ called _ stray < <("$check" "$work/shot.ppm") || return 1
  [ "$stray" -eq 0 ] || fail "yellow on the board outside any called cell ($stray pixels)"
  [ "$called" -eq "$expected" ]
}
# Waits until the board shows $1 numbers called. On a miss the message
# says whether a dialog stands over the board (it hides some cells), and
# the count once the window is mapped afresh, which tells a screen left
# stale from presses that never counted.
expect() {
  expected=$1
  until_ok 100 look && return
  local shown=$called over=
  dialog_up && over=", with a dialog standing over it"
  timeout 10 xdotool windowunmap --sync "$wid" windowmap --sync "$wid" 2>/dev/null
  until_ok 20 look
  fail "$2: expected $expected numbers called, the board shows $shown$over ($called once the window is mapped afresh)"
}
press() { xdotool key "$@"; }
# Answers No to the question at the end of a game: Tab to No, then Space.
answer_no() { press Tab space; }
# BINGO CALLER, clicked at its place in the layout, below the menu bar.
caller_switch() {
  local HEIGHT
  eval "$(xdotool getwindowgeometry --shell "$wid" | grep '^HEIGHT=')"
  xdotool mousemove --window "$wid" 127 $((HEIGHT - 572 + 516)) click 1
  focus "$wid"  # the click is through before any key
}
# For a press that came to nothing: the windows that stand, and where the
# program waits.
state() {
  local names
  names=$(xdotool search --onlyvisible --name . getwindowname %@ 2>/dev/null | tr '\n' '|')
  echo "windows: ${names%|}; the program waits in $(waits_in)"
}
