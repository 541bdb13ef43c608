#!/usr/bin/python3
# Checks on screenshots (binary PPM) of the window on a Wayland compositor.
#
#   compare.py frame DESK.ppm SHOT.ppm WIDTH HEIGHT SCALE
#     The window is what SHOT shows over the bare desktop DESK: it must be
#     WIDTH x HEIGHT logical pixels at SCALE, nothing drawn around it, and
#     its own title bar must hold the title and one control at its right
#     end, the minimise dash, and nothing at its left end.
#   compare.py layout ONE.ppm OTHER.ppm
#     OTHER, the window at another scale, brought down to ONE's size, shows
#     everything where ONE does: no control moved, no text clipped.
#   compare.py sharper TWO.ppm ONE.ppm
#     TWO, the window at scale 2, is sharper than ONE scaled up to its size:
#     its digits are drawn at the screen's pixels, not stretched.
import sys

import numpy as np

TITLE_BAR = 34  # logical pixels


def read(path):
    with open(path, "rb") as f:
        data = f.read()
    fields, at = [], 0
    while len(fields) < 4:  # magic, width, height, maximum
        while data[at : at + 1].isspace():
            at += 1
        if data[at : at + 1] == b"#":
            at = data.index(b"\n", at)
            continue
        end = at
        while not data[end : end + 1].isspace():
            end += 1
        fields.append(data[at:end])
        at = end
    if fields[0] != b"P6" or int(fields[3]) != 255:
        sys.exit(f"{path}: not an 8-bit binary PPM")
    w, h = int(fields[1]), int(fields[2])
    return np.frombuffer(data[at + 1 : at + 1 + w * h * 3], dtype=np.uint8).reshape(h, w, 3).astype(np.int32)


def fail(message):
    print("FAIL:", message)
    sys.exit(1)


def groups(columns, gap):
    """Runs of True in a 1-D mask, merged across gaps shorter than gap."""
    runs, start, last = [], None, None
    for x in np.flatnonzero(columns):
        if start is None:
            start = last = x
        elif x - last > gap:
            runs.append((start, last))
            start = last = x
        else:
            last = x
    if start is not None:
        runs.append((start, last))
    return runs


def frame(desk, shot, width, height, scale):
    panel = int(32 * scale)  # weston's panel, whose clock may tick between the shots
    changed = np.any(desk[panel:] != shot[panel:], axis=2)
    ys, xs = np.nonzero(changed)
    if len(xs) == 0:
        fail("no window on the screen")
    x0, x1, y0, y1 = xs.min(), xs.max() + 1, ys.min() + panel, ys.max() + panel + 1
    want = (round(width * scale), round(height * scale))
    if (x1 - x0, y1 - y0) != want:
        fail(f"the window covers {x1 - x0}x{y1 - y0} pixels, not {want[0]}x{want[1]}: a frame drawn around it?")
    bar = shot[y0 : y0 + int(TITLE_BAR * scale) - 1, x0:x1]
    colours, counts = np.unique(bar.reshape(-1, 3), axis=0, return_counts=True)
    ground = colours[np.argmax(counts)]
    ink = np.any(np.abs(bar - ground) > 60, axis=2)
    runs = groups(ink.any(axis=0), gap=int(6 * scale))
    end = int(80 * scale)
    left = [r for r in runs if r[1] < end]
    right = [r for r in runs if r[0] >= (x1 - x0) - end]
    middle = [r for r in runs if r not in left and r not in right]
    if left:
        fail(f"something at the title bar's left end: {left}")
    if not middle:
        fail("no title in the title bar")
    if len(right) != 1:
        fail(f"{len(right)} controls at the title bar's right end, not the minimise alone")
    a, b = right[0]
    rows = np.flatnonzero(ink[:, a : b + 1].any(axis=1))
    if not (b - a + 1 >= 8 * scale and rows.max() - rows.min() + 1 <= 4 * scale):
        fail(f"the control at the right end is not the minimise dash ({b - a + 1} wide, "
             f"{rows.max() - rows.min() + 1} high)")
    print(f"window {x1 - x0}x{y1 - y0} at scale {scale}; title bar: the title and the minimise control alone")


def downscale(image, shape):
    """Area average down to shape (a box filter; sizes need not divide)."""
    h, w = shape
    ys = np.linspace(0, image.shape[0], h + 1).astype(int)
    xs = np.linspace(0, image.shape[1], w + 1).astype(int)
    rows = np.add.reduceat(image.astype(np.float64), ys[:-1], axis=0) / np.diff(ys)[:, None, None]
    return np.add.reduceat(rows, xs[:-1], axis=1) / np.diff(xs)[None, :, None]


