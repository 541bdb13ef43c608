#!/usr/bin/python3
"""How many of the 90 numbers a recogniser hears right, clean and in babble.

    intelligibility.py [--mixes N] [--seed S] [--jobs J] <CallTable.h> <clip folder>

Each clip vocal1.mp3 .. vocal90.mp3 is decoded by pocketsphinx (en-us model)
against a grammar that allows any call of the table followed by the number in
any of the forms a caller might use ("number sixty seven", "six and seven
sixty seven", "on its own number seven", "three and oh thirty"), so the same
grammar scores today's clips and the hall-style ones. A number is heard right
when the hypothesis, after its call, holds that number in each of its forms
("six and seven sixty six" is wrong) and no other number.

Babble is six other clips at once, each started at a random point and looped
to the target's length, set against the target's RMS at +5 dB and 0 dB.
Everything is seeded, so a run gives the same figures for the same clips.
Needs python3-pocketsphinx and pocketsphinx-en-us (bench/install-deps.sh),
and ffmpeg. A benchmark, not a test: nothing here runs in CI.
"""

import argparse
import multiprocessing
import os
import random
import re
import subprocess
import sys
import time
from array import array

import warnings

warnings.filterwarnings("ignore", category=DeprecationWarning)
try:
    import audioop  # Python up to 3.12 (Debian 12); fast
except ImportError:  # gone from 3.13: the same three operations, slower
    class audioop:
        @staticmethod
        def mul(data, width, factor):
            return array("h", (max(-32768, min(32767, int(x * factor))) for x in array("h", data))).tobytes()

        @staticmethod
        def add(a, b, width):
            return array("h", (max(-32768, min(32767, x + y)) for x, y in zip(array("h", a), array("h", b)))).tobytes()

        @staticmethod
        def rms(data, width):
            xs = array("h", data)
            return int((sum(x * x for x in xs) / max(len(xs), 1)) ** 0.5)

MODEL = "/usr/share/pocketsphinx/model/en-us"
RATE = 16000
BABBLE_TALKERS = 6
SNRS = (5, 0)

UNITS = "one two three four five six seven eight nine".split()
TEENS = ("ten eleven twelve thirteen fourteen fifteen sixteen seventeen "
         "eighteen nineteen").split()
TENS = "twenty thirty forty fifty sixty seventy eighty ninety".split()

# Words the dictionary lacks, given phones by hand (the voice's respellings and
# the house words); any other missing word is dropped from the grammar.
EXTRA_WORDS = {
    "torkey": "T AO R K IY",
    "tickety": "T IH K AH T IY",
    "clickety": "K L IH K AH T IY",
    "dearie": "D IH R IY",
}


def spoken(n):
    """The number n (1..90) as words."""
    if n < 10:
        return [UNITS[n - 1]]
    if n < 20:
        return [TEENS[n - 10]]
    tens, unit = divmod(n, 10)
    return [TENS[tens - 2]] + ([UNITS[unit - 1]] if unit else [])


def hall(n):
    """n the hall's way: "on its own number seven", "six and seven sixty seven",
    "three and oh thirty"; the teens too ("one and two twelve")."""
    if n < 10:
        return ["on", "its", "own", "number"] + spoken(n)
    tens, unit = divmod(n, 10)
    return [UNITS[tens - 1], "and", UNITS[unit - 1] if unit else "oh"] + spoken(n)


def read_calls(table):
    """The 90 calls, parsed as make-clips.sh does: glue the literals, split at ','."""
    text = open(table, encoding="utf-8").read()
    block = text[text.index("kNicknameText"):]
    block = block[:block.index(";")]
    calls = "".join(re.findall(r'"([^"]*)"', block)).split(",")
    if len(calls) != 90:
        sys.exit(f"expected 90 calls in {table}, found {len(calls)}")
    return calls


def call_words(call):
    """A call as the voice says it, in dictionary words."""
    # The same respellings as make-clips.sh, then digits spelt out.
    call = re.sub(r"([a-z])([A-Z])", r"\1 \2", call)
    call = re.sub(r"\bGoobye\b", "Goodbye", call)
    call = re.sub(r"\bValentines\b", "Valentine's", call)
    call = re.sub(r"\bTorquay\b", "Torkey", call)
    words = []
    for w in call.lower().split():
        words += spoken(int(w)) if w.isdigit() else [w]
    return words


