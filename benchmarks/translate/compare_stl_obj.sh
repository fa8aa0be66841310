#!/usr/bin/env bash
# Binary STL to OBJ with merged vertices, as whole processes: our time and peak memory beside those
# of `assimp export`, for meshes of growing size. Medians of several runs, after one to warm up.
# Usage: KOVA_BUILD=build/bench benchmarks/translate/compare_stl_obj.sh [largest mesh]
#   largest mesh   triangles, 10000000 if not given; assimp is measured up to 1000000

set -euo pipefail
export LC_ALL=C.UTF-8
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$root/benchmarks/translate/measure.sh"
largest="${1:-10000000}"

has_peer=false
if command -v assimp > /dev/null; then has_peer=true; else
  echo "assimp is not installed (Debian: assimp-utils): only our own figures"
fi

printf '| Triangles | Ours | ns per triangle | Peak | assimp | Peak | Time | Memory |\n'
printf '|---|---|---|---|---|---|---|---|\n'
for triangles in 1000 10000 100000 1000000 10000000; do
  [ "$triangles" -le "$largest" ] || break
  "$generate" --shape knot --triangles "$triangles" "$folder/mesh.stl"
  read -r time peak < <(measure 5 "$translate" --force -o "$folder/ours.obj" "$folder/mesh.stl")
  read -r peer_time peer_peak <<< "- -"
  if $has_peer && [ "$triangles" -le 1000000 ]; then
    read -r peer_time peer_peak < <(measure 3 assimp export "$folder/mesh.stl" "$folder/peer.obj")
    ours="$(grep -c '^f ' "$folder/ours.obj")"
    peers="$(grep -c '^f ' "$folder/peer.obj")"
    [ "$ours" = "$peers" ] || {
      echo "not the same work: $ours triangles beside $peers" >&2
      exit 1
    }
  fi
  awk -v n="$triangles" -v s="$time" -v p="$peak" -v t="$peer_time" -v q="$peer_peak" 'BEGIN {
    printf "| %d | %.3f s | %.0f | %.1f MiB ", n, s / 1e6, s * 1e3 / n, p / 1024
    if (t == "-") print "| | | | |"
    else printf "| %.3f s | %.1f MiB | %.3f x | %.3f x |\n", t / 1e6, q / 1024, s / t, p / q
  }'
done
echo "Goals at 1000000 triangles: 0.25 x the time, 0.33 x the memory"
