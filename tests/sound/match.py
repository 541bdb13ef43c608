#!/usr/bin/python3
# Is the clip in the recording? Both are 16-bit mono WAV files at the same
# rate. The clip is found where it correlates best with the recording; then
# each 50 ms piece of it that holds sound is looked for near its place (a
# graph that changes its pace while the clip plays, or a dropout on a busy
# machine, shifts what follows). A piece is heard when it correlates 0.8 or better: the
# clip's very samples, whatever their level, where a different clip or
# noise stays far below. Prints the share of pieces heard; exits 1 when it
# is under the threshold.
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
heard = total = 0
for at in range(0, len(clip) - piece + 1, piece):
    part = clip[at : at + piece]
    if np.sqrt(np.mean(part * part)) < loud:
        continue  # a pause: nothing to hear
    total += 1
    # Near where the piece before it was found (a dropout on a busy machine
    # shifts all that follows), else a little further off.
    for reach in (slack, 6 * slack):
        low = max(start + at - reach, 0)
        found = correlations(rec[low : start + at + piece + reach], part)
        if len(found) and np.max(found) >= 0.8:
            heard += 1
            start = low + int(np.argmax(found)) - at
            break
share = heard / total if total else 0.0
best = int(np.argmax(whole))
print(f"{heard} of {total} pieces heard ({share:.2f}), the whole at {(best - slack) / rate:.3f} s "
      f"with correlation {whole[best]:.3f}")
sys.exit(0 if share >= threshold else 1)