def load_dict():
    words = set()
    with open(os.path.join(MODEL, "cmudict-en-us.dict"), encoding="utf-8") as f:
        for line in f:
            words.add(line.split(" ", 1)[0])
    return words


def grammar(calls, forms="all"):
    """The JSGF: a call, then the number in one of its spoken forms."""
    def alt(items):
        return " | ".join(items)
    n_words = [" ".join(spoken(n)) for n in range(1, 91)]
    call_alts = [" ".join(c) for c in calls if c]
    hall_forms = [" ".join(hall(n)) for n in range(1, 91)]
    return "\n".join([
        "#JSGF V1.0;",
        "grammar clip;",
        f"<call> = {alt(sorted(set(call_alts)))};",
        f"<n> = {alt(n_words)};",
        f"<digit> = {alt(UNITS)};",
        # One number per clip, in one of the forms a caller uses, the hall's
        # two forms agreeing with each other: a free run of numbers lets the
        # recogniser write the babble's numbers in too, where a player knows
        # that one number is called at a time and how it is said.
        f"<number> = number <n> | {alt(hall_forms)};" if forms == "all" else "<number> = number <n>;",
        "public <clip> = <call> <number>;",
        "",
    ])


def numbers_in(words):
    """The numbers a run of number phrases names, or None if it doesn't parse."""
    found = []
    i = 0
    while i < len(words):
        w = words[i]
        if w == "number":
            i += 1
            continue
        if words[i:i + 3] == ["on", "its", "own"]:
            i += 3
            continue
        if w in UNITS and i + 2 < len(words) + 0 and words[i + 1:i + 2] == ["and"]:
            second = words[i + 2] if i + 2 < len(words) else None
            if second == "oh":
                found.append(10 * (UNITS.index(w) + 1))
                i += 3
                continue
            if second in UNITS:
                found.append(10 * (UNITS.index(w) + 1) + UNITS.index(second) + 1)
                i += 3
                continue
            return None
        if w in UNITS:
            found.append(UNITS.index(w) + 1)
        elif w in TEENS:
            found.append(TEENS.index(w) + 10)
        elif w in TENS:
            value = 10 * (TENS.index(w) + 2)
            if i + 1 < len(words) and words[i + 1] in UNITS:
                value += UNITS.index(words[i + 1]) + 1
                i += 1
            found.append(value)
        else:
            return None
        i += 1
    return found


def heard(hyp, calls):
    """The set of numbers in a hypothesis after its call (None: no parse)."""
    words = hyp.split() if hyp else []
    for c in sorted(set(tuple(c) for c in calls), key=len, reverse=True):
        if c and tuple(words[:len(c)]) == c:
            nums = numbers_in(words[len(c):])
            if nums is not None:
                return set(nums)
    return None


def pcm(path):
    """A clip as 16 kHz mono 16-bit little-endian samples."""
    return subprocess.run(
        ["ffmpeg", "-nostdin", "-loglevel", "error", "-i", path,
         "-ac", "1", "-ar", str(RATE), "-f", "s16le", "-"],
        check=True, stdout=subprocess.PIPE).stdout


