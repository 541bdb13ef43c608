#!/bin/bash
# Makes the Debian package as a distribution does: from the release tarball
# (renamed calloquin_VERSION.orig.tar.xz), with packaging/debian copied to
# debian/ at its top, built by dpkg-buildpackage (source and binary), then
# checked: lintian on the .changes (any error or warning fails) and blhc on
# the build log (any flag missing fails). DEB_BUILD_OPTIONS=nocheck skips
# the tests in the package build, and the nocheck profile then spares the
# Build-Depends that only the tests need, as Debian's tools do.
#
# usage: packaging/build-deb.sh [--build-only | --checks-only] <folder>
#   Leaves in <folder>: the .dsc, .debian.tar.xz, orig tarball, .deb files,
#   .buildinfo, .changes and build.log. --build-only leaves the checks out
#   (a root that holds only the Build-Depends has no lintian), and
#   --checks-only runs them on what an earlier build left there.
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/.." && pwd)
mode=all
case $1 in --build-only | --checks-only) mode=${1#--}; shift ;; esac
out=$(realpath -m "$1")
tools=(dpkg-buildpackage dh xz lintian blhc)
case $mode in build-only) tools=("${tools[@]:0:3}") ;; checks-only) tools=("${tools[@]:3}") ;; esac
for tool in "${tools[@]}"; do
  command -v "$tool" >/dev/null || {
    echo "FAIL: $tool is not installed (scripts/install-deps.sh installs what the build needs, and scripts/install-deps.sh lintian blhc the checks)"
    exit 1
  }
done

version=$(dpkg-parsechangelog -l "$source_dir/packaging/debian/changelog" -S Version)
upstream=${version%-*}
build() {
  local tree status=0 profiles=()  # and other options
  rm -rf "$out"
  mkdir -p "$out"
  cmake -DSOURCE="$source_dir" -DPREFIX="calloquin-$upstream" -DOUT="$out/calloquin_$upstream.orig.tar.xz" \
    -P "$source_dir/cmake/Dist.cmake" >/dev/null
  tar -C "$out" -xf "$out/calloquin_$upstream.orig.tar.xz"
  tree=$out/calloquin-$upstream
  cp -r "$tree/packaging/debian" "$tree/debian"

  echo "dpkg-buildpackage: calloquin $version in $tree (log: $out/build.log)"
  [[ " ${DEB_BUILD_OPTIONS:-} " == *" nocheck "* ]] && profiles=(--build-profiles=nocheck)
  # Every core, unless the caller says otherwise.
  [[ "${DEB_BUILD_OPTIONS:-}" == *parallel=* ]] || profiles+=(-Jauto)
  (cd "$tree" && dpkg-buildpackage -us -uc "${profiles[@]}" >"$out/build.log" 2>&1) || status=$?
  if [ "$status" -ne 0 ]; then
    tail -n 60 "$out/build.log"
    echo "FAIL: dpkg-buildpackage ended with status $status"
    exit 1
  fi
  # What the package's tests said, when they ran.
  grep -E '^[0-9]+% tests passed|\(Skipped\)' "$out/build.log" || true
}

checks() {
  local changes lint_status=0 blhc_status=0 report
  changes=$(ls "$out"/calloquin_"$version"_*.changes)
  report=$(lintian --display-info --pedantic --fail-on none "$changes" 2>&1) || lint_status=$?
  [ -z "$report" ] || sed 's/^/  lintian: /' <<<"$report"
  if [ "$lint_status" -ne 0 ] || grep -q '^[EW]: ' <<<"$report"; then
    echo "FAIL: lintian finds errors or warnings in $(basename "$changes") (status $lint_status)"
    exit 1
  fi
  echo "lintian: no errors or warnings in $(basename "$changes")"
  blhc "$out/build.log" || blhc_status=$?
  [ "$blhc_status" -eq 0 ] || { echo "FAIL: blhc finds build flags missing in build.log (status $blhc_status)"; exit 1; }
  echo "blhc: every compile and link has the build flags"
  echo "$changes"
}

[ "$mode" = checks-only ] || build
[ "$mode" = build-only ] || checks
