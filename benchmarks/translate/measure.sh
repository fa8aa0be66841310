# shellcheck shell=bash
# Sourced by the comparisons of whole processes: the programs under test, a folder that goes with
# the script, and `measure`.

build="${KOVA_BUILD:-$root/build/bench}"
translate="$build/bin/kova-translate"
generate="$build/bin/kova-generate"
for program in "$translate" "$generate" /usr/bin/time; do
  [ -x "$program" ] || {
    echo "'$program' is missing; script/bench builds and installs what this needs" >&2
    exit 1
  }
done

folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT

# measure RUNS COMMAND...: prints the median of the microseconds and the largest peak in KiB.
measure() {
  local runs="$1" run start end
  shift
  : > "$folder/times"
  for ((run = 0; run <= runs; ++run)); do
    start="${EPOCHREALTIME/./}"
    if ! /usr/bin/time -q -f '%M' -o "$folder/peak" "$@" > "$folder/log" 2>&1; then
      cat "$folder/log" >&2
      echo "failed: $*" >&2
      return 1
    fi
    end="${EPOCHREALTIME/./}"
    if [ "$run" -gt 0 ]; then
      echo "$((end - start)) $(cat "$folder/peak")" >> "$folder/times"
    fi
  done
  sort -n "$folder/times" | awk '
    { microseconds[NR] = $1; if ($2 > peak) peak = $2 }
    END { print microseconds[int((NR + 1) / 2)], peak }'
}
