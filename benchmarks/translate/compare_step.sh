#!/usr/bin/env bash
# Reading STEP, as whole processes on one thread: time and peak memory for files of growing size,
# which are an assembly repeated with its own records each time. Nothing is written. Medians of
# several runs, after one to warm up.
# Usage: KOVA_BUILD=build/bench benchmarks/translate/compare_step.sh [largest file]
#   largest file   in megabytes, 820 if not given: some ten million records

set -euo pipefail
export LC_ALL=C.UTF-8
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$root/benchmarks/translate/measure.sh"
largest="${1:-820}"

printf '| File | Records | Time | ns per record | MB/s | Peak | Bytes per byte |\n'
printf '|---|---|---|---|---|---|---|\n'
for megabytes in 1 10 100 820; do
  [ "$megabytes" -le "$largest" ] || break
  "$generate" --megabytes "$megabytes" "$folder/assembly.stp"
  records="$(grep -c '^#' "$folder/assembly.stp")"
  bytes="$(stat -c %s "$folder/assembly.stp")"
  runs=5
  [ "$megabytes" -le 100 ] || runs=1
  read -r time peak < <(measure "$runs" "$translate" --jobs 1 --dry-run "$folder/assembly.stp")
  awk -v b="$bytes" -v n="$records" -v s="$time" -v p="$peak" 'BEGIN {
    printf "| %.1f MB | %d | %.3f s | %.0f | %.0f | %.1f MiB | %.2f |\n",
      b / 1e6, n, s / 1e6, s * 1e3 / n, b / s, p / 1024, p * 1024 / b }'
done
echo "Goals at 100 MB: at least 100 MB/s, at most 4 bytes of memory for each byte of the file"
