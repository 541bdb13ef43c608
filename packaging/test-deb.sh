#!/bin/bash
# Checks the .deb that packaging/build-deb.sh made: what it depends on and
# the program's hardening, then installs it with apt, plays a few numbers
# on the installed program under Xvfb (the called cells must turn yellow
# on a screenshot), started as its desktop entry starts it, ends it with
# Ctrl+Q and removes the package, checking that nothing of it is left
# behind. Installing changes the system's packages, so that part runs only
# as root (CI) or with sudo that needs no password.
#
# usage: packaging/test-deb.sh <.deb> <board check tool>
set -euo pipefail
cd "$(dirname "$0")/.."
deb=$(realpath "$1")
check=$(realpath "$2")

depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
# Qt is linked; the platform plugins, SDL2 and mpg123 are loaded at run time.
for p in libqt6widgets6 qt6-qpa-plugins qt6-wayland libsdl2-2.0-0 libmpg123-0; do
  [[ "$depends" == *"$p"* ]] || { echo "FAIL: the package does not depend on $p"; exit 1; }
done
exec_line=$(dpkg-deb --fsys-tarfile "$deb" | tar -xO ./usr/share/applications/org.calloquin.calloquin.desktop | grep '^Exec=')
[ "$exec_line" = Exec=/usr/games/calloquin ] || { echo "FAIL: the desktop entry starts $exec_line"; exit 1; }

# Hardened as dpkg-buildflags asks: a position-independent program with
# read-only relocations bound at start and the stack protector (blhc has
# checked every compile and link for the flags).
unpacked=$(mktemp -d)
dpkg-deb -x "$deb" "$unpacked"
elf=$(readelf -hldW --dyn-syms "$unpacked/usr/lib/calloquin/bin/calloquin")  # whole, before grep: a grep that stops early would cut readelf off
rm -rf "$unpacked"
grep -q 'Type: *DYN' <<<"$elf" || { echo "FAIL: the program is not position-independent"; exit 1; }
grep -q GNU_RELRO <<<"$elf" || { echo "FAIL: no read-only relocations"; exit 1; }
grep -q 'BIND_NOW\|FLAGS_1.*NOW' <<<"$elf" || { echo "FAIL: relocations not bound at start"; exit 1; }
grep -q __stack_chk_fail <<<"$elf" || { echo "FAIL: no stack protector"; exit 1; }
echo "hardened: PIE, RELRO with BIND_NOW, the stack protector"

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
apt install "$deb" >/dev/null
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
