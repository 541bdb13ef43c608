# Shared by the test scripts that drive the real program: a work folder of
# their own, a failure that shows what the program said, and polling.
set -u
work=$(mktemp -d)
chmod 755 "$work"  # a compositor run as another user reads its files
app_pid=
# A script ends its own helpers in on_exit; the work folder goes last.
common_cleanup() {
  [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null
  if declare -F on_exit >/dev/null; then on_exit; fi
  wait 2>/dev/null
  rm -rf "$work"
}
trap common_cleanup EXIT
fail() { echo "FAIL: $*"; [ -s "$work/program.log" ] && sed 's/^/  program: /' "$work/program.log" | tail -n 40; exit 1; }

# Polls a command until it succeeds, for at most $1 tenths of a second.
until_ok() {
  local tries=$1; shift
  while ! "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.1
  done
}

# Where each thread of a program that doesn't answer is: its name, its
# state (R runs, S sleeps, D waits in the kernel, Z has ended) and what it
# waits in. A main thread in poll is idle, waiting for events that never
# came; on a futex it is held up inside the program.
waits_in() {
  local task out=
  for task in "/proc/$app_pid"/task/*; do
    out+="$(cat "$task/comm" 2>/dev/null) $(cut -d' ' -f3 "$task/stat" 2>/dev/null) $(cat "$task/wchan" 2>/dev/null); "
  done
  [ -n "$out" ] && echo "${out%; }" || echo '(gone)'
}

# Waits for the program to end and checks its status.
ended_with() {
  until_ok 100 eval '! kill -0 $app_pid 2>/dev/null' || fail "$2: the program did not end (it waits in $(waits_in))"
  wait "$app_pid"
  local status=$?
  app_pid=
  [ "$status" -eq "$1" ] || fail "$2: the program ended with status $status"
}