def looped(data, offset, length):
    """length bytes of data, starting at offset and wrapping round."""
    out = data[offset:] + data * (length // max(len(data), 1) + 2)
    return out[:length]


def babble_for(k, mix, clips, seed):
    """Six other clips at once, each from a random point, the target's length."""
    rng = random.Random(f"{seed}/{k}/{mix}")
    others = rng.sample([j for j in range(1, 91) if j != k], BABBLE_TALKERS)
    length = len(clips[k])
    total = None
    for j in others:
        other = clips[j]
        offset = 2 * rng.randrange(len(other) // 2)
        # Each talker at a sixth keeps the sum clear of clipping.
        part = audioop.mul(looped(other, offset, length), 2, 1 / BABBLE_TALKERS)
        total = part if total is None else audioop.add(total, part, 2)
    return total


def mixed(target, babble, snr):
    """Target plus babble at snr dB below it (RMS over the target), below full scale."""
    # Target at a quarter of its level leaves room for babble up to +12 dB over it.
    t = audioop.mul(target, 2, 0.25)
    b_rms = audioop.rms(babble, 2) or 1
    gain = audioop.rms(t, 2) / b_rms / (10 ** (snr / 20))
    return audioop.add(t, audioop.mul(babble, 2, gain), 2)


_decoder = None


def decoder(jsgf):
    global _decoder
    if _decoder is None:
        from pocketsphinx import Decoder
        config = Decoder.default_config()
        config.set_string("-hmm", os.path.join(MODEL, "en-us"))
        config.set_string("-dict", os.path.join(MODEL, "cmudict-en-us.dict"))
        # pocketsphinx 5 (Debian 13) defaults to a language model of its own,
        # at a path of its own; the grammar below is the only search wanted.
        # The calls used here are all still there in 5, as deprecated names.
        config.set_string("-lm", None)
        config.set_string("-logfn", os.devnull)
        _decoder = Decoder(config)
        for word, phones in EXTRA_WORDS.items():
            _decoder.add_word(word, phones, 0)
        _decoder.set_jsgf_string("clip", jsgf)
        _decoder.set_search("clip")
    return _decoder


def decode(task):
    jsgf, key, audio = task
    d = decoder(jsgf)
    d.start_utt()
    d.process_raw(audio, False, True)
    d.end_utt()
    h = d.hyp()
    return key, (h.hypstr if h else "")


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("table")
    ap.add_argument("clips")
    ap.add_argument("--mixes", type=int, default=3)
    ap.add_argument("--seed", default="calloquin")
    ap.add_argument("--jobs", type=int, default=2)
    ap.add_argument("--forms", choices=("all", "number"), default="all",
                    help="number: only \"number N\" in the grammar (today's clips' one form)")
    ap.add_argument("--verbose", action="store_true", help="print every miss")
    args = ap.parse_args()

    start = time.monotonic()
    known = load_dict() | set(EXTRA_WORDS)
    calls, dropped = [], set()
    for c in read_calls(args.table):
        words = call_words(c)
        dropped |= {w for w in words if w not in known}
        calls.append([w for w in words if w in known])
    jsgf = grammar(calls, args.forms)
    print(f"words given phones by hand: {', '.join(sorted(EXTRA_WORDS))}")
    print(f"words dropped (not in the dictionary): {', '.join(sorted(dropped)) or 'none'}")

    clips = {k: pcm(os.path.join(args.clips, f"vocal{k}.mp3")) for k in range(1, 91)}
    tasks = [(jsgf, ("clean", 0, k), clips[k]) for k in range(1, 91)]
    for mix in range(args.mixes):
        for k in range(1, 91):
            babble = babble_for(k, mix, clips, args.seed)
            for snr in SNRS:
                tasks.append((jsgf, (f"{snr:+d} dB", mix, k), mixed(clips[k], babble, snr)))

    with multiprocessing.Pool(args.jobs) as pool:
        results = dict(pool.imap_unordered(decode, tasks, chunksize=4))

    print(f"{'condition':<10} {'mixes':>5} {'right of 90 (mean)':>19} {'min':>4} {'max':>4}")
    misses = {}
    conditions = [("clean", 1)] + [(f"{s:+d} dB", args.mixes) for s in SNRS if args.mixes]
    for cond, mixes in conditions:
        counts = []
        for mix in range(mixes):
            right = 0
            for k in range(1, 91):
                hyp = results[(cond, mix, k)]
                if heard(hyp, calls) == {k}:
                    right += 1
                else:
                    misses.setdefault(cond, []).append((k, mix, hyp))
            counts.append(right)
        print(f"{cond:<10} {mixes:>5} {sum(counts) / len(counts):>19.1f} {min(counts):>4} {max(counts):>4}")
    for cond, missed in misses.items():
        by_number = {}
        for k, _, _ in missed:
            by_number[k] = by_number.get(k, 0) + 1
        print(f"missed {cond}: " + " ".join(
            f"{k}" + (f"x{n}" if n > 1 else "") for k, n in sorted(by_number.items())))
        if args.verbose:
            for k, mix, hyp in missed:
                print(f"  {cond} mix {mix} vocal{k}: {hyp!r}")
    print(f"run time {time.monotonic() - start:.0f} s, {len(tasks)} decodes, {args.jobs} workers")


if __name__ == "__main__":
    main()
