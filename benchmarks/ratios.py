#!/usr/bin/env python3
"""Turns the results of the benchmark programs into ratios to the best peer.

Usage: ratios.py GOALS.json RESULT.json...

GOALS.json lists for each work the name of our benchmark, those of the peers and the goal, a ratio
of medians. The table goes to standard output as Markdown. A peer that was not installed is left out.
"""

import json
import sys


def read_medians(paths):
    medians = {}
    for path in paths:
        with open(path, encoding="utf-8") as stream:
            for entry in json.load(stream)["benchmarks"]:
                if entry.get("run_type") == "aggregate":
                    if entry.get("aggregate_name") != "median":
                        continue
                    name = entry["run_name"]
                elif entry["name"] in medians:
                    continue
                else:
                    name = entry["name"]
                unit = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}[entry["time_unit"]]
                medians[name] = entry["real_time"] * unit
    return medians


def in_words(nanoseconds):
    for limit, factor, unit in ((1e3, 1.0, "ns"), (1e6, 1e3, "us"), (1e9, 1e6, "ms")):
        if nanoseconds < limit:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds / 1e9:.3g} s"


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding="utf-8") as stream:
        goals = json.load(stream)
    medians = read_medians(sys.argv[2:])
    missing = []
    print("| Work | Ours | Best peer | Ratio | Goal | |")
    print("|---|---|---|---|---|---|")
    for goal in goals:
        ours = medians.get(goal["ours"])
        peers = {peer: medians[peer] for peer in goal["peers"] if peer in medians}
        if ours is None or not peers:
            missing.append(goal["work"])
            continue
        best = min(peers, key=peers.get)
        ratio = ours / peers[best]
        verdict = "" if "goal" not in goal else ("met" if ratio <= goal["goal"] else "missed")
        wanted = f"{goal['goal']:g} x" if "goal" in goal else ""
        print(f"| {goal['work']} | {in_words(ours)} | {best} {in_words(peers[best])} "
              f"| {ratio:.2f} x | {wanted} | {verdict} |")
    if missing:
        print("\nNot measured here: " + "; ".join(missing))


if __name__ == "__main__":
    main()
