#!/usr/bin/env bash
# Loading the library into an empty process beside loading ICU's common library alone: whole
# processes in turns, medians of their times.
# Usage: KOVA_BUILD=build/bench benchmarks/strings/compare_load.sh [rounds]

set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
build="${KOVA_BUILD:-$root/build/bench}"
for program in kova_load_nothing kova_load_icuuc kova_load_kovabase; do
  [ -x "$build/bin/$program" ] || {
    echo "'$build/bin/$program' is missing; script/bench builds it" >&2
    exit 1
  }
done
exec python3 - "$build/bin" "${1:-400}" << 'END'
import os
import statistics
import sys
import time

folder, rounds = sys.argv[1], int(sys.argv[2])
programs = ("kova_load_nothing", "kova_load_icuuc", "kova_load_kovabase")
times = {program: [] for program in programs}
for round in range(rounds + 5):
    for program in programs:
        path = f"{folder}/{program}"
        begin = time.perf_counter()
        status = os.waitpid(os.posix_spawn(path, [path], {}), 0)[1]
        elapsed = time.perf_counter() - begin
        if status != 0:
            sys.exit(f"{path} ended with {status}")
        if round >= 5:
            times[program].append(elapsed)
medians = {program: statistics.median(values) for program, values in times.items()}
ratio = medians["kova_load_kovabase"] / medians["kova_load_icuuc"]
print("| Process | Median |\n|---|---|")
for program in programs:
    print(f"| {program} | {medians[program] * 1e3:.2f} ms |")
print(f"\nThe library to ICU's common library: {ratio:.2f} x (goal 1.3 x)")
END
