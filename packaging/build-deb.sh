#!/bin/bash
# Makes the Debian package as a distribution does: from the release tarball
# (renamed calloquin_VERSION.orig.tar.xz), with packaging/debian copied to
# debian/ at its top, built by dpkg-buildpackage (source and binary), then
# checked: lintian on the .changes (any error or warning fails) and blhc on
# the build log (any flag missing fails). DEB_BUILD_OPTIONS=nocheck skips
# the tests in the package build, and the nocheck profile then spares the
# Build-Depends that only the tests need, as Debian's tools do.
#
# usage: packaging/build-deb.sh <folder>
#   Leaves in <folder>: the .dsc, .debian.tar.xz, orig tarball, .deb files,
#   .buildinfo, .changes and build.log; prints the .changes' path last.
set -euo pipefail
source_dir=$(cd "$(dirname "$0")/.." && pwd)
out=$(realpath -m "$1")
for tool in dpkg-buildpackage dh lintian blhc git xz; do
  command -v "$tool" >/dev/null || { echo "FAIL: $tool is not installed (scripts/install-deps.sh installs it)"; exit 1; }
done

version=$(dpkg-parsechangelog -l "$source_dir/packaging/debian/changelog" -S Version)
upstream=${version%-*}
rm -rf "$out"
mkdir -p "$out"
cmake -DSOURCE="$source_dir" -DPREFIX="calloquin-$upstream" -DOUT="$out/calloquin_$upstream.orig.tar.xz" \
  -P "$source_dir/cmake/Dist.cmake" >/dev/null
tar -C "$out" -xf "$out/calloquin_$upstream.orig.tar.xz"
tree=$out/calloquin-$upstream
cp -r "$tree/packaging/debian" "$tree/debian"

echo "dpkg-buildpackage: calloquin $version in $tree (log: $out/build.log)"
profiles=()
[[ " ${DEB_BUILD_OPTIONS:-} " == *" nocheck "* ]] && profiles=(--build-profiles=nocheck)
status=0
(cd "$tree" && dpkg-buildpackage -us -uc "${profiles[@]}" >"$out/build.log" 2>&1) || status=$?
if [ "$status" -ne 0 ]; then
  tail -n 60 "$out/build.log"
  echo "FAIL: dpkg-buildpackage ended with status $status"
  exit 1
fi
changes=$(ls "$out"/calloquin_"$version"_*.changes)

lint_status=0
report=$(lintian --display-info --pedantic --fail-on none "$changes" 2>&1) || lint_status=$?
[ -z "$report" ] || sed 's/^/  lintian: /' <<<"$report"
if [ "$lint_status" -ne 0 ] || grep -q '^[EW]: ' <<<"$report"; then
  echo "FAIL: lintian finds errors or warnings in $(basename "$changes") (status $lint_status)"
  exit 1
fi
echo "lintian: no errors or warnings in $(basename "$changes")"
blhc_status=0
blhc "$out/build.log" || blhc_status=$?
[ "$blhc_status" -eq 0 ] || { echo "FAIL: blhc finds build flags missing in build.log (status $blhc_status)"; exit 1; }
echo "blhc: every compile and link has the build flags"
echo "$changes"
