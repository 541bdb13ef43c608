# Fresh Debian roots for CI, and the stages run in them. Sourced by
# .ci/run, which sets $repo, $cache and $work.

# --- stages: each timed; the first failure ends the run with a summary ---
stage_lines=()
passed=0
record() { stage_lines+=("$(printf '%5ss  %s' "$2" "$1")"); }
summary() {
  echo "== ci: the stages and their times"
  printf '%s\n' "${stage_lines[@]}"
  echo "ci: $passed passed, $1 failed"
}
fail_stage() {
  echo "FAIL: $1"
  record "$1 (FAILED)" "${2:-0}"
  summary 1
  exit 1
}
stage() {
  local name=$1; shift
  echo "== ci: $name"
  local t=$(date +%s)
  if "$@"; then
    record "$name" $(($(date +%s) - t))
    passed=$((passed + 1))
  else
    fail_stage "$name" $(($(date +%s) - t))
  fi
}

# --- this machine ---------------------------------------------------------
host_tools() {
  local missing=()
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq && apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# The Debian archive that this machine's own apt sources name (deb822 or
# one-line form), so that CI asks no host of its own choosing.
debian_mirror() {
  local uris
  uris=$({
    grep -hs '^URIs:' /etc/apt/sources.list.d/*.sources | cut -d: -f2-
    grep -hsE '^deb[[:space:]]' /etc/apt/sources.list /etc/apt/sources.list.d/*.list \
      | grep -oE '[a-z]+://[^[:space:]]+'
  } | tr ' ' '\n' | grep -E '^[a-z]+://' | grep -v -- '-security' || true)
  local main
  main=$(grep -E '/debian/?$' <<<"$uris" | head -n1 || true)
  [ -n "$main" ] || main=$(head -n1 <<<"$uris")
  [ -n "$main" ] || { echo "ci: no Debian archive in this machine's apt sources" >&2; return 1; }
  echo "$main"
}

# --- roots ------------------------------------------------------------------
# A minimal root of the suite, as debootstrap makes it. The bare root (no
# package of ours in it) is kept as a tarball for the rest of the day.
make_root() {
  local suite=$1 dir=$2 tarball
  tarball=$cache/$suite-$(date -u +%Y%m%d).tar
  mkdir -p "$dir"
  if [ -s "$tarball" ]; then
    echo "ci: $suite root from $tarball"
    tar -C "$dir" --numeric-owner -xf "$tarball"
    return
  fi
  debootstrap --variant=minbase --include=git,make,sudo,ca-certificates "$suite" "$dir" "$mirror"
  mkdir -p "$cache"
  rm -f "$cache/$suite"-*.tar
  tar -C "$dir" --numeric-owner -cf "$tarball.part" . && mv "$tarball.part" "$tarball"
}

# Makes the root usable as a machine: the kernel's file systems, the
# network's names, and no services started by package installs (there is
# no init in a root to own them).
enter_root() {
  local r=$1
  cp -L /etc/resolv.conf "$r/etc/resolv.conf"
  cp -L /etc/hosts "$r/etc/hosts"  # the machine's own name resolves (sudo asks)
  printf '#!/bin/sh\nexit 101\n' >"$r/usr/sbin/policy-rc.d"
  chmod 755 "$r/usr/sbin/policy-rc.d"
  mount -t proc proc "$r/proc"
  mount -t sysfs sysfs "$r/sys"
  mount --rbind /dev "$r/dev"
  mount --make-rslave "$r/dev"  # nothing mounted in here reaches the host's /dev
}

# Ends every process still running inside the root, then undoes its mounts
# (deepest first) and removes it, never crossing into a mounted file system.
leave_root() {
  local r=$1 p
  [ -d "$r" ] || return 0
  for p in /proc/[0-9]*; do
    [ "$(readlink "$p/root" 2>/dev/null)" = "$r" ] && kill -9 "${p#/proc/}" 2>/dev/null
  done
  sleep 0.5
  awk -v r="$r/" 'index($2, r) == 1 { print $2 }' /proc/self/mounts | sort -r | while read -r m; do
    umount -R "$m" 2>/dev/null || umount -l "$m" 2>/dev/null || true
  done
  if awk -v r="$r/" 'index($2, r) == 1 { found = 1 } END { exit !found }' /proc/self/mounts; then
    echo "ci: mounts remain under $r; leaving it in place" >&2
    return 1
  fi
  rm -rf --one-file-system "$r"
  # The root's deletion written out here, not in the next stage's time.
  sync
}

add_user() {
  local r=$1 user=$2
  chroot "$r" useradd --create-home --shell /bin/bash "$user"
  echo "$user ALL=(ALL) NOPASSWD: ALL" >"$r/etc/sudoers.d/$user"
  chmod 440 "$r/etc/sudoers.d/$user"
}

# A clean clone of this checkout's HEAD, owned by the user who works in it.
clone_into() {
  local r=$1 path=$2 owner=$3
  git clone -q "$repo" "$r$path"
  chroot "$r" chown -R "$owner:" "$path"
}

# Runs a shell command line in the root as a login of the user, in the
# folder given: the environment is the login's, not this machine's.
in_root() {
  local r=$1 user=$2 dir=$3; shift 3
  chroot "$r" /usr/bin/env -i TERM=dumb su - "$user" -c "cd $dir && $*"
}

# The run command with a display from an Xvfb out here: the window must
# appear (the command may build first) and Ctrl+Q must end it with status 0.
run_command_shows_window() {
  local r=$1 user=$2 dir=$3
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" 2>"$work/xvfb.log" &
  xvfb_pid=$!
  local i
  for i in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
  [ -s "$work/display" ] || { echo "ci: Xvfb did not start"; return 1; }
  local display=":$(cat "$work/display")"
  mkdir -p "$r/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$r/tmp/.X11-unix"
  in_root "$r" "$user" "$dir" "export DISPLAY=$display; ./scripts/run.sh" >"$work/run.log" 2>&1 &
  local run_pid=$! wid= status
  # Up to 20 minutes: on a machine where nothing was built yet, it builds.
  for i in $(seq 1200); do
    wid=$(DISPLAY=$display xdotool search --onlyvisible --name '^Calloquin$' 2>/dev/null | head -n1 || true)
    [ -n "$wid" ] && break
    kill -0 "$run_pid" 2>/dev/null || break
    sleep 1
  done
  if [ -z "$wid" ]; then
    echo "ci: no window \"Calloquin\" appeared"; tail -n 40 "$work/run.log"; return 1
  fi
  echo "ci: the window \"Calloquin\" is up ($wid); Ctrl+Q"
  DISPLAY=$display xdotool windowfocus --sync "$wid" key ctrl+q
  for i in $(seq 100); do kill -0 "$run_pid" 2>/dev/null || break; sleep 0.1; done
  if kill -0 "$run_pid" 2>/dev/null; then
    echo "ci: Ctrl+Q did not end the program"; tail -n 40 "$work/run.log"; return 1
  fi
  wait "$run_pid" && status=0 || status=$?
  tail -n 5 "$work/run.log"
  umount "$r/tmp/.X11-unix"
  kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null || true; xvfb_pid=
  [ "$status" -eq 0 ] || { echo "ci: the program ended with status $status"; return 1; }
}

# The Debian package built as a distribution's builder builds it: in a
# fresh root of the suite that gets only what the Build-Depends name
# (apt-get build-dep), by a user of its own, with the package's tests
# (dh_auto_test), under another umask, time zone and locale, later than the
# test command's build. lintian and blhc come after the build. Given the
# checkout where the test command ran ($2), the .deb must be the same bytes
# as the one it built (in build/debian), and so must the release tarball.
clean_root_package() {
  local suite=$1 compare=${2:-} r=$work/$suite-builder
  make_root "$suite" "$r" >/dev/null || return 1
  enter_root "$r"
  add_user "$r" builder
  clone_into "$r" /home/builder/calloquin builder
  chroot "$r" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive sh -c '
    mkdir -p /tmp/control/debian && cp /home/builder/calloquin/packaging/debian/control /tmp/control/debian/ &&
    apt-get update -qq && apt-get build-dep -y -qq /tmp/control >/tmp/build-dep.log 2>&1' \
    || { tail -n 20 "$r/tmp/build-dep.log"; return 1; }
  in_root "$r" builder /home/builder/calloquin \
    'umask 077 && export TZ=Pacific/Kiritimati LANG=C.UTF-8 LC_ALL=C.UTF-8 && packaging/build-deb.sh --build-only ~/deb' || return 1
  chroot "$r" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends lintian blhc >/dev/null || return 1
  in_root "$r" builder /home/builder/calloquin 'packaging/build-deb.sh --checks-only ~/deb' || return 1
  [ -n "$compare" ] || return 0
  local a b
  for a in "$compare"/build/debian/calloquin_*.orig.tar.xz "$compare"/build/debian/calloquin_*_amd64.deb; do
    b=$r/home/builder/deb/$(basename "$a")
    if ! cmp "$a" "$b"; then
      case $a in *.deb) diff <(dpkg-deb -c "$a") <(dpkg-deb -c "$b") | head -n 20 ;; esac
      return 1
    fi
    echo "ci: $(basename "$a") is the same bytes from both builds ($(md5sum <"$a" | cut -c1-12))"
  done
}

xvfb_pid=
cleanup_all() {
  local status=$?
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  local r
  for r in "$work"/*/; do
    [ -d "$r" ] && leave_root "${r%/}"
  done
  rm -rf --one-file-system "$work"
  exit "$status"
}
