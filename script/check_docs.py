#!/usr/bin/env python3
"""Checks what the Markdown pages say against the tree.

A piece of code in a page is cut from a source that the tests build and run. The page names it:

    <!-- from examples/combine_results/main.cpp [combine] -->
    ```cpp
    ...
    ```

and the source marks it by a comment line "// [combine]" (or "# [combine]") before and behind it.
Without a mark the whole file is meant. This script proves that the two texts are equal, that
every piece of C++ or CMake under docs/ comes from a source, that every relative link leads to a
file and a heading, that every file, script, preset and CMake option that a page names exists, and
that docs/porting.md and examples/README.md have a line for each header of the platform and each
example.

Usage: check_docs.py [--fix]   (--fix copies the pieces from the sources into the pages)
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SNIPPET = re.compile(
    r"<!-- from (?P<file>\S+)(?: \[(?P<mark>[\w-]+)\])? -->\n```(?P<language>\w*)\n(?P<text>.*?)```\n", re.S)
CODE = re.compile(r"^```(\w*)\n.*?^```$", re.S | re.M)
LINK = re.compile(r"(?<!\!)\[[^\]\n]*\]\(([^)\s]+)\)")
FILE = re.compile(r"`((?:kovabase|translators|apps|tests|examples|fuzz|benchmarks|docs|script|cmake)/[\w./-]+)`")
SOURCED = {"cpp", "cmake"}


def pages():
    """The Markdown files that git knows, or would."""
    if shutil.which("git"):
        listed = subprocess.run(
            ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], cwd=ROOT,
            capture_output=True, text=True, check=False)
        if listed.returncode == 0:
            return sorted(ROOT / name for name in set(listed.stdout.splitlines()) if (ROOT / name).exists())
    skipped = {"build", "out", ".git"}
    return sorted(p for p in ROOT.rglob("*.md") if p.relative_to(ROOT).parts[0] not in skipped)


def piece_of(source, mark):
    """The marked lines without their common indentation, or why there are none."""
    path = ROOT / source
    if not path.is_file():
        return None, f"there is no {source}"
    lines = path.read_text(encoding="utf-8").splitlines()
    if mark is not None:
        marks = [i for i, line in enumerate(lines) if line.strip() in (f"// [{mark}]", f"# [{mark}]")]
        if len(marks) != 2:
            return None, f"{source} has {len(marks)} marks [{mark}], not two"
        lines = lines[marks[0] + 1:marks[1]]
    # Marks of smaller pieces inside are not shown.
    lines = [line for line in lines if not re.fullmatch(r"\s*(//|#) \[[\w-]+\]", line)]
    while lines and not lines[0].strip():
        lines.pop(0)
    indent = min((len(line) - len(line.lstrip()) for line in lines if line.strip()), default=0)
    return "".join(line[indent:].rstrip() + "\n" for line in lines), None


def anchors_of(path):
    """The headings of a page as links name them."""
    anchors = set()
    text = CODE.sub("", path.read_text(encoding="utf-8"))
    for heading in re.findall(r"^#+ +(.*)$", text, re.M):
        plain = re.sub(r"[^\w\- ]", "", heading.strip().lower())
        anchors.add(plain.replace(" ", "-"))
    return anchors


def known_names():
    """Presets and CMake options of this tree."""
    presets = {p["name"] for p in json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]}
    options = {"BUILD_TESTING"}
    for path in [ROOT / "CMakeLists.txt", *sorted((ROOT / "cmake").glob("*"))]:
        text = path.read_text(encoding="utf-8")
        options.update(re.findall(r"\boption\((\w+)", text))
        options.update(re.findall(r"\bset\((\w+) [^)]*CACHE", text))
    return presets, options


def main():
    fix = sys.argv[1:] == ["--fix"]
    problems = []
    snippets = 0
    presets, options = known_names()

    for page in pages():
        name = page.relative_to(ROOT)
        text = page.read_text(encoding="utf-8")

        def complain(position, what):
            problems.append(f"{name}:{text.count(chr(10), 0, position) + 1}: {what}")

        def compare(match):
            nonlocal snippets
            snippets += 1
            wanted, problem = piece_of(match["file"], match["mark"])
            if problem is not None:
                complain(match.start(), problem)
            elif match["text"] != wanted:
                if fix:
                    return match[0][:match.start("text") - match.start()] + wanted + "```\n"
                mark = f" [{match['mark']}]" if match["mark"] else ""
                complain(match.start(), f"differs from {match['file']}{mark}; script/check_docs.py --fix copies it")
            return match[0]

        fixed = SNIPPET.sub(compare, text)
        if fixed != text:
            page.write_text(fixed, encoding="utf-8")
            text = fixed

        sourced = {match.start("language") - 3 for match in SNIPPET.finditer(text)}
        if name.parts[0] == "docs":
            for match in CODE.finditer(text):
                if match[1] in SOURCED and match.start() not in sourced:
                    complain(match.start(), f"a piece of {match[1]} that no source is named for")
        for match in re.finditer(r"<!-- from", text):
            if not SNIPPET.match(text, match.start()):
                complain(match.start(), "no piece of code follows this comment")

        for match in LINK.finditer(CODE.sub(lambda m: " " * 0 + "\n" * m[0].count("\n"), text)):
            target = match[1]
            if re.match(r"[a-z]+:", target):
                continue
            file, _, anchor = target.partition("#")
            path = (page.parent / file).resolve() if file else page
            if not path.exists():
                complain(text.find(match[0]), f"the link {target} leads to nothing")
            elif anchor and path.suffix == ".md" and anchor not in anchors_of(path):
                complain(text.find(match[0]), f"{file or name} has no heading #{anchor}")

        for match in re.finditer(r"(?<![\w/])script/([\w.]+\w)", text):
            if not (ROOT / "script" / match[1]).exists():
                complain(match.start(), f"there is no {match[0]}")
        for match in FILE.finditer(text):
            if not (ROOT / match[1]).exists():
                complain(match.start(), f"there is no {match[1]}")
        if str(name) == "docs/porting.md":
            named = set(re.findall(r"^\| `(\w+\.h)`", text, re.M))
            headers = {path.name for path in (ROOT / "kovabase/platform").glob("*.h")}
            for header in sorted(named ^ headers):
                complain(0, f"{header} is {'not in the table' if header in headers else 'no header of the platform'}")
        if str(name) == "examples/README.md":
            for folder in sorted((ROOT / "examples").glob("*/CMakeLists.txt")):
                if f"| [{folder.parent.name}](" not in text:
                    complain(0, f"{folder.parent.name} is not in the table")
        for match in re.finditer(r"--preset[ =](\w+)", text):
            if match[1] not in presets:
                complain(match.start(), f"there is no preset {match[1]}")
        for match in re.finditer(r"-D ?((?:KOVABASE_|BUILD_)\w+)", text):
            if match[1] not in options:
                complain(match.start(), f"there is no CMake option {match[1]}")

    for problem in problems:
        print(problem)
    print(f"{len(pages())} pages, {snippets} pieces of code, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
