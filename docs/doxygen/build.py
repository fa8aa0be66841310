#!/usr/bin/env python3
"""Builds the pages of the public classes with Doxygen and says what lacks a comment.

Each folder of the library is a group, described by its README. A class, an enumeration, a function,
a constant and a public data member need a comment. These need none of their own:

- what stands under the comment of another one, line by line, up to the next blank line: a comment
  speaks for all of them;
- what a base class has described;
- constructors and destructors of a described class, and operators with their usual meaning;
- getters and questions without arguments (GetName, length, IsEmpty) and plain setters (SetName);
- `Fire`, which takes the arguments of the constructor and sends the event;
- the enumerators of a described enumeration, the data members of a described struct, constants of a
  described class, and protected data members;
- what stands in a header that has a comment about all of it, functions excepted.

Usage: build.py   (from any folder; script/docs installs what it needs)
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
from xml.etree import ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
OUTPUT = ROOT / "build/docs"
GROUPS = [f"kovabase/{folder}" for folder in (
    "foundation", "containers", "strings", "io", "files", "options", "events", "concurrency", "translation",
    "geometry", "units")] + ["translators"]


def write_groups():
    """A group for each folder: the README is its page."""
    parts = []
    for folder in GROUPS:
        lines = (ROOT / folder / "README.md").read_text(encoding="utf-8").splitlines()
        name = folder.rsplit("/")[-1]
        body = "\n".join(lines[1:]).strip().replace("*/", "*\\/")
        parts.append(f"/**\n@defgroup {name} {name}\n\n{body}\n*/\n")
    (OUTPUT / "groups.dox").write_text("\n".join(parts), encoding="utf-8")


def is_described(element):
    return any("".join(element.find(part).itertext()).strip()
               for part in ("briefdescription", "detaileddescription") if element.find(part) is not None)


def source_line(path, line):
    return (ROOT / path).read_text(encoding="utf-8").splitlines()[line - 1]


def is_under_comment(path, line):
    """Whether a comment stands above the line with no blank line between them."""
    lines = (ROOT / path).read_text(encoding="utf-8").splitlines()
    at = line - 2
    while at >= 0 and lines[at].strip():
        if lines[at].lstrip().startswith("//"):
            return True
        if re.match(r"\s*(public|protected|private):", lines[at]):
            return False
        at -= 1
    return False


def speaks_for_itself(member, class_name):
    kind, name = member.get("kind"), member.findtext("name")
    arguments = re.sub(r"^\((.*)\).*$", r"\1", member.findtext("argsstring") or "").strip()
    if member.find("reimplements") is not None or "override" in (member.findtext("argsstring") or ""):
        return True
    if kind in ("friend", "typedef") or name.startswith("~"):
        return True
    if name in (class_name, "Fire") or name.startswith("operator"):
        return True
    if kind == "variable" and member.get("static") == "yes" and class_name != "":
        return True
    if not arguments:
        return re.match(r"(Get|Is|Has|Are|get|is|has|length|size|begin$|end$)", name) is not None
    return re.match(r"(Set|set)[A-Z]", name) is not None and "," not in arguments


def has_comment_about_all(path):
    text = (ROOT / path).read_text(encoding="utf-8")
    return re.search(r"\n\n(///.*\n)+(\n|namespace kova::)", text) is not None


def undescribed():
    """What lacks a comment, as file:line: name."""
    found = set()
    for path in sorted((OUTPUT / "xml").glob("*.xml")):
        if not path.name.startswith(("class", "struct", "group", "namespace", "union")):
            continue
        for compound in ElementTree.parse(path).getroot().iter("compounddef"):
            kind = compound.get("kind")
            name = compound.findtext("compoundname")
            place = compound.find("location")
            short = name.rsplit("::")[-1].split("<")[0].strip()
            if compound.get("prot") == "private":
                continue
            if kind in ("class", "struct") and not is_described(compound) and not has_comment_about_all(
                    place.get("file")):
                found.add((place.get("file"), int(place.get("line")), name))
            for member in compound.iter("memberdef"):
                place = member.find("location")
                file, line = place.get("file"), int(place.get("line"))
                if member.get("prot") in ("private", "package") or not file.startswith(("kovabase/", "translators/")):
                    continue
                if re.match(r"\s*using\b", source_line(file, line)) or "<" in member.findtext("name"):
                    continue  # a base's constructors; a special case of a described template
                if member.get("prot") == "protected" and member.get("kind") == "variable":
                    continue
                if is_described(member) or speaks_for_itself(member, short if kind in ("class", "struct") else ""):
                    continue
                if member.get("kind") != "function" and has_comment_about_all(file):
                    continue
                if kind == "struct" and member.get("kind") == "variable" and is_described(compound):
                    continue
                if not is_under_comment(file, line):
                    found.add((file, line, f"{name}::{member.findtext('name')}" if kind != "group"
                               else member.findtext("name")))
    return [f"{file}:{line}: {name} has no comment" for file, line, name in sorted(found)]


def main():
    shutil.rmtree(OUTPUT, ignore_errors=True)
    OUTPUT.mkdir(parents=True)
    write_groups()
    version = re.search(r"VERSION (\d[\d.]*)\n", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))
    environment = dict(os.environ, KOVABASE_VERSION=version[1] if version else "")
    subprocess.run(["doxygen", "docs/Doxyfile"], cwd=ROOT, env=environment, check=True)
    warnings = (OUTPUT / "warnings.log").read_text(encoding="utf-8").replace(f"{ROOT}/", "").splitlines()
    warnings += undescribed()
    for warning in warnings:
        print(warning)
    print(f"{len(warnings)} warnings; the pages are in {OUTPUT.relative_to(ROOT)}/html/index.html")
    return 1 if warnings else 0


if __name__ == "__main__":
    sys.exit(main())
