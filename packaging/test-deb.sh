#!/bin/bash
# Builds the .deb in build/pkg, installs it with apt, plays a few numbers on
# the installed program under Xvfb (the called cells must turn yellow on a
# screenshot), ends it with Ctrl+Q and removes the package, checking that
# nothing of it is left behind. Changes the system's packages, so it runs
# only as root (CI) or with sudo that needs no password.
#
# usage: packaging/test-deb.sh <board check tool>
set -euo pipefail
cd "$(dirname "$0")/.."
check=$(realpath "$1")

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif sudo -n true 2>/dev/null; then
  as_root=(sudo -n)
else
  echo "SKIP: installing the .deb needs root"
  exit 0
fi
if dpkg-query -W -f='${Status}' calloquin 2>/dev/null | grep -q "install ok installed"; then
  echo "SKIP: calloquin is already installed here; not touching it"
  exit 0
fi

cmake -S . -B build/pkg -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCALLOQUIN_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
cmake --build build/pkg -j "$(nproc)"
(cd build/pkg && rm -f calloquin_*.deb && cpack -G DEB >/dev/null)
deb=$(ls build/pkg/calloquin_*.deb)
echo "built $deb"
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
# Qt is linked; the platform plugins and SDL2_mixer are loaded at run time.
for p in libqt6widgets6 qt6-qpa-plugins libsdl2-mixer-2.0-0; do
  [[ "$depends" == *"$p"* ]] || { echo "FAIL: the package does not depend on $p"; exit 1; }
done

work=$(mktemp -d)
xvfb_pid= app_pid= installed=
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120 -y -qq "$@"; }
cleanup() {
  [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null
  [ -n "$installed" ] && apt remove calloquin >/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*"; exit 1; }
until_ok() {
  local tries=$1; shift
  while ! "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.1
  done
}

installed=1
apt install "./$deb" >/dev/null
[ -L /usr/bin/calloquin ] || fail "no link /usr/bin/calloquin"
[ "$(readlink -f /usr/bin/calloquin)" = /usr/lib/calloquin/bin/calloquin ] || fail "the link leads elsewhere"
for f in /usr/lib/calloquin/Resources/vocal90.mp3 /usr/lib/calloquin/Resources/BingoOuter1.png \
         /usr/share/applications/org.calloquin.calloquin.desktop /usr/share/metainfo/org.calloquin.calloquin.metainfo.xml \
         /usr/share/icons/hicolor/scalable/apps/org.calloquin.calloquin.svg \
         /usr/share/icons/hicolor/16x16/apps/org.calloquin.calloquin.png \
         /usr/share/icons/hicolor/256x256/apps/org.calloquin.calloquin.png; do
  [ -f "$f" ] || fail "$f is not installed"
done

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
until_ok 100 test -s "$work/display" || fail "Xvfb did not start"
export DISPLAY=":$(cat "$work/display")"
unset QT_QPA_PLATFORM
export SDL_AUDIODRIVER=dummy

# Started by its name on the PATH, from elsewhere: the link must lead it to
# its resources (the backdrop shows, or the board's cells would be unreadable).
(cd / && exec calloquin) 2>"$work/program.log" &
app_pid=$!
find_window() { wid=$(xdotool search --onlyvisible --name '^Calloquin$' 2>/dev/null | head -n1); [ -n "$wid" ]; }
until_ok 150 find_window || { cat "$work/program.log"; fail "no window appeared"; }
xdotool windowfocus --sync "$wid"
for _ in 1 2 3; do xdotool key Return; done
called=
look() {
  import -window "$wid" "$work/shot.png" 2>/dev/null || return 1
  read -r _ called _ stray < <("$check" "$work/shot.png") || return 1
  [ "$called" -eq 3 ] && [ "$stray" -eq 0 ]
}
until_ok 100 look || fail "after three presses the board shows ${called:-no} called numbers"
xdotool key ctrl+q
until_ok 50 eval '! kill -0 $app_pid 2>/dev/null' || fail "Ctrl+Q did not end the program"
wait "$app_pid" || fail "the program ended with status $?"
app_pid=

apt remove calloquin >/dev/null
installed=
[ ! -e /usr/lib/calloquin ] || fail "/usr/lib/calloquin is left: $(find /usr/lib/calloquin | head)"
[ ! -e /usr/bin/calloquin ] || fail "/usr/bin/calloquin is left"
echo "PASS: the .deb installs, plays and removes cleanly"
