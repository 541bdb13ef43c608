#!/bin/sh
# Runs the voice test program with the given arguments as an unprivileged
# user: to root, file permissions stop nothing. nobody may not be able to
# enter the folder that holds the checkout (root's home, say), so the
# program and its fixture clips are first copied to a fresh folder that
# anyone can read, and the program is told where its fixtures are.
#
# usage: as-nobody.sh <voice test program> <fixtures folder> [arguments]
set -eu
program=$1 fixtures=$2
shift 2
if [ "$(id -u)" -ne 0 ]; then
  exec "$program" "$@"
fi
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cp "$program" "$dir/voice_tests"
cp -r "$fixtures" "$dir/fixtures"
chmod -R a+rX "$dir"
CALLOQUIN_VOICE_FIXTURES=$dir/fixtures \
  setpriv --reuid=nobody --regid=nogroup --clear-groups "$dir/voice_tests" "$@"
