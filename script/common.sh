# shellcheck shell=bash
# Sourced by the scripts of this folder: settings that all of them share.

set -euo pipefail
export LC_ALL=C.UTF-8
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

jobs="${KOVA_JOBS:-$(nproc)}"

# A compiler cache makes a second run quick; without one everything works all the same.
if command -v ccache > /dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_NOHASHDIR=1
fi

say() { printf '\n== %s\n' "$*"; }

# refuse MESSAGE: ends the script as wrong usage or on a machine that cannot do it.
refuse() {
  echo "script/$(basename "$0"): $*" >&2
  exit 2
}

# check_tools: says what a build lacks on this machine, and what to type.
check_tools() {
  local version compiler="${CXX:-c++}" install="sudo apt-get install --no-install-recommends"
  command -v cmake > /dev/null ||
    refuse "there is no cmake in PATH; 3.25 or newer is needed. Type: $install cmake"
  version="$(cmake --version | sed -n '1s/^[^0-9]*\([0-9.]*\).*/\1/p')"
  [ "$(printf '%s\n' 3.25 "$version" | sort -V | head -1)" = 3.25 ] ||
    refuse "cmake $version ($(command -v cmake)) is too old; 3.25 or newer is needed." \
      "Debian 12 has it, as has 'pip install cmake'; put it first in PATH"
  command -v ninja > /dev/null || refuse "there is no ninja in PATH. Type: $install ninja-build"
  # CXX may hold options behind the compiler's name.
  command -v "${compiler%% *}" > /dev/null ||
    refuse "there is no compiler '${compiler%% *}'${CXX:+, which the variable CXX names}. Type: $install g++"
  # shellcheck disable=SC2086
  printf '#include <version>\nstatic_assert(__cpp_lib_bit_cast && __cpp_concepts);\n' |
    $compiler -std=c++20 -fsyntax-only -x c++ - 2> /dev/null ||
    refuse "'$compiler' does not compile C++20 with its standard library." \
      "g++ 12 and clang 14 are tried. Type: $install g++"
}

# configure PRESET [cmake arguments]: configures build/PRESET, quietly unless it fails.
configure() {
  local preset="$1" log
  shift
  check_tools
  mkdir -p build
  log="build/configure-$preset.log"
  if ! cmake --preset "$preset" "$@" > "$log" 2>&1; then
    cat "$log"
    echo "configuring the preset '$preset' failed; the text above says why" >&2
    return 1
  fi
}

# build PRESET [targets]: builds in build/PRESET.
build() {
  local preset="$1"
  shift
  cmake --build "build/$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# run_ctest PRESET [ctest arguments]: runs the tests and closes with "N passed, N failed".
# CTest alone decides the exit status; a run without tests is a failure.
run_ctest() {
  local preset="$1" log status=0 passed failed
  shift
  log="build/ctest-$preset.log"
  ctest --test-dir "build/$preset" --output-on-failure --no-tests=error --parallel "$jobs" \
    --timeout 600 "$@" 2>&1 | tee "$log" || status=$?
  passed=$(grep -cE '^ *[0-9]+/[0-9]+ Test .* Passed ' "$log" || true)
  failed=$(grep -cE '^ *[0-9]+/[0-9]+ Test .*\*\*\*' "$log" || true)
  skipped=$(grep -cE '^ *[0-9]+/[0-9]+ Test .*\*\*\*(Skipped|Not Run \(Disabled\))' "$log" || true)
  failed=$((failed - skipped))
  if [ "$skipped" -gt 0 ]; then
    printf '\n%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
  else
    printf '\n%d passed, %d failed\n' "$passed" "$failed"
  fi
  return "$status"
}
