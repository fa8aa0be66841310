#!/usr/bin/env python3
"""Turns the results of the benchmark programs into ratios to the best peer.

Usage: ratios.py GOALS.json RESULT.json...

A benchmark is named "work/who", with arguments behind it if it has any: "copy 12/KOVAString",
"fire plain/Qt signal/4". Whoever begins with KOVA or Gk_ is ours, the others are peers on the same
work. GOALS.json gives the goal of each work, a ratio of medians; a work with arguments may have a
goal for each, "fire plain/4". The table goes to standard output as Markdown.
"""

import collections
import json
import sys

OURS = ("KOVA", "Gk_")


def read_medians(paths):
    medians = {}
    for path in paths:
        with open(path, encoding="utf-8") as stream:
            for entry in json.load(stream)["benchmarks"]:
                if entry.get("run_type") == "aggregate" and entry.get("aggregate_name") != "median":
                    continue
                unit = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[entry["time_unit"]]
                # Processor time is steadier, but a run of several threads is as long as it lasts.
                kind = "real_time" if "real_time" in entry["run_name"] else "cpu_time"
                medians[entry["run_name"]] = entry[kind] * unit
    return medians


def in_words(nanoseconds):
    for limit, factor, unit in ((1e3, 1.0, "ns"), (1e6, 1e3, "us"), (1e9, 1e6, "ms")):
        if nanoseconds < limit:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds / 1e9:.3g} s"


def group_by_work(medians):
    works = collections.OrderedDict()
    for name, time in medians.items():
        work, who, *arguments = name.split("/")
        # Settings of the benchmark library are no arguments of the work.
        arguments = [a for a in arguments if a != "real_time" and ":" not in a]
        works.setdefault("/".join([work] + arguments), {})[who] = time
    # A peer without arguments stands beside ours for each of them.
    for work in list(works):
        base = work.split("/")[0]
        if base != work and base in works:
            for who, time in works[base].items():
                works[work].setdefault(who, time)
    return works


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as stream:
        goals = json.load(stream)
    works = group_by_work(read_medians(sys.argv[2:]))
    alone = []
    print("| Work | Ours | Best peer | Ratio | Goal | |")
    print("|---|---|---|---|---|---|")
    for work, times in works.items():
        ours = {who: time for who, time in times.items() if who.startswith(OURS)}
        peers = {who: time for who, time in times.items() if not who.startswith(OURS)}
        if not ours:
            continue
        if not peers:
            alone += [f"{work}: {who} {in_words(time)}" for who, time in ours.items()]
            continue
        best = min(peers, key=peers.get)
        goal = goals.get(work, goals.get(work.split("/")[0]))
        for who, time in ours.items():
            ratio = time / peers[best]
            wanted = f"{goal:g} x" if goal is not None else ""
            verdict = "" if goal is None else "met" if ratio <= goal else "missed"
            print(f"| {work} | {who} {in_words(time)} | {best} {in_words(peers[best])} "
                  f"| {ratio:.2f} x | {wanted} | {verdict} |")
    if alone:
        print("\nWithout a peer: " + "; ".join(alone))


if __name__ == "__main__":
    main()