def layout(one, other):
    h, w = one.shape[:2]
    ratio = (other.shape[0] / h, other.shape[1] / w)
    if abs(ratio[0] - ratio[1]) > 0.02:
        fail(f"the window's shape changed: {w}x{h} and {other.shape[1]}x{other.shape[0]}")
    # Both a little blurred, so that text drawn at another resolution (its
    # strokes antialiased and hinted another way) looks alike; then blocks
    # of 16 logical pixels, each at the best of shifts up to 2 pixels (a
    # fractional scale rounds each edge its own way). A control moved or a
    # text cut off leaves a block far from its place at scale 1 (a label
    # moved 5 pixels, or a line of text missing its lowest 5 rows, differs
    # by 18 or more where these drawings differ by 11 at most).
    small = blur(downscale(other, (h, w)))
    ref = blur(one)
    b, m = 16, 2
    rows, cols = (h - 2 * m) // b, (w - 2 * m) // b
    best = np.full((rows, cols), np.inf)
    ref = ref[m : m + rows * b, m : m + cols * b]
    for dy in range(-m, m + 1):
        for dx in range(-m, m + 1):
            moved = small[m + dy : m + dy + rows * b, m + dx : m + dx + cols * b]
            diff = np.abs(moved - ref).mean(axis=2).reshape(rows, b, cols, b).mean(axis=(1, 3))
            best = np.minimum(best, diff)
    y, x = np.unravel_index(np.argmax(best), best.shape)
    worst = best[y, x]
    if worst > 15:
        fail(f"at {other.shape[1]}x{other.shape[0]} the block at ({m + x * b}, {m + y * b}) differs by "
             f"{worst:.1f} of 255 from scale 1")
    print(f"scale {ratio[1]:.2f}: the same layout (worst block {worst:.1f} of 255)")


def blur(image, r=2):
    """A box blur of radius r, edges repeated."""
    k = 2 * r + 1
    a = np.pad(image.astype(np.float64), ((r, r), (r, r), (0, 0)), mode="edge")
    a = np.cumsum(np.pad(a, ((1, 0), (0, 0), (0, 0))), axis=0)
    a = (a[k:] - a[:-k]) / k
    a = np.cumsum(np.pad(a, ((0, 0), (1, 0), (0, 0))), axis=1)
    return (a[:, k:] - a[:, :-k]) / k


def sharpness(image):
    """Mean squared step between neighbouring pixels: a crisp edge puts its
    whole step between two pixels, a blurred one spreads it (and its square
    shrinks)."""
    grey = image.mean(axis=2)
    return np.mean(np.diff(grey, axis=0) ** 2) + np.mean(np.diff(grey, axis=1) ** 2)


def stretch(image):
    """Twice the size, each new pixel between two old ones their mean: how
    a small picture is scaled up to fill a larger screen."""
    def double(a, axis):
        b = np.repeat(a, 2, axis=axis).astype(np.float64)
        between = (np.take(a, range(a.shape[axis] - 1), axis=axis) + np.take(a, range(1, a.shape[axis]), axis=axis)) / 2
        index = [slice(None)] * a.ndim
        index[axis] = slice(1, -1, 2)
        b[tuple(index)] = between
        return b
    return double(double(image, 0), 1)


def sharper(two, one):
    h, w = two.shape[:2]
    if abs(h - 2 * one.shape[0]) > 2 or abs(w - 2 * one.shape[1]) > 2:
        fail(f"{w}x{h} is not twice {one.shape[1]}x{one.shape[0]}")
    stretched = stretch(one)[:h, :w]
    two = two[: stretched.shape[0], : stretched.shape[1]]
    s2, s1 = sharpness(two), sharpness(stretched)
    if s2 < 1.3 * s1:
        fail(f"scale 2 is no sharper than scale 1 stretched ({s2:.1f} against {s1:.1f})")
    print(f"scale 2 is sharper than scale 1 stretched ({s2:.1f} against {s1:.1f})")


if __name__ == "__main__":
    what = sys.argv[1]
    if what == "frame":
        frame(read(sys.argv[2]), read(sys.argv[3]), int(sys.argv[4]), int(sys.argv[5]), float(sys.argv[6]))
    elif what == "layout":
        layout(read(sys.argv[2]), read(sys.argv[3]))
    elif what == "sharper":
        sharper(read(sys.argv[2]), read(sys.argv[3]))
    else:
        sys.exit(__doc__)
