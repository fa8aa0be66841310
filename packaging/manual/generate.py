#!/usr/bin/env python3
"""Writes the manual page and the bash completion of kova-translate from what the program says.

Usage: generate.py PROGRAM FOLDER   writes kova-translate.1 and kova-translate.bash into the folder
"""

import re
import subprocess
import sys
import textwrap
from email.utils import parsedate_to_datetime
from pathlib import Path

# The words that options take which are no free text. --to has its words in the help.
WORDS = {
    "--stats": ["text", "json"],
    "--progress": ["auto", "json", "none"],
    "--log-level": ["debug", "test", "verbose", "message", "info", "warning", "error", "assert"],
    "--unit": ["mm", "cm", "m", "in", "ft"],
}

EXAMPLES = [
    ("kova-translate --stats part.stl", "Writes part.obj beside part.stl and says what it holds."),
    ("kova-translate -d out -t ply -u mm *.step",
     "Translates several files at one time, with lengths in millimetres."),
    ("kova-translate --preview part.svg -o part.obj part.step", "Draws a picture of the result, too."),
    ("kova-translate -s Step.Read.Tolerance=0.1 -o - part.step > part.obj",
     "Gives an option a value, and writes to standard output."),
]


class Option:
    def __init__(self, names, argument, text):
        self.names, self.argument, self.text = names, argument, text
        self.long = next((name for name in names if name.startswith("--")), names[0])


def run(program, *arguments):
    # An environment of nothing: the texts must not depend on who asks.
    return subprocess.run([program, *arguments], env={}, check=True, capture_output=True, text=True).stdout


def parse_help(text):
    """The first line, the options and the paragraphs below them."""
    head, _, rest = text.partition("\nOptions:\n")
    table, _, footer = rest.partition("\n\n")
    options = []
    for line in table.splitlines():
        if line.startswith(" " * 20):
            options[-1].text = (options[-1].text + " " + line.strip()).strip()
            continue
        found = re.match(r"  (-\S+)(?: (\S+(?: \.\.\.)?(?: in \[.*?\])?))?(?:\s{2,}(.*))?$", line)
        if not found:
            sys.exit(f"generate.py: this line of the help is not understood: {line!r}")
        names, argument, description = found.groups()
        standard = re.search(r"\{(\w+)\}", names)
        names = re.sub(r"\{\w+\}", "", names).split(",")
        if standard:
            argument = "[=KIND]"
        argument = re.sub(r":INT in \[.*\]", "", argument or "")
        options.append(Option(names, argument, description or ""))
    return head.splitlines()[0], options, [p.strip() for p in footer.strip().split("\n\n")]


def parse_entries(text):
    """(first line, the lines below it without their margin) of --options and --env."""
    entries = []
    for line in text.splitlines():
        if line.startswith("  "):
            entries[-1][1].append(line.strip())
        else:
            entries.append((line, []))
    return entries


def roff(text):
    text = textwrap.fill(" ".join(text.split()), 72, break_long_words=False, break_on_hyphens=False)
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("`", "")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def read_date():
    """The day of the newest entry of the packages' changelog, so that the page is always the same."""
    changelog = Path(__file__).parent.parent / "debian" / "changelog"
    trailer = re.search(r"^ -- .*>  (.*)$", changelog.read_text(encoding="utf-8"), re.M)
    return parsedate_to_datetime(trailer.group(1)).strftime("%Y-%m-%d")


