# What the completion offers, and that the program takes every word of it.
# Usage: completion.sh PROGRAM COMPLETION
# shellcheck shell=bash

set -eu
program="$1"
# It works inside a completion alone.
# shellcheck disable=SC2317
compopt() { :; }
# shellcheck source=/dev/null
source "$2"

rm -rf completion
mkdir -p "completion/a folder"
cd completion
touch bolt.STEP bolt.txt "bolt 2.stl"

failures=0
# expect TEXT WORD...: what comes behind the words of the line, sorted and divided by '|'.
expect() {
  local expected="$1" offered
  shift
  COMP_WORDS=(kova-translate "$@")
  COMP_CWORD=$#
  _kova_translate "$program"
  offered="$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd '|')"
  [ "$offered" = "$expected" ] && return
  printf 'behind "%s": "%s" instead of "%s"\n' "$*" "$offered" "$expected"
  failures=$((failures + 1))
}

expect '--to|--tolerance' --to
expect '--stats|--stats=json|--stats=text' --st
expect 'ply' --to p
expect 'ply' --to = p
expect 'json|text' --stats =
expect 'a folder|bolt 2.stl|bolt.STEP' --stats ''
expect 'bolt 2.stl|bolt.STEP' --force bolt
expect 'bolt.txt' --config bolt.t
expect 'a folder' -d ''
expect '' --jobs ''
expect 'Step.Read.Angle=|Step.Read.Tolerance=' -s Step.

# Each option that the help names is offered, and each word that is offered is taken.
COMP_WORDS=(kova-translate --) COMP_CWORD=1
_kova_translate "$program"
offered=" ${COMPREPLY[*]} "
for option in $("$program" --help | grep -oE '^ +(-[a-z],)?--[a-z-]+' | grep -oE -- '--[a-z-]+'); do
  [[ $offered == *" $option "* ]] || { echo "$option is not offered"; failures=$((failures + 1)); }
  COMP_WORDS=(kova-translate "$option" "=" '') COMP_CWORD=3
  [[ $option == --config || $option == --set ]] || _kova_translate "$program"
  for word in "${COMPREPLY[@]}"; do
    [[ $option == --@(to|unit|stats|progress|log-level) ]] || continue
    "$program" "$option=$word" --dry-run missing.stl > said.txt 2>&1 || [ $? -eq 1 ] ||
      { echo "$option=$word is refused: $(cat said.txt)"; failures=$((failures + 1)); }
  done
done
exit "$failures"
