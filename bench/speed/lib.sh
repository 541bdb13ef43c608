# Shared by the speed scripts: the voice through SDL's dummy driver, a real
# X server rather than Qt's offscreen platform, and a scratch folder whose
# background processes (listed in pids) end with the script.
export SDL_AUDIODRIVER=dummy
unset QT_QPA_PLATFORM

work=$(mktemp -d)
pids=()
cleanup() {
  for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