def make_page(program):
    version = run(program, "--version").split()[-1]
    summary, options, notes = parse_help(run(program, "--help"))
    lines = [
        f'.TH KOVA\\-TRANSLATE 1 "{read_date()}" "KOVABase {version}" "User Commands"',
        ".SH NAME",
        "kova\\-translate \\- " + roff(summary[0].lower() + summary[1:].rstrip(".")),
        ".SH SYNOPSIS",
        ".B kova\\-translate",
        "[\\fIOPTIONS\\fR] \\fIINPUT\\fR...",
        ".br",
        ".B kova\\-translate",
        "\\-\\-list | \\-\\-options | \\-\\-env | \\-\\-version | \\-\\-help",
        ".SH DESCRIPTION",
    ]
    for number, paragraph in enumerate(p for p in notes if not p.startswith("Exit status")):
        lines += ([".PP"] if number else []) + [roff(paragraph)]
    lines.append(".SH OPTIONS")
    for option in options:
        names = ", ".join(f"\\fB{roff(name)}\\fR" for name in option.names)
        argument = option.argument
        if argument:
            names += ("" if argument.startswith("[") else " ") + f"\\fI{roff(argument)}\\fR"
        lines += [".TP", names, roff(option.text if option.text.endswith(".") else option.text + ".")]
    lines += [".SH TRANSLATION OPTIONS", "Set with \\fB\\-\\-set\\fR or in a file of \\fB\\-\\-config\\fR."]
    for first, below in parse_entries(run(program, "--options")):
        kind, text = below[0], " ".join(below[1:])
        lines += [".TP", f"\\fB{roff(first.split(' = ')[0])}\\fR ({roff(kind)})", roff(text)]
    lines.append(".SH ENVIRONMENT")
    lines.append(roff("The variable KOVA and the name of a translation option overrides that option."))
    for first, below in parse_entries(run(program, "--env")):
        name = first.split()[0]
        if not below[-1].startswith("Overrides the option"):
            lines += [".TP", f"\\fB{roff(name)}\\fR", roff(" ".join(below[1:]))]
            without = below[0].removeprefix("when not set: ")
            if without != "not set":
                lines.append(roff(f"Without it: {without}."))
    lines.append(".SH EXIT STATUS")
    status = next(p for p in notes if p.startswith("Exit status"))
    lines.append(roff(status.removeprefix("Exit status:")))
    lines.append(".SH EXAMPLES")
    for command, text in EXAMPLES:
        lines += [".TP", f"\\fB{roff(command)}\\fR", roff(text)]
    return '.\\" Written by packaging/manual/generate.py from what the program says.\n' + "\n".join(lines) + "\n"


def make_completion(program):
    _, options, _ = parse_help(run(program, "--help"))
    words = dict(WORDS)
    cases = []
    for option in options:
        pattern = "|".join(option.names)
        kind = option.argument.split()[0] if option.argument else ""
        if option.long == "--to":
            words["--to"] = re.search(r"\((.*?)\)", option.text).group(1).split(", ")
        if kind.startswith("["):
            # Without "=" the next word is an INPUT.
            choice = " ".join(words[option.long])
            cases.append(f"    {pattern}) if [ -n \"$equals\" ]; then _kova_words {choice}; else _kova_inputs; fi ;;")
        elif option.long in words:
            cases.append(f"    {pattern}) _kova_words {' '.join(words[option.long])} ;;")
        elif kind == "NAME=VALUE":
            cases.append(f"    {pattern}) _kova_settings \"$1\" ;;")
        elif kind == "FOLDER":
            cases.append(f"    {pattern}) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\") ;;")
        elif kind.startswith("FILE"):
            cases.append(f"    {pattern}) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;")
        elif kind:
            cases.append(f"    {pattern}) ;;")
    offered = []
    for option in options:
        offered.append(option.long)
        if option.argument.startswith("["):
            offered += [f"{option.long}={word}" for word in words[option.long]]
    extensions = []
    for line in run(program, "--list").splitlines():
        if re.match(r"\w+, read", line):
            extensions += re.findall(r"\.(\w+)", line[line.rindex("("):])
    return f"""# bash completion for kova-translate
# Written by packaging/manual/generate.py from what the program says.

_kova_words() {{ mapfile -t COMPREPLY < <(compgen -W "$*" -- "$word"); }}

# Names of options, ready for their values.
_kova_settings() {{
  mapfile -t COMPREPLY < <(compgen -W \\
    "$("$1" --options 2> /dev/null | sed -n 's/^\\([A-Za-z][A-Za-z0-9.]*\\) = .*/\\1=/p')" -- "$word")
  compopt -o nospace
}}

_kova_inputs() {{
  local name
  compopt -o filenames
  while IFS= read -r name; do
    if [[ -d $name || ${{name,,}} =~ \\.({'|'.join(extensions)})$ ]]; then COMPREPLY+=("$name"); fi
  done < <(compgen -f -- "$word")
}}

_kova_translate() {{
  local word previous equals=
  COMPREPLY=()
  word="${{COMP_WORDS[COMP_CWORD]}}"
  previous="${{COMP_WORDS[COMP_CWORD - 1]}}"
  # bash takes "--option=value" for three words.
  if [ "$word" = = ]; then
    word=
    equals=yes
  elif [ "$previous" = = ] && [ "$COMP_CWORD" -gt 2 ]; then
    previous="${{COMP_WORDS[COMP_CWORD - 2]}}"
    equals=yes
  fi
  case "$previous" in
@CASES@
    *)
      if [[ $word == -* ]]; then
        _kova_words {' '.join(offered)}
      else
        _kova_inputs
      fi
      ;;
  esac
}}

complete -F _kova_translate kova-translate
""".replace("@CASES@", "\n".join(cases))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program, folder = sys.argv[1], Path(sys.argv[2])
    (folder / "kova-translate.1").write_text(make_page(program), encoding="utf-8")
    (folder / "kova-translate.bash").write_text(make_completion(program), encoding="utf-8")


if __name__ == "__main__":
    main()
