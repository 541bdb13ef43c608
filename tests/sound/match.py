#!/usr/bin/python3
# Is the clip in the recording? Both are 16-bit mono WAV files at the same
# rate. The clip is found where it correlates best with the recording; then
# each 50 ms piece of it that holds sound is looked for near its place (a
# graph that changes its pace while the clip plays, or a dropout on a busy
# machine, shifts what follows). A piece is heard when it correlates 0.8 or
# better: the clip's very samples, whatever their level, where a different
# clip or noise stays far below. A piece that a dropout cuts in two is
# heard when both its sides are. Prints the share of pieces heard; exits 1
# when it is under the threshold.
#
# usage: match.py recording.wav clip.wav [threshold]
import sys
import wave

import numpy as np


def read(path):
    with wave.open(path) as w:
        if w.getnchannels() != 1 or w.getsampwidth() != 2:
            sys.exit(f"{path}: not 16-bit mono")
        return w.getframerate(), np.frombuffer(w.readframes(w.getnframes()), dtype=np.int16).astype(np.float64)


def correlations(signal, pattern):
    """Normalised cross-correlation of pattern at every lag in signal."""
    n = 1 << (len(signal) + len(pattern)).bit_length()
    corr = np.fft.irfft(np.fft.rfft(signal, n) * np.conj(np.fft.rfft(pattern, n)), n)[: len(signal) - len(pattern) + 1]
    cumulative = np.concatenate([[0.0], np.cumsum(signal * signal)])
    energy = cumulative[len(pattern):] - cumulative[: len(signal) - len(pattern) + 1]
    return corr / (np.sqrt(np.maximum(energy, 1e-9)) * np.sqrt(max(np.sum(pattern * pattern), 1e-9)))


rate, rec = read(sys.argv[1])
rate_clip, clip = read(sys.argv[2])
threshold = float(sys.argv[3]) if len(sys.argv) > 3 else 0.9
if rate != rate_clip:
    sys.exit(f"rates differ: {rate} and {rate_clip}")
piece, slack = rate // 20, rate // 50
rec = np.concatenate([np.zeros(slack), rec, np.zeros(len(clip) + slack)])

whole = correlations(rec, clip)
start = int(np.argmax(whole))  # where the clip's first sample lies in the recording, as heard so far
loud = np.sqrt(np.mean(clip * clip)) / 10
# Where the sink got nothing from the program in a graph cycle (a busy
# machine, a server without real-time scheduling), the recording holds a
# short run of exact zeros, which a clip's sound never does: that cycle's
# share of the clip is missing there, or comes a cycle late.
silent = np.concatenate([[False], rec == 0, [False]])
edges = np.flatnonzero(np.diff(silent.astype(np.int8)))
dropouts = [b for b, e in zip(edges[::2], edges[1::2]) if 16 <= e - b <= slack]


def find(at, length):
    """Where the clip's first sample lies, if its samples from at on are
    heard near where the piece before them was; else None. Further off, a
    match must be closer: a syllable like it elsewhere in the clip would
    otherwise pull the search off its track."""
    part = clip[at : at + length]
    for reach, least in ((slack, 0.8), (6 * slack, 0.9)):
        low = max(start + at - reach, 0)
        found = correlations(rec[low : start + at + length + reach], part)
        if len(found) and np.max(found) >= least:
            return low + int(np.argmax(found)) - at
    return None


def heard_piece(at):
    global start
    found = find(at, piece)
    if found is not None:
        start = found
        return True
    cuts = sorted(d - start - at for d in dropouts if 0 < d - start - at < piece)
    if not cuts:
        return False
    bounds = [0] + cuts + [piece]
    for low, high in zip(bounds, bounds[1:]):
        if high - low < piece // 10:
            continue  # too short to tell one sound from another
        found = find(at + low, high - low)
        if found is None:
            return False
        start = found
    return True


heard = total = 0
for at in range(0, len(clip) - piece + 1, piece):
    part = clip[at : at + piece]
    if np.sqrt(np.mean(part * part)) < loud:
        continue  # a pause: nothing to hear
    total += 1
    heard += heard_piece(at)
share = heard / total if total else 0.0
best = int(np.argmax(whole))
print(f"{heard} of {total} pieces heard ({share:.2f}), the whole at {(best - slack) / rate:.3f} s "
      f"with correlation {whole[best]:.3f}")
sys.exit(0 if share >= threshold else 1)
