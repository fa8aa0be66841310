# bash completion for kova-translate
# Written by packaging/manual/generate.py from what the program says.

_kova_words() { mapfile -t COMPREPLY < <(compgen -W "$*" -- "$word"); }

# Names of options, ready for their values.
_kova_settings() {
  mapfile -t COMPREPLY < <(compgen -W \
    "$("$1" --options 2> /dev/null | sed -n 's/^\([A-Za-z][A-Za-z0-9.]*\) = .*/\1=/p')" -- "$word")
  compopt -o nospace
}

_kova_inputs() {
  local name
  compopt -o filenames
  while IFS= read -r name; do
    if [[ -d $name || ${name,,} =~ \.(ply|step|stp|p21|stl)$ ]]; then COMPREPLY+=("$name"); fi
  done < <(compgen -f -- "$word")
}

_kova_translate() {
  local word previous equals=
  COMPREPLY=()
  word="${COMP_WORDS[COMP_CWORD]}"
  previous="${COMP_WORDS[COMP_CWORD - 1]}"
  # bash takes "--option=value" for three words.
  if [ "$word" = = ]; then
    word=
    equals=yes
  elif [ "$previous" = = ] && [ "$COMP_CWORD" -gt 2 ]; then
    previous="${COMP_WORDS[COMP_CWORD - 2]}"
    equals=yes
  fi
  case "$previous" in
    -o|--output) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    -d|--output-dir) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    -t|--to) _kova_words obj ply stl ;;
    -u|--unit) _kova_words mm cm m in ft ;;
    -c|--config) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    -s|--set) _kova_settings "$1" ;;
    -j|--jobs) ;;
    --tolerance) ;;
    --layers) ;;
    --select) ;;
    --preview) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    --stats) if [ -n "$equals" ]; then _kova_words text json; else _kova_inputs; fi ;;
    --progress) _kova_words auto json none ;;
    -l|--log-level) _kova_words debug test verbose message info warning error assert ;;
    --log-dir) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    *)
      if [[ $word == -* ]]; then
        _kova_words --help --version --output --output-dir --to --unit --config --set --jobs --tolerance --layers --select --preview --stats --stats=text --stats=json --progress --log-level --log-dir --list --options --env --dry-run --force
      else
        _kova_inputs
      fi
      ;;
  esac
}

complete -F _kova_translate kova-translate
