#!/bin/bash
# Builds the .deb in build/release (the run command's build, made for /usr)
# and in build/plain (a plain configure), has lintian check both (any error
# or warning fails), and checks the release program's hardening. Then installs it
# with apt, plays a few numbers on the installed program under Xvfb (the
# called cells must turn yellow on a screenshot), started as its desktop
# entry starts it, ends it with Ctrl+Q and removes the package, checking
# that nothing of it is left behind. Installing changes the system's
# packages, so that part runs only as root (CI) or with sudo that needs no
# password; the build and lintian run for anyone.
#
# usage: packaging/test-deb.sh <board check tool>
set -euo pipefail
cd "$(dirname "$0")/.."
check=$(realpath "$1")

# Dated by the release (NEWS), the package is the same bytes at every build
# of it, the README's way with nothing exported.
unset SOURCE_DATE_EPOCH
# Two packages, each checked by lintian (its errors and warnings fail, its
# informational and pedantic notes are shown): the README's, and one from a
# plain configure (prefix /usr/local, no build type), whose desktop entry
# must still start the program the package installs.
command -v lintian >/dev/null || { echo "FAIL: lintian is not installed (scripts/install-deps.sh installs it)"; exit 1; }
package() {  # build folder; makes the .deb there and leaves its path in $deb
  (cd "$1" && rm -f calloquin_*.deb && cpack -G DEB >/dev/null)
  deb=$(ls "$1"/calloquin_*.deb)
  echo "built $deb"
  local lint_status=0 report
  report=$(lintian --display-info --pedantic --fail-on none "$deb" 2>&1) || lint_status=$?
  [ -z "$report" ] || sed 's/^/  lintian: /' <<<"$report"
  if [ "$lint_status" -ne 0 ] || grep -q '^[EW]: ' <<<"$report"; then
    echo "FAIL: lintian finds errors or warnings in $deb (status $lint_status)"
    exit 1
  fi
  local exec_line
  exec_line=$(dpkg-deb --fsys-tarfile "$deb" | tar -xO ./usr/share/applications/org.calloquin.calloquin.desktop | grep '^Exec=')
  [ "$exec_line" = Exec=/usr/games/calloquin ] || { echo "FAIL: $deb's desktop entry starts $exec_line"; exit 1; }
  echo "lintian: no errors or warnings; $exec_line"
}
cmake -S . -B build/plain -DCMAKE_CXX_COMPILER=clang++ -DCALLOQUIN_TESTS=OFF \
  -DCALLOQUIN_CLIP_CACHE="$PWD/build/clips" >/dev/null
cmake --build build/plain -j "$(nproc)" >/dev/null
package build/plain
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)"
package build/release
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
# Qt is linked; the platform plugins, SDL2 and mpg123 are loaded at run time.
for p in libqt6widgets6 qt6-qpa-plugins qt6-wayland libsdl2-2.0-0 libmpg123-0; do
  [[ "$depends" == *"$p"* ]] || { echo "FAIL: the package does not depend on $p"; exit 1; }
done

# Hardened as Debian's own builds are: a position-independent program with
# read-only relocations bound at start and the stack protector; every
# source of it compiled optimised with _FORTIFY_SOURCE (clang fortifies
# only the calls whose buffer size it can see, so the symbols alone can't
# tell).
program=build/release/Calloquin/bin/calloquin
elf=$(readelf -hldW --dyn-syms "$program")  # whole, before grep: a grep that stops early would cut readelf off
grep -q 'Type: *DYN' <<<"$elf" || { echo "FAIL: the program is not position-independent"; exit 1; }
grep -q GNU_RELRO <<<"$elf" || { echo "FAIL: no read-only relocations"; exit 1; }
grep -q 'BIND_NOW\|FLAGS_1.*NOW' <<<"$elf" || { echo "FAIL: relocations not bound at start"; exit 1; }
grep -q __stack_chk_fail <<<"$elf" || { echo "FAIL: no stack protector"; exit 1; }
unfortified=$(grep '"command"' build/release/compile_commands.json | grep -v -- '-D_FORTIFY_SOURCE=2' | grep -c -- '-O' || true)
[ "$unfortified" -eq 0 ] || { echo "FAIL: $unfortified optimised sources compiled without _FORTIFY_SOURCE"; exit 1; }
echo "hardened: PIE, RELRO with BIND_NOW, the stack protector, _FORTIFY_SOURCE"

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

installed=
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120 -y -qq "$@"; }
on_exit() { [ -n "$installed" ] && apt remove calloquin >/dev/null; }

installed=1
apt install "./$deb" >/dev/null
set +e  # from here on the checks below say what failed
. tests/x11/lib.sh
[ -L /usr/games/calloquin ] || fail "no link /usr/games/calloquin"
[ "$(readlink -f /usr/games/calloquin)" = /usr/lib/calloquin/bin/calloquin ] || fail "the link leads elsewhere"
[ ! -e /usr/bin/calloquin ] || fail "a game in /usr/bin: /usr/bin/calloquin"
desktop=/usr/share/applications/org.calloquin.calloquin.desktop
exec_line=$(grep '^Exec=' "$desktop")
[ "$exec_line" = Exec=/usr/games/calloquin ] || fail "the desktop entry starts something else: $exec_line"
for f in /usr/lib/calloquin/Resources/vocal90.mp3 /usr/lib/calloquin/Resources/BingoOuter1.png \
         /usr/share/applications/org.calloquin.calloquin.desktop /usr/share/metainfo/org.calloquin.calloquin.metainfo.xml \
         /usr/share/icons/hicolor/scalable/apps/org.calloquin.calloquin.svg \
         /usr/share/icons/hicolor/16x16/apps/org.calloquin.calloquin.png \
         /usr/share/icons/hicolor/256x256/apps/org.calloquin.calloquin.png; do
  [ -f "$f" ] || fail "$f is not installed"
done

# Started as the desktop entry starts it, from elsewhere: the link must lead
# it to its resources (the backdrop shows, or the board's cells would be
# unreadable).
installed_program() { cd / && exec "${exec_line#Exec=}"; }
start installed_program
# The desktop finds the entry, and with it the icon, by the window's class
# on X11 (by its app id, the entry's name, on Wayland: tests/wayland).
grep -qx 'Icon=org.calloquin.calloquin' "$desktop" || fail "the desktop entry names another icon"
class=$(xprop -id "$wid" WM_CLASS | sed -n 's/.*, "\(.*\)"$/\1/p')
grep -qx "StartupWMClass=$class" "$desktop" || fail "the window's class \"$class\" is not the desktop entry's"
press Return Return Return
expect 3 "after three presses"
press ctrl+q
ended_with 0 "Ctrl+Q"

apt remove calloquin >/dev/null
installed=
[ ! -e /usr/lib/calloquin ] || fail "/usr/lib/calloquin is left: $(find /usr/lib/calloquin | head)"
[ ! -e /usr/games/calloquin ] || fail "/usr/games/calloquin is left"
echo "PASS: the .deb installs, plays and removes cleanly"
