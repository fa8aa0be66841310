#!/usr/bin/env bash
# On a machine that lacks something, the scripts say what it is and what to type, before they build.
# Usage: wrong_machine.sh SOURCE SCRATCH

set -eu
source_folder="$1"
machine="$2"
bash="$(command -v bash)"
failures=0

# lay TOOL...: makes the machine whose PATH has these tools alone.
lay() {
  rm -rf "$machine"
  mkdir -p "$machine"
  for tool in dirname basename nproc sed sort head "$@"; do ln -s "$(command -v "$tool")" "$machine/$tool"; done
}

# fake TOOL COMMAND: a tool that does this instead.
fake() {
  rm -f "$machine/$1"
  printf '#!%s\n%s\n' "$bash" "$2" > "$machine/$1"
  chmod +x "$machine/$1"
}

# expect TEXT [VARIABLE=VALUE]: the check of the tools fails and says this.
expect() {
  local status=0 said
  said="$(env -u CXX PATH="$machine" ${2:+"$2"} "$bash" -c "source '$source_folder/script/common.sh'; check_tools" 2>&1)" ||
    status=$?
  [ "$status" -eq 2 ] && [[ $said == *"$1"* ]] && return
  printf 'status %s, "%s" instead of "%s"\n' "$status" "$said" "$1"
  failures=$((failures + 1))
}

lay ninja c++
expect 'there is no cmake in PATH; 3.25 or newer is needed. Type: sudo apt-get install'
fake cmake 'echo "cmake version 3.9.6"'
expect "cmake 3.9.6 ($machine/cmake) is too old; 3.25 or newer is needed"
lay cmake c++
expect 'there is no ninja in PATH. Type: sudo apt-get install --no-install-recommends ninja-build'
lay cmake ninja
expect "there is no compiler 'c++'. Type: sudo apt-get install --no-install-recommends g++"
expect "there is no compiler 'g++-99', which the variable CXX names" 'CXX=g++-99 -m64'
fake c++ 'echo "unrecognized option -std=c++20" >&2; exit 1'
expect "'c++' does not compile C++20"
exit "$failures"
