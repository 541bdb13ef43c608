#!/usr/bin/env bash
# Installs the Debian packages that Calloquin needs to build, run and test,
# and only those that are missing. Runs apt-get as root, or through sudo.
# Given package names, installs those instead (the benchmarks' extras).
# With --for-build, only what the configure and the build need, so that the
# build can begin while the tests' tools are installed beside it; with
# --for-clips, only what speaks the voice clips, so that they can be spoken
# while the rest of the build's needs are installed; with --for-package,
# only what makes the package out of the build's needs, so that its build
# can begin while the tests' tools are installed.
set -euo pipefail
for_build='' for_clips='' for_package=''
case ${1:-} in
  --for-build) for_build=1; shift ;;
  --for-clips) for_build=1 for_clips=1; shift ;;
  --for-package) for_build=1 for_package=1; shift ;;
esac

here=$(cd "$(dirname "$0")/.." && pwd)
# What the build and every test need is what the Debian package's
# Build-Depends name (packaging/debian/control): one list for both, its
# build profiles and versions left out.
build_depends() {
  awk '/^Build-Depends:/ { on = 1; sub(/^Build-Depends:/, ""); print; next }
       on && /^[ \t]/ { print; next } { on = 0 }' "$here/packaging/debian/control" |
    tr ',' '\n' | { if [ -n "$for_build" ]; then grep -v '<!nocheck>'; else cat; fi; } |
    sed 's/<[^>]*>//g; s/([^)]*)//g; s/[[:space:]]//g; /^$/d; s/^debhelper-compat$/debhelper/'
}
mapfile -t packages < <(build_depends)
# Development's own, never the package's: the sanitizer and libFuzzer
# runtimes, and lld, which links the sanitizer build.
sanitizer=(libclang-rt-dev lld)
if [ -n "$for_clips" ]; then
  # The voice, its shaping and encoding, and the compiler of the loudness
  # meter, as the Build-Depends name them.
  mapfile -t packages < <(printf '%s\n' "${packages[@]}" | grep -xE 'festival|festvox-.*|sox|lame|clang')
elif [ -n "$for_package" ]; then
  # debhelper, and what dpkg-buildpackage takes as given in every build
  # (build-essential, which brings dpkg-dev)
  packages=(debhelper build-essential)
elif [ -n "$for_build" ]; then
  # debhelper (with autotools, gettext and man-db) makes only the package:
  # it comes with --for-package, beside the sanitizer build.
  mapfile -t packages < <(printf '%s\n' "${packages[@]}" | grep -vx debhelper)
  # Of the tests' packages, those the configure looks for: GoogleTest, and
  # the checkers of the desktop files (without them their test is left
  # out).
  packages+=(libgtest-dev desktop-file-utils appstream "${sanitizer[@]}")
else
  # Besides, what dpkg-buildpackage takes as given in every build
  # (build-essential, which brings dpkg-dev). The package's checks, lintian
  # and blhc, are installed when asked for: install-deps.sh lintian blhc.
  packages+=("${sanitizer[@]}" build-essential)
fi

# PulseAudio's own daemon plays in one test beside PipeWire's packages. Its
# package conflicts with PipeWire's PulseAudio service, so the test
# unpacks it by itself; the libraries it needs are installed here, under
# the names the release's own package gives.
pulse_libs() {
  apt-cache depends --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces --no-enhances \
    pulseaudio 2>/dev/null | sed -n 's/^  Depends: \(lib[^<>]*\)$/\1/p'
}

if [ $# -gt 0 ]; then
  packages=("$@")
elif [ -z "$for_build" ]; then
  mapfile -t -O ${#packages[@]} packages < <(pulse_libs)
fi

missing_of() {
  local p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || echo "$p"
  done
}
mapfile -t missing < <(missing_of "${packages[@]}")
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "Calloquin needs these Debian packages: ${missing[*]}" >&2
  echo "Run this script as root (or install sudo) to install them." >&2
  exit 1
fi

echo "Installing: ${missing[*]}"
# Through env: sudo would drop an exported DEBIAN_FRONTEND, and a package
# that asks a question would then wait for an answer nobody gives.
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get)
# The package lists are fetched once, where the caller installs in steps
# and names a stamp file (CALLOQUIN_APT_STAMP) that says they have been.
stamp=${CALLOQUIN_APT_STAMP:-}
if [ -z "$stamp" ] || [ ! -e "$stamp" ]; then
  "${apt[@]}" update -qq
  [ -z "$stamp" ] || touch "$stamp"
fi
"${apt[@]}" install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
# A machine without package lists knew no libraries of PulseAudio's before
# the update.
if [ $# -eq 0 ] && [ -z "$for_build" ]; then
  mapfile -t missing < <(missing_of $(pulse_libs))
  [ ${#missing[@]} -eq 0 ] || "${apt[@]}" install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
