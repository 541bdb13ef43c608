#!/usr/bin/env python3
"""Turns the raw lines of one run of bench/speed/run.sh into the figures
block of bench/RESULTS.md, with each figure set against its target."""
import argparse
import os
import platform
import re
import statistics
import subprocess
import sys


def fields(line):
    return dict(kv.split("=", 1) for kv in line.split() if "=" in kv)


def lines(path):
    with open(path) as f:
        return [fields(l) for l in f if "=" in l]


def ok(met):
    return "met" if met else "**missed**"


def main():
    p = argparse.ArgumentParser()
    p.add_argument("work")
    p.add_argument("results")
    for a in ("load-before", "load-after", "elapsed", "cpu-before", "cpu-after", "games", "starts"):
        p.add_argument("--" + a)
    a = p.parse_args()

    press = {}
    for f in lines(os.path.join(a.work, "press.txt")):
        key = f["target"]
        if key in press:
            key += "+caller"
        press[key] = {k: float(v) if re.match(r"^[0-9.]+$", v) else v for k, v in f.items()}
    bare, off, on = press["Bare"], press["Calloquin"], press["Calloquin+caller"]

    starts = {"bare": [], "calloquin": []}
    for f in lines(os.path.join(a.work, "startup.txt")):
        starts[f["target"]].append(float(f["startup_ms"]))
    s_bare, s_cq = statistics.median(starts["bare"]), statistics.median(starts["calloquin"])

    handler = {f["case"]: f for f in lines(os.path.join(a.work, "handler.txt"))}
    voice = {}
    for f in lines(os.path.join(a.work, "voice.txt")):
        voice.update(f)
    with open(os.path.join(a.work, "voice.txt")) as fh:
        vl = fh.read().splitlines()
    first_use = fields(vl[1])

    # How busy the machine was: the share of both cores that was not idle
    # during the run (ours included), and the load average around it.
    cb = [int(x) for x in a.cpu_before.split()[1:]]
    ca = [int(x) for x in a.cpu_after.split()[1:]]
    d = [y - x for x, y in zip(cb, ca)]
    busy = 100.0 * (1 - (d[3] + d[4]) / sum(d))
    # On a virtual machine, time the host gave to others: the timings of
    # a run with much of it are slower, and noisier, for both windows.
    steal = 100.0 * d[7] / sum(d) if len(d) > 7 else 0.0

    mb = lambda kb: float(kb) / 1024.0
    m_bare = mb(bare["hwm_game_kb"])
    m_start, m_off, m_on = mb(off["hwm_start_kb"]), mb(off["hwm_game_kb"]), mb(on["hwm_game_kb"])
    m_bare_start = mb(bare["hwm_start_kb"])

    cpu = "unknown"
    try:
        for l in open("/proc/cpuinfo"):
            if l.startswith("model name"):
                cpu = l.split(":", 1)[1].strip()
                break
    except OSError:
        pass
    # BENCH_COMMIT names the commit when the tree measured is an export.
    commit = os.environ.get("BENCH_COMMIT") or subprocess.run(
        ["git", "-C", os.path.dirname(a.results), "rev-parse", "--short", "HEAD"],
        capture_output=True, text=True).stdout.strip() or "unknown"
    dirty = "" if os.environ.get("BENCH_COMMIT") else subprocess.run(
        ["git", "-C", os.path.dirname(a.results), "status", "--porcelain", "--untracked-files=no"],
        capture_output=True, text=True).stdout.strip()
    # The figures file itself is what this run rewrites.
    dirty = "\n".join(l for l in dirty.splitlines() if not l.endswith(os.path.basename(a.results)))

    r = lambda x: f"{float(x):.2f}"
    out = []
    out.append(f"Run of {a.elapsed} s on commit {commit}{' (with uncommitted changes in the tree)' if dirty else ''}; "
               f"{os.cpu_count()} cores, {cpu}, {platform.system()} {platform.release()}. "
               f"Load average {a.load_before} before, {a.load_after} after; the cores were {busy:.0f}% busy "
               f"over the run, ours included, and {steal:.0f}% of their time went to the host's other guests (steal).")
    out.append("")
    out.append("| Measure | Calloquin | Reference (bare Qt window) | Ratio | Target | |")
    out.append("|---|---|---|---|---|---|")
    ratio_off = off["median"] / bare["median"]
    ratio_on = on["median"] / bare["median"]
    out.append(f"| Press to screen, caller off: median / p95 / max (ms, {int(off['presses'])} presses) | "
               f"{r(off['median'])} / {r(off['p95'])} / {r(off['max'])} | "
               f"{r(bare['median'])} / {r(bare['p95'])} / {r(bare['max'])} | {ratio_off:.2f}x | "
               f"median < 16.7 ms and < 1.2x | {ok(off['median'] < 16.7)}, {ok(ratio_off <= 1.2)} |")
    out.append(f"| Press to screen, caller on: median / p95 / max (ms, {int(on['presses'])} presses) | "
               f"{r(on['median'])} / {r(on['p95'])} / {r(on['max'])} | same reference | {ratio_on:.2f}x | "
               f"median < 16.7 ms and < 1.2x | {ok(on['median'] < 16.7)}, {ok(ratio_on <= 1.2)} |")
    out.append(f"| - caller on, first game (each press opens its clip): median / max | "
               f"{r(on['first_median'])} / {r(on['first_max'])} | | | | |")
    out.append(f"| - caller on, later games: median | {r(on['later_median'])} | {r(bare['later_median'])} | "
               f"{on['later_median'] / max(bare['later_median'], 1e-9):.2f}x | | |")
    ho, hc, hw = handler["caller_off"], handler["caller_on_first_game"], handler["caller_on_later_games"]
    out.append(f"| Handler in-process, caller off: median / p95 / max (ms, presses 1-89) | "
               f"{float(ho['median']):.3f} / {float(ho['p95']):.3f} / {r(ho['max'])} | | | < 0.5 ms | "
               f"median {ok(float(ho['median']) < 0.5)}, max {ok(float(ho['max']) < 0.5)} |")
    out.append(f"| - the 90th press (with the new game's reset and draw): median / max | "
               f"{float(ho['last_median']):.3f} / {r(ho['last_max'])} | | | | |")
    out.append(f"| Handler, caller on, first game (opens the clips): median / max | "
               f"{float(hc['median']):.3f} / {r(hc['max'])} | | | | |")
    out.append(f"| Handler, caller on, later games: median / p95 / max | "
               f"{float(hw['median']):.3f} / {float(hw['p95']):.3f} / {r(hw['max'])} | | | < 0.5 ms | "
               f"median {ok(float(hw['median']) < 0.5)}, max {ok(float(hw['max']) < 0.5)} |")
    out.append(f"| Start-up to the first painted frame: median (ms, {len(starts['calloquin'])} starts each) | "
               f"{r(s_cq)} (min {r(min(starts['calloquin']))}) | {r(s_bare)} (min {r(min(starts['bare']))}) | "
               f"{s_cq / s_bare:.2f}x | < 1.3x | {ok(s_cq / s_bare <= 1.3)} |")
    out.append(f"| Voice: first use of a clip (open and decode): median / p95 / max (ms, 89 clips) | "
               f"{r(first_use['median'])} / {r(first_use['p95'])} / {r(first_use['max'])} | | | < 10 ms | "
               f"{ok(float(first_use['max']) < 10)} |")
    out.append(f"| - the first clip, with the sound libraries' loading | {r(first_use['libraries_plus_first'])} | | | | |")
    out.append(f"| Peak RSS after start (MB) | {m_start:.1f} | {m_bare_start:.1f} | +{m_start - m_bare_start:.1f} MB | | |")
    out.append(f"| Peak RSS after a game, caller off (MB) | {m_off:.1f} | {m_bare:.1f} | +{m_off - m_bare:.1f} MB | | |")
    out.append(f"| Peak RSS after a game with all 90 clips open (MB) | {m_on:.1f} | {m_bare:.1f} | "
               f"+{m_on - m_bare:.1f} MB | < +40 MB | {ok(m_on - m_bare < 40)} |")
    out.append("")
    out.append(f"Clips decoded to {voice.get('rate')} Hz, {voice.get('channels')} channel(s); press to sound is sound.sh's.")

    with open(a.results) as f:
        text = f.read()
    begin, end = "<!-- figures:begin -->", "<!-- figures:end -->"
    if begin not in text or end not in text:
        sys.exit(f"{a.results} has no figure markers")
    head, rest = text.split(begin, 1)
    _, tail = rest.split(end, 1)
    with open(a.results, "w") as f:
        f.write(head + begin + "\n" + "\n".join(out) + "\n" + end + tail)
    print("\n".join(out))


if __name__ == "__main__":
    main()
